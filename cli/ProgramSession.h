#pragma once

#include "ConsoleFrontEnd.h"
#include "base/ProgramFolder.h"
#include "base/Trace.h"
#include "session/ProgramStart.h"
#include "engine/RunContext.h"
#include "settings/LayoutModel.h"
#include "session/OptionModel.h"
#include "settings/Options.h"
#include "settings/SettingsFiles.h"

#include <filesystem>
#include <memory>
#include <optional>

namespace vornhale::cli {

/// One start of the program from the command line: the program folder, the trace and the
/// settings as the start-up leaves them. The command line has no environment window: where
/// the window would open it first, a note goes to stderr and the command goes on.
class ProgramSession
{
public:
    /// Starts the program in `home` (or the default program folder). Throws failure::Failure
    /// when the folder or the trace cannot be made.
    explicit ProgramSession(const std::optional<std::filesystem::path>& home);

    /// The session, or null after telling on stderr why the program could not start.
    static std::unique_ptr<ProgramSession> begin(const std::optional<std::filesystem::path>& home);
    /// `begin`, then the required files (and, for a conversion, the files a conversion
    /// needs) and the main window's load; null when the program ends on the way.
    static std::unique_ptr<ProgramSession>
    beginWithOptions(const std::optional<std::filesystem::path>& home, bool forConversion);

    const base::ProgramFolder& folder() const { return m_folder; }
    base::Trace& trace() { return *m_trace; }
    ConsoleDialogs& dialogs() { return m_dialogs; }
    settings::Options& stored() { return m_stored; }
    settings::SettingsFiles& files() { return *m_files; }
    const session::StartDecision& decision() const { return m_decision; }
    session::ProgramStart& start() { return *m_start; }

    /// The main window's load without a window: the options as the window would hold them,
    /// with every load rule applied (an empty `Check16` turns on, for one).
    session::OptionModel& loadMainWindow();

    /// The orderly end of the program; see `ProgramStart::End_Shori`.
    void end(bool deleteWorkingFiles) { m_start->End_Shori(deleteWorkingFiles); }

    /// Whether every settings file could be written since the last call.
    bool reportWriteFailures();

private:
    base::ProgramFolder m_folder;
    std::unique_ptr<base::Trace> m_trace;
    ConsoleDialogs m_dialogs;
    settings::Options m_stored;
    std::unique_ptr<settings::SettingsFiles> m_files;
    std::unique_ptr<session::ProgramStart> m_start;
    session::StartDecision m_decision;
    std::unique_ptr<settings::LayoutModel> m_layout;
    std::unique_ptr<session::OptionModel> m_model;
};

/// The open step for `log` as the command line uses it: false, after telling why on stderr,
/// when the file was rejected or the operator's answer ended the program.
bool openLog(engine::RunContext& ctx, const std::filesystem::path& log, const std::string& type);

} // namespace vornhale::cli
