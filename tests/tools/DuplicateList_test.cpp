#include "support/TestSupport.h"
#include "text/Record.h"
#include "tools/DuplicateList.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

struct Contact
{
    std::string base_call, band_or_freq, q_call;
};

// An enriched line with the three fields the list reads; the others hold plain values.
std::string enrichedLine(const Contact& c)
{
    return text::formatRecord({"JA", "261121", "2319", c.q_call, "599", "599", c.base_call, "",
                               c.band_or_freq, "CW", "", "", "339", "Japan", "", c.q_call, "", "",
                               "13"});
}

class DupFixture
{
public:
    DupFixture() { fs::create_directories(work()); }

    fs::path work() const { return m_dir / "Work"; }
    fs::path log() const { return m_dir / "CONTEST.ALL"; }
    fs::path dup() const { return m_dir / "CONTEST.dup"; }

    void zlog2(const std::vector<Contact>& contacts) const
    {
        std::vector<std::string> lines;
        for (const Contact& c : contacts) {
            lines.push_back(enrichedLine(c));
        }
        test::writeSjisLines(work() / "zlog_2.txt", lines);
    }

    tools::DupListOutcome run()
    {
        tools::DuplicateList list(work(), m_trace);
        return list.run(log().string());
    }

    std::vector<std::string> dupLines() const { return test::readSjisLines(dup()); }

private:
    test::TempDir m_dir;
    base::Trace m_trace;
};

const std::string kHead14 = "                     ---  Check List  Band: 14 MHz  ---";

std::string foot(int stations)
{
    return "                            ---  Stations: " + std::to_string(stations) + " ---";
}

std::string cell(const std::string& call)
{
    return call + std::string(12 - call.size(), ' ');
}

} // namespace

TEST(DuplicateList, PrintsOneSectionPerBandGroupedByTheLastCharacterOfTheHomeCall)
{
    DupFixture f;
    f.zlog2({{"JA1ABC", "14", "JA1ABC"},
             {"JA1XYZ", "14", "JA1XYZ"},
             {"JA2ABC", "14", "JA2ABC"},
             {"K1XX", "21", "K1XX"}});
    const tools::DupListOutcome outcome = f.run();
    EXPECT_TRUE(outcome.written);
    EXPECT_EQ(outcome.dupFile, f.dup());

    const std::vector<std::string> expected = {
        kHead14,
        "",
        "[C] " + cell("JA1ABC") + cell("JA2ABC"),
        "",
        "[Z] " + cell("JA1XYZ"),
        "",
        foot(3),
        "      ",
        "      ",
        "                     ---  Check List  Band: 21 MHz  ---",
        "",
        "[X] " + cell("K1XX"),
        "",
        foot(1),
        "      ",
        "      ",
    };
    EXPECT_EQ(f.dupLines(), expected);
    // CR LF after every line, the last one included.
    const std::string bytes = test::readBytes(f.dup());
    EXPECT_EQ(bytes.substr(bytes.size() - 8), "      \r\n");
}

TEST(DuplicateList, ALogWithOnly50MHzContactsWritesNoFileButKeepsTheViewerEnabled)
{
    DupFixture f;
    f.zlog2({{"JA1ABC", "50", "JA1ABC"}, {"JA2XYZ", "50", "JA2XYZ"}});
    test::writeBytes(f.dup(), "a former list\r\n");
    const tools::DupListOutcome outcome = f.run();
    EXPECT_FALSE(outcome.written);
    EXPECT_TRUE(outcome.mnuDisp_dup);
    EXPECT_FALSE(fs::exists(f.dup()));
}

TEST(DuplicateList, TwoPortableFormsOfOneHomeCallFallInOneGroupAsLogged)
{
    DupFixture f;
    f.zlog2(
        {{"JA1ABC", "14", "JA1ABC/1"}, {"JA1ABC", "14", "KH6/JA1ABC"}, {"JA1ABC", "14", "JA1ABC"}});
    f.run();
    const std::vector<std::string> lines = f.dupLines();
    ASSERT_GE(lines.size(), 3u);
    // Sorted on the key: the call's first eleven characters decide within the group.
    EXPECT_EQ(lines[2], "[C] " + cell("JA1ABC") + cell("JA1ABC/1") + cell("KH6/JA1ABC"));
    EXPECT_EQ(lines[4], foot(3));
}

TEST(DuplicateList, ACallWorkedTwiceOnABandStandsTwiceAndCountsTwice)
{
    DupFixture f;
    f.zlog2({{"JA1ABC", "14", "JA1ABC"}, {"JA1ABC", "14", "JA1ABC"}});
    f.run();
    const std::vector<std::string> lines = f.dupLines();
    EXPECT_EQ(lines[2], "[C] " + cell("JA1ABC") + cell("JA1ABC"));
    EXPECT_EQ(lines[4], foot(2));
}

