#include "failure/Failure.h"
#include "support/TestSupport.h"
#include "text/FileBytes.h"
#include "text/LineFile.h"

#include <gtest/gtest.h>

#include <utility>

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
