#include "engine/RecordConversion.h"
#include "engine/RecordLookups.h"
#include "engine/Records.h"
#include "engine/RemarkLayout.h"
#include "reference/NameQthMasters.h"
#include "support/RunFixture.h"

#include <gtest/gtest.h>
#include <map>
#include <set>

using namespace vornhale;
using engine::EnrichedLine;

namespace {

EnrichedLine line(const std::string& call, const std::string& base, const std::string& ext = "",
                  const std::string& rcvd = "13")
{
    EnrichedLine e;
    e.q_date6 = "261122";
    e.q_time = "0905";
    e.q_call = call;
    e.q_rst_sent = "599";
    e.q_rst_rcvd = "5991";
    e.base_call = base;
    e.call_ext = ext;
    e.band_or_freq = "14";
    e.q_mode = "CW";
    e.dx_code = "566A";
    e.dx_name = "Taiwan";
    e.q_call2 = call;
    e.q_rcvd = rcvd;
    return e;
}

struct Managers : engine::RecordLookups
{
    std::map<std::string, std::string> file;
    std::set<std::string> done;
    bool anyThread = false;
    std::string kept = "(none)";
    std::string managerFromFile(std::string_view call) override
    {
        const auto it = file.find(std::string(call));
        return it == file.end() ? std::string() : it->second;
    }
    void keepManagerFromFile(std::string_view mng_file) override { kept = mng_file; }
    bool answersFromAnyThread() const override { return anyThread; }
    bool historyDone(std::string_view call, std::string_view) override
    {
        return done.count(std::string(call)) != 0;
    }
};

// The name and QTH masters of the golden cases, read and looked up as a conversion does.
struct Masters : Managers
{
    reference::CallMaster names{reference::CallMaster::Kind::Name};
    reference::CallMaster qths{reference::CallMaster::Kind::Qth};

    Masters()
    {
        names.load(test::testData("masters") / "name_mas.txt");
        qths.load(test::testData("masters") / "qth_mas.txt");
    }
    bool nameMasterOn() override { return true; }
    std::string nameOf(std::string_view call) override
    {
        std::string name, code, qth, remark;
        reference::get_name_mas(names, call, name, code, qth, remark);
        return name;
    }
    engine::QthEntry qthOf(std::string_view call) override
    {
        engine::QthEntry e;
        int hit = 0;
        reference::get_qth_mas(qths, call, e.name, e.code, e.qth, e.gl, hit);
        e.found = hit == 1;
        return e;
    }
};

struct Conversion : test::RunFixture
{
    settings::Options options = settings::Options::defaults();
    Managers managers;
    engine::RecordLookups* lookups = &managers;
    std::string inName = "CONTEST.ALL";
    std::string f_type = "all";

    // Runs Henkan_txt over the lines; returns the sort records and the result records.
    std::pair<std::vector<std::vector<std::string>>, std::vector<std::vector<std::string>>>
    run(const std::vector<EnrichedLine>& lines)
    {
        {
            text::LineWriter w(work("zlog_2.txt"));
            for (const auto& e : lines) {
                w.write(text::formatRecord(e.fields()));
            }
            w.close();
        }
        engine::RunContext& c = context(options);
        c.lookups = lookups;
        c.run.in_name = (dir / inName).string();
        c.run.f_type = f_type;
        c.run.names = readers::OutputNames::of(c.run.in_name);
        c.run.QSL_Q = std::string(text::trim(options.value("QSL_Q")));
        c.run.QSL_S = options.value("QSL_S");
        c.run.Zone_moji = "Z";
        c.run.fixedRemark1 = options.value("txtRmks1");
        const auto layout = engine::RemarkLayout::fromOptions(options);
        c.run.use = layout.use();
        engine::Henkan_txt(c, layout);
        return {records(work("Sort-in.csv"), 23), records(c.run.names.out_name_ham0, 20)};
    }
};

enum Sort { SCall, SExt, SCode, SBand = 4, SMode, SName, SRoute, SDate = 10, STime, SRstR = 13, SQth,
            SRmks1, SRmks2, SMngPad, SCall23 = 22 };
enum Result { RCall, RExt, RDate, RTime, RRstS, RRstR, RBand, RMode, RCode, RGl, RQsl, RName, RQth,
              RRmks1, RRmks2 };

} // namespace

