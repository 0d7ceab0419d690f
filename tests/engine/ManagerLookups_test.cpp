// The manager master and the web search as the conversion and the batch walk reach them
// through the program's reference data.

#include "engine/ManagerWalk.h"
#include "engine/ReferenceData.h"
#include "failure/Failure.h"
#include "readers/OutputNames.h"
#include "support/RunFixture.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

struct ManagerLookups : test::RunFixture
{
    settings::Options options = settings::Options::defaults();

    fs::path master(const std::vector<std::string>& rows)
    {
        std::vector<std::string> lines{" MNG_Vornhale_full.txt", " call                manager"};
        lines.insert(lines.end(), rows.begin(), rows.end());
        const fs::path path = folder.strPath / "MNG_Vornhale_full.txt";
        test::writeSjisLines(path, lines);
        options.set("mng_z_full_txt_dir", path.string());
        return path;
    }
};

} // namespace

TEST(ManagerLookupsBase, AnswersNotFoundWithoutMasters)
{
    engine::RecordLookups none;
    EXPECT_EQ(none.managerFromFile("XX9TST"), "");
    EXPECT_EQ(none.managerFromWeb("XX9TST"), "");
}

struct ManagerLookupsTest : ManagerLookups, ::testing::Test
{
};

TEST_F(ManagerLookupsTest, LoadsTheMasterBeforeTheFirstRecordAndAnswersByIt)
{
    master({" XX9TST              XX9@MGR"});
    engine::ReferenceData data;
    data.beforeFirstRecord(context(options));
    EXPECT_TRUE(data.managers().loaded());
    EXPECT_EQ(data.managerFromFile("xx9tst"), "XX9@MGR");
    // Asking keeps nothing: the conversion keeps the answer it uses, without "@".
    EXPECT_EQ(data.sharedManagers().mng_file, "");
    data.keepManagerFromFile("XX9MGR");
    EXPECT_EQ(data.sharedManagers().mng_file, "XX9MGR");
    ASSERT_GE(observer.statuses.size(), 2U);
    EXPECT_EQ(observer.statuses[0].first, "　MNG_Vornhale_full.txt を読込中 ．．．");
    EXPECT_EQ(observer.statuses[1].first, "");
}

TEST_F(ManagerLookupsTest, LoadsTheMasterOnceForTheLifeOfTheProgram)
{
    const fs::path path = master({" XX9TST              XX9MGR"});
    engine::ReferenceData program;
    program.beforeFirstRecord(context(options));
    // Replacing the file while the program runs changes nothing for a second conversion.
    test::writeSjisLines(path, {" h", " h", " XX9TST              XX9NEW"});
    program.beforeFirstRecord(context(options));
    EXPECT_EQ(program.managerFromFile("XX9TST"), "XX9MGR");
    // The next start of the program reads the new file.
    engine::ReferenceData nextStart;
    nextStart.beforeFirstRecord(context(options));
    EXPECT_EQ(nextStart.managerFromFile("XX9TST"), "XX9NEW");
}

TEST_F(ManagerLookupsTest, AMissingMasterTakesTheFailurePath)
{
    options.set("mng_z_full_txt_dir", (folder.strPath / "missing.txt").string());
    engine::ReferenceData data;
    try {
        data.beforeFirstRecord(context(options));
        FAIL() << "no failure";
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), failure::FileNotFound);
    }
}

TEST_F(ManagerLookupsTest, TheWebSearchIsOffWithoutCheck18)
{
    master({" XX9TST              XX9MGR"});
    options.set("Check18", "0");
    engine::ReferenceData data;
    data.beforeFirstRecord(context(options));
    EXPECT_EQ(data.managerFromWeb("XX9TST"), "");
    EXPECT_FALSE(fs::exists(folder.strPath / "DX_call.htm"));
}

