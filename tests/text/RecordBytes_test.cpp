// The byte-level record reader of the working files against the record reader of the decoded
// text: the same fields, record by record, whatever the notation.

#include "failure/Failure.h"
#include "support/TestSupport.h"
#include "text/Record.h"
#include "text/RecordBytes.h"
#include "text/SjisCodec.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace vornhale;

namespace {

// Reads `bytes` (Shift-JIS) as records of `count` fields with both readers and compares them;
// returns how many records were plain ASCII.
int compareReaders(const std::string& bytes, std::size_t count)
{
    test::TempDir dir;
    test::writeBytes(dir / "w.csv", bytes);
    text::RecordReader text(dir / "w.csv");
    text::RecordBytes raw(dir / "w.csv");
    std::vector<std::string_view> expected, got;
    int ascii = 0;
    while (!text.atEnd()) {
        EXPECT_FALSE(raw.atEnd());
        text.fieldViews(count, expected);
        ascii += raw.next(count, got) ? 1 : 0;
        EXPECT_EQ(std::vector<std::string>(got.begin(), got.end()),
                  std::vector<std::string>(expected.begin(), expected.end()));
    }
    EXPECT_TRUE(raw.atEnd());
    return ascii;
}

} // namespace

TEST(RecordBytes, QuotedAsciiRecordsAreTheirOwnBytesAndCanonical)
{
    test::TempDir dir;
    test::writeBytes(dir / "w.csv", "\"JA1ABC\",\"599\",\"\"\r\n\"K1A\",\"5NN\",\"x y\"\r\n");
    text::RecordBytes raw(dir / "w.csv");
    std::vector<std::string_view> f;
    EXPECT_TRUE(raw.next(3, f));
    EXPECT_TRUE(raw.canonical());
    EXPECT_EQ(f[0], "JA1ABC");
    EXPECT_EQ(f[2], "");
    EXPECT_EQ(compareReaders("\"JA1ABC\",\"599\",\"\"\r\n\"K1A\",\"5NN\",\"x y\"\r\n", 3), 2);
}

TEST(RecordBytes, EveryNotationGivesTheFieldsTheTextReaderGives)
{
    // Blanks before fields, unquoted fields (trimmed), text after a closing quote, a record
    // over two lines, CR and LF line ends, a missing closing quote at the very end.
    compareReaders("  \"a\" , b ,\"c\"x,\"d\r\n\"e\",\"f\"\r\ng,h,\"i\",\"j\"\n\"k\",\"l\",m ,"
                   "\"n\",\"o\",p,\"q",
                   4);
}

TEST(RecordBytes, KanjiFieldsAreDecodedAndTheirNeighboursStayAsTheyAre)
{
    // The ideographic blank's second byte is "@"; the byte 0x5C ends the second byte of "ソ".
    const std::string line = "\"" + text::encodeSjis("東京　都") + "\",\"A\",\"" +
                             text::encodeSjis("ソフト") + "\",\"" + std::string("\xED\x40") + "\"\r\n";
    EXPECT_EQ(compareReaders(line + "\"1\",\"2\",\"3\",\"4\"\r\n", 4), 1);
}

TEST(RecordBytes, ARecordCutShortByTheEndOfTheFileIsInputPastEnd)
{
    test::TempDir dir;
    test::writeBytes(dir / "w.csv", "\"a\",\"b\"\r\n");
    text::RecordBytes raw(dir / "w.csv");
    std::vector<std::string_view> f;
    EXPECT_THROW(raw.next(3, f), failure::Failure);
}

TEST(AsciiRecordLine, QuotesEachFieldAndCopiesCanonicalRunsWhole)
{
    test::TempDir dir;
    test::writeBytes(dir / "w.csv", "\"a\",\"bb\",\"ccc\"\r\n");
    text::RecordBytes raw(dir / "w.csv");
    std::vector<std::string_view> f;
    ASSERT_TRUE(raw.next(3, f));
    text::AsciiRecordLine line;
    line.field("x");
    line.fields(f[1], f[2]);
    line.emptyField();
    EXPECT_EQ(line.text(), "\"x\",\"bb\",\"ccc\",\"\"");
    line.clear();
    line.field(std::string(300, 'z'));
    EXPECT_EQ(line.text().size(), 302U);
}
