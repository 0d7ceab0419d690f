#include "settings/CIniFile.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace vornhale;
using settings::CIniFile;
using settings::IniValue;

namespace {

const std::string kFile = "[Config]\r\n"
                          "version=5.44\r\n"
                          "\r\n"
                          "[Position_frmDate]\r\n"
                          "WindowState=0\r\n"
                          "Left=1200\r\n"
                          "Top=900\r\n"
                          "[Position_Vornhale]\r\n"
                          "Width=12000\r\n";

} // namespace

TEST(CIniFile, LoadReadsEverySectionAndLeavesIsExistFalse)
{
    test::TempDir dir;
    test::writeBytes(dir / "posi.ini", kFile);
    CIniFile ini;
    EXPECT_TRUE(ini.Load(dir / "posi.ini"));
    EXPECT_FALSE(ini.IsExist());
    EXPECT_EQ(ini.Sections(),
              (std::vector<std::string>{"Config", "Position_frmDate", "Position_Vornhale"}));
    EXPECT_EQ(ini.NowSection(), "");
    EXPECT_TRUE(ini.Keys().empty());
}

TEST(CIniFile, AMissingFileLoadsWithNoSections)
{
    test::TempDir dir;
    CIniFile ini;
    EXPECT_TRUE(ini.Load(dir / "none.ini"));
    EXPECT_TRUE(ini.Sections().empty());
    EXPECT_FALSE(ini.IsExist());
}

TEST(CIniFile, AKnownSectionBecomesCurrentWithItsKeysInStoredOrder)
{
    test::TempDir dir;
    test::writeBytes(dir / "posi.ini", kFile);
    CIniFile ini;
    ini.Load(dir / "posi.ini");
    ini.NowSection("position_FRMDATE");
    EXPECT_TRUE(ini.IsExist());
    EXPECT_EQ(ini.NowSection(), "position_FRMDATE");
    EXPECT_EQ(ini.Keys(), (std::vector<std::string>{"WindowState", "Left", "Top"}));
    EXPECT_EQ(ini.data("LEFT"), "1200");
    EXPECT_EQ(ini.data("windowstate"), "0");
}

TEST(CIniFile, AnUnknownSectionIsCreatedEmptyAndClearsIsExist)
{
    test::TempDir dir;
    test::writeBytes(dir / "posi.ini", kFile);
    CIniFile ini;
    ini.Load(dir / "posi.ini");
    ini.NowSection("Position_frmDate");
    ASSERT_TRUE(ini.IsExist());
    ini.NowSection("Position_frmMode");
    EXPECT_FALSE(ini.IsExist());
    EXPECT_TRUE(ini.Keys().empty());
    EXPECT_EQ(ini.data("Left"), "");
    EXPECT_EQ(ini.Sections().back(), "Position_frmMode");
}

TEST(CIniFile, SettingTheSameSectionNameAgainChangesNothing)
{
    test::TempDir dir;
    test::writeBytes(dir / "posi.ini", kFile);
    CIniFile ini;
    ini.Load(dir / "posi.ini");
    ini.NowSection("Position_frmMode");
    ASSERT_FALSE(ini.IsExist());
    ini.NowSection("Position_frmMode");
    EXPECT_FALSE(ini.IsExist()) << "the same name does not look the section up again";
    // A name differing in case is another name: the section is looked up and found.
    ini.NowSection("POSITION_FRMMODE");
    EXPECT_TRUE(ini.IsExist());
}

TEST(CIniFile, DataLetReplacesAnEntryAndMovesItsKeyToTheEnd)
{
    test::TempDir dir;
    test::writeBytes(dir / "posi.ini", kFile);
    CIniFile ini;
    ini.Load(dir / "posi.ini");
    ini.NowSection("Position_frmDate");
    ini.data("LEFT", "300");
    EXPECT_EQ(ini.Keys(), (std::vector<std::string>{"WindowState", "Top", "LEFT"}));
    EXPECT_EQ(ini.data("left"), "300");
}

TEST(CIniFile, DeleteDataOfAMissingKeyIsNoError)
{
    test::TempDir dir;
    test::writeBytes(dir / "posi.ini", kFile);
    CIniFile ini;
    ini.Load(dir / "posi.ini");
    ini.NowSection("Position_frmDate");
    ini.DeleteData("Height");
    ini.DeleteData("top");
    EXPECT_EQ(ini.Keys(), (std::vector<std::string>{"WindowState", "Left"}));
    EXPECT_EQ(ini.data("Top"), "");
}

