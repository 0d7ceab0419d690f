#include "session/Session.h"

#include "base/DataFiles.h"
#include "base/FailurePath.h"
#include "base/FileReplace.h"
#include "base/PairedReplace.h"
#include "engine/Driver.h"
#include "failure/Failure.h"
#include "readers/InputSelection.h"
#include "reference/ProvinceMaster.h"
#include "settings/WorkingFolderCleanup.h"

#include <exception>
#include <fstream>

namespace vornhale::session {

namespace fs = std::filesystem;

namespace {

// A note in the working folder for as long as a conversion runs: found at a start, it tells
// that the last conversion was killed, and its working files are of no use to anyone.
constexpr const char* kRunningNote = "conversion_running.note";

class RunningNote
{
public:
    explicit RunningNote(const fs::path& drive_path) : m_path(drive_path / kRunningNote)
    {
        std::ofstream touch(m_path, std::ios::binary);
    }
    ~RunningNote()
    {
        std::error_code ec;
        fs::remove(m_path, ec);
    }
    RunningNote(const RunningNote&) = delete;
    RunningNote& operator=(const RunningNote&) = delete;

private:
    fs::path m_path;
};

} // namespace

class Session::FolderGuard
{
public:
    explicit FolderGuard(Session& session) : m_session(session) { m_session.holdFolder(); }
    ~FolderGuard() { m_session.releaseFolder(); }
    FolderGuard(const FolderGuard&) = delete;
    FolderGuard& operator=(const FolderGuard&) = delete;

private:
    Session& m_session;
};

void Session::holdFolder()
{
    const std::lock_guard<std::mutex> lock(m_holdMutex);
    if (m_holds++ == 0) {
        try {
            m_lock = std::make_unique<base::ProgramFolderLock>(m_folder.strPath, m_waiting);
        } catch (...) {
            m_holds = 0;
            throw;
        }
    }
}

void Session::releaseFolder()
{
    const std::lock_guard<std::mutex> lock(m_holdMutex);
    if (m_holds > 0 && --m_holds == 0) {
        m_lock.reset();
    }
}

Session::Session(const std::optional<fs::path>& home, base::Dialogs& dialogs, FolderHold hold,
                 std::function<void()> waiting)
    : m_folder(base::ProgramFolder::resolve(home)), m_dialogs(dialogs),
      m_waiting(std::move(waiting))
{
    m_folder.makeFolders();
    // The start writes the settings files: it waits for another run in the same folder. The
    // start itself does not look for a second instance of the program.
    FolderGuard startHold(*this);
    if (hold == FolderHold::WholeSession) {
        holdFolder();
    }
    // What a killed run left half done: the result pair is completed or dropped, and the
    // temporaries of settings and working files go.
    base::PairedReplace::recover(m_folder.drive_path);
    for (const fs::path& folder : {m_folder.strPath, m_folder.drive_path, m_folder.Temp_Files}) {
        base::removeLeftTemporaries(folder);
    }
    m_trace = std::make_unique<base::Trace>(m_folder.Error_Log);
    std::error_code ec;
    if (fs::exists(m_folder.drive_path / kRunningNote, ec)) {
        // The working files of a killed conversion go, as a conversion's own clean-up deletes
        // them; the settings are left to the start.
        m_trace->line("     前回の変換の作業ファイルを削除");
        settings::tmp_file_Del(m_folder, *m_trace, nullptr, m_dialogs);
        fs::remove(m_folder.drive_path / kRunningNote, ec);
    }
    m_files = std::make_unique<settings::SettingsFiles>(m_folder.strPath, m_stored);
    m_files->setWriteFailureHandler([this](const fs::path& path) {
        m_trace->line("設定ファイルに書き込みできません : " + path.string());
        if (m_writeFailure) {
            m_writeFailure(path);
        }
    });
    // A settings write of the window between its runs waits for a run in another process
    // too; a hold that cannot be taken leaves the write to fail and be recorded as before.
    m_files->setWriteHold(
        [this] {
            try {
                holdFolder();
            } catch (const failure::Failure&) {
            }
        },
        [this] { releaseFolder(); });
    m_runChange = [this](std::string_view name, const std::string& value) {
        m_stored.set(name, value);
    };
    m_start = std::make_unique<ProgramStart>(m_folder, *m_files, *m_trace, m_dialogs);
    m_decision = m_start->Main(base::bundledDataFolder());
}

Session::~Session() = default;

void Session::onWriteFailure(std::function<void(const fs::path&)> handler)
{
    m_writeFailure = std::move(handler);
}

std::vector<fs::path> Session::takeWriteFailures()
{
    return m_files->takeWriteFailures();
}

void Session::acceptEnvironment()
{
    m_files->ini_write_cfg();
    m_files->ini_read_new();
}

bool Session::checkRequiredFiles(bool forConversion)
{
    return m_start->Main2_bas_1() && (!forConversion || m_start->Main2_bas_2());
}

OptionFacts Session::factsForModel() const
{
    OptionFacts facts;
    facts.strPath = m_folder.strPath;
    facts.drive_path = m_folder.drive_path;
    facts.in_name = m_input.in_name;
    facts.f_type = m_input.f_type;
    facts.cont_name = m_input.cont_name;
    // The province master that the contest names in `cont_name_zlo.cfg`.
    facts.read_cont_name_zlo = [this](std::string_view contest) -> std::string {
        const fs::path provFolder = m_files->provinceMasterFolder().empty()
                                        ? m_folder.strPath / "Prov" / ""
                                        : m_files->provinceMasterFolder();
        try {
            const auto choice = reference::read_cont_name_zlo(
                contest, m_folder.strPath, provFolder.string(),
                m_stored.value("Prov_mas_dat_dir"), "");
            return choice.Prov_auto_found ? choice.mas_dat_name : std::string();
        } catch (const failure::Failure&) {
            // Without the contest list nothing can be guessed; the operator chooses by hand.
            return {};
        }
    };
    return facts;
}

OptionModel& Session::loadMainWindow()
{
    OptionFacts facts = factsForModel();
    // The load's own message boxes (a history file the environment names but that is not
    // there) belong to the window, which sets them on the facts itself.
    facts.dialogs = nullptr;
    m_layout = std::make_unique<settings::LayoutModel>(m_stored, m_files.get());
    m_model = std::make_unique<OptionModel>(m_stored, m_files.get(), std::move(facts),
                                            m_layout.get());
    m_model->Form_Load();
    return *m_model;
}

settings::Options Session::valuesForRun(const Overrides& overrides) const
{
    settings::Options options = m_stored.forRun(m_runChange);
    for (const auto& [key, value] : overrides) {
        options.replaceForRun(key, value);
    }
    return options;
}

readers::OpenResult Session::open(const fs::path& log, std::string_view typeWord,
                                  base::RunObserver& observer, const Overrides& overrides)
{
    // The count a CTESTWIN converter last gave back is what the next exchange starts from.
    const std::string lastCtestwinCount = m_input.ctestwin.ctestwin_qso_count;
    m_input = readers::InputState{};
    m_input.mdb.table = m_mdbTable;
    m_input.ctestwin.ctestwin_qso_count = lastCtestwinCount;
    settings::Options options = valuesForRun(overrides);
    const readers::ReaderContext ctx{
        options, *m_trace, observer, m_dialogs, m_folder.drive_path, m_input, m_folder.strPath};
    const readers::OpenResult result = readers::openInput(ctx, log, typeWord);
    if (m_model) {
        OptionFacts& facts = m_model->facts();
        facts.in_name = m_input.in_name;
        facts.f_type = m_input.f_type;
        facts.cont_name = m_input.cont_name;
        if (result == readers::OpenResult::Opened) {
            m_model->Check5_Click();
        }
    }
    return result;
}

void Session::onRunChange(settings::Options::Listener forward)
{
    m_runChange = std::move(forward);
}

std::optional<std::string> Session::checkStart(const settings::Options& options,
                                               const std::string& provinceMaster)
{
    if (m_input.kind == readers::InputKind::None) {
        return "入力ファイルの種類が判りません。--type で指定して下さい: " + m_input.in_name + "\n" +
               readers::typeHint(m_input.in_name);
    }
    if (!m_model) {
        loadMainWindow();
    }
    const OptionModel::StartCheck check = m_model->startCheck(options, provinceMaster);
    if (!check.go) {
        return check.status;
    }
    if (!check.master.empty()) {
        m_reference.setProvinceMaster(check.master);
    }
    return std::nullopt;
}

void Session::end(bool deleteWorkingFiles)
{
    FolderGuard hold(*this);
    m_start->End_Shori(deleteWorkingFiles);
}

RunOutcome Session::runConversion(base::RunObserver& observer, const RunRequest& request)
{
    // One run at a time writes the working folder and the settings files.
    FolderGuard hold(*this);
    const RunningNote running(m_folder.drive_path);
    // The run works on the values as they stand now; its own changes reach the store.
    settings::Options options = valuesForRun(request.overrides);
    engine::RunContext ctx{options,   m_folder, *m_trace, observer,
                           m_dialogs, m_program, m_reference.entities(), {}};
    ctx.settings = m_files.get();
    ctx.lookups = &m_reference;
    static_cast<readers::InputState&>(ctx.run) = m_input;
    ctx.run.keep_work = request.keepWork;

    RunOutcome outcome;
    outcome.in_name = m_input.in_name;
    try {
        if (const auto refused = checkStart(options, request.provinceMaster)) {
            outcome.end = RunOutcome::End::Refused;
            outcome.message = *refused;
            return outcome;
        }
        engine::cmdStart_Click(ctx);
    } catch (const failure::Failure& f) {
        outcome.end = RunOutcome::End::Failed;
        outcome.failureNumber = f.number();
        outcome.message = f.description();
        outcome.dialogText = base::errorDialogText(f, *m_trace);
        base::error_exit(f, *m_trace, m_dialogs);
    } catch (const failure::ProgramEnd& end) {
        // The program ends here on purpose; the trace keeps why.
        outcome.end = RunOutcome::End::ProgramEnded;
        outcome.message = end.reason;
        m_trace->line("終了 : " + end.reason);
    } catch (const std::exception& e) {
        // Anything else (a file system or memory failure) takes the same failure path.
        const failure::Failure f(failure::InvalidCall, e.what());
        outcome.end = RunOutcome::End::Failed;
        outcome.failureNumber = f.number();
        outcome.message = f.description();
        outcome.dialogText = base::errorDialogText(f, *m_trace);
        base::error_exit(f, *m_trace, m_dialogs);
    }
    static_cast<readers::InputState&>(m_input) = ctx.run;
    outcome.counters = ctx.run.counters;
    outcome.hamlogFile = ctx.run.names.out_name_ham_n;
    outcome.qslFile = ctx.run.names.out_name_con_n;
    outcome.reportPath = ctx.run.reportPath;
    return outcome;
}

} // namespace vornhale::session
