#pragma once

#include <QGroupBox>
#include <array>
#include <functional>

class QLabel;
class QPushButton;
class QTimer;

namespace vornhale::settings {
class LayoutModel;
}

namespace vornhale::ui {

class OptionBinder;

/// The layout row of the main window (" 配  置 "): the palette of fourteen items
/// `Command1(0)` to `Command1(13)`, the two rows of twelve cells `lblRmks1` and `lblRmks2`,
/// `cmdAll_Sort`, `cmdAll_Redo`, `cmdKetasu` and `cmdRireki`. Items are dragged from the
/// palette or from a cell onto a cell; the layout model decides what every cell then holds.
/// `Timer1` shows the width of the item under the mouse and the preview of both rows.
class LayoutRow : public QGroupBox
{
    Q_OBJECT

public:
    /// The palette button of item 1 follows its control in `binder` (the model disables it).
    LayoutRow(settings::LayoutModel& layout, OptionBinder& binder, QWidget* parent = nullptr);

    /// Called after every edit of the layout (a drop, a sort, a restore), after the row shows
    /// it.
    void setAfterEdit(std::function<void()> afterEdit) { m_afterEdit = std::move(afterEdit); }

    /// Shows the cells, their colours and the palette's highlights as the model holds them.
    void refresh();

    /// A drop of palette item `item`, or of the cell `fromRow`/`fromIndex`, on a cell.
    void dropPalette(int item, int row, int index);
    void dropCell(int fromRow, int fromIndex, int row, int index);

    /// `Timer1`'s work for the widget under the mouse: the width of its item, and the preview
    /// of both rows.
    void showWidthOf(const QWidget* under);

    QPushButton* paletteButton(int item) const
    {
        return m_palette.at(static_cast<std::size_t>(item));
    }
    QLabel* cellLabel(int row, int index) const;
    QPushButton* redoButton() const { return m_redo; }
    QPushButton* sortButton() const { return m_sort; }
    QPushButton* widthsButton() const { return m_widths; }
    QPushButton* historyButton() const { return m_history; }

    /// The mime type of a dragged layout item.
    static constexpr const char* kMimeType = "application/x-vornhale-layout-item";

private:
    void edited();
    void Timer1_Timer();

    settings::LayoutModel& m_layout;
    std::array<QPushButton*, 14> m_palette{};
    std::array<std::array<QLabel*, 12>, 2> m_cells{};
    QPushButton* m_sort = nullptr;
    QPushButton* m_redo = nullptr;
    QPushButton* m_widths = nullptr;
    QPushButton* m_history = nullptr;
    QLabel* m_width = nullptr;
    std::array<QLabel*, 2> m_preview{};
    QTimer* m_timer = nullptr;
    std::function<void()> m_afterEdit;
};

} // namespace vornhale::ui
