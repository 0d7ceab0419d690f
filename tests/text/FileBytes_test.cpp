#include "failure/Failure.h"
#include "support/TestSupport.h"
#include "text/FileBytes.h"
#include "text/LineFile.h"

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <utility>
#include <vector>

using namespace vornhale;
using namespace vornhale::text;

namespace {

// Bytes of every value, long enough to be mapped, not a whole number of pages.
std::string largeBytes()
{
    std::string bytes;
    for (int i = 0; i < 300'001; ++i) {
        bytes.push_back(static_cast<char>((i * 7) & 0xFF));
    }
    return bytes;
}

int failureOf(const std::filesystem::path& path)
{
    try {
        FileBytes bytes(path);
    } catch (const failure::Failure& f) {
        return f.number();
    }
    return 0;
}

} // namespace

TEST(FileBytes, GivesTheBytesAReadGivesForLargeSmallAndEmptyFiles)
{
    test::TempDir dir;
    const std::string large = largeBytes();
    test::writeBytes(dir / "large", large);
    test::writeBytes(dir / "small", "a\r\n\x95\xCF\r\n");
    test::writeBytes(dir / "empty", "");
    EXPECT_EQ(FileBytes(dir / "large").view(), large);
    EXPECT_EQ(FileBytes(dir / "large").view(), readFileBytes(dir / "large"));
    EXPECT_EQ(FileBytes(dir / "small").view(), "a\r\n\x95\xCF\r\n");
    EXPECT_EQ(FileBytes(dir / "empty").size(), 0u);
}

// A file large enough to be read in two halves side by side comes whole and in its order, the
// halves meeting at an odd place; reading on from where the read leaves the file adds nothing.
TEST(FileBytes, ALargeFileIsReadWholeInTwoHalves)
{
    test::TempDir dir;
    std::string bytes;
    for (std::uint32_t i = 0; bytes.size() < (9u << 20) + 3; ++i) {
        const std::uint32_t x = i * 2654435761u;
        bytes.append(reinterpret_cast<const char*>(&x), sizeof x);
    }
    bytes.resize((9u << 20) + 3);
    test::writeBytes(dir / "log", bytes);
    EXPECT_EQ(readFileBytes(dir / "log"), bytes);

    std::FILE* f = std::fopen((dir / "log").c_str(), "rb");
    ASSERT_NE(f, nullptr);
    std::string into(bytes.size() + 10, '\0');
    EXPECT_EQ(readFromStart(f, into.data(), into.size()), bytes.size());
    EXPECT_EQ(std::fgetc(f), EOF);
    std::fclose(f);
    into.resize(bytes.size());
    EXPECT_EQ(into, bytes);
}

TEST(FileBytes, AMissingFileOrAFolderFailsAsARead)
{
    test::TempDir dir;
    EXPECT_EQ(failureOf(dir / "missing"), 53);
    EXPECT_EQ(failureOf(dir.path()), 53);
}

TEST(FileBytes, KeepsItsBytesWhenMovedAndWhenTheFileIsReplacedOrRemoved)
{
    test::TempDir dir;
    const std::string large = largeBytes();
    test::writeBytes(dir / "large", large);
    test::writeBytes(dir / "small", "short");
    FileBytes a(dir / "large");
    FileBytes b(dir / "small");
    FileBytes movedLarge(std::move(a));
    FileBytes movedSmall(std::move(b));
    EXPECT_EQ(a.size(), 0u);
    // The program replaces a file by writing another and renaming it over the first.
    test::writeBytes(dir / "new", std::string(large.size(), 'n'));
    std::filesystem::rename(dir / "new", dir / "large");
    std::filesystem::remove(dir / "small");
    EXPECT_EQ(movedLarge.view(), large);
    EXPECT_EQ(movedSmall.view(), "short");
    movedSmall = std::move(movedLarge);
    EXPECT_EQ(movedSmall.view(), large);
}

