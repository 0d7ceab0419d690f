#pragma once

#include "base/Trace.h"
#include "reference/CtyEntityLookup.h"
#include "reference/CtyImport.h"
#include "support/RecordingFrontEnd.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::test {

/// A program folder and a working folder under one temporary folder, with the dialogs and a
/// silent trace that an import needs.
struct CtyFolders
{
    TempDir dir;
    reference::CtyPlaces places;
    RecordingDialogs dialogs;
    base::Trace trace;

    CtyFolders()
    {
        places.strPath = dir / "prog";
        places.drive_path = dir / "work";
        std::filesystem::create_directories(places.strPath);
        std::filesystem::create_directories(places.drive_path);
    }

    std::filesystem::path prog(std::string_view name) const { return places.strPath / name; }
    std::filesystem::path work(std::string_view name) const { return places.drive_path / name; }

    void writeCty(std::string_view bytes) const { writeBytes(prog("cty.dat"), bytes); }
    void writeConv(const std::vector<std::string>& lines) const
    {
        writeSjisLines(prog("cty_conv.txt"), lines);
    }
};

/// A header line of cty.dat with its fixed columns: name up to column 26 and ":", zones,
/// continent in columns 37-38, coordinates, primary prefix from column 70.
inline std::string ctyHeader(std::string_view name, std::string_view continent,
                             std::string_view primary)
{
    std::string line(name);
    line += ":";
    line.resize(26, ' ');
    // Columns 27-36: the two zones as cty.dat writes them.
    line += "14:  27:  ";
    line += continent;
    line += ":   50.00:   -10.00:    -1.0:  ";
    line += primary;
    line += ":";
    return line;
}

/// Lines joined by `end`, each line ended by it.
inline std::string joinLines(const std::vector<std::string>& lines, std::string_view end)
{
    std::string out;
    for (const auto& l : lines) {
        out += l;
        out += end;
    }
    return out;
}

/// The masters of an imported cty.dat, with an indexed lookup over them.
struct ImportedCty
{
    CtyFolders folders;
    reference::CtyImport import{folders.places, folders.trace, folders.dialogs};
    reference::CtyEntityLookup lookup;

    /// Imports `cty` (bytes), with `conv` as the alias table and `dxcc` as the DXCC master
    /// lines (the two heading lines are added).
    void run(std::string_view cty, const std::vector<std::string>& conv = {},
             const std::vector<std::string>& dxcc = {})
    {
        folders.writeCty(cty);
        folders.writeConv(conv);
        std::vector<std::string> master = {" heading", " Prefix  No.       Code  Name"};
        master.insert(master.end(), dxcc.begin(), dxcc.end());
        writeSjisLines(folders.prog("dxcc_mas.txt"), master);
        import.importAll(folders.prog("dxcc_mas.txt"));
        lookup.load(import.tables(), folders.prog("cty_mastL.txt"));
    }
    /// Imports with the given files copied into the program folder as they are.
    void runFiles(const std::filesystem::path& ctyDat, const std::filesystem::path& ctyConv,
                  const std::filesystem::path& dxccMas)
    {
        namespace fs = std::filesystem;
        fs::copy_file(ctyDat, folders.prog("cty.dat"), fs::copy_options::overwrite_existing);
        fs::copy_file(ctyConv, folders.prog("cty_conv.txt"), fs::copy_options::overwrite_existing);
        fs::copy_file(dxccMas, folders.prog("dxcc_mas.txt"), fs::copy_options::overwrite_existing);
        import.importAll(folders.prog("dxcc_mas.txt"));
        lookup.load(import.tables(), folders.prog("cty_mastL.txt"));
    }
    std::filesystem::path mastL() const { return folders.prog("cty_mastL.txt"); }
};

} // namespace vornhale::test
