#include "ui/ConfigDialog.h"

#include "session/Session.h"
#include "settings/WindowPositions.h"
#include "ui/FileChooser.h"
#include "ui/WidgetLook.h"
#include "ui/WindowPlace.h"

#include <QApplication>
#include <QCheckBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace vornhale::ui {
namespace {

using settings::ConfigModel;

} // namespace

ConfigDialog::ConfigDialog(session::Session& session, FileChooser& chooser, QWidget* parent)
    : QDialog(parent), m_session(session), m_chooser(chooser),
      m_model(session.files(), &session.trace(), session.decision().upgradeFromOld)
{
    setObjectName(QStringLiteral("frmConfig"));
    setModal(true);
    auto* outer = new QVBoxLayout(this);

    auto* grid = new QGridLayout;
    int r = 0;
    for (const ConfigModel::Row& row : ConfigModel::rows()) {
        auto* label = new QLabel(qs(row.caption));
        label->setObjectName(qs(row.label));
        label->setToolTip(qs(row.caption));
        auto* box = new QLineEdit;
        box->setObjectName(qs(row.textBox));
        box->setMinimumWidth(360);
        auto* button = new QPushButton(QStringLiteral("参照"));
        button->setObjectName(qs(row.button));
        grid->addWidget(label, r, 0);
        grid->addWidget(box, r, 1);
        grid->addWidget(button, r, 2);
        const std::string boxName(row.textBox);
        connect(box, &QLineEdit::textEdited, this,
                [this, boxName](const QString& t) { m_model.editText(boxName, utf8(t)); });
        connect(button, &QPushButton::clicked, this, [this, &row] { browse(row); });
        m_boxes[boxName] = box;
        m_buttons[std::string(row.button)] = button;
        m_labels[boxName] = label;
        if (!row.notUsedTick.empty()) {
            auto* tick = new QCheckBox(qs(ConfigModel::kNotUsedCaption));
            tick->setObjectName(qs(row.notUsedTick));
            tick->setToolTip(qs(ConfigModel::kNotUsedToolTip));
            const std::string tickName(row.notUsedTick);
            connect(tick, &QCheckBox::clicked, this,
                    [this, tickName] { m_model.clickTick(tickName); });
            m_ticks[tickName] = tick;
            grid->addWidget(tick, r, 3);
        }
        ++r;
    }
    grid->setColumnStretch(1, 1);
    outer->addLayout(grid);

    auto* marks = new QGridLayout;
    const std::pair<const char*, const char*> markRows[] = {
        {"Text1", "QSL 転送先マーク N を置きかえる文字"},
        {"Text2", "QSL ビューロー記号が Ｘ か － の時に強制的に書き込む転送先マーク"},
    };
    int m = 0;
    for (const auto& [name, caption] : markRows) {
        auto* box = new QLineEdit;
        box->setObjectName(QString::fromUtf8(name));
        box->setFixedWidth(40);
        auto* label = new QLabel(QString::fromUtf8(caption));
        label->setObjectName(m == 0 ? QStringLiteral("markCaptionFirst")
                                    : QStringLiteral("markCaptionSecond"));
        marks->addWidget(box, m, 0);
        marks->addWidget(label, m, 1);
        const std::string boxName(name);
        connect(box, &QLineEdit::textEdited, this,
                [this, boxName](const QString& t) { m_model.editText(boxName, utf8(t)); });
        m_boxes[boxName] = box;
        ++m;
    }
    auto* note = new QLabel(QStringLiteral(
        "画面上での表示や処理中は N ですが最終出力ファイルでは指定文字に置換します。"));
    note->setObjectName(QStringLiteral("markNote"));
    marks->addWidget(note, 2, 1);
    outer->addLayout(marks);

    for (const auto& [name, caption] :
         {std::pair{"Chk_inet", "ＭＮＧ検索する為の常時接続しているインターネット環境がある"},
          std::pair{"Check1", "DXCC_mas.txt の５５桁目を参照し処理する。"}}) {
        auto* tick = new QCheckBox(QString::fromUtf8(caption));
        tick->setObjectName(QString::fromUtf8(name));
        const std::string tickName(name);
        connect(tick, &QCheckBox::clicked, this, [this, tickName] { m_model.clickTick(tickName); });
        m_ticks[tickName] = tick;
        outer->addWidget(tick);
    }

    m_msg = new QLabel;
    m_msg->setObjectName(QStringLiteral("lblMsg"));
    m_msg1 = new QLabel;
    m_msg1->setObjectName(QStringLiteral("lblMsg1"));
    m_msg2 = new QLabel;
    m_msg2->setObjectName(QStringLiteral("lblMsg2"));
    outer->addWidget(m_msg1);
    outer->addWidget(m_msg);
    outer->addWidget(m_msg2);

    auto* buttons = new QHBoxLayout;
    auto* save = new QPushButton(QStringLiteral("保 存"));
    save->setObjectName(QStringLiteral("cmdSave"));
    save->setToolTip(QStringLiteral("現在の内容を保存します。"));
    auto* ok = new QPushButton(QStringLiteral("Ｏ Ｋ"));
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setToolTip(QStringLiteral("メイン画面に戻ります。"));
    auto* end = new QPushButton(QStringLiteral("強制終了"));
    end->setObjectName(QStringLiteral("cmdEnd"));
    m_buttons["cmdSave"] = save;
    m_buttons["cmdOK"] = ok;
    m_buttons["cmdEnd"] = end;
    buttons->addStretch(1);
    buttons->addWidget(save);
    buttons->addWidget(ok);
    buttons->addWidget(end);
    outer->addLayout(buttons);

    connect(save, &QPushButton::clicked, this, [this] { m_model.cmdSave(); });
    connect(ok, &QPushButton::clicked, this, [this] {
        savePosition();
        m_model.cmdOK();
        accept();
    });
    connect(end, &QPushButton::clicked, this, [this] {
        m_endRequested = true;
        reject();
    });

    m_model.setListener([this] { refresh(); });
    m_model.Form_Load_frmConfig();
    refresh();

    rememberPlace(*this, "frmConfig", m_session.folder().strPath / settings::kPositionFileName,
                  sizeHint(), QPoint(80, 60));
}

