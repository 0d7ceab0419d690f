// A first start, the main window's load and a round of changes as an operator makes them:
// the settings files that result are compared with reviewed copies, byte for byte.

#include "base/DataFiles.h"
#include "session/ProgramStart.h"
#include "settings/LayoutModel.h"
#include "session/OptionModel.h"
#include "support/RecordingFrontEnd.h"
#include "support/TestSupport.h"
#include "text/Chars.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

fs::path golden(const char* name)
{
    return test::sourceDir() / "tests" / "data" / "golden" / "settings" / "after_changes" / name;
}

} // namespace

TEST(SettingsRound, ARoundOfChangesLeavesTheReviewedSettingsFiles)
{
    ::setenv("VORNHALE_CTY_DAT", "", 1);
    test::TempDir dir, root;
    const base::ProgramFolder folder = base::ProgramFolder::at(dir / "home");
    base::Trace trace;
    test::RecordingDialogs dialogs;
    settings::Options options;
    settings::SettingsFiles files(folder.strPath, options);
    files.setToday("20261123");
    files.setDriveRoot(root.path());
    session::ProgramStart start(folder, files, trace, dialogs);

    ASSERT_TRUE(start.Main(base::bundledDataFolder()).environmentFirst);
    files.ini_write_cfg(); // the environment settings closed with OK
    ASSERT_TRUE(start.Main2_bas_1());
    ASSERT_TRUE(start.Main2_bas_2());

    session::OptionFacts facts;
    facts.strPath = folder.strPath;
    facts.drive_path = folder.drive_path;
    facts.today = "20261123";
    settings::LayoutModel layout(options, &files);
    session::OptionModel model(options, &files, facts, &layout);
    model.Form_Load();

    model.clickTick("Check3"); // disabled while the No-QSL function is ignored
    model.chooseMember("Option04", 2);
    model.clickTick("Check4");
    model.clickTick("Check3"); // takes over from Check4
    model.chooseMember("Option2", 1);
    model.chooseMember("Option05", 2);
    model.editText("txtQSL_Q", "BJ");
    model.clickTick("Check06");
    model.chooseMember("Option6", 3);
    model.editText("txtZone_moji", "CQZ ");
    model.chooseMember("Option08", 1);
    model.chooseMember("Option02", 4);
    layout.dropFromPalette(10, 1, 5); // "州名"
    layout.dropFromPalette(5, 2, 0);  // "memo=" takes the place of "MNG"
    layout.Sort_3();

    start.End_Shori();

    const auto portable = [&](const char* name) {
        return text::replaceAll(test::readBytes(folder.strPath / name), folder.strPath.string(),
                                "<home>/");
    };
    for (const char* name : {"Vornhale_new.ini", "Vornhale.ini", "Vornhale_cfg.ini"}) {
        EXPECT_EQ(test::compareGolden(golden(name), portable(name)), "") << name;
    }
}
