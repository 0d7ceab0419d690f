#include "ui/GetMngDialog.h"

#include "engine/ManagerWalk.h"
#include "engine/RunContext.h"
#include "failure/Failure.h"
#include "manager/BatchManagerWalk.h"
#include "manager/WebManagerSearch.h"
#include "net/Http.h"
#include "session/Session.h"
#include "settings/WindowPositions.h"
#include "ui/QtRunObserver.h"
#include "ui/WidgetLook.h"
#include "ui/WindowPlace.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <optional>
#include <string>

namespace vornhale::ui {
namespace {

/// The call sign the search boxes show when the window opens.
constexpr const char* kSampleCall = "XX9TST";
constexpr const char* kCaptionTail = " ＭＮＧ取得";
constexpr const char* kWalkEnded = "ＭＮＧ取得終了";

/// The display labels of the search, in their order on the window.
constexpr const char* kSearchLabels[] = {"Label33", "Label34", "Label31", "Label32",
                                         "Label28", "Label29", "Label30", "Label45"};

/// Whether the walk reads this kind of input at all.
bool walkable(const std::string& f_type)
{
    return f_type == "all" || f_type == "txt" || f_type == "zlo" || f_type == "log";
}

/// A usable input is a path; a rejection leaves a message in its place.
bool inputOpen(const std::string& in_name)
{
    return in_name.find('/') != std::string::npos || in_name.find('\\') != std::string::npos;
}

/// How a walk on the worker thread ended.
struct WalkOutcome
{
    engine::ManagerWalkResult grid;
    std::optional<failure::Failure> failure;
    bool ended = false; ///< `cmdStop` ended the program
};

} // namespace

GetMngDialog::GetMngDialog(session::Session& session, base::Dialogs& dialogs, Hooks hooks,
                           QWidget* parent)
    : QDialog(parent), m_session(session), m_dialogs(dialogs), m_hooks(std::move(hooks))
{
    setObjectName(QStringLiteral("frmGet_MNG"));
    m_observer = new QtRunObserver(this);
    connect(m_observer, &QtRunObserver::labelChanged, this,
            [this](const QString& name, const QString& text) {
                if (auto* label = findChild<QLabel*>(name)) {
                    label->setText(text);
                    if (name == QLatin1String("Label45")) {
                        setCaptionColour(label, text == QStringLiteral("取 得 成 功")
                                                    ? base::Colour::Blue
                                                    : base::Colour::Red);
                    }
                } else if (auto* box = findChild<QLineEdit*>(name)) {
                    box->setText(text);
                }
            });

    auto* v = new QVBoxLayout(this);
    buildMenus();
    v->setMenuBar(findChild<QMenuBar*>(QStringLiteral("frmGet_MNGMenu")));
    v->addWidget(buildSearchPanel());

    m_grid = new QTableWidget(this);
    m_grid->setObjectName(QStringLiteral("MSFlexGrid1"));
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_grid->verticalHeader()->setVisible(false);
    m_grid->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    v->addWidget(m_grid, 1);

    auto* state = new QHBoxLayout;
    auto* label1 = new QLabel;
    label1->setObjectName(QStringLiteral("Label1"));
    state->addWidget(label1, 1);
    auto* label2 = new QLabel;
    label2->setObjectName(QStringLiteral("Label2"));
    state->addWidget(label2);
    v->addLayout(state);

    // Form_Load_GetMng: the sample call, the interval box, the tick from its setting.
    findChild<QLineEdit*>(QStringLiteral("Text1"))->setText(QString::fromLatin1(kSampleCall));
    settings::Options& options = m_session.options();
    if (options.value("GetMng_Interval").empty()) {
        options.set("GetMng_Interval", "2");
    }
    auto* combo = findChild<QComboBox*>(QStringLiteral("Combo1"));
    combo->setCurrentText(qs(options.value("GetMng_Interval")));
    connect(combo, &QComboBox::currentTextChanged, this, [this](const QString& text) {
        m_session.options().set("GetMng_Interval", utf8(text));
    });
    const std::string& useWeb = options.value("Get_MNG_use_web");
    auto* tick = findChild<QCheckBox*>(QStringLiteral("Check1"));
    tick->setChecked(useWeb.empty() || useWeb == "1");
    connect(tick, &QCheckBox::toggled, this,
            [this](bool on) { m_session.options().set("Get_MNG_use_web", on ? "1" : "0"); });
    resetGrid();
    showCaption();

    rememberPlace(*this, "frmGet_MNG", m_session.folder().strPath / settings::kPositionFileName,
                  QSize(820, 560), QPoint(80, 60));
}

GetMngDialog::~GetMngDialog()
{
    if (m_worker.joinable()) {
        // A walk still running stops at its next yield.
        m_stop = true;
        m_worker.join();
    }
}

void GetMngDialog::buildMenus()
{
    auto* bar = new QMenuBar(this);
    bar->setObjectName(QStringLiteral("frmGet_MNGMenu"));
    QMenu* file = bar->addMenu(QStringLiteral("ファイル"));
    file->setObjectName(QStringLiteral("mnuFile"));
    auto entry = [this](QMenu* menu, const char* name, const QString& caption,
                        std::function<void()> handler) {
        auto* action = menu->addAction(caption);
        action->setObjectName(QString::fromLatin1(name));
        connect(action, &QAction::triggered, this, std::move(handler));
        return action;
    };
    entry(file, "mnuFileOpen_all_txt_set",
          QStringLiteral("( ＊．ALL ，＊．TXT )  を 指定フォルダから選ぶ"),
          [this] { openBy("mnuOpen_all_txt_set"); });
    entry(file, "mnuFileOpen_z_set", QStringLiteral("( ＊．ZLO ) を 指定フォルダから選ぶ"),
          [this] { openBy("mnuOpen_z_set"); });
    entry(file, "mnuFileOpen_rtcl_log_set",
          QStringLiteral("RTCL 新 ( ＊．LOG ) を 指定フォルダから選ぶ"),
          [this] { openBy("mnuOpen_rtcl_log_set_new"); });
    auto* walk = bar->addAction(QStringLiteral("MNG 取得"));
    walk->setObjectName(QStringLiteral("mnuGet_MNG"));
    connect(walk, &QAction::triggered, this, [this] { mnuGet_MNG_Click(); });
    auto* stop = bar->addAction(QStringLiteral("Stop"));
    stop->setObjectName(QStringLiteral("mnuStop"));
    connect(stop, &QAction::triggered, this, [this] { cmdStop_Click(); });
    auto* main = bar->addAction(QStringLiteral("Main"));
    main->setObjectName(QStringLiteral("mnuMain"));
    connect(main, &QAction::triggered, this, [this] { reject(); });
}

QWidget* GetMngDialog::buildSearchPanel()
{
    auto* panel = new QWidget(this);
    auto* grid = new QGridLayout(panel);
    grid->setContentsMargins(0, 0, 0, 0);

    auto* tick = new QCheckBox(QStringLiteral("Web でのＭＮＧ検索を実行"));
    tick->setObjectName(QStringLiteral("Check1"));
    grid->addWidget(tick, 0, 0, 1, 2);
    auto* combo = new QComboBox;
    combo->setObjectName(QStringLiteral("Combo1"));
    for (int i = 1; i <= 10; ++i) {
        combo->addItem(QString::number(i));
    }
    grid->addWidget(combo, 0, 2);
    auto* stop = new QPushButton(QStringLiteral("Stop"));
    stop->setObjectName(QStringLiteral("cmdStop"));
    connect(stop, &QPushButton::clicked, this, [this] { cmdStop_Click(); });
    grid->addWidget(stop, 0, 3);

    auto* text1 = new QLineEdit;
    text1->setObjectName(QStringLiteral("Text1"));
    grid->addWidget(text1, 1, 0);
    auto* text2 = new QLineEdit;
    text2->setObjectName(QStringLiteral("Text2"));
    grid->addWidget(text2, 1, 1);
    // The button carries the service's label, "Dalmuir" until the settings name another.
    const std::string& service = m_session.options().value("mng_search_url");
    auto* submit = new QPushButton(service.empty() ? QStringLiteral("Dalmuir") : qs(service));
    submit->setObjectName(QStringLiteral("cmdSubmit"));
    connect(submit, &QPushButton::clicked, this, [this] {
        // The window's own search of the call directory, by hand; it merges nothing.
        const std::string call =
            utf8(findChild<QLineEdit*>(QStringLiteral("Text2"))->text().trimmed().toUpper());
        if (call.empty() || m_walking) {
            return;
        }
        if (m_worker.joinable()) {
            m_worker.join();
        }
        m_walking = true;
        const base::ProgramFolder& folder = m_session.folder();
        const std::string file = m_session.reference().managers().MNG_lookup(call);
        m_worker =
            std::thread([this, call, file, strPath = folder.strPath, drive = folder.drive_path] {
                const manager::WebManagerSearch web(net::WebConfig::load(strPath), strPath, drive);
                manager::WebManagerSearch::show(web.callDirectory(call, file), *m_observer);
                QMetaObject::invokeMethod(
                    this,
                    [this] {
                        m_worker.join();
                        m_walking = false;
                        Q_EMIT walkFinished();
                    },
                    Qt::QueuedConnection);
            });
    });
    grid->addWidget(submit, 1, 2);

    int column = 0;
    for (const char* name : kSearchLabels) {
        auto* label = new QLabel;
        label->setObjectName(QString::fromLatin1(name));
        label->setMinimumWidth(70);
        grid->addWidget(label, 2 + column / 4, column % 4);
        ++column;
    }
    return panel;
}

void GetMngDialog::resetGrid()
{
    const auto& columns = manager::BatchManagerWalk::columns();
    m_grid->clear();
    m_grid->setColumnCount(static_cast<int>(columns.size()));
    QStringList heads;
    for (const manager::WalkColumn& c : columns) {
        heads << qs(c.head);
    }
    m_grid->setHorizontalHeaderLabels(heads);
    m_grid->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
        m_grid->setColumnWidth(i, columns[static_cast<std::size_t>(i)].width / kTwipsPerPixel);
    }
    // The head row is the table's header: the grid's other rows are the table's rows.
    m_grid->setRowCount(static_cast<int>(manager::BatchManagerWalk::kInitialGridRows - 1));
}

