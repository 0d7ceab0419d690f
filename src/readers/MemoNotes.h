#pragma once

#include <string>
#include <string_view>

namespace vornhale::readers {

// The notes that operators write into the remark of a contact, as the readers of the
// zLog-like text stages take them apart.

/// `freq_from_memo`: with a frequency in kHz in the first pair of parentheses, `q_freq` becomes
/// that frequency in MHz, right-aligned as the text stages write it ("      1.825",
/// "     14.025"); a text of another length leaves `q_freq` as it was. "(0)" gives `q_freq`
/// the band. Then the parenthesised text is taken out of `q_memo`, an empty "()" becoming one
/// blank. The caller runs it only with `Check17` on and a "(" in the remark.
void freq_from_memo(std::string& q_memo, std::string_view q_band, std::string& q_freq);

/// `op_from_memo`: the operator between the first "%" (two places behind it) and the next
/// "%", trimmed; empty when the line holds no "%". The line counts up to its first NUL.
std::string op_from_memo(std::string_view line);

/// `memo_from_line`: the remark of a zLog text line, behind column 79 ("A") or 72 ("T"),
/// without "-DUPE-", behind its last "%%", with the parenthesised part replaced by a blank.
std::string memo_from_line(std::string_view line, std::string_view file_letter);

} // namespace vornhale::readers
