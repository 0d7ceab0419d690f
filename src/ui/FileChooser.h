#pragma once

#include <QString>

class QWidget;

namespace vornhale::ui {

/// The file dialog of the open actions and the browse buttons. The window asks through this
/// interface, so that a test can give the path an operator would have chosen.
class FileChooser
{
public:
    virtual ~FileChooser() = default;

    /// Lets the operator choose an existing file. `filter` is "description|pattern;pattern"
    /// pairs as the program keeps them. Returns the path, or an empty text on cancel.
    virtual QString chooseFile(QWidget* parent, const QString& title, const QString& startFolder,
                               const QString& filter) = 0;

    /// The filter of a Qt file dialog for "description|pattern;pattern|..." pairs: each
    /// description followed by its patterns in brackets, one pair a line.
    static QString qtFilter(const QString& filter);
};

/// The platform's file dialog.
class QtFileChooser : public FileChooser
{
public:
    QString chooseFile(QWidget* parent, const QString& title, const QString& startFolder,
                       const QString& filter) override;
};

} // namespace vornhale::ui
