#include "base/WorkingFiles.h"
#include "failure/Failure.h"
#include "readers/CtestwinConverter.h"
#include "readers/CtestwinReader.h"
#include "readers/InputSelection.h"
#include "readers/Lg8Writer.h"
#include "readers/OutsideProgram.h"
#include "settings/ProfileFile.h"
#include "support/RunFixture.h"
#include "text/Chars.h"

#include <chrono>
#include <gtest/gtest.h>
#include <regex>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

enum Field { Year, Month, Day, Time, Call, RstSent, RstRcvd, Band, Mode, Op, Memo, Freq, Rcvd };

struct CtestwinRun : ::testing::Test, test::RunFixture
{
    settings::Options options = settings::Options::defaults();

    engine::RunContext& fresh() { return context(options); }

    fs::path exchangeFile() const { return folder.strPath / "ctestwin2zlog.ini"; }

    std::string key(const char* name) const
    {
        return settings::ProfileFile(exchangeFile()).read("ctestwin2zlog.ini", name);
    }

    /// Names `command` as the outside converter in the program folder's settings.
    void configure(const std::string& command, const std::string& timeout = "")
    {
        settings::ProfileFile ini(folder.strPath / "Vornhale.ini");
        ini.write("ctestwin2zlog", "command", command);
        if (!timeout.empty()) {
            ini.write("ctestwin2zlog", "timeout_s", timeout);
        }
        ASSERT_TRUE(ini.save());
    }

    /// A shell script in the test folder, run as the converter.
    std::string script(const std::string& body)
    {
        const fs::path path = dir / "converter.sh";
        test::writeBytes(path, "#!/bin/sh\n" + body);
        fs::permissions(path, fs::perms::owner_all);
        return "'" + path.string() + "'";
    }

    fs::path lg8(const std::string& bytes, const char* name = "LOG.lg8")
    {
        const fs::path path = dir / name;
        test::writeBytes(path, bytes);
        return path;
    }
};

// What a converter script does with the exchange file: the path from its key, the count into
// its key, in the folder it was started in.
const char* kScriptHead =
    R"(in=$(sed -n 's/^ctestwin2zlog_in_name=//p' ctestwin2zlog.ini | tr -d '\r')
out="${in%.*}_ctestwin2zlog.all"
pwd > started_in.txt
)";

// --- The built-in converter ----------------------------------------------------------------

TEST_F(CtestwinRun, TheRealLogOpensAndConvertsThroughTheBuiltInConverter)
{
    const auto real = test::realData("ctestwin/allja1.lg8");
    const auto twinPath = test::realData("ctestwin/allja1_ctestwin_text.txt");
    if (!real || !twinPath) {
        GTEST_SKIP() << "../shared/realdata/ctestwin is not beside the source tree";
    }
    // An upper-case extension is taken as well.
    const fs::path log = dir / "ALLJA1.LG8";
    fs::copy_file(*real, log);
    engine::RunContext& c = fresh();
    ASSERT_EQ(readers::openInput(c, log, ""), readers::OpenResult::Opened);
    EXPECT_EQ(c.run.kind, readers::InputKind::Lg8);
    EXPECT_EQ(c.run.f_type, "lg8");
    EXPECT_EQ(key("ctestwin2zlog_in_name"), log.string());
    EXPECT_EQ(key("qso_su_str"), "1000");
    EXPECT_EQ(c.run.ctestwin.lg8_name, log.string());
    EXPECT_EQ(c.run.ctestwin.ctestwin_qso_count, "1000");
    EXPECT_EQ(c.run.ctestwin.ctestwin_all_name, (dir / "ALLJA1_ctestwin2zlog.all").string());
    EXPECT_TRUE(fs::exists(c.run.ctestwin.ctestwin_all_name));
    EXPECT_EQ(c.run.Label39, "1000 件");
    EXPECT_EQ(c.options.value("Option2"), "0");
    EXPECT_EQ(text::trim(c.run.Label37), "1001　件");
    EXPECT_EQ(c.run.names.out_name_ham_n, (dir / "ALLJA1_hn.csv").string());

    readers::CtestwinReader reader;
    reader.read(c);
    EXPECT_EQ(c.run.in_name, log.string());
    const auto lines = records(work(base::working::zlog_1), 13);
    ASSERT_EQ(lines.size(), 1000u);
    EXPECT_EQ(c.run.written_count, 1000);

    static const std::regex twinLine(
        R"(^\s*\d+\s+(\d+)/\s*(\d+)\s+(\d{4})\s+(\S+)\s+(\S+)MHz\s+(\S+)\s+(\S+)\s+(\S+)\s*$)");
    std::size_t i = 0;
    for (const std::string& l : test::readSjisLines(*twinPath)) {
        std::smatch m;
        if (!std::regex_match(l, m, twinLine)) {
            continue;
        }
        ASSERT_LT(i, lines.size());
        const auto& q = lines[i++];
        EXPECT_EQ(std::stoi(q[Month]), std::stoi(m[1])) << l;
        EXPECT_EQ(std::stoi(q[Day]), std::stoi(m[2])) << l;
        EXPECT_EQ(q[Time], m[3].str()) << l;
        EXPECT_EQ(text::trim(q[Call]), m[4].str()) << l;
        EXPECT_EQ(q[Band], m[5].str()) << l;
        EXPECT_EQ(q[Mode], m[6].str()) << l;
        EXPECT_EQ(std::string(text::trim(q[RstRcvd])) + q[Rcvd], m[8].str()) << l;
    }
    EXPECT_EQ(i, 1000u);
}

