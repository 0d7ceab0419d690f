#include "base/Trace.h"
#include "failure/Failure.h"
#include "support/TestSupport.h"
#include "text/Record.h"
#include "tools/ResultGrid.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace vornhale;
using tools::GridCell;
using tools::GridForm;
using tools::ResultGrid;
namespace fs = std::filesystem;

namespace {

std::vector<fs::path> goldenResults()
{
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(test::testData("golden"))) {
        const std::string name = entry.path().filename().string();
        if (entry.is_regular_file() && (name.ends_with("_hn.csv") || name.ends_with("_cn.csv"))) {
            files.push_back(entry.path());
        }
    }
    return files;
}

std::string roundTrip(const fs::path& file, const fs::path& out)
{
    base::Trace trace;
    ResultGrid grid;
    grid.DataRead(file, trace);
    grid.cmdSave(out);
    return test::readBytes(out);
}

std::string row(int n)
{
    return text::formatRecord({"JA1ABC", "26/11/28", "00:01U", "599", "599", "14", "CW",
                               std::to_string(n), "", "J* ", "", "Japan", "", "", "8"});
}

} // namespace

TEST(ResultGrid, LoadAndSaveWithoutEditsGiveEveryGoldenResultFileByteForByte)
{
    const std::vector<fs::path> files = goldenResults();
    ASSERT_GT(files.size(), 20U);
    test::TempDir dir;
    for (const fs::path& file : files) {
        EXPECT_EQ(roundTrip(file, dir / "out.csv"), test::readBytes(file)) << file;
    }
}

TEST(ResultGrid, HoldsTheFifteenFieldsOfEachRowWithTheRowNumberInColumnZero)
{
    test::TempDir dir;
    test::writeSjisLines(
        dir / "x_hn.csv",
        {text::formatRecord({"K1ZZ", "26/11/28", "00:01U", "599", "579", "14.025", "CW", "784A", "",
                             "J* ", "", "ﾃｽﾄ 東京", "R1", "R2", "8"}),
         row(2)});
    base::Trace trace;
    ResultGrid grid;
    grid.DataRead(dir / "x_hn.csv", trace);
    ASSERT_EQ(grid.rows(), 2);
    EXPECT_EQ(grid.cell(1, 0), "1");
    EXPECT_EQ(grid.cell(2, 0), "2");
    EXPECT_EQ(grid.cell(1, 1), "K1ZZ");
    EXPECT_EQ(grid.cell(1, 12), "ﾃｽﾄ 東京");
    EXPECT_EQ(grid.cell(1, 14), "R2");
    EXPECT_EQ(grid.cell(1, 15), "8");
    EXPECT_EQ(grid.cell(2, 8), "2");
    EXPECT_EQ(grid.cell(3, 1), "");
    EXPECT_FALSE(grid.cutAtLimit());
}

TEST(ResultGrid, AnEmptyFileGivesNoRows)
{
    test::TempDir dir;
    test::writeBytes(dir / "e_cn.csv", "");
    base::Trace trace;
    ResultGrid grid;
    grid.DataRead(dir / "e_cn.csv", trace);
    EXPECT_EQ(grid.rows(), 0);
    grid.cmdSave(dir / "e_cn.csv");
    EXPECT_EQ(test::readBytes(dir / "e_cn.csv"), "");
}

TEST(ResultGrid, SavingUneditedFieldsDiffersFromTheInputOnlyByTheQuoting)
{
    test::TempDir dir;
    test::writeBytes(dir / "q.csv", "JA1ABC,\"26/11/28\", 00:01U ,599,599,14,CW,,,,,,,,8\r\n");
    base::Trace trace;
    ResultGrid grid;
    grid.DataRead(dir / "q.csv", trace);
    grid.cmdSave(dir / "out.csv");
    EXPECT_EQ(
        test::readBytes(dir / "out.csv"),
        "\"JA1ABC\",\"26/11/28\",\"00:01U\",\"599\",\"599\",\"14\",\"CW\",\"\",\"\",\"\",\"\",\"\","
        "\"\",\"\",\"8\"\r\n");
}

TEST(ResultGrid, AnEditedCellIsSavedInItsField)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "x_hn.csv", {row(1), row(2)});
    base::Trace trace;
    ResultGrid grid;
    grid.DataRead(dir / "x_hn.csv", trace);
    grid.setCell(2, 11, "Tokyo 東京");
    grid.setCell(2, 0, "99"); // the number column is not a field
    grid.cmdSave(dir / "x_hn.csv");
    const auto lines = test::readSjisLines(dir / "x_hn.csv");
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0], row(1));
    EXPECT_EQ(lines[1],
              text::formatRecord({"JA1ABC", "26/11/28", "00:01U", "599", "599", "14", "CW", "2", "",
                                  "J* ", "Tokyo 東京", "Japan", "", "", "8"}));
}

