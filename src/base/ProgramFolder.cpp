#include "base/ProgramFolder.h"

#include "base/UserHome.h"
#include "failure/Failure.h"

#include <cstdlib>
#include <system_error>

namespace vornhale::base {
namespace {

std::filesystem::path asFolder(std::filesystem::path p)
{
    p = std::filesystem::absolute(p).lexically_normal();
    if (!p.has_filename()) {
        return p;
    }
    return p / "";
}

} // namespace

ProgramFolder ProgramFolder::at(const std::filesystem::path& home)
{
    ProgramFolder f;
    f.strPath = asFolder(home);
    f.drive_path = f.strPath / "Work" / "";
    f.Temp_Files = f.strPath / "Temp_Files" / "";
    f.Error_Log = f.strPath / "Error_Log" / "";
    f.Henkan_Result = f.strPath / "Henkan_Result" / "";
    return f;
}

ProgramFolder ProgramFolder::resolve(const std::optional<std::filesystem::path>& home)
{
    if (home && !home->empty()) {
        return at(*home);
    }
    if (const char* env = std::getenv("VORNHALE_HOME"); env != nullptr && *env != '\0') {
        return at(env);
    }
    if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg != nullptr && *xdg != '\0') {
        return at(std::filesystem::path(xdg) / "vornhale");
    }
    return at(userHomeFolder() / ".local" / "share" / "vornhale");
}

void ProgramFolder::makeFolders() const
{
    for (const auto& dir : {strPath, drive_path, Temp_Files}) {
        std::error_code ec;
        std::filesystem::create_directories(dir, ec);
        if (!std::filesystem::is_directory(dir, ec)) {
            throw failure::Failure(failure::PathFileAccess, "パス名が無効です。 " + dir.string());
        }
    }
}

} // namespace vornhale::base
