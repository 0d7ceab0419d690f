#include "ui/ViewerActions.h"

#include "session/Session.h"
#include "session/ViewerFiles.h"
#include "settings/SettingsFiles.h"
#include "settings/WindowPositions.h"
#include "ui/BakCheckDialog.h"
#include "ui/ResultGridDialog.h"
#include "ui/ViewerDialog.h"
#include "ui/WidgetLook.h"

#include <filesystem>
#include <system_error>

namespace vornhale::ui {
namespace {

// A file that is not there is reported with its path; no window opens for it.
bool reportMissing(session::Session& session, const std::string& path)
{
    std::error_code ec;
    if (!path.empty() && std::filesystem::is_regular_file(path, ec)) {
        return false;
    }
    session.dialogs().message("", path + " が有りません。", base::Dialogs::Icon::Exclamation);
    return true;
}

} // namespace

void viewFileIn(QWidget* parent, session::Session& session, const std::string& path)
{
    session.files().ini_write_old();
    if (reportMissing(session, path)) {
        return;
    }
    ViewerDialog viewer(session::ViewerWindow::frmDisp, path, session.input().in_name,
                        session.folder().strPath / std::string(settings::kPositionFileName),
                        parent);
    viewer.exec();
}

void viewEntry(QWidget* parent, session::Session& session, std::string_view entry)
{
    viewFileIn(parent, session, session::viewedFile(entry, session.input(), session.folder()));
}

void openResultGrid(QWidget* parent, session::Session& session, const tools::GridForm& form,
                    std::function<void()> endProgram)
{
    session.files().ini_write_old();
    const std::string path = session::viewedFile(
        &form == &tools::GridForm::hamlog() ? "mnuDisp_ham_n_new" : "mnuDisp_con_n_new",
        session.input(), session.folder());
    if (reportMissing(session, path)) {
        return;
    }
    ResultGridDialog grid(form, session, path, std::move(endProgram), parent);
    grid.exec();
}

std::vector<QWidget*> showConversionCheck(QWidget* parent, session::Session& session,
                                          const std::string& input, const std::string& txt,
                                          const std::string& all)
{
    std::vector<QWidget*> opened;
    const std::pair<session::ViewerWindow, const std::string*> views[] = {
        {session::ViewerWindow::frmDisp2, &input},
        {session::ViewerWindow::frmDisp3, &txt},
        {session::ViewerWindow::frmDisp4, &all},
    };
    for (const auto& [window, path] : views) {
        std::error_code ec;
        if (path->empty() || !std::filesystem::is_regular_file(*path, ec)) {
            continue;
        }
        auto* viewer = new ViewerDialog(
            window, *path, session.input().in_name,
            session.folder().strPath / std::string(settings::kPositionFileName), parent);
        viewer->setAttribute(Qt::WA_DeleteOnClose);
        viewer->setModal(false);
        viewer->show();
        opened.push_back(viewer);
    }
    return opened;
}

void openBakCheck(QWidget* parent, session::Session& session)
{
    session.files().ini_write_old();
    BakCheckDialog check(session, parent);
    check.exec();
}

} // namespace vornhale::ui
