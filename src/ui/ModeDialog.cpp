#include "ui/ModeDialog.h"

#include "session/Session.h"
#include "settings/WindowPositions.h"
#include "ui/WidgetLook.h"
#include "ui/WindowPlace.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace vornhale::ui {

using settings::ModeTableModel;

ModeDialog::ModeDialog(session::Session& session, QWidget* parent)
    : QDialog(parent), m_model(session.files())
{
    setObjectName(QStringLiteral("frmMode"));
    setWindowTitle(QStringLiteral("Mode"));
    m_model.Form_Load();

    auto* outer = new QVBoxLayout(this);
    auto* label11 = new QLabel(qs(ModeTableModel::kLabel11));
    label11->setObjectName(QStringLiteral("Label11"));
    outer->addWidget(label11);

    auto* grid = new QGridLayout;
    for (int n = 1; n <= ModeTableModel::kRows; ++n) {
        const auto i = static_cast<std::size_t>(n - 1);
        auto* source = new QLineEdit;
        source->setObjectName(QStringLiteral("Text%1_0").arg(n));
        source->setFixedWidth(120);
        auto* arrow = new QLabel(qs(ModeTableModel::kLabelM));
        arrow->setObjectName(QStringLiteral("Label%1").arg(n));
        auto* target = new QLineEdit;
        target->setObjectName(QStringLiteral("Text%1_1").arg(n));
        target->setFixedWidth(120);
        auto* tick = new QCheckBox(qs(ModeTableModel::kCheckCaption));
        tick->setObjectName(QStringLiteral("Check%1").arg(n));
        grid->addWidget(source, n - 1, 0);
        grid->addWidget(arrow, n - 1, 1);
        grid->addWidget(target, n - 1, 2);
        grid->addWidget(tick, n - 1, 3);
        m_sources[i] = source;
        m_targets[i] = target;
        m_ticks[i] = tick;
        connect(source, &QLineEdit::textEdited, this,
                [this, n](const QString& t) { m_model.setSource(n, utf8(t)); });
        connect(target, &QLineEdit::textEdited, this,
                [this, n](const QString& t) { m_model.setTarget(n, utf8(t)); });
        connect(tick, &QCheckBox::clicked, this, [this, n](bool on) {
            m_model.setTick(n, on);
            showRow(n);
        });
        showRow(n);
    }
    grid->setColumnStretch(4, 1);
    outer->addLayout(grid);

    auto* buttons = new QHBoxLayout;
    auto* save = new QPushButton(qs(ModeTableModel::kCommand2));
    save->setObjectName(QStringLiteral("Command2"));
    auto* back = new QPushButton(qs(ModeTableModel::kCommand1));
    back->setObjectName(QStringLiteral("Command1"));
    buttons->addStretch(1);
    buttons->addWidget(save);
    buttons->addWidget(back);
    outer->addLayout(buttons);

    connect(save, &QPushButton::clicked, this, [this] {
        m_model.Command2_Click();
        accept();
    });
    connect(back, &QPushButton::clicked, this, &ModeDialog::reject);

    rememberPlace(*this, "frmMode", session.folder().strPath / settings::kPositionFileName,
                  sizeHint(), QPoint(200, 140));
}

void ModeDialog::showRow(int n)
{
    const auto i = static_cast<std::size_t>(n - 1);
    const ModeTableModel::Row& row = m_model.row(n);
    if (m_sources[i]->text() != qs(row.source)) {
        m_sources[i]->setText(qs(row.source));
    }
    if (m_targets[i]->text() != qs(row.target)) {
        m_targets[i]->setText(qs(row.target));
    }
    m_ticks[i]->setChecked(row.on);
    setCaptionColour(m_ticks[i], row.colour);
}

void ModeDialog::reject()
{
    // The system close leaves the table as the back button does.
    if (m_model.isOpen()) {
        m_model.Command1_Click();
    }
    QDialog::reject();
}

} // namespace vornhale::ui
