#include "session/OpenActions.h"

#include "text/Chars.h"

namespace vornhale::session {
namespace {

using D = OpenAction::Dialog;

constexpr std::string_view kRtclFilter = "RTCL テキストファイル( *.log )|*.log|";

constexpr OpenAction kActions[] = {
    {"mnuOpen", "FileOpen", "", D::Plain, "ﾃｷｽﾄﾌｧｲﾙ ( *.txt , *.all )|*.txt;*.all", "", "", ""},
    {"mnuOpen_all_txt_set", "FileOpen_all_txt_set", "", D::Folder,
     "テキストファイル(*.all;*.txt)|*.all;*.txt|",
     "　の ＊．ａｌｌ　または　＊．ｔｘｔ　 ファイルを  開く ....", "all_dir", ""},
    {"mnuOpen_z", "FileOpen_z", "zlo", D::Plain, "ﾊﾞｲﾅﾘ-ﾌｧｲﾙ ( *.zlo )|*.zlo", "", "", ""},
    {"mnuOpen_z_set", "FileOpen_z_set", "zlo", D::Folder, "バイナリーファイル(*.zlo)|*.zlo|",
     "　の ＊．ｚｌｏ ファイルを  開く ....", "zlo_dir", ""},
    {"mnuOpen_rtcl_log_set", "FileOpen_rtcl_log_set", "log_old", D::Folder, kRtclFilter,
     "　のＲＴＣＬ 旧 ＊．ｌｏｇ ファイルを  開く ....", "log_dir", ""},
    {"mnuOpen_rtcl_log_set_new", "FileOpen_rtcl_log_set_new", "log_new", D::Folder, kRtclFilter,
     "　のＲＴＣＬ 新 ＊．ｌｏｇ ファイルを  開く ....", "log_dir", ""},
    {"mnuOpen_rtcl_log_set_new4", "FileOpen_rtcl_log_set_new4", "log_v4", D::Folder, kRtclFilter,
     "　のＲＴＣＬ ｖｅｒ　４＊．ｌｏｇ ファイルを  開く ....", "log_dir", ""},
    {"mnuOpen_rtcl_log_set_new430", "FileOpen_rtcl_log_set_new430", "log_v430", D::Folder,
     kRtclFilter, "　のＲＴＣＬ ｖｅｒ　４３０．ｌｏｇ ファイルを  開く ....", "log_dir", ""},
    {"mnuOpen_Cabrillo", "FileOpen_cbr", "cbr", D::Plain,
     "Cabrillo ﾌｧｲﾙ ( *.log , *.cbr , *.txt  )|*.log;*.cbr;*.txt", "", "", ""},
    {"mnuOpen_ADIF", "FileOpen_adi", "adi", D::Plain, "ADIF ﾌｧｲﾙ ( *.adi )|*.adi", "", "", ""},
    {"mnuMDB_dxlog", "FileOpen_mdb_dxlog", "mdb", D::Plain, "N1NN Logger ﾌｧｲﾙ(*.mdb)|*.mdb", "", "",
     "DXLOG"},
    {"mnuMDB_CurrentContest", "FileOpen_mdb_CurrentContest", "mdb", D::Plain,
     "N1NN Logger ﾌｧｲﾙ(*.mdb)|*.mdb", "", "", "CurrentContest"},
    {"mnuOpen_Ctestwin", "FileOpen_lg8", "lg8", D::Plain, "Ctestwin lg8 ﾌｧｲﾙ ( *.lg8 )|*.lg8",
     "ファイルを開く", "", ""},
};

} // namespace

std::span<const OpenAction> openActions()
{
    return kActions;
}

const OpenAction* openActionOf(std::string_view name)
{
    for (const OpenAction& a : kActions) {
        if (a.menu == name || a.procedure == name) {
            return &a;
        }
    }
    return nullptr;
}

std::string openStartFolder(const OpenAction& action, const settings::Options& options)
{
    if (action.dialog != OpenAction::Dialog::Folder || action.folderKey.empty()) {
        return {};
    }
    return options.value(action.folderKey);
}

std::string openDialogTitle(const OpenAction& action, const settings::Options& options)
{
    if (action.dialog == OpenAction::Dialog::Plain) {
        return std::string(action.titleText);
    }
    // The texts begin with the ideographic blank that parts the folder from them.
    constexpr std::string_view kBlank = "\u3000";
    std::string title = text::upper(openStartFolder(action, options));
    if (action.titleText.substr(0, kBlank.size()) != kBlank) {
        title += kBlank;
    }
    return title + std::string(action.titleText);
}

} // namespace vornhale::session