TEST(ResultGrid, ARowBeyondFiveThousandStopsTheReadWithNumberNineInTheTrace)
{
    test::TempDir dir;
    std::vector<std::string> lines;
    for (int n = 1; n <= ResultGrid::kMaxRows + 2; ++n) {
        lines.push_back(row(n));
    }
    test::writeSjisLines(dir / "big_hn.csv", lines);
    base::Trace trace(dir / "Error_Log");
    ResultGrid grid;
    grid.DataRead(dir / "big_hn.csv", trace);
    EXPECT_EQ(grid.rows(), ResultGrid::kMaxRows);
    EXPECT_TRUE(grid.cutAtLimit());
    EXPECT_EQ(grid.cell(5000, 8), "5000");
    const auto traced = test::readSjisLines(trace.path());
    EXPECT_NE(std::find(traced.begin(), traced.end(), "エラー発生 ：　9"), traced.end());

    // What is saved is what the grid holds: the rows past the limit are gone.
    grid.cmdSave(dir / "big_hn.csv");
    EXPECT_EQ(test::readSjisLines(dir / "big_hn.csv").size(), 5000U);
}

TEST(ResultGrid, ExactlyFiveThousandRowsAreReadWhole)
{
    test::TempDir dir;
    std::vector<std::string> lines;
    for (int n = 1; n <= ResultGrid::kMaxRows; ++n) {
        lines.push_back(row(n));
    }
    test::writeSjisLines(dir / "full_hn.csv", lines);
    base::Trace trace;
    ResultGrid grid;
    grid.DataRead(dir / "full_hn.csv", trace);
    EXPECT_EQ(grid.rows(), 5000);
    EXPECT_FALSE(grid.cutAtLimit());
}

TEST(ResultGrid, AMissingFileFailsWithNumber53)
{
    base::Trace trace;
    ResultGrid grid;
    try {
        grid.DataRead("/nonexistent/none_hn.csv", trace);
        FAIL() << "no failure";
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), 53);
    }
}

TEST(ResultGrid, HeadersAndInitialWidthsAreTheLiteralLists)
{
    const auto& h = ResultGrid::headers();
    EXPECT_EQ(h[0], "No.");
    EXPECT_EQ(h[9], "G・L");
    EXPECT_EQ(h[11], "His Name");
    EXPECT_EQ(h[15], "Flag");
    const auto& w = ResultGrid::initialWidths();
    EXPECT_EQ(w[0], 600);
    EXPECT_EQ(w[12], 3700);
    EXPECT_EQ(w[13], 7100);
    EXPECT_EQ(w[15], 400);
    EXPECT_EQ(ResultGrid::joinWidths(w), ResultGrid::initialWidthList());
}

TEST(ResultGrid, WithCheck1OnTheWidthsAreTheLiteralListNotTheSavedOne)
{
    settings::Options options;
    options.set("get_ColWidth_Grid4",
                "100,200,300,400,500,600,700,800,900,1000,1100,1200,1300,1400,1500,1600");
    options.set("Grid4_Check1", "1");
    const auto choice = ResultGrid::widthsAtLoad(options, GridForm::hamlog());
    EXPECT_TRUE(choice.Check1);
    EXPECT_EQ(choice.widths, ResultGrid::initialWidths());
    EXPECT_EQ(ResultGrid::widthsFor(true, options, GridForm::hamlog()),
              ResultGrid::initialWidths());
    EXPECT_EQ(ResultGrid::widthsFor(false, options, GridForm::hamlog())[1], 200);
}

TEST(ResultGrid, ABlankOrZeroTickLeavesTheSavedWidthsInForce)
{
    for (const char* tick : {"", " ", "0"}) {
        settings::Options options;
        options.set("get_ColWidth_Grid5",
                    "100,200,300,400,500,600,700,800,900,1000,1100,1200,1300,1400,1500,1600");
        options.set("Grid5_Check1", tick);
        const auto choice = ResultGrid::widthsAtLoad(options, GridForm::contest());
        EXPECT_FALSE(choice.Check1) << '"' << tick << '"';
        EXPECT_EQ(choice.widths[0], 100);
        EXPECT_EQ(choice.widths[15], 1600);
    }
}

TEST(ResultGrid, AnEmptyWidthKeyTakesTheLiteralList)
{
    settings::Options options;
    const auto choice = ResultGrid::widthsAtLoad(options, GridForm::hamlog());
    EXPECT_EQ(options.value("get_ColWidth_Grid4"), ResultGrid::initialWidthList());
    EXPECT_EQ(choice.widths, ResultGrid::initialWidths());
}

TEST(ResultGrid, ABadOrMissingWidthTakesTheInitialWidthOfItsColumn)
{
    const auto w = ResultGrid::parseWidths("700,x,,-5,12");
    EXPECT_EQ(w[0], 700);
    EXPECT_EQ(w[1], 1300);
    EXPECT_EQ(w[2], 850);
    EXPECT_EQ(w[3], 700);
    EXPECT_EQ(w[4], 12);
    EXPECT_EQ(w[15], 400);
}

