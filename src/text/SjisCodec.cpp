#include "text/SjisCodec.h"

#include "text/Utf8.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <vector>

namespace vornhale::text {
namespace {

bool isLeadByte(unsigned b) { return (b >= 0x81 && b <= 0x9F) || (b >= 0xE0 && b <= 0xFC); }
bool isTrailByte(unsigned b) { return b >= 0x40 && b <= 0xFC && b != 0x7F; }

// CP932 tables, built once from the system's converter so that the character set is exactly
// Microsoft's, then used without calling iconv per character. The double-byte characters are
// converted a lead byte at a time and the preferred byte pairs in one run, so the start of the
// program pays for a few hundred calls of the converter, not for twenty thousand.
struct Tables
{
    std::array<char32_t, 256> single{};               // 0 where the byte is no character
    std::vector<char32_t> doubled = std::vector<char32_t>(65536, 0); // by lead << 8 | trail
    std::vector<std::uint16_t> encode = std::vector<std::uint16_t>(65536, 0); // BMP -> bytes

    Tables()
    {
        iconv_t toUnicode = iconv_open("UTF-32LE", "CP932");
        iconv_t fromUnicode = iconv_open("CP932", "UTF-32LE");
        if (toUnicode == reinterpret_cast<iconv_t>(-1) ||
            fromUnicode == reinterpret_cast<iconv_t>(-1)) {
            throw std::runtime_error("the system has no CP932 converter (iconv)");
        }
        for (unsigned b = 0; b < 256; ++b) {
            if (isLeadByte(b)) {
                continue;
            }
            const unsigned char in[1] = {static_cast<unsigned char>(b)};
            char32_t cp = 0;
            if (b < 0x80) {
                cp = b;
            } else {
                decodeUnits(toUnicode, in, 1, 1, &cp);
            }
            single[b] = cp;
            if (cp != 0 && cp < 0x10000 && encode[cp] == 0) {
                encode[cp] = static_cast<std::uint16_t>(b);
            }
        }
        // The first pair of each character, in code order, with the pair it came from.
        std::vector<char32_t> firsts;
        std::vector<std::uint16_t> pairsOfFirsts;
        std::vector<unsigned char> pairs;
        std::vector<char32_t> decoded;
        for (unsigned lead = 0x81; lead <= 0xFC; ++lead) {
            if (!isLeadByte(lead)) {
                continue;
            }
            pairs.clear();
            for (unsigned trail = 0x40; trail <= 0xFC; ++trail) {
                if (isTrailByte(trail)) {
                    pairs.push_back(static_cast<unsigned char>(lead));
                    pairs.push_back(static_cast<unsigned char>(trail));
                }
            }
            decoded.assign(pairs.size() / 2, 0);
            decodeUnits(toUnicode, pairs.data(), pairs.size(), 2, decoded.data());
            for (std::size_t i = 0; i < decoded.size(); ++i) {
                const char32_t cp = decoded[i];
                if (cp == 0) {
                    continue;
                }
                const auto code = static_cast<std::uint16_t>(lead << 8 | pairs[2 * i + 1]);
                doubled[code] = cp;
                if (cp < 0x10000 && encode[cp] == 0) {
                    // Several byte pairs can stand for one character; the converter's own
                    // choice is the one Windows writes, settled below.
                    encode[cp] = code;
                    firsts.push_back(cp);
                    pairsOfFirsts.push_back(code);
                }
            }
        }
        std::vector<std::uint16_t> preferred(firsts.size(), 0);
        encodeAll(fromUnicode, firsts, preferred);
        for (std::size_t i = 0; i < firsts.size(); ++i) {
            encode[firsts[i]] = preferred[i] != 0 ? preferred[i] : pairsOfFirsts[i];
        }
        // Text typed on other systems uses the JIS forms of a few characters that Windows
        // keeps under other code points; they are written with the bytes Windows writes.
        const std::pair<char32_t, std::uint16_t> jisForms[] = {
            {0x301C, 0x8160}, {0x2016, 0x8161}, {0x2212, 0x817C}, {0x00A2, 0x8191},
            {0x00A3, 0x8192}, {0x00AC, 0x81CA}, {0x2014, 0x815C}};
        for (const auto& [cp, code] : jisForms) {
            if (encode[cp] == 0) {
                encode[cp] = code;
            }
        }
        iconv_close(toUnicode);
        iconv_close(fromUnicode);
    }

