// RTCL logs of every generation through the command line: whole conversions compared with
// their reviewed files in tests/data/golden, the open step with its refusals, and the zLog
// texts of rtcl2zlog. No RTCL log is public: the fixtures are built from the record layouts
// at test time. VORNHALE_UPDATE_GOLDEN=1 rewrites the golden files for review.

#include "readers/RtclWriter.h"
#include "support/TestSupport.h"
#include "text/Chars.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <tuple>

using namespace vornhale;
namespace fs = std::filesystem;
using test::RtclBinarySpec;
using test::RtclNewSpec;
using test::RtclOldSpec;

namespace {

std::string quote(const std::string& s)
{
    return "'" + s + "'";
}

std::string textLog(const std::vector<std::string>& lines)
{
    std::string out;
    for (const std::string& l : lines) {
        out += l + "\r\n";
    }
    return out;
}

// A contest of two days before version 3.00: rig frequencies in some notes, a QTC record, a
// portable call and a station worked twice.
std::string oldLog()
{
    const auto rec = [](const char* n, const char* date, const char* time, const char* call,
                        const char* sent, const char* rcvd, const char* band, const char* pts,
                        const char* note) {
        RtclOldSpec q;
        q.kind = n;
        q.date = date;
        q.time = time;
        q.call = call;
        q.sent = sent;
        q.rcvd = rcvd;
        q.band = band;
        q.points = pts;
        q.note = note;
        return q.line();
    };
    return textLog({
        rec("1", "2023-09-23", "00:01", "K1ABC", "599-001", "599-05", "14", "3", "[FRQ 14085]"),
        rec("2", "2023-09-23", "00:03", "DL1XYZ", "599-002", "599-14", "14", "3",
            "[FRQ 14091] tnx"),
        rec("QTC", "2023-09-23", "00:04", "DL1XYZ", "", "", "14", "0", ""),
        rec("3", "2023-09-23", "00:10", "JA1ZZZ", "599-003", "599-25", "7", "1", "[FRQ 07025]"),
        rec("4", "2023-09-23", "01:15", "KH6/ZZ9ZZZ", "599-004", "599-31", "21", "3", ""),
        rec("5", "2023-09-23", "02:30", "VK2ABC", "599-005", "599-30", "28", "3", "[FRQ 28085]"),
        rec("6", "2023-09-24", "10:05", "K1ABC", "599-006", "599-05", "21", "3", "[FRQ 21080]"),
        rec("7", "2023-09-24", "12:00", "JA3YYY/1", "599-007", "599-25", "3.5", "1", "[FRQ 03580]"),
    });
}

// The same kind of contest from version 3.00: the mode and the rig's frequency have fields
// of their own.
std::string newLog()
{
    const auto rec = [](const char* n, const char* when, const char* call, const char* sent,
                        const char* rcvd, const char* band, const char* mode, const char* freq) {
        RtclNewSpec q;
        q.kind = n;
        q.when = when;
        q.call = call;
        q.sent = sent;
        q.rcvd = rcvd;
        q.band = band;
        q.mode = mode;
        q.freq = freq;
        return q.line();
    };
    return textLog({
        rec("1", "2023-09-23 00:01", "K1ABC", "599-001", "599-05", "14", "RTTY", "14085"),
        rec("2", "2023-09-23 00:03", "DL1XYZ", "599-002", "599-14", "21", "RTTY", "21080"),
        rec("QTC", "2023-09-23 00:04", "DL1XYZ", "", "", "21", "RTTY", ""),
        rec("3", "2023-09-23 00:10", "JA1ZZZ", "599-003", "599-25", "7", "PSK31", "07035"),
        rec("4", "2023-09-23 01:15", "ZZ9ZZZ/MM", "599-004", "599-08", "28", "RTTY", ""),
        rec("5", "2023-09-24 10:05", "DL1XYZ", "599-005", "599-14", "14", "RTTY", "14090"),
    });
}

// Binary records of either version: a rig on most bands, 50 MHz beyond the signed range,
// 144 MHz without a rig, a QTC record, a duplicate, an operator and memos.
std::string binaryLog(bool v430)
{
    const double day = 45192.0; // 2023-09-23
    const auto rec = [day](const char* n, const char* band, std::uint32_t rig, const char* mode,
                           double minutes, const char* call, const char* rcvd) {
        RtclBinarySpec q;
        q.number = n;
        q.band = band;
        q.rig = rig;
        q.mode = mode;
        q.when = day + minutes / 1440.0;
        q.call = call;
        q.sent1 = std::string(n).substr(2);
        q.rcvd1 = rcvd;
        q.points = 3;
        q.kept = "";
        return q;
    };
    test::RtclBinaryWriter w(v430);
    RtclBinarySpec a = rec("00001", "14", 1790177280u + 85000u * 32u, "RTTY", 1, "K1ABC", "05");
    a.op = "OP1";
    a.multi1 = "05";
    a.multi2 = "K";
    w.record(a);
    RtclBinarySpec b = rec("00002", "21", 0, "RTTY", 3, "DL1XYZ", "14");
    b.multi1 = "14";
    b.multi2 = "DL";
    w.record(b);
    w.record(rec("QTC03", "21", 0, "RTTY", 4, "DL1XYZ", ""));
    RtclBinarySpec d = rec("00004", "21", 0, "RTTY", 5, "DL1XYZ", "14");
    d.dupe = 1;
    w.record(d);
    RtclBinarySpec e = rec("00005", "7", 1521741824u + 35000u * 64u, "PSK31", 10, "JA1ZZZ", "25");
    e.points = 0x18;
    e.memo = "tnx QSL";
    e.op = "OP2";
    w.record(e);
    w.record(rec("00006", "28", 2058612736u + 80000u * 16u, "USB", 75, "VK2ABC", "30"));
    w.record(rec("00007", "50", 2279048192u + 100000u * 8u, "CW", 150, "ZZ9ZZZ/MM", "08"));
    w.record(rec("00008", "144", 0, "FM", 200, "JA3YYY/1", "25"));
    w.record(rec("00009", "3.5", 1253306368u + 10000u * 128u, "CW", 1450, "K1ABC", "05"));
    return w.bytes();
}

struct RtclCase
{
    const char* name;
    const char* type;
    std::string (*log)();
    const char* args;
};

std::string v4Log()
{
    return binaryLog(false);
}
std::string v430Log()
{
    return binaryLog(true);
}

const RtclCase kCases[] = {
    {"rtcl_old_defaults", "log_old", &oldLog, ""},
    {"rtcl_old_frequency", "log_old", &oldLog, "--set Check17=1 --set Rmks1_cfg=Rcvd,Zone"},
    {"rtcl_new_frequency", "log_new", &newLog, "--set Check17=1 --set Rmks1_cfg=Rcvd,Zone"},
    {"rtcl_v4_frequency_op_memo", "log_v4", &v4Log, "--set Check17=1 --set Rmks1_cfg=OP,memo,Rcvd"},
    {"rtcl_v430_frequency_op_memo", "log_v430", &v430Log,
     "--set Check17=1 --set Rmks1_cfg=OP,memo,Rcvd"},
    {"rtcl_v430_defaults", "log_v430", &v430Log, ""},
};

void PrintTo(const RtclCase& c, std::ostream* os)
{
    *os << c.name;
}

struct Cli
{
    test::TempDir dir;
    fs::path home = dir / "home";
    std::string output;

