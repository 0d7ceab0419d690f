// Runs that meet in one program folder, and runs killed half way: the results and the
// settings files are always whole.

#include "base/FileReplace.h"
#include "base/PairedReplace.h"
#include "base/ProgramFolderLock.h"
#include "support/RunFixture.h"
#include "support/TestSupport.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <future>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace vornhale;
namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

constexpr const char* kWaitingNote =
    "他の実行がプログラムフォルダを使用中です。終わるのを待っています…";
constexpr const char* kSettingsFiles[] = {"Vornhale_cfg.ini", "Vornhale_new.ini", "Vornhale.ini",
                                          "Vornhale_fdt.ini", "Vornhale_posi.ini"};

// A zLog .ALL log of `count` contacts; `first` moves the calls and exchanges so that two logs
// differ.
void writeAllLog(const fs::path& path, int count, int first)
{
    static const char* prefixes[] = {"JA1", "JH1", "JR2", "JA3", "JE4", "JF5",
                                     "JG6", "JA7", "JH8", "JR9", "JA0"};
    std::vector<std::string> lines{"zLog for Windows Version 2.80e  (c) JA1ZLO"};
    for (int i = first; i < first + count; ++i) {
        std::string call = prefixes[i % 11];
        for (int k = 0, v = i / 11; k < 3; ++k, v /= 26) {
            call += static_cast<char>('A' + v % 26);
        }
        char when[32];
        std::snprintf(when, sizeof when, "2026/11/%02d %02d:%02d", 1 + (i / 1440) % 28,
                      (i / 60) % 24, i % 60);
        char exchange[8];
        std::snprintf(exchange, sizeof exchange, "%02d", 1 + i % 50);
        lines.push_back(test::ColumnLine()
                            .at(1, when)
                            .at(18, call)
                            .at(31, "599")
                            .at(43, "599")
                            .at(47, exchange)
                            .at(55, "-")
                            .at(61, "-")
                            .at(67, i % 3 == 0 ? "7" : "14")
                            .at(72, "CW")
                            .at(77, "1")
                            .str());
    }
    test::writeSjisLines(path, lines);
}

int convert(const fs::path& home, const fs::path& log, std::string* output = nullptr)
{
    std::string ignored;
    return test::runCli({"convert", "--home", home.string(), log.string()},
                        output != nullptr ? output : &ignored);
}

fs::path hnOf(const fs::path& log)
{
    return log.parent_path() / (log.stem().string() + "_hn.csv");
}
fs::path cnOf(const fs::path& log)
{
    return log.parent_path() / (log.stem().string() + "_cn.csv");
}

std::string replaceAll(std::string text, const std::string& from, const std::string& to)
{
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

// The settings files of a program folder with the folder's own path written as "<home>/"
// and the clean-up counter taken out (it counts runs, and is compared on its own).
std::map<std::string, std::string> settingsOf(const fs::path& home,
                                              std::map<std::string, long>* exe_rec = nullptr)
{
    std::map<std::string, std::string> files;
    for (const char* name : kSettingsFiles) {
        if (!fs::exists(home / name)) {
            continue;
        }
        std::string kept;
        for (const std::string& line : test::readSjisLines(home / name)) {
            if (line.rfind("exe_rec=", 0) == 0) {
                if (exe_rec != nullptr) {
                    (*exe_rec)[name] = std::stol(line.substr(8));
                }
                continue;
            }
            kept += replaceAll(line, (home / "").string(), "<home>/") + "\n";
        }
        files[name] = kept;
    }
    return files;
}

// A settings file is whole: it ends with its last line end and holds every key that a
// complete file of the same name holds.
std::string wholeness(const fs::path& file, const fs::path& complete)
{
    const std::string bytes = test::readBytes(file);
    if (bytes.size() < 2 || bytes.compare(bytes.size() - 2, 2, "\r\n") != 0) {
        return file.string() + " is cut short";
    }
    auto keys = [](const fs::path& f) {
        std::vector<std::string> out;
        for (const std::string& line : test::readSjisLines(f)) {
            const auto eq = line.find('=');
            if (eq != std::string::npos) {
                out.push_back(line.substr(0, eq));
            }
        }
        std::sort(out.begin(), out.end());
        return out;
    };
    const auto have = keys(file);
    for (const std::string& key : keys(complete)) {
        if (!std::binary_search(have.begin(), have.end(), key)) {
            return file.string() + " lacks " + key;
        }
    }
    return {};
}

} // namespace

