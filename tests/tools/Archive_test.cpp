#include "ArchiveFixtures.h"
#include "support/TestSupport.h"
#include "tools/Archive.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

class ArchiveTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (!test::haveTool("zip") || !test::haveTool("jlha")) {
            GTEST_SKIP() << "zip and jlha (jlha-utils) make the archives of these tests";
        }
        fs::create_directories(build());
        fs::create_directories(area());
        test::writeBytes(build() / "a.txt", "alpha\r\n");
        fs::create_directories(build() / "sub");
        test::writeBytes(build() / "sub" / "b.txt", "bravo\r\n");
    }

    fs::path build() const { return m_dir / "build"; }
    /// The folder that holds the target folder: nothing may appear here but the target.
    fs::path area() const { return m_dir / "area"; }
    fs::path target() const { return area() / "target"; }

    /// Whether `area()` holds nothing but (possibly) the target folder, and nothing was
    /// written into it.
    void expectNothingUnpacked() const
    {
        for (const auto& entry : fs::directory_iterator(area())) {
            EXPECT_EQ(entry.path(), target()) << "written outside the folder";
        }
        if (fs::exists(target())) {
            EXPECT_TRUE(fs::is_empty(target()));
        }
    }

    test::TempDir m_dir;
};

} // namespace

TEST_F(ArchiveTest, ExtractsAZipWithItsFoldersAndCountsTheFiles)
{
    ASSERT_TRUE(test::runIn(build(), "zip -q -r t.zip a.txt sub"));
    EXPECT_TRUE(tools::Archive::isValid(build() / "t.zip"));
    EXPECT_EQ(tools::Archive::count(build() / "t.zip"), 2);

    const tools::ExtractResult r = tools::Archive::extractAll(build() / "t.zip", target());
    ASSERT_TRUE(r.ok) << r.error;
    EXPECT_EQ(r.count, 2);
    EXPECT_EQ(test::readBytes(target() / "a.txt"), "alpha\r\n");
    EXPECT_EQ(test::readBytes(target() / "sub" / "b.txt"), "bravo\r\n");
}

TEST_F(ArchiveTest, ExtractsACompressedLzh)
{
    std::string numbers;
    for (int i = 1; i <= 5000; ++i) {
        numbers += std::to_string(i) + "\r\n";
    }
    test::writeBytes(build() / "nums.txt", numbers);
    ASSERT_TRUE(test::runIn(build(), "jlha a t.lzh nums.txt sub/b.txt >/dev/null"));
    // jlha packs text of this size with -lh5-, as the data archives are packed.
    EXPECT_NE(test::readBytes(build() / "t.lzh").find("-lh5-"), std::string::npos);
    EXPECT_TRUE(tools::Archive::isValid(build() / "t.lzh"));
    EXPECT_EQ(tools::Archive::count(build() / "t.lzh"), 2);

    const tools::ExtractResult r = tools::Archive::extractAll(build() / "t.lzh", target());
    ASSERT_TRUE(r.ok) << r.error;
    EXPECT_EQ(r.count, 2);
    EXPECT_EQ(test::readBytes(target() / "nums.txt"), numbers);
    EXPECT_EQ(test::readBytes(target() / "sub" / "b.txt"), "bravo\r\n");
}

TEST_F(ArchiveTest, ExtractsEveryFileIntoTheFolderItselfWhenPathsAreJunked)
{
    ASSERT_TRUE(test::runIn(build(), "jlha a t.lzh a.txt sub/b.txt >/dev/null"));
    const tools::ExtractResult r =
        tools::Archive::extractAll(build() / "t.lzh", target(), /*junkPaths=*/true);
    ASSERT_TRUE(r.ok) << r.error;
    EXPECT_EQ(r.count, 2);
    EXPECT_EQ(test::readBytes(target() / "b.txt"), "bravo\r\n");
    EXPECT_FALSE(fs::exists(target() / "sub"));
}

TEST_F(ArchiveTest, ReplacesAFileOfTheSameName)
{
    ASSERT_TRUE(test::runIn(build(), "zip -q t.zip a.txt"));
    fs::create_directories(target());
    test::writeBytes(target() / "a.txt", "an older file, longer than the new one");
    ASSERT_TRUE(tools::Archive::extractAll(build() / "t.zip", target()).ok);
    EXPECT_EQ(test::readBytes(target() / "a.txt"), "alpha\r\n");
}

