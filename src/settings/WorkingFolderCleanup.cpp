#include "settings/WorkingFolderCleanup.h"

#include "base/FileMask.h"
#include "settings/Options.h"
#include "text/Chars.h"

namespace vornhale::settings {

namespace fs = std::filesystem;

void tmp_file_Del(const base::ProgramFolder& folder, base::Trace& trace,
                  SettingsFiles* files, base::Dialogs& dialogs, bool deleteFiles)
{
    trace.line("Public Sub tmp_file_Del()");
    trace.line("     drive_path : " + folder.drive_path.string());
    trace.line("     strpath : " + folder.strPath.string());
    auto traced = [&](const fs::path& p) { trace.line("     " + p.string()); };
    if (deleteFiles) {
        for (const char* mask :
             {"temp_s.csv", "temp_d.csv", "semp_s.csv", "semp_d.csv", "uemp_s.csv", "uemp_d.csv",
              "bak_?.txt", "bak_??.txt", "zlog_?.txt", "*.hdx"}) {
            base::deleteByMask(folder.drive_path, mask, traced);
        }
        base::deleteByMask(folder.Temp_Files, "*.hdx", traced);
        for (const char* mask : {"bak_chk_?.txt", "hdb_chk_?.txt", "*.hdx"}) {
            base::deleteByMask(folder.strPath, mask, traced);
        }
    }
    if (files == nullptr) {
        return;
    }
    trace.line("Public Sub tmp_file_Del()  ini_write_new");
    files->ini_write_new();

    Options& o = files->options();
    const long runs = static_cast<long>(text::val(o.value("exe_rec"))) + 1;
    if (runs % 10 == 0) {
        dialogs.message("", "たまには使用した感想などのレポート下さいね！",
                        base::Dialogs::Icon::Information);
    }
    o.set("exe_rec", std::to_string(runs));
    files->ini_write_new();
}

} // namespace vornhale::settings