TEST(CIniFile, ClearEmptiesTheCurrentSectionOnly)
{
    test::TempDir dir;
    test::writeBytes(dir / "posi.ini", kFile);
    CIniFile ini;
    ini.Load(dir / "posi.ini");
    ini.NowSection("Position_frmDate");
    ini.Clear();
    EXPECT_TRUE(ini.Keys().empty());
    EXPECT_EQ(ini.data("Left"), "");
    ini.NowSection("Position_Vornhale");
    EXPECT_EQ(ini.data("Width"), "12000");
}

TEST(CIniFile, ALaterEntryOfTheSameKeyReplacesTheEarlierOneOnLoad)
{
    test::TempDir dir;
    test::writeBytes(dir / "a.ini", "[S]\r\nLeft=1\r\nTop=2\r\nleft=3\r\nnot an entry\r\n\r\n");
    CIniFile ini;
    ini.Load(dir / "a.ini");
    ini.NowSection("S");
    EXPECT_EQ(ini.data("Left"), "3");
    EXPECT_EQ(ini.Keys(), (std::vector<std::string>{"Top", "left"}));
}

TEST(CIniFile, AValueIsSplitAtTheFirstEqualsSignAndNotCut)
{
    test::TempDir dir;
    const std::string longValue(200, 'x');
    test::writeBytes(dir / "a.ini", "[S]\r\nk=a=b\r\nlong=" + longValue + "\r\n");
    CIniFile ini;
    ini.Load(dir / "a.ini");
    ini.NowSection("S");
    EXPECT_EQ(ini.data("k"), "a=b");
    EXPECT_EQ(ini.data("long"), longValue);
}

TEST(CIniFile, SaveOfOneSectionReplacesItsContentInTheFile)
{
    test::TempDir dir;
    test::writeBytes(dir / "posi.ini", kFile);
    CIniFile ini;
    ini.Load(dir / "posi.ini");
    ini.NowSection("Position_frmDate");
    ini.DeleteData("WindowState");
    ini.data("Left", "15");
    // Another program's change of a different section survives the save.
    test::writeBytes(dir / "posi.ini", kFile + "[Other]\r\nx=1\r\n");
    EXPECT_TRUE(ini.Save("Position_frmDate"));
    EXPECT_TRUE(ini.IsExist());
    EXPECT_EQ(test::readBytes(dir / "posi.ini"), "[Config]\r\n"
                                                 "version=5.44\r\n"
                                                 "\r\n"
                                                 "[Position_frmDate]\r\n"
                                                 "Top=900\r\n"
                                                 "Left=15\r\n"
                                                 "[Position_Vornhale]\r\n"
                                                 "Width=12000\r\n"
                                                 "[Other]\r\n"
                                                 "x=1\r\n");
}

TEST(CIniFile, SaveMakesTheSectionCurrentAndANewSectionGoesToTheEnd)
{
    test::TempDir dir;
    test::writeBytes(dir / "posi.ini", kFile);
    CIniFile ini;
    ini.Load(dir / "posi.ini");
    ini.NowSection("Position_frmMode");
    ini.data("WindowState", "2");
    ini.NowSection("Position_frmDate");
    ASSERT_TRUE(ini.Save("Position_frmMode"));
    EXPECT_EQ(ini.NowSection(), "Position_frmMode");
    EXPECT_EQ(ini.Keys(), (std::vector<std::string>{"WindowState"}));
    EXPECT_EQ(test::readBytes(dir / "posi.ini"), kFile + "[Position_frmMode]\r\nWindowState=2\r\n");
}

TEST(CIniFile, SaveWithoutASectionWritesEverySectionInOrder)
{
    test::TempDir dir;
    CIniFile ini;
    ini.Load(dir / "new.ini");
    ini.NowSection("B");
    ini.data("k", "値");
    ini.NowSection("A");
    ini.data("x", "1");
    ASSERT_TRUE(ini.Save());
    EXPECT_EQ(ini.NowSection(), "A");
    // Shift-JIS on disk: 値 is 0x926C.
    EXPECT_EQ(test::readBytes(dir / "new.ini"), "[B]\r\nk=\x92\x6C\r\n[A]\r\nx=1\r\n");
}