TEST_F(ArchiveTest, RefusesAFileThatIsNoArchive)
{
    test::writeBytes(build() / "page.zip", "<html>404 Not Found</html>");
    EXPECT_FALSE(tools::Archive::isValid(build() / "page.zip"));
    EXPECT_EQ(tools::Archive::count(build() / "page.zip"), -1);
    EXPECT_FALSE(tools::Archive::isValid(build() / "missing.lzh"));
    const tools::ExtractResult r = tools::Archive::extractAll(build() / "page.zip", target());
    EXPECT_FALSE(r.ok);
    EXPECT_NE(r.error.find("not an LZH or ZIP archive"), std::string::npos);
    expectNothingUnpacked();
}

TEST_F(ArchiveTest, RefusesAZipEntryThatClimbsOutOfTheFolder)
{
    // zip keeps a "../" part of a name it is given.
    fs::create_directories(build() / "inner");
    ASSERT_TRUE(test::runIn(build() / "inner", "zip -q ../up.zip ../a.txt"));
    const tools::ExtractResult r = tools::Archive::extractAll(build() / "up.zip", target());
    EXPECT_FALSE(r.ok);
    EXPECT_NE(r.error.find("outside the folder"), std::string::npos);
    EXPECT_FALSE(fs::exists(area() / "a.txt"));
    expectNothingUnpacked();
}

TEST_F(ArchiveTest, RefusesAClimbWrittenWithBackslashes)
{
    fs::create_directories(build() / "xx");
    test::writeBytes(build() / "xx" / "evil.txt", "evil");
    ASSERT_TRUE(test::runIn(build(), "zip -q bs.zip a.txt xx/evil.txt"));
    test::patchBytes(build() / "bs.zip", "xx/evil.txt", "..\\evil.txt");
    const tools::ExtractResult r = tools::Archive::extractAll(build() / "bs.zip", target());
    EXPECT_FALSE(r.ok);
    EXPECT_NE(r.error.find("outside the folder"), std::string::npos);
    expectNothingUnpacked();
}

TEST_F(ArchiveTest, RefusesAnAbsoluteZipEntry)
{
    fs::create_directories(build() / "xabs");
    test::writeBytes(build() / "xabs" / "file.txt", "abs");
    ASSERT_TRUE(test::runIn(build(), "zip -q abs.zip a.txt xabs/file.txt"));
    test::patchBytes(build() / "abs.zip", "xabs/file.txt", "/abs/file.txt");
    const tools::ExtractResult r = tools::Archive::extractAll(build() / "abs.zip", target());
    EXPECT_FALSE(r.ok);
    EXPECT_NE(r.error.find("/abs/file.txt"), std::string::npos);
    EXPECT_FALSE(fs::exists("/abs/file.txt"));
    expectNothingUnpacked();
}

TEST_F(ArchiveTest, RefusesAnAbsoluteLzhEntryAndLeavesThatFileAlone)
{
    const fs::path victim = m_dir / "victim.txt";
    test::writeBytes(victim, "packed");
    // jlha keeps an absolute name as it is given.
    ASSERT_TRUE(test::runIn(build(),
                            "jlha a abs.lzh " + test::shellQuote(victim.string()) + " >/dev/null"));
    test::writeBytes(victim, "changed after packing");
    const tools::ExtractResult r = tools::Archive::extractAll(build() / "abs.lzh", target());
    EXPECT_FALSE(r.ok);
    EXPECT_NE(r.error.find("outside the folder"), std::string::npos);
    EXPECT_EQ(test::readBytes(victim), "changed after packing");
    expectNothingUnpacked();
}

