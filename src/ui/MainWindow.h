#pragma once

#include <QMainWindow>
#include <functional>
#include <map>
#include <string>
#include <string_view>

class QAction;
class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMenu;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QTableWidget;
class QTabWidget;
class QToolBar;

namespace vornhale::failure {
class Failure;
}

namespace vornhale::session {
class OptionModel;
class Session;
} // namespace vornhale::session

namespace vornhale::settings {
class LayoutModel;
}

namespace vornhale::ui {

class ConversionRunner;
class FileChooser;
class LayoutRow;
class OptionBinder;
class QtDialogs;
class QtRunObserver;

/// The main window `Vornhale`: the two tab groups `SSTab2` and `SSTab1` with every option,
/// the layout row, the tool bar `Toolbar1`, the menu tree, the status line `lblShori`, the
/// progress bar `ProgressBar1`, the start button `cmdStart` and the result grid
/// `MSFlexGrid1`. It is a view over the session's option and layout models: every control
/// shows and changes the model, the rules run there. A conversion runs on its own thread and
/// reports through the run observer.
///
/// Every control carries its legacy name as object name; a member of a group or of a
/// control array is named with its index after an underscore (`Option04_2`, `Command1_13`,
/// `lblRmks1_3`); a tool button carries its caption (`変換`).
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// The session must have loaded the main window's models (`Session::loadMainWindow`).
    /// `chooser` and `dialogs` must outlive the window.
    MainWindow(session::Session& session, FileChooser& chooser, QtDialogs& dialogs,
               QWidget* parent = nullptr);
    ~MainWindow() override;

    /// How the program ends on the spot (the stop button, a failure): by default the process
    /// ends with the code given. Tests put their own end here.
    void setProgramEnd(std::function<void(int)> end) { m_programEnd = std::move(end); }

    /// Runs the open action of a menu entry ("mnuOpen_all_txt_set", …): its dialog, the open
    /// of the chosen file and what the window shows of it.
    void openBy(std::string_view menu);
    /// Opens `path` as the open actions do once a file is chosen, as the kind whose `--type`
    /// word is `typeWord` (empty: as the name tells).
    void openPath(const std::string& path, std::string_view typeWord = {});

    /// `cmdStart_Click`: starts a conversion of the open input on the conversion's thread.
    /// False when the start is disabled or a conversion is running.
    bool startConversion();
    /// Whether a conversion is running.
    bool running() const;

    /// `cmdStop`: the window's close code, then the program ends at once.
    void cmdStop_Click();

    /// `End_Shori_0`: the status text of the end, the working copy of the settings, the
    /// orderly end of the program.
    void End_Shori_0();

    /// Shows tab `index` of the first (`SSTab2`) or second (`SSTab1`) tab group.
    void showTab(int group, int index);
    QTabWidget* firstTabs() const { return m_tab2; }
    QTabWidget* secondTabs() const { return m_tab1; }
    LayoutRow* layoutRow() const { return m_layoutRow; }
    OptionBinder& binder() { return *m_binder; }

    /// `cmdSubmit_Click`: the web search of the call in `Text2`, by hand, on a thread of its
    /// own; its displays follow when it has ended (`searchFinished`).
    void cmdSubmit_Click();

    /// Writes `Controls.lst_0` in the program folder: every control with its caption, index
    /// and value (`mnuGet_Value`).
    void mnuGet_Value_Click();

Q_SIGNALS:
    /// A conversion started from this window has ended (also when it was refused).
    void conversionFinished();
    /// An open action has ended.
    void inputOpened();
    /// A search by hand has ended.
    void searchFinished();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    // Building.
    void buildMenus();
    void buildToolBar();
    QWidget* buildCentre();
    QWidget* buildInputTab();
    QWidget* buildSortTab();
    QWidget* buildMemoTab();
    QWidget* buildProvinceTab();
    QWidget* buildNoQslTab();
    QWidget* buildMngTab();
    QWidget* buildResultTab();
    QWidget* buildQthTab();

    QCheckBox* tickBox(std::string_view name);
    QRadioButton* memberButton(std::string_view group, int index);
    QGroupBox* frame(std::string_view name, const QString& title);
    QLabel* fixedLabel(const QString& name, const QString& caption);
    QLabel* modelLabel(std::string_view name);
    QLineEdit* textBox(std::string_view name);
    QPushButton* commandButton(std::string_view name, const QString& caption,
                               const QString& toolTip = {}, std::function<void()> extra = {});
    QAction* menuEntry(QMenu* menu, std::string_view name, const QString& caption,
                       std::function<void()> handler = {}, bool hidden = false);

    // Work.
    /// Shows what the window shows of the open input; `afterRun` as a run leaves it.
    void showInput(bool afterRun = false);
    void showRunLabel(const QString& name, const QString& text);
    void showCounter(int row, long value);
    void showStatus(const QString& text, int colour);
    void conversionEnded();
    void viewFile(const std::string& path, const QString& title);
    void viewProgramFile(const char* name);
    void notBuilt();
    /// `cmdSetMas_mas` and `cmdSetMas_dat`: a province master picked by hand.
    void chooseProvinceMaster(std::string_view button);
    void openConfig();
    void openRmksSel();
    void openRirekiSel();
    void openKetasu();
    void openDate();
    void openRtclV4();
    /// The RTCL menus that write a zLog text of a text log (`newForm`: from version 3.00).
    void rtclText(bool newForm, bool all);
    void makeZ2a();
    void savePosition();
    void restorePosition();
    void setRunning(bool running);
    /// The failure path: the trace, the failure dialog, the end of the program.
    void failAndEnd(const failure::Failure& f);

    session::Session& m_session;
    std::string m_handProvinceMaster; ///< the province master picked with `cmdSetMas_mas`
    session::OptionModel& m_model;
    settings::LayoutModel& m_layout;
    FileChooser& m_chooser;
    QtDialogs& m_dialogs;
    OptionBinder* m_binder = nullptr;
    QtRunObserver* m_observer = nullptr;
    ConversionRunner* m_runner = nullptr;
    LayoutRow* m_layoutRow = nullptr;
    QTabWidget* m_tab2 = nullptr;
    QTabWidget* m_tab1 = nullptr;
    QLabel* m_status = nullptr;
    QProgressBar* m_progress = nullptr;
    QPushButton* m_start = nullptr;
    QTableWidget* m_grid = nullptr;
    QToolBar* m_toolBar = nullptr;
    std::function<void(int)> m_programEnd;
    bool m_ending = false;
    bool m_searching = false;
};

} // namespace vornhale::ui