TEST(Henkan_txt, ModesAreNormalised)
{
    EXPECT_EQ(engine::normaliseMode("RTY"), "RTTY");
    EXPECT_EQ(engine::normaliseMode("RTT"), "RTTY");
    EXPECT_EQ(engine::normaliseMode("SST"), "SSTV");
    EXPECT_EQ(engine::normaliseMode("PS31"), "PSK31");
    EXPECT_EQ(engine::normaliseMode("PSK6"), "PSK63");
    EXPECT_EQ(engine::normaliseMode("PS6"), "PS6");
    EXPECT_EQ(engine::normaliseMode("CW "), "CW ");
}

TEST(Henkan_txt, EveryModeSpellingOfTheTableComesOutNormalisedInBothRecords)
{
    const std::vector<std::pair<std::string, std::string>> table = {
        {"RTY", "RTTY"},   {"TTY", "RTTY"},   {"RTT", "RTTY"},  {"STV", "SSTV"},
        {"SST", "SSTV"},   {"PSK", "PSK31"},  {"PS3", "PSK31"}, {"PS31", "PSK31"},
        {"PSK3", "PSK31"}, {"PS63", "PSK63"}, {"PSK6", "PSK63"}, {"PS6", "PS6"},
        {"CW", "CW"},      {"RTTY", "RTTY"},  {"rty", "rty"},
    };
    std::vector<EnrichedLine> lines;
    for (const auto& [logged, normalised] : table) {
        EnrichedLine e = line("JA1ABC", "JA1ABC");
        e.q_mode = logged;
        lines.push_back(e);
    }
    Conversion c;
    const auto [sorts, results] = c.run(lines);
    ASSERT_EQ(sorts.size(), table.size());
    for (std::size_t i = 0; i < table.size(); ++i) {
        EXPECT_EQ(engine::normaliseMode(table[i].first), table[i].second) << table[i].first;
        EXPECT_EQ(sorts[i][SMode], table[i].second) << table[i].first;
        EXPECT_EQ(results[i][RMode], table[i].second) << table[i].first;
    }
}

TEST(Henkan_txt, TheTimeLetterIsUWhicheverMemberOfOption2IsOn)
{
    for (const char* member : {"0", "1"}) {
        Conversion c;
        c.options.set("Option2", member);
        c.options.set("Option05", "0");
        const auto [sorts, results] = c.run({line("JA1ABC", "JA1ABC"), line("K1XX", "K1XX")});
        for (std::size_t i = 0; i < 2; ++i) {
            EXPECT_EQ(sorts[i][STime], "0905U") << "Option2 " << member;
            EXPECT_EQ(results[i][RTime], "09:05U") << "Option2 " << member;
        }
    }
}

TEST(Henkan_txt, ASixCharacterCallWithoutSuffixHasTheSameTextInCallKeyAndQCall)
{
    Conversion c;
    const auto [sorts, results] = c.run({line("JA1ABC", "JA1ABC"), line("K1XX/4", "K1XX", "4")});
    EXPECT_EQ(sorts[0][SCall], "JA1ABC");
    EXPECT_EQ(sorts[0][SCall23], "JA1ABC");
    EXPECT_EQ(results[0][RCall], results[0][19]);
    // A call with a suffix keeps its home call as the key.
    EXPECT_EQ(sorts[1][SCall], "K1XX");
    EXPECT_EQ(sorts[1][SCall23], "K1XX/4");
}

TEST(Henkan_txt, WithCheck27OffTheNameComesFromTheNameMasterNotTheQthMaster)
{
    for (const char* check27 : {"0", "1"}) {
        Conversion c;
        Masters masters;
        c.lookups = &masters;
        c.options.set("Check15", "1");
        c.options.set("Check29", "1");
        c.options.set("Check25", "1");
        c.options.set("Check27", check27);
        const auto [sorts, results] = c.run({line("JA1ZZZ", "JA1ZZZ")});
        // The QTH master is consulted all the same: its code replaces the entity's.
        EXPECT_EQ(results[0][RCode], "100110");
        EXPECT_EQ(results[0][RName], std::string(check27) == "0" ? "鈴木 一郎" : "鈴木 一郎Q");
        EXPECT_EQ(sorts[0][SName], results[0][RName]);
    }
}

