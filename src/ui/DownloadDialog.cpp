#include "ui/DownloadDialog.h"

#include "net/Http.h"
#include "session/Session.h"
#include "settings/WindowPositions.h"
#include "tools/DataDownloads.h"
#include "ui/QtRunObserver.h"
#include "ui/WidgetLook.h"
#include "ui/WindowPlace.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace vornhale::ui {
namespace {

using tools::DownloadRow;

/// The labels of the window that the core sets, besides the rows' own.
constexpr const char* kAddressLabels[] = {"Label3", "Label6", "Label2", "Label5"};

/// Which address label stands under which row: the HAMLOG archive, the UNLHA32 installer,
/// the cty zip.
const char* addressLabelOf(DownloadRow row)
{
    switch (row) {
    case DownloadRow::Th505api:
        return "Label3";
    case DownloadRow::Unlha32:
        return "Label6";
    case DownloadRow::Cty:
        return "Label2";
    default:
        break;
    }
    return nullptr;
}

} // namespace

DownloadDialog::DownloadDialog(session::Session& session, base::Dialogs& dialogs, QWidget* parent)
    : QDialog(parent)
{
    const std::filesystem::path& strPath = session.folder().strPath;
    build(strPath);
    m_ownCore = std::make_unique<tools::DataDownloads>(strPath, session.options(),
                                                       net::WebConfig::load(strPath),
                                                       session.trace(), dialogs, m_observer);
    m_core = m_ownCore.get();
    // The load asks two web pages for the names of the current files: off the window's
    // thread, so that the window stands at once.
    runOnWorker([core = m_core] { core->Form_Load(false); });
}

DownloadDialog::DownloadDialog(tools::DataDownloads& core, const std::filesystem::path& strPath,
                               QWidget* parent)
    : QDialog(parent), m_core(&core)
{
    build(strPath);
    m_core->setObserver(m_observer);
    showCore();
}

DownloadDialog::~DownloadDialog()
{
    if (m_worker.joinable()) {
        m_worker.join();
    }
    if (m_core != nullptr) {
        m_core->setObserver(nullptr);
    }
}

void DownloadDialog::build(const std::filesystem::path& strPath)
{
    setObjectName(QStringLiteral("frmDownLoad"));
    setWindowTitle(QStringLiteral("Download"));
    m_observer = new QtRunObserver(this);
    connect(m_observer, &QtRunObserver::labelChanged, this,
            [this](const QString& name, const QString& text) {
                if (auto* label = findChild<QLabel*>(name)) {
                    label->setText(text);
                }
            });

    auto* v = new QVBoxLayout(this);
    auto* grid = new QGridLayout;
    grid->setColumnStretch(1, 1);
    int line = 0;
    for (const tools::DownloadRowEntry& entry : tools::downloadRows()) {
        auto* tick = new QCheckBox(qs(entry.caption));
        tick->setObjectName(qs(entry.tick));
        grid->addWidget(tick, line, 0);
        auto* status = new QLabel;
        status->setObjectName(qs(entry.label));
        status->setMinimumWidth(60);
        grid->addWidget(status, line, 1);
        if (!entry.button.empty()) {
            auto* button = new QPushButton(qs(entry.buttonCaption));
            button->setObjectName(qs(entry.button));
            const int row = static_cast<int>(entry.row);
            connect(button, &QPushButton::clicked, this, [this, row] { unpack(row); });
            grid->addWidget(button, line, 2);
        }
        ++line;
        if (const char* address = addressLabelOf(entry.row)) {
            auto* label = new QLabel;
            label->setObjectName(QString::fromLatin1(address));
            label->setTextInteractionFlags(Qt::TextSelectableByMouse);
            grid->addWidget(label, line, 0, 1, 3);
            ++line;
        }
    }
    v->addLayout(grid);

    auto* overall = new QLabel;
    overall->setObjectName(QStringLiteral("Label5"));
    v->addWidget(overall);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    auto* start = new QPushButton(QStringLiteral("開　始"));
    start->setObjectName(QStringLiteral("cmdStart"));
    connect(start, &QPushButton::clicked, this, [this] { cmdStart_Click(); });
    buttons->addWidget(start);
    auto* ok = new QPushButton(QStringLiteral("終　了"));
    ok->setObjectName(QStringLiteral("cmdOK"));
    connect(ok, &QPushButton::clicked, this, [this] {
        if (!m_busy) {
            accept();
        }
    });
    buttons->addWidget(ok);
    v->addLayout(buttons);

    rememberPlace(*this, "frmDownLoad", strPath / settings::kPositionFileName, QSize(620, 420),
                  QPoint(120, 100));
}

void DownloadDialog::runOnWorker(std::function<void()> work)
{
    if (m_worker.joinable()) {
        m_worker.join();
    }
    setBusy(true);
    m_worker = std::thread([this, work = std::move(work)] {
        work();
        // The window's thread takes the outcome once the core has let go of it.
        QMetaObject::invokeMethod(
            this, [this] { workEnded(); }, Qt::QueuedConnection);
    });
}

void DownloadDialog::workEnded()
{
    if (m_worker.joinable()) {
        m_worker.join();
    }
    setBusy(false);
    showCore();
    Q_EMIT workFinished();
}

void DownloadDialog::showCore()
{
    for (const tools::DownloadRowEntry& entry : tools::downloadRows()) {
        const tools::DownloadRowState& s = m_core->row(entry.row);
        auto* tick = findChild<QCheckBox*>(qs(entry.tick));
        tick->setChecked(s.tick);
        // A file that is already in the program folder is marked on its row.
        QFont font = tick->font();
        font.setBold(s.exists);
        tick->setFont(font);
        tick->setProperty("exists", s.exists);
        tick->setToolTip(s.exists ? qs(s.target.string()) : QString());
        findChild<QLabel*>(qs(entry.label))->setText(qs(m_core->label(entry.label)));
    }
    for (const char* name : kAddressLabels) {
        findChild<QLabel*>(QString::fromLatin1(name))->setText(qs(m_core->label(name)));
    }
}

void DownloadDialog::setBusy(bool busy)
{
    m_busy = busy;
    for (QPushButton* button : findChildren<QPushButton*>()) {
        button->setEnabled(!busy);
    }
    for (QCheckBox* tick : findChildren<QCheckBox*>()) {
        tick->setEnabled(!busy);
    }
}

void DownloadDialog::cmdStart_Click()
{
    if (m_busy) {
        return;
    }
    for (const tools::DownloadRowEntry& entry : tools::downloadRows()) {
        m_core->setTick(entry.row, findChild<QCheckBox*>(qs(entry.tick))->isChecked());
    }
    runOnWorker([core = m_core] { core->cmdStart(); });
}

void DownloadDialog::unpack(int row)
{
    if (m_busy) {
        return;
    }
    // Unpacking is local work on files of a few megabytes at most; its message box is the
    // operator's next step anyway.
    m_core->unpack(static_cast<DownloadRow>(row));
}

void DownloadDialog::reject()
{
    if (!m_busy) {
        QDialog::reject();
    }
}

void DownloadDialog::closeEvent(QCloseEvent* event)
{
    // A running download finishes first: the window stays until it has.
    if (m_busy) {
        event->ignore();
        return;
    }
    QDialog::closeEvent(event);
}

} // namespace vornhale::ui
