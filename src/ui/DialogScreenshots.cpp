#include "ui/DialogScreenshots.h"

#include "ui/DateDialog.h"
#include "ui/KetasuDialog.h"
#include "ui/ModeDialog.h"
#include "ui/RtclV4Dialog.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QPixmap>

namespace vornhale::ui {
namespace {

bool picture(QWidget& dialog, const QString& folder, const QString& name)
{
    dialog.show();
    for (int i = 0; i < 5; ++i) {
        QApplication::processEvents(QEventLoop::AllEvents, 50);
    }
    const bool ok = dialog.grab().save(QDir(folder).filePath(name), "PNG");
    dialog.close();
    return ok;
}

} // namespace

bool takeDialogScreenshots(session::Session& session, FileChooser& chooser, QWidget* parent,
                           const QString& folder)
{
    bool ok = true;
    {
        KetasuDialog widths(session, parent);
        ok = picture(widths, folder, QStringLiteral("frmKetasu.png")) && ok;
    }
    {
        DateDialog period(session, parent);
        ok = picture(period, folder, QStringLiteral("frmDate.png")) && ok;
    }
    {
        ModeDialog modes(session, parent);
        ok = picture(modes, folder, QStringLiteral("frmMode.png")) && ok;
    }
    {
        RtclV4Dialog rtcl(session, chooser, parent);
        ok = picture(rtcl, folder, QStringLiteral("frmRTCL_v4.png")) && ok;
    }
    return ok;
}

} // namespace vornhale::ui
