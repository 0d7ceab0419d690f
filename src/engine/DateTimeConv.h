#pragma once

#include <string>
#include <string_view>

namespace vornhale::engine {

/// The time shift of one run (`Option05`). Holds `call_core` from one record to the next, as
/// the call test requires: it is not cleared before a call.
class DateTimeConversion
{
public:
    /// `shift` is the member index of the `Option05` group that is on (0 to 3).
    explicit DateTimeConversion(int shift) : m_shift(shift) {}

    /// `date_time_conv`: applies the operator's choice to one record. `conv_date` is YYMMDD,
    /// `conv_time` "hhmm" or "hh:mm" with the time letter behind it.
    void date_time_conv(std::string& conv_date, std::string& conv_time, std::string_view q_call);

    /// The call test alone: whether `q_call` counts as a Japanese station. Updates `call_core`.
    bool isJapaneseStation(std::string_view q_call);

    const std::string& call_core() const { return m_call_core; }

private:
    int m_shift;
    std::string m_call_core;
};

/// Shifts a date and time by +9 hours into Japan time, in calendar arithmetic (two-digit
/// years of 50 and below are 20xx, above 50 are 19xx). The time comes back as four digits
/// without a colon, followed by "J". Digits that are not digits count as 0.
void to_jst(std::string& conv_date, std::string& conv_time);

/// The same by -9 hours into UTC, followed by "U".
void to_utc(std::string& conv_date, std::string& conv_time);

} // namespace vornhale::engine
