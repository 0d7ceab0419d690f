#pragma once

#include <string>
#include <string_view>

namespace vornhale::text {

/// Microsoft's Shift-JIS (CP932) to and from the program's UTF-8.
///
/// Decoding never fails: a byte that starts no valid CP932 character becomes a private
/// code point (U+F700 + byte) that counts one byte wide and encodes back to the same
/// byte, so an undecodable input line survives a read and a write unchanged.
/// Encoding writes "?" for a character that CP932 cannot hold, as Windows does.
std::string decodeSjis(std::string_view bytes);
/// The same for bytes the caller gives up; pure ASCII is taken over without a copy.
std::string decodeSjisTaking(std::string&& bytes);
/// The same into `out`, which keeps its room; pure ASCII is copied as it stands.
void decodeSjisInto(std::string& out, std::string_view bytes);
std::string encodeSjis(std::string_view utf8);

/// Number of CP932 bytes that `cp` takes when encoded: 1 for ASCII, half-width katakana,
/// a kept raw byte and anything written as "?"; 2 otherwise.
int sjisWidth(char32_t cp);

/// The private code point that stands for an undecodable input byte.
constexpr char32_t rawByteCodePoint(unsigned char b) { return 0xF700 + b; }

} // namespace vornhale::text
