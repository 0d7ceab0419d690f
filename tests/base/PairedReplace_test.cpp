#include "base/FileReplace.h"
#include "base/PairedReplace.h"
#include "support/TestSupport.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

struct Pair : ::testing::Test
{
    test::TempDir dir;
    fs::path work = dir / "Work";
    fs::path hn = dir / "LOG_hn.csv";
    fs::path cn = dir / "LOG_cn.csv";

    void SetUp() override
    {
        fs::create_directories(work);
        test::writeBytes(hn, "old hn\r\n");
        test::writeBytes(cn, "old cn\r\n");
    }
    void writeNew(base::PairedReplace& pair)
    {
        const auto t = pair.temporaries();
        test::writeBytes(t[0], "new hn\r\n");
        test::writeBytes(t[1], "new cn\r\n");
    }
};

} // namespace

TEST_F(Pair, TheTemporariesLieBesideTheFinalFiles)
{
    base::PairedReplace pair(work, {hn, cn});
    const auto t = pair.temporaries();
    ASSERT_EQ(t.size(), 2u);
    EXPECT_EQ(t[0], dir / "LOG_hn.csv.writing");
    EXPECT_EQ(t[1], dir / "LOG_cn.csv.writing");
}

TEST_F(Pair, ACommitReplacesBothAndLeavesNoNote)
{
    {
        base::PairedReplace pair(work, {hn, cn});
        writeNew(pair);
        pair.commit();
    }
    EXPECT_EQ(test::readBytes(hn), "new hn\r\n");
    EXPECT_EQ(test::readBytes(cn), "new cn\r\n");
    EXPECT_FALSE(fs::exists(work / base::PairedReplace::kNoteName));
    EXPECT_FALSE(fs::exists(base::writingNameOf(hn)));
}

TEST_F(Pair, WithoutACommitThePreviousPairStaysAndTheTemporariesGo)
{
    {
        base::PairedReplace pair(work, {hn, cn});
        writeNew(pair);
    }
    EXPECT_EQ(test::readBytes(hn), "old hn\r\n");
    EXPECT_EQ(test::readBytes(cn), "old cn\r\n");
    EXPECT_FALSE(fs::exists(base::writingNameOf(hn)));
    EXPECT_FALSE(fs::exists(base::writingNameOf(cn)));
    EXPECT_FALSE(fs::exists(work / base::PairedReplace::kNoteName));
}

TEST_F(Pair, ARunKilledWhileWritingLeavesThePreviousPairAndItsTemporariesAreRemovedAtTheNextStart)
{
    // What a killed run leaves: the note says "writing", one temporary is complete.
    test::writeBytes(work / base::PairedReplace::kNoteName,
                     "writing\n" + hn.string() + "\n" + cn.string() + "\n");
    test::writeBytes(base::writingNameOf(hn), "new hn\r\n");
    base::PairedReplace::recover(work);
    EXPECT_EQ(test::readBytes(hn), "old hn\r\n");
    EXPECT_EQ(test::readBytes(cn), "old cn\r\n");
    EXPECT_FALSE(fs::exists(base::writingNameOf(hn)));
    EXPECT_FALSE(fs::exists(work / base::PairedReplace::kNoteName));
}

TEST_F(Pair, ARunKilledBetweenTheTwoRenamesIsCompletedAtTheNextStart)
{
    test::writeBytes(work / base::PairedReplace::kNoteName,
                     "ready\n" + hn.string() + "\n" + cn.string() + "\n");
    // The first rename happened, the second did not.
    test::writeBytes(hn, "new hn\r\n");
    test::writeBytes(base::writingNameOf(cn), "new cn\r\n");
    base::PairedReplace::recover(work);
    EXPECT_EQ(test::readBytes(hn), "new hn\r\n");
    EXPECT_EQ(test::readBytes(cn), "new cn\r\n");
    EXPECT_FALSE(fs::exists(base::writingNameOf(cn)));
    EXPECT_FALSE(fs::exists(work / base::PairedReplace::kNoteName));
}

TEST_F(Pair, AStartWithoutANoteTouchesNothing)
{
    test::writeBytes(dir / "other.csv.writing", "a user's own file");
    base::PairedReplace::recover(work);
    EXPECT_EQ(test::readBytes(hn), "old hn\r\n");
    EXPECT_TRUE(fs::exists(dir / "other.csv.writing"));
}