TEST_F(CtestwinRun, AWrongExtensionShowsTheBoxAndChangesNothing)
{
    const fs::path log = lg8(test::lg8Bytes({test::Lg8QsoSpec{}}), "LOG.lg9");
    engine::RunContext& c = fresh();
    EXPECT_EQ(readers::openInput(c, log, "lg8"), readers::OpenResult::Rejected);
    ASSERT_EQ(dialogs.shown.size(), 1u);
    EXPECT_EQ(dialogs.shown[0].text, "正しいファイル名を指定して下さい。");
    EXPECT_EQ(c.run.kind, readers::InputKind::None);
    EXPECT_FALSE(fs::exists(exchangeFile()));
}

TEST_F(CtestwinRun, AFileThatIsNoCtestwinLogIsAFailure)
{
    const fs::path log = lg8("zLog for Windows\r\n");
    engine::RunContext& c = fresh();
    try {
        readers::openInput(c, log, "");
        FAIL();
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), failure::TypeMismatch);
    }
}

TEST_F(CtestwinRun, WithoutAConfiguredCommandTheBuiltInConverterRuns)
{
    EXPECT_NE(dynamic_cast<readers::BuiltInCtestwinConverter*>(
                  readers::configuredCtestwinConverter(folder.strPath).get()),
              nullptr);
    configure("");
    EXPECT_NE(dynamic_cast<readers::BuiltInCtestwinConverter*>(
                  readers::configuredCtestwinConverter(folder.strPath).get()),
              nullptr);
    configure("wine ctestwin2zlog.exe");
    EXPECT_NE(dynamic_cast<readers::CommandCtestwinConverter*>(
                  readers::configuredCtestwinConverter(folder.strPath).get()),
              nullptr);
}

// --- An outside converter ------------------------------------------------------------------

TEST_F(CtestwinRun, AnOutsideConverterTalksThroughTheExchangeFileAndIsWaitedFor)
{
    const std::string qso1 = std::string("2017/06/04 09:00 ") + "JA1ZZZ       " + "599 " +
                             "13      " + "599 " + "25      " + "-     -     " + "7    " + "CW   " +
                             "   ";
    const std::string qso2 = std::string("2017/06/04 09:01 ") + "JA2YYY       " + "599 " +
                             "13      " + "599 " + "26      " + "-     -     " + "14   " + "CW   " +
                             "   ";
    test::writeSjisLines(dir / "prepared.all", {"zLog for Windows ", qso1, qso2});
    configure(script(std::string(kScriptHead) + "sleep 0.5\ncp '" +
                     (dir / "prepared.all").string() + "' \"$out\"\n" +
                     "sed -i 's/^qso_su_str=.*/qso_su_str=2\\r/' ctestwin2zlog.ini\n"));
    const fs::path log = lg8("not read by this converter");
    engine::RunContext& c = fresh();
    ASSERT_EQ(readers::openInput(c, log, ""), readers::OpenResult::Opened);
    // The keys are read after the converter's end, however long it takes.
    EXPECT_EQ(c.run.ctestwin.ctestwin_qso_count, "2");
    EXPECT_EQ(c.run.Label39, "2 件");
    EXPECT_EQ(c.run.ctestwin.ctestwin_all_name, (dir / "LOG_ctestwin2zlog.all").string());
    EXPECT_EQ(text::trim(test::readSjisLines(folder.strPath / "started_in.txt").at(0)),
              fs::canonical(folder.strPath).string());
    readers::CtestwinReader().read(c);
    const auto lines = records(work(base::working::zlog_1), 13);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0][Call], "JA1ZZZ       ");
    EXPECT_EQ(lines[0][Time], "0900");
    EXPECT_EQ(lines[1][Band], "14");
    EXPECT_EQ(lines[1][Rcvd], "26");
}

