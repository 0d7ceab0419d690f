#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vornhale::text {

/// Length of `text` in Shift-JIS bytes: one for ASCII and half-width katakana, two for any
/// other character that Shift-JIS holds.
std::size_t Len_sjis(std::string_view text);

/// Byte-counted substring on which all fixed-column reading rests. `start` is a byte position
/// from 1; `length` a byte count (absent: to the end). A start inside a double-byte character
/// begins at the next whole character; a double-byte character that would cross the end is
/// left out, so the result may be one byte short. With `byteCut` the bytes are taken as they
/// fall. Throws Failure 5 for a start below 1 or a negative length.
std::string Mid_sjis(std::string_view text, long start, std::optional<long> length = std::nullopt,
                     bool byteCut = false);

/// `text` up to, and without, its first NUL character.
std::string_view Cut_nul(std::string_view text);

/// `text` left-aligned in a column of `width` Shift-JIS bytes: blank-padded, or cut as
/// `Mid_sjis` cuts.
std::string sjisColumn(std::string_view text, long width);
/// Appends `sjisColumn(text, width)` to `out`; ASCII text is cut and padded where it stands.
void appendSjisColumn(std::string& out, std::string_view text, long width);

} // namespace vornhale::text