void ConfigDialog::refresh()
{
    setWindowTitle(qs(m_model.caption()));
    std::size_t i = 0;
    for (const ConfigModel::Row& row : ConfigModel::rows()) {
        QLineEdit* box = m_boxes.at(std::string(row.textBox));
        const QString t = qs(m_model.text(row.textBox));
        if (box->text() != t) {
            box->setText(t);
        }
        box->setReadOnly(m_model.greyed(row.textBox));
        QPalette palette = box->palette();
        palette.setColor(QPalette::Base, m_model.greyed(row.textBox)
                                             ? QColor(0xC0, 0xC0, 0xC0)
                                             : QApplication::palette(box).color(QPalette::Base));
        box->setPalette(palette);
        setCaptionColour(m_labels.at(std::string(row.textBox)), m_model.labelColour(i));
        m_buttons.at(std::string(row.button))->setEnabled(m_model.enabled(row.button));
        ++i;
    }
    for (const char* name : {"Text1", "Text2"}) {
        QLineEdit* box = m_boxes.at(name);
        const QString t = qs(m_model.text(name));
        if (box->text() != t) {
            box->setText(t);
        }
    }
    for (auto& [name, tick] : m_ticks) {
        tick->setChecked(m_model.tick(name));
    }
    for (const char* name : {"cmdSave", "cmdOK"}) {
        m_buttons.at(name)->setEnabled(m_model.enabled(name));
    }
    m_msg->setText(qs(m_model.lblMsg()));
    setCaptionColour(m_msg, m_model.lblMsgColour());
    m_msg1->setText(qs(m_model.lblMsg1()));
    m_msg2->setText(qs(m_model.lblMsg2()));
}

void ConfigDialog::browse(const ConfigModel::Row& row)
{
    const QString current = qs(m_model.text(row.textBox));
    const QString start = row.folder ? current : QFileInfo(current).path();
    const QString path = m_chooser.chooseFile(this, qs(row.caption), start, qs(row.filter));
    m_model.browseChosen(row.button, utf8(path));
}

void ConfigDialog::savePosition()
{
    savePlace(*this, "frmConfig", m_session.folder().strPath / settings::kPositionFileName);
}

} // namespace vornhale::ui