TEST_F(ManagerLookupsTest, AWebSearchWithoutAConfiguredEndpointPausesAndFindsNothing)
{
    master({" XX9TST              XX9MGR"});
    options.set("Check18", "1");
    options.set("GetMng_Interval", "3");
    engine::ReferenceData data;
    std::vector<long long> pauses;
    data.setWebPause([&](std::chrono::milliseconds ms) { pauses.push_back(ms.count()); });
    data.beforeFirstRecord(context(options));
    EXPECT_EQ(data.managerFromWeb("XX9TST"), "");
    EXPECT_EQ(data.managerFromWeb("XX9ABC"), "");
    EXPECT_EQ(pauses, (std::vector<long long>{3000, 3000}));
}

TEST_F(ManagerLookupsTest, OpensTheResultListOnlyWithCheck18)
{
    master({" XX9TST              XX9MGR"});
    engine::ReferenceData data;
    engine::RunContext& c = context(options);
    c.run.in_name = (dir / "LOG.ALL").string();
    c.run.names = readers::OutputNames::of(c.run.in_name);
    data.openWebSearchResults(c);
    data.closeWebSearchResults(c);
    EXPECT_FALSE(fs::exists(dir / "LOG.mng_rslt"));

    options.set("Check18", "1");
    options.set("Option10", "2");
    engine::RunContext& c2 = context(options);
    c2.run.in_name = (dir / "LOG.ALL").string();
    c2.run.names = readers::OutputNames::of(c2.run.in_name);
    data.openWebSearchResults(c2);
    data.closeWebSearchResults(c2);
    const std::vector<std::string> lines = test::readSjisLines(dir / "LOG.mng_rslt");
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0], c2.run.in_name);
    EXPECT_EQ(lines[2], "");
}

TEST_F(ManagerLookupsTest, TheWalkReadsAnAllLogAndDeletesTheLeftPageFiles)
{
    master({" XX9TST              XX9MGR", " XX9ABC              JX1AAA"});
    options.set("Get_MNG_use_web", "0");
    test::writeSjisLines(dir / "W.ALL", {"zLog for Windows", "2026/03/01 09:00 XX9TST 599 599",
                                         "2026/03/01 09:01 XX9ZZZ 599 599"});
    test::writeBytes(folder.drive_path / "Dalmuir.htm_1", "left over");
    engine::ReferenceData data;
    engine::RunContext& c = context(options);
    c.run.in_name = (dir / "W.ALL").string();
    c.run.f_type = "all";
    const engine::ManagerWalkResult grid = engine::mnuGet_MNG_Click(c, data);
    ASSERT_EQ(grid.rows.size(), 2U);
    EXPECT_EQ(grid.rows[0].mng_file, " XX9MGR");
    EXPECT_EQ(grid.rows[0].transfer, " XX9MGR");
    EXPECT_EQ(grid.rows[1].mng_file, " ");
    EXPECT_EQ(grid.gridRows, 30);
    EXPECT_TRUE(data.managers().loaded());
    EXPECT_FALSE(fs::exists(folder.drive_path / "Dalmuir.htm_1"));
}

TEST_F(ManagerLookupsTest, TheWalkTakesTheCallsOfAZloLog)
{
    const auto zlo = test::realData("zlog/allja1_qxsl_fixture.ZLO");
    if (!zlo) {
        GTEST_SKIP() << "../shared/realdata/zlog/allja1_qxsl_fixture.ZLO is not at hand";
    }
    master({" QP3GES              XX9MGR"});
    options.set("Get_MNG_use_web", "0");
    engine::ReferenceData data;
    engine::RunContext& c = context(options);
    c.run.in_name = zlo->string();
    c.run.f_type = "zlo";
    const engine::ManagerWalkResult grid = engine::mnuGet_MNG_Click(c, data);
    ASSERT_FALSE(grid.rows.empty());
    EXPECT_EQ(grid.rows[0].Calls, " QP3GES");
    EXPECT_EQ(grid.rows[0].transfer, " XX9MGR");
    EXPECT_GT(grid.gridRows, 30);
}