    // Decodes `size` bytes of units of `unit` bytes each into one code point per unit (0 for
    // a unit the converter refuses): one call per run of good units.
    static void decodeUnits(iconv_t cd, const unsigned char* bytes, std::size_t size,
                            std::size_t unit, char32_t* out)
    {
        std::size_t done = 0;
        while (done < size) {
            iconv(cd, nullptr, nullptr, nullptr, nullptr);
            char* ip = const_cast<char*>(reinterpret_cast<const char*>(bytes + done));
            std::size_t il = size - done;
            char* op = reinterpret_cast<char*>(out + done / unit);
            std::size_t ol = (size - done) / unit * 4;
            const std::size_t rc = iconv(cd, &ip, &il, &op, &ol);
            const std::size_t taken = (size - done) - il;
            const std::size_t written = (size - done) / unit * 4 - ol;
            if (taken % unit != 0 || written != taken / unit * 4) {
                // Not one code point per unit: settle this run unit by unit.
                for (std::size_t at = done; at < size; at += unit) {
                    out[at / unit] = decodeOne(cd, bytes + at, unit);
                }
                return;
            }
            done += taken;
            if (rc == static_cast<std::size_t>(-1) && done < size) {
                out[done / unit] = 0;
                done += unit;
            }
        }
    }

    static char32_t decodeOne(iconv_t cd, const unsigned char* in, std::size_t len)
    {
        iconv(cd, nullptr, nullptr, nullptr, nullptr);
        char buf[8];
        char* ip = const_cast<char*>(reinterpret_cast<const char*>(in));
        char* op = buf;
        std::size_t il = len, ol = sizeof buf;
        if (iconv(cd, &ip, &il, &op, &ol) == static_cast<std::size_t>(-1) || il != 0 ||
            ol != 4) {
            return 0;
        }
        char32_t cp;
        std::memcpy(&cp, buf, 4);
        return cp;
    }

    static std::uint16_t encodeOne(iconv_t cd, char32_t cp)
    {
        iconv(cd, nullptr, nullptr, nullptr, nullptr);
        char in[4];
        std::memcpy(in, &cp, 4);
        unsigned char buf[4];
        char* ip = in;
        char* op = reinterpret_cast<char*>(buf);
        std::size_t il = 4, ol = sizeof buf;
        if (iconv(cd, &ip, &il, &op, &ol) == static_cast<std::size_t>(-1)) {
            return 0;
        }
        const std::size_t n = sizeof buf - ol;
        if (n == 1) {
            return buf[0];
        }
        if (n == 2) {
            return static_cast<std::uint16_t>(buf[0] << 8 | buf[1]);
        }
        return 0;
    }

