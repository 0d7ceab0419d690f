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

TEST(RecordBytes, RecordsOfEveryLengthAreReadAsTheTextReaderReadsThem)
{
    // Fields of every length from 0 to 40 bytes, so that quotes and kanji fall at every place
    // of the blocks the reader looks through at once; a kanji in one field of every other
    // record, at each place of it, and right behind a record's last quote (the next record's
    // first field) too.
    const std::string kanji = text::encodeSjis("亜");
    std::string bytes;
    int asciiRecords = 0;
    for (int length = 0; length <= 40; ++length) {
        for (int at = 0; at <= length; ++at) {
            std::string fields[3] = {std::string(static_cast<std::size_t>(length), 'a'),
                                     std::string(static_cast<std::size_t>(at), 'b'),
                                     std::string(static_cast<std::size_t>(40 - length), 'c')};
            const bool withKanji = at % 2 == 1;
            if (withKanji && at % 4 == 3) {
                fields[0].insert(0, kanji);
            } else if (withKanji) {
                fields[at % 3].insert(static_cast<std::size_t>(at) % (fields[at % 3].size() + 1),
                                      kanji);
            } else {
                ++asciiRecords;
            }
            bytes += "\"" + fields[0] + "\",\"" + fields[1] + "\",\"" + fields[2] + "\"\r\n";
        }
    }
    EXPECT_EQ(compareReaders(bytes, 3), asciiRecords);
}

TEST(RecordBytes, RecordsOfManyShortFieldsAreReadAsTheTextReaderReadsThem)
{
    // Thirty-two fields of no byte up to a few: quotes close together, as many to a block of
    // bytes the reader looks at as it can hold, and a record's last quote at every place of a
    // block; now and then a byte above ASCII at every place too.
    std::string bytes;
    int asciiRecords = 0;
    for (int record = 0; record < 400; ++record) {
        const bool withHigh = record % 5 == 4;
        std::string line;
        for (int f = 0; f < 32; ++f) {
            std::string field(
                static_cast<std::size_t>((record + f * 7) % 4 == 0 ? 0 : (record + f) % 3), 'x');
            if (withHigh && f == record % 32) {
                field += "\xB1"; // a half-width kana, one byte above ASCII
            }
            line += (f == 0 ? "\"" : ",\"") + field + "\"";
        }
        bytes += line + (record % 2 == 0 ? "\r\n" : "\n");
        asciiRecords += withHigh ? 0 : 1;
    }
    EXPECT_EQ(compareReaders(bytes, 32), asciiRecords);
}
