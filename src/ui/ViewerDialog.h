#pragma once

#include "session/ViewerFiles.h"
#include "ui/ListBoxHS.h"

#include <QDialog>
#include <filesystem>
#include <memory>

class QListWidget;

namespace vornhale::ui {

/// The read-only viewers `frmDisp` and `frmDisp2` to `frmDisp4`: the lines of one file in the
/// list `List1` (a `ListBoxHS`, so a long line gets a horizontal scroll bar), tabs expanded,
/// the title of its kind, and `cmdOK`. Each keeps its place in the position file under its
/// own name. A file that cannot be read shows an empty list and the title.
class ViewerDialog : public QDialog
{
    Q_OBJECT

public:
    /// Shows `file` in the viewer `window`; `in_name` is the open input, for the title of
    /// `frmDisp`. `positionFile` is the program's position file.
    ViewerDialog(session::ViewerWindow window, const std::filesystem::path& file,
                 const std::string& in_name, const std::filesystem::path& positionFile,
                 QWidget* parent = nullptr);
    ~ViewerDialog() override;

    QListWidget* list() const { return m_list; }
    ListBoxHS& listBox() { return *m_listBox; }

private:
    QListWidget* m_list = nullptr;
    std::unique_ptr<ListBoxHS> m_listBox;
};

} // namespace vornhale::ui
