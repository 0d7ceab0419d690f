#pragma once

// Builds RTCL logs of every generation from their layouts, so that tests can make a fixture
// for every corner of the readers: text lines of the forms before and from version 3.00,
// and binary records of versions 4.00 and 4.30.

#include "text/SjisCodec.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::test {

/// One record of a text log before version 3.00: 12 quoted fields.
struct RtclOldSpec
{
    std::string kind = "1"; ///< "QTC" marks a record that is no contact
    std::string date = "2023-03-15";
    std::string time = "12:34";
    std::string call = "JA1ABC";
    std::string sent = "599-013";
    std::string rcvd = "599-025";
    std::string band = "14";
    std::string points = "1";
    std::string note; ///< "[FRQ 14085]" carries the rig's frequency

    std::string line() const
    {
        return quoted({kind, date, time, call, sent, rcvd, band, points, "", "", "", note});
    }

    static std::string quoted(const std::vector<std::string>& fields)
    {
        std::string out;
        for (const std::string& f : fields) {
            if (!out.empty()) {
                out += ',';
            }
            out += '"' + f + '"';
        }
        return out;
    }
};

/// One record of a text log from version 3.00: 13 quoted fields.
struct RtclNewSpec
{
    std::string kind = "1";
    std::string when = "2023-03-15 12:34";
    std::string call = "JA1ABC";
    std::string sent = "599-013";
    std::string rcvd = "599-025";
    std::string band = "14";
    std::string points = "1";
    std::string mode = "RTTY";
    std::string freq = "14085"; ///< digits, with a leading zero below 10 MHz

    std::string line() const
    {
        return RtclOldSpec::quoted(
            {kind, when, call, sent, rcvd, band, points, "", "", "", "", mode, freq});
    }
};

/// One binary record. Texts are UTF-8, written as Shift-JIS and padded with blanks.
struct RtclBinarySpec
{
    std::string number = "00001"; ///< "QTC" in its first places marks a record to skip
    std::string band = "14";
    std::uint32_t rig = 0; ///< the raw rig value as the file holds it
    std::string mode = "RTTY";
    std::string kept = "ABCDE";
    std::uint8_t dupe = 0;
    double when = 45000.5; // 2023/03/15 12:00:00
    std::string call = "JA1ABC";
    std::string sentRst = "599";
    std::string sent1 = "013", sent2;
    std::string rcvdRst = "599";
    std::string rcvd1 = "025", rcvd2;
    std::uint8_t points = 1;
    std::string multi1, multi2, multi3;
    std::string op, memo;
    std::uint8_t notRead = 0; ///< written into every byte that the readers do not read
};

class RtclBinaryWriter
{
public:
    /// A writer of version 4.00 records (203 bytes) or, with `v430`, of 4.30 (209 bytes).
    explicit RtclBinaryWriter(bool v430) : m_v430(v430) {}

    std::size_t recordSize() const { return m_v430 ? 209 : 203; }

    RtclBinaryWriter& record(const RtclBinarySpec& q)
    {
        std::string r(recordSize(), static_cast<char>(q.notRead));
        put(r, 0, 5, q.number);
        put(r, 5, 4, q.band);
        std::memcpy(r.data() + 12, &q.rig, sizeof q.rig);
        put(r, 17, 5, q.mode);
        put(r, 22, 5, q.kept);
        r[27] = static_cast<char>(q.dupe);
        std::memcpy(r.data() + 29, &q.when, sizeof q.when);
        put(r, 37, 13, q.call);
        put(r, 50, 6, q.sentRst);
        put(r, 56, 25, q.sent1);
        put(r, 81, 10, q.sent2);
        put(r, 91, 6, q.rcvdRst);
        put(r, 97, 25, q.rcvd1);
        put(r, 122, 10, q.rcvd2);
        r[132] = static_cast<char>(q.points);
        if (m_v430) {
            put(r, 134, 10, q.multi1);
            put(r, 144, 8, q.multi2);
            put(r, 152, 6, q.multi3);
            put(r, 164, 6, q.op);
            put(r, 174, 20, q.memo);
        } else {
            put(r, 134, 6, q.multi1);
            put(r, 140, 6, q.multi2);
            put(r, 146, 6, q.multi3);
            put(r, 158, 6, q.op);
            put(r, 168, 20, q.memo);
        }
        m_bytes += r;
        return *this;
    }

    /// The file so far, cut or padded with zero bytes to `size` when given.
    std::string bytes(std::size_t size = std::string::npos) const
    {
        std::string b = m_bytes;
        if (size != std::string::npos) {
            b.resize(size, '\0');
        }
        return b;
    }

private:
    // A blank-padded text field.
    static void put(std::string& r, std::size_t at, std::size_t size, std::string_view utf8)
    {
        std::string bytes = text::encodeSjis(utf8);
        bytes.resize(size, ' ');
        r.replace(at, size, bytes);
    }

    bool m_v430;
    std::string m_bytes;
};

} // namespace vornhale::test
