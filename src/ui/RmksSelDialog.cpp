#include "ui/RmksSelDialog.h"

#include "settings/WindowPositions.h"
#include "ui/WidgetLook.h"
#include "ui/WindowPlace.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace vornhale::ui {

RmksSelDialog::RmksSelDialog(const std::filesystem::path& folder, settings::Options& options,
                             QWidget* parent)
    : QDialog(parent), m_model(folder, options)
{
    setObjectName(QStringLiteral("frmRmks_sel"));
    setWindowTitle(QStringLiteral("Rmks 履歴"));
    m_model.Form_Load();

    auto* outer = new QVBoxLayout(this);
    for (const std::string& line : m_model.guidance()) {
        auto* guide = new QLabel(qs(line));
        guide->setObjectName(outer->count() == 0 ? QStringLiteral("guideFirst")
                                                 : QStringLiteral("guideSecond"));
        outer->addWidget(guide);
    }

    auto* columns = new QGridLayout;
    for (int c = 1; c <= 2; ++c) {
        const auto i = static_cast<std::size_t>(c - 1);
        auto* caption = new QLabel(c == 1 ? QStringLiteral("Rmks1") : QStringLiteral("Rmks2"));
        columns->addWidget(caption, 0, (c - 1) * 2);
        auto* list = new QListWidget;
        list->setObjectName(QStringLiteral("List%1").arg(c));
        list->setMinimumSize(260, 220);
        m_lists[i] = list;
        columns->addWidget(list, 1, (c - 1) * 2);
        auto* text = new QLineEdit;
        text->setObjectName(QStringLiteral("txtRmks%1").arg(c));
        m_texts[i] = text;
        columns->addWidget(text, 2, (c - 1) * 2);
        connect(text, &QLineEdit::textEdited, this,
                [this, c](const QString& t) { m_model.setTxtRmks(c, utf8(t)); });
        connect(list, &QListWidget::itemClicked, this, [this, c, list](QListWidgetItem* item) {
            m_model.clickList(c, static_cast<std::size_t>(list->row(item)));
            refresh();
        });

        auto* buttons = new QHBoxLayout;
        auto* insert = new QPushButton(QStringLiteral("挿入"));
        insert->setObjectName(QStringLiteral("cmdIns_%1").arg(c));
        insert->setToolTip(c == 1
                               ? QStringLiteral("記入欄の内容をＲｍｋ１の履歴に追加登録します。")
                               : QStringLiteral("記入欄の内容をＲｍｋ２の履歴に追加登録します。"));
        auto* remove = new QPushButton(QStringLiteral("削除"));
        remove->setObjectName(QStringLiteral("cmdDel_%1").arg(c));
        remove->setToolTip(c == 1 ? QStringLiteral("Ｒｍｋｓ１の履歴より削除します。")
                                  : QStringLiteral("Ｒｍｋｓ２の履歴より削除します。"));
        auto* cancel = new QPushButton(QStringLiteral("選択履歴の取消"));
        cancel->setObjectName(QStringLiteral("cmdCan_%1").arg(c));
        cancel->setToolTip(QStringLiteral("選択したものを取り消します。"));
        buttons->addWidget(insert);
        buttons->addWidget(remove);
        buttons->addWidget(cancel);
        columns->addLayout(buttons, 3, (c - 1) * 2);
        connect(insert, &QPushButton::clicked, this, [this, c] {
            m_model.cmdIns(c);
            refresh();
        });
        connect(remove, &QPushButton::clicked, this, [this, c] {
            m_model.cmdDel(c);
            refresh();
        });
        connect(cancel, &QPushButton::clicked, this, [this, c] {
            m_model.cmdCan(c);
            refresh();
        });
    }
    auto* copy = new QVBoxLayout;
    auto* to2 = new QPushButton(QStringLiteral("1 -> 2"));
    to2->setObjectName(QStringLiteral("cmd1to2"));
    to2->setToolTip(QStringLiteral("Ｒｍｋ１からＲｍｋｓ２に複写します。"));
    auto* to1 = new QPushButton(QStringLiteral("1 <- 2"));
    to1->setObjectName(QStringLiteral("cmd2to1"));
    to1->setToolTip(QStringLiteral("Ｒｍｋ２からＲｍｋｓ１に複写します。"));
    copy->addStretch(1);
    copy->addWidget(to2);
    copy->addWidget(to1);
    copy->addStretch(1);
    columns->addLayout(copy, 1, 1);
    outer->addLayout(columns);
    connect(to2, &QPushButton::clicked, this, [this] {
        m_model.cmd1to2();
        refresh();
    });
    connect(to1, &QPushButton::clicked, this, [this] {
        m_model.cmd2to1();
        refresh();
    });

    auto* bottom = new QHBoxLayout;
    auto* ok = new QPushButton(QStringLiteral("Ｏ  Ｋ"));
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setToolTip(QStringLiteral("現在の内容を保存します。"));
    auto* back = new QPushButton(QStringLiteral("戻 る"));
    back->setObjectName(QStringLiteral("cmdBack"));
    back->setToolTip(
        QStringLiteral("メイン画面に戻ります。 メイン画面にＲｍｋｓは転記されません。"));
    bottom->addStretch(1);
    bottom->addWidget(ok);
    bottom->addWidget(back);
    outer->addLayout(bottom);
    connect(ok, &QPushButton::clicked, this, [this] {
        m_closing = true;
        m_model.cmdOK();
        accept();
    });
    connect(back, &QPushButton::clicked, this, &RmksSelDialog::reject);
    refresh();
    rememberPlace(*this, "frmRmks_sel", folder / settings::kPositionFileName, sizeHint(),
                  QPoint(100, 80));
}

void RmksSelDialog::reject()
{
    if (!m_closing) {
        m_closing = true;
        m_model.cmdBack();
    }
    QDialog::reject();
}

void RmksSelDialog::refresh()
{
    for (int c = 1; c <= 2; ++c) {
        const auto i = static_cast<std::size_t>(c - 1);
        QListWidget* list = m_lists[i];
        const auto& lines = m_model.list(c);
        if (list->count() != static_cast<int>(lines.size())) {
            list->clear();
            for (const std::string& line : lines) {
                list->addItem(qs(line));
            }
        } else {
            for (int r = 0; r < list->count(); ++r) {
                list->item(r)->setText(qs(lines[static_cast<std::size_t>(r)]));
            }
        }
        const auto selected = m_model.selected(c);
        list->setCurrentRow(selected ? static_cast<int>(*selected) : -1);
        if (!selected) {
            list->clearSelection();
        }
        const QString t = qs(m_model.txtRmks(c));
        if (m_texts[i]->text() != t) {
            m_texts[i]->setText(t);
        }
        if (m_model.highlighted(c)) {
            m_texts[i]->selectAll();
        }
    }
}

} // namespace vornhale::ui
