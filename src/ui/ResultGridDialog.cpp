#include "ui/ResultGridDialog.h"

#include "failure/Failure.h"
#include "session/Session.h"
#include "settings/SettingsFiles.h"
#include "settings/WindowPositions.h"
#include "ui/WidgetLook.h"
#include "ui/WindowPlace.h"

#include <QCheckBox>
#include <QEvent>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollBar>
#include <QTableWidget>
#include <QVBoxLayout>
#include <exception>

namespace vornhale::ui {
namespace {

using tools::GridCell;
using tools::ResultGrid;

constexpr const char* kHelpTitle = "　　編集方法の説明";
constexpr const char* kHelpLines[] = {
    "編集するセルにカーソルを合わせて 「 Ｅｎｔｅｒ 」 キーを押して下さい。",
    "セルが黄色に変わります。 空白欄なら文字を挿入して下さい。",
    "すでに入力されている欄の場合には、適宜、編集して下さい。",
    "「 Ｅｎｔｅｒ 」 キーを押せば確定します。",
    "小文字は大文字に自動変換されます。",
};

std::string joinedHelp()
{
    std::string text;
    for (const char* line : kHelpLines) {
        if (!text.empty()) {
            text += '\n';
        }
        text += line;
    }
    return text;
}

QLabel* namedLabel(const char* name, const QString& text = {})
{
    auto* label = new QLabel(text);
    label->setObjectName(QString::fromUtf8(name));
    return label;
}

} // namespace

ResultGridDialog::ResultGridDialog(const tools::GridForm& form, session::Session& session,
                                   std::filesystem::path file, std::function<void()> endProgram,
                                   QWidget* parent)
    : QDialog(parent), m_form(form), m_session(session), m_file(std::move(file)),
      m_endProgram(std::move(endProgram))
{
    setObjectName(qs(form.form));
    setWindowTitle(qs(form.form) + QStringLiteral("  ") + qs(m_file.string()));
    const std::filesystem::path positionFile =
        session.folder().strPath / std::string(settings::kPositionFileName);
    rememberPlace(*this, form.form, positionFile, QSize(1000, 640), QPoint(20, 20));

    // The grid works on the settings as the last run left them in the working copy.
    m_session.files().ini_read_old();
    const ResultGrid::WidthChoice choice = ResultGrid::widthsAtLoad(m_session.options(), m_form);
    m_session.files().ini_write_old();

    auto* layout = new QVBoxLayout(this);
    auto* bar = new QMenuBar(this);
    auto* mnuMain = bar->addAction(QStringLiteral("[ メイン画面へ ]"));
    mnuMain->setObjectName(QStringLiteral("mnuMain"));
    auto* mnuEditHelp = bar->addAction(QStringLiteral("[ 編集方法説明 ]"));
    mnuEditHelp->setObjectName(QStringLiteral("mnuEditHelp"));
    auto* mnuEnd = bar->addAction(QStringLiteral("[ 終了 ]"));
    mnuEnd->setObjectName(QStringLiteral("mnuEnd"));
    layout->setMenuBar(bar);

    auto* top = new QHBoxLayout;
    m_check1 = new QCheckBox(QStringLiteral("初期値の幅"));
    m_check1->setObjectName(QStringLiteral("Check1"));
    m_check1->setToolTip(QStringLiteral("セル幅を初期値に戻します。"));
    m_check1->setChecked(choice.Check1);
    setCaptionColour(m_check1, choice.Check1 ? base::Colour::Blue : base::Colour::Black);
    auto* getWidths = new QPushButton(QStringLiteral("セル幅 保存"));
    getWidths->setObjectName(QStringLiteral("cmdGet_ColWidth"));
    getWidths->setToolTip(QStringLiteral("現在のセル幅を取得して　INI ファイルに保存します。"));
    m_save = new QPushButton(QStringLiteral("上書き保存"));
    m_save->setObjectName(QStringLiteral("cmdSave"));
    auto* end = new QPushButton(QStringLiteral("終　了"));
    end->setObjectName(QStringLiteral("cmdEnd"));
    m_label1 = namedLabel("Label1");
    m_label2 = namedLabel("Label2");
    m_label3 = namedLabel("Label3");
    // Enter belongs to the grid and its edit box, never to a default button.
    for (QPushButton* b : {getWidths, m_save, end}) {
        b->setAutoDefault(false);
    }
    top->addWidget(m_check1);
    top->addWidget(getWidths);
    top->addWidget(m_save);
    top->addWidget(m_label1);
    top->addWidget(m_label2);
    top->addWidget(m_label3);
    top->addStretch();
    top->addWidget(end);
    layout->addLayout(top);

    auto* summary = namedLabel("Label4", qs(ResultGrid::noQslSummary(m_session.options())));
    layout->addWidget(summary);
    layout->addWidget(
        namedLabel("Label5", QStringLiteral("   In : ") + qs(m_session.input().in_name)));
    layout->addWidget(namedLabel("Label6", QStringLiteral("Out: ") + qs(m_file.string())));

    auto* middle = new QHBoxLayout;
    m_grid = new QTableWidget(0, ResultGrid::kColumns);
    m_grid->setObjectName(qs(form.grid));
    m_grid->verticalHeader()->hide();
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_grid->setSelectionMode(QAbstractItemView::SingleSelection);
    m_grid->setTabKeyNavigation(false);
    m_grid->horizontalHeader()->setHighlightSections(false);
    m_grid->installEventFilter(this);
    // The widths are those of a fixed-pitch face of half-width characters six pixels wide at
    // nine points; a face of that pitch keeps the fields within them.
    QFont cells = font();
    if (QFontDatabase::families().contains(QStringLiteral("Noto Sans Mono CJK JP"))) {
        cells.setFamily(QStringLiteral("Noto Sans Mono CJK JP"));
    } else {
        cells.setStyleHint(QFont::Monospace);
    }
    cells.setPointSize(9);
    m_grid->setFont(cells);
    m_grid->setStyleSheet(QStringLiteral("QTableView::item { padding: 0px 1px; }"));
    middle->addWidget(m_grid, 1);

    // The two small boxes beside the grid only catch the focus, one cell on and one back.
    auto* catchers = new QVBoxLayout;
    m_text2 = new QLineEdit;
    m_text2->setObjectName(QStringLiteral("Text2"));
    m_text3 = new QLineEdit;
    m_text3->setObjectName(QStringLiteral("Text3"));
    for (QLineEdit* box : {m_text2, m_text3}) {
        box->setFixedSize(6, 6);
        box->installEventFilter(this);
        catchers->addWidget(box);
    }
    catchers->addStretch();
    middle->addLayout(catchers);
    layout->addLayout(middle, 1);
    setTabOrder(m_text3, m_grid);
    setTabOrder(m_grid, m_text2);

    m_text1 = new QLineEdit(m_grid->viewport());
    m_text1->setObjectName(QStringLiteral("Text1"));
    m_text1->setStyleSheet(QStringLiteral("QLineEdit { background: yellow; color: black; }"));
    m_text1->clear();
    m_text1->hide();
    m_text1->installEventFilter(this);

    setWidths(choice.widths);
    DataRead();

    connect(m_check1, &QCheckBox::toggled, this, [this](bool on) {
        setCaptionColour(m_check1, on ? base::Colour::Blue : base::Colour::Black);
        ReDataRead();
    });
    connect(getWidths, &QPushButton::clicked, this, [this] { cmdGet_ColWidth_Click(); });
    connect(m_save, &QPushButton::clicked, this, [this] { cmdSave_Click(); });
    const auto endAll = [this] {
        savePlace(*this, m_form.form,
                  m_session.folder().strPath / std::string(settings::kPositionFileName));
        if (m_endProgram) {
            m_endProgram();
        }
        reject();
    };
    connect(end, &QPushButton::clicked, this, endAll);
    connect(mnuEnd, &QAction::triggered, this, endAll);
    connect(mnuMain, &QAction::triggered, this, [this] { accept(); });
    connect(mnuEditHelp, &QAction::triggered, this, [this] {
        m_session.dialogs().message(kHelpTitle, joinedHelp(), base::Dialogs::Icon::Information);
    });
    // A move of the cursor or a scroll stores what the box holds.
    connect(m_grid, &QTableWidget::currentCellChanged, this, [this](int row, int col) {
        if (m_filling) {
            return;
        }
        confirmEdit();
        if (row >= 0 && col == 0) {
            m_grid->setCurrentCell(row, 1);
        }
    });
    for (QScrollBar* bar : {m_grid->verticalScrollBar(), m_grid->horizontalScrollBar()}) {
        connect(bar, &QScrollBar::valueChanged, this, [this] { confirmEdit(); });
    }
}

void ResultGridDialog::setWidths(const std::array<int, ResultGrid::kColumns>& twips)
{
    QStringList heads;
    for (const std::string& h : ResultGrid::headers()) {
        heads << qs(h);
    }
    m_grid->setHorizontalHeaderLabels(heads);
    for (int col = 0; col < ResultGrid::kColumns; ++col) {
        m_grid->setColumnWidth(col, twips[static_cast<std::size_t>(col)] / kTwipsPerPixel);
    }
}

void ResultGridDialog::DataRead()
{
    m_filling = true;
    m_text1->hide();
    try {
        m_model.DataRead(m_file, m_session.trace());
    } catch (const failure::Failure& f) {
        m_session.trace().line("エラー発生 ：　" + std::to_string(f.number()));
        m_session.trace().line("エラー内容 ：　" + f.description());
    }
    m_grid->clearContents();
    m_grid->setRowCount(m_model.rows());
    const int rowHeight = m_grid->fontMetrics().height() + 6;
    for (int row = 1; row <= m_model.rows(); ++row) {
        for (int col = 0; col < ResultGrid::kColumns; ++col) {
            auto* item = new QTableWidgetItem(qs(m_model.cell(row, col)));
            if (col == 0) {
                item->setFlags(Qt::ItemIsEnabled);
                item->setBackground(palette().button());
            }
            m_grid->setItem(row - 1, col, item);
        }
        m_grid->setRowHeight(row - 1, rowHeight);
    }
    if (m_model.rows() > 0) {
        m_grid->setCurrentCell(0, 1);
    }
    m_filling = false;
}

void ResultGridDialog::ReDataRead()
{
    setWidths(ResultGrid::widthsFor(m_check1->isChecked(), m_session.options(), m_form));
    DataRead();
}

void ResultGridDialog::cmdGet_ColWidth_Click()
{
    try {
        std::array<int, ResultGrid::kColumns> widths{};
        for (int col = 0; col < ResultGrid::kColumns; ++col) {
            widths[static_cast<std::size_t>(col)] = m_grid->columnWidth(col) * kTwipsPerPixel;
        }
        ResultGrid::storeWidths(m_session.options(), m_form, widths, m_check1->isChecked());
        m_session.files().ini_write_old();
    } catch (const failure::Failure& f) {
        m_session.dialogs().message("", "エラー発生 ：　" + std::to_string(f.number()),
                                    base::Dialogs::Icon::Exclamation);
    }
}

void ResultGridDialog::cmdSave_Click()
{
    confirmEdit();
    m_label1->clear();
    m_label2->clear();
    m_label3->clear();
    m_save->setEnabled(false);
    try {
        m_model.cmdSave(m_file);
    } catch (const failure::Failure& f) {
        m_session.trace().line("エラー発生 ：　" + std::to_string(f.number()));
        m_session.dialogs().message("", "エラー発生 ：　" + std::to_string(f.number()),
                                    base::Dialogs::Icon::Exclamation);
        m_save->setEnabled(true);
        return;
    }
    m_save->setEnabled(true);
    m_label1->setText(QStringLiteral("上書き保存終了"));
}

GridCell ResultGridDialog::current() const
{
    return {m_grid->currentRow() + 1, std::max(1, m_grid->currentColumn())};
}

void ResultGridDialog::moveTo(GridCell cell)
{
    m_grid->setCurrentCell(cell.row - 1, cell.col);
}

void ResultGridDialog::beginEdit()
{
    if (m_model.rows() == 0 || m_grid->currentRow() < 0) {
        return;
    }
    m_editing = current();
    QTableWidgetItem* item = m_grid->item(m_editing.row - 1, m_editing.col);
    m_text1->setText(item != nullptr ? item->text() : QString());
    m_text1->setGeometry(m_grid->visualItemRect(item));
    m_text1->show();
    m_text1->setFocus();
    m_text1->end(false);
}

void ResultGridDialog::confirmEdit()
{
    if (!m_text1->isVisible()) {
        return;
    }
    m_text1->hide();
    const QString text = m_text1->text();
    m_model.setCell(m_editing.row, m_editing.col, utf8(text));
    if (QTableWidgetItem* item = m_grid->item(m_editing.row - 1, m_editing.col)) {
        item->setText(text);
    }
    m_grid->setFocus();
}

void ResultGridDialog::dropEdit()
{
    m_text1->hide();
    m_grid->setFocus();
}

bool ResultGridDialog::gridKey(QEvent* event)
{
    auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter || key->key() == Qt::Key_F2) {
        beginEdit();
        return true;
    }
    // A character beyond ASCII (typed through an input method) opens the box too.
    if (!key->text().isEmpty() && key->text().at(0).unicode() > 127) {
        beginEdit();
        return true;
    }
    return false;
}

