#pragma once

// What the tests of the small dialogs share: a program started into its main window, and
// clicks on list entries as an operator makes them.

#include "UiTestSupport.h"
#include "session/Session.h"
#include "support/TestSupport.h"
#include "ui/DesktopProgram.h"
#include "ui/MainWindow.h"

#include <QListWidget>
#include <QTest>
#include <functional>
#include <memory>

namespace vornhale::test {

/// A program folder prepared to start straight into the main window, and the program.
struct StartedProgram
{
    TempDir dir;
    ScriptedChooser chooser;
    std::unique_ptr<ui::DesktopProgram> program;
    int endedWith = -1;

    /// `edit` may change the program folder before the start.
    explicit StartedProgram(const std::function<void(const std::filesystem::path&)>& edit = {})
    {
        prepareHome(dir / "home");
        if (edit) {
            edit(dir / "home");
        }
        program = std::make_unique<ui::DesktopProgram>(dir / "home", chooser);
        program->setProgramEnd([this](int code) { endedWith = code; });
        program->start();
    }
    std::filesystem::path home() const { return dir / "home"; }
    session::Session& session() { return *program->session(); }
    ui::MainWindow& window() { return *program->mainWindow(); }
};

/// Clicks entry `row` of `list` with the mouse, as a selection that counts must be made.
inline void clickEntry(QListWidget* list, int row)
{
    QListWidgetItem* item = list->item(row);
    list->scrollToItem(item);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(item).center());
}

} // namespace vornhale::test
