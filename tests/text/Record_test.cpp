#include "failure/Failure.h"
#include "text/Record.h"

#include <gtest/gtest.h>

using namespace vornhale;
using namespace vornhale::text;

TEST(Record, WritesEveryFieldQuotedWithoutBlanks)
{
    EXPECT_EQ(formatRecord(std::vector<std::string>{"a", "", " b "}), "\"a\",\"\",\" b \"");
}

TEST(Record, ReadsQuotedAndUnquotedFields)
{
    auto r = RecordReader::fromText("\"a\" , b ,\"c, d\",  e\r\n");
    EXPECT_EQ(r.fields(4), (std::vector<std::string>{"a", "b", "c, d", "e"}));
    EXPECT_TRUE(r.atEnd());
}

TEST(Record, QuotedBlanksStayAndUnquotedSingleBlankReadsEmpty)
{
    auto r = RecordReader::fromText("\" x \", ,\"\"\r\n");
    EXPECT_EQ(r.fields(3), (std::vector<std::string>{" x ", "", ""}));
}

TEST(Record, TextBehindAClosingQuoteIsDropped)
{
    auto r = RecordReader::fromText("\"ab\"cd,\"e\"\n");
    EXPECT_EQ(r.fields(2), (std::vector<std::string>{"ab", "e"}));
}

TEST(Record, ARecordWithTooFewFieldsTakesTheMissingOnesFromTheNextLine)
{
    auto r = RecordReader::fromText("\"a\",\"b\"\r\n\"c\",\"d\"\r\n");
    EXPECT_EQ(r.fields(3), (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(r.field(), "d");
    EXPECT_TRUE(r.atEnd());
}

TEST(Record, TheUnquotedSentinelReadsBackAsTwentyThreeFields)
{
    auto r = RecordReader::fromText(
        "AAAAAA, ,566A, ,28,CW, ,J, , ,001211,0218U,599,599,Taiwan, , , , , , , ,AAAAAA\r\n");
    const auto f = r.fields(23);
    const std::vector<std::string> expected = {
        "AAAAAA", "",  "566A", "", "28", "CW", "", "J", "", "", "001211", "0218U",
        "599",    "599", "Taiwan", "", "", "", "", "", "", "", "AAAAAA"};
    EXPECT_EQ(f, expected);
    EXPECT_TRUE(r.atEnd());
}

TEST(Record, ReadingPastTheEndIsInputPastEnd)
{
    auto r = RecordReader::fromText("\"a\"\r\n");
    r.field();
    try {
        r.field();
        FAIL();
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), 62);
    }
}

TEST(Record, AnUnclosedQuoteRunsToTheEndWithoutHanging)
{
    auto r = RecordReader::fromText("\"abc\r\ndef");
    EXPECT_EQ(r.field(), "abc\r\ndef");
    EXPECT_TRUE(r.atEnd());
}

TEST(Record, QuotedFieldsEndedByCommaLineEndOrTheTextReadInTurn)
{
    auto r = RecordReader::fromText("\"a\",\"b\"\r\n\"c\",\"\",\"d\"");
    EXPECT_EQ(r.fields(2), (std::vector<std::string>{"a", "b"}));
    EXPECT_FALSE(r.atEnd());
    EXPECT_EQ(r.fields(3), (std::vector<std::string>{"c", "", "d"}));
    EXPECT_TRUE(r.atEnd());
}

TEST(Record, FieldViewsReadTheSameFieldsAsCopiesAndEndLikeThem)
{
    const std::string text = "\"a\" , b ,\"c, d\"x,  e\r\n\"f\",\"\",\"g\"\r\n";
    auto copies = RecordReader::fromText(text);
    auto views = RecordReader::fromText(text);
    std::vector<std::string_view> got = {"left over"};
    views.fieldViews(4, got);
    EXPECT_EQ(std::vector<std::string_view>({"a", "b", "c, d", "e"}), got);
    const std::vector<std::string> expected = copies.fields(4);
    EXPECT_EQ(std::vector<std::string_view>(expected.begin(), expected.end()), got);
    views.fieldViews(2, got);
    EXPECT_EQ(std::vector<std::string_view>({"f", ""}), got);
    try {
        views.fieldViews(2, got);
        FAIL() << "reading past the end must fail";
    } catch (const vornhale::failure::Failure& f) {
        EXPECT_EQ(62, f.number());
    }
}
