#include "readers/InputSelection.h"
#include "readers/ZloWriter.h"
#include "support/RunFixture.h"
#include "text/SjisText.h"

#include <gtest/gtest.h>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

const std::string kAllHeader = "zLog for Windows  Version 2.8";
const std::string kAllLine =
    "2026/11/21 23:19 JA1ZZZ       599         599 13      -     -     3.5  CW   1";

fs::path writeAll(const test::TempDir& dir, const std::string& relative)
{
    const fs::path p = dir / relative;
    fs::create_directories(p.parent_path());
    test::writeSjisLines(p, {kAllHeader, kAllLine});
    return p;
}

} // namespace

TEST(InputSelection, ASecondZloInTheNameIsReplacedInEveryOutputName)
{
    test::RunFixture f;
    auto& ctx = f.context();
    test::ZloWriter w;
    w.header("ALL JA コンテスト").qso({});
    const fs::path log = f.dir / "a.zlo.zlo";
    test::writeBytes(log, w.bytes());
    ASSERT_EQ(readers::openInput(ctx, log, ""), readers::OpenResult::Opened);
    EXPECT_EQ(ctx.run.f_type, "zlo");
    EXPECT_EQ(ctx.run.names.out_name_ham_n, (f.dir / "a_hn.csv_hn.csv").string());
    EXPECT_EQ(ctx.run.Label37, "   1　件");
}

TEST(InputSelection, AFolderHoldingTheExtensionChangesTooInTheOutputName)
{
    test::RunFixture f;
    auto& ctx = f.context();
    const fs::path log = writeAll(f.dir, "logs.all/CONTEST.all");
    ASSERT_EQ(readers::openInput(ctx, log, ""), readers::OpenResult::Opened);
    EXPECT_EQ(ctx.run.f_type, "all");
    EXPECT_EQ(ctx.run.names.out_name_ham_n, (f.dir / "logs_hn.csv/CONTEST_hn.csv").string());
}

TEST(InputSelection, APathOfFortyBytesIsShownWholeAndALongerOneShortened)
{
    const std::string forty = "/home/op/logs/2026/contest/A123456.ALL"; // 38
    EXPECT_EQ(readers::shortenedPath(forty + "xx"), forty + "xx");
    const std::string longer = forty + "xxx";
    const std::string shown = readers::shortenedPath(longer);
    EXPECT_EQ(text::Len_sjis(shown), 40u);
    EXPECT_NE(shown.find(".../"), std::string::npos);
    EXPECT_TRUE(text::endsWith(shown, "A123456.ALLxxx"));
}

TEST(InputSelection, RefInAnyCaseAnywhereInThePathTicksCheck13)
{
    test::RunFixture f;
    settings::Options options = settings::Options::defaults();
    options.set("Check13", "0");
    auto& ctx = f.context(options);
    const fs::path log = writeAll(f.dir, "Ref_2026/CONTEST.ALL");
    ASSERT_EQ(readers::openInput(ctx, log, ""), readers::OpenResult::Opened);
    EXPECT_TRUE(ctx.options.tick("Check13"));

    test::RunFixture g;
    options.set("Check13", "0");
    auto& other = g.context(options);
    ASSERT_EQ(readers::openInput(other, writeAll(g.dir, "logs/CONTEST.ALL"), ""),
              readers::OpenResult::Opened);
    EXPECT_FALSE(other.options.tick("Check13"));
}

TEST(InputSelection, AFileThatIsNoZlogTextLogIsRejectedWithItsMessage)
{
    test::RunFixture f;
    auto& ctx = f.context();
    const fs::path log = f.dir / "NOTES.ALL";
    test::writeSjisLines(log, {"just some notes", "more"});
    EXPECT_EQ(readers::openInput(ctx, log, ""), readers::OpenResult::Rejected);
    EXPECT_EQ(ctx.run.in_name.find('/'), std::string::npos) << ctx.run.in_name;
}

TEST(InputSelection, OpeningATextLogAnalysesItsExchange)
{
    test::RunFixture f;
    auto& ctx = f.context();
    ASSERT_EQ(readers::openInput(ctx, writeAll(f.dir, "C.ALL"), ""), readers::OpenResult::Opened);
    EXPECT_TRUE(ctx.run.exchange.rcvd_has_zone);
}
