#include "ProgramSession.h"

#include "base/DataFiles.h"
#include "failure/Failure.h"
#include "readers/InputSelection.h"

#include <iostream>

namespace vornhale::cli {

ProgramSession::ProgramSession(const std::optional<std::filesystem::path>& home)
    : m_folder(base::ProgramFolder::resolve(home))
{
    m_folder.makeFolders();
    m_trace = std::make_unique<base::Trace>(m_folder.Error_Log);
    m_files = std::make_unique<settings::SettingsFiles>(m_folder.strPath, m_stored);
    m_files->setWriteFailureHandler([this](const std::filesystem::path& path) {
        m_trace->line("設定ファイルに書き込みできません : " + path.string());
        std::cerr << "設定ファイルに書き込みできません: " << path.string() << "\n";
    });
    m_start = std::make_unique<session::ProgramStart>(m_folder, *m_files, *m_trace, m_dialogs);
    m_decision = m_start->Main(base::bundledDataFolder());
    if (m_decision.environmentFirst) {
        // The window would open the environment settings here; the command line takes them
        // as they stand, as if that window were closed with OK, so that the next start finds
        // them.
        std::cerr << "環境設定: 未設定のフォルダ・ファイル " << m_decision.emptyFolderSettings
                  << " 件 (vornhale-cli settings show で確認できます)\n";
        m_files->ini_write_cfg();
        m_files->ini_read_new();
    }
    reportWriteFailures();
}

session::OptionModel& ProgramSession::loadMainWindow()
{
    session::OptionFacts facts;
    facts.strPath = m_folder.strPath;
    facts.drive_path = m_folder.drive_path;
    // The load's own message boxes (a history file the environment names but that is not
    // there) belong to the window; the command line tells of missing files where it uses them.
    facts.dialogs = nullptr;
    m_layout = std::make_unique<settings::LayoutModel>(m_stored, m_files.get());
    m_model = std::make_unique<session::OptionModel>(m_stored, m_files.get(), std::move(facts),
                                                      m_layout.get());
    m_model->Form_Load();
    return *m_model;
}

std::unique_ptr<ProgramSession>
ProgramSession::begin(const std::optional<std::filesystem::path>& home)
{
    try {
        return std::make_unique<ProgramSession>(home);
    } catch (const failure::Failure& f) {
        std::cerr << "エラー内容 ：　" << f.number() << "  " << f.description() << "\n";
        return nullptr;
    }
}

std::unique_ptr<ProgramSession>
ProgramSession::beginWithOptions(const std::optional<std::filesystem::path>& home,
                                 bool forConversion)
{
    std::unique_ptr<ProgramSession> session = begin(home);
    if (!session || !session->start().Main2_bas_1() ||
        (forConversion && !session->start().Main2_bas_2())) {
        return nullptr;
    }
    session->loadMainWindow();
    return session;
}

bool openLog(engine::RunContext& ctx, const std::filesystem::path& log, const std::string& type)
{
    switch (readers::openInput(ctx, log, type)) {
    case readers::OpenResult::Rejected:
        std::cerr << ctx.run.lblIn_name << "\n";
        return false;
    case readers::OpenResult::ProgramEnds:
        return false;
    case readers::OpenResult::Opened:
        break;
    }
    return true;
}

bool ProgramSession::reportWriteFailures()
{
    // Each failure was traced and printed as it happened.
    return m_files->takeWriteFailures().empty();
}

} // namespace vornhale::cli
