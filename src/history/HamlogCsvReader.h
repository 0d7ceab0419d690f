#pragma once

#include "history/HamlogReader.h"

#include <string>
#include <string_view>
#include <vector>

namespace vornhale::history {

/// A HAMLOG CSV export as history source: Shift-JIS text, one QSO a line, the fifteen columns
/// that HAMLOG exports and imports (the form of `_hn.csv`). The first fourteen columns are
/// the fourteen fields; the fifteenth (the time flag) is not needed.
///
/// Fields may be quoted (a doubled quote inside stands for one) or bare. Missing columns
/// read as empty. Empty lines are no records. A date with a four-digit year ("2018/08/04")
/// is given with the last two digits of the year ("18/08/04"), the form the database gives.
class HamlogCsvReader : public HamlogReader
{
public:
    std::optional<long> open(const std::filesystem::path& path) override;
    const HamlogFields& read(long number) override;
    void close() override;

    /// The fields of one line of an export (bytes as in the file).
    static HamlogFields parseLine(std::string_view line);

private:
    std::string m_bytes;
    std::vector<std::string_view> m_lines;
    HamlogFields m_fields;
};

} // namespace vornhale::history