TEST(ProgramFolderRuns, TwoConversionsAtOnceInOneProgramFolderBothComeOutRight)
{
    test::TempDir dir;
    const fs::path a = dir / "A.ALL";
    const fs::path b = dir / "B.ALL";
    writeAllLog(a, 400, 0);
    writeAllLog(b, 300, 5000);

    // Each log alone, one after the other, gives the results to expect.
    const fs::path reference = dir / "reference";
    ASSERT_EQ(convert(reference, a), 0);
    std::map<std::string, long> afterOne;
    settingsOf(reference, &afterOne);
    ASSERT_EQ(convert(reference, b), 0);
    const std::string hnA = test::readBytes(hnOf(a)), cnA = test::readBytes(cnOf(a));
    const std::string hnB = test::readBytes(hnOf(b)), cnB = test::readBytes(cnOf(b));
    std::map<std::string, long> afterTwo;
    const auto expectedSettings = settingsOf(reference, &afterTwo);
    ASSERT_FALSE(afterTwo.empty());

    const fs::path home = dir / "shared";
    ASSERT_EQ(convert(home, a), 0);
    std::map<std::string, long> before;
    settingsOf(home, &before);
    for (int round = 1; round <= 8; ++round) {
        for (const fs::path& f : {hnOf(a), cnOf(a), hnOf(b), cnOf(b)}) {
            fs::remove(f);
        }
        std::string outA, outB;
        auto runA = std::async(std::launch::async, [&] { return convert(home, a, &outA); });
        auto runB = std::async(std::launch::async, [&] { return convert(home, b, &outB); });
        ASSERT_EQ(runA.get(), 0) << "round " << round << "\n" << outA;
        ASSERT_EQ(runB.get(), 0) << "round " << round << "\n" << outB;
        EXPECT_EQ(test::readBytes(hnOf(a)), hnA) << "round " << round;
        EXPECT_EQ(test::readBytes(cnOf(a)), cnA) << "round " << round;
        EXPECT_EQ(test::readBytes(hnOf(b)), hnB) << "round " << round;
        EXPECT_EQ(test::readBytes(cnOf(b)), cnB) << "round " << round;
        std::map<std::string, long> now;
        EXPECT_EQ(settingsOf(home, &now), expectedSettings) << "round " << round;
        // Every run counted its clean-ups: none was lost to the other run.
        for (const auto& [name, count] : now) {
            EXPECT_EQ(count - before[name], 2 * (afterTwo[name] - afterOne[name]))
                << name << " round " << round;
        }
        before = now;
    }
}

TEST(ProgramFolderRuns, ARunWaitsForTheOtherAndSaysSoOnStderr)
{
    test::TempDir dir;
    const fs::path log = dir / "A.ALL";
    writeAllLog(log, 50, 0);
    const fs::path home = dir / "home";
    ASSERT_EQ(convert(home, log), 0);
    fs::remove(hnOf(log));

    auto hold = std::make_unique<base::ProgramFolderLock>(home);
    std::string output;
    auto run = std::async(std::launch::async, [&] { return convert(home, log, &output); });
    // While the folder is held, the run waits and writes nothing.
    EXPECT_EQ(run.wait_for(1500ms), std::future_status::timeout);
    EXPECT_FALSE(fs::exists(hnOf(log)));
    hold.reset();
    EXPECT_EQ(run.get(), 0) << output;
    EXPECT_NE(output.find(kWaitingNote), std::string::npos) << output;
    EXPECT_TRUE(fs::exists(hnOf(log)));
}

TEST(ProgramFolderRuns, ARunAloneDoesNotWaitOrSaySo)
{
    test::TempDir dir;
    const fs::path log = dir / "A.ALL";
    writeAllLog(log, 50, 0);
    std::string output;
    ASSERT_EQ(convert(dir / "home", log, &output), 0) << output;
    EXPECT_EQ(output.find(kWaitingNote), std::string::npos) << output;
}

TEST(ProgramFolderRuns, ALogOfFortyThousandContactsIsAnalysedAndConverted)
{
    test::TempDir dir;
    const fs::path log = dir / "BIG.ALL";
    writeAllLog(log, 40000, 0);
    std::string output;
    ASSERT_EQ(convert(dir / "home", log, &output), 0) << output;
    EXPECT_NE(output.find(" 今回の処理数は\t40000 件"), std::string::npos) << output;
    EXPECT_EQ(test::readSjisLines(hnOf(log)).size(), 40000u);
    EXPECT_EQ(test::readSjisLines(cnOf(log)).size(), 40000u);
}

