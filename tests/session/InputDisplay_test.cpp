#include "session/InputDisplay.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace vornhale;
using namespace vornhale::session;
namespace fs = std::filesystem;

namespace {

readers::InputState opened(const fs::path& log, readers::InputKind kind)
{
    readers::InputState s;
    s.in_name = log.string();
    s.lblIn_name = log.string();
    s.setKind(kind);
    s.names = readers::OutputNames::of(s.in_name);
    s.Label37 = "  64　件";
    return s;
}

} // namespace

TEST(InputDisplay, WithoutAnInputTheLabelIsRedAndNothingIsSearched)
{
    readers::InputState s;
    s.lblIn_name = "入力ファイルを指定して下さい";
    const InputDisplay d = inputDisplay(s);
    EXPECT_EQ(d.lblIn_name, "入力ファイルを指定して下さい");
    EXPECT_EQ(d.lblIn_nameColour, base::Colour::Red);
    EXPECT_EQ(d.lblIn_nameTip, "");
    EXPECT_EQ(d.Label33, "未 検 索");
    EXPECT_FALSE(d.showMngResult);
    EXPECT_TRUE(d.yearBox);
    EXPECT_FALSE(d.makeZ2a);
}

TEST(InputDisplay, AnOpenedLogShowsItsNamesInBrightBlue)
{
    test::TempDir dir;
    const InputDisplay d = inputDisplay(opened(dir / "CONTEST.ALL", readers::InputKind::All));
    EXPECT_EQ(d.lblIn_nameColour, base::Colour::BrightBlue);
    EXPECT_EQ(d.lblIn_nameTip, (dir / "CONTEST.ALL").string());
    EXPECT_EQ(d.control18, "CONTEST_cn.csv");
    EXPECT_EQ(d.control20, "CONTEST_hn.csv");
    EXPECT_EQ(d.control21, (dir / "CONTEST_hn.csv").string());
    EXPECT_EQ(d.Frame04, "CONTEST_cn.csv の Ｓｏｒｔ 順の指定");
    EXPECT_EQ(d.mnuDisp_dup, (dir / "CONTEST.dup").string());
    // An .ALL log carries its year.
    EXPECT_FALSE(d.yearBox);
    EXPECT_TRUE(inputDisplay(opened(dir / "CONTEST.TXT", readers::InputKind::Txt)).yearBox);
}

TEST(InputDisplay, AZloLogOffersItsTextAndShowsItOnceMade)
{
    test::TempDir dir;
    const readers::InputState s = opened(dir / "TEST.ZLO", readers::InputKind::Zlo);
    InputDisplay d = inputDisplay(s);
    EXPECT_TRUE(d.makeZ2a);
    EXPECT_FALSE(d.showZ2a);
    EXPECT_FALSE(d.yearBox);
    test::writeBytes(dir / "TEST_z2a.all", "x\r\n");
    d = inputDisplay(s);
    EXPECT_TRUE(d.showZ2a);
}

TEST(InputDisplay, AResultListOfAnotherInputDoesNotCountAfterARun)
{
    test::TempDir dir;
    const readers::InputState s = opened(dir / "CONTEST.ALL", readers::InputKind::All);
    test::writeSjisLines(s.names.Get_Mng_result_name, {"/elsewhere/OTHER.ALL", "2026/11/22", ""});
    EXPECT_EQ(inputDisplay(s).Label33, "検索済み");
    EXPECT_TRUE(inputDisplay(s).showMngResult);
    const InputDisplay after = inputDisplay(s, true);
    EXPECT_EQ(after.Label33, "未 検 索");
    EXPECT_FALSE(after.showMngResult);
    test::writeSjisLines(s.names.Get_Mng_result_name, {s.in_name, "2026/11/22", ""});
    EXPECT_TRUE(inputDisplay(s, true).showMngResult);
}

TEST(InputDisplay, AnEmptyResultListIsNotASearch)
{
    test::TempDir dir;
    const readers::InputState s = opened(dir / "CONTEST.ALL", readers::InputKind::All);
    test::writeBytes(s.names.Get_Mng_result_name, "");
    EXPECT_EQ(inputDisplay(s).Label33, "未 検 索");
}
