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

fs::path bundledDataFolder()
{
    if (const char* env = std::getenv("VORNHALE_DATA_DIR"); env != nullptr && *env != '\0') {
        return env;
    }
    return VORNHALE_BUNDLED_DATA_DIR;
}

} // namespace vornhale::base
