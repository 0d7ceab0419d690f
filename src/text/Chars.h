#pragma once

#include "text/Utf8.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::text {

// Character-counted text operations. A "character" is a code point of the UTF-8 text; a
// "blank" is U+0020 only. Positions are counted from 1, as the log formats count them.

/// Removes blanks at both ends, nothing else.
std::string_view trim(std::string_view s);
std::string_view trimLeft(std::string_view s);
std::string_view trimRight(std::string_view s);

/// The first / last `n` characters (all of `s` when it is shorter).
std::string left(std::string_view s, std::size_t n);
std::string right(std::string_view s, std::size_t n);

/// `length` characters from character `start` (from 1); to the end when absent.
std::string mid(std::string_view s, std::size_t start, std::optional<std::size_t> length = {});

/// Character position (from 1) of the first `needle` at or after character `from`; 0 if absent.
std::size_t instr(std::string_view s, std::string_view needle, std::size_t from = 1);
/// Character position (from 1) of the last `needle`; 0 if absent.
std::size_t instrRev(std::string_view s, std::string_view needle);

bool contains(std::string_view s, std::string_view needle);
bool startsWith(std::string_view s, std::string_view prefix);
bool endsWith(std::string_view s, std::string_view suffix);

/// Every `from` replaced by `to`, left to right, in one pass.
std::string replaceAll(std::string_view s, std::string_view from, std::string_view to);

/// Every `from` replaced by `to`, compared without regard to case.
std::string replaceAllNoCase(std::string_view s, std::string_view from, std::string_view to);

/// Upper case of ASCII and full-width Latin letters; other characters unchanged.
std::string upper(std::string_view s);
/// Lower case of ASCII and full-width Latin letters.
std::string lower(std::string_view s);
/// Whether `a` equals `b` without regard to case.
bool equalsNoCase(std::string_view a, std::string_view b);

/// `s` padded on the right with blanks and cut, to exactly `width` characters.
std::string padRight(std::string_view s, std::size_t width);

/// `s` split at every `sep`; an empty `s` gives one empty piece.
std::vector<std::string> split(std::string_view s, std::string_view sep);

/// Whether a character is an ASCII digit.
inline bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Appends the decimal digits of `value` to `out`, zeros in front up to `width` digits, as
/// printf's "%0*llu" writes them.
void appendZeroPadded(std::string& out, unsigned long long value, std::size_t width);

/// Number of characters of `s` that are ASCII digits.
std::size_t countDigits(std::string_view s);

/// The leading number of `s` as BASIC's Val reads it: blanks skipped, sign, digits and one
/// point; 0 when none.
double val(std::string_view s);

/// A text as the language's conversions to a number take it: blanks and tabs around, a sign,
/// digits with one point, an exponent with E or D. Nothing when the conversion would fail or
/// the value is not finite.
std::optional<double> toNumber(std::string_view s);

} // namespace vornhale::text
