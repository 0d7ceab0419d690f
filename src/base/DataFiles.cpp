#include "base/DataFiles.h"

#include <cstdlib>

namespace vornhale::base {

namespace fs = std::filesystem;

fs::path systemCtyDat()
{
    if (const char* env = std::getenv("VORNHALE_CTY_DAT"); env != nullptr) {
        return env;
    }
    std::error_code ec;
    const fs::path debian = "/usr/share/hamradio-files/cty.dat";
    return fs::is_regular_file(debian, ec) ? debian : fs::path();
}

namespace {

// An installed program finds its files from its own place: `<prefix>/bin/<program>` beside
// `<prefix>/share/vornhale/data`, wherever the prefix was unpacked. Empty when the running
// program cannot be found or has no such folder beside it (a program in the build tree).
fs::path installedDataFolder()
{
    std::error_code ec;
    const fs::path self = fs::read_symlink("/proc/self/exe", ec);
    if (ec || self.empty()) {
        return {};
    }
    fs::path data = self.parent_path().parent_path() / "share" / "vornhale" / "data";
    return fs::is_directory(data, ec) ? data : fs::path();
}

} // namespace

fs::path bundledDataFolder()
{
    if (const char* env = std::getenv("VORNHALE_DATA_DIR"); env != nullptr && *env != '\0') {
        return env;
    }
    if (fs::path installed = installedDataFolder(); !installed.empty()) {
        return installed;
    }
    return VORNHALE_BUNDLED_DATA_DIR;
}

} // namespace vornhale::base