void GetMngDialog::showRow(const manager::WalkRow& row, int gridRow, int tableRows)
{
    if (m_grid->rowCount() < tableRows) {
        m_grid->setRowCount(tableRows);
    }
    int c = 0;
    for (const std::string& cell : row.cells()) {
        m_grid->setItem(gridRow, c++, new QTableWidgetItem(qs(cell)));
    }
    m_grid->scrollToItem(m_grid->item(gridRow, 0));
    Q_EMIT rowShown(gridRow);
}

void GetMngDialog::showCaption()
{
    const std::string& in_name = m_session.input().in_name;
    const QString name = inputOpen(in_name) ? QFileInfo(qs(in_name)).fileName() : QString();
    setWindowTitle(name + QString::fromUtf8(kCaptionTail));
}

void GetMngDialog::openBy(std::string_view mainMenu)
{
    if (m_walking || !m_hooks.open) {
        return;
    }
    m_hooks.open(mainMenu);
    showCaption();
    loadCalls();
}

void GetMngDialog::loadCalls()
{
    resetGrid();
    findChild<QLabel*>(QStringLiteral("Label2"))->clear();
    const readers::InputState& input = m_session.input();
    if (!inputOpen(input.in_name) || !walkable(input.f_type)) {
        return;
    }
    // The calls alone: a walk without the web, of which the grid shows the numbers and calls.
    base::RunObserver silent;
    engine::RunContext ctx{m_session.options(),
                           m_session.folder(),
                           m_session.trace(),
                           silent,
                           m_dialogs,
                           m_session.programState(),
                           m_session.reference().entities(),
                           {}};
    ctx.options.replaceForRun("Get_MNG_use_web", "0");
    static_cast<readers::InputState&>(ctx.run) = input;
    try {
        const engine::ManagerWalkResult grid = engine::mnuGet_MNG_Click(ctx, m_session.reference());
        m_grid->setRowCount(static_cast<int>(grid.gridRows - 1));
        int r = 0;
        for (const manager::WalkRow& row : grid.rows) {
            m_grid->setItem(r, 0, new QTableWidgetItem(qs(row.No)));
            m_grid->setItem(r, 1, new QTableWidgetItem(qs(row.Calls)));
            ++r;
        }
        findChild<QLabel*>(QStringLiteral("Label2"))
            ->setText(qs(manager::BatchManagerWalk::counterText(0, r)));
    } catch (const failure::Failure& f) {
        if (m_hooks.fail) {
            m_hooks.fail(f);
        }
    }
}

