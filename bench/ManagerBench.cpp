// The manager master at benchmark size: writes an MNG_Vornhale_full.txt of N rows from a real
// call list, and times its load and the lookups of a contest log's contacts against it, with
// the web search off.
//
//   ManagerBench generate N FILE MASTER.SCP
//   ManagerBench lookup FILE CONTACTS MASTER.SCP

#include "CallList.h"
#include "base/Trace.h"
#include "manager/ManagerMaster.h"

#include <chrono>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {

std::string field(std::string value, std::size_t width)
{
    value.resize(width, ' ');
    return value;
}

int generate(long count, const std::string& file, const std::vector<std::string>& calls)
{
    std::ofstream out(file, std::ios::binary);
    out << " MNG_Vornhale_full.txt  benchmark\r\n call                manager              "
           "date\r\n";
    for (long i = 0; i < count; ++i) {
        // Later rounds give the calls portable suffixes; a call's first row wins.
        const std::size_t n = static_cast<std::size_t>(i) % calls.size();
        const long round = i / static_cast<long>(calls.size());
        std::string call = calls[n];
        if (round % 3 == 1) {
            call += "/P";
        } else if (round % 3 == 2) {
            call = "xx" + std::to_string(round) + "/" + call;
        }
        out << " " << field(call, 20) << field("MGR" + std::to_string(i), 20) << " 2025/01/15\r\n";
    }
    return out ? 0 : 1;
}

int lookup(const std::string& file, long contacts, const std::vector<std::string>& calls)
{
    using Clock = std::chrono::steady_clock;
    vornhale::base::Trace trace;
    vornhale::manager::ManagerMaster master;
    const auto start = Clock::now();
    master.read_MNG_z_full_mp(file, trace);
    const auto loaded = Clock::now();
    long hits = 0;
    for (long i = 0; i < contacts; ++i) {
        // Contacts spread over the whole list, in the case the log writes them.
        const std::string& call = calls[static_cast<std::size_t>(i * 7919) % calls.size()];
        hits += master.MNG_lookup(call).empty() ? 0 : 1;
    }
    const auto done = Clock::now();
    const double load = std::chrono::duration<double>(loaded - start).count();
    const double walk = std::chrono::duration<double>(done - loaded).count();
    std::printf("%.3f %.3f %ld %ld\n", load, walk, hits, master.MNG_kazu());
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 5) {
        std::cerr << "usage: ManagerBench generate N FILE MASTER.SCP\n"
                     "       ManagerBench lookup FILE CONTACTS MASTER.SCP\n";
        return 2;
    }
    const std::string mode = argv[1];
    const std::vector<std::string> calls = vornhale::bench::readCalls(argv[4], 20);
    if (calls.empty()) {
        std::cerr << "no calls in " << argv[4] << "\n";
        return 1;
    }
    if (mode == "generate") {
        return generate(std::stol(argv[2]), argv[3], calls);
    }
    if (mode == "lookup") {
        return lookup(argv[2], std::stol(argv[3]), calls);
    }
    std::cerr << "unknown mode " << mode << "\n";
    return 2;
}