TEST(ResultGrid, StoringWidthsJoinsThemByCommasAndStoresTheTick)
{
    settings::Options options;
    auto widths = ResultGrid::initialWidths();
    widths[1] = 2000;
    ResultGrid::storeWidths(options, GridForm::contest(), widths, true);
    EXPECT_EQ(options.value("get_ColWidth_Grid5"),
              "600,2000,850,700,400,400,800,450,900,900,550,1800,3700,7100,7100,400");
    EXPECT_EQ(options.value("Grid5_Check1"), "1");
    ResultGrid::storeWidths(options, GridForm::contest(), widths, false);
    EXPECT_EQ(options.value("Grid5_Check1"), "0");
    EXPECT_EQ(options.value("get_ColWidth_Grid4"), "");
}

TEST(ResultGrid, TheTwoFormsHaveTheirOwnKeysAndNames)
{
    EXPECT_EQ(GridForm::hamlog().form, "Grid4frm");
    EXPECT_EQ(GridForm::hamlog().grid, "Grid4");
    EXPECT_EQ(GridForm::contest().form, "Grid5frm");
    EXPECT_EQ(GridForm::contest().grid, "Grid5");
    EXPECT_EQ(GridForm::contest().widthKey, "get_ColWidth_Grid5");
    EXPECT_EQ(GridForm::contest().tickKey, "Grid5_Check1");
}

TEST(ResultGrid, ATypedLowerCaseLetterIsKeptInUpperCase)
{
    EXPECT_EQ(ResultGrid::typed(U'j'), U'J');
    EXPECT_EQ(ResultGrid::typed(U'z'), U'Z');
    EXPECT_EQ(ResultGrid::typed(U'ａ'), U'Ａ');
    EXPECT_EQ(ResultGrid::typed(U'A'), U'A');
    EXPECT_EQ(ResultGrid::typed(U'1'), U'1');
    EXPECT_EQ(ResultGrid::typed(U'/'), U'/');
    EXPECT_EQ(ResultGrid::typed(U'東'), U'東');
}

TEST(ResultGrid, ConfirmingMovesDownOrRightByTheDirectionFlag)
{
    EXPECT_EQ(ResultGrid::afterConfirm({2, 3}, true, 5), (GridCell{3, 3}));
    EXPECT_EQ(ResultGrid::afterConfirm({5, 3}, true, 5), (GridCell{5, 3}));
    EXPECT_EQ(ResultGrid::afterConfirm({2, 3}, false, 5), (GridCell{2, 4}));
    EXPECT_EQ(ResultGrid::afterConfirm({2, 15}, false, 5), (GridCell{3, 1}));
    EXPECT_EQ(ResultGrid::afterConfirm({5, 15}, false, 5), (GridCell{5, 15}));
}

TEST(ResultGrid, UpAndDownStayBetweenTheFirstAndTheLastRow)
{
    EXPECT_EQ(ResultGrid::afterArrow({1, 4}, -1, 3), (GridCell{1, 4}));
    EXPECT_EQ(ResultGrid::afterArrow({2, 4}, -1, 3), (GridCell{1, 4}));
    EXPECT_EQ(ResultGrid::afterArrow({2, 4}, 1, 3), (GridCell{3, 4}));
    EXPECT_EQ(ResultGrid::afterArrow({3, 4}, 1, 3), (GridCell{3, 4}));
}

TEST(ResultGrid, TheFocusCatchersMoveOneCellOnOrBack)
{
    EXPECT_EQ(ResultGrid::cellOn({1, 1}, 2), (GridCell{1, 2}));
    EXPECT_EQ(ResultGrid::cellOn({1, 15}, 2), (GridCell{2, 1}));
    EXPECT_EQ(ResultGrid::cellBack({2, 5}), (GridCell{2, 4}));
    EXPECT_EQ(ResultGrid::cellBack({2, 1}), (GridCell{1, 1}));
    EXPECT_EQ(ResultGrid::cellBack({1, 1}), (GridCell{1, 1}));
}

TEST(ResultGrid, TheNoQslSummaryJoinsThePiecesAndKeepsTheirPlaces)
{
    settings::Options options;
    options.set("Option04", "1");
    options.set("Check04", "1");
    options.set("Check05", "0");
    options.set("Check3", "1");
    options.set("Check4", "1");
    options.set("Check9", "0");
    options.set("Check09", "1");
    options.set("Check10", "1");
    EXPECT_EQ(ResultGrid::noQslSummary(options),
              "[ Q S O  済み ]　[ 同ﾊﾞﾝﾄﾞ ]　" + std::string(12, ' ') +
                  "[ N --> J ]　[ J --> N ]　" + std::string(24, ' ') +
                  "[ 指定ctyはNo QSL ]　[ JA のｸﾗﾌﾞ局はNo QSL ]");

    settings::Options off;
    EXPECT_EQ(ResultGrid::noQslSummary(off),
              "[ この機能は無視する ]　" + std::string(13 + 12 + 13 + 24 + 21, ' '));
}
