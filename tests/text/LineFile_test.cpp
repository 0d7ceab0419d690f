#include "failure/Failure.h"
#include "support/TestSupport.h"
#include "text/LineFile.h"
#include "text/Record.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

using namespace vornhale;
using namespace vornhale::text;

TEST(Count_lines, CountsOneMoreWhenTheLastLineEndsInCrLf)
{
    test::TempDir dir;
    test::writeBytes(dir / "a", "a\r\nb\r\n");
    test::writeBytes(dir / "b", "a\r\nb");
    test::writeBytes(dir / "c", "");
    EXPECT_EQ(Count_lines(dir / "a"), 3);
    EXPECT_EQ(Count_lines(dir / "b"), 2);
    EXPECT_EQ(Count_lines(dir / "c"), 1);
}

TEST(Count_lines, TakesLfAndCrAloneAsLineEnds)
{
    test::TempDir dir;
    test::writeBytes(dir / "lf", "a\nb\n");
    test::writeBytes(dir / "cr", "a\rb\r");
    EXPECT_EQ(Count_lines(dir / "lf"), 3);
    EXPECT_EQ(Count_lines(dir / "cr"), 3);
    EXPECT_EQ(Count_lines(dir / "missing"), 0);
}

TEST(Count_lines, CountsACrLfSplitAcrossTheReadBufferOnce)
{
    test::TempDir dir;
    std::string bytes(65535, 'x');
    bytes += "\r\nyy\r\n";
    test::writeBytes(dir / "big", bytes);
    EXPECT_EQ(Count_lines(dir / "big"), 3);
}

TEST(Count_lines, CountsEveryMixOfLineEndsWhereverTheyFall)
{
    // CRs, LFs and CR LF pairs packed close and far apart, across every place of the blocks the
    // count looks at and across its read buffer, against a count byte by byte.
    std::mt19937 random(20261124);
    test::TempDir dir;
    for (const std::size_t size :
         {1, 63, 64, 65, 127, 128, 129, 1000, 65535, 65536, 65537, 200000}) {
        for (const int spread : {2, 5, 40}) {
            std::string bytes(size, 'x');
            for (char& c : bytes) {
                const auto roll = random() % static_cast<unsigned>(spread);
                c = roll == 0 ? '\r' : roll == 1 ? '\n' : c;
            }
            long expected = 1;
            for (std::size_t i = 0; i < bytes.size(); ++i) {
                expected += bytes[i] == '\n' ||
                            (bytes[i] == '\r' && !(i + 1 < bytes.size() && bytes[i + 1] == '\n'));
            }
            test::writeBytes(dir / "mixed", bytes);
            EXPECT_EQ(Count_lines(dir / "mixed"), expected) << size << " bytes, spread " << spread;
        }
    }
}

TEST(LineFile, AnyLineEndEndsALineAndAFinalOneOpensNoEmptyLine)
{
    EXPECT_EQ(splitLines("a\r\nb\rc\nd\r\n").size(), 4u);
    EXPECT_EQ(splitLines("a\n\nb").size(), 3u);
    EXPECT_EQ(splitLines("").size(), 0u);
}

TEST(LineFile, LongLinesEndAtEveryKindOfLineEndWhereverItFalls)
{
    // Lines around a few hundred bytes, so that line ends and CR LF pairs fall on every
    // side of the boundaries of the search.
    std::string text;
    std::vector<std::string> expected;
    const char* ends[] = {"\r\n", "\r", "\n"};
    int n = 0;
    // No line is empty, so a lone CR is never followed by the LF of an empty line.
    for (std::size_t length : {1, 2, 254, 255, 256, 257, 511, 512, 513, 700}) {
        for (const char* end : ends) {
            expected.push_back(std::string(length, static_cast<char>('a' + n++ % 26)));
            text += expected.back() + end;
        }
    }
    text += "last";
    expected.push_back("last");
    const std::vector<std::string_view> lines = splitLines(text);
    ASSERT_EQ(lines.size(), expected.size());
    test::TempDir dir;
    test::writeBytes(dir / "in", text);
    LineReader reader(dir / "in");
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(lines[i], expected[i]) << "line " << i;
        EXPECT_EQ(reader.nextRaw(), expected[i]) << "line " << i;
    }
    EXPECT_TRUE(reader.atEnd());
}

TEST(LineFile, ReaderTestsTheEndAndFailsPastIt)
{
    test::TempDir dir;
    test::writeBytes(dir / "f", "one\r\n\x95\xCF\r\n");
    LineReader reader(dir / "f");
    EXPECT_EQ(reader.next(), "one");
    EXPECT_EQ(reader.next(), "変");
    EXPECT_TRUE(reader.atEnd());
    try {
        reader.next();
        FAIL();
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), 62);
    }
}

TEST(LineFile, MissingFileIsFileNotFound)
{
    test::TempDir dir;
    try {
        LineReader reader(dir / "nope");
        FAIL();
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), 53);
    }
}

TEST(LineFile, WriterWritesShiftJisWithCrLf)
{
    test::TempDir dir;
    LineWriter w(dir / "out");
    w.write("変換 A");
    w.write("");
    w.close();
    EXPECT_EQ(test::readBytes(dir / "out"), "\x95\xCF\x8A\xB7 A\r\n\r\n");
}

TEST(LineFile, WriterWritesARecordAsTheFormattedLineWouldBe)
{
    test::TempDir dir;
    const std::vector<std::string> fields = {"JA1ABC", "", "変換 A", std::string(40, 'x'),
                                             "\xEF\x9E\x80", "ｱ", "\xE3"};
    {
        LineWriter record(dir / "record");
        record.writeRecord(fields);
        record.writeRecord({"a", "州"});
        record.writeRecord(std::vector<std::string>{});
        record.close();
    }
    {
        LineWriter line(dir / "line");
        line.write(formatRecord(fields));
        line.write(formatRecord({"a", "州"}));
        line.write("");
        line.close();
    }
    EXPECT_EQ(test::readBytes(dir / "record"), test::readBytes(dir / "line"));
    EXPECT_EQ(test::readBytes(dir / "record").substr(0, 21), "\"JA1ABC\",\"\",\"\x95\xCF\x8A\xB7 A\",");
}

TEST(LineFile, ReplacingWriterLeavesThePreviousFileUntilClosed)
{
    test::TempDir dir;
    test::writeBytes(dir / "result.csv", "old\r\n");
    {
        LineWriter w(dir / "result.csv", LineWriter::Mode::ReplaceWhenDone);
        w.write("new");
        EXPECT_EQ(test::readBytes(dir / "result.csv"), "old\r\n");
        w.close();
    }
    EXPECT_EQ(test::readBytes(dir / "result.csv"), "new\r\n");
    {
        LineWriter w(dir / "result.csv", LineWriter::Mode::ReplaceWhenDone);
        w.write("abandoned");
    }
    EXPECT_EQ(test::readBytes(dir / "result.csv"), "new\r\n");
    EXPECT_FALSE(std::filesystem::exists(dir / "result.csv.writing"));
}