TEST(FileBytes, TheKeptInputIsReadOnceWhileItStaysAsItWas)
{
    test::TempDir dir;
    test::writeBytes(dir / "log.ALL", "one\r\ntwo\r\n");
    test::writeBytes(dir / "other", "x\r\n");
    keepReadsOf(dir / "log.ALL");
    EXPECT_EQ(keptBytesIfRead(dir / "log.ALL"), nullptr);
    EXPECT_EQ(Count_lines(dir / "log.ALL"), 3);
    EXPECT_EQ(keptBytesIfRead(dir / "log.ALL"), nullptr) << "a count reads no copy";
    const auto first = keptBytesOf(dir / "log.ALL");
    EXPECT_EQ(keptBytesIfRead(dir / "log.ALL"), first);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->view(), "one\r\ntwo\r\n");
    EXPECT_EQ(keptBytesOf(dir / "log.ALL"), first);
    EXPECT_EQ(FileBytes::read(dir / "log.ALL").data(), first->data());
    EXPECT_EQ(keptBytesOf(dir / "other"), nullptr);
    EXPECT_EQ(Count_lines(dir / "log.ALL"), 3);

    // Written again, even to the same length: read afresh.
    test::writeBytes(dir / "log.ALL", "ONE\r\nTWO\r\n");
    EXPECT_EQ(keptBytesOf(dir / "log.ALL")->view(), "ONE\r\nTWO\r\n");
    EXPECT_EQ(FileBytes::read(dir / "log.ALL").view(), "ONE\r\nTWO\r\n");
    test::writeBytes(dir / "log.ALL", "a\rb\rc");
    EXPECT_EQ(Count_lines(dir / "log.ALL"), 3);
    // Replaced by another file of the same bytes: read afresh as well.
    test::writeBytes(dir / "new", "a\rb\rc");
    const auto before = keptBytesOf(dir / "log.ALL");
    std::filesystem::rename(dir / "new", dir / "log.ALL");
    EXPECT_NE(keptBytesOf(dir / "log.ALL"), before);

    // Times kept to the second, as a memory card keeps them: never shared.
    std::filesystem::last_write_time(
        dir / "log.ALL", std::chrono::time_point_cast<std::chrono::seconds>(
                             std::filesystem::last_write_time(dir / "log.ALL")));
    const auto coarse = keptBytesOf(dir / "log.ALL");
    EXPECT_NE(keptBytesOf(dir / "log.ALL"), coarse);

    // Gone: a read fails as any read does, and there is nothing to count.
    std::filesystem::remove(dir / "log.ALL");
    EXPECT_EQ(failureOf(dir / "log.ALL"), 53);
    try {
        FileBytes::read(dir / "log.ALL");
        FAIL();
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), 53);
    }
    EXPECT_EQ(Count_lines(dir / "log.ALL"), 0);
    keepReadsOf({});
    EXPECT_EQ(keptBytesOf(dir / "log.ALL"), nullptr);
}

TEST(FileBytes, ReadersOfTheKeptInputAndOfWorkingFilesGiveWhatAReadGives)
{
    test::TempDir dir;
    std::string lines;
    for (int i = 0; i < 5000; ++i) {
        lines += "line " + std::to_string(i) + (i % 3 == 0 ? "\r\n" : i % 3 == 1 ? "\n" : "\r");
    }
    test::writeBytes(dir / "log", lines);
    test::writeBytes(dir / "work", lines);
    keepReadsOf(dir / "log");
    LineReader kept(dir / "log");
    LineReader mapped = LineReader::ofWorkingFile(dir / "work");
    for (int i = 0; i < 5000; ++i) {
        const std::string expected = "line " + std::to_string(i);
        ASSERT_EQ(kept.nextRaw(), expected);
        ASSERT_EQ(mapped.nextRaw(), expected);
    }
    EXPECT_TRUE(kept.atEnd());
    EXPECT_TRUE(mapped.atEnd());
    EXPECT_EQ(Count_lines(dir / "log"), Count_lines(dir / "work"));
    keepReadsOf({});
}

TEST(FileBytes, ALargeFileIsReadWholeIntoLargePagesAndSmallBuffersAreLeftAlone)
{
    // Several large pages and a part of one more, so that the hint covers some of the bytes
    // and not others.
    test::TempDir dir;
    std::string bytes = largeBytes();
    while (bytes.size() < (std::size_t{9} << 20)) {
        bytes += largeBytes();
    }
    test::writeBytes(dir / "log", bytes);
    EXPECT_EQ(readFileBytes(dir / "log"), bytes);
    EXPECT_EQ(FileBytes::read(dir / "log").view(), bytes);

    char small[16] = "unchanged";
    preferLargePages(small, sizeof small);
    preferLargePages(nullptr, 0);
    EXPECT_STREQ(small, "unchanged");

    LineWriter memory = LineWriter::inMemory(std::size_t{5} << 20);
    memory.writeRaw(bytes.substr(0, 1000));
    EXPECT_EQ(memory.takeLines(), bytes.substr(0, 1000) + "\r\n");
}

