#pragma once

#include <filesystem>

namespace vornhale::base {

/// The `cty.dat` a new program folder gets: `$VORNHALE_CTY_DAT` when set (empty for none),
/// else the one of the system's hamradio-files package when installed.
std::filesystem::path systemCtyDat();

/// The bundled default files: `$VORNHALE_DATA_DIR` when set, else `share/vornhale/data`
/// beside the `bin` folder of the running program when it is there (an installed program),
/// else the folder the build knows.
std::filesystem::path bundledDataFolder();

} // namespace vornhale::base