TEST_F(ArchiveTest, RefusesAnLzhEntryThatClimbsOutOfTheFolder)
{
    fs::create_directories(build() / "xx");
    test::writeBytes(build() / "xx" / "evil.txt", "evil");
    // A level-0 header stores the folder with a backslash: "xx\evil.txt".
    ASSERT_TRUE(test::runIn(build(), "jlha a0 up.lzh xx/evil.txt >/dev/null"));
    test::patchLzhLevel0Name(build() / "up.lzh", "xx\\evil.txt", "..\\evil.txt");
    ASSERT_TRUE(tools::Archive::isValid(build() / "up.lzh"));
    const tools::ExtractResult r = tools::Archive::extractAll(build() / "up.lzh", target());
    EXPECT_FALSE(r.ok);
    EXPECT_NE(r.error.find("outside the folder"), std::string::npos);
    EXPECT_FALSE(fs::exists(area() / "evil.txt"));
    expectNothingUnpacked();
}

TEST_F(ArchiveTest, RefusesALinkThatPointsOutOfTheFolder)
{
    for (const char* outside : {"/etc/passwd", "../../a.txt"}) {
        fs::remove(build() / "link");
        fs::remove(build() / "link.zip");
        fs::create_symlink(outside, build() / "link");
        ASSERT_TRUE(test::runIn(build(), "zip -q -y link.zip a.txt link"));
        const tools::ExtractResult r = tools::Archive::extractAll(build() / "link.zip", target());
        EXPECT_FALSE(r.ok) << outside;
        EXPECT_NE(r.error.find("a link points outside the folder"), std::string::npos);
        expectNothingUnpacked();
    }
}

TEST_F(ArchiveTest, MakesALinkThatStaysInsideTheFolder)
{
    fs::create_symlink("sub/b.txt", build() / "inside");
    ASSERT_TRUE(test::runIn(build(), "zip -q -y -r in.zip sub inside"));
    const tools::ExtractResult r = tools::Archive::extractAll(build() / "in.zip", target());
    ASSERT_TRUE(r.ok) << r.error;
    EXPECT_TRUE(fs::is_symlink(target() / "inside"));
    EXPECT_EQ(test::readBytes(target() / "inside"), "bravo\r\n");
}

TEST_F(ArchiveTest, NeverWritesThroughALinkThatStandsInTheFolder)
{
    ASSERT_TRUE(test::runIn(build(), "zip -q -r t.zip sub"));
    const fs::path elsewhere = m_dir / "elsewhere";
    fs::create_directories(elsewhere);
    fs::create_directories(target());
    fs::create_directory_symlink(elsewhere, target() / "sub");
    const tools::ExtractResult r = tools::Archive::extractAll(build() / "t.zip", target());
    EXPECT_FALSE(r.ok);
    EXPECT_TRUE(fs::is_empty(elsewhere));
}

TEST_F(ArchiveTest, RefusesAZipBombBeforeWritingAnything)
{
    // 100 MB of zeros pack into about 100 KB.
    ASSERT_TRUE(test::runIn(build(), "head -c 100000000 /dev/zero > zeros.bin && "
                                     "zip -q bomb.zip a.txt zeros.bin && rm zeros.bin"));
    ASSERT_LT(fs::file_size(build() / "bomb.zip"), 1000000u);
    const tools::ExtractResult r = tools::Archive::extractAll(build() / "bomb.zip", target());
    EXPECT_FALSE(r.ok);
    EXPECT_NE(r.error.find("unpacks to more than"), std::string::npos);
    expectNothingUnpacked();
}

TEST_F(ArchiveTest, CountsWhatItUnpacksAgainstTheLimitsItIsGiven)
{
    ASSERT_TRUE(test::runIn(build(), "head -c 300000 /dev/zero > zeros.bin && "
                                     "zip -q z.zip zeros.bin a.txt sub/b.txt"));
    tools::ArchiveLimits small;
    small.maxTotalBytes = 200000;
    EXPECT_FALSE(tools::Archive::extractAll(build() / "z.zip", target(), false, small).ok);
    expectNothingUnpacked();

    tools::ArchiveLimits few;
    few.maxEntries = 2;
    const tools::ExtractResult r =
        tools::Archive::extractAll(build() / "z.zip", target(), false, few);
    EXPECT_FALSE(r.ok);
    EXPECT_NE(r.error.find("more than 2 entries"), std::string::npos);
    expectNothingUnpacked();

    EXPECT_TRUE(tools::Archive::extractAll(build() / "z.zip", target()).ok);
}
