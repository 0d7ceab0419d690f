#pragma once

#include "base/Dialogs.h"
#include "base/ProgramFolder.h"
#include "base/ProgramFolderLock.h"
#include "base/RunObserver.h"
#include "base/Trace.h"
#include "engine/ReferenceData.h"
#include "engine/RunContext.h"
#include "readers/InputKinds.h"
#include "session/OptionModel.h"
#include "session/ProgramStart.h"
#include "settings/LayoutModel.h"
#include "settings/Options.h"
#include "settings/SettingsFiles.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vornhale::session {

/// What a conversion is given besides the options as they stand.
struct RunRequest
{
    /// Values replaced for this run only: no rule runs on them and none is stored.
    std::vector<std::pair<std::string, std::string>> overrides;
    /// The province master for `Check5` chosen by hand; empty: the one the rules guess.
    std::string provinceMaster;
    /// Leave the working files in the working folder.
    bool keepWork = false;
};

/// How a conversion ended.
struct RunOutcome
{
    enum class End {
        Done,        ///< the final files are written
        Refused,     ///< the start was not possible (no usable input, no province master)
        Failed,      ///< the failure path was taken: the trace holds the failure
        ProgramEnded ///< the program ends on the spot (an answer, the history database)
    };
    End end = End::Done;
    engine::Counters counters;
    std::string in_name;
    std::string hamlogFile; ///< `_hn.csv`
    std::string qslFile;    ///< `_cn.csv`
    std::string reportPath; ///< the report, when one was written
    int failureNumber = 0;
    /// Refused: why, as the window shows it in `lblShori`; Failed: the failure's description;
    /// ProgramEnded: the reason, for the trace.
    std::string message;
    /// Failed: the text of the failure dialog.
    std::string dialogText;
};

/// One run of the program, shared by the window and the command line: the program folder,
/// the trace, the settings files and their start-up, the option and layout models after the
/// main window's load, the open input, and the masters that last for the program's life.
class Session
{
public:
    /// How long the session holds its program folder against other runs in it.
    enum class FolderHold {
        WholeSession, ///< from the start to the end of the session (a command line command)
        EachWrite     ///< during the start, each conversion and the end (the window)
    };

    /// Starts the program in `home` (or the default program folder): folders, the hold on the
    /// program folder, the clean-up of temporaries a killed run left, trace, seeding, the
    /// settings start-up. While another run holds the folder the start waits, calling
    /// `waiting` once first. `dialogs` must outlive the session. Throws failure::Failure when
    /// the folder or the trace cannot be made.
    Session(const std::optional<std::filesystem::path>& home, base::Dialogs& dialogs,
            FolderHold hold = FolderHold::EachWrite, std::function<void()> waiting = {});
    ~Session();

    const base::ProgramFolder& folder() const { return m_folder; }
    base::Trace& trace() { return *m_trace; }
    base::Dialogs& dialogs() { return m_dialogs; }
    /// The options of the program: the one store every change goes through.
    settings::Options& options() { return m_stored; }
    settings::SettingsFiles& files() { return *m_files; }
    ProgramStart& start() { return *m_start; }
    const StartDecision& decision() const { return m_decision; }

    /// Where a settings file that cannot be written is told, after its trace line.
    void onWriteFailure(std::function<void(const std::filesystem::path&)> handler);
    /// The settings files that could not be written since the last call (each traced).
    std::vector<std::filesystem::path> takeWriteFailures();

    /// The environment settings taken as they stand, as if their window closed with OK.
    void acceptEnvironment();

    /// The required files; with `forConversion` also the end date and the files a
    /// conversion needs. False: the program ends.
    bool checkRequiredFiles(bool forConversion);

    /// The main window's load: the option and layout models over the store, `Form_Load`.
    OptionModel& loadMainWindow();
    /// The models after `loadMainWindow`; null before.
    OptionModel* optionModel() { return m_model.get(); }
    settings::LayoutModel* layoutModel() { return m_layout.get(); }

    /// Values replaced for one open or run: no rule runs on them and none is stored.
    using Overrides = std::vector<std::pair<std::string, std::string>>;

    /// Opens `log` as the open actions do, for the kind whose `--type` word is `typeWord`
    /// (empty: as the name tells), on the options as they stand with `overrides` replaced.
    /// The open's changes of options reach the store; the option model learns of the new
    /// input and runs its province rules. Failures of the open are thrown.
    readers::OpenResult open(const std::filesystem::path& log, std::string_view typeWord,
                             base::RunObserver& observer, const Overrides& overrides = {});
    /// The table the next open of an N1MM Logger database exports: "DXLOG" (the menu entry
    /// for all contacts) or "CurrentContest". "DXLOG" unless chosen.
    void chooseMdbTable(std::string table) { m_mdbTable = std::move(table); }
    const readers::InputState& input() const { return m_input; }

    /// Passes each change a run makes to its options on to the store; by default it is
    /// stored at once. The window puts it onto its own thread.
    void onRunChange(settings::Options::Listener forward);

    /// One conversion of the open input, as the start button runs it, on the options as they
    /// stand now with `request.overrides` replaced. Catches every failure: the trace, the
    /// failure dialog and the outcome tell of it.
    RunOutcome runConversion(base::RunObserver& observer, const RunRequest& request = {});

    /// The masters of the program (entity, history, names): made once, kept for every run.
    engine::ReferenceData& reference() { return m_reference; }
    engine::ProgramState& programState() { return m_program; }

    /// The orderly end of the program, holding the program folder; see
    /// `ProgramStart::End_Shori`.
    void end(bool deleteWorkingFiles);

private:
    /// Holds the program folder while it lives; holds of one session nest.
    class FolderGuard;
    void holdFolder();
    void releaseFolder();

    settings::Options valuesForRun(const Overrides& overrides) const;
    /// Whether the start is possible for `options` and the open input; sets the province
    /// master. Returns the reason when it is not.
    std::optional<std::string> checkStart(const settings::Options& options,
                                          const std::string& provinceMaster);
    OptionFacts factsForModel() const;

    base::ProgramFolder m_folder;
    base::Dialogs& m_dialogs;
    std::unique_ptr<base::Trace> m_trace;
    settings::Options m_stored;
    std::unique_ptr<settings::SettingsFiles> m_files;
    std::unique_ptr<ProgramStart> m_start;
    StartDecision m_decision;
    std::function<void(const std::filesystem::path&)> m_writeFailure;
    settings::Options::Listener m_runChange;
    std::unique_ptr<settings::LayoutModel> m_layout;
    std::unique_ptr<OptionModel> m_model;
    readers::InputState m_input;
    std::string m_mdbTable = "DXLOG";
    engine::ProgramState m_program;
    engine::ReferenceData m_reference;
    std::function<void()> m_waiting;
    std::mutex m_holdMutex;
    int m_holds = 0;
    std::unique_ptr<base::ProgramFolderLock> m_lock;
};

} // namespace vornhale::session
