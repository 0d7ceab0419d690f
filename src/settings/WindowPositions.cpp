#include "settings/WindowPositions.h"

#include "settings/CIniFile.h"
#include "text/Chars.h"
#include "text/LineFile.h"

#include <system_error>

namespace vornhale::settings {
namespace {

long storedNumber(const CIniFile& ini, std::string_view key, long design)
{
    // A value that does not pass the 16-bit test gives back the design value.
    const IniValue v = ini.InitData(key, 1, IniValue(static_cast<std::int32_t>(design)));
    return static_cast<long>(std::get<std::int32_t>(v));
}

bool removeFile(const std::filesystem::path& file)
{
    std::error_code ec;
    return std::filesystem::remove(file, ec);
}

bool fileExists(const std::filesystem::path& file)
{
    std::error_code ec;
    return std::filesystem::exists(file, ec);
}

} // namespace

std::string positionSection(std::string_view form)
{
    return "Position_" + std::string(form);
}

bool savePosition(const std::filesystem::path& file, std::string_view form,
                  const WindowPlacement& placement)
{
    CIniFile ini;
    ini.Load(file);
    ini.NowSection(positionSection(form));
    // A minimised window would come back minimised; it is stored as normal instead.
    ini.data("WindowState", placement.state == 1 ? "0" : std::to_string(placement.state));
    ini.data("Left", std::to_string(placement.left));
    ini.data("Top", std::to_string(placement.top));
    ini.data("Width", std::to_string(placement.width));
    ini.data("Height", std::to_string(placement.height));
    return ini.Save(positionSection(form));
}

WindowPlacement restorePosition(const std::filesystem::path& file, std::string_view form,
                                const WindowPlacement& design)
{
    CIniFile ini;
    ini.Load(file);
    ini.NowSection(positionSection(form));
    WindowPlacement p = design;
    const std::string state = ini.data("WindowState");
    if (state == "0" || state == "1" || state == "2") {
        p.state = state[0] - '0';
    }
    p.width = storedNumber(ini, "Width", design.width);
    p.height = storedNumber(ini, "Height", design.height);
    p.left = storedNumber(ini, "Left", design.left);
    p.top = storedNumber(ini, "Top", design.top);
    return p;
}

MinimumSize minimumSize(std::string_view form)
{
    if (form == "Vornhale") {
        return {10770, 8745};
    }
    if (form == "frmDisp") {
        return {11865, 8145};
    }
    if (form == "frmCheck_bak_qso_mas") {
        return {5985, 2325};
    }
    if (form == "frmDisp2" || form == "frmDisp3" || form == "frmDisp4") {
        return {std::nullopt, 8145};
    }
    return {};
}

WindowPlacement enforceMinimumSize(std::string_view form, WindowPlacement placement)
{
    const MinimumSize min = minimumSize(form);
    if (min.width && placement.width < *min.width) {
        placement.width = *min.width;
    }
    if (min.height && placement.height < *min.height) {
        placement.height = *min.height;
    }
    return placement;
}

std::vector<std::string> freshPositionFileLines(std::string_view version)
{
    return {"[Config]", "version=" + std::string(version), ""};
}

void writeFreshPositionFile(const std::filesystem::path& file, std::string_view version)
{
    text::LineWriter out(file, text::LineWriter::Mode::ReplaceWhenDone);
    for (const std::string& line : freshPositionFileLines(version)) {
        out.write(line);
    }
    out.close();
}

PositionFileUpkeep maintainPositionFile(const std::filesystem::path& file,
                                        std::string_view lastVersion,
                                        std::string_view runningVersion)
{
    bool deletedOld = false;
    if (text::val(lastVersion) * 100 < 527 && fileExists(file)) {
        removeFile(file);
        deletedOld = true;
    }
    if (fileExists(file)) {
        const std::string bare = text::replaceAll(text::replaceAll(lastVersion, "t", ""), "k", "");
        if (text::val(bare) * 100 < 530) {
            removeFile(file);
            writeFreshPositionFile(file, runningVersion);
            return PositionFileUpkeep::Recreated;
        }
        return PositionFileUpkeep::Kept;
    }
    writeFreshPositionFile(file, runningVersion);
    return deletedOld ? PositionFileUpkeep::DeletedAndCreated : PositionFileUpkeep::Created;
}

} // namespace vornhale::settings