TEST(DuplicateList, SixCallsOfAGroupFillOneLineAndASeventhStartsAnIndentedLine)
{
    DupFixture six;
    std::vector<Contact> contacts;
    for (const char* call : {"JA1AAA", "JA1BBA", "JA1CCA", "JA1DDA", "JA1EEA", "JA1FFA"}) {
        contacts.push_back({call, "14", call});
    }
    six.zlog2(contacts);
    six.run();
    const std::vector<std::string> sixLines = six.dupLines();
    EXPECT_EQ(sixLines[2], "[A] " + cell("JA1AAA") + cell("JA1BBA") + cell("JA1CCA") +
                               cell("JA1DDA") + cell("JA1EEA") + cell("JA1FFA"));
    EXPECT_EQ(sixLines[3], "");
    EXPECT_EQ(sixLines[4], foot(6));

    DupFixture seven;
    contacts.push_back({"JA1GGA", "14", "JA1GGA"});
    seven.zlog2(contacts);
    seven.run();
    const std::vector<std::string> sevenLines = seven.dupLines();
    EXPECT_EQ(sevenLines[2], sixLines[2]);
    EXPECT_EQ(sevenLines[3], "    " + cell("JA1GGA"));
    EXPECT_EQ(sevenLines[4], "");
    EXPECT_EQ(sevenLines[5], foot(7));
}

TEST(DuplicateList, APointInAFolderNameCutsTheListName)
{
    EXPECT_EQ(tools::DuplicateList::dupName("C:\\log.old\\test.all"), "C:\\log.dup");
    EXPECT_EQ(tools::DuplicateList::dupName("/home/op/log.old/test.all"), "/home/op/log.dup");
    EXPECT_EQ(tools::DuplicateList::dupName("/logs/CONTEST.ALL"), "/logs/CONTEST.dup");
    EXPECT_EQ(tools::DuplicateList::dupName("/logs/x.2026.all"), "/logs/x.dup");
    EXPECT_EQ(tools::DuplicateList::dupName("/logs/CONTEST"), "/logs/CONTEST.dup");
}

TEST(DuplicateList, SevenMegahertzIsListedOnlyWhenTheFieldHoldsAFrequency)
{
    DupFixture frequency;
    frequency.zlog2({{"JA1ABC", "7.025", "JA1ABC"}});
    EXPECT_TRUE(frequency.run().written);
    const std::vector<std::string> lines = frequency.dupLines();
    EXPECT_EQ(lines[0], "                     ---  Check List  Band: 7  MHz  ---");
    EXPECT_EQ(lines[2], "[C] " + cell("JA1ABC"));

    DupFixture band;
    band.zlog2({{"JA1ABC", "7", "JA1ABC"}});
    EXPECT_FALSE(band.run().written);
    EXPECT_FALSE(fs::exists(band.dup()));
}

TEST(DuplicateList, TheBandTagIsTheFirstTwoCharactersSo144MHzJoinsTheFourteenSection)
{
    DupFixture f;
    f.zlog2({{"JA1ABC", "144", "JA1ABC"},
             {"JA2ABC", "1.9", "JA2ABC"},
             {"JA3ABC", "3.5", "JA3ABC"},
             {"JA4ABC", "10", "JA4ABC"},
             {"JA5ABC", "18", "JA5ABC"},
             {"JA6ABC", "24", "JA6ABC"},
             {"JA7ABC", "28", "JA7ABC"},
             {"JA8ABC", "430", "JA8ABC"}});
    f.run();
    std::vector<std::string> heads;
    for (const std::string& line : f.dupLines()) {
        if (line.find("Check List") != std::string::npos) {
            heads.push_back(line.substr(line.find("Band: ") + 6));
        }
    }
    EXPECT_EQ(heads, (std::vector<std::string>{"1.9 MHz  ---", "3.5 MHz  ---", "14 MHz  ---",
                                               "28 MHz  ---"}));
}

TEST(DuplicateList, BandsArePrintedInTheirFixedOrderWhateverTheLogOrder)
{
    DupFixture f;
    f.zlog2({{"JA1ABC", "28", "JA1ABC"}, {"JA2ABC", "21", "JA2ABC"}, {"JA3ABC", "3.5", "JA3ABC"}});
    f.run();
    const std::vector<std::string> lines = f.dupLines();
    ASSERT_EQ(lines.size(), 21u);
    EXPECT_NE(lines[0].find("3.5 MHz"), std::string::npos);
    EXPECT_NE(lines[7].find("21 MHz"), std::string::npos);
    EXPECT_NE(lines[14].find("28 MHz"), std::string::npos);
}

