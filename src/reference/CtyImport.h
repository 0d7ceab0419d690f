#pragma once

#include "base/Dialogs.h"
#include "base/Trace.h"
#include "reference/CtyTables.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace vornhale::reference {

/// The import of `cty.dat` into the two flat entity masters, and the loading of the short
/// master, the alias table and the DXCC master into memory. The stages run in the order
/// `cty_dat_sep`, `make_dx_mas2_new`, `cty_mas_read`, `make_dxcc_mas`; each may also run on
/// its own. Working files go to `drive_path`, the masters to `strPath`; every file written is
/// CP932 with CR LF line ends. A missing input is shown to the operator as a message with the
/// title "Vornhale" before the stage fails.
class CtyImport
{
public:
    /// `trace` and `dialogs` must outlive the import.
    CtyImport(CtyPlaces places, base::Trace& trace, base::Dialogs& dialogs);

    /// The first press of the start button and `mnuGet_Entity`: writes
    /// "Private sub cmdStart_cty_dat_sep" and the like before each of the four stages and runs
    /// them. Returns false when `cty_conv.txt` is missing and the program must end (the stages
    /// after it do not run). Throws Failure as the stages do.
    bool importAll(const std::filesystem::path& dxccMasPath);

    /// Copies `cty.dat` to `cty_dat0.txt` with every CR and every LF turned into CR LF, splits
    /// it into one `cty_dat1.txt` line per prefix and loads `cty_conv.txt` into the alias table.
    /// A missing `cty.dat` is shown ("<strPath>cty.dat　がありません。") and then throws
    /// Failure 53. Returns false, after its message, when `cty_conv.txt` is missing: the
    /// program must end.
    bool cty_dat_sep();

    /// Sorts `cty_dat1.txt` descending on its columns 1 to 10 into `cty_dat3.txt` and writes
    /// `cty_mastS.txt` (prefixes below 7 characters) and `cty_mastL.txt` (exact calls and
    /// prefixes of 7 characters or more). Entities whose primary prefix begins with "*" are
    /// dropped, and so are the long prefixes of "IG9". A missing `cty_dat1.txt` or
    /// `cty_dat3.txt` is shown, then throws Failure 53.
    void make_dx_mas2_new();

    /// Loads `cty_mastS.txt` into `cty_s_prefix` and `cty_s_primary`. A failure of this stage
    /// is passed over: a missing file leaves the arrays as its line count sizes them.
    void cty_mas_read();

    /// Loads the DXCC master: two heading lines, then one record per line into index 0 upward.
    /// Throws Failure 53 when the file is missing and Failure 62 when it has fewer than two
    /// lines.
    void make_dxcc_mas(const std::filesystem::path& dxccMasPath);

    const CtyTables& tables() const { return m_tables; }
    const CtyPlaces& places() const { return m_places; }

    /// The continent text of a header's two continent characters: "AF" gives "AF 1", "AS"
    /// "AS 2", "EU" "EU 3", "NA" "NA 4", "OC" "OC 5", "SA" "SA 6"; others stay as they are.
    static std::string continentText(std::string_view two);

private:
    void writeLineEndsDoubled();
    void splitEntities();
    void loadConv();
    void missing(const std::filesystem::path& folder, std::string_view name);

    CtyPlaces m_places;
    base::Trace& m_trace;
    base::Dialogs& m_dialogs;
    CtyTables m_tables;
};

} // namespace vornhale::reference
