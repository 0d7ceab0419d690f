#include "text/Chars.h"

#include "text/Utf8.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace vornhale::text {
namespace {

bool isAscii(std::string_view s) { return isAsciiText(s); }

// Character index (from 0) of byte offset `off`, which must fall on a character boundary.
std::size_t charIndexOfByte(std::string_view s, std::size_t off)
{
    return charCount(s.substr(0, off));
}

} // namespace

std::string_view trimLeft(std::string_view s)
{
    const auto b = s.find_first_not_of(' ');
    return b == std::string_view::npos ? std::string_view{} : s.substr(b);
}

std::string_view trimRight(std::string_view s)
{
    const auto e = s.find_last_not_of(' ');
    return e == std::string_view::npos ? std::string_view{} : s.substr(0, e + 1);
}

std::string_view trim(std::string_view s) { return trimRight(trimLeft(s)); }

std::string left(std::string_view s, std::size_t n)
{
    if (isAscii(s)) {
        return std::string(s.substr(0, n));
    }
    return std::string(s.substr(0, byteOffsetOfChar(s, n)));
}

std::string right(std::string_view s, std::size_t n)
{
    if (isAscii(s)) {
        return std::string(s.size() > n ? s.substr(s.size() - n) : s);
    }
    const std::size_t count = charCount(s);
    return count > n ? std::string(s.substr(byteOffsetOfChar(s, count - n))) : std::string(s);
}

std::string mid(std::string_view s, std::size_t start, std::optional<std::size_t> length)
{
    if (start < 1) {
        start = 1;
    }
    if (isAscii(s)) {
        if (start > s.size()) {
            return {};
        }
        return std::string(length ? s.substr(start - 1, *length) : s.substr(start - 1));
    }
    const std::size_t b = byteOffsetOfChar(s, start - 1);
    std::string_view rest = s.substr(b);
    return length ? std::string(rest.substr(0, byteOffsetOfChar(rest, *length))) : std::string(rest);
}

std::size_t instr(std::string_view s, std::string_view needle, std::size_t from)
{
    if (from < 1) {
        from = 1;
    }
    const std::size_t b = isAscii(s) ? from - 1 : byteOffsetOfChar(s, from - 1);
    if (b > s.size()) {
        return 0;
    }
    const auto found = s.find(needle, b);
    if (found == std::string_view::npos) {
        return 0;
    }
    return (isAscii(s) ? found : charIndexOfByte(s, found)) + 1;
}

std::size_t instrRev(std::string_view s, std::string_view needle)
{
    const auto found = s.rfind(needle);
    if (found == std::string_view::npos) {
        return 0;
    }
    return (isAscii(s) ? found : charIndexOfByte(s, found)) + 1;
}

bool contains(std::string_view s, std::string_view needle)
{
    return s.find(needle) != std::string_view::npos;
}

bool startsWith(std::string_view s, std::string_view prefix) { return s.starts_with(prefix); }
bool endsWith(std::string_view s, std::string_view suffix) { return s.ends_with(suffix); }

std::string replaceAll(std::string_view s, std::string_view from, std::string_view to)
{
    std::string out;
    if (from.empty()) {
        return std::string(s);
    }
    out.reserve(s.size());
    std::size_t pos = 0;
    for (;;) {
        const auto found = s.find(from, pos);
        if (found == std::string_view::npos) {
            break;
        }
        out.append(s.substr(pos, found - pos));
        out.append(to);
        pos = found + from.size();
    }
    out.append(s.substr(pos));
    return out;
}

std::string replaceAllNoCase(std::string_view s, std::string_view from, std::string_view to)
{
    // Upper-casing keeps byte positions: only ASCII and full-width Latin letters change,
    // each into a letter of the same width.
    const std::string us = upper(s), uf = upper(from);
    if (uf.empty()) {
        return std::string(s);
    }
    std::string out;
    std::size_t pos = 0;
    for (std::size_t found; (found = us.find(uf, pos)) != std::string::npos; pos = found + uf.size()) {
        out.append(s.substr(pos, found - pos));
        out.append(to);
    }
    out.append(s.substr(pos));
    return out;
}

namespace {
template <typename Map>
std::string mapLetters(std::string_view s, Map map)
{
    std::string out;
    out.reserve(s.size());
    for (std::size_t pos = 0; pos < s.size();) {
        const auto b = static_cast<unsigned char>(s[pos]);
        if (b < 0x80) {
            out.push_back(static_cast<char>(map(b)));
            ++pos;
            continue;
        }
        const std::size_t start = pos;
        const char32_t cp = nextCodePoint(s, pos);
        if (pos - start == 1) {
            out.push_back(s[start]); // a malformed byte stays as it is
        } else {
            appendCodePoint(out, map(cp));
        }
    }
    return out;
}
} // namespace