TEST(DuplicateList, EachBandFileEndsWithItsSentinelRow)
{
    DupFixture f;
    f.zlog2({{"JA1ABC", "14", "JA1ABC"}});
    base::Trace trace;
    tools::DuplicateList list(f.work(), trace);
    list.wpx_dupe_chk();
    list.wpx_dupe_chk_2();
    EXPECT_EQ(test::readBytes(f.work() / "zlog_14.txt"),
              "\"14CJA1ABC      \",\"C\",\"JA1ABC\"\r\n\"14ZZZZZ\",\"14ZZZZZ\",\"14ZZZZZ\"\r\n");
    EXPECT_EQ(test::readBytes(f.work() / "zlog_70.txt"), "\"7 ZZZZZ\",\"7 ZZZZZ\",\"7 ZZZZZ\"\r\n");
    EXPECT_TRUE(list.wpx_dupe_chk_5(tools::dupBands()[2]));
    EXPECT_FALSE(list.wpx_dupe_chk_5(tools::dupBands()[3]));
}

TEST(DuplicateList, TheSortInputHoldsKeyGroupAndCallWithTheKeyPaddedToFifteen)
{
    DupFixture f;
    f.zlog2({{"ZZ9ZZZ", "14.025", "ZZ9ZZZ/1"}, {"AB", "7", "AB/CD"}});
    base::Trace trace;
    tools::DuplicateList list(f.work(), trace);
    list.wpx_dupe_chk();
    EXPECT_EQ(test::readBytes(f.work() / "zlog_3.txt"),
              "\"14ZZZ9ZZZ/1    \",\"Z\",\"ZZ9ZZZ/1\"\r\n\"7 BAB/CD       \",\"B\",\"AB/CD\"\r\n");
    // Sorted on the raw columns 1 to 15: "7" sorts after "1".
    EXPECT_EQ(test::readBytes(f.work() / "zlog_4.txt"), test::readBytes(f.work() / "zlog_3.txt"));
}

TEST(DuplicateList, AFormerSectionOfABandWithoutContactsDoesNotJoinTheList)
{
    DupFixture f;
    test::writeSjisLines(f.work() / "zlog_o21.txt", {"a former 21 MHz section"});
    f.zlog2({{"JA1ABC", "14", "JA1ABC"}});
    f.run();
    for (const std::string& line : f.dupLines()) {
        EXPECT_EQ(line.find("former"), std::string::npos);
    }
    EXPECT_FALSE(fs::exists(f.work() / "zlog_o21.txt"));
}

TEST(DuplicateList, AMissingEnrichedFileIsTracedAndLeavesNoList)
{
    test::TempDir dir;
    fs::create_directories(dir / "Error_Log");
    base::Trace trace(dir / "Error_Log");
    tools::DuplicateList list(dir.path(), trace);
    const tools::DupListOutcome outcome = list.run((dir / "X.ALL").string());
    EXPECT_FALSE(outcome.written);
    EXPECT_FALSE(fs::exists(dir / "X.dup"));
    const std::vector<std::string> traced = test::readSjisLines(trace.path());
    ASSERT_GE(traced.size(), 2u);
    EXPECT_EQ(traced[0], "Private Sub wpx_dupe_chk()");
    EXPECT_EQ(traced[1], "エラー発生 ：　53");
}

TEST(DuplicateList, ACutBandFilePrintsItsLastGroupOnlyWhenThatRowBeganIt)
{
    using Rows = std::vector<std::vector<std::string>>;
    // The sentinel is missing: the last row began a group of its own, so it is printed.
    const Rows newGroup = {{"14AJA1AAA", "A", "JA1AAA"}, {"14BJA1BBB", "B", "JA1BBB"}};
    const std::vector<std::string> a = tools::DuplicateList::section(newGroup);
    EXPECT_EQ(a, (std::vector<std::string>{kHead14, "", "[A] " + cell("JA1AAA"), "",
                                           "[B] " + cell("JA1BBB"), foot(1), "      ", "      "}));
    // The last row continued its group: the buffer stays unprinted, as with a sentinel.
    const Rows sameGroup = {{"14AJA1AAA", "A", "JA1AAA"}, {"14AJA2AAA", "A", "JA2AAA"}};
    const std::vector<std::string> b = tools::DuplicateList::section(sameGroup);
    EXPECT_EQ(b, (std::vector<std::string>{kHead14, "", foot(1), "      ", "      "}));
}
