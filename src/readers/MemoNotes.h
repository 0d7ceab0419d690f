#pragma once

#include <string>
#include <string_view>

namespace vornhale::readers {

// The notes that operators write into the remark of a contact, as the readers of the
// zLog-like text stages take them apart.

/// The frequency that rig control wrote in parentheses, the one rule of every reader: the
/// text behind the first "(" up to the next "(", with every ")" removed and trimmed, is a
/// frequency in kHz without its point. Four to seven characters become MHz text with the last
/// three digits behind the point ("1.825", "14.025"); any other length leaves `q_freq` as the
/// record before left it. So a remark that goes on behind the ")" gives no frequency. A text
/// holding "(0)" gives `q_band`.
void frequencyInParentheses(std::string_view note, std::string_view q_band, std::string& q_freq);

/// `freq_from_memo`: `frequencyInParentheses` on the remark, the frequency right-aligned as the
/// text stages write it ("      1.825", "     14.025"); then the parenthesised text is taken
/// out of `q_memo`, an empty "()" becoming one blank. The caller runs it only with `Check17` on and
/// a "(" in the remark.
void freq_from_memo(std::string& q_memo, std::string_view q_band, std::string& q_freq);

/// `op_from_memo`: the operator between the first "%" (two places behind it) and the next
/// "%", trimmed; empty when the line holds no "%". The line counts up to its first NUL.
std::string op_from_memo(std::string_view line);

/// `memo_from_line`: the remark of a zLog text line, behind column 79 ("A") or 72 ("T"),
/// without "-DUPE-", behind its last "%%", with the parenthesised part replaced by a blank.
std::string memo_from_line(std::string_view line, std::string_view file_letter);

} // namespace vornhale::readers
