#include "ui/ViewerDialog.h"

#include "text/ViewerLines.h"
#include "ui/WidgetLook.h"
#include "ui/WindowPlace.h"

#include <QApplication>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace vornhale::ui {
namespace {

// Where a viewer first opens, in pixels. The three of the text check lie in a row.
QPoint designPos(session::ViewerWindow window)
{
    switch (window) {
    case session::ViewerWindow::frmDisp2:
        return {0, 40};
    case session::ViewerWindow::frmDisp3:
        return {420, 40};
    case session::ViewerWindow::frmDisp4:
        return {840, 40};
    case session::ViewerWindow::frmDisp:
        break;
    }
    return {60, 40};
}

QSize designSize(session::ViewerWindow window)
{
    return window == session::ViewerWindow::frmDisp ? QSize(800, 560) : QSize(420, 560);
}

} // namespace

ViewerDialog::ViewerDialog(session::ViewerWindow window, const std::filesystem::path& file,
                           const std::string& in_name, const std::filesystem::path& positionFile,
                           QWidget* parent)
    : QDialog(parent)
{
    const std::string_view form = session::viewerForm(window);
    setObjectName(qs(form));
    rememberPlace(*this, form, positionFile, designSize(window), designPos(window));
    setWindowTitle(qs(session::viewerTitle(window, in_name, file.string())));

    auto* layout = new QVBoxLayout(this);
    m_list = new QListWidget;
    m_list->setObjectName(QStringLiteral("List1"));
    // The files are column forms: a fixed-pitch face keeps their columns.
    QFont fixed = QApplication::font();
    if (QFontDatabase::families().contains(QStringLiteral("Noto Sans Mono CJK JP"))) {
        fixed.setFamily(QStringLiteral("Noto Sans Mono CJK JP"));
    } else {
        fixed.setStyleHint(QFont::Monospace);
    }
    m_list->setFont(fixed);
    layout->addWidget(m_list);
    auto* buttons = new QHBoxLayout;
    auto* ok = new QPushButton(QStringLiteral("OK"));
    ok->setObjectName(QStringLiteral("cmdOK"));
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    buttons->addStretch();
    buttons->addWidget(ok);
    layout->addLayout(buttons);

    m_listBox = std::make_unique<ListBoxHS>(*m_list);
    m_list->setUpdatesEnabled(false);
    for (const std::string& line : text::viewerLines(file)) {
        m_listBox->AddItem(qs(line));
    }
    m_list->setUpdatesEnabled(true);
}

ViewerDialog::~ViewerDialog() = default;

} // namespace vornhale::ui
