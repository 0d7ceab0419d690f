#include "ui/TextViewDialog.h"

#include "text/LineFile.h"
#include "ui/WidgetLook.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <exception>

namespace vornhale::ui {

TextViewDialog::TextViewDialog(const QString& path, const QString& title, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("textView"));
    setWindowTitle(title + QStringLiteral(" : ") + path);
    auto* layout = new QVBoxLayout(this);
    m_view = new QPlainTextEdit;
    m_view->setObjectName(QStringLiteral("textViewText"));
    m_view->setReadOnly(true);
    m_view->setLineWrapMode(QPlainTextEdit::NoWrap);
    QFont fixed = QApplication::font();
    if (QFontDatabase::families().contains(QStringLiteral("Noto Sans Mono CJK JP"))) {
        fixed.setFamily(QStringLiteral("Noto Sans Mono CJK JP"));
    }
    m_view->setFont(fixed);
    layout->addWidget(m_view);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);

    QStringList lines;
    try {
        for (const std::string& line : text::readLines(utf8(path))) {
            lines << qs(line);
        }
    } catch (const std::exception& e) {
        lines << QString::fromUtf8(e.what());
    }
    m_view->setPlainText(lines.join(QLatin1Char('\n')));
    resize(900, 600);
}

QString TextViewDialog::text() const
{
    return m_view->toPlainText();
}

} // namespace vornhale::ui
