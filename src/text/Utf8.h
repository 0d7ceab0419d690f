#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vornhale::text {

/// Decodes the code point that starts at byte `pos` of well-formed UTF-8 and advances `pos`
/// past it. A malformed byte is returned as itself and skipped, so a walk always ends.
char32_t nextCodePoint(std::string_view s, std::size_t& pos);

/// Appends the UTF-8 form of `cp`.
void appendCodePoint(std::string& out, char32_t cp);

/// True when every byte of `s` is ASCII (below 0x80), so that bytes and characters agree and
/// Shift-JIS and UTF-8 forms are the same bytes. Tests eight bytes at a time.
bool isAsciiText(std::string_view s);

/// Number of code points ("characters") in `s`.
std::size_t charCount(std::string_view s);

/// Byte offset of character number `index` (from 0); `s.size()` when past the end.
std::size_t byteOffsetOfChar(std::string_view s, std::size_t index);

} // namespace vornhale::text
