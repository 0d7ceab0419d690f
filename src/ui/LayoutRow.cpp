#include "ui/LayoutRow.h"

#include "settings/LayoutModel.h"
#include "ui/OptionBinder.h"
#include "ui/WidgetLook.h"

#include <QApplication>
#include <QCursor>
#include <QDrag>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace vornhale::ui {
namespace {

using settings::LayoutModel;

// What a drag carries: "P:<item>" from the palette, "C:<row>:<index>" from a cell.
QMimeData* itemMime(const QString& what, const QString& caption)
{
    auto* mime = new QMimeData;
    mime->setData(LayoutRow::kMimeType, what.toUtf8());
    mime->setText(caption);
    return mime;
}

void startDrag(QWidget* source, QMimeData* mime)
{
    auto* drag = new QDrag(source);
    drag->setMimeData(mime);
    drag->setPixmap(source->grab());
    drag->exec(Qt::MoveAction | Qt::CopyAction, Qt::MoveAction);
}

/// A palette button: a press and a move drag the item.
class PaletteButton : public QPushButton
{
public:
    PaletteButton(int item, QWidget* parent) : QPushButton(parent), m_item(item) {}

protected:
    void mousePressEvent(QMouseEvent* event) override
    {
        m_pressAt = event->position().toPoint();
        QPushButton::mousePressEvent(event);
    }
    void mouseMoveEvent(QMouseEvent* event) override
    {
        if ((event->buttons() & Qt::LeftButton) == 0 ||
            (event->position().toPoint() - m_pressAt).manhattanLength() <
                QApplication::startDragDistance()) {
            QPushButton::mouseMoveEvent(event);
            return;
        }
        setDown(false);
        startDrag(this, itemMime(QStringLiteral("P:%1").arg(m_item), text()));
    }

private:
    int m_item;
    QPoint m_pressAt;
};

/// A layout cell: takes drops, and a filled cell can be dragged to another cell.
class LayoutCell : public QLabel
{
public:
    LayoutCell(LayoutRow& row, int rowNumber, int index, QWidget* parent)
        : QLabel(parent), m_row(row), m_rowNumber(rowNumber), m_index(index)
    {
        setAcceptDrops(true);
        setFrameStyle(QFrame::Panel | QFrame::Sunken);
        setAlignment(Qt::AlignCenter);
        setAutoFillBackground(true);
    }

protected:
    void mousePressEvent(QMouseEvent* event) override { m_pressAt = event->position().toPoint(); }
    void mouseMoveEvent(QMouseEvent* event) override
    {
        if ((event->buttons() & Qt::LeftButton) == 0 || text().isEmpty() ||
            (event->position().toPoint() - m_pressAt).manhattanLength() <
                QApplication::startDragDistance()) {
            return;
        }
        startDrag(this, itemMime(QStringLiteral("C:%1:%2").arg(m_rowNumber).arg(m_index), text()));
    }
    void dragEnterEvent(QDragEnterEvent* event) override
    {
        if (event->mimeData()->hasFormat(LayoutRow::kMimeType)) {
            event->acceptProposedAction();
        }
    }
    void dragMoveEvent(QDragMoveEvent* event) override
    {
        if (event->mimeData()->hasFormat(LayoutRow::kMimeType)) {
            event->acceptProposedAction();
        }
    }
    void dropEvent(QDropEvent* event) override
    {
        const QString what = QString::fromUtf8(event->mimeData()->data(LayoutRow::kMimeType));
        const QStringList parts = what.split(QLatin1Char(':'));
        if (parts.size() == 2 && parts[0] == QLatin1String("P")) {
            m_row.dropPalette(parts[1].toInt(), m_rowNumber, m_index);
        } else if (parts.size() == 3 && parts[0] == QLatin1String("C")) {
            m_row.dropCell(parts[1].toInt(), parts[2].toInt(), m_rowNumber, m_index);
        } else {
            return;
        }
        event->acceptProposedAction();
    }

private:
    LayoutRow& m_row;
    int m_rowNumber;
    int m_index;
    QPoint m_pressAt;
};

QFont cjkFont(bool fixedPitch)
{
    // The palette and the first row in a fixed-pitch face, the second in a proportional one,
    // both at 9 points.
    const QString family =
        fixedPitch ? QStringLiteral("Noto Sans Mono CJK JP") : QStringLiteral("Noto Sans CJK JP");
    QFont font = QApplication::font();
    if (QFontDatabase::families().contains(family)) {
        font.setFamily(family);
    }
    font.setPointSize(9);
    return font;
}

} // namespace