TEST(Henkan_txt, WritesOneSortAndOneResultRecordPerContact)
{
    Conversion c;
    const auto [sorts, results] = c.run({line("JA1ABC", "JA1ABC"), line("K1XX/4", "K1XX", "4")});
    ASSERT_EQ(sorts.size(), 2u);
    ASSERT_EQ(results.size(), 2u);
    EXPECT_EQ(sorts[1][SCall], "K1XX");
    EXPECT_EQ(sorts[1][SExt], "4");
    EXPECT_EQ(sorts[1][SCall23], "K1XX/4");
    EXPECT_EQ(sorts[0][STime], "0905U");
    EXPECT_EQ(sorts[0][SRstR], "599");
    EXPECT_EQ(results[0][RDate], "26/11/22");
    EXPECT_EQ(results[0][RTime], "09:05U");
    EXPECT_EQ(results[0][RQsl], "J* ");
    EXPECT_EQ(sorts[0][SRoute], "J");
}

TEST(Henkan_txt, ASevenCharacterCallGetsItsCallsTextAndASixCharacterOneDoesNot)
{
    Conversion c;
    c.options.set("Rmks1_cfg", "Calls,,,,,,,,,,,,");
    const auto [sorts, results] = c.run({line("JA1ABCD", "JA1ABCD"), line("JA1ABC", "JA1ABC"),
                                         line("JA1ABC/1/P", "JA1ABC", "1")});
    EXPECT_EQ(results[0][RRmks1], "JA1ABCD");
    EXPECT_EQ(results[1][RRmks1], "");
    EXPECT_EQ(results[2][RRmks1], "JA1ABC/1/P");
}

TEST(Henkan_txt, DirectLosesItsAtAndCountsAsAManager)
{
    Conversion c;
    c.managers.file["K1XX"] = "DIRECT";
    const auto [sorts, results] = c.run({line("K1XX", "K1XX")});
    EXPECT_EQ(sorts[0][SRoute], "M");
    EXPECT_EQ(results[0][RQsl], "M* ");
    EXPECT_EQ(results[0][RRmks2], "DIRECT");
}

TEST(Henkan_txt, AManagerIsShownWithItsAtAndTheRouteBecomesM)
{
    Conversion c;
    c.managers.file["VP2EAB"] = "@W1XX";
    const auto [sorts, results] = c.run({line("VP2EAB", "VP2EAB")});
    EXPECT_EQ(results[0][RQsl], "M* ");
    EXPECT_EQ(results[0][RRmks2], "@W1XX");
    EXPECT_EQ(sorts[0][SMngPad], "@W1XX ");
}

TEST(Henkan_txt, Check9SendsManagedStationsNoCard)
{
    Conversion c;
    c.options.set("Check9", "1");
    c.managers.file["VP2EAB"] = "W1XX";
    const auto [sorts, results] = c.run({line("VP2EAB", "VP2EAB"), line("JA1ABC", "JA1ABC")});
    EXPECT_EQ(results[0][RQsl], "N  ");
    EXPECT_EQ(results[0][RRmks2], "");
    // After a no-card contact the sent mark stays blank for the rest of the run.
    EXPECT_EQ(results[1][RQsl], "J  ");
}

TEST(Henkan_txt, AStationThatIsItsOwnManagerGetsTheOrdinaryRoute)
{
    Conversion c;
    c.managers.file["JA1ABC"] = "JA1ABC";
    const auto [sorts, results] = c.run({line("JA1ABC", "JA1ABC")});
    EXPECT_EQ(results[0][RQsl], "J* ");
    EXPECT_EQ(results[0][RRmks2], "");
}

TEST(Henkan_txt, HistoryMarksAStationNoCard)
{
    Conversion c;
    c.options.set("Option04", "1");
    c.managers.done.insert("JA1ABC");
    const auto [sorts, results] = c.run({line("JA1ABC", "JA1ABC"), line("JA2XYZ", "JA2XYZ")});
    EXPECT_EQ(sorts[0][SRoute], "N");
    EXPECT_EQ(results[0][RQsl], "N  ");
    EXPECT_EQ(results[1][RQsl], "J  ");
}

TEST(Henkan_txt, MaritimeMobileLosesTheCodeAndShowsMmAsQth)
{
    Conversion c;
    const auto [sorts, results] = c.run({line("JA6ZZZ/MM", "JA6ZZZ", "MM")});
    EXPECT_EQ(results[0][RCode], "");
    EXPECT_EQ(results[0][RQth], "MM");
}