TEST(CIniFile, ASaveThatCannotWriteFailsAndLeavesIsExist)
{
    test::TempDir dir;
    CIniFile ini;
    ini.Load(dir / "no_such_folder" / "posi.ini");
    ini.NowSection("A");
    ini.data("x", "1");
    EXPECT_FALSE(ini.Save("A"));
    // A section new to the object clears the flag, and only a write would set it.
    EXPECT_FALSE(ini.Save("B"));
    EXPECT_FALSE(ini.IsExist());
    EXPECT_FALSE(ini.Save());
    EXPECT_FALSE(std::filesystem::exists(dir / "no_such_folder"));
}

TEST(CIniFile, LongAndSingleConversionsNarrowTo16Bits)
{
    struct Case
    {
        const char* text;
        bool isInt, isLng, isSng;
    };
    const Case cases[] = {
        {"0", true, true, true},
        {"32767", true, true, true},
        {"32768", false, false, false},
        {"-32768", true, true, true},
        {"-32769", false, false, false},
        {"100000", false, false, false},
        {" 1200 ", true, true, true},
        {"+15", true, true, true},
        {"12.5", true, true, true},
        {"32767.5", false, false, false}, // rounds half to even: 32768
        {"-32768.5", true, true, true},   // rounds half to even: -32768
        {"1E3", true, true, true},
        {"1e5", false, false, false},
        {"", false, false, false},
        {"abc", false, false, false},
        {"12abc", false, false, false},
        {".", false, false, false},
        {"-", false, false, false},
        {"1E", false, false, false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(CIniFile::IsInt(c.text), c.isInt) << c.text;
        EXPECT_EQ(CIniFile::IsLng(c.text), c.isLng) << c.text;
        EXPECT_EQ(CIniFile::IsSng(c.text), c.isSng) << c.text;
    }
}

TEST(CIniFile, BooleansAreTrueFalseOrAnyNumber)
{
    EXPECT_TRUE(CIniFile::IsBool("True"));
    EXPECT_TRUE(CIniFile::IsBool("false"));
    EXPECT_TRUE(CIniFile::IsBool("0"));
    EXPECT_TRUE(CIniFile::IsBool("100000"));
    EXPECT_FALSE(CIniFile::IsBool(""));
    EXPECT_FALSE(CIniFile::IsBool("yes"));
}

TEST(CIniFile, InitDataGivesTheValueOfItsKindOrTheDefault)
{
    test::TempDir dir;
    test::writeBytes(dir / "a.ini", "[S]\r\n"
                                    "text=abc\r\n"
                                    "blank= \r\n"
                                    "num=1201.5\r\n"
                                    "big=40000\r\n"
                                    "sng=2.5\r\n"
                                    "yes=True\r\n"
                                    "one=-1\r\n"
                                    "zero=0\r\n");
    CIniFile ini;
    ini.Load(dir / "a.ini");
    ini.NowSection("S");
    const IniValue def = std::string("dflt");

    EXPECT_EQ(ini.InitData("text", 0, def), IniValue(std::string("abc")));
    EXPECT_EQ(ini.InitData("blank", 0, def), def);
    EXPECT_EQ(ini.InitData("missing", 0, def), def);

    EXPECT_EQ(ini.InitData("num", 1, def), IniValue(std::int32_t{1202}));
    EXPECT_EQ(ini.InitData("big", 1, def), def) << "above 32767 fails the 16-bit test";
    EXPECT_EQ(ini.InitData("text", 1, def), def);

    EXPECT_EQ(ini.InitData("sng", 2, def), IniValue(2.5f));
    EXPECT_EQ(ini.InitData("big", 2, def), def);

    EXPECT_EQ(ini.InitData("yes", 3, def), IniValue(true));
    EXPECT_EQ(ini.InitData("one", 3, def), IniValue(true));
    EXPECT_EQ(ini.InitData("zero", 3, def), IniValue(false));
    EXPECT_EQ(ini.InitData("text", 3, def), def);

    EXPECT_EQ(ini.InitData("num", 7, def), IniValue(std::string("1201.5")));
    EXPECT_EQ(ini.InitData("missing", 7, def), IniValue(std::string()));
}
