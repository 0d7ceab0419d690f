#include "settings/PeriodModel.h"

#include "text/Chars.h"

#include <cstdio>
#include <ctime>

namespace vornhale::settings {
namespace {

constexpr std::array<int, 6> kFirst = {2020, 12, 31, 2020, 12, 31};
constexpr std::array<int, 6> kLast = {1930, 1, 1, 1930, 1, 1};

std::vector<std::string> countDown(int from, int to)
{
    std::vector<std::string> items;
    for (int v = from; v >= to; --v) {
        items.push_back(std::to_string(v));
    }
    return items;
}

std::string withoutSeparators(std::string_view date)
{
    return text::replaceAll(text::replaceAll(date, "/", ""), "-", "");
}

std::size_t characters(std::string_view s)
{
    std::size_t n = 0;
    for (const char c : s) {
        if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) {
            ++n;
        }
    }
    return n;
}

std::string twoDigits(const std::string& part)
{
    return characters(part) == 1 ? "0" + part : part;
}

bool systemDateFlag(const Options& options)
{
    return text::val(options.value("use_system_date_flag")) == 1;
}

} // namespace

std::string dateDigits(const CalendarDate& date)
{
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%04d%02d%02d", date.year, date.month, date.day);
    return buffer;
}

std::string periodText(std::string_view startDate, std::string_view endDate)
{
    const std::string s = withoutSeparators(startDate);
    const std::string e = withoutSeparators(endDate);
    return text::mid(s, 1, 4) + " 年 " + text::mid(s, 5, 2) + " 月 " + text::mid(s, 7, 2) +
           " 日　～  " + text::mid(e, 1, 4) + " 年 " + text::mid(e, 5, 2) + " 月 " +
           text::mid(e, 7, 2) + " 日";
}

std::string periodToolTip(std::string_view startDate, std::string_view endDate)
{
    return "Start Date : " + std::string(startDate) + " ，End Date : " + std::string(endDate);
}

std::string mainWindowTitle(std::string_view version, std::string_view period)
{
    return "  Vornhale  " + std::string(version) + std::string(period) + "     @Tolmer";
}

StartPeriod start_Get_Date(Options& options, const CalendarDate& today, std::string_view version)
{
    if (systemDateFlag(options)) {
        options.set("End_date", dateDigits(today));
    }
    StartPeriod p;
    p.period = periodText(options.value("Start_date"), options.value("End_date"));
    p.title = mainWindowTitle(version, p.period);
    return p;
}

PeriodModel::PeriodModel(Options& options, std::string version, Today today)
    : m_options(options), m_version(std::move(version)), m_today(std::move(today))
{
}

std::size_t PeriodModel::slot(int list) const
{
    return list >= 1 && list <= 6 ? static_cast<std::size_t>(list - 1) : 6;
}

const std::vector<std::string>& PeriodModel::items(int list) const
{
    static const std::vector<std::string> none;
    const std::size_t i = slot(list);
    return i < 6 ? m_items[i] : none;
}

int PeriodModel::listIndex(int list) const
{
    const std::size_t i = slot(list);
    return i < 6 ? m_index[i] : -1;
}

const std::string& PeriodModel::part(int list) const
{
    static const std::string none;
    const std::size_t i = slot(list);
    return i < 6 ? m_parts[i] : none;
}

void PeriodModel::Form_Load()
{
    for (std::size_t i = 0; i < 6; ++i) {
        m_items[i] = countDown(kFirst[i], kLast[i]);
    }
    if (m_options.value("Start_date").empty()) {
        m_options.set("Start_date", "19600101");
    }
    const std::string start = m_options.value("Start_date");
    m_parts[0] = text::mid(start, 1, 4);
    m_parts[1] = text::mid(start, 5, 2);
    m_parts[2] = text::mid(start, 7, 2);

    std::string end = withoutSeparators(m_options.value("End_date"));
    if (end.empty()) {
        end = dateDigits(m_today());
    }
    m_options.set("End_date", end);
    m_parts[3] = text::mid(end, 1, 4);
    m_parts[4] = text::mid(end, 5, 2);
    m_parts[5] = text::mid(end, 7, 2);

    if (systemDateFlag(m_options)) {
        setCheck1(true);
        cmdGet_date_Click();
    }
    Set_len();
}

void PeriodModel::Set_len()
{
    for (std::size_t i = 0; i < 6; ++i) {
        // The lists count down, so the place of a value is its distance from the top.
        const double place = kFirst[i] - text::val(m_parts[i]);
        const bool inList = place >= 0 && place < static_cast<double>(m_items[i].size()) &&
                            place == static_cast<int>(place);
        m_index[i] = inList ? static_cast<int>(place) : -1;
    }
}

void PeriodModel::List_Click(int list, int index)
{
    const std::size_t i = slot(list);
    if (i >= 6 || index < 0 || static_cast<std::size_t>(index) >= m_items[i].size()) {
        return;
    }
    m_parts[i] = m_items[i][static_cast<std::size_t>(index)];
    Set_len();
}

void PeriodModel::cmdGet_date_Click()
{
    const CalendarDate today = m_today();
    m_parts[3] = std::to_string(today.year);
    m_parts[4] = std::to_string(today.month);
    m_parts[5] = std::to_string(today.day);
    Set_len();
}

void PeriodModel::setCheck1(bool on)
{
    if (on == m_check1) {
        return;
    }
    m_check1 = on;
    if (on) {
        cmdGet_date_Click();
        m_getDateEnabled = false;
        m_options.set("use_system_date_flag", "1");
    } else {
        m_getDateEnabled = true;
        m_options.set("use_system_date_flag", "0");
    }
}

bool PeriodModel::cmdOK_Click()
{
    for (const std::size_t i : {1, 2, 4, 5}) {
        m_parts[i] = twoDigits(m_parts[i]);
    }
    const std::string start = m_parts[0] + m_parts[1] + m_parts[2];
    const std::string end = m_parts[3] + m_parts[4] + m_parts[5];
    m_options.set("Start_date", start);
    m_options.set("End_date", end);
    if (text::val(start) <= text::val(end)) {
        m_title = mainWindowTitle(m_version, periodText(start, end));
        m_open = false;
        return true;
    }
    m_label7 = std::string(kDateError);
    return false;
}

} // namespace vornhale::settings