TEST_F(Pair, ANewRunRemovesTheTemporariesALaterKilledRunLeftForTheSameFiles)
{
    test::writeBytes(base::writingNameOf(hn), "half");
    base::PairedReplace pair(work, {hn, cn});
    EXPECT_FALSE(fs::exists(base::writingNameOf(hn)));
}

TEST(FileReplace, ReplacesAFileWholeAndLeavesNoTemporary)
{
    test::TempDir dir;
    const fs::path file = dir / "Vornhale_new.ini";
    test::writeBytes(file, "[old]\r\n");
    ASSERT_TRUE(base::replaceFileWith(file, "[new]\r\nkey=value\r\n"));
    EXPECT_EQ(test::readBytes(file), "[new]\r\nkey=value\r\n");
    EXPECT_FALSE(fs::exists(base::writingNameOf(file)));
}

// A file that holds the bytes already is left as it is (the same file, not a new one in its
// place); one byte of difference, or a different length, writes it anew.
TEST(FileReplace, AFileThatHoldsTheBytesAlreadyIsLeftAsItIs)
{
    test::TempDir dir;
    const fs::path file = dir / "Vornhale_new.ini";
    const std::string bytes = "[a]\r\n" + std::string(40000, 'x') + "\r\n";
    ASSERT_TRUE(base::replaceFileWith(file, bytes));
    auto inode = [&file] {
        struct stat st
        {
        };
        return ::stat(file.c_str(), &st) == 0 ? st.st_ino : 0;
    };
    const auto first = inode();
    ASSERT_TRUE(base::replaceFileWith(file, bytes));
    EXPECT_EQ(inode(), first);
    EXPECT_EQ(test::readBytes(file), bytes);

    std::string changed = bytes;
    changed[30000] = 'y';
    ASSERT_TRUE(base::replaceFileWith(file, changed));
    EXPECT_NE(inode(), first);
    EXPECT_EQ(test::readBytes(file), changed);
    const auto second = inode();
    ASSERT_TRUE(base::replaceFileWith(file, changed + "z"));
    EXPECT_NE(inode(), second);
    EXPECT_EQ(test::readBytes(file), changed + "z");
    ASSERT_TRUE(base::replaceFileWith(file, ""));
    EXPECT_EQ(test::readBytes(file), "");
    EXPECT_FALSE(fs::exists(base::writingNameOf(file)));
}

TEST(FileReplace, AFileThatCannotBeWrittenKeepsNothingAndSaysSo)
{
    test::TempDir dir;
    EXPECT_FALSE(base::replaceFileWith(dir / "missing" / "x.ini", "x"));
    EXPECT_FALSE(fs::exists(dir / "missing"));
}

TEST(FileReplace, FilesAreFlushedTogetherAndAMissingOneSaysSo)
{
    test::TempDir dir;
    test::writeBytes(dir / "a", std::string(1 << 20, 'a'));
    test::writeBytes(dir / "b", "b");
    EXPECT_TRUE(base::syncFiles({dir / "a", dir / "b"}));
    EXPECT_TRUE(base::syncFiles({}));
    EXPECT_FALSE(base::syncFiles({dir / "a", dir / "missing", dir / "b"}));
    EXPECT_EQ(test::readBytes(dir / "a"), std::string(1 << 20, 'a'));
}

TEST(FileReplace, OnlyTheProgramsOwnTemporariesAreCleanedFromAFolder)
{
    test::TempDir dir;
    test::writeBytes(dir / "Vornhale_new.ini.writing", "half");
    test::writeBytes(dir / "zlog_1.txt.writing", "half");
    test::writeBytes(dir / "Vornhale_new.ini", "whole");
    test::writeBytes(dir / "notes.writing.txt", "the user's");
    fs::create_directories(dir / "sub");
    test::writeBytes(dir / "sub" / "deep.writing", "below");
    base::removeLeftTemporaries(dir.path());
    EXPECT_FALSE(fs::exists(dir / "Vornhale_new.ini.writing"));
    EXPECT_FALSE(fs::exists(dir / "zlog_1.txt.writing"));
    EXPECT_TRUE(fs::exists(dir / "Vornhale_new.ini"));
    EXPECT_TRUE(fs::exists(dir / "notes.writing.txt"));
    EXPECT_TRUE(fs::exists(dir / "sub" / "deep.writing"));
}
