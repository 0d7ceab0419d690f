#include "ConvertCommand.h"

#include "ConsoleFrontEnd.h"
#include "ProgramSession.h"
#include "base/FailurePath.h"
#include "base/ProgramFolder.h"
#include "base/Trace.h"
#include "engine/Driver.h"
#include "engine/ReferenceData.h"
#include "engine/ResultGrid.h"
#include "base/WorkingFiles.h"
#include "reference/ProvinceMaster.h"
#include "readers/ContestTags.h"
#include "readers/InputKinds.h"
#include "session/OptionModel.h"
#include "settings/Options.h"
#include "text/Chars.h"

#include <algorithm>
#include <iostream>
#include <memory>

namespace vornhale::cli {
namespace {

namespace fs = std::filesystem;

void removeWorkingFiles(const base::ProgramFolder& folder)
{
    std::error_code ec;
    // The masters' working copies go too; the next start makes them again.
    for (const char* name : {base::working::zlog_1, base::working::zlog_2, "cty_dat0.txt",
                             "cty_dat1.txt", "cty_dat3.txt", "ardx_dat.001", "ardx_dat.002"}) {
        fs::remove(folder.drive_path / name, ec);
    }
}

// The province master of a run with `Check5`: the one given, else the one that the contest
// named by the input suggests, as the window's open guesses it. Without a master, or with the
// state item in a layout, the window keeps its start disabled; so does this.
bool chooseProvinceMaster(engine::RunContext& ctx, const std::string& given,
                          settings::SettingsFiles& files, engine::ReferenceData& reference)
{
    const settings::Options& o = ctx.options;
    if (!o.tick("Check5")) {
        return true;
    }
    std::string master = given;
    if (master.empty()) {
        std::string contest = ctx.run.cont_name;
        if (const auto fromName = readers::contestOfFileName(ctx.run.in_name); !fromName.empty()) {
            contest = std::string(fromName);
        }
        const fs::path provFolder = files.provinceMasterFolder().empty()
                                        ? ctx.folder.strPath / "Prov" / ""
                                        : files.provinceMasterFolder();
        const auto choice = reference::read_cont_name_zlo(
            contest, ctx.folder.strPath, provFolder.string(), o.value("Prov_mas_dat_dir"), "");
        if (choice.Prov_auto_found) {
            master = choice.mas_dat_name;
        }
    }
    std::error_code ec;
    if (master.empty() || !fs::is_regular_file(master, ec)) {
        std::cerr << "Province の Master File の指定をして下さい。"
                  << (master.empty() ? std::string() : " " + master) << "\n";
        return false;
    }
    for (const char* key : {"Rmks1_cfg", "Rmks2_cfg"}) {
        for (const auto& cell : text::split(o.value(key), ",")) {
            if (text::trim(cell) == "州名") {
                std::cerr << "州名 又は Province のどちらかにして下さい。\n";
                return false;
            }
        }
    }
    reference.setProvinceMaster(master);
    return true;
}

} // namespace

int runConvert(const ConvertRequest& request)
{
    if (!request.type.empty() && readers::rowOfTypeWord(request.type) == nullptr) {
        std::cerr << "unknown --type: " << request.type << " (" << readers::typeWords() << ")\n";
        return 2;
    }
    std::vector<std::pair<std::string, std::string>> overrides;
    for (const std::string& set : request.sets) {
        const auto eq = set.find('=');
        if (eq == std::string::npos || eq == 0) {
            std::cerr << "--set needs KEY=VALUE: " << set << "\n";
            return 2;
        }
        overrides.emplace_back(set.substr(0, eq), set.substr(eq + 1));
    }
    if (!request.year.empty()) {
        overrides.emplace_back("txtYYYY", request.year);
    }

    const std::unique_ptr<ProgramSession> session =
        ProgramSession::beginWithOptions(request.home, true);
    if (!session) {
        return 1;
    }

    // The run takes the values as the main window holds them after its load; a value given
    // on the command line replaces one for this run only.
    settings::Options options = session->stored();
    for (auto& [key, value] : overrides) {
        options.set(key, std::move(value));
    }

    const base::ProgramFolder& folder = session->folder();
    base::Trace* trace = &session->trace();
    ConsoleDialogs& dialogs = session->dialogs();
    if (request.cancelQuestions) {
        dialogs.cancelQuestions();
    }
    ConsoleObserver observer;
    engine::ProgramState program;
    engine::ReferenceData reference;
    engine::RunContext ctx{
        options, folder, *trace, observer, dialogs, program, reference.entities(), {}};
    ctx.settings = &session->files();
    ctx.lookups = &reference;

    try {
        std::error_code ec;
        const fs::path log = fs::absolute(request.log, ec);
        if (!fs::is_regular_file(log, ec)) {
            throw failure::Failure(failure::FileNotFound,
                               "ファイルが見つかりません。 " + log.string());
        }
        if (!openLog(ctx, log, request.type)) {
            return 1;
        }
        ctx.run.keep_work = request.keepWork;
        if (ctx.run.f_type.empty()) {
            std::cerr << "入力ファイルの種類が判りません。--type で指定して下さい: " << log.string()
                      << "\n";
            return 1;
        }
        if (!chooseProvinceMaster(ctx, request.provinceMaster, session->files(), reference)) {
            return 1;
        }
        engine::cmdStart_Click(ctx);
    } catch (const failure::Failure& f) {
        base::error_exit(f, *trace, dialogs);
        session->reportWriteFailures();
        return 1;
    } catch (const failure::ProgramEnd& end) {
        // The program ends here on purpose; the trace keeps why.
        trace->line("終了 : " + end.reason);
        std::cerr << "終了: " << end.reason << "\n";
        return 1;
    }

    const engine::Counters& c = ctx.run.counters;
    std::cout << "入力ファイル ：" << ctx.run.in_name << "\n";
    std::cout << "HAMLOG 用    ：" << ctx.run.names.out_name_ham_n << "\n";
    std::cout << "QSL 発行用   ：" << ctx.run.names.out_name_con_n << "\n";
    if (!ctx.run.reportPath.empty()) {
        std::cout << "変換結果     ：" << ctx.run.reportPath << "\n";
    }
    const auto values = engine::resultGridValues(c);
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
    std::cout << "トレース     ：" << trace->path().string() << "\n";
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
    conv->add_option("--year", request->year, "Year of a log that carries none (txtYYYY)");
    conv->add_option(
        "--province-master", request->provinceMaster,
        "Province master (*.mas or zLog *.dat) for Check5; default: guessed from the contest");
    conv->add_flag("--cancel-questions", request->cancelQuestions,
                   "Answer the operator's questions with cancel instead of going on");
    conv->add_flag("--keep-work", request->keepWork,
                   "Leave the working files in the working folder");
    conv->add_option("LOG", request->log, "The contest log")->required();
    conv->callback([request, home, &status] {
        request->home = home->value();
        status = runConvert(*request);
    });
}

} // namespace vornhale::cli
