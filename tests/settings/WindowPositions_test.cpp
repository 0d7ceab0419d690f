#include "settings/WindowPositions.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace vornhale;
using settings::PositionFileUpkeep;
using settings::WindowPlacement;

namespace {

const WindowPlacement kDesign{0, 100, 200, 9000, 7000};

std::string sectionText(const std::string& form, const std::string& state, long left, long top,
                        long width, long height)
{
    return "[Position_" + form + "]\r\nWindowState=" + state + "\r\nLeft=" + std::to_string(left) +
           "\r\nTop=" + std::to_string(top) + "\r\nWidth=" + std::to_string(width) +
           "\r\nHeight=" + std::to_string(height) + "\r\n";
}

WindowPlacement restoreFrom(const std::string& sectionBody)
{
    test::TempDir dir;
    test::writeBytes(dir / "Vornhale_posi.ini", "[Position_frmDate]\r\n" + sectionBody);
    return settings::restorePosition(dir / "Vornhale_posi.ini", "frmDate", kDesign);
}

} // namespace

TEST(WindowPositions, EveryWindowHasItsSection)
{
    EXPECT_EQ(settings::kPositionForms.size(), 17u);
    EXPECT_EQ(settings::positionSection("Vornhale"), "Position_Vornhale");
    EXPECT_EQ(settings::positionSection("frmMode"), "Position_frmMode");
}

TEST(WindowPositions, AFreshFileIsConfigVersionAndAnEmptyLine)
{
    test::TempDir dir;
    settings::writeFreshPositionFile(dir / "Vornhale_posi.ini", "5.44");
    EXPECT_EQ(test::readBytes(dir / "Vornhale_posi.ini"), "[Config]\r\nversion=5.44\r\n\r\n");
}

TEST(WindowPositions, SaveWritesTheKeysInOrderBehindTheFreshFile)
{
    test::TempDir dir;
    const auto file = dir / "Vornhale_posi.ini";
    settings::writeFreshPositionFile(file, "5.44");
    ASSERT_TRUE(settings::savePosition(file, "frmDate", {0, 1200, 900, 5000, 4000}));
    EXPECT_EQ(test::readBytes(file), "[Config]\r\nversion=5.44\r\n\r\n" +
                                         sectionText("frmDate", "0", 1200, 900, 5000, 4000));
}

TEST(WindowPositions, AnEmptyFileGetsASectionPerWindowAtEachFirstClose)
{
    test::TempDir dir;
    const auto file = dir / "Vornhale_posi.ini";
    test::writeBytes(file, "");
    std::string expected;
    long n = 0;
    for (const std::string_view form : settings::kPositionForms) {
        ++n;
        ASSERT_TRUE(settings::savePosition(file, form, {0, n, n * 2, n * 100, n * 50}));
        expected += sectionText(std::string(form), "0", n, n * 2, n * 100, n * 50);
    }
    EXPECT_EQ(test::readBytes(file), expected);
    // A second close replaces the section in place.
    ASSERT_TRUE(settings::savePosition(file, "frmDate", {2, 1, 2, 3, 4}));
    const std::string before = sectionText("frmDate", "0", 3, 6, 300, 150);
    const std::string after = sectionText("frmDate", "2", 1, 2, 3, 4);
    expected.replace(expected.find(before), before.size(), after);
    EXPECT_EQ(test::readBytes(file), expected);
}

TEST(WindowPositions, AMinimisedWindowIsStoredAsNormal)
{
    test::TempDir dir;
    const auto file = dir / "Vornhale_posi.ini";
    ASSERT_TRUE(settings::savePosition(file, "Vornhale", {1, 10, 20, 30, 40}));
    EXPECT_EQ(test::readBytes(file), sectionText("Vornhale", "0", 10, 20, 30, 40));
}

TEST(WindowPositions, AMaximisedWindowKeepsItsNormalRectangle)
{
    test::TempDir dir;
    const auto file = dir / "Vornhale_posi.ini";
    const WindowPlacement maximised{2, 300, 400, 11000, 9000};
    ASSERT_TRUE(settings::savePosition(file, "Vornhale", maximised));
    EXPECT_EQ(settings::restorePosition(file, "Vornhale", kDesign), maximised);
}

TEST(WindowPositions, OtherKeysOfTheSectionStayBeforeThePositionKeys)
{
    test::TempDir dir;
    const auto file = dir / "Vornhale_posi.ini";
    test::writeBytes(file, "[position_frmdate]\r\nHeight=1\r\nNote=x\r\nleft=5\r\n[Config]\r\n"
                           "version=5.44\r\n");
    ASSERT_TRUE(settings::savePosition(file, "frmDate", {0, 1, 2, 3, 4}));
    EXPECT_EQ(test::readBytes(file),
              "[position_frmdate]\r\nNote=x\r\nWindowState=0\r\nLeft=1\r\n"
              "Top=2\r\nWidth=3\r\nHeight=4\r\n[Config]\r\nversion=5.44\r\n");
}

TEST(WindowPositions, RestoreTakesEveryValueThatPassesItsTest)
{
    EXPECT_EQ(restoreFrom("WindowState=2\r\nLeft=1\r\nTop=2\r\nWidth=3000\r\nHeight=4000\r\n"),
              (WindowPlacement{2, 1, 2, 3000, 4000}));
    EXPECT_EQ(restoreFrom("WindowState=1\r\n").state, 1);
}

TEST(WindowPositions, AMissingSectionOrKeyLeavesTheDesignValue)
{
    test::TempDir dir;
    EXPECT_EQ(settings::restorePosition(dir / "none.ini", "frmMode", kDesign), kDesign);
    EXPECT_EQ(restoreFrom("Top=5\r\n"), (WindowPlacement{0, 100, 5, 9000, 7000}));
}

