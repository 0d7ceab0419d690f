#include "ConvertCommand.h"

#include "ConsoleFrontEnd.h"
#include "DownloadCommand.h"
#include "ProgramSession.h"
#include "base/FailurePath.h"
#include "base/ProgramFolder.h"
#include "base/WorkingFiles.h"
#include "engine/ResultGrid.h"
#include "readers/InputKinds.h"
#include "text/Chars.h"
#include "text/WriteBehind.h"

#include <iostream>
#include <memory>

namespace vornhale::cli {
namespace {

namespace fs = std::filesystem;

void removeWorkingFiles(const base::ProgramFolder& folder)
{
    std::error_code ec;
    // The masters' working copies go too; the next start makes them again. The pages of the
    // large ones are released by the writer thread while the run ends.
    for (const char* name : {base::working::zlog_1, base::working::zlog_2, "cty_dat0.txt",
                             "cty_dat1.txt", "cty_dat3.txt", "ardx_dat.001", "ardx_dat.002"}) {
        text::removeBehind(folder.drive_path / name, ec);
    }
}

// A failure's dialog names the trace file; the command line gives the whole path.
void tellTrace(ProgramSession& session)
{
    std::cerr << "トレース     ：" << session.trace().path().string() << "\n";
}

// A .TXT log carries no year: the run takes the contest year of the settings (or `--set
// txtYYYY`), and says which.
void tellYearOfTxt(ProgramSession& session, const Overrides& overrides)
{
    std::string year = session.stored().value("txtYYYY");
    for (const auto& [key, value] : overrides) {
        if (text::equalsNoCase(key, "txtYYYY")) {
            year = value;
        }
    }
    std::cerr << "a .TXT log carries no year: its contacts are taken as of " << year
              << " (give --year YYYY for another)\n";
}

} // namespace

int runConvert(const ConvertRequest& request)
{
    if (!request.type.empty() && readers::rowOfTypeWord(request.type) == nullptr) {
        std::cerr << "unknown --type: " << request.type << " (" << readers::typeWords() << ")\n";
        return 2;
    }
    session::RunRequest run;
    if (!parseSets(request.sets, run.overrides)) {
        return 2;
    }
    if (!request.year.empty()) {
        if (const auto refusal = yearRefusal(request.year)) {
            std::cerr << *refusal << "\n";
            return 2;
        }
        run.overrides.emplace_back("txtYYYY", request.year);
    }
    // A mistyped name or folder is told plainly before the program starts.
    if (!checkLogArgument(request.log) || !checkHome(request.home)) {
        return 2;
    }
    run.provinceMaster = request.provinceMaster;
    run.keepWork = request.keepWork;

    bool downloaded = false;
    session::ProgramStart::DownloadWindow downloadWindow;
    if (request.downloadMissing) {
        downloadWindow = [&downloaded](tools::DataDownloads& window) {
            runStartDownloads(window);
            downloaded = true;
        };
    }
    std::unique_ptr<ProgramSession> session =
        ProgramSession::beginWithOptions(request.home, true, downloadWindow);
    if (!session && downloaded) {
        // The start stops after the download window; the command line starts the program
        // again at once, as the operator would, and the files are tested anew.
        std::cerr << "ダウンロードの後、プログラムを開始し直します。\n";
        session = ProgramSession::beginWithOptions(request.home, true);
    }
    if (!session) {
        return 1;
    }
    if (request.cancelQuestions) {
        session->dialogs().cancelQuestions();
    }
    ConsoleObserver observer;

    std::error_code ec;
    const fs::path log = fs::absolute(request.log, ec);
    try {
        if (!fs::is_regular_file(log, ec)) {
            throw failure::Failure(failure::FileNotFound,
                                   "ファイルが見つかりません。 " + log.string());
        }
        if (!request.table.empty()) {
            session->core().chooseMdbTable(request.table);
        }
        if (!session->open(log, request.type, observer, run.overrides)) {
            return 1;
        }
    } catch (const failure::Failure& f) {
        base::error_exit(f, session->trace(), session->dialogs());
        session->reportWriteFailures();
        tellTrace(*session);
        return 1;
    } catch (const failure::ProgramEnd& end) {
        session->trace().line("終了 : " + end.reason);
        std::cerr << "終了: " << end.reason << "\n";
        return 1;
    }

    if (session->core().input().kind == readers::InputKind::Txt && request.year.empty()) {
        tellYearOfTxt(*session, run.overrides);
    }
    const session::RunOutcome outcome = session->core().runConversion(observer, run);
    switch (outcome.end) {
    case session::RunOutcome::End::Refused:
        std::cerr << outcome.message << "\n";
        return 1;
    case session::RunOutcome::End::Failed:
        session->reportWriteFailures();
        tellTrace(*session);
        return 1;
    case session::RunOutcome::End::ProgramEnded:
        std::cerr << "終了: " << outcome.message << "\n";
        return 1;
    case session::RunOutcome::End::Done:
        break;
    }

    const base::ProgramFolder& folder = session->folder();
    std::cout << "入力ファイル ：" << outcome.in_name << "\n";
    std::cout << "HAMLOG 用    ：" << outcome.hamlogFile << "\n";
    std::cout << "QSL 発行用   ：" << outcome.qslFile << "\n";
    if (!outcome.reportPath.empty()) {
        std::cout << "変換結果     ：" << outcome.reportPath << "\n";
    }
    const auto values = engine::resultGridValues(outcome.counters);
    for (std::size_t row = 0; row < values.size(); ++row) {
        std::cout << engine::kResultGridCaptions[row] << "\t" << values[row] << " "
                  << engine::kResultGridUnit << "\n";
    }
    if (request.keepWork) {
        std::cout << "作業フォルダ ：" << folder.drive_path.string() << "\n";
    } else {
        removeWorkingFiles(folder);
    }
    session->end(!request.keepWork);
    session->reportWriteFailures();
    std::cout << "トレース     ：" << session->trace().path().string() << "\n";
    return 0;
}

void addConvertCommand(CLI::App& app, ExitStatus& status)
{
    auto request = std::make_shared<ConvertRequest>();
    auto home = std::make_shared<HomeOption>();
    CLI::App* conv =
        app.add_subcommand("convert", "Convert a contest log into _hn.csv and _cn.csv");
    home->addTo(conv);
    conv->add_option("--set", request->sets, "Override an option for this run: KEY=VALUE")
        ->allow_extra_args(false);
    conv->add_option("--type", request->type, "Input kind: " + readers::typeWords());
    conv->add_option("--table", request->table,
                     "Table of an N1MM Logger database (--type mdb): DXLOG or CurrentContest")
        ->transform(CLI::IsMember({"DXLOG", "CurrentContest"}, CLI::ignore_case));
    conv->add_option("--year", request->year,
                     "Year of a .TXT log, which carries none: four digits (txtYYYY)");
    conv->add_option(
        "--province-master", request->provinceMaster,
        "Province master (*.mas or zLog *.dat) for Check5; default: guessed from the contest");
    conv->add_flag("--cancel-questions", request->cancelQuestions,
                   "Answer the operator's questions with cancel instead of going on");
    conv->add_flag("--download-missing", request->downloadMissing,
                   "Download cty.dat, ARDX.DAT or ARRL10.DAT when missing (needs inet_flag=OK)");
    conv->add_flag("--keep-work", request->keepWork,
                   "Leave the working files in the working folder");
    conv->add_option("LOG", request->log, "The contest log")->required();
    conv->callback([request, home, &status] {
        request->home = home->value();
        status = runConvert(*request);
    });
}

} // namespace vornhale::cli
