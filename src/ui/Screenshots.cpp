#include "ui/Screenshots.h"

#include "session/Session.h"
#include "settings/WindowPositions.h"
#include "ui/BakCheckDialog.h"
#include "ui/ConfigDialog.h"
#include "ui/DesktopProgram.h"
#include "ui/DialogScreenshots.h"
#include "ui/FileChooser.h"
#include "ui/MainWindow.h"
#include "ui/QtDialogs.h"
#include "ui/ResultGridDialog.h"
#include "ui/ToolWindowScreenshots.h"
#include "ui/ViewerDialog.h"
#include "ui/WidgetLook.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QPixmap>
#include <QTabWidget>
#include <QTimer>
#include <filesystem>

namespace vornhale::ui {
namespace {

void settle()
{
    for (int i = 0; i < 5; ++i) {
        QApplication::processEvents(QEventLoop::AllEvents, 50);
    }
}

bool save(QWidget* widget, const QString& folder, const QString& name)
{
    settle();
    return widget->grab().save(QDir(folder).filePath(name), "PNG");
}

// The result grid and the viewer over the results of the converted log, and the history check.
bool takeToolScreenshots(session::Session& session, QWidget* parent, const QString& folder)
{
    bool ok = true;
    const std::string results = session.input().names.out_name_ham_n;
    if (!results.empty() && std::filesystem::exists(results)) {
        ResultGridDialog grid(tools::GridForm::hamlog(), session, results, {}, parent);
        grid.show();
        ok = save(&grid, folder, QStringLiteral("Grid4frm.png")) && ok;
        grid.close();
        ViewerDialog viewer(session::ViewerWindow::frmDisp, results, session.input().in_name,
                            session.folder().strPath / std::string(settings::kPositionFileName),
                            parent);
        viewer.show();
        ok = save(&viewer, folder, QStringLiteral("frmDisp.png")) && ok;
        viewer.close();
        // The input in the narrower viewer of the text check: its lines outrun the list.
        ViewerDialog input(session::ViewerWindow::frmDisp2, session.input().in_name,
                           session.input().in_name,
                           session.folder().strPath / std::string(settings::kPositionFileName),
                           parent);
        input.show();
        ok = save(&input, folder, QStringLiteral("frmDisp2.png")) && ok;
        input.close();
    }
    BakCheckDialog check(session, parent);
    check.show();
    ok = save(&check, folder, QStringLiteral("frmCheck_bak_qso_mas.png")) && ok;
    check.close();
    return ok;
}

} // namespace

bool takeScreenshots(DesktopProgram& program, const QString& folder, const QString& log)
{
    QDir().mkpath(folder);
    bool ok = true;
    if (ConfigDialog* config = program.configDialog()) {
        config->show();
        ok = save(config, folder, QStringLiteral("frmConfig.png")) && ok;
        program.skipEnvironment();
    } else {
        QtFileChooser chooser;
        ConfigDialog dialog(*program.session(), chooser);
        dialog.show();
        ok = save(&dialog, folder, QStringLiteral("frmConfig.png")) && ok;
        dialog.close();
    }
    MainWindow* window = program.mainWindow();
    if (window == nullptr) {
        return false;
    }
    if (!log.isEmpty()) {
        window->openPath(utf8(log));
        if (window->startConversion()) {
            QEventLoop loop;
            QObject::connect(window, &MainWindow::conversionFinished, &loop, &QEventLoop::quit);
            loop.exec();
        }
    }
    for (int i = 0; i < 4; ++i) {
        window->showTab(0, i);
        window->showTab(1, i);
        ok = save(window, folder, QStringLiteral("main-%1.png").arg(i + 1)) && ok;
    }
    QtFileChooser dialogChooser;
    ok = takeDialogScreenshots(*program.session(), dialogChooser, window, folder) && ok;
    ok = takeToolWindowScreenshots(*program.session(), program.dialogs(), window, folder) && ok;
    ok = takeToolScreenshots(*program.session(), window, folder) && ok;
    return ok;
}

} // namespace vornhale::ui
