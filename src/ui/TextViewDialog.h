#pragma once

#include <QDialog>

class QPlainTextEdit;

namespace vornhale::ui {

/// Shows a Shift-JIS text file of the program (an input log, a result, a settings file),
/// read-only, in a fixed-pitch face.
class TextViewDialog : public QDialog
{
    Q_OBJECT

public:
    TextViewDialog(const QString& path, const QString& title, QWidget* parent = nullptr);

    /// The text shown.
    QString text() const;

private:
    QPlainTextEdit* m_view = nullptr;
};

} // namespace vornhale::ui
