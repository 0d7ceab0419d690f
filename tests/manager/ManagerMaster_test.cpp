#include "failure/Failure.h"
#include "manager/ManagerMaster.h"
#include "support/TestSupport.h"
#include "text/SjisCodec.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace vornhale;

namespace {

// One line of the master: a blank, the call in 20 bytes, the manager in 20 bytes, a date.
std::string row(const std::string& call, const std::string& manager,
                const std::string& date = "2025/01/15")
{
    auto pad = [](std::string s) {
        s.resize(20, ' ');
        return s;
    };
    return " " + pad(call) + pad(manager) + " " + date;
}

std::vector<std::string> withHeadings(std::vector<std::string> rows)
{
    rows.insert(rows.begin(), {" MNG_Vornhale_full.txt", " コールサイン        マネージャー"});
    return rows;
}

class RecordingObserver : public base::RunObserver
{
public:
    void status(std::string_view text, base::Colour) override { statuses.emplace_back(text); }
    std::vector<std::string> statuses;
};

} // namespace

TEST(ManagerMaster, FindsTheManagerOfACallInTheFixedColumns)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "MNG_Vornhale_full.txt",
                         withHeadings({row("XX9TST", "XX9MGR"), row("XX9ABC", "JX1AAA")}));
    manager::ManagerMaster master;
    base::Trace trace;
    master.read_MNG_z_full_mp(dir / "MNG_Vornhale_full.txt", trace);
    EXPECT_TRUE(master.loaded());
    EXPECT_EQ(master.MNG_lookup("XX9ABC"), "JX1AAA");
    EXPECT_EQ(master.MNG_lookup("  XX9TST "), "XX9MGR");
    EXPECT_EQ(master.MNG_lookup("XX9ZZZ"), "");
}

TEST(ManagerMaster, CountsTheLineEndsOfTheFileLessTwo)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "m.txt",
                         withHeadings({row("XX9TST", "XX9MGR"), row("XX9ABC", "A")}));
    manager::ManagerMaster master;
    base::Trace trace;
    master.read_MNG_z_full_mp(dir / "m.txt", trace);
    // Four lines with four line ends: a count of five, less two.
    EXPECT_EQ(master.MNG_kazu(), 3);
    ASSERT_EQ(master.MNG_call().size(), 4U);
    EXPECT_EQ(master.MNG_call()[1], "XX9ABC");
    EXPECT_EQ(master.MNG_manager()[1], "A");
    EXPECT_EQ(master.MNG_call()[3], "");
}

TEST(ManagerMaster, MatchesALowerCaseCallInTheFileWithAnUpperCaseCallOfTheLog)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "m.txt", withHeadings({row("xx9low", "XX9QSL")}));
    manager::ManagerMaster master;
    base::Trace trace;
    master.read_MNG_z_full_mp(dir / "m.txt", trace);
    EXPECT_EQ(master.MNG_lookup("XX9LOW"), "XX9QSL");
    EXPECT_EQ(master.MNG_lookup("xx9Low"), "XX9QSL");
}

TEST(ManagerMaster, TakesTheEntryNearestTheTopWhateverTheDatesBehindIt)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "m.txt", withHeadings({row("XX9TST", "XX9OLD", "2019/05/20"),
                                                      row("xx9tst", "XX9NEW", "2025/01/15"),
                                                      row("XX9TST", "XX9NEWER", "2026/01/01")}));
    manager::ManagerMaster master;
    base::Trace trace;
    master.read_MNG_z_full_mp(dir / "m.txt", trace);
    EXPECT_EQ(master.MNG_lookup("XX9TST"), "XX9OLD");
}

TEST(ManagerMaster, ComparesTheWholeCallSoASlashFindsOnlyTheSameSlashText)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "m.txt",
                         withHeadings({row("XX9ABC", "JX1AAA"), row("XX9ABC/P", "XX9MGR")}));
    manager::ManagerMaster master;
    base::Trace trace;
    master.read_MNG_z_full_mp(dir / "m.txt", trace);
    EXPECT_EQ(master.MNG_lookup("XX9ABC/P"), "XX9MGR");
    EXPECT_EQ(master.MNG_lookup("XX9ABC/QRP"), "");
    EXPECT_EQ(master.MNG_lookup("XX9ABC"), "JX1AAA");
}

TEST(ManagerMaster, ACallOfMoreThanTwentyBytesRunsIntoTheManagerColumn)
{
    test::TempDir dir;
    // 23 bytes of call: its last three bytes stand in the manager's columns.
    test::writeSjisLines(dir / "m.txt", withHeadings({" XX9LONGCALLSIGN/MM/ABCDE         XX9MGR"}));
    manager::ManagerMaster master;
    base::Trace trace;
    master.read_MNG_z_full_mp(dir / "m.txt", trace);
    EXPECT_EQ(master.MNG_call()[0], "XX9LONGCALLSIGN/MM/A");
    EXPECT_EQ(master.MNG_manager()[0], "BCDE         XX9MGR");
    EXPECT_EQ(master.MNG_lookup("XX9LONGCALLSIGN/MM/ABCDE"), "");
    EXPECT_EQ(master.MNG_lookup("XX9LONGCALLSIGN/MM/A"), "BCDE         XX9MGR");
}

TEST(ManagerMaster, ShiftJisTextInTheCallColumnShiftsNothingAsWidthsAreInBytes)
{
    test::TempDir dir;
    // "ＪＡ局" is six bytes of Shift-JIS: the manager still begins at byte 22.
    test::writeSjisLines(dir / "m.txt",
                         withHeadings({" ＪＡ局              XX9MGR              2025/01/15"}));
    manager::ManagerMaster master;
    base::Trace trace;
    master.read_MNG_z_full_mp(dir / "m.txt", trace);
    EXPECT_EQ(master.MNG_call()[0], "ＪＡ局");
    EXPECT_EQ(master.MNG_lookup("ＪＡ局"), "XX9MGR");
}