LayoutRow::LayoutRow(LayoutModel& layout, OptionBinder& binder, QWidget* parent)
    : QGroupBox(QStringLiteral(" 配  置 "), parent), m_layout(layout)
{
    setObjectName(QStringLiteral("layoutFrame"));
    auto* outer = new QVBoxLayout(this);

    auto* paletteRow = new QHBoxLayout;
    paletteRow->setSpacing(2);
    for (std::size_t i = 0; i < LayoutModel::kItems; ++i) {
        auto* b = new PaletteButton(static_cast<int>(i), this);
        b->setObjectName(objectNameOf("Command1(" + std::to_string(i) + ")"));
        b->setText(qs(LayoutModel::caption(i)));
        b->setFont(cjkFont(true));
        b->setAutoFillBackground(true);
        b->setMinimumWidth(44);
        m_palette[i] = b;
        paletteRow->addWidget(b);
    }
    // "$DX" is no item to place by hand; the model disables its button.
    binder.state(m_palette[1], "Command1(1)");
    outer->addLayout(paletteRow);

    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(2);
    grid->setVerticalSpacing(2);
    for (int r = 0; r < 2; ++r) {
        auto* caption =
            new QLabel(r == 0 ? QStringLiteral("Rmks1") : QStringLiteral("Rmks2"), this);
        caption->setObjectName(r == 0 ? QStringLiteral("Label5") : QStringLiteral("Label6"));
        grid->addWidget(caption, r, 0);
        for (int c = 0; c < 12; ++c) {
            auto* cell = new LayoutCell(*this, r + 1, c, this);
            cell->setObjectName(QStringLiteral("lblRmks%1_%2").arg(r + 1).arg(c));
            cell->setFont(cjkFont(r == 0));
            cell->setMinimumSize(52, 24);
            m_cells[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)] = cell;
            grid->addWidget(cell, r, c + 1);
        }
    }
    outer->addLayout(grid);

    auto* buttons = new QHBoxLayout;
    m_sort = new QPushButton(QStringLiteral("整列"), this);
    m_sort->setObjectName(QStringLiteral("cmdAll_Sort"));
    m_sort->setToolTip(QStringLiteral("指定の途中の空白を除き左に寄せます。"));
    m_redo = new QPushButton(QStringLiteral("戻す"), this);
    m_redo->setObjectName(QStringLiteral("cmdAll_Redo"));
    m_redo->setToolTip(QStringLiteral("元の配置状態に戻します。"));
    m_widths = new QPushButton(QStringLiteral("桁数"), this);
    m_widths->setObjectName(QStringLiteral("cmdKetasu"));
    m_widths->setToolTip(QStringLiteral("桁数の変更、履歴の保存をします。"));
    m_history = new QPushButton(QStringLiteral("履歴"), this);
    m_history->setObjectName(QStringLiteral("cmdRireki"));
    m_history->setToolTip(QStringLiteral("項目の並び順の履歴から選択します。"));
    m_width = new QLabel(this);
    m_width->setObjectName(QStringLiteral("widthUnderMouse"));
    m_width->setMinimumWidth(110);
    buttons->addWidget(m_sort);
    buttons->addWidget(m_redo);
    buttons->addWidget(m_widths);
    buttons->addWidget(m_history);
    buttons->addSpacing(12);
    buttons->addWidget(m_width);
    buttons->addStretch(1);
    outer->addLayout(buttons);

    for (int r = 0; r < 2; ++r) {
        auto* preview = new QLabel(this);
        preview->setObjectName(r == 0 ? QStringLiteral("previewFirstRow")
                                      : QStringLiteral("previewSecondRow"));
        preview->setTextInteractionFlags(Qt::TextSelectableByMouse);
        m_preview[static_cast<std::size_t>(r)] = preview;
        outer->addWidget(preview);
    }

    connect(m_sort, &QPushButton::clicked, this, [this] {
        m_layout.Sort_2();
        m_layout.Sort_3();
        edited();
    });
    connect(m_redo, &QPushButton::clicked, this, [this] {
        m_layout.ReDo_2();
        m_layout.ReDo_3();
        edited();
    });

    m_timer = new QTimer(this);
    m_timer->setObjectName(QStringLiteral("Timer1"));
    m_timer->setInterval(200);
    connect(m_timer, &QTimer::timeout, this, &LayoutRow::Timer1_Timer);
    m_timer->start();

    refresh();
}

