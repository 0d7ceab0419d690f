#include "engine/DateTimeConv.h"

#include "text/Chars.h"
#include "text/Utf8.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace vornhale::engine {
namespace {

int number(std::string_view s) { return static_cast<int>(text::val(s)); }

// Whether `call` starts with a letter of [from-to] or `first`, then a digit.
bool matchesJapanesePattern(std::string_view call)
{
    auto letterIn = [](char c, char from, char to) { return c >= from && c <= to; };
    if (call.size() < 3) {
        return false;
    }
    const bool prefix = ((call[0] == '7' || call[0] == '8') && letterIn(call[1], 'J', 'N')) ||
                        (call[0] == 'J' && letterIn(call[1], 'A', 'S'));
    return prefix && text::isDigit(call[2]);
}

// Two digits of a value from 0 to 99 appended; any other value as "%02d" writes it.
void appendTwoDigits(std::string& out, long v)
{
    if (v >= 0 && v <= 99) {
        out += static_cast<char>('0' + v / 10);
        out += static_cast<char>('0' + v % 10);
        return;
    }
    char buf[24];
    const int n = std::snprintf(buf, sizeof buf, "%02ld", v);
    out.append(buf, static_cast<std::size_t>(std::max(n, 0)));
}

void shift(std::string& conv_date, std::string& conv_time, int hours, const char* letter)
{
    using namespace std::chrono;
    // The parts as Val reads them; non-ASCII text takes the character-counting helpers.
    int yy = 0, mm = 0, dd = 0, hh = 0, mi = 0;
    if (text::isAsciiText(conv_date)) {
        const std::string_view d = conv_date;
        yy = number(d.substr(0, 2));
        mm = number(d.size() > 2 ? d.substr(2, 2) : std::string_view());
        dd = number(d.size() > 4 ? d.substr(4, 2) : std::string_view());
    } else {
        yy = number(text::left(conv_date, 2));
        mm = number(text::mid(conv_date, 3, 2));
        dd = number(text::mid(conv_date, 5, 2));
    }
    if (text::isAsciiText(conv_time)) {
        const std::string_view t = conv_time;
        const std::size_t from = t.find(':') != std::string_view::npos ? 3 : 2;
        hh = number(t.substr(0, 2));
        mi = number(t.size() > from ? t.substr(from, 2) : std::string_view());
    } else {
        hh = number(text::left(conv_time, 2));
        mi = text::contains(conv_time, ":") ? number(text::mid(conv_time, 4, 2))
                                            : number(text::mid(conv_time, 3, 2));
    }
    const int year = (yy <= 50 ? 2000 : 1900) + yy;
    // Calendar arithmetic: months and days out of range roll over as a calendar would.
    const year_month ym = year_month(std::chrono::year(year), month(1)) + months(mm - 1);
    const sys_seconds when = sys_days(ym / std::chrono::day(1)) + days(dd - 1) +
                             std::chrono::hours(hh + hours) + minutes(mi);
    const sys_days date = floor<days>(when);
    const year_month_day ymd(date);
    const hh_mm_ss hms(when - date);
    conv_date.clear();
    appendTwoDigits(conv_date, static_cast<int>(ymd.year()) % 100);
    appendTwoDigits(conv_date, static_cast<unsigned>(ymd.month()));
    appendTwoDigits(conv_date, static_cast<unsigned>(ymd.day()));
    conv_time.clear();
    appendTwoDigits(conv_time, static_cast<long>(hms.hours().count()));
    appendTwoDigits(conv_time, static_cast<long>(hms.minutes().count()));
    conv_time += letter;
}

} // namespace

void to_jst(std::string& conv_date, std::string& conv_time) { shift(conv_date, conv_time, 9, "J"); }
void to_utc(std::string& conv_date, std::string& conv_time) { shift(conv_date, conv_time, -9, "U"); }

bool DateTimeConversion::isJapaneseStation(std::string_view q_call)
{
    if (q_call.find('/') == std::string_view::npos) {
        // Every suffix and inner mark holds a "/": a call without one is its own core.
        m_call_core.assign(q_call);
        return matchesJapanesePattern(m_call_core);
    }
    std::string call(q_call);
    const std::string up = text::upper(call);
    if (text::endsWith(up, "/P") || text::endsWith(up, "/M") || text::endsWith(up, "/MM") ||
        text::endsWith(up, "/QRPP") || text::endsWith(up, "/QRP")) {
        // "/M" goes before "/MM", so a call ending in "/MM" keeps an "M".
        call = up;
        for (const char* suffix : {"/P", "/M", "/MM", "/CM", "/QRP", "/QRPP"}) {
            call = text::replaceAll(call, suffix, "");
        }
    }
    // The inner marks, each tested in the call as it stands and removed from its capitals.
    const std::pair<const char*, const char*> inner[] = {{"/QRP/", "/QRP"}, {"/QRPP/", "/QRPP"},
                                                         {"/M/", "/M"},     {"/MM/", "/MM"},
                                                         {"/CM/", "/CM"},   {"/P/", "/P"}};
    for (const auto& [mark, removed] : inner) {
        if (text::contains(call, mark)) {
            call = text::replaceAll(text::upper(call), removed, "");
        }
    }
    const auto slash = call.find('/');
    if (slash == std::string::npos) {
        m_call_core = call;
    } else {
        const std::string first = call.substr(0, slash);
        const std::string rest = call.substr(slash + 1);
        const std::string second = rest.substr(0, rest.find('/'));
        const std::size_t a = text::charCount(first), b = text::charCount(second);
        if (b == 1) {
            m_call_core = first;
        } else if (b >= 2) {
            if (a > b) {
                m_call_core = second;
            } else if (a < b) {
                m_call_core = first;
            }
        }
    }
    return matchesJapanesePattern(m_call_core);
}

void DateTimeConversion::date_time_conv(std::string& conv_date, std::string& conv_time,
                                        std::string_view q_call)
{
    switch (m_shift) {
    case 1:
        to_jst(conv_date, conv_time);
        break;
    case 2:
        to_utc(conv_date, conv_time);
        break;
    case 3:
        if (isJapaneseStation(q_call)) {
            to_jst(conv_date, conv_time);
        }
        break;
    default:
        break;
    }
}

} // namespace vornhale::engine
