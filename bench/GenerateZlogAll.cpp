// Writes a realistic zLog .ALL log of N contacts for the benchmarks: calls drawn from a real
// call list (MASTER.SCP), stations worked again on other bands, portable calls, every band
// and mode, operator and frequency memos, duplicate marks. Deterministic for a given seed.

#include "CallList.h"

#include <cstdio>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <vector>

namespace {

// Places `value` at byte column `col` (from 1) of `line`, widening it with blanks.
void put(std::string& line, std::size_t col, const std::string& value)
{
    if (line.size() < col - 1 + value.size()) {
        line.resize(col - 1 + value.size(), ' ');
    }
    line.replace(col - 1, value.size(), value);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 4) {
        std::cerr << "usage: GenerateZlogAll COUNT OUT.ALL MASTER.SCP [SEED]\n";
        return 2;
    }
    const long count = std::stol(argv[1]);
    const std::string outPath = argv[2];
    std::vector<std::string> calls = vornhale::bench::readCalls(argv[3], 10);
    if (calls.empty()) {
        std::cerr << "no calls in " << argv[3] << "\n";
        return 1;
    }
    std::mt19937 rng(argc > 4 ? static_cast<unsigned>(std::stoul(argv[4])) : 20261122u);

    // A pool of stations about a third of the log, so that many are worked more than once.
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
        case 3:
            call += "/1/P";
            break;
        case 4:
            call += "/MM";
            break;
        case 5:
            call += "/QRP";
            break;
        default:
            break;
        }
        pool.push_back(call.substr(0, 13));
    }

    struct Band
    {
        const char* mhz;
        const char* khz;
    };
    const Band bands[] = {{"1.9", "1910"},    {"3.5", "3525"}, {"7", "7025"},     {"10", "10110"},
                          {"14", "14025"},    {"18", "18080"}, {"21", "21025"},   {"24", "24900"},
                          {"28", "28025"},    {"50", "50100"}, {"144", "144100"}, {"430", "430100"},
                          {"1200", "1295100"}};
    const char* modes[] = {"CW", "SSB", "FM", "RTY", "PSK31", "AM"};
    const char* ops[] = {"JA1ZZZ", "JH1ZZZ", "JR1ZZZ"};

    std::ofstream out(outPath, std::ios::binary);
    out << "zLog for Windows Version 2.7\r\n";
    long minutes = 0;
    std::uniform_int_distribution<int> zipf(0, 99);
    for (long i = 0; i < count; ++i) {
        // Skewed choice: a few stations are worked on many bands.
        std::size_t idx =
            zipf(rng) < 30 ? rng() % std::max<std::size_t>(1, poolSize / 20) : rng() % poolSize;
        const std::string& call = pool[idx];
        const Band& band = bands[rng() % std::size(bands)];
        const char* mode = modes[rng() % std::size(modes)];
        minutes += rng() % 3;
        const long day = 22 + (minutes / 1440) % 7;
        char date[32];
        std::snprintf(date, sizeof date, "2026/11/%02ld %02ld:%02ld", day, (minutes / 60) % 24,
                      minutes % 60);

        std::string line;
        put(line, 1, date);
        put(line, 18, call);
        const bool phone = mode[0] == 'S' || mode[0] == 'F' || mode[0] == 'A';
        put(line, 31, phone ? "59" : "599");
        put(line, 43, phone ? "59" : "599");
        put(line, 47, std::to_string(1 + rng() % 40));
        put(line, 55, "-");
        put(line, 61, "-");
        put(line, 67, band.mhz);
        put(line, 72, mode);
        put(line, 77, "1");
        std::string memo;
        if (rng() % 2 == 0) {
            memo += std::string("%%") + ops[rng() % std::size(ops)] + "%% ";
        }
        if (rng() % 3 == 0) {
            memo += std::string("(") + band.khz + ")";
        } else if (rng() % 10 == 0) {
            memo += "(0)";
        }
        if (rng() % 50 == 0) {
            memo += " -DUPE-";
        }
        if (!memo.empty()) {
            put(line, 80, memo);
        }
        out << line << "\r\n";
    }
    return 0;
}