    // The bytes the converter writes for each of `cps` (0 where it writes none), one call per
    // run of characters it takes.
    static void encodeAll(iconv_t cd, const std::vector<char32_t>& cps,
                          std::vector<std::uint16_t>& out)
    {
        std::vector<unsigned char> bytes(cps.size() * 2 + 8);
        std::size_t done = 0;
        while (done < cps.size()) {
            iconv(cd, nullptr, nullptr, nullptr, nullptr);
            char* ip = const_cast<char*>(reinterpret_cast<const char*>(cps.data() + done));
            std::size_t il = (cps.size() - done) * 4;
            char* op = reinterpret_cast<char*>(bytes.data());
            std::size_t ol = bytes.size();
            const std::size_t rc = iconv(cd, &ip, &il, &op, &ol);
            const std::size_t taken = (cps.size() - done) * 4 - il;
            const std::size_t written = bytes.size() - ol;
            // Each character took one byte, or two behind a lead byte.
            std::size_t at = 0, count = 0;
            while (at < written && count < taken / 4) {
                const unsigned b = bytes[at];
                if (isLeadByte(b) && at + 1 < written) {
                    out[done + count] = static_cast<std::uint16_t>(b << 8 | bytes[at + 1]);
                    at += 2;
                } else {
                    out[done + count] = static_cast<std::uint16_t>(b);
                    at += 1;
                }
                ++count;
            }
            if (taken % 4 != 0 || count != taken / 4 || at != written) {
                // Not the form looked for: settle the rest character by character.
                for (std::size_t i = done; i < cps.size(); ++i) {
                    out[i] = encodeOne(cd, cps[i]);
                }
                return;
            }
            done += count;
            if (rc == static_cast<std::size_t>(-1) && done < cps.size()) {
                out[done] = 0;
                ++done;
            }
        }
    }
};

const Tables& tables()
{
    static const Tables t;
    return t;
}

} // namespace

std::string decodeSjisTaking(std::string&& bytes)
{
    return isAsciiText(bytes) ? std::move(bytes) : decodeSjis(std::string_view(bytes));
}

void decodeSjisInto(std::string& out, std::string_view bytes)
{
    if (isAsciiText(bytes)) {
        out.assign(bytes);
    } else {
        out = decodeSjis(bytes);
    }
}

std::string decodeSjis(std::string_view bytes)
{
    const Tables& t = tables();
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto b = static_cast<unsigned char>(bytes[i]);
        if (b < 0x80) {
            // ASCII runs are copied whole.
            std::size_t end = i + 1;
            while (end < bytes.size() && static_cast<unsigned char>(bytes[end]) < 0x80) {
                ++end;
            }
            out.append(bytes.substr(i, end - i));
            i = end - 1;
            continue;
        }
        if (isLeadByte(b) && i + 1 < bytes.size()) {
            const auto trail = static_cast<unsigned char>(bytes[i + 1]);
            if (char32_t cp = t.doubled[b << 8 | trail]; cp != 0) {
                appendCodePoint(out, cp);
                ++i;
                continue;
            }
        }
        char32_t cp = t.single[b];
        appendCodePoint(out, cp != 0 ? cp : rawByteCodePoint(b));
    }
    return out;
}

std::string encodeSjis(std::string_view utf8)
{
    const Tables& t = tables();
    std::string out;
    out.reserve(utf8.size());
    for (std::size_t pos = 0; pos < utf8.size();) {
        const auto b = static_cast<unsigned char>(utf8[pos]);
        if (b < 0x80) {
            std::size_t end = pos + 1;
            while (end < utf8.size() && static_cast<unsigned char>(utf8[end]) < 0x80) {
                ++end;
            }
            out.append(utf8.substr(pos, end - pos));
            pos = end;
            continue;
        }
        char32_t cp = nextCodePoint(utf8, pos);
        if (cp >= rawByteCodePoint(0x80) && cp <= rawByteCodePoint(0xFF)) {
            out.push_back(static_cast<char>(cp - 0xF700));
            continue;
        }
        std::uint16_t code = cp < 0x10000 ? t.encode[cp] : 0;
        if (code == 0) {
            out.push_back('?');
        } else if (code < 0x100) {
            out.push_back(static_cast<char>(code));
        } else {
            out.push_back(static_cast<char>(code >> 8));
            out.push_back(static_cast<char>(code & 0xFF));
        }
    }
    return out;
}

int sjisWidth(char32_t cp)
{
    if (cp < 0x80) {
        return 1;
    }
    if (cp >= rawByteCodePoint(0x80) && cp <= rawByteCodePoint(0xFF)) {
        return 1;
    }
    if (cp >= 0x10000) {
        return 1;
    }
    std::uint16_t code = tables().encode[cp];
    return code >= 0x100 ? 2 : 1;
}

} // namespace vornhale::text