TEST(ProgramFolderRuns, AConversionKilledAtAnyMomentLeavesAWholePairAndWholeSettings)
{
    test::TempDir dir;
    const fs::path log = dir / "BIG.ALL";
    writeAllLog(log, 40000, 0);
    const fs::path hn = hnOf(log), cn = cnOf(log);

    // The new pair, from a run that is not disturbed; it also gives the length of a run.
    const fs::path reference = dir / "reference";
    const auto started = std::chrono::steady_clock::now();
    ASSERT_EQ(convert(reference, log), 0);
    const auto runTime = std::chrono::steady_clock::now() - started;
    const std::string newHn = test::readBytes(hn), newCn = test::readBytes(cn);
    const std::string oldHn = "OLD,HN\r\n", oldCn = "OLD,CN\r\n";

    const fs::path home = dir / "home";
    std::random_device device;
    const unsigned seed = device();
    std::mt19937 random(seed);
    const auto runMs = std::chrono::duration_cast<std::chrono::milliseconds>(runTime).count();
    std::uniform_int_distribution<long> delay(0, runMs + runMs / 10);
    const auto deadline = std::chrono::steady_clock::now() + 12s;
    int rounds = 0;
    std::map<std::string, int> seen;
    while (rounds < 4 || (rounds < 16 && std::chrono::steady_clock::now() < deadline)) {
        ++rounds;
        test::writeBytes(hn, oldHn);
        test::writeBytes(cn, oldCn);
        const long ms = delay(random);
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(rounds) +
                     ", killed after " + std::to_string(ms) + " ms");
        const std::string cli = test::cliPath().string();
        const pid_t pid = ::fork();
        if (pid == 0) {
            const int devNull = ::open("/dev/null", O_WRONLY);
            ::dup2(devNull, 1);
            ::dup2(devNull, 2);
            ::execl(cli.c_str(), cli.c_str(), "convert", "--home", home.c_str(), log.c_str(),
                    static_cast<char*>(nullptr));
            _exit(127);
        }
        ASSERT_GT(pid, 0);
        std::this_thread::sleep_for(std::chrono::milliseconds(ms));
        ::kill(pid, SIGKILL);
        int status = 0;
        ::waitpid(pid, &status, 0);

        // Right after the kill: the previous pair, or the new one, or (killed between the two
        // renames) a new `_hn.csv` whose `_cn.csv` waits, noted as ready, for the next start.
        const std::string hnNow = test::readBytes(hn), cnNow = test::readBytes(cn);
        const bool oldPair = hnNow == oldHn && cnNow == oldCn;
        const bool newPair = hnNow == newHn && cnNow == newCn;
        const bool between =
            hnNow == newHn && cnNow == oldCn &&
            fs::exists(home / "Work" / base::PairedReplace::kNoteName) &&
            test::readBytes(home / "Work" / base::PairedReplace::kNoteName).rfind("ready\n", 0) ==
                0;
        EXPECT_TRUE(oldPair || newPair || between) << "hn "
                                                   << (hnNow == newHn   ? "new"
                                                       : hnNow == oldHn ? "old"
                                                                        : "other")
                                                   << ", cn "
                                                   << (cnNow == newCn   ? "new"
                                                       : cnNow == oldCn ? "old"
                                                                        : "other");
        ++seen[oldPair ? "old" : newPair ? "new" : "between"];
        for (const char* name : kSettingsFiles) {
            if (fs::exists(home / name) && fs::exists(reference / name)) {
                EXPECT_EQ(wholeness(home / name, reference / name), "");
            }
        }

        // The next start completes or drops what the killed run left.
        std::string output;
        ASSERT_EQ(test::runCli({"settings", "--home", home.string(), "init"}, &output), 0)
            << output;
        const std::string hnAfter = test::readBytes(hn), cnAfter = test::readBytes(cn);
        EXPECT_TRUE((hnAfter == oldHn && cnAfter == oldCn) ||
                    (hnAfter == newHn && cnAfter == newCn));
        for (const auto& e : fs::directory_iterator(dir.path())) {
            EXPECT_NE(e.path().extension(), ".writing") << e.path();
        }
        for (const fs::path& folder : {home, home / "Work", home / "Temp_Files"}) {
            for (const auto& e : fs::directory_iterator(folder)) {
                EXPECT_NE(e.path().extension(), ".writing") << e.path();
            }
        }
        EXPECT_FALSE(fs::exists(home / "Work" / base::PairedReplace::kNoteName));
        // A conversion killed before its end leaves no working files past the next start.
        if (hnAfter == oldHn) {
            for (const char* name : {"zlog_1.txt", "zlog_2.txt", "temp_s.csv", "semp_s.csv"}) {
                EXPECT_FALSE(fs::exists(home / "Work" / name)) << name;
            }
        }
        for (const char* name : kSettingsFiles) {
            if (fs::exists(home / name) && fs::exists(reference / name)) {
                EXPECT_EQ(wholeness(home / name, reference / name), "");
            }
        }
    }
    std::string summary;
    for (const auto& [state, count] : seen) {
        summary += state + " " + std::to_string(count) + "  ";
    }
    RecordProperty("KilledRuns", summary);
    std::cout << "killed " << rounds << " runs of " << runMs << " ms: " << summary << "\n";
}
