#include "history/HistoryMaster.h"

#include "failure/Failure.h"
#include "base/Trace.h"
#include "support/TestSupport.h"
#include "text/Chars.h"

#include <gtest/gtest.h>

#include <random>

namespace vornhale::history {
namespace {

struct BandCase
{
    std::string freq, letter;
};

class BandLetter : public ::testing::TestWithParam<BandCase>
{
};

TEST_P(BandLetter, FollowsTheRanges)
{
    EXPECT_EQ(band_mode_code(GetParam().freq, "CW").Band_code, GetParam().letter)
        << GetParam().freq;
}

INSTANTIATE_TEST_SUITE_P(
    Ranges, BandLetter,
    ::testing::Values(BandCase{"1", "A"}, BandCase{"1.9", "A"}, BandCase{"2", "A"},
                      BandCase{"2.5", "Z"}, BandCase{"3", "B"}, BandCase{"3.5", "B"},
                      BandCase{"4", "B"}, BandCase{"5", "Z"}, BandCase{"6", "C"},
                      BandCase{"7", "C"}, BandCase{"8", "C"}, BandCase{"9", "D"},
                      BandCase{"10.1", "D"}, BandCase{"11", "D"}, BandCase{"12", "Z"},
                      BandCase{"13", "E"}, BandCase{"14", "E"}, BandCase{"15", "E"},
                      BandCase{"17", "F"}, BandCase{"18.1", "F"}, BandCase{"19", "F"},
                      BandCase{"20", "G"}, BandCase{"21", "G"}, BandCase{"22", "G"},
                      BandCase{"23", "H"}, BandCase{"24.9", "H"}, BandCase{"25", "H"},
                      BandCase{"26", "Z"}, BandCase{"27", "I"}, BandCase{"28", "I"},
                      BandCase{"30", "I"}, BandCase{"49", "J"}, BandCase{"50", "J"},
                      BandCase{"56", "J"}, BandCase{"144", "K"}, BandCase{"148", "K"},
                      BandCase{"429", "L"}, BandCase{"430", "L"}, BandCase{"445", "L"},
                      BandCase{"1200", "M"}, BandCase{"1296", "M"}, BandCase{"1310", "M"},
                      BandCase{"2399", "N"}, BandCase{"2400", "N"}, BandCase{"2500", "N"},
                      BandCase{"5400", "O"}, BandCase{"5760", "O"}, BandCase{"5900", "O"},
                      BandCase{"10G", "D"}, BandCase{"10000", "Z"}, BandCase{"", "Z"},
                      BandCase{"abc", "Z"}, BandCase{" 7.025", "C"}, BandCase{"0.5", "Z"}));

struct ModeCase
{
    std::string mode, digit;
};

class ModeDigit : public ::testing::TestWithParam<ModeCase>
{
};

TEST_P(ModeDigit, ComparesTheTrimmedModeExactly)
{
    EXPECT_EQ(band_mode_code("7", GetParam().mode).Mode_code, GetParam().digit)
        << GetParam().mode;
}

INSTANTIATE_TEST_SUITE_P(
    Modes, ModeDigit,
    ::testing::Values(ModeCase{"SSB", "1"}, ModeCase{"A3J", "1"}, ModeCase{"CW", "2"},
                      ModeCase{"A1", "2"}, ModeCase{"AM", "3"}, ModeCase{"A3", "3"},
                      ModeCase{"FM", "4"}, ModeCase{"F3", "4"}, ModeCase{"STV", "5"},
                      ModeCase{"SSTV", "9"}, ModeCase{"RTY", "6"}, ModeCase{"RTT", "6"},
                      ModeCase{"RTTY", "6"}, ModeCase{"PSK", "7"}, ModeCase{"PSK31", "9"},
                      ModeCase{" CW ", "2"}, ModeCase{"cw", "9"}, ModeCase{"FT8", "9"},
                      ModeCase{"", "9"}));

class HistoryMasterTest : public ::testing::Test
{
protected:
    void load(const std::string& bytes)
    {
        test::writeBytes(m_dir / "bak_qso.mas1_p", bytes);
        m_master.sum_bak_4_bas_p(m_dir / "bak_qso.mas1_", m_trace);
    }
    test::TempDir m_dir;
    base::Trace m_trace;
    HistoryMaster m_master;
};

constexpr const char* kMaster = "\"JA1ABC\",\"E2G1\"\r\n"
                                "\"XX9TST/1\",\"C2\"\r\n"
                                "\"XX9TST\",\"K4\"\r\n"
                                "\"YYYYYY\",\"E2\"\r\n"
                                "\"ZZZZZZ\",\"E2\"\r\n"
                                "\"ja1abc\",\"A1\"\r\n"
                                "ZZZ/ZZZZZZ,E2\r\n";

TEST_F(HistoryMasterTest, LoadsThePairsAndCountsItems)
{
    load(kMaster);
    EXPECT_EQ(m_master.bak_calls_kazu_p(), 14);
    ASSERT_EQ(m_master.bak_calls_p().size(), 7u);
    EXPECT_EQ(m_master.bak_calls_p()[6], "ZZZ/ZZZZZZ");
    EXPECT_EQ(m_master.bak_bands_p()[6], "E2");
}

TEST_F(HistoryMasterTest, WritesTheFileNameAndTheItemCountToTheTrace)
{
    test::TempDir logs;
    {
        base::Trace trace(logs.path());
        test::writeBytes(m_dir / "bak_qso.mas1_p", kMaster);
        m_master.sum_bak_4_bas_p(m_dir / "bak_qso.mas1_", trace);
        const auto lines = test::readSjisLines(trace.path());
        ASSERT_GE(lines.size(), 2u);
        EXPECT_EQ(lines[lines.size() - 2], "     bak_qso_mas_file : " + (m_dir / "bak_qso.mas1_").string());
        EXPECT_EQ(lines.back(), "     bak_calls_kazu_p : 14");
    }
}

TEST_F(HistoryMasterTest, ComparesCallsExactlyAndCaseSensitively)
{
    load(kMaster);
    EXPECT_TRUE(m_master.chk_bak_qso("JA1ABC", "E", "2", false, false));
    EXPECT_TRUE(m_master.chk_bak_qso("  JA1ABC  ", "E", "2", false, false));
    EXPECT_TRUE(m_master.chk_bak_qso("ja1abc", "A", "1", true, true));
    EXPECT_FALSE(m_master.chk_bak_qso("ja1abc", "E", "2", true, true));
    EXPECT_FALSE(m_master.chk_bak_qso("Ja1ABC", "E", "2", false, false));
    EXPECT_FALSE(m_master.chk_bak_qso("JA1AB", "E", "2", false, false));
}

TEST_F(HistoryMasterTest, CutsAtTheLastOfTwoSlashes)
{
    load(kMaster);
    // One slash stays: XX9TST/1 finds its own entry, not XX9TST's.
    EXPECT_TRUE(m_master.chk_bak_qso("XX9TST/1", "C", "2", true, true));
    EXPECT_FALSE(m_master.chk_bak_qso("XX9TST/1", "K", "4", true, true));
    // Two slashes: the part after the last one goes.
    EXPECT_TRUE(m_master.chk_bak_qso("XX9TST/1/P", "C", "2", true, true));
    // Only the part after the last slash goes: three slashes leave two.
    EXPECT_FALSE(m_master.chk_bak_qso("XX9TST/1/P/QRP", "Z", "9", false, false));
    EXPECT_FALSE(m_master.chk_bak_qso("XX9TST/P", "K", "4", false, false));
    EXPECT_FALSE(m_master.chk_bak_qso("JA1ABC/3", "E", "2", false, false));
}

TEST_F(HistoryMasterTest, TheFourTestsOfBandAndMode)
{
    load(kMaster); // JA1ABC: E2G1
    // Both off: any entry counts, whatever the codes.
    EXPECT_TRUE(m_master.chk_bak_qso("JA1ABC", "Z", "9", false, false));
    // Band only.
    EXPECT_TRUE(m_master.chk_bak_qso("JA1ABC", "E", "9", true, false));
    EXPECT_TRUE(m_master.chk_bak_qso("JA1ABC", "G", "2", true, false));
    EXPECT_FALSE(m_master.chk_bak_qso("JA1ABC", "K", "2", true, false));
    // Mode only.
    EXPECT_TRUE(m_master.chk_bak_qso("JA1ABC", "K", "1", false, true));
    EXPECT_TRUE(m_master.chk_bak_qso("JA1ABC", "K", "2", false, true));
    EXPECT_FALSE(m_master.chk_bak_qso("JA1ABC", "E", "4", false, true));
    // Both.
    EXPECT_TRUE(m_master.chk_bak_qso("JA1ABC", "G", "1", true, true));
    EXPECT_FALSE(m_master.chk_bak_qso("JA1ABC", "G", "2", true, true));
    EXPECT_FALSE(m_master.chk_bak_qso("JA1ABC", "E", "1", true, true));
    // The search ignores case.
    EXPECT_TRUE(m_master.chk_bak_qso("JA1ABC", "g", "1", true, true));
    EXPECT_TRUE(m_master.chk_bak_qso("ja1abc", "a", "1", true, false));
}

TEST_F(HistoryMasterTest, TheTestKeyOfTheRecordConversion)
{
    load(kMaster);
    EXPECT_TRUE(m_master.chk_bak_qso("JA1ABC", "G1", true, true));
    EXPECT_TRUE(m_master.chk_bak_qso("JA1ABC", "G0", true, false));
    EXPECT_TRUE(m_master.chk_bak_qso("JA1ABC", "01", false, true));
    EXPECT_FALSE(m_master.chk_bak_qso("JA1ABC", "04", false, true));
    EXPECT_TRUE(m_master.chk_bak_qso("JA1ABC", "00", false, false));
}

TEST_F(HistoryMasterTest, TheClosingRecordsMatchYyyyyyAndZzzzzz)
{
    load(kMaster);
    EXPECT_TRUE(m_master.chk_bak_qso("YYYYYY", "E", "2", true, true));
    EXPECT_TRUE(m_master.chk_bak_qso("ZZZZZZ", "E", "2", true, true));
    EXPECT_FALSE(m_master.chk_bak_qso("ZZZZZZ", "K", "2", true, false));
    EXPECT_TRUE(m_master.chk_bak_qso("ZZZZZZ", "K", "2", false, true));
    EXPECT_TRUE(m_master.chk_bak_qso("ZZZ/ZZZZZZ", "E", "2", true, true));
    EXPECT_TRUE(m_master.chk_bak_qso("ZZZ/ZZZZZZ/P", "E", "2", true, true));
}

TEST_F(HistoryMasterTest, TheFirstEntryOfACallWins)
{
    load("\"A1A\",\"K1\"\r\n\"A1A\",\"E2\"\r\nZZZ/ZZZZZZ,E2\r\n");
    EXPECT_TRUE(m_master.chk_bak_qso("A1A", "K", "1", true, true));
    EXPECT_FALSE(m_master.chk_bak_qso("A1A", "E", "2", true, true));
}

TEST_F(HistoryMasterTest, AnEmptyCallMeetsTheEmptyEntriesBeyondThePairs)
{
    load(kMaster);
    EXPECT_TRUE(m_master.chk_bak_qso("", "E", "2", false, false));
    EXPECT_TRUE(m_master.chk_bak_qso("   ", "E", "2", false, false));
    EXPECT_FALSE(m_master.chk_bak_qso("", "E", "2", true, false));
}

TEST_F(HistoryMasterTest, AnEmptyMasterKnowsNoCall)
{
    load("");
    EXPECT_EQ(m_master.bak_calls_kazu_p(), 0);
    EXPECT_FALSE(m_master.chk_bak_qso("JA1ABC", "E", "2", false, false));
}

TEST_F(HistoryMasterTest, AMissingMasterOrAnOddItemCountFails)
{
    EXPECT_THROW(m_master.sum_bak_4_bas_p(m_dir / "none_", m_trace), failure::Failure);
    EXPECT_THROW(load("\"A1A\",\"K1\"\r\n\"B1B\"\r\n"), failure::Failure);
}

TEST_F(HistoryMasterTest, ALoadReplacesTheFormerOne)
{
    load(kMaster);
    load("\"B1B\",\"K1\"\r\nZZZ/ZZZZZZ,E2\r\n");
    EXPECT_FALSE(m_master.chk_bak_qso("JA1ABC", "E", "2", false, false));
    EXPECT_TRUE(m_master.chk_bak_qso("B1B", "K", "1", false, false));
}

// The linear walk as the program always did it, for comparison with the index.
bool walk(const std::vector<std::string>& calls, const std::vector<std::string>& bands,
          long itemCount, std::string call, const std::string& band, const std::string& mode,
          bool check04, bool check05)
{
    call = std::string(text::trim(call));
    const auto first = call.find('/');
    const auto last = call.rfind('/');
    if (first != last) {
        call = call.substr(0, last);
    }
    static const std::string none;
    for (long i = 0; i <= itemCount; ++i) {
        const std::string& c = i < static_cast<long>(calls.size()) ? calls[i] : none;
        const std::string& b = i < static_cast<long>(bands.size()) ? bands[i] : none;
        if (c != call) {
            continue;
        }
        if (!check04 && !check05) {
            return true;
        }
        std::string hay = text::upper(b);
        std::string needle;
        if (check04 && !check05) {
            for (char& ch : hay) {
                ch = text::isDigit(ch) ? '0' : ch;
            }
            needle = band + "0";
        } else if (check05 && !check04) {
            for (char& ch : hay) {
                ch = (ch >= 'A' && ch <= 'Z') ? '0' : ch;
            }
            needle = "0" + mode;
        } else {
            needle = band + mode;
        }
        return text::contains(hay, text::upper(needle));
    }
    return false;
}

TEST_F(HistoryMasterTest, TheIndexGivesTheAnswerOfTheLinearWalk)
{
    std::mt19937 random(7);
    const char* letters = "ABCDEFGHIJKLMNOZ";
    const char* digits = "12345679";
    std::vector<std::string> calls;
    std::string bytes;
    for (int i = 0; i < 1500; ++i) {
        std::string call = "K" + std::to_string(random() % 800);
        if (random() % 7 == 0) {
            call += "/" + std::to_string(random() % 10);
        }
        std::string codes;
        for (unsigned k = random() % 4 + 1; k > 0; --k) {
            codes += letters[random() % 16];
            codes += digits[random() % 8];
        }
        bytes += "\"" + call + "\",\"" + codes + "\"\r\n";
        calls.push_back(call);
    }
    bytes += "ZZZ/ZZZZZZ,E2\r\n";
    load(bytes);
    for (int i = 0; i < 1500; ++i) {
        std::string call = "K" + std::to_string(random() % 900);
        const unsigned shape = random() % 4;
        if (shape == 1) {
            call += "/" + std::to_string(random() % 10);
        } else if (shape == 2) {
            call += "/" + std::to_string(random() % 10) + "/P";
        }
        const std::string band(1, letters[random() % 16]);
        const std::string mode(1, digits[random() % 8]);
        for (int flags = 0; flags < 4; ++flags) {
            const bool c4 = flags & 1, c5 = flags & 2;
            ASSERT_EQ(m_master.chk_bak_qso(call, band, mode, c4, c5),
                      walk(m_master.bak_calls_p(), m_master.bak_bands_p(),
                           m_master.bak_calls_kazu_p(), call, band, mode, c4, c5))
                << call << " " << band << mode << " " << flags;
        }
    }
}

} // namespace
} // namespace vornhale::history
