#include "ProgramSession.h"

#include "CommandLine.h"
#include "base/FailurePath.h"
#include "failure/Failure.h"
#include "readers/InputKinds.h"

#include <iostream>

namespace vornhale::cli {

ProgramSession::ProgramSession(const std::optional<std::filesystem::path>& home)
{
    // Every command writes the settings files at its start (and most the working folder):
    // it holds the program folder to its end, after any other run there.
    m_session = std::make_unique<session::Session>(
        home, m_dialogs, session::Session::FolderHold::WholeSession, [] {
            std::cerr << kWaitingNote << "\n" << std::flush;
        });
    m_session->onWriteFailure([](const std::filesystem::path& path) {
        std::cerr << "設定ファイルに書き込みできません: " << path.string() << "\n";
    });
    if (m_session->decision().environmentFirst) {
        // The window would open the environment settings here; the command line takes them
        // as they stand, as if that window were closed with OK, so that the next start finds
        // them.
        std::cerr << "環境設定: 未設定のフォルダ・ファイル "
                  << m_session->decision().emptyFolderSettings << " 件";
        const char* separator = ": ";
        for (const std::string& key : m_session->decision().emptyFolderKeys) {
            std::cerr << separator << key;
            separator = ", ";
        }
        std::cerr << " (vornhale-cli settings set KEY=DIR で設定、settings show で確認できます)\n";
        m_session->acceptEnvironment();
    }
    reportWriteFailures();
}

std::unique_ptr<ProgramSession>
ProgramSession::begin(const std::optional<std::filesystem::path>& home)
{
    if (!checkHome(home)) {
        return nullptr;
    }
    try {
        return std::unique_ptr<ProgramSession>(new ProgramSession(home));
    } catch (const failure::Failure& f) {
        std::cerr << "エラー内容 ：　" << f.number() << "  " << f.description() << "\n";
        return nullptr;
    }
}

std::unique_ptr<ProgramSession>
ProgramSession::beginWithOptions(const std::optional<std::filesystem::path>& home,
                                 bool forConversion,
                                 session::ProgramStart::DownloadWindow downloadWindow)
{
    std::unique_ptr<ProgramSession> session = begin(home);
    if (session) {
        session->start().setDownloadWindow(std::move(downloadWindow));
    }
    if (!session || !session->core().checkRequiredFiles(forConversion)) {
        return nullptr;
    }
    session->loadMainWindow();
    return session;
}

bool ProgramSession::open(const std::filesystem::path& log, const std::string& type,
                          base::RunObserver& observer, const session::Session::Overrides& overrides)
{
    switch (m_session->open(log, type, observer, overrides)) {
    case readers::OpenResult::Rejected:
        std::cerr << m_session->input().lblIn_name << "\n";
        // A name that the open tested as another kind (an .adi taken for .ALL): which kinds
        // its extension belongs to.
        if (type.empty() && !readers::rowsListingExtension(log).empty()) {
            std::cerr << readers::typeHint(log) << "\n";
        }
        return false;
    case readers::OpenResult::ProgramEnds:
        return false;
    case readers::OpenResult::Opened:
        break;
    }
    if (m_session->input().kind == readers::InputKind::None) {
        std::cerr << "入力ファイルの種類が判りません。--type で指定して下さい: " << log.string()
                  << "\n"
                  << readers::typeHint(log) << "\n";
        return false;
    }
    return true;
}

int ProgramSession::withOpenedLog(const LogToOpen& what, const WithLog& then)
{
    if (!checkLogArgument(what.log)) {
        return 2;
    }
    const std::unique_ptr<ProgramSession> session = beginWithOptions(what.home, false);
    if (!session) {
        return 1;
    }
    ConsoleObserver observer;
    try {
        std::error_code ec;
        const std::filesystem::path log = std::filesystem::absolute(what.log, ec);
        if (!std::filesystem::is_regular_file(log, ec)) {
            std::cerr << "ファイルが見つかりません。 " << log.string() << "\n";
            return 1;
        }
        if (!what.table.empty()) {
            session->core().chooseMdbTable(what.table);
        }
        if (!session->open(log, what.type, observer, what.overrides)) {
            return 1;
        }
        return then(*session, observer);
    } catch (const failure::Failure& f) {
        base::error_exit(f, session->trace(), session->dialogs());
        return 1;
    } catch (const failure::ProgramEnd& end) {
        session->trace().line("終了 : " + end.reason);
        std::cerr << "終了: " << end.reason << "\n";
        return 1;
    }
}

} // namespace vornhale::cli
