#include "QsoBankCommand.h"

#include "ConsoleFrontEnd.h"
#include "ProgramSession.h"
#include "base/FailurePath.h"
#include "base/WorkingFiles.h"
#include "engine/QsoBankMenu.h"
#include "engine/RunContext.h"
#include "failure/Failure.h"
#include "readers/InputKinds.h"

#include <iostream>
#include <memory>

namespace vornhale::cli {

namespace fs = std::filesystem;

int runQsoBank(const QsoBankRequest& request)
{
    if (!request.type.empty() && readers::rowOfTypeWord(request.type) == nullptr) {
        std::cerr << "unknown --type: " << request.type << " (" << readers::typeWords() << ")\n";
        return 2;
    }
    if (!checkLogArgument(request.log)) {
        return 2;
    }
    const std::unique_ptr<ProgramSession> session =
        ProgramSession::beginWithOptions(request.home, false);
    if (!session) {
        return 1;
    }
    ConsoleObserver observer;
    session::Session& core = session->core();
    try {
        std::error_code ec;
        const fs::path log = fs::absolute(request.log, ec);
        if (!fs::is_regular_file(log, ec)) {
            std::cerr << "ファイルが見つかりません。 " << log.string() << "\n";
            return 1;
        }
        if (!session->open(log, request.type, observer)) {
            return 1;
        }
        engine::RunContext ctx{core.options(),
                               core.folder(),
                               core.trace(),
                               observer,
                               core.dialogs(),
                               core.programState(),
                               core.reference().entities(),
                               {}};
        static_cast<readers::InputState&>(ctx.run) = core.input();
        // The window enables the entry only when common QSO lines stand in the working
        // folder; the inputs that are not read again export those.
        if (!engine::qsoBankReadsInput(ctx.run.kind) &&
            !fs::is_regular_file(ctx.work(base::working::zlog_1), ec)) {
            std::cerr << "QSOBank: " << ctx.work(base::working::zlog_1).string()
                      << " がありません。この形式は先に convert --keep-work で変換して下さい。\n";
            return 1;
        }
        std::cout << engine::mnuQSOBank_Click(ctx).string() << "\n";
    } catch (const failure::Failure& f) {
        base::error_exit(f, session->trace(), session->dialogs());
        return 1;
    } catch (const failure::ProgramEnd& end) {
        session->trace().line("終了 : " + end.reason);
        std::cerr << "終了: " << end.reason << "\n";
        return 1;
    }
    return 0;
}

void addQsoBankCommand(CLI::App& app, ExitStatus& status)
{
    auto request = std::make_shared<QsoBankRequest>();
    auto home = std::make_shared<HomeOption>();
    CLI::App* command =
        app.add_subcommand("qsobank", "Write a log as QSOBank XML beside it (<stem>.QSOBank.xml)");
    home->addTo(command);
    command->add_option("--type", request->type, "Input kind, as for convert");
    command->add_option("LOG", request->log, "The contest log")->required();
    command->callback([request, home, &status] {
        request->home = home->value();
        status = runQsoBank(*request);
    });
}

} // namespace vornhale::cli
