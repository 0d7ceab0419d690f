// Times the cty.dat import and the entity lookup of generated calls.
// Usage: EntityBench [cty.dat [call list]]
// Defaults: the cty.dat of Debian's hamradio-files and its MASTER.SCP; without a call list
// the calls are made from the imported prefixes. The bundled dxcc_mas.txt and cty_conv.txt
// are used. Targets: import under 0.5 s, 100,000 lookups under 0.5 s.

#include "CallList.h"
#include "base/Dialogs.h"
#include "failure/Failure.h"
#include "base/Trace.h"
#include "reference/CtyEntityLookup.h"
#include "reference/CtyImport.h"
#include "text/Chars.h"
#include "text/Record.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;
using namespace vornhale;

namespace {

class PrintedDialogs : public base::Dialogs
{
public:
    void message(std::string_view title, std::string_view text, Icon) override
    {
        std::cerr << title << ": " << text << "\n";
    }
};

double secondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

std::vector<std::string> prefixesOf(const fs::path& dat1)
{
    std::vector<std::string> out;
    text::RecordReader in(dat1);
    while (!in.atEnd()) {
        const auto f = in.fields(4);
        out.push_back(std::string(text::trim(text::replaceAll(f[0], "=", ""))));
    }
    return out;
}

// 100,000 calls: most as listed or built from a prefix, a share with portable marks and
// prefixes in front, as contest logs have them.
std::vector<std::string> makeCalls(const std::vector<std::string>& base,
                                   const std::vector<std::string>& prefixes, std::size_t count)
{
    std::mt19937 rng(42);
    auto roll = [&](std::size_t n) {
        return std::uniform_int_distribution<std::size_t>(0, n - 1)(rng);
    };
    const char* marks[] = {"P", "M", "MM", "QRP", "1", "7", "R", "KH6", "VP2E"};
    std::vector<std::string> calls;
    calls.reserve(count);
    while (calls.size() < count) {
        std::string home = base.empty()
                               ? prefixes[roll(prefixes.size())] + std::to_string(roll(10)) + "AB"
                               : base[roll(base.size())];
        switch (roll(10)) {
        case 0:
            calls.push_back(home + "/" + marks[roll(9)]);
            break;
        case 1:
            calls.push_back(prefixes[roll(prefixes.size())] + "/" + home);
            break;
        default:
            calls.push_back(home);
            break;
        }
    }
    return calls;
}

} // namespace

int main(int argc, char** argv)
{
    const fs::path cty = argc > 1 ? argv[1] : "/usr/share/hamradio-files/cty.dat";
    const fs::path callList = argc > 2 ? argv[2] : "/usr/share/hamradio-files/MASTER.SCP";
    const fs::path seed = VORNHALE_SEED_DIR;
    if (!fs::exists(cty)) {
        std::cerr << "EntityBench: " << cty << " not found\n";
        return 2;
    }
    const fs::path home =
        fs::temp_directory_path() / ("vornhale-entity-bench-" + std::to_string(getpid()));
    reference::CtyPlaces places{home / "prog", home / "work"};
    fs::create_directories(places.strPath);
    fs::create_directories(places.drive_path);
    fs::copy_file(cty, places.program("cty.dat"));
    fs::copy_file(seed / "cty_conv.txt", places.program("cty_conv.txt"));
    fs::copy_file(seed / "dxcc_mas.txt", places.program("dxcc_mas.txt"));

    int status = 0;
    try {
        base::Trace trace;
        PrintedDialogs dialogs;
        reference::CtyImport import(places, trace, dialogs);
        reference::CtyEntityLookup lookup;

        const auto importStart = std::chrono::steady_clock::now();
        if (!import.importAll(places.program("dxcc_mas.txt"))) {
            throw failure::Failure(failure::FileNotFound, "cty_conv.txt");
        }
        lookup.load(import.tables(), places.program("cty_mastL.txt"));
        const double importSeconds = secondsSince(importStart);

        const auto calls = makeCalls(
            fs::exists(callList) ? vornhale::bench::readCalls(callList.string(), std::string::npos)
                                 : std::vector<std::string>{},
            prefixesOf(places.work("cty_dat1.txt")), 100000);
        std::size_t found = 0;
        const auto lookupStart = std::chrono::steady_clock::now();
        for (const std::string& call : calls) {
            const std::string entity = lookup.entityOf(call);
            if (!lookup.dxcc_lookup(entity).dx_code.empty()) {
                ++found;
            }
        }
        const double lookupSeconds = secondsSince(lookupStart);

        std::printf("%-34s %8.3f s  (target 0.5 s) %s\n", "cty.dat import and load", importSeconds,
                    importSeconds < 0.5 ? "ok" : "SLOW");
        std::printf("%-34s %8.3f s  (target 0.5 s) %s\n", "100000 entity lookups", lookupSeconds,
                    lookupSeconds < 0.5 ? "ok" : "SLOW");
        std::printf("%-34s %8zu of %zu\n", "calls with a DXCC code", found, calls.size());
        std::printf("%-34s %8ld short, %ld DXCC\n", "master sizes", import.tables().cty_s_kazu,
                    import.tables().dxcc_kazu);
    } catch (const failure::Failure& f) {
        std::cerr << "EntityBench: failure " << f.number() << ": " << f.description() << "\n";
        status = 1;
    }
    std::error_code ec;
    fs::remove_all(home, ec);
    return status;
}
