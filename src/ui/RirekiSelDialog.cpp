#include "ui/RirekiSelDialog.h"

#include "settings/WindowPositions.h"
#include "ui/WidgetLook.h"
#include "ui/WindowPlace.h"

#include <QApplication>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace vornhale::ui {

RirekiSelDialog::RirekiSelDialog(const std::filesystem::path& folder, settings::LayoutModel& layout,
                                 base::Trace* trace, QWidget* parent)
    : QDialog(parent), m_model(folder, layout, trace)
{
    setObjectName(QStringLiteral("frmRmk_Rireki_sel"));
    setWindowTitle(QStringLiteral("履歴"));
    m_model.Form_Load();

    // The item lists are padded to run parallel, so they take a fixed-pitch face.
    QFont fixed = QApplication::font();
    if (QFontDatabase::families().contains(QStringLiteral("Noto Sans Mono CJK JP"))) {
        fixed.setFamily(QStringLiteral("Noto Sans Mono CJK JP"));
    }

    auto* outer = new QVBoxLayout(this);
    auto* lists = new QHBoxLayout;
    for (int i = 0; i < 3; ++i) {
        auto* list = new QListWidget;
        list->setObjectName(QStringLiteral("List%1").arg(i + 1));
        list->setFont(fixed);
        list->setMinimumHeight(220);
        list->setMinimumWidth(i == 0 ? 160 : 420);
        m_lists[static_cast<std::size_t>(i)] = list;
        lists->addWidget(list, i == 0 ? 1 : 3);
        connect(list, &QListWidget::itemClicked, this, [this, list](QListWidgetItem* item) {
            m_model.click(static_cast<std::size_t>(list->row(item)));
            refresh();
        });
    }
    outer->addLayout(lists);

    auto* shown = new QGridLayout;
    m_name = new QLabel;
    m_name->setObjectName(QStringLiteral("lblHozon_Rmks"));
    shown->addWidget(m_name, 0, 0, 1, 2);
    const char* captions[] = {"Rmks1", "Rmks2", "Rmks1 len", "Rmks2 len"};
    for (int i = 0; i < 4; ++i) {
        shown->addWidget(new QLabel(QString::fromUtf8(captions[i])), i + 1, 0);
        auto* label = new QLabel;
        label->setObjectName(QStringLiteral("Label%1").arg(i + 5));
        label->setFont(fixed);
        m_labels[static_cast<std::size_t>(i)] = label;
        shown->addWidget(label, i + 1, 1);
    }
    shown->setColumnStretch(1, 1);
    outer->addLayout(shown);

    auto* buttons = new QHBoxLayout;
    auto* ok = new QPushButton(QStringLiteral("Ｏ Ｋ"));
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setToolTip(QStringLiteral("現在選択・指定された履歴をメイン画面にセットします。"));
    auto* del = new QPushButton(QStringLiteral("削除"));
    del->setObjectName(QStringLiteral("cmdDel"));
    del->setToolTip(QStringLiteral("指定した履歴を削除します。"));
    auto* can = new QPushButton(QStringLiteral("取消"));
    can->setObjectName(QStringLiteral("cmdCan"));
    can->setToolTip(QStringLiteral("選択を取りやめます。"));
    auto* back = new QPushButton(QStringLiteral("戻る"));
    back->setObjectName(QStringLiteral("cmdBack"));
    back->setToolTip(QStringLiteral("メイン画面に戻ります。"));
    buttons->addStretch(1);
    for (QPushButton* b : {ok, del, can, back}) {
        buttons->addWidget(b);
    }
    outer->addLayout(buttons);

    connect(ok, &QPushButton::clicked, this, [this] {
        if (m_model.cmdOK()) {
            m_closing = true;
            accept();
        }
    });
    connect(del, &QPushButton::clicked, this, [this] {
        m_model.cmdDel();
        fill();
        refresh();
    });
    connect(can, &QPushButton::clicked, this, [this] {
        m_model.cmdCan();
        refresh();
    });
    connect(back, &QPushButton::clicked, this, &RirekiSelDialog::reject);
    fill();
    refresh();
    rememberPlace(*this, "frmRmk_Rireki_sel", folder / settings::kPositionFileName, sizeHint(),
                  QPoint(100, 80));
}

void RirekiSelDialog::fill()
{
    const std::vector<std::string>* lines[] = {&m_model.list1(), &m_model.list2(),
                                               &m_model.list3()};
    for (std::size_t i = 0; i < 3; ++i) {
        m_lists[i]->clear();
        for (const std::string& line : *lines[i]) {
            m_lists[i]->addItem(qs(line));
        }
    }
}

void RirekiSelDialog::refresh()
{
    const auto selected = m_model.selected();
    for (QListWidget* list : m_lists) {
        list->setCurrentRow(selected ? static_cast<int>(*selected) : -1);
        if (!selected) {
            list->clearSelection();
        }
    }
    for (std::size_t i = 0; i < 4; ++i) {
        m_labels[i]->setText(qs(m_model.labels()[i]));
    }
    m_name->setText(qs(m_model.lblHozon_Rmks()));
}

void RirekiSelDialog::reject()
{
    if (!m_closing) {
        m_closing = true;
        m_model.cmdBack();
    }
    QDialog::reject();
}

} // namespace vornhale::ui