bool ResultGridDialog::textKey(QObject* watched, QEvent* event)
{
    if (watched != m_text1) {
        return false;
    }
    auto* key = static_cast<QKeyEvent*>(event);
    const int last = m_model.rows();
    switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Tab: {
        const GridCell at = m_editing;
        confirmEdit();
        moveTo(ResultGrid::afterConfirm(at, m_downward, last));
        return true;
    }
    case Qt::Key_Escape:
        dropEdit();
        return true;
    case Qt::Key_Up:
    case Qt::Key_Down: {
        const GridCell at = m_editing;
        confirmEdit();
        moveTo(ResultGrid::afterArrow(at, key->key() == Qt::Key_Up ? -1 : 1, last));
        return true;
    }
    default:
        break;
    }
    const QString typed = key->text();
    if (typed.size() == 1 && (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == 0) {
        const char32_t ch = typed.at(0).unicode();
        const char32_t upper = ResultGrid::typed(ch);
        if (upper != ch) {
            m_text1->insert(QString(QChar(static_cast<char16_t>(upper))));
            return true;
        }
    }
    return false;
}

bool ResultGridDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        if (watched == m_grid && !m_text1->isVisible()) {
            return gridKey(event);
        }
        return textKey(watched, event);
    }
    if (event->type() == QEvent::ShortcutOverride && watched == m_text1) {
        // Escape and Enter belong to the box while it is open, not to the dialog.
        const int k = static_cast<QKeyEvent*>(event)->key();
        if (k == Qt::Key_Escape || k == Qt::Key_Return || k == Qt::Key_Enter) {
            event->accept();
            return true;
        }
    }
    if (event->type() == QEvent::FocusIn && (watched == m_text2 || watched == m_text3)) {
        if (m_model.rows() > 0) {
            const GridCell at = current();
            moveTo(watched == m_text2 ? ResultGrid::cellOn(at, m_model.rows())
                                      : ResultGrid::cellBack(at));
        }
        m_grid->setFocus();
        return false;
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace vornhale::ui