TEST(Henkan_txt, ZoneRules)
{
    using engine::zoneText;
    EXPECT_EQ(zoneText("", "all", 0, "Z"), "Z0");
    EXPECT_EQ(zoneText("5", "all", 0, "Z"), "Z05");
    EXPECT_EQ(zoneText("25", "all", 0, "Z"), "Z25");
    EXPECT_EQ(zoneText("1A2", "all", 0, "Z"), "Z1A");
    EXPECT_EQ(zoneText("123", "all", 0, "Z"), "");
    EXPECT_EQ(zoneText("", "all", 1, "Z"), "");
    EXPECT_EQ(zoneText("5", "all", 1, "CQ = "), "CQ = 05");
    EXPECT_EQ(zoneText("ABC", "all", 1, "Z"), "ABC");
    EXPECT_EQ(zoneText("", "zlo", 0, "Z"), "");
    EXPECT_EQ(zoneText("5", "zlo", 0, "Z"), "Z05");
    EXPECT_EQ(zoneText("ABC", "zlo", 0, "Z"), "ABC");
    EXPECT_EQ(zoneText("5", "zlo", 1, "Z"), "ZZ0");
    EXPECT_EQ(zoneText("25", "zlo", 1, "Z"), "ZZ2");
    EXPECT_EQ(zoneText("ABC", "zlo", 1, "Z"), "ZAB");
}

TEST(Henkan_txt, AnEmptyExchangeGivesTheLabelAndZeroForTextLogs)
{
    Conversion c;
    c.options.set("Rmks1_cfg", "Zone,,,,,,,,,,,,");
    const auto [sorts, results] = c.run({line("JA1ABC", "JA1ABC", "", ""), line("JA1XYZ", "JA1XYZ", "", "25")});
    EXPECT_EQ(results[0][RRmks1], "Z0");
    EXPECT_EQ(results[1][RRmks1], "Z25");
}

TEST(Henkan_txt, WithCheck12OffAnAsiaFileLosesItsZone)
{
    for (const char* name : {"aSiA2026.ALL", "REF.ALL"}) {
        Conversion c;
        c.inName = name;
        c.options.set("Rmks1_cfg", "Zone,,,,,,,,,,,,");
        EXPECT_EQ(c.run({line("JA1ABC", "JA1ABC")}).second[0][RRmks1], "") << name;
    }
    Conversion keep;
    keep.inName = "ASIA.ALL";
    keep.options.set("Check12", "1");
    keep.options.set("Rmks1_cfg", "Zone,,,,,,,,,,,,");
    EXPECT_EQ(keep.run({line("JA1ABC", "JA1ABC")}).second[0][RRmks1], "Z13");
}

TEST(Henkan_txt, QtcNotesLeaveTheUpperCaseMemo)
{
    Conversion c;
    c.options.set("Rmks1_cfg", "memo,,,,,,,,,,,,");
    auto e = line("JA1ABC", "JA1ABC");
    e.q_memo = "qsb [qtc 1/10] sent";
    EXPECT_EQ(c.run({e}).second[0][RRmks1], "QSB  SENT");
}

TEST(Henkan_txt, AStarMarkIsWrittenWithBlanksAroundIt)
{
    Conversion c;
    c.options.set("QSL_Q", " ");
    const auto [sorts, results] = c.run({line("JA1ABC", "JA1ABC")});
    EXPECT_EQ(results[0][RQsl], " * ");
}

TEST(Henkan_txt, IotaContestsFillTheIotaItem)
{
    Conversion c;
    c.inName = "IOTA2026.ALL";
    c.options.set("Rmks1_cfg", "IOTA,Rcvd,,,,,,,,,,,");
    const auto [sorts, results] = c.run({line("JA1ABC", "JA1ABC", "", "001AS007")});
    EXPECT_EQ(results[0][RRmks1], "AS-007 001AS007");
}

TEST(Henkan_txt, ManagerIsTakenOutOfTheRemarksWithoutIt)
{
    Conversion c;
    c.options.set("Rmks1_cfg", "MNG,Rmks1,,,,,,,,,,,");
    c.options.set("Rmks1_cfg_len", "6,0,0,0,0,0,0,0,0,0,0,0,");
    c.options.set("Rmks2_cfg", "Rcvd,,,,,,,,,,,,");
    c.options.set("txtRmks1", "TNX");
    c.managers.file["VP2EAB"] = "W1XX";
    const auto [sorts, results] = c.run({line("VP2EAB", "VP2EAB")});
    // A fixed layout keeps its columns: the manager padded to six, a separator, the text.
    EXPECT_EQ(results[0][RRmks1], "@W1XX  TNX  ");
    EXPECT_EQ(sorts[0][SMngPad], "@W1XX  ");
    EXPECT_EQ(results[0][15], "@W1XX  TNX ");
    // Without the manager its columns are blank.
    EXPECT_EQ(results[0][17], "       TNX ");
}

