#include "ui/ToolWindowScreenshots.h"

#include "ui/DownloadDialog.h"
#include "ui/GetMngDialog.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QPixmap>

namespace vornhale::ui {
namespace {

bool save(QWidget* widget, const QString& folder, const QString& name)
{
    for (int i = 0; i < 5; ++i) {
        QApplication::processEvents(QEventLoop::AllEvents, 50);
    }
    return widget->grab().save(QDir(folder).filePath(name), "PNG");
}

} // namespace

bool takeToolWindowScreenshots(session::Session& session, base::Dialogs& dialogs, QWidget* parent,
                               const QString& folder)
{
    bool ok = true;
    {
        DownloadDialog download(session, dialogs, parent);
        download.show();
        if (download.busy()) {
            QEventLoop loop;
            QObject::connect(&download, &DownloadDialog::workFinished, &loop, &QEventLoop::quit);
            loop.exec();
        }
        ok = save(&download, folder, QStringLiteral("frmDownLoad.png")) && ok;
        download.close();
    }
    {
        // The picture's window only shows: its open and stop are the main window's to give.
        GetMngDialog walk(session, dialogs, {}, parent);
        walk.show();
        walk.mnuGet_MNG_Click();
        if (walk.walking()) {
            QEventLoop loop;
            QObject::connect(&walk, &GetMngDialog::walkFinished, &loop, &QEventLoop::quit);
            loop.exec();
        }
        ok = save(&walk, folder, QStringLiteral("frmGet_MNG.png")) && ok;
        walk.close();
    }
    return ok;
}

} // namespace vornhale::ui