TEST_F(ManagerLookupsTest, TheWalkTakesTheCallsOfAZloxLogAsOfTheZloItStandsFor)
{
    const auto zlo = test::realData("zlog/allja1_qxsl_fixture.ZLO");
    const auto zlox = test::realData("zlog/allja1_qxsl_fixture.ZLOX");
    if (!zlo || !zlox) {
        GTEST_SKIP() << "../shared/realdata/zlog/allja1_qxsl_fixture.ZLO(X) is not at hand";
    }
    master({" QP3GES              XX9MGR"});
    options.set("Get_MNG_use_web", "0");
    engine::ReferenceData data;
    auto callsOf = [&](const std::filesystem::path& log, readers::InputKind kind) {
        engine::RunContext& c = context(options);
        c.run.in_name = log.string();
        c.run.setKind(kind);
        std::vector<std::string> calls;
        for (const auto& row : engine::mnuGet_MNG_Click(c, data).rows) {
            calls.push_back(row.Calls);
        }
        return calls;
    };
    const std::vector<std::string> ofZlox = callsOf(*zlox, readers::InputKind::Zlox);
    ASSERT_FALSE(ofZlox.empty());
    EXPECT_EQ(ofZlox.front(), " QP3GES");
    EXPECT_EQ(ofZlox, callsOf(*zlo, readers::InputKind::Zlo));
}

TEST_F(ManagerLookupsTest, TheWalkTakesTheCallsOfAnRtclTextLogOfEitherGeneration)
{
    master({" XX9TST              XX9MGR"});
    options.set("Get_MNG_use_web", "0");
    test::writeSjisLines(
        dir / "NEW.LOG",
        {R"("1","2026/03/01 09:00","XX9TST","599-001","599-011","14","1","","","","","CW","14025")",
         R"("QTC","2026/03/01 09:01","XX9QTC","599-002","599-012","14","1","","","","","CW","14025")",
         R"("2","2026/03/01 09:02","XX9ABC","599-003","599-013","14","1","","","","","CW","14025")"});
    test::writeSjisLines(
        dir / "OLD.LOG",
        {R"("1","2026/03/01","09:00","XX9TST","599-001","599-011","14","1","","","","")"});
    engine::ReferenceData data;
    engine::RunContext& c = context(options);
    c.run.in_name = (dir / "NEW.LOG").string();
    c.run.setKind(readers::InputKind::LogNew);
    const engine::ManagerWalkResult newer = engine::mnuGet_MNG_Click(c, data);
    ASSERT_EQ(newer.rows.size(), 2U);
    EXPECT_EQ(newer.rows[0].Calls, " XX9TST");
    EXPECT_EQ(newer.rows[0].transfer, " XX9MGR");
    EXPECT_EQ(newer.rows[1].Calls, " XX9ABC");

    engine::RunContext& o = context(options);
    o.run.in_name = (dir / "OLD.LOG").string();
    o.run.setKind(readers::InputKind::LogOld);
    const engine::ManagerWalkResult older = engine::mnuGet_MNG_Click(o, data);
    ASSERT_EQ(older.rows.size(), 1U);
    EXPECT_EQ(older.rows[0].mng_file, " XX9MGR");
}

TEST_F(ManagerLookupsTest, TheWalkRefusesAKindItDoesNotRead)
{
    master({" XX9TST              XX9MGR"});
    engine::ReferenceData data;
    engine::RunContext& c = context(options);
    c.run.in_name = (dir / "X.ADI").string();
    c.run.f_type = "adi";
    EXPECT_THROW(engine::mnuGet_MNG_Click(c, data), failure::Failure);
}

TEST(ManagerWalkOptions, TakesTheWebTickFromItsSettingWithEmptyMeaningOn)
{
    settings::Options o;
    EXPECT_TRUE(engine::walkOptionsOf(o).Check1);
    o.set("Get_MNG_use_web", "0");
    EXPECT_FALSE(engine::walkOptionsOf(o).Check1);
    o.set("Get_MNG_use_web", "1");
    o.set("Check18", "1");
    o.set("Option10", "2");
    const manager::WalkOptions w = engine::walkOptionsOf(o);
    EXPECT_TRUE(w.Check1);
    EXPECT_TRUE(w.Check18);
    EXPECT_EQ(w.Option10, 2);
}
