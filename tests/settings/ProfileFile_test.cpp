#include "settings/ProfileFile.h"
#include "support/TestSupport.h"
#include "text/SjisCodec.h"

#include <gtest/gtest.h>

using namespace vornhale;
using settings::ProfileFile;

TEST(ProfileFile, AMissingFileReadsAsEmptyKeys)
{
    test::TempDir dir;
    ProfileFile f(dir / "none.ini");
    EXPECT_EQ(f.read("Vornhale.ini", "Check06"), "");
    EXPECT_TRUE(f.lines().empty());
}

TEST(ProfileFile, SectionsAndKeysCompareWithoutRegardToCase)
{
    test::TempDir dir;
    ProfileFile f(dir / "a.ini");
    f.write("Vornhale_new.ini", "No_qsl_cty", "VK9");
    EXPECT_EQ(f.read("vornhale_NEW.ini", "no_qsl_cty"), "VK9");
}

TEST(ProfileFile, KeysKeepThePlaceOfTheirFirstWritingAndNewOnesFollowTheirSection)
{
    test::TempDir dir;
    test::writeBytes(dir / "a.ini", "; my note\r\n[One]\r\nb=1\r\n\r\n[Two]\r\nz=9\r\n");
    ProfileFile f(dir / "a.ini");
    f.write("one", "B", "2");
    f.write("One", "c", "3");
    f.write("Three", "x", "4");
    ASSERT_TRUE(f.save());
    EXPECT_EQ(test::readBytes(dir / "a.ini"),
              "; my note\r\n[One]\r\nB=2\r\nc=3\r\n\r\n[Two]\r\nz=9\r\n[Three]\r\nx=4\r\n");
}

TEST(ProfileFile, AValueIsCutAt127BytesOnRead)
{
    test::TempDir dir;
    ProfileFile f(dir / "a.ini");
    const std::string layout = std::string(120, 'M') + ",州名,Zone";
    f.write("S", "Rmks1_cfg", layout);
    EXPECT_EQ(f.read("S", "Rmks1_cfg"), std::string(120, 'M') + ",州名,Z");
    f.write("S", "k", std::string(200, 'x'));
    EXPECT_EQ(f.read("S", "k").size(), 127u);
}

TEST(ProfileFile, ValuesAreTrimmedAndLoseEnclosingQuotes)
{
    test::TempDir dir;
    test::writeBytes(dir / "a.ini", "[S]\r\n  key  =  some value  \r\nq=\"quoted \"\r\n");
    ProfileFile f(dir / "a.ini");
    EXPECT_EQ(f.read("S", "KEY"), "some value");
    EXPECT_EQ(f.read("S", "q"), "quoted ");
}

TEST(ProfileFile, ShiftJisValuesSurviveAWriteAndARead)
{
    test::TempDir dir;
    {
        ProfileFile f(dir / "a.ini");
        f.write("Vornhale_cfg.ini", "log_dir", "使用しない");
        ASSERT_TRUE(f.save());
    }
    EXPECT_EQ(test::readBytes(dir / "a.ini").find("\x8E\x67\x97\x70"), 28u);
    EXPECT_EQ(ProfileFile(dir / "a.ini").read("Vornhale_cfg.ini", "log_dir"), "使用しない");
}

TEST(ProfileFile, WholeSectionsAreReplaced)
{
    test::TempDir dir;
    ProfileFile f(dir / "posi.ini");
    f.write("Config", "version", "5.44");
    f.write("Position_frmMain", "Top", "100");
    f.writeSection("position_frmmain", {{"Left", "200"}, {"Top", "300"}});
    EXPECT_EQ(f.entries("Position_frmMain"),
              (std::vector<std::pair<std::string, std::string>>{{"Left", "200"}, {"Top", "300"}}));
    EXPECT_EQ(f.sectionNames(), (std::vector<std::string>{"Config", "Position_frmMain"}));
}

TEST(ProfileFile, GarbageNeverStopsAReadOrAWrite)
{
    test::TempDir dir;
    test::writeBytes(dir / "g.ini", std::string("\x00\xff[\r\n=\r\n[[]]\r\n\x81", 14));
    ProfileFile f(dir / "g.ini");
    EXPECT_EQ(f.read("x", "y"), "");
    f.write("x", "y", "1");
    EXPECT_EQ(f.read("x", "y"), "1");
    EXPECT_TRUE(f.save());
}

TEST(ProfileFile, AFolderThatCannotBeWrittenReportsFalse)
{
    test::TempDir dir;
    ProfileFile f(dir / "missing" / "a.ini");
    f.write("S", "k", "v");
    EXPECT_FALSE(f.save());
}

TEST(ProfileFile, ACutThroughADoubleByteCharacterKeepsItsFirstByte)
{
    test::TempDir dir;
    ProfileFile f(dir / "a.ini");
    f.write("S", "k", std::string(126, 'M') + "州");
    const std::string value = f.read("S", "k");
    EXPECT_EQ(text::encodeSjis(value), std::string(126, 'M') + "\x8F");
}

TEST(ProfileFile, OnlyTheFirstSectionOfANameAndTheFirstLineOfAKeyCount)
{
    test::TempDir dir;
    test::writeBytes(dir / "a.ini", "[One]\r\nk=first\r\nK=second\r\n[two]\r\nk=2\r\n[ONE ]\r\nk=third\r\n");
    ProfileFile f(dir / "a.ini");
    EXPECT_EQ(f.read(" one", "k"), "first");
    f.write("one", "k", "changed");
    f.write("One", "new", "1");
    ASSERT_TRUE(f.save());
    EXPECT_EQ(test::readBytes(dir / "a.ini"),
              "[One]\r\nk=changed\r\nK=second\r\nnew=1\r\n[two]\r\nk=2\r\n[ONE ]\r\nk=third\r\n");
    const auto entries = f.entries("ONE");
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[2].first, "new");
}

TEST(ProfileFile, ANewKeyFollowsTheLastFilledLineAndLaterWritesFindEveryLineMoved)
{
    test::TempDir dir;
    test::writeBytes(dir / "a.ini", "[A]\r\n\r\n[B]\r\nb=1\r\n\r\n\r\n[C]\r\nc=1\r\n");
    ProfileFile f(dir / "a.ini");
    f.write("A", "a", "1");  // behind the header: the section has no filled line
    f.write("B", "b2", "2"); // behind b=1, before the blank lines
    f.write("C", "c", "3");  // every line of C moved down by two
    f.write("B", "b", "4");
    EXPECT_EQ(f.read("C", "c"), "3");
    EXPECT_EQ(f.read("b", "B2"), "2");
    ASSERT_TRUE(f.save());
    EXPECT_EQ(test::readBytes(dir / "a.ini"),
              "[A]\r\na=1\r\n\r\n[B]\r\nb=4\r\nb2=2\r\n\r\n\r\n[C]\r\nc=3\r\n");
}

TEST(ProfileFile, AKeyWrittenWithAnEqualsSignReadsBackAsTheKeyBeforeIt)
{
    test::TempDir dir;
    ProfileFile f(dir / "a.ini");
    f.write("S", "k", "1");
    f.write("S", "k", "x=2"); // the value holds "=": the key stays "k"
    EXPECT_EQ(f.read("S", "k"), "x=2");
    f.write("S", "k=z", "3"); // no line has the key "k=z": a new line, which reads as "k"
    EXPECT_EQ(f.read("S", "k"), "x=2");
    EXPECT_EQ(f.lines().back(), "k=z=3");
    f.write("S", "k", "4");
    EXPECT_EQ(f.lines()[1], "k=4");
}
