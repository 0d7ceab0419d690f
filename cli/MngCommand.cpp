#include "MngCommand.h"

#include "ProgramSession.h"
#include "base/FailurePath.h"
#include "engine/ManagerWalk.h"
#include "engine/RunContext.h"
#include "manager/ManagerMaster.h"
#include "manager/WebManagerSearch.h"
#include "net/Http.h"
#include "readers/InputKinds.h"

#include <iostream>
#include <memory>

namespace vornhale::cli {
namespace {

namespace fs = std::filesystem;

void show(const char* key, const std::string& value)
{
    std::cout << key << "\t" << value << "\n";
}

settings::Options optionsWith(const settings::Options& stored,
                              const session::Session::Overrides& overrides)
{
    settings::Options options = stored;
    for (const auto& [key, value] : overrides) {
        options.replaceForRun(key, value);
    }
    return options;
}

} // namespace

int runMngSearch(const MngRequest& request)
{
    session::Session::Overrides overrides;
    if (!parseSets(request.sets, overrides)) {
        return 2;
    }
    const std::unique_ptr<ProgramSession> session =
        ProgramSession::beginWithOptions(request.home, false);
    if (!session) {
        return 1;
    }
    const settings::Options options = optionsWith(session->stored(), overrides);
    const base::ProgramFolder& folder = session->folder();
    try {
        manager::ManagerMaster& master = session->core().reference().managers();
        if (!master.loaded()) {
            master.read_MNG_z_full_mp(options.value("mng_z_full_txt_dir"), session->trace());
        }
        const manager::WebManagerSearch web(net::WebConfig::load(folder.strPath), folder.strPath,
                                            folder.drive_path);
        const manager::WebSearchResult r =
            web.Get_MNG_web(request.call, master.MNG_lookup(request.call));
        if (!r.fetch.ok) {
            std::cerr << "qsl2_search: " << r.fetch.error << "\n";
        }
        show("Search_call", r.Search_call);
        show("mng_web", r.mng_web);
        show("Web_date", r.Web_date);
        show("Web_source", r.Web_source);
        show("mng_file", r.mng_file);
        show("Label45", r.outcome());
        return 0;
    } catch (const failure::Failure& f) {
        base::error_exit(f, session->trace(), session->dialogs());
        return 1;
    }
}

int runMngWalk(const MngRequest& request)
{
    if (!request.type.empty() && readers::rowOfTypeWord(request.type) == nullptr) {
        std::cerr << "unknown --type: " << request.type << " (" << readers::typeWords() << ")\n";
        return 2;
    }
    session::Session::Overrides overrides;
    if (!parseSets(request.sets, overrides)) {
        return 2;
    }
    return ProgramSession::withOpenedLog(
        {request.home, request.walkLog, request.type, {}, overrides},
        [&overrides](ProgramSession& session, base::RunObserver& observer) {
            session::Session& core = session.core();
            engine::RunContext ctx{optionsWith(session.stored(), overrides),
                                   session.folder(),
                                   session.trace(),
                                   observer,
                                   session.dialogs(),
                                   core.programState(),
                                   core.reference().entities(),
                                   {}};
            static_cast<readers::InputState&>(ctx.run) = core.input();
            ctx.lookups = &core.reference();
            const engine::ManagerWalkResult grid = engine::mnuGet_MNG_Click(ctx, core.reference());

            std::string heads;
            for (const manager::WalkColumn& c : manager::BatchManagerWalk::columns()) {
                heads += (heads.empty() ? "" : "\t") + std::string(c.head);
            }
            std::cout << heads << "\n";
            for (const manager::WalkRow& row : grid.rows) {
                std::string line;
                for (const std::string& cell : row.cells()) {
                    line += (line.empty() ? "" : "\t") + cell;
                }
                std::cout << line << "\n";
            }
            return 0;
        });
}

void addMngCommand(CLI::App& app, ExitStatus& status)
{
    auto request = std::make_shared<MngRequest>();
    auto home = std::make_shared<HomeOption>();
    CLI::App* mng = app.add_subcommand(
        "mng", "Search the QSL manager of a call on the web, or walk the calls of a log");
    home->addTo(mng);
    mng->add_option("--set", request->sets, "Override an option for this command: KEY=VALUE")
        ->allow_extra_args(false);
    mng->add_option("--type", request->type, "Input kind of the --walk log, as for convert");
    auto* walk = mng->add_option("--walk", request->walkLog,
                                 "Walk the calls of this log (.ALL, .TXT, .ZLO) as the batch "
                                 "manager fetch does");
    auto* call = mng->add_option("CALL", request->call, "The call sign to search");
    walk->excludes(call);
    mng->callback([request, home, walk, call, &status] {
        request->home = home->value();
        if (walk->count() == 0 && call->count() == 0) {
            std::cerr << "mng needs a CALL or --walk LOG\n";
            status = 2;
            return;
        }
        status = walk->count() > 0 ? runMngWalk(*request) : runMngSearch(*request);
    });
}

} // namespace vornhale::cli
