#include "base/Clock.h"

#include <ctime>

namespace vornhale::base {

CalendarDate systemToday()
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday};
}

std::string localTimeText(std::time_t when, const char* format)
{
    std::tm local{};
    localtime_r(&when, &local);
    char buf[64];
    const std::size_t n = std::strftime(buf, sizeof buf, format, &local);
    return std::string(buf, n);
}

std::string nowText(const char* format)
{
    return localTimeText(std::time(nullptr), format);
}

} // namespace vornhale::base
