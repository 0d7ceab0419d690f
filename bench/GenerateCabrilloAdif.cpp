// Writes the same N contacts as a Cabrillo log, an ADIF log and a zLog .ALL log for the
// benchmarks, so that the three convert the same work: calls drawn from a real call list
// (MASTER.SCP), stations worked again on other bands, portable calls, HF and VHF bands, CW,
// phone and RTTY, serial exchanges. The Cabrillo lines stand in the columns of the template,
// so that the zLog .TXT form is written too. Deterministic for a given seed.

#include "CallList.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <vector>

namespace {

std::string rightAligned(const std::string& s, std::size_t width)
{
    return s.size() < width ? std::string(width - s.size(), ' ') + s : s;
}

std::string padded(const std::string& s, std::size_t width)
{
    return s.size() < width ? s + std::string(width - s.size(), ' ') : s;
}

// Places `value` at byte column `col` (from 1) of `line`, widening it with blanks.
void put(std::string& line, std::size_t col, const std::string& value)
{
    if (line.size() < col - 1 + value.size()) {
        line.resize(col - 1 + value.size(), ' ');
    }
    line.replace(col - 1, value.size(), value);
}

// The ADIF field `<NAME:length>value `.
std::string field(const char* name, const std::string& value)
{
    return "<" + std::string(name) + ":" + std::to_string(value.size()) + ">" + value + " ";
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 4) {
        std::cerr << "usage: GenerateCabrilloAdif COUNT OUT_STEM MASTER.SCP [SEED]\n"
                     "writes OUT_STEM.CBR, OUT_STEM.ADI and OUT_STEM.ALL\n";
        return 2;
    }
    const long count = std::stol(argv[1]);
    const std::string stem = argv[2];
    std::vector<std::string> calls = vornhale::bench::readCalls(argv[3], 9);
    if (calls.empty()) {
        std::cerr << "no calls in " << argv[3] << "\n";
        return 1;
    }
    std::mt19937 rng(argc > 4 ? static_cast<unsigned>(std::stoul(argv[4])) : 20261128u);

    const std::size_t poolSize = std::max<std::size_t>(1, static_cast<std::size_t>(count / 3));
    std::vector<std::string> pool;
    for (std::size_t i = 0; i < poolSize; ++i) {
        std::string call = calls[rng() % calls.size()];
        switch (rng() % 40) {
        case 0:
            call = "KH6/" + call;
            break;
        case 1:
            call += "/P";
            break;
        case 2:
            call += "/1";
            break;
        default:
            break;
        }
        pool.push_back(call.substr(0, 13));
    }

    // Above 30 MHz a Cabrillo log names the band ("50", "144") where the others give kHz.
    struct Band
    {
        const char* cabrillo;
        const char* mhz;
        const char* metres;
        const char* band;
    };
    const Band bands[] = {{"1830", "1.830", "160M", "1.9"}, {"3525", "3.525", "80M", "3.5"},
                          {"7025", "7.025", "40M", "7"},    {"10110", "10.110", "30M", "10"},
                          {"14025", "14.025", "20M", "14"}, {"18080", "18.080", "17M", "18"},
                          {"21025", "21.025", "15M", "21"}, {"24900", "24.900", "12M", "24"},
                          {"28025", "28.025", "10M", "28"}, {"50", "50.100", "6M", "50"},
                          {"144", "144.100", "2M", "144"}};
    struct Mode
    {
        const char* cabrillo;
        const char* adif;
        bool phone;
    };
    const Mode modes[] = {
        {"CW", "CW", false}, {"PH", "SSB", true}, {"RY", "RTTY", false}, {"FM", "FM", true}};

    std::ofstream cbr(stem + ".CBR", std::ios::binary);
    std::ofstream adi(stem + ".ADI", std::ios::binary);
    std::ofstream all(stem + ".ALL", std::ios::binary);
    all << "zLog for Windows Version 2.7\r\n";
    cbr << "START-OF-LOG: 3.0\r\nCALLSIGN: JA1ZZZ\r\nCONTEST: CQ-WW-CW\r\n"
           "CATEGORY-OPERATOR: SINGLE-OP\r\nCREATED-BY: GenerateCabrilloAdif\r\n";
    adi << "Generated for the benchmarks\r\n<ADIF_VER:5>3.1.4 <PROGRAMID:19>GenerateCabrilloAdif "
           "<EOH>\r\n";

    std::uniform_int_distribution<int> skew(0, 99);
    long minutes = 0;
    for (long i = 0; i < count; ++i) {
        const std::size_t idx =
            skew(rng) < 30 ? rng() % std::max<std::size_t>(1, poolSize / 20) : rng() % poolSize;
        const std::string& call = pool[idx];
        const Band& band = bands[rng() % std::size(bands)];
        const Mode& mode = modes[rng() % std::size(modes)];
        minutes += rng() % 2;
        const long day = 28 + (minutes / 1440) % 2;
        char date[16], time[8], adifDate[16];
        std::snprintf(date, sizeof date, "2026-11-%02ld", day);
        std::snprintf(adifDate, sizeof adifDate, "202611%02ld", day);
        std::snprintf(time, sizeof time, "%02ld%02ld", (minutes / 60) % 24, minutes % 60);
        const std::string rst = mode.phone ? "59" : "599";
        const std::string sent = std::to_string(1 + i % 9999);
        const std::string rcvd = std::to_string(1 + rng() % 40);

        cbr << "QSO: " << rightAligned(band.cabrillo, 5) << " " << mode.cabrillo << " " << date
            << " " << time << " JA1ZZZ        " << rightAligned(rst, 3) << " " << padded(sent, 6)
            << " " << padded(call, 13) << " " << rightAligned(rst, 3) << " " << padded(rcvd, 6)
            << " 0\r\n";

        std::string record = field("CALL", call) + field("QSO_DATE", adifDate) +
                             field("TIME_ON", time) + field("BAND", band.metres);
        if (rng() % 2 == 0) {
            record += field("FREQ", band.mhz);
        }
        record += field("MODE", mode.adif) + field("RST_SENT", rst) + field("RST_RCVD", rst) +
                  field("STX", sent) + field("SRX", rcvd);
        adi << record << "<EOR>\r\n";

        char allDate[32];
        std::snprintf(allDate, sizeof allDate, "2026/11/%02ld %02ld:%02ld", day,
                      (minutes / 60) % 24, minutes % 60);
        std::string line;
        put(line, 1, allDate);
        put(line, 18, call);
        put(line, 31, rst);
        put(line, 35, sent);
        put(line, 43, rst);
        put(line, 47, rcvd);
        put(line, 55, "-");
        put(line, 61, "-");
        put(line, 67, band.band);
        put(line, 72, mode.adif);
        put(line, 77, "1");
        all << line << "\r\n";
    }
    cbr << "END-OF-LOG:\r\n";
    return 0;
}