TEST(Henkan_txt, WithoutTheSeparatorThePaddedManagerIsNotFoundAndStays)
{
    Conversion c;
    c.options.set("Rmks1_cfg", "MNG,Rmks1,,,,,,,,,,,");
    c.options.set("Rmks1_cfg_len", "6,0,0,0,0,0,0,0,0,0,0,0,");
    c.options.set("Rmks2_cfg", "Rcvd,,,,,,,,,,,,");
    c.options.set("Check1", "0");
    c.options.set("txtRmks1", "TNX");
    c.managers.file["VP2EAB"] = "W1XX";
    const auto [sorts, results] = c.run({line("VP2EAB", "VP2EAB")});
    EXPECT_EQ(results[0][RRmks1], "@W1XX TNX ");
    EXPECT_EQ(results[0][17], "@W1XX TNX");
}

TEST(Henkan_txt, AKanjiHomeCallIsItsOwnManagerWhenTheManagerIsItPaddedToSixCharacters)
{
    // The home call is held in six characters, not bytes, for the own-manager test.
    for (const auto& [home, padded] : std::vector<std::pair<std::string, std::string>>{
             {"JA1AB", "JA1AB "}, {"東京", "東京    "}, {"ｶﾅ1", "ｶﾅ1   "}}) {
        Conversion own;
        own.managers.file[home] = padded;
        EXPECT_EQ(own.run({line(home, home)}).second[0][RQsl], "J* ") << home;
        EXPECT_EQ(text::padRight(home, 6), padded);

        Conversion other;
        other.managers.file[home] = home;
        EXPECT_EQ(other.run({line(home, home)}).second[0][RQsl], "M* ") << home;
    }
}

TEST(Henkan_txt, TheMemoIsUpperCasedInAsciiAndInFullWidthLetters)
{
    for (const std::string memo : {"qsl via bureau", "qsl ｑｓｌ 東京", "ｶﾅ abc"}) {
        Conversion c;
        c.options.set("Rmks1_cfg", "memo,,,,,,,,,,,,");
        auto e = line("JA1ABC", "JA1ABC");
        e.q_memo = memo;
        EXPECT_EQ(c.run({e}).second[0][RRmks1], text::upper(memo)) << memo;
    }
}

TEST(Henkan_txt, TheReportReceivedKeepsThreeCharactersOfAsciiOrKanjiText)
{
    for (const std::string rst : {"5991", " 59 ", "５９９１", "599東京", "5"}) {
        Conversion c;
        auto e = line("JA1ABC", "JA1ABC");
        e.q_rst_rcvd = rst;
        const auto [sorts, results] = c.run({e});
        const std::string expected(text::trim(text::left(rst, 3)));
        EXPECT_EQ(sorts[0][SRstR], expected) << rst;
        EXPECT_EQ(results[0][RRstR], expected) << rst;
    }
}

TEST(Henkan_txt, AMaritimeMarkBeforeKanjiTextShowsItsTwoCharacters)
{
    for (const auto& [ext, qth] : std::vector<std::pair<std::string, std::string>>{
             {"MM東", "MM"}, {"M 東京", "M "}, {"MM", "MM"}, {"M東", "Taiwan"}}) {
        Conversion c;
        const auto [sorts, results] = c.run({line("JA6ZZZ/MM", "JA6ZZZ", ext)});
        EXPECT_EQ(results[0][RQth], qth) << ext;
        EXPECT_EQ(results[0][RCode], qth == "Taiwan" ? "566A" : "") << ext;
    }
}

TEST(Henkan_txt, TheResultTimeIsTheFirstTwoAndTheLastThreeCharactersOfTheTime)
{
    for (const auto& [time, shown] : std::vector<std::pair<std::string, std::string>>{
             {"0905", "09:05U"}, {"9", "9U:9U"}, {"時間", "時間:時間U"}, {"０９05", "０９:05U"}}) {
        Conversion c;
        c.options.set("Option05", "0");
        auto e = line("JA1ABC", "JA1ABC");
        e.q_time = time;
        const auto [sorts, results] = c.run({e});
        EXPECT_EQ(sorts[0][STime], time + "U");
        EXPECT_EQ(results[0][RTime], shown) << time;
        EXPECT_EQ(results[0][RTime], text::left(time + "U", 2) + ":" + text::right(time + "U", 3));
    }
}

namespace {

// Records the texts of the progress label.
struct LabelObserver : test::RecordingObserver
{
    std::vector<std::string> labels;
    void label(std::string_view name, std::string_view text) override
    {
        if (name == "Label35") {
            labels.emplace_back(text);
        }
    }
};

} // namespace

