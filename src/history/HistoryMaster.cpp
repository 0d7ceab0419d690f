#include "history/HistoryMaster.h"

#include "base/Trace.h"
#include "text/Chars.h"
#include "text/Record.h"

#include <algorithm>

namespace vornhale::history {
namespace {

struct BandRange
{
    const char* letter;
    double from, to;
};

constexpr BandRange kBands[] = {
    {"A", 1, 2},       {"B", 3, 4},       {"C", 6, 8},       {"D", 9, 11},
    {"E", 13, 15},     {"F", 17, 19},     {"G", 20, 22},     {"H", 23, 25},
    {"I", 27, 30},     {"J", 49, 56},     {"K", 144, 148},   {"L", 429, 445},
    {"M", 1200, 1310}, {"N", 2399, 2500}, {"O", 5400, 5900},
};

std::string modeDigit(std::string_view mode)
{
    if (mode == "SSB" || mode == "A3J") {
        return "1";
    }
    if (mode == "CW" || mode == "A1") {
        return "2";
    }
    if (mode == "AM" || mode == "A3") {
        return "3";
    }
    if (mode == "FM" || mode == "F3") {
        return "4";
    }
    if (mode == "STV") {
        return "5";
    }
    if (mode == "RTY" || mode == "RTT" || mode == "RTTY") {
        return "6";
    }
    if (mode == "PSK") {
        return "7";
    }
    return "9";
}

char upperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// Whether `needle` stands in `hay`, ASCII letters compared without regard to case.
bool containsNoCase(std::string_view hay, std::string_view needle)
{
    if (needle.size() > hay.size()) {
        return false;
    }
    for (std::size_t i = 0; i + needle.size() <= hay.size(); ++i) {
        std::size_t k = 0;
        while (k < needle.size() && upperAscii(hay[i + k]) == upperAscii(needle[k])) {
            ++k;
        }
        if (k == needle.size()) {
            return true;
        }
    }
    return false;
}

} // namespace

BandModeCode band_mode_code(std::string_view freq, std::string_view mode)
{
    BandModeCode c;
    const double mhz = text::val(freq);
    c.Band_code = "Z";
    for (const BandRange& r : kBands) {
        if (mhz >= r.from && mhz <= r.to) {
            c.Band_code = r.letter;
            break;
        }
    }
    c.Mode_code = modeDigit(text::trim(mode));
    return c;
}

void HistoryMaster::sum_bak_4_bas_p(const std::filesystem::path& bak_qso_mas_file,
                                    base::Trace& trace)
{
    trace.line("     bak_qso_mas_file : " + bak_qso_mas_file.string());
    const std::filesystem::path file = bak_qso_mas_file.string() + "p";

    m_index.clear();
    m_calls.clear();
    m_bands.clear();
    m_itemCount = 0;

    text::RecordReader in(file);
    text::RecordReader items(file);
    while (!items.atEnd()) {
        items.field();
        ++m_itemCount;
    }
    trace.line("     bak_calls_kazu_p : " + std::to_string(m_itemCount));

    m_calls.reserve(static_cast<std::size_t>(m_itemCount / 2 + 1));
    m_bands.reserve(static_cast<std::size_t>(m_itemCount / 2 + 1));
    while (!in.atEnd()) {
        std::string call = in.field();
        std::string codes = in.field();
        m_calls.push_back(std::move(call));
        m_bands.push_back(std::move(codes));
    }
    m_index.reserve(m_calls.size());
    for (std::size_t i = 0; i < m_calls.size(); ++i) {
        m_index.emplace(m_calls[i], i); // keeps the first place of a call
    }
}

const std::string* HistoryMaster::codesOf(std::string_view call) const
{
    const auto it = m_index.find(std::string(call));
    if (it != m_index.end()) {
        return &m_bands[it->second];
    }
    // The arrays run to the item count, beyond the loaded pairs, with empty entries there.
    if (call.empty() && m_itemCount >= static_cast<long>(m_calls.size())) {
        return &m_empty;
    }
    return nullptr;
}

bool HistoryMaster::chk_bak_qso(std::string_view call, std::string_view Band_code,
                                std::string_view Mode_code, bool sameBand, bool sameMode) const
{
    std::string_view wanted = text::trim(call);
    const std::size_t first = wanted.find('/');
    const std::size_t last = wanted.rfind('/');
    if (first != last) {
        wanted = wanted.substr(0, last);
    }
    const std::string* codes = codesOf(wanted);
    if (!codes) {
        return false;
    }
    if (!sameBand && !sameMode) {
        return true;
    }
    std::string hay = *codes;
    std::string needle;
    if (sameBand && !sameMode) {
        for (char& c : hay) {
            if (c >= '0' && c <= '9') {
                c = '0';
            }
        }
        needle = std::string(Band_code) + "0";
    } else if (sameMode && !sameBand) {
        for (char& c : hay) {
            if (c >= 'A' && c <= 'Z') {
                c = '0';
            }
        }
        needle = "0" + std::string(Mode_code);
    } else {
        needle = std::string(Band_code) + std::string(Mode_code);
    }
    return containsNoCase(hay, needle);
}

bool HistoryMaster::chk_bak_qso(std::string_view call, std::string_view key, bool sameBand,
                                bool sameMode) const
{
    const std::string_view band = key.substr(0, std::min<std::size_t>(1, key.size()));
    const std::string_view mode = key.size() > 1 ? key.substr(1, 1) : std::string_view{};
    return chk_bak_qso(call, band, mode, sameBand, sameMode);
}

} // namespace vornhale::history
