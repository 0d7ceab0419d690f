#include "ui/BakCheckDialog.h"

#include "history/HistoryFilesCheck.h"
#include "session/Session.h"
#include "settings/WindowPositions.h"
#include "ui/ViewerDialog.h"
#include "ui/WidgetLook.h"
#include "ui/WindowPlace.h"

#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QTableWidget>
#include <QVBoxLayout>

namespace vornhale::ui {
namespace {

constexpr const char* kHelpTitle = " 　　　　bak_qso.mas 関係ファイルの確認の説明";
constexpr const char* kHelpText =
    "同一行の３種類の各ファイルのサイズ、件数は同じが正常です。\n"
    "bak_qso_mas_name1_p 等のファイル名部分をクリックするとファイルの内容を確認出来ます。\n"
    "参照元ファイルが  ( 使用しない )　の時はサイズ、件数は共に ０ で表示されています。\n"
    "bak_qso_mas_name1_p 等のファイルが作成されていない時はサイズ、件数は共に ０ "
    "で表示されています。\n"
    "bak_qso_mas_name?_p サイズが 　２０ バイト以下の時は作成が異常です。";

// Columns of the grid: the kind, then name, size and lines of the master and of the names.
constexpr int kMasterName = 1;
constexpr int kNamesName = 4;

QTableWidgetItem* cellOf(const QString& text, bool number = false)
{
    auto* item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    if (number) {
        item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    }
    return item;
}

} // namespace

BakCheckDialog::BakCheckDialog(session::Session& session, QWidget* parent)
    : QDialog(parent), m_session(session)
{
    setObjectName(QStringLiteral("frmCheck_bak_qso_mas"));
    const std::filesystem::path& temp = session.folder().Temp_Files;
    rememberPlace(*this, "frmCheck_bak_qso_mas",
                  session.folder().strPath / std::string(settings::kPositionFileName),
                  QSize(780, 260), QPoint(80, 80));
    setWindowTitle(QStringLiteral(" bak_qso.mas 確認 ：　") + qs(temp.string()) +
                   QStringLiteral("bak_qso_mas*"));

    auto* layout = new QVBoxLayout(this);
    auto* bar = new QMenuBar(this);
    bar->addAction(QStringLiteral("説明"))->setObjectName(QStringLiteral("mnuHelp"));
    bar->addAction(QStringLiteral("戻る"))->setObjectName(QStringLiteral("mnuBack"));
    layout->setMenuBar(bar);

    auto* source = new QLabel(QStringLiteral("　参照元ファイル名　") +
                              qs(session.options().value("hamlog_hdb_dir")));
    source->setObjectName(QStringLiteral("Label1"));
    layout->addWidget(source);
    auto* heads = new QLabel(QStringLiteral("　No QSLにする条件　　　　") +
                             QStringLiteral("　  ファイル名 　 | 　サイズ  | 　件数  "));
    heads->setObjectName(QStringLiteral("Label2"));
    layout->addWidget(heads);

    m_grid = new QTableWidget(0, 7);
    m_grid->setObjectName(QStringLiteral("Grid1"));
    m_grid->setHorizontalHeaderLabels({QStringLiteral("No QSLにする条件"),
                                       QStringLiteral("ファイル名"), QStringLiteral("サイズ"),
                                       QStringLiteral("件数"), QStringLiteral("ファイル名"),
                                       QStringLiteral("サイズ"), QStringLiteral("件数")});
    m_grid->verticalHeader()->hide();
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    layout->addWidget(m_grid, 1);

    const auto rows = history::checkHistoryFiles(temp);
    m_grid->setRowCount(static_cast<int>(rows.size()));
    for (int r = 0; r < static_cast<int>(rows.size()); ++r) {
        const history::HistoryFilesRow& row = rows[static_cast<std::size_t>(r)];
        m_grid->setItem(r, 0, cellOf(qs(row.condition)));
        int col = kMasterName;
        for (const history::CheckedFile* f : {&row.master, &row.names}) {
            auto* name = cellOf(qs(f->name));
            if (f->exists) {
                name->setForeground(QColor(0, 0, 192));
            }
            m_grid->setItem(r, col, name);
            m_grid->setItem(r, col + 1, cellOf(QString::number(f->size), true));
            m_grid->setItem(r, col + 2, cellOf(QString::number(f->lines), true));
            col = kNamesName;
        }
    }
    const int widths[] = {150, 170, 60, 60, 170, 60, 60};
    for (int col = 0; col < 7; ++col) {
        m_grid->setColumnWidth(col, widths[col]);
    }

    connect(m_grid, &QTableWidget::cellClicked, this,
            [this](int row, int col) { showFileAt(row, col); });
    connect(bar->actions().at(0), &QAction::triggered, this, [this] {
        m_session.dialogs().message(kHelpTitle, kHelpText, base::Dialogs::Icon::Information);
    });
    connect(bar->actions().at(1), &QAction::triggered, this, [this] { accept(); });
}

void BakCheckDialog::showFileAt(int row, int col)
{
    if (col != kMasterName && col != kNamesName) {
        return;
    }
    const QTableWidgetItem* item = m_grid->item(row, col);
    if (item == nullptr) {
        return;
    }
    const std::filesystem::path file = m_session.folder().Temp_Files / utf8(item->text());
    std::error_code ec;
    if (!std::filesystem::is_regular_file(file, ec)) {
        return;
    }
    ViewerDialog viewer(session::ViewerWindow::frmDisp, file, m_session.input().in_name,
                        m_session.folder().strPath / std::string(settings::kPositionFileName),
                        this);
    viewer.exec();
}

} // namespace vornhale::ui
