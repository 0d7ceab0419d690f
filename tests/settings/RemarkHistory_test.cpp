#include "failure/Failure.h"
#include "settings/Options.h"
#include "settings/RemarkHistory.h"
#include "settings/RmksSelModel.h"
#include "support/RecordingFrontEnd.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace vornhale;
using settings::RemarkHistory;
using settings::RmksSelModel;
using Lines = std::vector<std::string>;

namespace {

const std::string kHeader1 = "Vornhale.rmk1  for Vornhale.exe  ver 5.44";
const std::string kHeader2 = "Vornhale.rmk2  for Vornhale.exe  ver 5.44";

std::string crlf(const Lines& lines)
{
    std::string bytes;
    for (const auto& l : lines) {
        bytes += l + "\r\n";
    }
    return bytes;
}

} // namespace

TEST(RemarkHistory, HeadersNameTheFileAndTheVersion)
{
    EXPECT_EQ(RemarkHistory::header(1), kHeader1);
    EXPECT_EQ(RemarkHistory::header(2), kHeader2);
    EXPECT_EQ(RemarkHistory::header(2, "5.10"), "Vornhale.rmk2  for Vornhale.exe  ver 5.10");
}

TEST(RemarkHistory, ReadingSkipsTheHeaderAndAMissingFileIsEmpty)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "Vornhale.rmk1", {"anything at all", "QSL via Bureau", "テスト"});
    EXPECT_EQ(RemarkHistory::read(dir / "Vornhale.rmk1"), (Lines{"QSL via Bureau", "テスト"}));
    EXPECT_TRUE(RemarkHistory::read(dir / "absent").empty());
}

TEST(RemarkHistory, DupeChkSortsDescendingAndCollapsesEqualNeighbours)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "Vornhale.rmk1",
                         {"old header", "B", "  A  ", "テスト", "B", "", "   ", "C", "A"});
    RemarkHistory::dupe_chk(dir / "Vornhale.rmk1");
    // Header renewed, text trimmed, blanks dropped, each comment once, in descending order.
    EXPECT_EQ(test::readBytes(dir / "Vornhale.rmk1"),
              kHeader1 + "\r\n\x83\x65\x83\x58\x83\x67\r\nC\r\nB\r\nA\r\n");
    // The scratch file holds the sorted, non-blank entries before the collapse.
    EXPECT_EQ(test::readBytes(dir / "rmk_01.txt"),
              crlf({"\x83\x65\x83\x58\x83\x67", "C", "B", "B", "A", "A"}));
}

TEST(RemarkHistory, DupeChkOfAnEmptyHistoryLeavesTheHeader)
{
    test::TempDir dir;
    test::writeBytes(dir / "Vornhale.rmk2", "");
    RemarkHistory::dupe_chk(dir / "Vornhale.rmk2");
    EXPECT_EQ(test::readBytes(dir / "Vornhale.rmk2"), kHeader2 + "\r\n");
}

TEST(RemarkHistory, DupeChkTakesTwoHundredComments)
{
    test::TempDir dir;
    Lines lines = {kHeader1};
    for (int i = 0; i < 200; ++i) {
        lines.push_back("c" + std::to_string(1000 + i));
    }
    test::writeSjisLines(dir / "Vornhale.rmk1", lines);
    RemarkHistory::dupe_chk(dir / "Vornhale.rmk1");
    const auto after = test::readSjisLines(dir / "Vornhale.rmk1");
    ASSERT_EQ(after.size(), 201u);
    EXPECT_EQ(after[1], "c1199");
    EXPECT_EQ(after[200], "c1000");
}

TEST(RemarkHistory, TheTwoHundredAndFirstCommentStopsDupeChkBeforeTheFileIsRewritten)
{
    test::TempDir dir;
    Lines lines = {kHeader1};
    for (int i = 0; i < 201; ++i) {
        lines.push_back("same");
    }
    test::writeSjisLines(dir / "Vornhale.rmk1", lines);
    const std::string before = test::readBytes(dir / "Vornhale.rmk1");
    try {
        RemarkHistory::dupe_chk(dir / "Vornhale.rmk1");
        FAIL() << "no failure";
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), failure::SubscriptOutOfRange);
    }
    EXPECT_EQ(test::readBytes(dir / "Vornhale.rmk1"), before);
    EXPECT_FALSE(std::filesystem::exists(dir / "rmk_01.txt"));
}