TEST(ManagerMaster, ReadsNothingBehindColumnFortyOne)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "m.txt",
                         withHeadings({" XX9TST              XX9MGR-WITH-A-LONG-NAME-HERE"}));
    manager::ManagerMaster master;
    base::Trace trace;
    master.read_MNG_z_full_mp(dir / "m.txt", trace);
    EXPECT_EQ(master.MNG_lookup("XX9TST"), "XX9MGR-WITH-A-LONG-N");
}

TEST(ManagerMaster, AFileOfTheTwoHeadingLinesOnlyFindsNothing)
{
    test::TempDir dir;
    test::writeBytes(dir / "m.txt", " heading\r\n heading");
    manager::ManagerMaster master;
    base::Trace trace;
    master.read_MNG_z_full_mp(dir / "m.txt", trace);
    EXPECT_TRUE(master.loaded());
    EXPECT_LE(master.MNG_kazu(), 0);
    EXPECT_EQ(master.MNG_lookup("XX9TST"), "");
    EXPECT_EQ(master.MNG_lookup(""), "");
}

TEST(ManagerMaster, AFileWithoutItsHeadingLinesTakesTheFailurePath)
{
    test::TempDir dir;
    test::writeBytes(dir / "m.txt", " heading only\r\n");
    manager::ManagerMaster master;
    base::Trace trace;
    try {
        master.read_MNG_z_full_mp(dir / "m.txt", trace);
        FAIL() << "no failure";
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), failure::InputPastEnd);
    }
    EXPECT_FALSE(master.loaded());
}

TEST(ManagerMaster, AMissingFileTakesTheFailurePath)
{
    test::TempDir dir;
    manager::ManagerMaster master;
    base::Trace trace;
    try {
        master.read_MNG_z_full_mp(dir / "missing.txt", trace);
        FAIL() << "no failure";
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), failure::FileNotFound);
    }
    EXPECT_FALSE(master.loaded());
}

TEST(ManagerMaster, ShowsItsLoadOnTheStatusLineAndClearsItAfterwards)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "m.txt", withHeadings({row("XX9TST", "XX9MGR")}));
    manager::ManagerMaster master;
    base::Trace trace;
    RecordingObserver observer;
    master.read_MNG_z_full_mp(dir / "m.txt", trace, &observer);
    ASSERT_EQ(observer.statuses.size(), 2U);
    EXPECT_EQ(observer.statuses[0], "　MNG_Vornhale_full.txt を読込中 ．．．");
    EXPECT_EQ(observer.statuses[1], "");
}

TEST(ManagerMaster, WritesItsSignatureToTheTrace)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "m.txt", withHeadings({row("XX9TST", "XX9MGR")}));
    manager::ManagerMaster master;
    {
        base::Trace trace(dir / "Error_Log");
        master.read_MNG_z_full_mp(dir / "m.txt", trace);
        const std::vector<std::string> lines = test::readSjisLines(trace.path());
        ASSERT_FALSE(lines.empty());
        EXPECT_EQ(lines.back(), "Private sub read_MNG_z_full_mp()");
    }
}

TEST(ManagerMaster, ReadsTheBundledSampleWithTheUpperOfTwoLinesWinning)
{
    manager::ManagerMaster master;
    base::Trace trace;
    master.read_MNG_z_full_mp(test::sourceDir() / "data/seed/MNG_Vornhale_full.txt", trace);
    EXPECT_EQ(master.MNG_lookup("XX9TST"), "XX9MGR");
    EXPECT_EQ(master.MNG_lookup("XX9LOW"), "XX9QSL");
    EXPECT_EQ(master.MNG_lookup("XX9ABC/P"), "XX9MGR");
}

TEST(ManagerMaster, KeepsTheCostOfALookupFlatAsTheMasterGrows)
{
    // A lookup through the index costs the same for ten and for 200,000 entries; a walk from
    // the top would cost 20,000 times more for a call near the end.
    test::TempDir dir;
    auto build = [&](int n, const char* name) {
        std::string bytes = " h\r\n h\r\n";
        for (int i = 0; i < n; ++i) {
            std::string call = "XX" + std::to_string(i);
            call.resize(20, ' ');
            bytes += " " + call + "XX9MGR\r\n";
        }
        test::writeBytes(dir / name, bytes);
        manager::ManagerMaster m;
        base::Trace trace;
        m.read_MNG_z_full_mp(dir / name, trace);
        return m;
    };
    const manager::ManagerMaster small = build(10, "small.txt");
    const manager::ManagerMaster large = build(200000, "large.txt");
    auto time = [](const manager::ManagerMaster& m, const std::string& call) {
        const auto start = std::chrono::steady_clock::now();
        std::size_t found = 0;
        for (int i = 0; i < 20000; ++i) {
            found += m.MNG_lookup(call).size();
        }
        EXPECT_GT(found, 0U);
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    const double smallSeconds = time(small, "XX9");
    const double largeSeconds = time(large, "XX199999");
    EXPECT_LT(largeSeconds, smallSeconds * 20 + 0.05);
}

TEST(ManagerMaster, AReplacedFileHasNoEffectOnAMasterAlreadyLoaded)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "m.txt", withHeadings({row("XX9TST", "XX9MGR")}));
    manager::ManagerMaster master;
    base::Trace trace;
    master.read_MNG_z_full_mp(dir / "m.txt", trace);
    test::writeSjisLines(dir / "m.txt", withHeadings({row("XX9TST", "XX9NEW")}));
    EXPECT_EQ(master.MNG_lookup("XX9TST"), "XX9MGR");
}
