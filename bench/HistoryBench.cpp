// The history scan and lookup at the size of a long-lived HAMLOG log.
//
//   HistoryBench generate N DIR CALLS  writes DIR/Hamlog.hdb (+ .mst) and DIR/export.csv of N
//                                      QSOs, calls drawn from a real call list (MASTER.SCP)
//   HistoryBench scan SOURCE HOME      scans SOURCE into HOME/Temp_Files/bak_qso.mas1_p
//   HistoryBench lookup HOME N CALLS   loads that master and asks it N contacts
//
// Each command prints its own wall time; bench/run.sh measures the peak memory around it.

#include "CallList.h"
#include "base/RunObserver.h"
#include "base/Trace.h"
#include "history/HdbBuilder.h"
#include "history/HistoryMaster.h"
#include "history/HistoryScan.h"
#include "settings/Options.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using namespace vornhale;

namespace {

std::vector<std::string> readCalls(const std::string& path)
{
    std::vector<std::string> calls = vornhale::bench::readCalls(path, 12);
    if (calls.empty()) {
        for (int i = 0; i < 50000; ++i) {
            calls.push_back("K" + std::to_string(i) + "X");
        }
    }
    return calls;
}

double secondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

const char* const kFreqs[] = {"1.9", "3.5", "7",   "10.1", "14",   "18.1", "21",  "24.9",
                              "28",  "50",  "144", "430",  "1200", "2400", "5600"};
const char* const kModes[] = {"CW", "SSB", "FM", "AM", "RTTY", "FT8", "PSK"};

int generate(long n, const fs::path& dir, const std::string& callList)
{
    const std::vector<std::string> calls = readCalls(callList);
    std::mt19937 random(20240701);
    fs::create_directories(dir);
    const test::HdbLayout layout = test::defaultHdbLayout();
    std::ofstream hdb(dir / "Hamlog.hdb", std::ios::binary);
    std::ofstream csv(dir / "export.csv", std::ios::binary);
    hdb << test::hdbHeader(layout, static_cast<std::uint32_t>(n));
    for (long i = 0; i < n; ++i) {
        const std::string& call = calls[random() % calls.size()];
        std::string portable;
        if (random() % 20 == 0) {
            portable = std::to_string(random() % 10);
        }
        test::HdbRecord r;
        r.calls = call.substr(0, 8);
        r.ign = test::hamlogIgn(call.size() > 8 ? call.substr(8) : "", portable, 12);
        r.yy = static_cast<unsigned char>(random() % 30);
        r.mm = static_cast<unsigned char>(random() % 12 + 1);
        r.dd = static_cast<unsigned char>(random() % 28 + 1);
        r.hh = static_cast<unsigned char>(random() % 24);
        r.mi = static_cast<unsigned char>(random() % 60);
        r.freq = kFreqs[random() % 15];
        r.mode = kModes[random() % 7];
        r.qsl = random() % 2 ? "J* " : "J  ";
        r.rmk1 = "bench";
        hdb << test::hdbRecord(layout, r);
        char date[16];
        std::snprintf(date, sizeof date, "%02u/%02u/%02u", r.yy, r.mm, r.dd);
        char time[16];
        std::snprintf(time, sizeof time, "%02u:%02uU", r.hh, r.mi);
        csv << '"' << call << (portable.empty() ? "" : "/" + portable) << "\",\"" << date << "\",\""
            << time << "\",\"599\",\"599\",\"" << r.freq << "\",\"" << r.mode << "\",\"\",\"\",\""
            << r.qsl << "\",\"\",\"\",\"bench\",\"\",\"8\"\r\n";
    }
    hdb << '\x1a';
    std::ofstream(dir / "Hamlog.mst") << "";
    return 0;
}

int scan(const fs::path& source, const fs::path& home)
{
    fs::create_directories(home / "Work");
    fs::create_directories(home / "Temp_Files");
    settings::Options options = settings::Options::defaults();
    options.set("Option04", "1");
    options.set("Option01", "0");
    options.set("Check19", "1");
    options.set("Start_date", "19000101");
    options.set("End_date", "20991231");
    options.set("hamlog_hdb_dir", source.string());
    base::Trace trace;
    base::RunObserver observer;
    history::HistoryScan scan(home / "Work" / "", home / "Temp_Files" / "", options, trace,
                              observer);
    const auto start = std::chrono::steady_clock::now();
    const history::HistoryStep step = scan.run();
    const double seconds = secondsSince(start);
    if (step != history::HistoryStep::Scanned) {
        std::cerr << "scan did not run\n";
        return 1;
    }
    std::printf("%.2f\n", seconds);
    return 0;
}

int lookup(const fs::path& home, long n, const std::string& callList)
{
    const std::vector<std::string> calls = readCalls(callList);
    std::mt19937 random(7);
    std::vector<std::string> contacts;
    for (long i = 0; i < n; ++i) {
        std::string call = calls[random() % calls.size()];
        if (random() % 10 == 0) {
            call += "/" + std::to_string(random() % 10);
        }
        contacts.push_back(call);
    }
    base::Trace trace;
    history::HistoryMaster master;
    const auto loadStart = std::chrono::steady_clock::now();
    master.sum_bak_4_bas_p(home / "Temp_Files" / "bak_qso.mas1_", trace);
    const double load = secondsSince(loadStart);
    const auto start = std::chrono::steady_clock::now();
    long hits = 0;
    for (long i = 0; i < n; ++i) {
        const auto code = history::band_mode_code(kFreqs[i % 15], kModes[i % 7]);
        hits += master.chk_bak_qso(contacts[static_cast<std::size_t>(i)], code.Band_code,
                                   code.Mode_code, true, true);
    }
    const double seconds = secondsSince(start);
    std::printf("%.3f %.3f %ld %zu\n", load, seconds, hits, master.bak_calls_p().size());
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> args(argv + 1, argv + argc);
    if (args.size() == 4 && args[0] == "generate") {
        return generate(std::stol(args[1]), args[2], args[3]);
    }
    if (args.size() == 3 && args[0] == "scan") {
        return scan(args[1], args[2]);
    }
    if (args.size() == 4 && args[0] == "lookup") {
        return lookup(args[1], std::stol(args[2]), args[3]);
    }
    std::cerr << "usage: HistoryBench generate N DIR CALLS | scan SOURCE HOME | "
                 "lookup HOME N CALLS\n";
    return 2;
}
