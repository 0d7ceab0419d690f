#include "EntityCommand.h"

#include "ProgramSession.h"
#include "base/FailurePath.h"
#include "engine/ReferenceData.h"
#include "engine/RunContext.h"
#include "text/Chars.h"

#include <iostream>
#include <memory>

namespace vornhale::cli {

int runEntity(const EntityRequest& request)
{
    const std::unique_ptr<ProgramSession> session =
        ProgramSession::beginWithOptions(request.home, false);
    if (!session) {
        return 1;
    }

    ConsoleObserver observer;
    engine::ReferenceData& reference = session->core().reference();
    engine::RunContext ctx{session->stored(),  session->folder(), session->trace(),
                           observer,           session->dialogs(), session->core().programState(),
                           reference.entities(), {}};
    try {
        reference.prepareMasters(ctx);
    } catch (const failure::Failure& f) {
        base::error_exit(f, session->trace(), session->dialogs());
        return 1;
    }
    auto& entities = reference.entities();
    for (const std::string& call : request.calls) {
        const std::string entity = entities.entityOf(call);
        const auto dx = entities.dxcc_lookup(text::trim(entity));
        std::cout << call << "\t" << entity << "\t" << dx.dx_code << "\t" << dx.dx_name << "\t"
                  << dx.dx_buro << "\n";
    }
    return 0;
}

void addEntityCommand(CLI::App& app, ExitStatus& status)
{
    auto request = std::make_shared<EntityRequest>();
    auto home = std::make_shared<HomeOption>();
    CLI::App* entity = app.add_subcommand(
        "entity", "Import cty.dat as a conversion does and show the DX entity of call signs");
    home->addTo(entity);
    entity->add_option("CALL", request->calls, "Call signs")->required();
    entity->callback([request, home, &status] {
        request->home = home->value();
        status = runEntity(*request);
    });
}

} // namespace vornhale::cli