TEST(RemarkHistory, SaveRmks2AppendsEachCommentAndTidiesItsHistory)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "Vornhale.rmk1", {kHeader1, "TNX QSO", "ALL JA"});
    test::writeSjisLines(dir / "Vornhale.rmk2", {kHeader2, "PSE QSL"});
    test::RecordingDialogs dialogs;
    RemarkHistory::save_rmks2(dir.path(), "CQ WW", "PSE QSL", false, dialogs);
    EXPECT_TRUE(dialogs.shown.empty());
    EXPECT_EQ(test::readBytes(dir / "Vornhale.rmk1"),
              crlf({kHeader1, "TNX QSO", "CQ WW", "ALL JA"}));
    EXPECT_EQ(test::readBytes(dir / "Vornhale.rmk2"), crlf({kHeader2, "PSE QSL"}));
}

TEST(RemarkHistory, SaveRmks2SkipsAnEmptyCommentButNotABlankOne)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "Vornhale.rmk1", {"x", "B"});
    test::writeSjisLines(dir / "Vornhale.rmk2", {"y", "B"});
    test::RecordingDialogs dialogs;
    RemarkHistory::save_rmks2(dir.path(), "", " ", false, dialogs);
    // An empty comment: the file is not even tidied.
    EXPECT_EQ(test::readBytes(dir / "Vornhale.rmk1"), crlf({"x", "B"}));
    // A blank one is appended, and the tidy drops it again.
    EXPECT_EQ(test::readBytes(dir / "Vornhale.rmk2"), crlf({kHeader2, "B"}));
}

TEST(RemarkHistory, SaveRmks2DoesNothingWhenSavingIsOff)
{
    test::TempDir dir;
    test::RecordingDialogs dialogs;
    RemarkHistory::save_rmks2(dir.path(), "CQ", "CQ", true, dialogs);
    EXPECT_TRUE(dialogs.shown.empty());
    EXPECT_FALSE(std::filesystem::exists(dir / "Vornhale.rmk1"));
}

TEST(RemarkHistory, AMissingHistoryIsReportedAndEndsTheProgram)
{
    for (int missing = 1; missing <= 2; ++missing) {
        test::TempDir dir;
        const std::string present = missing == 1 ? "Vornhale.rmk2" : "Vornhale.rmk1";
        test::writeSjisLines(dir / present, {"h", "keep"});
        test::RecordingDialogs dialogs;
        try {
            RemarkHistory::save_rmks2(dir.path(), "A", "B", false, dialogs);
            FAIL() << "no failure";
        } catch (const failure::Failure& f) {
            EXPECT_EQ(f.number(), failure::FileNotFound);
        }
        ASSERT_EQ(dialogs.shown.size(), 1u);
        EXPECT_EQ(dialogs.shown[0].text, "Vornhale.rmk" + std::to_string(missing) +
                                             " がありません\n" + dir.path().string() +
                                             " にコピーして下さい！");
        // Nothing was appended to the history that is there.
        EXPECT_EQ(test::readBytes(dir / present), crlf({"h", "keep"}));
    }
}

TEST(RemarkHistory, SaveRmksRewritesBothFilesInFull)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "Vornhale.rmk1", {"old", "gone"});
    RemarkHistory::save_rmks(dir.path(), {"Z", "A", "Z"}, {});
    EXPECT_EQ(test::readBytes(dir / "Vornhale.rmk1"), crlf({kHeader1, "Z", "A", "Z"}));
    EXPECT_EQ(test::readBytes(dir / "Vornhale.rmk2"), crlf({kHeader2}));
}

TEST(RemarkHistory, BundledHistoriesAreAlreadyTidy)
{
    for (int column = 1; column <= 2; ++column) {
        test::TempDir dir;
        const auto name = RemarkHistory::fileName(column);
        std::filesystem::copy_file(test::sourceDir() / "data/seed" / name, dir / name);
        const std::string seed = test::readBytes(dir / name);
        EXPECT_EQ(test::readSjisLines(dir / name).at(0), RemarkHistory::header(column));
        EXPECT_GE(RemarkHistory::read(dir / name).size(), 3u);
        RemarkHistory::dupe_chk(dir / name);
        EXPECT_EQ(test::readBytes(dir / name), seed) << name;
    }
}

// --- frmRmks_sel ---------------------------------------------------------------------------

namespace {

struct RmksSel : ::testing::Test
{
    void SetUp() override
    {
        test::writeSjisLines(dir / "Vornhale.rmk1", {kHeader1, "TNX QSO", "CQ"});
        test::writeSjisLines(dir / "Vornhale.rmk2", {kHeader2, "PSE QSL"});
        options.set("txtRmks1", "before1");
        options.set("txtRmks2", "before2");
        model.Form_Load();
    }
    test::TempDir dir;
    settings::Options options;
    RmksSelModel model{dir.path(), options};
};

} // namespace

