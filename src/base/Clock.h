#pragma once

#include <ctime>
#include <string>

namespace vornhale::base {

/// A day of the calendar.
struct CalendarDate
{
    int year = 0;
    int month = 0;
    int day = 0;
};

/// Today by the local clock: the one place the program asks the system for the date.
CalendarDate systemToday();

/// The local time `when` in a `strftime` format ("%Y%m%d", "%H:%M:%S").
std::string localTimeText(std::time_t when, const char* format);

/// The local time now in a `strftime` format.
std::string nowText(const char* format);

} // namespace vornhale::base
