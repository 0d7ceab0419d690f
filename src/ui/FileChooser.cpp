#include "ui/FileChooser.h"

#include <QFileDialog>
#include <QStringList>

namespace vornhale::ui {

QString FileChooser::qtFilter(const QString& filter)
{
    const QStringList parts = filter.split(QLatin1Char('|'));
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString& description = parts[i];
        QString patterns = parts[i + 1];
        patterns.replace(QLatin1Char(';'), QLatin1Char(' '));
        // The dialog reads the patterns from the last brackets of each line, so the
        // description keeps its own text as it stands.
        filters << description + QStringLiteral(" (") + patterns.trimmed() + QLatin1Char(')');
    }
    return filters.join(QStringLiteral(";;"));
}

QString QtFileChooser::chooseFile(QWidget* parent, const QString& title, const QString& startFolder,
                                  const QString& filter)
{
    QFileDialog dialog(parent, title, startFolder, qtFilter(filter));
    dialog.setObjectName(QStringLiteral("fileDialog"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return {};
    }
    return dialog.selectedFiles().constFirst();
}

} // namespace vornhale::ui
