#pragma once

// Builds HAMLOG database files from their layout for tests and benchmarks.

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace vornhale::test {

/// One QSO as the database stores it; texts are Shift-JIS bytes.
struct HdbRecord
{
    std::string calls, ign;
    unsigned char century = 20, yy = 24, mm = 1, dd = 1;
    unsigned char hh = 0, mi = 0;
    bool utc = true;
    std::string code, gl, qsl = "   ";
    std::uint16_t flag = 0;
    std::string his = "599", my = "599", freq = "7", mode = "CW", name, qth, rmk1, rmk2;
    char mark = ' ';
};

/// The fields of the table, by name and width, in file order.
using HdbLayout = std::vector<std::pair<std::string, int>>;

/// HAMLOG's default widths.
inline HdbLayout defaultHdbLayout()
{
    return {{"CALLS", 8}, {"IGN", 12}, {"DATE", 4}, {"TIME", 2},  {"CODE", 6},  {"GL", 6},
            {"QSL", 3},   {"FLAG", 2}, {"HIS", 3},  {"MY", 3},    {"FREQ", 7},  {"MODE", 4},
            {"NAME", 12}, {"QTH", 28}, {"RMK1", 54}, {"RMK2", 54}};
}

inline std::string hdbHeader(const HdbLayout& layout, std::uint32_t count)
{
    int recordLength = 1;
    for (const auto& f : layout) {
        recordLength += f.second;
    }
    const int headerLength = 32 + 32 * static_cast<int>(layout.size()) + 1;
    std::string h(32, '\0');
    h[0] = 0x03;
    h[1] = 24;
    h[2] = 1;
    h[3] = 1;
    for (int i = 0; i < 4; ++i) {
        h[4 + i] = static_cast<char>((count >> (8 * i)) & 0xFF);
    }
    h[8] = static_cast<char>(headerLength & 0xFF);
    h[9] = static_cast<char>(headerLength >> 8);
    h[10] = static_cast<char>(recordLength & 0xFF);
    h[11] = static_cast<char>(recordLength >> 8);
    for (const auto& [name, width] : layout) {
        std::string d(32, '\0');
        d.replace(0, name.size(), name);
        d[11] = 'C';
        d[16] = static_cast<char>(width);
        h += d;
    }
    h.push_back(0x0D);
    return h;
}

inline std::string hdbRecord(const HdbLayout& layout, const HdbRecord& r)
{
    std::string out(1, r.mark);
    auto text = [](const std::string& s, int width) {
        std::string t = s.substr(0, static_cast<std::size_t>(width));
        t.resize(static_cast<std::size_t>(width), ' ');
        return t;
    };
    for (const auto& [name, width] : layout) {
        std::string v;
        if (name == "DATE") {
            v = std::string{static_cast<char>(r.century), static_cast<char>(r.yy),
                            static_cast<char>(r.mm), static_cast<char>(r.dd)};
            v.resize(static_cast<std::size_t>(width), '\0');
        } else if (name == "TIME") {
            v = std::string{static_cast<char>(r.hh),
                            static_cast<char>(r.mi | (r.utc ? 0x80 : 0))};
            v.resize(static_cast<std::size_t>(width), '\0');
        } else if (name == "FLAG") {
            v = std::string{static_cast<char>(r.flag & 0xFF), static_cast<char>(r.flag >> 8)};
            v.resize(static_cast<std::size_t>(width), '\0');
        } else if (name == "IGN") {
            v = r.ign.substr(0, static_cast<std::size_t>(width));
            v.resize(static_cast<std::size_t>(width), ' ');
        } else {
            const std::string& s = name == "CALLS" ? r.calls
                                   : name == "CODE" ? r.code
                                   : name == "GL"   ? r.gl
                                   : name == "QSL"  ? r.qsl
                                   : name == "HIS"  ? r.his
                                   : name == "MY"   ? r.my
                                   : name == "FREQ" ? r.freq
                                   : name == "MODE" ? r.mode
                                   : name == "NAME" ? r.name
                                   : name == "QTH"  ? r.qth
                                   : name == "RMK1" ? r.rmk1
                                                    : r.rmk2;
            v = text(s, width);
        }
        out += v;
    }
    return out;
}

/// IGN as HAMLOG fills it: what of the call did not fit in CALLS first, the portable part
/// right-aligned.
inline std::string hamlogIgn(const std::string& overflow, const std::string& portable, int width)
{
    std::string ign(static_cast<std::size_t>(width), ' ');
    ign.replace(0, overflow.size(), overflow);
    ign.replace(static_cast<std::size_t>(width) - portable.size(), portable.size(), portable);
    return ign;
}

/// A whole database file.
inline std::string hdbFile(const HdbLayout& layout, const std::vector<HdbRecord>& records)
{
    std::string out = hdbHeader(layout, static_cast<std::uint32_t>(records.size()));
    for (const HdbRecord& r : records) {
        out += hdbRecord(layout, r);
    }
    out.push_back(0x1A);
    return out;
}

} // namespace vornhale::test
