#pragma once

#include "base/Clock.h"
#include "settings/Options.h"

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::settings {

using base::CalendarDate;
using base::systemToday;
/// Eight digits, year month day: 2024-05-01 gives "20240501".
std::string dateDigits(const CalendarDate& date);

/// The period as the main window shows it: year " 年 " month " 月 " day " 日　～  " and the same
/// for the end, the parts cut from each date after "/" and "-" are removed (characters 1 to
/// 4, 5 and 6, 7 and 8).
std::string periodText(std::string_view startDate, std::string_view endDate);
/// The tool-tip of `cmdDate`: "Start Date : ", start, " ，End Date : ", end, as stored.
std::string periodToolTip(std::string_view startDate, std::string_view endDate);
/// The main window's title: "  Vornhale  ", the version, the period text, "     @Tolmer".
std::string mainWindowTitle(std::string_view version, std::string_view period);

/// What `start_Get_Date` leaves for the main window.
struct StartPeriod
{
    std::string period;
    std::string title;
};
/// At start-up: with `use_system_date_flag` at 1, `End_date` becomes today's eight digits;
/// then the period text and the title are built from `Start_date` and `End_date`.
StartPeriod start_Get_Date(Options& options, const CalendarDate& today, std::string_view version);

/// The period dialog `frmDate`: the start and end of the period for which history is
/// extracted, as three lists each (year, month, day). The values live in `Start_date`,
/// `End_date` and `use_system_date_flag` of the options.
class PeriodModel
{
public:
    static constexpr std::string_view kCaption = "期 間";
    static constexpr std::string_view kCheck1 = "終了日はｼｽﾃﾑ日付";
    static constexpr std::string_view kCmdGetDate = "システム日付取得";
    static constexpr std::string_view kCmdOK = "Ｏ Ｋ";
    static constexpr std::string_view kLabel6 =
        "変更したら必ず確定するために青地に白抜きにすること";
    static constexpr std::string_view kDateError = "日付けの設定エラーです。 抽出開始 ＞ 抽出終了";

    using Today = std::function<CalendarDate()>;

    /// `options` must outlive the model; `version` goes into the main window's title.
    PeriodModel(Options& options, std::string version, Today today = systemToday);

    /// Fills the lists and takes the stored period: an empty `Start_date` becomes "19600101";
    /// `End_date` loses its "/" and "-", and an empty one becomes today; with
    /// `use_system_date_flag` at 1 `Check1` goes on and the end follows today.
    void Form_Load();

    /// The entries of `List1` to `List6` (1 to 6): years 2020 to 1930 (start `List1`, end
    /// `List4`), months 12 to 1 (`List2`, `List5`), days 31 to 1 (`List3`, `List6`).
    const std::vector<std::string>& items(int list) const;
    /// The selected entry of a list, -1 when none (a stored value the list does not hold).
    int listIndex(int list) const;
    /// The stored year, month or day that a list stands for.
    const std::string& part(int list) const;

    /// A click on an entry stores its text as the year, month or day. An index outside the
    /// list changes nothing.
    void List_Click(int list, int index);
    /// The end year, month and day from today.
    void cmdGet_date_Click();
    /// Sets `Check1`: on runs `cmdGet_date` and disables it, the flag becomes "1"; off enables
    /// it, the flag becomes "0".
    void setCheck1(bool on);
    bool Check1() const { return m_check1; }
    bool getDateEnabled() const { return m_getDateEnabled; }

    /// Pads month and day to two digits and stores the eight-digit joins in `Start_date` and
    /// `End_date`. A start not later than the end (as numbers) is accepted: the main window's
    /// title is rebuilt and the dialog closes (true). Otherwise `Label7` shows the error and
    /// the dialog stays open (false); the dates are stored either way.
    bool cmdOK_Click();

    const std::string& Label7() const { return m_label7; }
    bool isOpen() const { return m_open; }
    /// The main window's title as the last accepted `cmdOK` built it; empty before.
    const std::string& mainTitle() const { return m_title; }

private:
    void Set_len();
    std::size_t slot(int list) const;

    Options& m_options;
    std::string m_version;
    Today m_today;
    std::array<std::vector<std::string>, 6> m_items;
    std::array<int, 6> m_index{-1, -1, -1, -1, -1, -1};
    // Start year, month, day, then end year, month, day: the order of List1 to List6.
    std::array<std::string, 6> m_parts;
    bool m_check1 = false;
    bool m_getDateEnabled = true;
    bool m_open = true;
    std::string m_label7;
    std::string m_title;
};

} // namespace vornhale::settings
