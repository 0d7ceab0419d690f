#include "base/UserHome.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace vornhale::base {

std::filesystem::path userHomeFolder()
{
    if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0') {
        return home;
    }
    // A service or a cron job may run without HOME: the user database still knows the folder.
    long size = ::sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(size > 0 ? static_cast<std::size_t>(size) : 16384);
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 &&
        found != nullptr && found->pw_dir != nullptr && *found->pw_dir != '\0') {
        return found->pw_dir;
    }
    return std::filesystem::current_path();
}

} // namespace vornhale::base
