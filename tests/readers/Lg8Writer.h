#pragma once

// Builds CTESTWIN logs byte by byte from their record layout, so that tests can make a log for
// every corner of the reader.

#include "text/SjisCodec.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vornhale::test {

/// One contact. Texts are UTF-8, written as Shift-JIS and ended by a NUL; `garbage` fills the
/// rest of each text field, as CTESTWIN leaves its buffers.
struct Lg8QsoSpec
{
    std::string call = "JA1ABC";
    std::string sent = "599100110";
    std::string rcvd = "59925";
    std::uint8_t mode = 0, band = 4;
    std::int64_t utcSeconds = 1496534400; // 2017-06-04 00:00 UTC
    std::string op, remarks;
    char garbage = 'x';
};

/// The bytes of a log: the list count (`count`, else the number of contacts), the class name,
/// the records with their tags, and a trailer of settings.
inline std::string lg8Bytes(const std::vector<Lg8QsoSpec>& qsos,
                            std::optional<std::uint16_t> count = {},
                            const std::string& trailer = std::string("\x17\x00\x01\x00", 4))
{
    auto word = [](std::string& out, std::uint16_t w) {
        out += static_cast<char>(w & 0xFF);
        out += static_cast<char>(w >> 8);
    };
    auto field = [](std::string& out, const std::string& utf8, std::size_t size, char garbage) {
        std::string bytes = text::encodeSjis(utf8).substr(0, size - 1);
        bytes += '\0';
        bytes.resize(size, garbage);
        out += bytes;
    };
    std::string out;
    word(out, count ? *count : static_cast<std::uint16_t>(qsos.size()));
    if (qsos.empty() && (!count || *count == 0)) {
        return out + trailer;
    }
    word(out, 0xFFFF);
    word(out, 0);
    word(out, 8);
    out += "CQsoData";
    for (std::size_t i = 0; i < qsos.size(); ++i) {
        const Lg8QsoSpec& q = qsos[i];
        if (i > 0) {
            out += std::string("\x01\x80", 2);
        }
        field(out, q.call, 20, q.garbage);
        field(out, q.sent, 30, q.garbage);
        field(out, q.rcvd, 30, q.garbage);
        out += static_cast<char>(q.mode);
        out += '\0';
        out += static_cast<char>(q.band);
        out += std::string("\x00\x0A\x00\x00\x80", 5);
        for (int b = 0; b < 8; ++b) {
            out += static_cast<char>(static_cast<std::uint64_t>(q.utcSeconds) >> (8 * b) & 0xFF);
        }
        field(out, q.op, 20, q.garbage);
        out += std::string(2, '\0');
        field(out, q.remarks, 50, q.garbage);
    }
    return out + trailer;
}

} // namespace vornhale::test