QLabel* LayoutRow::cellLabel(int row, int index) const
{
    return m_cells.at(static_cast<std::size_t>(row - 1)).at(static_cast<std::size_t>(index));
}

void LayoutRow::refresh()
{
    for (int r = 1; r <= 2; ++r) {
        for (std::size_t c = 0; c < LayoutModel::kCells; ++c) {
            QLabel* cell = m_cells[static_cast<std::size_t>(r - 1)][c];
            cell->setText(qs(m_layout.cell(r, c)));
            setWarningBackground(cell, m_layout.red(r, c));
        }
    }
    for (std::size_t i = 0; i < LayoutModel::kItems; ++i) {
        QPushButton* b = m_palette[i];
        QPalette palette = b->palette();
        const QPalette standard = QApplication::palette(b);
        palette.setColor(QPalette::Button, m_layout.highlighted(i)
                                               ? QColor(0xC0, 0xF0, 0xC0)
                                               : standard.color(QPalette::Button));
        b->setPalette(palette);
        b->setProperty("highlighted", m_layout.highlighted(i));
    }
    showWidthOf(nullptr);
}

void LayoutRow::edited()
{
    refresh();
    if (m_afterEdit) {
        m_afterEdit();
    }
}

void LayoutRow::dropPalette(int item, int row, int index)
{
    if (item < 0 || index < 0) {
        return;
    }
    m_layout.dropFromPalette(static_cast<std::size_t>(item), row, static_cast<std::size_t>(index));
    edited();
}

void LayoutRow::dropCell(int fromRow, int fromIndex, int row, int index)
{
    if (fromIndex < 0 || index < 0) {
        return;
    }
    m_layout.dropFromCell(fromRow, static_cast<std::size_t>(fromIndex), row,
                          static_cast<std::size_t>(index));
    edited();
}

void LayoutRow::Timer1_Timer()
{
    if (!isVisible()) {
        return;
    }
    showWidthOf(QApplication::widgetAt(QCursor::pos()));
}

void LayoutRow::showWidthOf(const QWidget* under)
{
    // The width of an item under the mouse: a cell shows the width its row keeps for it, a
    // palette button the width slot of its item.
    QString width;
    for (int r = 1; r <= 2 && under != nullptr; ++r) {
        for (std::size_t c = 0; c < LayoutModel::kCells; ++c) {
            if (under == m_cells[static_cast<std::size_t>(r - 1)][c] &&
                !m_layout.cell(r, c).empty()) {
                width = qs(m_layout.tableWidths(r)[c]);
            }
        }
    }
    for (std::size_t i = 0; i < LayoutModel::kItems && under != nullptr; ++i) {
        if (under == m_palette[i]) {
            width = qs(m_layout.slot(i));
        }
    }
    if (!width.isEmpty()) {
        m_width->setText(QStringLiteral("桁数 ： ") + width);
    } else if (under != nullptr) {
        m_width->clear();
    }

    for (int r = 1; r <= 2; ++r) {
        QStringList items;
        for (std::size_t c = 0; c < LayoutModel::kCells; ++c) {
            const std::string& name = m_layout.tableNames(r)[c];
            if (name.empty()) {
                continue;
            }
            const std::string& w = m_layout.tableWidths(r)[c];
            items << (w.empty() || w == "0"
                          ? qs(name)
                          : qs(name) + QStringLiteral("(") + qs(w) + QStringLiteral(")"));
        }
        m_preview[static_cast<std::size_t>(r - 1)]->setText(
            (r == 1 ? QStringLiteral("Rmks1 ： ") : QStringLiteral("Rmks2 ： ")) +
            items.join(QStringLiteral(" ")));
    }
}

} // namespace vornhale::ui
