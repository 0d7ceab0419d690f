#include "ui/RtclTextMenus.h"

#include "base/RunObserver.h"
#include "readers/InputKinds.h"
#include "readers/ReaderContext.h"
#include "readers/RtclTextReader.h"
#include "readers/RtclZlogMakers.h"
#include "session/OpenActions.h"
#include "session/Session.h"
#include "ui/FileChooser.h"
#include "ui/WidgetLook.h"

namespace vornhale::ui {

std::string makeRtclText(session::Session& session, FileChooser& chooser, QWidget* parent,
                         bool newForm, bool all)
{
    const session::OpenAction* action =
        session::openActionOf(newForm ? "mnuOpen_rtcl_log_set_new" : "mnuOpen_rtcl_log_set");
    const settings::Options& options = session.options();
    const QString path =
        chooser.chooseFile(parent, qs(session::openDialogTitle(*action, options)),
                           qs(session::openStartFolder(*action, options)), qs(action->filter));
    if (path.isEmpty()) {
        return {};
    }
    // The text is made from the chosen log alone: the open input of the window stays.
    readers::InputState run;
    run.in_name = utf8(path);
    run.chosen_name = run.in_name;
    session.trace().line("入力ファイル ：" + run.in_name);
    base::RunObserver quiet;
    const readers::ReaderContext ctx{session.options(),
                                     session.trace(),
                                     quiet,
                                     session.dialogs(),
                                     session.folder().drive_path,
                                     run};
    const readers::InputKind kind =
        newForm ? readers::InputKind::LogNew : readers::InputKind::LogOld;
    if (readers::check_rcvd_log(ctx, readers::rtcl_gen(kind))) {
        return {};
    }
    if (newForm) {
        return all ? readers::mnu_rtcl_log2all_new(ctx) : readers::mnu_rtcl_log2txt_new(ctx);
    }
    return all ? readers::mnu_rtcl_log2all(ctx) : readers::mnu_rtcl_log2txt(ctx);
}

} // namespace vornhale::ui
