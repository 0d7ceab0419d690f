#include "text/Utf8.h"

#include <cstdint>
#include <cstring>

namespace vornhale::text {

bool isAsciiText(std::string_view s)
{
    const char* p = s.data();
    std::size_t n = s.size();
    auto anyHigh = [](const char* at, std::size_t size) {
        std::uint64_t word = 0;
        std::memcpy(&word, at, size);
        return (word & 0x8080808080808080ull) != 0;
    };
    for (; n >= 8; p += 8, n -= 8) {
        if (anyHigh(p, 8)) {
            return false;
        }
    }
    // The rest in at most three steps of four, two and one bytes: fields are short.
    if (n >= 4) {
        if (anyHigh(p, 4)) {
            return false;
        }
        p += 4;
        n -= 4;
    }
    if (n >= 2) {
        if (anyHigh(p, 2)) {
            return false;
        }
        p += 2;
        n -= 2;
    }
    return n == 0 || static_cast<unsigned char>(*p) < 0x80;
}

char32_t nextCodePoint(std::string_view s, std::size_t& pos)
{
    const auto b0 = static_cast<unsigned char>(s[pos]);
    if (b0 < 0x80) {
        ++pos;
        return b0;
    }
    auto cont = [&](std::size_t i) {
        return i < s.size() && (static_cast<unsigned char>(s[i]) & 0xC0) == 0x80;
    };
    if ((b0 & 0xE0) == 0xC0 && cont(pos + 1)) {
        char32_t cp = ((b0 & 0x1F) << 6) | (static_cast<unsigned char>(s[pos + 1]) & 0x3F);
        pos += 2;
        return cp;
    }
    if ((b0 & 0xF0) == 0xE0 && cont(pos + 1) && cont(pos + 2)) {
        char32_t cp = ((b0 & 0x0F) << 12) | ((static_cast<unsigned char>(s[pos + 1]) & 0x3F) << 6) |
                      (static_cast<unsigned char>(s[pos + 2]) & 0x3F);
        pos += 3;
        return cp;
    }
    if ((b0 & 0xF8) == 0xF0 && cont(pos + 1) && cont(pos + 2) && cont(pos + 3)) {
        char32_t cp = ((b0 & 0x07) << 18) | ((static_cast<unsigned char>(s[pos + 1]) & 0x3F) << 12) |
                      ((static_cast<unsigned char>(s[pos + 2]) & 0x3F) << 6) |
                      (static_cast<unsigned char>(s[pos + 3]) & 0x3F);
        pos += 4;
        return cp;
    }
    ++pos;
    return b0;
}

void appendCodePoint(std::string& out, char32_t cp)
{
    if (cp < 0x80) {
        out.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else if (cp < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
}

std::size_t charCount(std::string_view s)
{
    std::size_t n = 0;
    for (std::size_t pos = 0; pos < s.size(); ++n) {
        nextCodePoint(s, pos);
    }
    return n;
}

std::size_t byteOffsetOfChar(std::string_view s, std::size_t index)
{
    std::size_t pos = 0;
    for (std::size_t i = 0; i < index && pos < s.size(); ++i) {
        nextCodePoint(s, pos);
    }
    return pos;
}

} // namespace vornhale::text