TEST_F(CtestwinRun, AConverterThatLeavesTheCountShowsTheOldOne)
{
    configure(script(std::string(kScriptHead) + R"(printf 'zLog for Windows \r\nx\r\n' > "$out"
)"));
    const fs::path log = lg8("");
    engine::RunContext& c = fresh();
    c.run.ctestwin.ctestwin_qso_count = "77";
    ASSERT_EQ(readers::openInput(c, log, ""), readers::OpenResult::Opened);
    EXPECT_EQ(c.run.ctestwin.ctestwin_qso_count, "77");
    EXPECT_EQ(c.run.Label39, "77 件");
}

TEST_F(CtestwinRun, ATextNotInAllFormYieldsLinesOfWhateverTheColumnsHold)
{
    configure(
        script(std::string(kScriptHead) + R"(printf 'first line\r\nhello world\r\n\r\n' > "$out"
)"));
    engine::RunContext& c = fresh();
    ASSERT_EQ(readers::openInput(c, lg8(""), ""), readers::OpenResult::Opened);
    readers::CtestwinReader().read(c);
    const auto lines = records(work(base::working::zlog_1), 13);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0][Year], "hell");
    EXPECT_EQ(lines[0][Month], "w");
    EXPECT_EQ(lines[0][Call], std::string(13, ' '));
    EXPECT_EQ(lines[1][Year], "    ");
}

TEST_F(CtestwinRun, AMissingConverterIsARunTimeFailure)
{
    configure("/nonexistent/ctestwin2zlog.exe");
    engine::RunContext& c = fresh();
    try {
        readers::openInput(c, lg8(""), "");
        FAIL();
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), failure::FileNotFound);
        EXPECT_TRUE(text::contains(f.description(), "/nonexistent/ctestwin2zlog.exe"));
    }
}

TEST_F(CtestwinRun, AConverterThatDoesNotEndInTimeIsEndedAndIsAFailure)
{
    configure(script("sleep 30\n"), "0.3");
    engine::RunContext& c = fresh();
    const auto start = std::chrono::steady_clock::now();
    try {
        readers::openInput(c, lg8(""), "");
        FAIL();
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), failure::InvalidCall);
        EXPECT_TRUE(text::contains(f.description(), "終わりませんでした"));
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST(OutsideProgram, RunsInTheFolderAndGivesTheExitStatus)
{
    test::TempDir dir;
    const readers::OutsideRun run =
        readers::runOutsideProgram("pwd > here.txt; exit 3", dir.path(), std::chrono::seconds(20));
    EXPECT_EQ(run.end, readers::OutsideRun::End::Exited);
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(text::trim(test::readBytes(dir / "here.txt")),
              text::trim(fs::canonical(dir.path()).string() + "\n"));
}

TEST(OutsideProgram, EndsAProgramAndItsChildrenAtTheLimit)
{
    test::TempDir dir;
    const auto start = std::chrono::steady_clock::now();
    const readers::OutsideRun run = readers::runOutsideProgram(
        "sleep 30 & sleep 30; echo late > late.txt", dir.path(), std::chrono::milliseconds(200));
    EXPECT_EQ(run.end, readers::OutsideRun::End::TimedOut);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    EXPECT_FALSE(fs::exists(dir / "late.txt"));
}

} // namespace
