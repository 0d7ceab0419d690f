#pragma once

#include "ConsoleFrontEnd.h"
#include "session/Session.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace vornhale::cli {

/// One start of the program from the command line: the core's session with the console's
/// dialogs. The command line has no environment window: where the window would open it
/// first, a note goes to stderr and the command goes on with the settings as they stand.
class ProgramSession
{
public:
    /// Told on stderr when another run holds the program folder and this one waits for it.
    static constexpr const char* kWaitingNote =
        "他の実行がプログラムフォルダを使用中です。終わるのを待っています…";

    /// The session, or null after telling on stderr why the program could not start.
    static std::unique_ptr<ProgramSession> begin(const std::optional<std::filesystem::path>& home);
    /// `begin`, then the required files (and, for a conversion, the files a conversion
    /// needs) and the main window's load; null when the program ends on the way. With a
    /// `downloadWindow`, missing data files are offered for download and the offer is taken
    /// (the start then stops, as after the window's download); without, it is declined.
    static std::unique_ptr<ProgramSession>
    beginWithOptions(const std::optional<std::filesystem::path>& home, bool forConversion,
                     session::ProgramStart::DownloadWindow downloadWindow = {});

    session::Session& core() { return *m_session; }
    const base::ProgramFolder& folder() const { return m_session->folder(); }
    base::Trace& trace() { return m_session->trace(); }
    ConsoleDialogs& dialogs() { return m_dialogs; }
    settings::Options& stored() { return m_session->options(); }
    settings::SettingsFiles& files() { return m_session->files(); }
    const session::StartDecision& decision() const { return m_session->decision(); }
    session::ProgramStart& start() { return m_session->start(); }
    session::OptionModel& loadMainWindow() { return m_session->loadMainWindow(); }

    /// Opens `log` as the window's open actions do; false, after telling why on stderr, when
    /// the file was rejected or the operator's answer ended the program.
    bool open(const std::filesystem::path& log, const std::string& type,
              base::RunObserver& observer, const session::Session::Overrides& overrides = {});

    /// What a command that works on one opened log names.
    struct LogToOpen
    {
        std::optional<std::filesystem::path> home;
        std::filesystem::path log;
        std::string type;  ///< as `convert --type`
        std::string table; ///< the table of an N1MM Logger database, if any
        session::Session::Overrides overrides;
    };
    using WithLog = std::function<int(ProgramSession&, base::RunObserver&)>;
    /// Starts the program, opens the log and hands the session and the console observer to
    /// `then`, whose result it returns. 2 for a log argument that cannot be a log; 1 when the
    /// program could not start, the file is missing or rejected, or a failure or the program's
    /// end came on the way (the failure takes the program's error ending).
    static int withOpenedLog(const LogToOpen& what, const WithLog& then);

    /// The orderly end of the program; see `ProgramStart::End_Shori`.
    void end(bool deleteWorkingFiles) { m_session->end(deleteWorkingFiles); }

    /// Whether every settings file could be written since the last call (each failure was
    /// traced and printed as it happened).
    bool reportWriteFailures() { return m_session->takeWriteFailures().empty(); }

private:
    explicit ProgramSession(const std::optional<std::filesystem::path>& home);

    ConsoleDialogs m_dialogs;
    std::unique_ptr<session::Session> m_session;
};

} // namespace vornhale::cli
