#include "ui/Screenshots.h"

#include "session/Session.h"
#include "ui/ConfigDialog.h"
#include "ui/DesktopProgram.h"
#include "ui/DialogScreenshots.h"
#include "ui/FileChooser.h"
#include "ui/MainWindow.h"
#include "ui/WidgetLook.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QPixmap>
#include <QTabWidget>
#include <QTimer>

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
    return ok;
}

} // namespace vornhale::ui