std::string upper(std::string_view s)
{
    if (isAscii(s)) {
        std::string out(s);
        for (char& c : out) {
            if (c >= 'a' && c <= 'z') {
                c = static_cast<char>(c - 0x20);
            }
        }
        return out;
    }
    return mapLetters(s, [](char32_t c) -> char32_t {
        if ((c >= 'a' && c <= 'z') || (c >= 0xFF41 && c <= 0xFF5A)) {
            return c - 0x20;
        }
        return c;
    });
}

std::string lower(std::string_view s)
{
    return mapLetters(s, [](char32_t c) -> char32_t {
        if ((c >= 'A' && c <= 'Z') || (c >= 0xFF21 && c <= 0xFF3A)) {
            return c + 0x20;
        }
        return c;
    });
}

bool equalsNoCase(std::string_view a, std::string_view b)
{
    // Settings keys and call signs are ASCII: compare them in place, without two upper-case
    // copies. Other text takes the full mapping.
    if (isAscii(a) && isAscii(b)) {
        if (a.size() != b.size()) {
            return false;
        }
        for (std::size_t i = 0; i < a.size(); ++i) {
            char x = a[i], y = b[i];
            x = (x >= 'a' && x <= 'z') ? static_cast<char>(x - 0x20) : x;
            y = (y >= 'a' && y <= 'z') ? static_cast<char>(y - 0x20) : y;
            if (x != y) {
                return false;
            }
        }
        return true;
    }
    return upper(a) == upper(b);
}

std::string padRight(std::string_view s, std::size_t width)
{
    std::string out = left(s, width);
    const std::size_t n = isAscii(out) ? out.size() : charCount(out);
    out.append(width > n ? width - n : 0, ' ');
    return out;
}

std::vector<std::string> split(std::string_view s, std::string_view sep)
{
    std::vector<std::string> parts;
    std::size_t pos = 0;
    for (;;) {
        const auto found = s.find(sep, pos);
        if (found == std::string_view::npos || sep.empty()) {
            parts.emplace_back(s.substr(pos));
            return parts;
        }
        parts.emplace_back(s.substr(pos, found - pos));
        pos = found + sep.size();
    }
}

void appendZeroPadded(std::string& out, unsigned long long value, std::size_t width)
{
    char digits[24];
    const char* end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    const auto count = static_cast<std::size_t>(end - digits);
    if (count < width) {
        out.append(width - count, '0');
    }
    out.append(digits, count);
}

std::size_t countDigits(std::string_view s)
{
    return static_cast<std::size_t>(std::count_if(s.begin(), s.end(), isDigit));
}

double val(std::string_view s)
{
    std::size_t i = 0;
    while (i < s.size() && (s[i] == ' ' || s[i] == '\t')) {
        ++i;
    }
    double sign = 1;
    if (i < s.size() && (s[i] == '-' || s[i] == '+')) {
        sign = s[i] == '-' ? -1 : 1;
        ++i;
    }
    double value = 0;
    bool point = false;
    double scale = 0.1;
    for (; i < s.size(); ++i) {
        if (isDigit(s[i])) {
            if (point) {
                value += (s[i] - '0') * scale;
                scale /= 10;
            } else {
                value = value * 10 + (s[i] - '0');
            }
        } else if (s[i] == '.' && !point) {
            point = true;
        } else if (s[i] != ' ') {
            break;
        }
    }
    return sign * value;
}


static std::string_view trimSpace(std::string_view s)
{
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) {
        s.remove_prefix(1);
    }
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) {
        s.remove_suffix(1);
    }
    return s;
}

std::optional<double> toNumber(std::string_view text)
{
    const std::string_view s = trimSpace(text);
    std::size_t i = 0;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) {
        ++i;
    }
    std::size_t digits = 0;
    while (i < s.size() && isDigit(s[i])) {
        ++i;
        ++digits;
    }
    if (i < s.size() && s[i] == '.') {
        ++i;
        while (i < s.size() && isDigit(s[i])) {
            ++i;
            ++digits;
        }
    }
    if (digits == 0) {
        return std::nullopt;
    }
    std::string number(s.substr(0, i));
    if (i < s.size() && (s[i] == 'e' || s[i] == 'E' || s[i] == 'd' || s[i] == 'D')) {
        std::size_t j = i + 1;
        if (j < s.size() && (s[j] == '+' || s[j] == '-')) {
            ++j;
        }
        const std::size_t expStart = j;
        while (j < s.size() && isDigit(s[j])) {
            ++j;
        }
        if (j == expStart) {
            return std::nullopt;
        }
        number += 'e';
        number += s.substr(i + 1, j - i - 1);
        i = j;
    }
    if (i != s.size()) {
        return std::nullopt;
    }
    const double value = std::strtod(number.c_str(), nullptr);
    if (!std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

} // namespace vornhale::text
