#include "RtclCommand.h"

#include "ConsoleFrontEnd.h"
#include "ProgramSession.h"
#include "base/FailurePath.h"
#include "readers/InputKinds.h"
#include "readers/RtclTextReader.h"
#include "readers/RtclV4Form.h"
#include "readers/RtclZlogMakers.h"
#include "text/Chars.h"

#include <iostream>
#include <memory>

namespace vornhale::cli {
namespace {

namespace fs = std::filesystem;
using readers::InputKind;

// The makers of the text generations, by generation and form.
std::string makeFromText(const readers::ReaderContext& ctx, InputKind kind, bool all)
{
    if (kind == InputKind::LogOld) {
        return all ? readers::mnu_rtcl_log2all(ctx) : readers::mnu_rtcl_log2txt(ctx);
    }
    return all ? readers::mnu_rtcl_log2all_new(ctx) : readers::mnu_rtcl_log2txt_new(ctx);
}

} // namespace

int runRtcl(const RtclRequest& request)
{
    const readers::InputKindRow* row = readers::rowOfTypeWord(request.type);
    const InputKind kind = row == nullptr ? InputKind::None : row->kind;
    if (kind != InputKind::LogOld && kind != InputKind::LogNew && kind != InputKind::LogV4 &&
        kind != InputKind::LogV430) {
        std::cerr << "--type は log_old, log_new, log_v4, log_v430 のどれかです: " << request.type
                  << "\n";
        return 2;
    }
    const std::string form = text::lower(request.form);
    if (form != "txt" && form != "all") {
        std::cerr << "--form は txt か all です: " << request.form << "\n";
        return 2;
    }
    const bool all = form == "all";
    if (!checkLogArgument(request.log)) {
        return 2;
    }

    const std::unique_ptr<ProgramSession> session = ProgramSession::begin(request.home);
    if (!session) {
        return 1;
    }
    std::error_code ec;
    const fs::path log = fs::absolute(request.log, ec);
    try {
        if (!fs::is_regular_file(log, ec)) {
            throw failure::Failure(failure::FileNotFound,
                                   "ファイルが見つかりません。 " + log.string());
        }
        session->trace().line("入力ファイル ：" + log.string());
        std::string written;
        if (kind == InputKind::LogV4 || kind == InputKind::LogV430) {
            readers::RtclV4Form window;
            const bool chosen =
                kind == InputKind::LogV4 ? window.mnuVer_430mae(log) : window.mnuVer_430ato(log);
            if (!chosen) {
                std::cerr << window.lblIn_name() << "\n";
                return 1;
            }
            written =
                all ? window.cmdMake_all(session->trace()) : window.cmdMake_txt(session->trace());
        } else {
            ConsoleObserver observer;
            readers::InputState run;
            run.in_name = log.string();
            run.chosen_name = run.in_name;
            const readers::ReaderContext ctx{session->stored(),
                                             session->trace(),
                                             observer,
                                             session->dialogs(),
                                             session->folder().drive_path,
                                             run};
            // A log of the other generation is refused with the same box as its open menu.
            if (readers::check_rcvd_log(ctx, readers::rtcl_gen(kind))) {
                return 1;
            }
            written = makeFromText(ctx, kind, all);
        }
        std::cout << written << "\n";
    } catch (const failure::Failure& f) {
        base::error_exit(f, session->trace(), session->dialogs());
        return 1;
    }
    return 0;
}

void addRtclCommand(CLI::App& app, ExitStatus& status)
{
    auto request = std::make_shared<RtclRequest>();
    auto home = std::make_shared<HomeOption>();
    CLI::App* command = app.add_subcommand(
        "rtcl2zlog",
        "Write an RTCL log as a zLog .TXT or .ALL text beside it, without a conversion");
    home->addTo(command);
    command->add_option("--type", request->type, "Generation: log_old, log_new, log_v4, log_v430")
        ->required();
    command->add_option("--form", request->form, "The zLog text to write: txt or all")->required();
    command->add_option("LOG", request->log, "The RTCL log")->required();
    command->callback([request, home, &status] {
        request->home = home->value();
        status = runRtcl(*request);
    });
}

} // namespace vornhale::cli