TEST(Henkan_txt, TheProgressLabelShowsTheRecordsDoneAndAllRecordsInFourPlaces)
{
    Conversion c;
    {
        text::LineWriter w(c.work("zlog_2.txt"));
        for (int i = 0; i < 3; ++i) {
            w.write(text::formatRecord(line("JA1ABC", "JA1ABC").fields()));
        }
        w.close();
    }
    LabelObserver observer;
    engine::RunContext ctx{c.options, c.folder,  c.trace,     observer,
                           c.dialogs, c.program, *c.entities, {}};
    ctx.lookups = c.lookups;
    ctx.run.in_name = (c.dir / "CONTEST.ALL").string();
    ctx.run.f_type = "all";
    ctx.run.names = readers::OutputNames::of(ctx.run.in_name);
    const auto layout = engine::RemarkLayout::fromOptions(c.options);
    engine::Henkan_txt(ctx, layout);
    // The count is the line number of the file's end: one more than its lines.
    EXPECT_EQ(observer.labels,
              (std::vector<std::string>{"   1 /    3", "   2 /    3", "   3 /    3"}));
}

TEST(Henkan_txt, TheResultDateTakesTwoBytesEachOfTheSixDigitDateWhateverItsLength)
{
    for (const auto& [date, shown] : std::vector<std::pair<std::string, std::string>>{
             {"261122", "26/11/22"}, {"2611", "26/11/"}, {"26112233", "26/11/22"}, {"", "//"}}) {
        Conversion c;
        c.options.set("Option05", "0");
        auto e = line("JA1ABC", "JA1ABC");
        e.q_date6 = date;
        EXPECT_EQ(c.run({e}).second[0][RDate], shown) << date;
        EXPECT_EQ(engine::date8Of(date), shown);
    }
}

// A log long enough to be converted in two parts side by side, with records whose lines hang
// on those before them: the first no-card record blanks the sent mark of every later one, and
// a call whose two parts are of one length keeps the call core of the record before it for the
// test for Japan time. Wherever the no-card record stands (early in the first part, just
// before the second, in the second, nowhere), the lines, the values left to the run and the
// manager kept for the walk are those of one pass.
TEST(Henkan_txt, ALongLogGivesWhatOnePassGivesWhereverItsPartsMeet)
{
    constexpr int kContacts = 12000;
    std::vector<EnrichedLine> lines;
    for (int i = 0; i < kContacts; ++i) {
        const std::string n = std::to_string(100000 + i).substr(1);
        if (i % 5 == 4) {
            lines.push_back(line("W1" + n + "/K2" + n, "W1" + n));
        } else {
            const std::string call = (i % 2 == 0 ? "JA1" : "VK2") + n;
            lines.push_back(line(call, call));
        }
        lines.back().q_memo = "memo " + n;
    }
    for (const int noCard : {-1, 100, kContacts * 3 / 5 - 40, kContacts * 4 / 5}) {
        std::string sorts[2], results[2], sentMark[2], kept[2];
        for (const bool sideBySide : {false, true}) {
            Conversion c;
            c.options.set("Option05", "3");
            c.options.set("Option04", "1");
            c.managers.anyThread = sideBySide;
            c.managers.file[lines.back().q_call] = "@W9MGR";
            c.managers.file[lines[kContacts / 2].q_call] = "W8MGR";
            if (noCard >= 0) {
                c.managers.done.insert(lines[static_cast<std::size_t>(noCard)].q_call);
            }
            c.run(lines);
            // Shorter working files are converted in one pass.
            ASSERT_GE(std::filesystem::file_size(c.work("zlog_2.txt")), 1U << 20);
            sorts[sideBySide] = test::readBytes(c.work("Sort-in.csv"));
            results[sideBySide] = test::readBytes(c.ctx->run.names.out_name_ham0);
            sentMark[sideBySide] = c.ctx->run.QSL_S;
            kept[sideBySide] = c.managers.kept;
        }
        SCOPED_TRACE("the no-card record at " + std::to_string(noCard));
        EXPECT_TRUE(sorts[1] == sorts[0]);
        EXPECT_TRUE(results[1] == results[0]);
        EXPECT_EQ(sentMark[1], sentMark[0]);
        EXPECT_EQ(sentMark[0], noCard >= 0 ? " " : "*");
        EXPECT_EQ(kept[0], "W9MGR");
        EXPECT_EQ(kept[1], kept[0]);
    }
}