TEST(WindowPositions, WindowStateCountsOnlyAsOneCharacterZeroOneOrTwo)
{
    WindowPlacement design = kDesign;
    design.state = 2;
    for (const char* stored : {"3", "01", "", "x", "-1", "2.0"}) {
        test::TempDir dir;
        test::writeBytes(dir / "p.ini",
                         std::string("[Position_frmDate]\r\nWindowState=") + stored + "\r\n");
        EXPECT_EQ(settings::restorePosition(dir / "p.ini", "frmDate", design).state, 2) << stored;
    }
}

TEST(WindowPositions, ANonNumericLeftLeavesTheDesignPosition)
{
    const WindowPlacement p = restoreFrom("Left=abc\r\nTop=7\r\n");
    EXPECT_EQ(p.left, kDesign.left);
    EXPECT_EQ(p.top, 7);
}

TEST(WindowPositions, AValueAbove32767LeavesTheDesignValue)
{
    const WindowPlacement p =
        restoreFrom("Left=-32768\r\nTop=32767\r\nWidth=32768\r\nHeight=57600\r\n");
    EXPECT_EQ(p.left, -32768);
    EXPECT_EQ(p.top, 32767);
    EXPECT_EQ(p.width, kDesign.width);
    EXPECT_EQ(p.height, kDesign.height);
    EXPECT_EQ(restoreFrom("Left=-32769\r\n").left, kDesign.left);
}

TEST(WindowPositions, ResizableWindowsKeepTheirMinimumSize)
{
    struct Case
    {
        const char* form;
        long width, height;
    };
    const Case bounds[] = {
        {"Vornhale", 10770, 8745},
        {"frmDisp", 11865, 8145},
        {"frmCheck_bak_qso_mas", 5985, 2325},
    };
    for (const Case& c : bounds) {
        const WindowPlacement small{0, 5, 6, 100, 100};
        EXPECT_EQ(settings::enforceMinimumSize(c.form, small),
                  (WindowPlacement{0, 5, 6, c.width, c.height}))
            << c.form;
        const WindowPlacement large{0, 5, 6, c.width + 1, c.height};
        EXPECT_EQ(settings::enforceMinimumSize(c.form, large), large) << c.form;
    }
    for (const char* form : {"frmDisp2", "frmDisp3", "frmDisp4"}) {
        EXPECT_EQ(settings::enforceMinimumSize(form, {0, 0, 0, 100, 100}),
                  (WindowPlacement{0, 0, 0, 100, 8145}))
            << form;
    }
    EXPECT_EQ(settings::enforceMinimumSize("frmMode", {0, 0, 0, 100, 100}),
              (WindowPlacement{0, 0, 0, 100, 100}));
}

TEST(WindowPositions, UpkeepCreatesAMissingFile)
{
    for (const char* version : {"5.44", "5.20", ""}) {
        test::TempDir dir;
        const auto file = dir / "Vornhale_posi.ini";
        EXPECT_EQ(settings::maintainPositionFile(file, version, "5.44"),
                  PositionFileUpkeep::Created);
        EXPECT_EQ(test::readBytes(file), "[Config]\r\nversion=5.44\r\n\r\n");
    }
}

TEST(WindowPositions, UpkeepByTheVersionThatWroteTheSettings)
{
    struct Case
    {
        const char* version;
        PositionFileUpkeep result;
    };
    const Case cases[] = {
        {"5.26", PositionFileUpkeep::DeletedAndCreated},
        {"", PositionFileUpkeep::DeletedAndCreated},
        {"5.27", PositionFileUpkeep::Recreated},
        {"5.29", PositionFileUpkeep::Recreated},
        {"5.29t", PositionFileUpkeep::Recreated},
        {"5.30", PositionFileUpkeep::Kept},
        {"5.44", PositionFileUpkeep::Kept},
        {"5.44k", PositionFileUpkeep::Kept},
        {"5.35b", PositionFileUpkeep::Kept},
        // The first test takes the leading number as it stands, the second without "t"/"k".
        {"t5.44", PositionFileUpkeep::DeletedAndCreated},
    };
    const std::string stored =
        "[Config]\r\nversion=5.20\r\n\r\n" + sectionText("frmDate", "0", 1, 2, 3, 4);
    for (const Case& c : cases) {
        test::TempDir dir;
        const auto file = dir / "Vornhale_posi.ini";
        test::writeBytes(file, stored);
        EXPECT_EQ(settings::maintainPositionFile(file, c.version, "5.44"), c.result) << c.version;
        EXPECT_EQ(test::readBytes(file), c.result == PositionFileUpkeep::Kept
                                             ? stored
                                             : std::string("[Config]\r\nversion=5.44\r\n\r\n"))
            << c.version;
    }
}

TEST(WindowPositions, TheSecondUpkeepTestIgnoresTAndK)
{
    // "5.2k9" reads 5.2 as it stands, below 5.27: deleted at the first test.
    test::TempDir dir;
    const auto file = dir / "Vornhale_posi.ini";
    test::writeBytes(file, "[Config]\r\nversion=5.30\r\n");
    EXPECT_EQ(settings::maintainPositionFile(file, "5.3t", "5.44"), PositionFileUpkeep::Kept);
    EXPECT_EQ(settings::maintainPositionFile(file, "5.2k9", "5.44"),
              PositionFileUpkeep::DeletedAndCreated);
    EXPECT_EQ(settings::maintainPositionFile(file, "5.28tk", "5.44"),
              PositionFileUpkeep::Recreated);
}