TEST_F(RmksSel, LoadFillsTheListsShowsGuidanceAndMarksTheDialogOpen)
{
    EXPECT_EQ(model.list(1), (Lines{"TNX QSO", "CQ"}));
    EXPECT_EQ(model.list(2), (Lines{"PSE QSL"}));
    EXPECT_EQ(model.guidance(),
              (Lines{"リスト項目は全てを削除しないで下さい。", "リストから項目を選択して下さい｡"}));
    EXPECT_TRUE(std::filesystem::exists(dir / "Vornhale.001"));
    EXPECT_TRUE(model.open());
}

TEST_F(RmksSel, AClickCopiesTheLineIntoTheTextBoxHighlighted)
{
    model.clickList(1, 1);
    EXPECT_EQ(model.txtRmks(1), "CQ");
    EXPECT_TRUE(model.highlighted(1));
    EXPECT_EQ(model.selected(1), 1u);
    model.clickList(1, 5);
    EXPECT_EQ(model.selected(1), 1u);
}

TEST_F(RmksSel, CopyingBetweenTheColumnsDeselectsTheTargetAndAddsTheText)
{
    model.clickList(2, 0);
    model.clickList(1, 0);
    model.cmd1to2();
    EXPECT_EQ(model.list(2), (Lines{"PSE QSL", "TNX QSO"}));
    EXPECT_FALSE(model.selected(2).has_value());

    model.cmd2to1();
    EXPECT_EQ(model.list(1), (Lines{"TNX QSO", "CQ", "PSE QSL"}));
    EXPECT_FALSE(model.selected(1).has_value());

    // An empty text copies nothing.
    model.cmdCan(1);
    model.cmd1to2();
    EXPECT_EQ(model.list(2).size(), 2u);
}

TEST_F(RmksSel, InsertAddsOnlyWithoutASelectionAndWithText)
{
    model.setTxtRmks(1, "New one");
    model.cmdIns(1);
    EXPECT_EQ(model.list(1).back(), "New one");
    model.clickList(1, 0);
    model.setTxtRmks(1, "Not added");
    model.cmdIns(1);
    EXPECT_EQ(model.list(1).size(), 3u);
    model.cmdCan(2);
    model.cmdIns(2);
    EXPECT_EQ(model.list(2).size(), 1u);
}

TEST_F(RmksSel, DeleteRemovesTheSelectedLineAndClearsTheText)
{
    model.clickList(1, 0);
    model.cmdDel(1);
    EXPECT_EQ(model.list(1), (Lines{"CQ"}));
    EXPECT_EQ(model.txtRmks(1), "");
    EXPECT_FALSE(model.selected(1).has_value());
    model.setTxtRmks(2, "typed");
    model.cmdDel(2);
    EXPECT_EQ(model.list(2), (Lines{"PSE QSL"}));
    EXPECT_EQ(model.txtRmks(2), "");
}

TEST_F(RmksSel, CancelClearsSelectionAndText)
{
    model.clickList(2, 0);
    model.cmdCan(2);
    EXPECT_FALSE(model.selected(2).has_value());
    EXPECT_EQ(model.txtRmks(2), "");
    EXPECT_FALSE(model.highlighted(2));
}

TEST_F(RmksSel, OkGivesTheTextsToTheMainWindowAndSavesBothHistories)
{
    model.clickList(1, 1);
    model.setTxtRmks(2, "Typed");
    model.cmdIns(2);
    model.cmdOK();
    EXPECT_EQ(options.value("txtRmks1"), "CQ");
    EXPECT_EQ(options.value("txtRmks2"), "Typed");
    EXPECT_EQ(test::readBytes(dir / "Vornhale.rmk1"), crlf({kHeader1, "TNX QSO", "CQ"}));
    EXPECT_EQ(test::readBytes(dir / "Vornhale.rmk2"), crlf({kHeader2, "PSE QSL", "Typed"}));
    EXPECT_FALSE(std::filesystem::exists(dir / "Vornhale.001"));
    EXPECT_FALSE(model.open());
}

TEST_F(RmksSel, BackSavesNothingAndEmptiesTheBoxesWithoutATakenLine)
{
    model.clickList(2, 0);
    model.cmdDel(1);
    model.cmdBack();
    EXPECT_EQ(options.value("txtRmks1"), "");
    EXPECT_EQ(options.value("txtRmks2"), "PSE QSL");
    EXPECT_EQ(test::readSjisLines(dir / "Vornhale.rmk1"), (Lines{kHeader1, "TNX QSO", "CQ"}));
    EXPECT_FALSE(std::filesystem::exists(dir / "Vornhale.001"));
}
