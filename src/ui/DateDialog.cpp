#include "ui/DateDialog.h"

#include "session/Session.h"
#include "settings/SettingsFiles.h"
#include "settings/WindowPositions.h"
#include "ui/WidgetLook.h"
#include "ui/WindowPlace.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace vornhale::ui {

DateDialog::DateDialog(session::Session& session, QWidget* parent,
                       settings::PeriodModel::Today today)
    : QDialog(parent),
      m_model(session.options(), std::string(settings::kProgramVersion), std::move(today))
{
    setObjectName(QStringLiteral("frmDate"));
    setWindowTitle(qs(settings::PeriodModel::kCaption));
    const std::filesystem::path positions = session.folder().strPath / settings::kPositionFileName;
    m_model.Form_Load();

    auto* outer = new QVBoxLayout(this);
    auto* label6 = new QLabel(qs(settings::PeriodModel::kLabel6));
    label6->setObjectName(QStringLiteral("Label6"));
    outer->addWidget(label6);

    auto* both = new QHBoxLayout;
    const QString titles[2] = {QStringLiteral(" 抽出開始 "), QStringLiteral(" 抽出終了 ")};
    for (int half = 0; half < 2; ++half) {
        auto* box = new QGroupBox(titles[half]);
        box->setObjectName(half == 0 ? QStringLiteral("startFrame") : QStringLiteral("endFrame"));
        auto* lists = new QHBoxLayout(box);
        for (int part = 0; part < 3; ++part) {
            const int number = half * 3 + part + 1;
            auto* list = new QListWidget;
            list->setObjectName(QStringLiteral("List%1").arg(number));
            for (const std::string& entry : m_model.items(number)) {
                list->addItem(qs(entry));
            }
            list->setFixedWidth(part == 0 ? 68 : 52);
            list->setMinimumHeight(200);
            m_lists[static_cast<std::size_t>(number - 1)] = list;
            lists->addWidget(list);
            connect(list, &QListWidget::itemClicked, this,
                    [this, number, list](QListWidgetItem* item) {
                        m_model.List_Click(number, list->row(item));
                        refresh();
                    });
        }
        both->addWidget(box);
    }
    outer->addLayout(both);

    auto* endRow = new QHBoxLayout;
    m_check1 = new QCheckBox(qs(settings::PeriodModel::kCheck1));
    m_check1->setObjectName(QStringLiteral("Check1"));
    m_getDate = new QPushButton(qs(settings::PeriodModel::kCmdGetDate));
    m_getDate->setObjectName(QStringLiteral("cmdGet_date"));
    endRow->addStretch(1);
    endRow->addWidget(m_check1);
    endRow->addWidget(m_getDate);
    outer->addLayout(endRow);

    m_label7 = new QLabel;
    m_label7->setObjectName(QStringLiteral("Label7"));
    setCaptionColour(m_label7, base::Colour::Red);
    outer->addWidget(m_label7);

    auto* buttons = new QHBoxLayout;
    auto* ok = new QPushButton(qs(settings::PeriodModel::kCmdOK));
    ok->setObjectName(QStringLiteral("cmdOK"));
    buttons->addStretch(1);
    buttons->addWidget(ok);
    outer->addLayout(buttons);

    connect(m_check1, &QCheckBox::clicked, this, [this](bool on) {
        m_model.setCheck1(on);
        refresh();
    });
    connect(m_getDate, &QPushButton::clicked, this, [this] {
        m_model.cmdGet_date_Click();
        refresh();
    });
    connect(ok, &QPushButton::clicked, this, [this, positions] {
        // The place is kept at each press, also when the dialog stays open.
        savePlace(*this, "frmDate", positions);
        const bool accepted = m_model.cmdOK_Click();
        refresh();
        if (accepted) {
            accept();
        }
    });

    refresh();
    rememberPlace(*this, "frmDate", positions, sizeHint(), QPoint(160, 120));
}

void DateDialog::refresh()
{
    for (int number = 1; number <= 6; ++number) {
        QListWidget* list = m_lists[static_cast<std::size_t>(number - 1)];
        const int index = m_model.listIndex(number);
        list->setCurrentRow(index);
        if (index < 0) {
            list->clearSelection();
        } else {
            list->scrollToItem(list->currentItem());
        }
    }
    m_check1->setChecked(m_model.Check1());
    m_getDate->setEnabled(m_model.getDateEnabled());
    m_label7->setText(qs(m_model.Label7()));
}

} // namespace vornhale::ui
