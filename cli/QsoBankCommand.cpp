#include "QsoBankCommand.h"

#include "ConsoleFrontEnd.h"
#include "ProgramSession.h"
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
    return ProgramSession::withOpenedLog(
        {request.home, request.log, request.type, {}, {}},
        [](ProgramSession& session, base::RunObserver& observer) {
            session::Session& core = session.core();
            engine::RunContext ctx{core.options(),
                                   core.folder(),
                                   core.trace(),
                                   observer,
                                   core.dialogs(),
                                   core.programState(),
                                   core.reference().entities(),
                                   {}};
            static_cast<readers::InputState&>(ctx.run) = core.input();
            std::error_code ec;
            // The window enables the entry only when common QSO lines stand in the working
            // folder; the inputs that are not read again export those.
            if (!engine::qsoBankReadsInput(ctx.run.kind) &&
                !fs::is_regular_file(ctx.work(base::working::zlog_1), ec)) {
                std::cerr
                    << "QSOBank: " << ctx.work(base::working::zlog_1).string()
                    << " がありません。この形式は先に convert --keep-work で変換して下さい。\n";
                return 1;
            }
            std::cout << engine::mnuQSOBank_Click(ctx).string() << "\n";
            return 0;
        });
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
