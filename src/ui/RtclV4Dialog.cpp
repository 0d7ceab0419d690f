#include "ui/RtclV4Dialog.h"

#include "failure/Failure.h"
#include "session/OpenActions.h"
#include "session/Session.h"
#include "settings/WindowPositions.h"
#include "ui/FileChooser.h"
#include "ui/WidgetLook.h"
#include "ui/WindowPlace.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace vornhale::ui {

RtclV4Dialog::RtclV4Dialog(session::Session& session, FileChooser& chooser, QWidget* parent)
    : QDialog(parent), m_session(session), m_chooser(chooser)
{
    setObjectName(QStringLiteral("frmRTCL_v4"));
    setWindowTitle(QStringLiteral("RTCL 新  　(　ver 4.00 以降　)    zLog への変換"));

    auto* outer = new QVBoxLayout(this);
    auto* bar = new QMenuBar;
    bar->setObjectName(QStringLiteral("menuBar"));
    QMenu* version = bar->addMenu(QStringLiteral("RTCL ver"));
    version->setObjectName(QStringLiteral("mnuVer"));
    auto* before = version->addAction(QStringLiteral("RTCL ver 4.00 以降　4.30 より前"));
    before->setObjectName(QStringLiteral("mnuVer_430mae"));
    auto* after = version->addAction(QStringLiteral("RTCL ver 4.30 以降"));
    after->setObjectName(QStringLiteral("mnuVer_430ato"));
    outer->setMenuBar(bar);

    auto* caption = new QLabel(QStringLiteral("　入力ファイル"));
    caption->setObjectName(QStringLiteral("Label2"));
    outer->addWidget(caption);
    m_inName = new QLabel;
    m_inName->setObjectName(QStringLiteral("lblIn_name"));
    m_inName->setFrameShape(QFrame::Panel);
    m_inName->setFrameShadow(QFrame::Sunken);
    m_inName->setMinimumWidth(480);
    m_inName->setWordWrap(true);
    outer->addWidget(m_inName);
    m_outName = new QLabel;
    m_outName->setObjectName(QStringLiteral("lblOut_name"));
    m_outName->setWordWrap(true);
    outer->addWidget(m_outName);

    auto* buttons = new QHBoxLayout;
    m_makeTxt = new QPushButton(QStringLiteral("zLog ＊．TXT 作成"));
    m_makeTxt->setObjectName(QStringLiteral("cmdMake_txt"));
    m_makeAll = new QPushButton(QStringLiteral("zLog ＊．ALL 作成"));
    m_makeAll->setObjectName(QStringLiteral("cmdMake_all"));
    buttons->addStretch(1);
    buttons->addWidget(m_makeTxt);
    buttons->addWidget(m_makeAll);
    outer->addLayout(buttons);
    outer->addStretch(1);

    connect(before, &QAction::triggered, this, [this] { pick(true); });
    connect(after, &QAction::triggered, this, [this] { pick(false); });
    connect(m_makeTxt, &QPushButton::clicked, this, [this] { make(false); });
    connect(m_makeAll, &QPushButton::clicked, this, [this] { make(true); });

    refresh();
    rememberPlace(*this, "frmRTCL_v4", session.folder().strPath / settings::kPositionFileName,
                  sizeHint().expandedTo(QSize(560, 200)), QPoint(140, 100));
}

bool RtclV4Dialog::choose(const std::filesystem::path& path, bool before430)
{
    m_session.trace().line("入力ファイル ：" + path.string());
    bool chosen = false;
    try {
        chosen = before430 ? m_form.mnuVer_430mae(path) : m_form.mnuVer_430ato(path);
    } catch (const failure::Failure& f) {
        if (m_failure) {
            m_failure(f);
        } else {
            QMessageBox::critical(this, windowTitle(), qs(f.description()));
        }
    }
    m_outName->clear();
    refresh();
    return chosen;
}

void RtclV4Dialog::pick(bool before430)
{
    // The same folder dialog as the open menus of the two generations.
    const session::OpenAction* action = session::openActionOf(
        before430 ? "mnuOpen_rtcl_log_set_new4" : "mnuOpen_rtcl_log_set_new430");
    const settings::Options& options = m_session.options();
    const QString path =
        m_chooser.chooseFile(this, qs(session::openDialogTitle(*action, options)),
                             qs(session::openStartFolder(*action, options)), qs(action->filter));
    if (path.isEmpty()) {
        return;
    }
    choose(utf8(path).c_str(), before430);
}

void RtclV4Dialog::make(bool all)
{
    try {
        const std::string written =
            all ? m_form.cmdMake_all(m_session.trace()) : m_form.cmdMake_txt(m_session.trace());
        m_outName->setText(qs(written));
    } catch (const failure::Failure& f) {
        if (m_failure) {
            m_failure(f);
        } else {
            QMessageBox::critical(this, windowTitle(), qs(f.description()));
        }
    }
}

void RtclV4Dialog::refresh()
{
    m_inName->setText(qs(m_form.lblIn_name()));
    const bool refused = m_form.in_name().empty() && !m_form.lblIn_name().empty();
    setCaptionColour(m_inName, refused ? base::Colour::Red : base::Colour::Black);
    const bool chosen = !m_form.in_name().empty();
    m_makeTxt->setEnabled(chosen);
    m_makeAll->setEnabled(chosen);
}

} // namespace vornhale::ui
