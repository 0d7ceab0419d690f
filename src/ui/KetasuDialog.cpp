#include "ui/KetasuDialog.h"

#include "base/Dialogs.h"
#include "session/Session.h"
#include "settings/WindowPositions.h"
#include "ui/WidgetLook.h"
#include "ui/WindowPlace.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace vornhale::ui {
namespace {

QPushButton* button(const char* name, const QString& caption, const QString& toolTip)
{
    auto* b = new QPushButton(caption);
    b->setObjectName(QString::fromUtf8(name));
    b->setToolTip(toolTip);
    return b;
}

} // namespace

KetasuDialog::KetasuDialog(session::Session& session, QWidget* parent)
    : QDialog(parent), m_model(*session.layoutModel(), &session.files(), &session.trace()),
      m_folder(session.folder().strPath)
{
    setObjectName(QStringLiteral("frmKetasu"));
    setWindowTitle(QStringLiteral("桁数"));

    auto* outer = new QVBoxLayout(this);
    auto* top = new QHBoxLayout;
    auto* contCaption = new QLabel(QStringLiteral("＊．ＺＬＯ　のコンテスト名"));
    contCaption->setObjectName(QStringLiteral("contestNameCaption"));
    top->addWidget(contCaption);
    auto* contest = new QLabel;
    contest->setObjectName(QStringLiteral("lblCont_name_h"));
    contest->setFrameShape(QFrame::Panel);
    contest->setFrameShadow(QFrame::Sunken);
    contest->setMinimumWidth(260);
    top->addWidget(contest, 1);
    outer->addLayout(top);

    auto* nameFrame = new QGroupBox(QStringLiteral(" 項目 配置 保存名 "));
    nameFrame->setObjectName(QStringLiteral("nameFrame"));
    auto* nameRow = new QHBoxLayout(nameFrame);
    m_name = new QLineEdit;
    m_name->setObjectName(QStringLiteral("txtName"));
    nameRow->addWidget(m_name, 1);
    auto* setName =
        button("cmdSet_name", QStringLiteral("転 記"),
               QStringLiteral(" ZLO ファイルの場合コンテスト名が 上部の 「 項目 配置 保存名 "));
    nameRow->addWidget(setName);
    outer->addWidget(nameFrame);

    // One narrow list per item, side by side, with its caption above and its value below.
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(4);
    for (std::size_t item = 0; item < settings::LayoutModel::kItems; ++item) {
        const int column = static_cast<int>(item);
        auto* caption = new QLabel(qs(settings::WidthsModel::label(item)));
        caption->setObjectName(QStringLiteral("listCaption%1").arg(column + 1));
        caption->setAlignment(Qt::AlignCenter);
        grid->addWidget(caption, 0, column);
        auto* list = new QListWidget;
        list->setObjectName(QStringLiteral("List%1").arg(column + 1));
        for (std::size_t position = 0; position < settings::WidthsModel::kPositions; ++position) {
            list->addItem(QString::number(settings::WidthsModel::valueAt(position)));
        }
        list->setFixedWidth(52);
        list->setMinimumHeight(220);
        m_lists[item] = list;
        grid->addWidget(list, 1, column);
        auto* value = new QLabel;
        value->setObjectName(objectNameOf("lblLen(" + std::to_string(item) + ")"));
        value->setAlignment(Qt::AlignCenter);
        value->setFrameShape(QFrame::Panel);
        value->setFrameShadow(QFrame::Sunken);
        m_values[item] = value;
        grid->addWidget(value, 2, column);
        connect(list, &QListWidget::itemClicked, this, [this, item, list](QListWidgetItem* entry) {
            m_model.clickList(item, static_cast<std::size_t>(list->row(entry)));
            refresh();
        });
    }
    outer->addLayout(grid);

    auto* label14 = new QLabel(qs(settings::WidthsModel::kLabel14));
    label14->setObjectName(QStringLiteral("Label14"));
    outer->addWidget(label14);
    auto* label15 = new QLabel(qs(settings::WidthsModel::kLabel15));
    label15->setObjectName(QStringLiteral("Label15"));
    outer->addWidget(label15);
    auto* msg = new QLabel;
    msg->setObjectName(QStringLiteral("lblMsg"));
    outer->addWidget(msg);

    auto* buttons = new QHBoxLayout;
    auto* allZero = button("cmdAll_Zero", QStringLiteral(" A L L  ゼ ロ"),
                           QStringLiteral("全ての桁数をゼロにセットします。"));
    auto* toMain = button("cmdSet_Len_Main", QStringLiteral("転 送"),
                          QStringLiteral("現在の項目の桁数をメイン画面にセットします。"));
    auto* save = button("cmdSave2", QStringLiteral("履 歴保 存"),
                        QStringLiteral("現在の桁数とメイン画面の項目並び順を保存します。"));
    auto* ok = button("cmdOK", QStringLiteral("戻 る"), QStringLiteral("メイン画面に戻ります。"));
    buttons->addWidget(allZero);
    buttons->addStretch(1);
    for (QPushButton* b : {toMain, save, ok}) {
        buttons->addWidget(b);
    }
    outer->addLayout(buttons);

    connect(m_name, &QLineEdit::textEdited, this,
            [this](const QString& t) { m_model.setTxtName(utf8(t)); });
    connect(setName, &QPushButton::clicked, this, [this] {
        m_model.cmdSet_name();
        refresh();
    });
    connect(allZero, &QPushButton::clicked, this, [this] {
        m_model.cmdAll_Zero();
        refresh();
        closeIfDone();
    });
    connect(toMain, &QPushButton::clicked, this, [this] {
        m_model.cmdSet_Len_Main();
        refresh();
        closeIfDone();
    });
    connect(save, &QPushButton::clicked, this, [this] {
        m_model.cmdSave2(m_folder);
        refresh();
    });
    connect(ok, &QPushButton::clicked, this, [this] {
        m_model.cmdOK();
        closeIfDone();
    });

    m_model.Form_Load(session.input().cont_name);
    contest->setText(qs(m_model.lblCont_name_h()));
    refresh();
    // A width the lists cannot show (above 60) was refused by the load: the operator is told
    // once, with the number of an invalid property value, and the dialog goes on.
    for (std::size_t item = 0; item < settings::LayoutModel::kItems; ++item) {
        if (!m_model.listIndex(item)) {
            session.dialogs().message("", "エラー発生 ：　380", base::Dialogs::Icon::Exclamation);
            break;
        }
    }
    rememberPlace(*this, "frmKetasu", m_folder / settings::kPositionFileName, sizeHint(),
                  QPoint(120, 90));
}

void KetasuDialog::refresh()
{
    for (std::size_t item = 0; item < settings::LayoutModel::kItems; ++item) {
        const auto index = m_model.listIndex(item);
        QListWidget* list = m_lists[item];
        if (index) {
            list->setCurrentRow(static_cast<int>(*index));
            list->scrollToItem(list->currentItem());
        } else {
            list->setCurrentRow(-1);
            list->clearSelection();
        }
        m_values[item]->setText(qs(m_model.lblLen(item)));
    }
    if (m_name->text() != qs(m_model.txtName())) {
        m_name->setText(qs(m_model.txtName()));
    }
}

void KetasuDialog::closeIfDone()
{
    if (!m_model.open()) {
        accept();
    }
}

} // namespace vornhale::ui