TEST(FileBytes, APartGivenBackIsReadAgainFromTheFile)
{
    test::TempDir dir;
    std::string bytes;
    while (bytes.size() < (std::size_t{9} << 20)) {
        bytes += largeBytes();
    }
    test::writeBytes(dir / "work", bytes);
    const FileBytes mapped(dir / "work");
    ASSERT_EQ(mapped.view(), bytes);
    mapped.releaseRange(1, std::size_t{8} << 20);
    mapped.releaseRange(0, mapped.size());
    mapped.releaseRange(mapped.size(), 0);
    EXPECT_EQ(mapped.view(), bytes);

    // A reader gives back what it read as it goes; what it gave before stays good to read.
    LineReader reader = LineReader::ofWorkingFile(dir / "work");
    std::vector<std::string_view> lines;
    while (!reader.atEnd()) {
        lines.push_back(reader.nextRaw());
    }
    EXPECT_EQ(lines, splitLines(bytes));
}

// The logging program may cut the log short while it is read. The pages of the mapping past
// the new end then read as zero bytes: a reader meets bytes it can refuse, and the program
// goes on.
TEST(FileBytes, TheKeptInputCutShortWhileItIsReadReadsAsZerosPastTheCut)
{
    test::TempDir dir;
    const std::string large = largeBytes();
    test::writeBytes(dir / "log.ALL", large);
    keepReadsOf(dir / "log.ALL");
    const auto kept = keptBytesOf(dir / "log.ALL");
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ(kept->view(), large);

    constexpr std::size_t kCut = 10'000;
    std::filesystem::resize_file(dir / "log.ALL", kCut);
    const std::string_view seen = kept->view();
    ASSERT_EQ(seen.size(), large.size());
    EXPECT_EQ(seen.substr(0, kCut), std::string_view(large).substr(0, kCut));
    EXPECT_EQ(seen.find_first_not_of('\0', kCut), std::string_view::npos);
    // A reader of the same bytes reads them to their end.
    LineReader reader(dir / "log.ALL");
    while (!reader.atEnd()) {
        reader.nextRaw();
    }
    keepReadsOf({});
}

// Guarded mappings are few; past them a log is copied, and a small one always is.
TEST(FileBytes, ALogIsCopiedWhereItCannotBeMappedUnderTheGuard)
{
    test::TempDir dir;
    const std::string large = largeBytes();
    test::writeBytes(dir / "log", large);
    test::writeBytes(dir / "small", "a\r\n");
    std::vector<FileBytes> mapped;
    for (int i = 0; i < 40; ++i) {
        mapped.push_back(FileBytes::mapGuarded(dir / "log"));
    }
    std::filesystem::resize_file(dir / "log", 100);
    std::size_t cut = 0;
    for (const FileBytes& bytes : mapped) {
        ASSERT_EQ(bytes.size(), large.size());
        // A copy holds the bytes as they were; a mapping reads zeros past the cut.
        const bool zeros =
            bytes.view().substr(100).find_first_not_of('\0') == std::string_view::npos;
        EXPECT_TRUE(zeros || bytes.view() == large);
        cut += zeros ? 1 : 0;
    }
    EXPECT_GT(cut, 0u);
    EXPECT_LT(cut, mapped.size());
    EXPECT_EQ(FileBytes::mapGuarded(dir / "small").view(), "a\r\n");
}

// The guard takes only its own pages: a bus error anywhere else ends the program as before.
TEST(FileBytes, ABusErrorOutsideTheGuardedMappingsStillEndsTheProgram)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    test::TempDir dir;
    test::writeBytes(dir / "log", largeBytes());
    test::writeBytes(dir / "work", largeBytes());
    EXPECT_EXIT(
        {
            const FileBytes guarded = FileBytes::mapGuarded(dir / "log");
            const FileBytes unguarded(dir / "work");
            std::filesystem::resize_file(dir / "work", 0);
            volatile char byte = unguarded.view()[200'000];
            std::_Exit(byte == 0 ? 0 : 0);
        },
        [](int status) { return !(WIFEXITED(status) && WEXITSTATUS(status) == 0); }, "");
}
