#pragma once

#include <filesystem>

namespace vornhale::base {

/// The user's home folder: `$HOME` when it is set and not empty, else the home folder that
/// the system's user database gives the user running the program, else the current folder.
std::filesystem::path userHomeFolder();

} // namespace vornhale::base
