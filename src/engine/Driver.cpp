#include "engine/Driver.h"

#include "failure/Failure.h"
#include "base/FileMask.h"
#include "settings/WorkingFolderCleanup.h"
#include "engine/CallSplit.h"
#include "engine/FinalOutput.h"
#include "engine/RecordConversion.h"
#include "engine/RecordLookups.h"
#include "engine/RemarkLayout.h"
#include "engine/ResultGrid.h"
#include "base/WorkingFiles.h"
#include "history/NoQslMarking.h"
#include "manager/ManagerResultLog.h"
#include "manager/WebManagerSearch.h"
#include "readers/CabrilloTxtForm.h"
#include "readers/InputKinds.h"
#include "readers/ZlogTranslators.h"
#include "settings/RemarkHistory.h"
#include "tools/DuplicateList.h"
#include "text/Chars.h"
#include "text/FileBytes.h"
#include "text/LineFile.h"
#include "text/WriteBehind.h"

#include <filesystem>
#include <memory>
#include <string>

namespace vornhale::engine {
namespace {

namespace fs = std::filesystem;

void removeIfExists(const fs::path& path)
{
    std::error_code ec;
    text::removeBehind(path, ec);
}

// Stores the settings through `write` when the run has settings files.
void storeSettings(RunContext& ctx, void (settings::SettingsFiles::*write)())
{
    if (ctx.settings == nullptr) {
        return;
    }
    // A settings file that cannot be written does not stop the run; the front end hears of
    // it through the settings' own failure handler.
    (ctx.settings->*write)();
}

void traceSettingsFile(RunContext& ctx, const char* name, const char* banner)
{
    ctx.trace.line(banner);
    const fs::path path = ctx.folder.strPath / name;
    std::error_code ec;
    if (!fs::is_regular_file(path, ec)) {
        return;
    }
    for (const std::string& line : text::readLines(path)) {
        ctx.trace.line(line);
    }
}

std::string settleZoneMoji(const settings::Options& o)
{
    switch (o.member("Option6")) {
    case 3: {
        const std::string& t = o.value("txtZone_moji");
        return text::trim(t).empty() ? std::string() : t;
    }
    case 2:
        return "ITU = ";
    case 1:
        return "CQ = ";
    case 0:
        return "Z";
    default:
        return {};
    }
}

std::string settleProvMoji(const settings::Options& o)
{
    switch (o.member("Option4")) {
    case 3: {
        std::string t = o.value("txtProv_moji");
        if (text::trim(t).empty()) {
            return {};
        }
        if (t.back() != ' ') {
            t += ' ';
        }
        return t;
    }
    case 1:
        return "Oblast = ";
    case 0:
        return "Province = ";
    case 4:
        return "State = ";
    default:
        return {};
    }
}

// The masters begun at the start of the run are there; when they failed, they are made again
// at the next run.
void mastersMade(RunContext& ctx)
{
    if (ctx.lookups == nullptr) {
        return;
    }
    try {
        ctx.lookups->finishMasters(ctx);
    } catch (...) {
        ctx.program.masters_ready = false;
        throw;
    }
}

} // namespace

void tmp_file_Del(RunContext& ctx)
{
    settings::tmp_file_Del(ctx.folder, ctx.trace, ctx.settings, ctx.dialogs);
}

void sort_set_(RunContext& ctx)
{
    ctx.run.sort_wake = ctx.options.isOn("Option08", 0) ? 1 : 0;
    const int kind = ctx.options.member("Option02");
    ctx.run.sort_kind = static_cast<std::int16_t>(kind >= 0 && kind <= 3 ? kind + 1 : 0);
}

void showCounters(RunContext& ctx)
{
    const auto values = resultGridValues(ctx.run.counters);
    for (std::size_t row = 0; row < values.size(); ++row) {
        ctx.observer.counter(static_cast<int>(row), values[row]);
    }
}

void cmd_henkan(RunContext& ctx, const RemarkLayout& layout)
{
    RunState& run = ctx.run;
    ctx.trace.line("Private sub cmd_henkan()");
    ctx.observer.status("  処 理 開 始", base::Colour::Green);

    run.written_count = 0;
    run.counters.no_qsl_kazu = 0;
    run.counters.m_kazu = 0;
    ctx.observer.status("", base::Colour::Black);
    run.counters.name_kazu = 0;

    const std::unique_ptr<readers::LogReader> reader = readers::makeReader(run.kind);
    if (reader->countsLines()) {
        run.line_count = text::Count_lines(run.in_name);
    }
    run.op_filter_name = ctx.options.value("txtOp_name");
    sort_set_(ctx);
    // The list of entities without cards asks the masters; otherwise they are made while
    // the reader reads.
    if (ctx.options.tick("Check09")) {
        mastersMade(ctx);
    }
    if (ctx.lookups != nullptr) {
        ctx.lookups->prepareHistory(ctx);
    }

    run.QSL_Q = std::string(text::trim(ctx.options.value("txtQSL_Q")));
    run.QSL_S = ctx.options.value("txtQSL_S");
    run.fixedRemark1 = ctx.options.value("txtRmks1");
    run.fixedRemark2 = ctx.options.value("txtRmks2");
    if (run.QSL_S.empty()) {
        run.QSL_S = " ";
    }
    if (run.QSL_Q.empty()) {
        run.QSL_Q = " ";
    }

    reader->read(ctx);
    mastersMade(ctx);
    // The stages after the reader never read the log: the bytes kept of it go.
    text::keepReadsOf({});

    bak_sep1(ctx);
    if (layout.use().state && ctx.lookups != nullptr) {
        ctx.lookups->ensureStateMaster(ctx);
    }
    henkan_conv(ctx, layout);

    // The check list of the worked stations beside the input, made from `zlog_2.txt`.
    if (ctx.options.tick("Check06")) {
        tools::DuplicateList(ctx.folder.drive_path, ctx.trace).run(run.in_name);
        if (!run.keep_work) {
            base::deleteByMask(ctx.folder.drive_path, "zlog_??.txt");
            base::deleteByMask(ctx.folder.drive_path, "zlog_???.txt");
        }
    }

    if (!run.keep_work) {
        for (const char* mask :
             {"sort-in.csv", "sort-out.csv", "sort-out?.csv", "temp_s.csv", "temp_d.csv",
              "semp_s.csv", "semp_d.csv", "uemp_s.csv", "uemp_d.csv"}) {
            base::deleteByMask(ctx.folder.drive_path, mask);
        }
    }
    run.written_count = 0;
    // The comments of this run join their histories, kept with the program's settings.
    if (ctx.settings != nullptr) {
        settings::RemarkHistory::save_rmks2(ctx.folder.strPath, ctx.options.value("txtRmks1"),
                                            ctx.options.value("txtRmks2"), false, ctx.dialogs,
                                            &ctx.trace);
    }
}

namespace {

// The start of a run: the settings stored, the masters made once a start of the program, the
// results of the former run removed, the settings of this run in the trace, the labels and
// counters cleared.
void startRun(RunContext& ctx)
{
    RunState& run = ctx.run;
    storeSettings(ctx, &settings::SettingsFiles::ini_write_old);
    if (!ctx.program.masters_ready && ctx.lookups != nullptr) {
        ctx.lookups->startMasters(ctx);
        ctx.program.masters_ready = true;
    }

    tmp_file_Del(ctx);
    removeIfExists(run.names.out_name_con);
    removeIfExists(run.names.out_name_ham);

    ctx.trace.line(std::string(46, '*'));
    ctx.trace.line("Private sub cmdStart_Click()_0");
    traceSettingsFile(ctx, "Vornhale_cfg.ini", "=========  Vornhale_cfg.ini  ==== 変換時 =======");
    traceSettingsFile(ctx, "Vornhale_new.ini", "=========  Vornhale_new.ini  ==== 変換時 =======");
    traceSettingsFile(ctx, "Vornhale.ini", "=========  Vornhale.ini  ==== 変換時 =======");
    ctx.trace.line("-----------------------");
    ctx.trace.line("入力ファイル ：" + run.in_name);
    ctx.trace.line("入 力 件 数　：" + run.Label37);

    ctx.observer.label("Label33", "");
    ctx.observer.label("Label35", std::string(text::trim(text::replaceAll(run.Label37, "件", ""))));
    ctx.observer.label("Text1", "");
    ctx.observer.label("Text2", "");
    removeIfExists(ctx.folder.Temp_Files / "bak_qso.HDX");
    if (ctx.lookups != nullptr) {
        ctx.lookups->openWebSearchResults(ctx);
    }

    ctx.observer.status("", base::Colour::Black);
    run.counters = Counters{};
    showCounters(ctx);
}

// What the stages read besides the options: the items the layouts use, what the input kind
// prepares, the zone and province labels. The settings are stored on the way.
void prepareStages(RunContext& ctx, const RemarkLayout& layout)
{
    RunState& run = ctx.run;
    run.use = layout.use();
    readers::makeReader(run.kind)->beforeConversion(ctx);
    storeSettings(ctx, &settings::SettingsFiles::ini_write_new);

    ctx.observer.status("  処 理 開 始", base::Colour::Green);
    run.Zone_moji = settleZoneMoji(ctx.options);
    run.Prov_moji = settleProvMoji(ctx.options);
    storeSettings(ctx, &settings::SettingsFiles::ini_write_new);
}

// After the stages: the result list of the web search closed, and the log in the other zLog
// text form beside the input when asked for.
void afterStages(RunContext& ctx)
{
    RunState& run = ctx.run;
    if (ctx.lookups != nullptr) {
        ctx.lookups->closeWebSearchResults(ctx);
    }
    // The list may be shown only when it is this input's.
    run.webResultsViewable = manager::ManagerResultLog::belongsTo(
        run.names.Get_Mng_result_name, run.in_name);

    if (run.f_type == "txt" && ctx.options.value("Make_t2a") == "1") {
        readers::zlog_txt_2_zlog_all(ctx);
    } else if (run.f_type == "all" && ctx.options.value("Make_a2t") == "1") {
        readers::zlog_all_2_zlog_txt(ctx);
    }
}

// The results: the mark replacements of the history (N to J wins when both are ticked), the
// counts, the final files, the counters, the report and the No-QSL mark.
void makeResults(RunContext& ctx, const RemarkLayout& layout)
{
    RunState& run = ctx.run;
    const history::ResultFiles results{run.names.out_name_con0, run.names.out_name_ham0,
                                       ctx.folder.drive_path};
    if (ctx.options.tick("Check3")) {
        history::all_NJ_Chikan_full(results, run.QSL_Q, run.QSL_S, ctx.trace);
    } else if (ctx.options.tick("Check4")) {
        history::all_JN_Chikan_full(results, run.QSL_Q, run.QSL_S, ctx.trace);
    }
    const std::optional<CardMarkCounts> counted = count_No_QSL_MNG(ctx, layout);
    const std::string lastMode = count_No_QSL_MNG_2(ctx, counted);
    ctx.trace.line("Private sub cmdStart_Click()---Ｖ５用に変換");
    makeFinalFiles(ctx, layout, lastMode);
    showCounters(ctx);
    if (ctx.options.tick("Check21")) {
        run.reportPath = Out_Henkan_Result(ctx).string();
    }
    if (ctx.options.value("No_QSL_moji") != "N") {
        history::No_QSL_moji_ReWrite(run.names.out_name_ham0, run.names.out_name_ham,
                                     run.names.out_name_con0, run.names.out_name_con,
                                     ctx.options.value("No_QSL_moji"), ctx.options.tick("Check21"),
                                     ctx.trace, ctx.observer);
    }
}

// The end of a run: the working results deleted, the Cabrillo log's zLog form, the settings
// stored.
void endRun(RunContext& ctx)
{
    RunState& run = ctx.run;
    ctx.observer.status("　処理終了", base::Colour::BrightBlue);
    for (const std::string& name : {run.names.out_name_ham0, run.names.out_name_con0,
                                    run.names.out_name_con, run.names.out_name_ham}) {
        removeIfExists(name);
    }
    base::deleteByMask(ctx.folder.strPath, std::string(manager::kQslSearchPage) + "_?");
    // A log opened as Cabrillo also gets its zLog .TXT form beside it.
    if (run.opened_as_cbr) {
        readers::cabrillo_2_zlog_txt(ctx);
    }
    storeSettings(ctx, &settings::SettingsFiles::ini_write_old);
    ctx.trace.line("正常終了");
}

} // namespace

void cmdStart_Click(RunContext& ctx)
{
    ctx.trace.line("Private sub cmdStart_Click()");
    try {
        startRun(ctx);
        const RemarkLayout layout = RemarkLayout::fromOptions(ctx.options);
        prepareStages(ctx, layout);
        cmd_henkan(ctx, layout);
        afterStages(ctx);
        makeResults(ctx, layout);
        endRun(ctx);
    } catch (...) {
        // The masters came first: their failure is the run's, and the lines of the steps
        // beside them follow theirs.
        mastersMade(ctx);
        throw;
    }
}

} // namespace vornhale::engine
