#include "failure/Failure.h"
#include "support/TestSupport.h"
#include "text/LineFile.h"

#include <gtest/gtest.h>

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

TEST(LineFile, AnyLineEndEndsALineAndAFinalOneOpensNoEmptyLine)
{
    EXPECT_EQ(splitLines("a\r\nb\rc\nd\r\n").size(), 4u);
    EXPECT_EQ(splitLines("a\n\nb").size(), 3u);
    EXPECT_EQ(splitLines("").size(), 0u);
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