void GetMngDialog::mnuGet_MNG_Click()
{
    if (m_walking) {
        return;
    }
    if (m_worker.joinable()) {
        m_worker.join();
    }
    findChild<QLabel*>(QStringLiteral("Label1"))->clear();
    resetGrid();
    const readers::InputState& input = m_session.input();
    if (!inputOpen(input.in_name) || !walkable(input.f_type)) {
        // No walker reads this input: the walk ends at once.
        auto* state = findChild<QLabel*>(QStringLiteral("Label1"));
        state->setText(QString::fromUtf8(kWalkEnded));
        setCaptionColour(state, base::Colour::Blue);
        Q_EMIT walkFinished();
        return;
    }
    m_walking = true;
    m_stop = false;
    m_worker = std::thread([this, options = m_session.options(), run = input] {
        auto outcome = std::make_shared<WalkOutcome>();
        engine::RunContext ctx{options,
                               m_session.folder(),
                               m_session.trace(),
                               *m_observer,
                               m_dialogs,
                               m_session.programState(),
                               m_session.reference().entities(),
                               {}};
        static_cast<readers::InputState&>(ctx.run) = run;
        // Each row goes to the grid as it is walked, as the window of old filled it.
        auto rowWalked = [this](const manager::WalkRow& row, long number, long gridRows) {
            QMetaObject::invokeMethod(
                this,
                [this, row, number, gridRows] {
                    showRow(row, static_cast<int>(number - 1), static_cast<int>(gridRows - 1));
                },
                Qt::QueuedConnection);
        };
        try {
            outcome->grid = engine::mnuGet_MNG_Click(ctx, m_session.reference(),
                                                     [this] { return m_stop.load(); }, rowWalked);
        } catch (const failure::Failure& f) {
            outcome->failure = f;
        } catch (const failure::ProgramEnd&) {
            outcome->ended = true;
        }
        QMetaObject::invokeMethod(
            this,
            [this, outcome] {
                m_worker.join();
                m_walking = false;
                if (outcome->failure) {
                    if (m_hooks.fail) {
                        m_hooks.fail(*outcome->failure);
                    }
                    return;
                }
                if (outcome->ended) {
                    return;
                }
                // The rows are in the grid already; the walk's own grid settles its size.
                m_grid->setRowCount(static_cast<int>(outcome->grid.gridRows - 1));
                setCaptionColour(findChild<QLabel*>(QStringLiteral("Label1")), base::Colour::Blue);
                Q_EMIT walkFinished();
            },
            Qt::QueuedConnection);
    });
}

void GetMngDialog::cmdStop_Click()
{
    // One yield, so that what was pressed before is seen; then the program ends, walk or not.
    QApplication::processEvents();
    m_stop = true;
    if (m_hooks.endProgram) {
        m_hooks.endProgram(0);
    }
}

void GetMngDialog::reject()
{
    if (!m_walking) {
        QDialog::reject();
    }
}

void GetMngDialog::closeEvent(QCloseEvent* event)
{
    // The walk has no orderly stop: the window stays until it ends, or `cmdStop` ends all.
    if (m_walking) {
        event->ignore();
        return;
    }
    QDialog::closeEvent(event);
}

} // namespace vornhale::ui
