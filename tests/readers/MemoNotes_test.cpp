#include "readers/MemoNotes.h"

#include <gtest/gtest.h>

using namespace vornhale::readers;

TEST(freq_from_memo, KilohertzInParenthesesBecomeMegahertzRightAligned)
{
    const std::pair<std::string, std::string> cases[] = {{"(1825)", "      1.825"},
                                                         {"(14025)", "     14.025"},
                                                         {"(144100)", "     144.100"},
                                                         {"(1296100)", "     1296.100"},
                                                         {"(14.025)", "     14.025"}};
    for (const auto& [memo, freq] : cases) {
        std::string m = memo, f = "old";
        freq_from_memo(m, "14", f);
        EXPECT_EQ(f, freq) << memo;
        EXPECT_EQ(m, " ") << memo;
    }
}

TEST(freq_from_memo, ZeroGivesTheBand)
{
    std::string memo = "(0) weak", freq;
    freq_from_memo(memo, "14", freq);
    EXPECT_EQ(freq, "14");
    EXPECT_EQ(memo, "  weak");
}

TEST(freq_from_memo, OtherLengthsLeaveTheFrequency)
{
    std::string memo = "QSB (14025 hello) 73", freq = "7.012";
    freq_from_memo(memo, "14", freq);
    EXPECT_EQ(freq, "7.012");
    EXPECT_EQ(memo, "QSB   73");
}

TEST(op_from_memo, TakesTheNameBetweenTheMarks)
{
    EXPECT_EQ(op_from_memo("599 13 %%JA1ABC%% good"), "JA1ABC");
    EXPECT_EQ(op_from_memo("no marks"), "");
    EXPECT_EQ(op_from_memo(std::string_view("x\0%%JA1%%", 9)), "");
    EXPECT_EQ(op_from_memo("%%JA1"), "JA1");
}

TEST(memo_from_line, TakesTheRemarkBehindTheFixedColumns)
{
    const std::string fixedA(79, ' ');
    EXPECT_EQ(memo_from_line(fixedA, "A"), "");
    EXPECT_EQ(memo_from_line(fixedA + "%%JA1%% (14025) good", "A"), "  good");
    EXPECT_EQ(memo_from_line(fixedA + "nice -DUPE-", "A"), "nice ");
    const std::string fixedT(72, ' ');
    EXPECT_EQ(memo_from_line(fixedT, "T"), "");
    EXPECT_EQ(memo_from_line(fixedT + "hello", "T"), "hello");
    EXPECT_EQ(memo_from_line("short", "A"), "");
}

TEST(frequencyInParentheses, TakesTheTextUpToTheNextOpeningParenthesis)
{
    std::string freq = "old";
    frequencyInParentheses("599 13 (14025)", "14", freq);
    EXPECT_EQ(freq, "14.025");
    // A remark that goes on behind the ")" makes the text too long to be a frequency.
    freq = "old";
    frequencyInParentheses("599 13 (14025) good", "14", freq);
    EXPECT_EQ(freq, "old");
    // A second pair of parentheses ends the text of the first.
    frequencyInParentheses("(7012)(note)", "7", freq);
    EXPECT_EQ(freq, "7.012");
    frequencyInParentheses("no parentheses", "7", freq);
    EXPECT_EQ(freq, "7.012");
    frequencyInParentheses("QSB (0)", "21", freq);
    EXPECT_EQ(freq, "21");
}