    int run(const std::string& command, const fs::path& log, const std::string& args = "")
    {
        return test::runCommand(quote(test::cliPath()) + " " + command + " --home " +
                                    quote(home.string()) + " " + args + " " + quote(log.string()),
                                &output);
    }
    fs::path write(const std::string& name, const std::string& bytes)
    {
        test::writeBytes(dir / name, bytes);
        return dir / name;
    }
    std::vector<std::string> filesBeside() const
    {
        std::vector<std::string> names;
        for (const auto& e : fs::directory_iterator(dir.path())) {
            if (e.path().filename() != "home") {
                names.push_back(e.path().filename().string());
            }
        }
        std::sort(names.begin(), names.end());
        return names;
    }
};

} // namespace

class ConvertRtclGolden : public ::testing::TestWithParam<RtclCase>
{
};

TEST_P(ConvertRtclGolden, EveryFileMatchesItsReviewedCopyAndTheLogStaysAsItWas)
{
    const RtclCase& c = GetParam();
    Cli cli;
    // A log named in capitals, as RTCL names its logs.
    const std::string bytes = c.log();
    const fs::path log = cli.write("CONTEST.LOG", bytes);
    ASSERT_EQ(cli.run("convert --keep-work --type " + std::string(c.type) + " " + c.args, log), 0)
        << cli.output;

    const bool binary = std::string(c.type).rfind("log_v", 0) == 0;
    std::vector<std::string> expectedBeside{"CONTEST.LOG", "CONTEST_cn.csv", "CONTEST_hn.csv"};
    if (binary) {
        expectedBeside.push_back("CONTEST_log2a.all");
    }
    EXPECT_EQ(cli.filesBeside(), expectedBeside);
    EXPECT_EQ(test::readBytes(log), bytes);

    const fs::path golden = test::testData("golden") / c.name;
    std::vector<std::pair<std::string, fs::path>> files{
        {"CONTEST_hn.csv", cli.dir / "CONTEST_hn.csv"},
        {"CONTEST_cn.csv", cli.dir / "CONTEST_cn.csv"},
        {"zlog_1.txt", cli.home / "Work" / "zlog_1.txt"},
        {"zlog_2.txt", cli.home / "Work" / "zlog_2.txt"}};
    if (binary) {
        files.emplace_back("CONTEST_log2a.all", cli.dir / "CONTEST_log2a.all");
    }
    for (const auto& [file, actual] : files) {
        ASSERT_TRUE(fs::exists(actual)) << actual;
        EXPECT_EQ(test::compareGolden(golden / file, test::readBytes(actual)), "") << c.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Generations, ConvertRtclGolden, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(RtclCommand, OpenTellsTheKindOfEachGeneration)
{
    Cli cli;
    for (const auto& [type, bytes, f_type, count] :
         {std::tuple{"log_old", oldLog(), "log", "   8　件"},
          std::tuple{"log_new", newLog(), "log", "   6　件"},
          std::tuple{"log_v4", v4Log(), "log_v4", "   9　件"},
          std::tuple{"log_v430", v430Log(), "log_v430", "   9　件"}}) {
        const fs::path log = cli.write("CONTEST.LOG", bytes);
        ASSERT_EQ(cli.run(std::string("open --type ") + type, log), 0) << cli.output;
        EXPECT_NE(cli.output.find(std::string("f_type\t") + f_type + "\n"), std::string::npos)
            << cli.output;
        EXPECT_NE(cli.output.find(std::string("Label37\t") + count + "\n"), std::string::npos)
            << cli.output;
        EXPECT_NE(cli.output.find("out_name_ham_n\t" + (cli.dir / "CONTEST_hn.csv").string()),
                  std::string::npos)
            << cli.output;
        const bool text = std::string(f_type) == "log";
        EXPECT_EQ(cli.output.find("mnuDisp_l2t\tCONTEST_l2z.txt\n") != std::string::npos, text)
            << cli.output;
        EXPECT_EQ(cli.output.find("mnuDisp_l2a\tCONTEST_l2z.all\n") != std::string::npos, text)
            << cli.output;
    }
}

TEST(RtclCommand, OpenShowsTheBoxOfTheOtherTextGeneration)
{
    Cli cli;
    const fs::path old = cli.write("OLD.LOG", oldLog());
    EXPECT_EQ(cli.run("open --type log_new", old), 1);
    EXPECT_NE(cli.output.find("　　ＲＴＣＬのバージョン違いの　＊．ｌｏｇ　です！\n[　" +
                              old.string() +
                              " ] は\n\n旧　バージョンのｌｏｇ形式ファイルです。\n\n"
                              "ファイルを選択し直して下さい。"),
              std::string::npos)
        << cli.output;

    const fs::path fresh = cli.write("NEW.LOG", newLog());
    EXPECT_EQ(cli.run("open --type log_old", fresh), 1);
    EXPECT_NE(cli.output.find("新　バージョンのｌｏｇ形式ファイルです。"), std::string::npos)
        << cli.output;
    // And a conversion does not start either.
    EXPECT_EQ(cli.run("convert --type log_old", fresh), 1);
    EXPECT_FALSE(fs::exists(cli.dir / "NEW_hn.csv"));
}

TEST(RtclCommand, OpenShowsTheVersionMessagesOfTheBinaryLogs)
{
    Cli cli;
    const fs::path v4 = cli.write("V4.LOG", v4Log());
    const fs::path v430 = cli.write("V430.LOG", v430Log());
    const fs::path text = cli.write("OLD.LOG", oldLog());
    const fs::path shortLog = cli.write("SHORT.LOG", v4Log().substr(0, 150));

    EXPECT_EQ(cli.run("open --type log_v430", v4), 1);
    EXPECT_NE(
        cli.output.find(v4.string() + "　は RTCL ver 4.30 以降のｌｏｇ ファイルではありません"),
        std::string::npos)
        << cli.output;
    EXPECT_EQ(cli.run("open --type log_v4", v430), 1);
    EXPECT_NE(
        cli.output.find(v430.string() + "　は RTCL ver 4.30 より前のｌｏｇ ファイルではありません"),
        std::string::npos)
        << cli.output;
    EXPECT_EQ(cli.run("open --type log_v4", text), 1);
    EXPECT_NE(cli.output.find(text.string() + "　は RTCL ver 4.0 のｌｏｇ ファイルではありません"),
              std::string::npos)
        << cli.output;
    EXPECT_EQ(cli.run("convert --type log_v4", shortLog), 1);
    EXPECT_NE(cli.output.find("より前のｌｏｇ ファイルではありません"), std::string::npos);
    EXPECT_FALSE(fs::exists(cli.dir / "SHORT_hn.csv"));
}

TEST(RtclCommand, ALogWhoseNameHoldsNoLogIsNeverOverwrittenAndNothingIsWrittenBesideIt)
{
    Cli cli;
    const std::string bytes = v4Log();
    const fs::path log = cli.write("CONTEST.BIN", bytes);
    EXPECT_EQ(cli.run("convert --type log_v4", log), 1) << cli.output;
    EXPECT_NE(cli.output.find("出力ファイル名が入力ファイルと同じになります。"), std::string::npos)
        << cli.output;
    EXPECT_EQ(cli.filesBeside(), std::vector<std::string>{"CONTEST.BIN"});
    EXPECT_EQ(test::readBytes(log), bytes);
}

TEST(RtclCommand, AnOperatorFilterLeavesTheTextGenerationsNothingAndTheRunFails)
{
    // The text logs name no operator: with Check02 and a name every record is dropped, and
    // the empty working file ends the run at its first read.
    for (const auto& [type, bytes] :
         {std::pair{"log_old", oldLog()}, std::pair{"log_new", newLog()}}) {
        Cli cli;
        const fs::path log = cli.write("CONTEST.LOG", bytes);
        EXPECT_EQ(cli.run(std::string("convert --keep-work --set Check02=1 --set txtOp_name=OP1 "
                                      "--type ") +
                              type,
                          log),
                  1)
            << cli.output;
        EXPECT_NE(cli.output.find("エラー内容 ：　62"), std::string::npos) << cli.output;
        EXPECT_EQ(test::readBytes(cli.home / "Work" / "zlog_1.txt"), "");
        EXPECT_EQ(cli.filesBeside(), std::vector<std::string>{"CONTEST.LOG"});
    }
}

TEST(RtclCommand, ANameAloneDoesNotTellTheGeneration)
{
    Cli cli;
    const fs::path log = cli.write("CONTEST.LOG", v4Log());
    EXPECT_EQ(cli.run("convert", log), 1);
    EXPECT_EQ(cli.run("convert --type rtcl", log), 2);
    EXPECT_FALSE(fs::exists(cli.dir / "CONTEST_hn.csv"));
}

struct MakerCase
{
    const char* type;
    const char* form;
    std::string (*log)();
    const char* written;
};

TEST(RtclCommand, Rtcl2zlogWritesTheZlogTextOfEachGenerationAndForm)
{
    const MakerCase cases[] = {
        {"log_old", "txt", &oldLog, "CONTEST_l2z.txt"},
        {"log_old", "all", &oldLog, "CONTEST_l2z.all"},
        {"log_new", "txt", &newLog, "CONTEST_l2z.txt"},
        {"log_new", "all", &newLog, "CONTEST_l2z.all"},
        {"log_v4", "txt", &v4Log, "CONTEST_log2z.txt"},
        {"log_v4", "all", &v4Log, "CONTEST_log2z.all"},
        {"log_v430", "txt", &v430Log, "CONTEST_log2z.txt"},
        {"log_v430", "ALL", &v430Log, "CONTEST_log2z.all"},
    };
    for (const MakerCase& m : cases) {
        Cli cli;
        const fs::path log = cli.write("CONTEST.LOG", m.log());
        ASSERT_EQ(cli.run(std::string("rtcl2zlog --type ") + m.type + " --form " + m.form, log), 0)
            << cli.output;
        const fs::path written = cli.dir / m.written;
        EXPECT_NE(cli.output.find(written.string() + "\n"), std::string::npos) << cli.output;
        EXPECT_EQ(cli.filesBeside(), (std::vector<std::string>{"CONTEST.LOG", m.written}));
        const std::string name = std::string("rtcl2zlog_") + m.type + "_" + text::lower(m.form);
        EXPECT_EQ(test::compareGolden(test::testData("golden") / "rtcl_makers" / name,
                                      test::readBytes(written)),
                  "")
            << name;
    }
}

TEST(RtclCommand, Rtcl2zlogRefusesTheOtherGenerationAndBadWords)
{
    Cli cli;
    const fs::path old = cli.write("OLD.LOG", oldLog());
    EXPECT_EQ(cli.run("rtcl2zlog --type log_new --form all", old), 1);
    EXPECT_NE(cli.output.find("旧　バージョンのｌｏｇ形式ファイルです。"), std::string::npos);
    EXPECT_FALSE(fs::exists(cli.dir / "OLD_l2z.all"));

    const fs::path v4 = cli.write("V4.LOG", v4Log());
    EXPECT_EQ(cli.run("rtcl2zlog --type log_v430 --form txt", v4), 1);
    EXPECT_NE(cli.output.find("RTCL ver 4.30 以降のｌｏｇファイルではありません"),
              std::string::npos)
        << cli.output;
    EXPECT_FALSE(fs::exists(cli.dir / "V4_log2z.txt"));

    EXPECT_EQ(cli.run("rtcl2zlog --type zlo --form txt", v4), 2);
    EXPECT_EQ(cli.run("rtcl2zlog --type log_v4 --form csv", v4), 2);
}
