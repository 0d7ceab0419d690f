#include "failure/Failure.h"
#include "support/TestSupport.h"
#include "text/LineFile.h"
#include "text/WriteBehind.h"

#include <gtest/gtest.h>

#include <string>

using namespace vornhale;
using namespace vornhale::text;

namespace {

// Line `i` of a long test file: lines of every length up to a hundred bytes.
std::string lineOf(std::string_view tag, int i)
{
    return std::string(tag) + std::to_string(i) + std::string(static_cast<std::size_t>(i % 97), '.');
}

std::string numberedLines(std::string_view tag, int count)
{
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += lineOf(tag, i) + "\r\n";
    }
    return text;
}

// Writes to the full device in `mode`: the writes fail on the writer thread, and the close
// tells it as Failure 57.
void expectAFullDeviceToFailTheClose(LineWriter::Mode mode)
{
    LineWriter w("/dev/full", mode);
    for (int i = 0; i < 40'000; ++i) {
        w.writeRaw(std::string(50, 'x'));
    }
    try {
        w.close();
        FAIL() << "a write to a full device closed without failure";
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), 57);
    }
}

} // namespace

TEST(WriteBehind, LongFilesWrittenTogetherAreWholeAndInOrderOnceClosed)
{
    test::TempDir dir;
    // Far more than one buffer each, written in turns, so the writer thread holds buffers of
    // both files at once.
    constexpr int kLines = 60'000;
    {
        LineWriter a(dir / "a");
        LineWriter b(dir / "b");
        for (int i = 0; i < kLines; ++i) {
            a.writeRaw(lineOf("a", i));
            b.writeRaw(lineOf("b", i));
        }
        a.close();
        EXPECT_EQ(test::readBytes(dir / "a"), numberedLines("a", kLines));
        b.close();
    }
    EXPECT_EQ(test::readBytes(dir / "b"), numberedLines("b", kLines));
}

TEST(WriteBehind, AFileForTheDiskIsWrittenWholeAndAFailedWriteStillFailsItsClose)
{
    test::TempDir dir;
    test::writeBytes(dir / "result", "the previous content, longer than nothing");
    LineWriter w(dir / "result", LineWriter::Mode::ForTheDisk);
    for (int i = 0; i < 60'000; ++i) {
        w.writeRaw(lineOf("r", i));
    }
    w.close();
    EXPECT_EQ(test::readBytes(dir / "result"), numberedLines("r", 60'000));

    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "no /dev/full on this system";
    }
    expectAFullDeviceToFailTheClose(LineWriter::Mode::ForTheDisk);
}

TEST(WriteBehind, AnAppendingWriterAddsAfterWhatThereWas)
{
    test::TempDir dir;
    test::writeBytes(dir / "log", "first\r\n");
    LineWriter w(dir / "log", LineWriter::Mode::Append);
    const std::string many = numberedLines("x", 30'000);
    for (std::string_view rest = many; !rest.empty();) {
        const std::size_t end = rest.find("\r\n");
        w.writeRaw(rest.substr(0, end));
        rest.remove_prefix(end + 2);
    }
    w.close();
    EXPECT_EQ(test::readBytes(dir / "log"), "first\r\n" + many);
}

TEST(WriteBehind, AWriterLeftWithoutCloseStillWritesAllItHeld)
{
    test::TempDir dir;
    {
        LineWriter w(dir / "kept");
        for (int i = 0; i < 40'000; ++i) {
            w.writeRaw(lineOf("", i));
        }
    }
    EXPECT_EQ(test::readBytes(dir / "kept"), numberedLines("", 40'000));
}

TEST(WriteBehind, AFailedWriteOnTheWriterThreadFailsTheClose)
{
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "no /dev/full on this system";
    }
    expectAFullDeviceToFailTheClose(LineWriter::Mode::Append);
}

TEST(WriteBehind, RemovesLargeAndSmallFilesAndTellsWhetherThereWasOne)
{
    test::TempDir dir;
    test::writeBytes(dir / "large", std::string(3 << 20, 'L'));
    test::writeBytes(dir / "small", "s");
    std::filesystem::create_directory(dir / "emptyFolder");
    std::error_code ec;
    EXPECT_TRUE(removeBehind(dir / "large", ec));
    EXPECT_TRUE(removeBehind(dir / "small", ec));
    EXPECT_TRUE(removeBehind(dir / "emptyFolder", ec));
    EXPECT_FALSE(removeBehind(dir / "missing", ec));
    EXPECT_FALSE(ec);
    EXPECT_FALSE(std::filesystem::exists(dir / "large"));
    EXPECT_FALSE(std::filesystem::exists(dir / "small"));
    EXPECT_FALSE(std::filesystem::exists(dir / "emptyFolder"));
    // The name is free at once: a new file of that name is a file of its own.
    test::writeBytes(dir / "large", "new");
    EXPECT_EQ(test::readBytes(dir / "large"), "new");
}

TEST(WriteBehind, ARenameReplacesALargeFileAndFailsLikeARename)
{
    test::TempDir dir;
    test::writeBytes(dir / "result", std::string(3 << 20, 'o'));
    test::writeBytes(dir / "result.writing", "new\r\n");
    std::error_code ec;
    renameBehind(dir / "result.writing", dir / "result", ec);
    EXPECT_FALSE(ec);
    EXPECT_EQ(test::readBytes(dir / "result"), "new\r\n");
    EXPECT_FALSE(std::filesystem::exists(dir / "result.writing"));
    renameBehind(dir / "missing", dir / "result", ec);
    EXPECT_TRUE(ec);
    EXPECT_EQ(test::readBytes(dir / "result"), "new\r\n");
}
