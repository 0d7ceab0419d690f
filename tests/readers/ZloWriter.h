#pragma once

// Builds zLog binary logs byte by byte from the record layout, so that tests can make a
// fixture for every corner of the reader.

#include "text/SjisCodec.h"

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

namespace vornhale::test {

/// One QSO record. Texts are UTF-8 and are written as Shift-JIS; a `*Raw` value, when set,
/// is written as bytes instead. A length byte is the byte count unless given.
struct ZloQsoSpec
{
    double when = 45000.5; // 2023/03/15 12:00
    std::string call = "JA1ABC";
    std::string sent = "13";
    std::string rcvd = "25";
    std::uint16_t rstSent = 599, rstRcvd = 599;
    std::uint8_t mode = 0, band = 4, power = 0;
    std::string multi1, multi2;
    std::uint8_t multi1New = 0, multi2New = 0;
    std::uint8_t points = 1;
    std::string op, memo;
    std::optional<std::string> opRaw, memoRaw, callRaw;
    std::optional<std::uint8_t> callLen, opLen, memoLen, rcvdLen;
};

class ZloWriter
{
public:
    static constexpr std::size_t kSize = 256;

    /// The header record: contest name at 176 with its length byte at 175 (given or counted),
    /// the station name at 9.
    ZloWriter& header(std::string_view contest, std::optional<std::uint8_t> length = {},
                      std::string_view station = "Your call si")
    {
        std::string r(kSize, '\0');
        putCounted(r, 8, 9, 12, text::encodeSjis(station), {});
        const std::string c = text::encodeSjis(contest);
        putCounted(r, 175, 176, 60, c, length);
        m_bytes += r;
        return *this;
    }

    /// A header whose contest name field holds these bytes after a length byte.
    ZloWriter& rawHeader(std::string_view contestBytes, std::uint8_t length)
    {
        std::string r(kSize, '\0');
        putCounted(r, 175, 176, 60, std::string(contestBytes), length);
        m_bytes += r;
        return *this;
    }

    ZloWriter& qso(const ZloQsoSpec& q)
    {
        std::string r(kSize, '\0');
        std::memcpy(r.data(), &q.when, sizeof q.when);
        putCounted(r, 8, 9, 12, q.callRaw ? *q.callRaw : text::encodeSjis(q.call), q.callLen);
        putCounted(r, 21, 22, 30, text::encodeSjis(q.sent), {});
        putCounted(r, 52, 53, 30, text::encodeSjis(q.rcvd), q.rcvdLen);
        r[84] = static_cast<char>(q.rstSent & 0xFF);
        r[85] = static_cast<char>(q.rstSent >> 8);
        r[86] = static_cast<char>(q.rstRcvd & 0xFF);
        r[87] = static_cast<char>(q.rstRcvd >> 8);
        r[92] = static_cast<char>(q.mode);
        r[93] = static_cast<char>(q.band);
        r[94] = static_cast<char>(q.power);
        putCounted(r, 95, 96, 30, text::encodeSjis(q.multi1), {});
        putCounted(r, 126, 127, 30, text::encodeSjis(q.multi2), {});
        r[157] = static_cast<char>(q.multi1New);
        r[158] = static_cast<char>(q.multi2New);
        r[159] = static_cast<char>(q.points);
        putCounted(r, 160, 161, 14, q.opRaw ? *q.opRaw : text::encodeSjis(q.op), q.opLen);
        putCounted(r, 175, 176, 67, q.memoRaw ? *q.memoRaw : text::encodeSjis(q.memo), q.memoLen);
        m_bytes += r;
        return *this;
    }

    /// The file so far, cut or padded with zero bytes to `size` when given.
    std::string bytes(std::optional<std::size_t> size = {}) const
    {
        std::string b = m_bytes;
        if (size) {
            b.resize(*size, '\0');
        }
        return b;
    }

private:
    static void putCounted(std::string& r, std::size_t lenAt, std::size_t at, std::size_t size,
                           const std::string& bytes, std::optional<std::uint8_t> length)
    {
        r[lenAt] = static_cast<char>(length ? *length : static_cast<std::uint8_t>(bytes.size()));
        r.replace(at, std::min(size, bytes.size()), bytes.substr(0, size));
    }

    std::string m_bytes;
};

} // namespace vornhale::test
