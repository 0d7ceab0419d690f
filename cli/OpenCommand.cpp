#include "OpenCommand.h"

#include "ProgramSession.h"
#include "engine/ReferenceData.h"
#include "engine/RunContext.h"
#include "readers/InputKinds.h"
#include "readers/RtclZlogMakers.h"
#include "readers/ZloReader.h"
#include "text/Chars.h"

#include <functional>
#include <iostream>
#include <memory>

namespace vornhale::cli {
namespace {

namespace fs = std::filesystem;

const char* colourName(base::Colour c)
{
    switch (c) {
    case base::Colour::Black:
        return "black";
    case base::Colour::Green:
        return "green";
    case base::Colour::Red:
        return "red";
    case base::Colour::Blue:
        return "blue";
    case base::Colour::BrightBlue:
        return "bright blue";
    case base::Colour::DarkRed:
        return "dark red";
    }
    return "";
}

void show(const char* key, const std::string& value)
{
    std::cout << key << "\t" << value << "\n";
}

// Starts the program, opens the log and hands the session to `then`.
int withOpenedLog(const OpenRequest& request, const std::function<int(ProgramSession&)>& then)
{
    return ProgramSession::withOpenedLog(
        {request.home, request.log, request.type, request.table, {}},
        [&then](ProgramSession& session, base::RunObserver&) { return then(session); });
}

} // namespace

int runOpen(const OpenRequest& request)
{
    return withOpenedLog(request, [](ProgramSession& session) {
        const readers::InputState& run = session.core().input();
        show("f_type", run.f_type);
        show("in_name", run.in_name);
        show("lblIn_name", run.lblIn_name + " (bright blue)");
        show("Label37", run.Label37);
        show("cont_name", run.cont_name);
        const readers::OutputNames& n = run.names;
        for (const auto& [key, value] : {std::pair{"out_name_ham0", n.out_name_ham0},
                                         {"out_name_con0", n.out_name_con0},
                                         {"out_name_ham", n.out_name_ham},
                                         {"out_name_con", n.out_name_con},
                                         {"out_name_ham_n", n.out_name_ham_n},
                                         {"out_name_con_n", n.out_name_con_n},
                                         {"dup_name", n.dup_name},
                                         {"Get_Mng_result_name", n.Get_Mng_result_name}}) {
            show(key, value);
        }
        if (run.f_type == "zlo") {
            show("z2a_name", readers::z2aName(run.in_name));
        }
        if (run.f_type == "log") {
            // The menus that show the zLog texts of an RTCL text log.
            show("mnuDisp_l2t", readers::l2zCaption(run.in_name, "_l2z.txt"));
            show("mnuDisp_l2a", readers::l2zCaption(run.in_name, "_l2z.all"));
        }
        if (run.kind == readers::InputKind::Mdb) {
            show("mdb_csv_name", run.mdb.mdb_csv_name);
        }
        if (run.kind == readers::InputKind::Lg8) {
            show("ctestwin_all_name", run.ctestwin.ctestwin_all_name);
            show("Label39", run.Label39);
        }
        if (run.kind == readers::InputKind::Cbr || run.kind == readers::InputKind::Adi) {
            show("Label39", run.Label39);
        }
        const readers::ExchangeAnalysis& x = run.exchange;
        show("lblCon_No", x.lblCon_No);
        show("lblMsg1",
             x.lblMsg1.text + (x.lblMsg1.text.empty()
                                   ? std::string()
                                   : " (" + std::string(colourName(x.lblMsg1.colour)) + ")"));
        show("lblMsg2",
             x.lblMsg2.text + (x.lblMsg2.text.empty()
                                   ? std::string()
                                   : " (" + std::string(colourName(x.lblMsg2.colour)) + ")"));
        show("missing_items", x.missing_items);
        show("rcvd_has_zone", x.rcvd_has_zone ? "1" : "0");
        show("rcvd_has_state", x.rcvd_has_state ? "1" : "0");
        show("rcvd_has_iota", x.rcvd_has_iota ? "1" : "0");

        // The start as the window decides it, with the input now known.
        const session::OptionModel& model = *session.core().optionModel();
        show("lblShori", model.caption("lblShori"));
        show("cmdStart", model.enabled("cmdStart") ? "enabled" : "disabled");
        return 0;
    });
}

int runZ2a(const OpenRequest& request)
{
    OpenRequest zlo = request;
    // zLog's extended log gives the text of the .ZLO that zLog would have written for it.
    const readers::InputKindRow* row = readers::rowOfFileName(request.log);
    const bool byName = row != nullptr && row->kind == readers::InputKind::Zlox;
    const bool zlox = text::equalsNoCase(request.type, "zlox") || (request.type.empty() && byName);
    zlo.type = zlox ? "zlox" : "zlo";
    return withOpenedLog(zlo, [](ProgramSession& session) {
        ConsoleObserver observer;
        session::Session& core = session.core();
        readers::InputState input = core.input();
        settings::Options& options = core.options();
        const readers::ReaderContext ctx{
            options, core.trace(), observer, core.dialogs(), core.folder().drive_path, input};
        const readers::Z2aResult result = readers::mnuMake_z2a_Click(ctx);
        std::cout << result.path << "\n";
        return 0;
    });
}

void addOpenCommands(CLI::App& app, ExitStatus& status)
{
    auto openRequest = std::make_shared<OpenRequest>();
    auto openHome = std::make_shared<HomeOption>();
    CLI::App* open =
        app.add_subcommand("open", "Open a log as the window does and show what was decided");
    openHome->addTo(open);
    open->add_option("--type", openRequest->type, "Input kind, as for convert");
    open->add_option("--table", openRequest->table,
                     "Table of an N1MM Logger database (--type mdb): DXLOG or CurrentContest")
        ->transform(CLI::IsMember({"DXLOG", "CurrentContest"}, CLI::ignore_case));
    open->add_option("LOG", openRequest->log, "The contest log")->required();
    open->callback([openRequest, openHome, &status] {
        openRequest->home = openHome->value();
        status = runOpen(*openRequest);
    });

    auto z2aRequest = std::make_shared<OpenRequest>();
    auto z2aHome = std::make_shared<HomeOption>();
    CLI::App* z2a =
        app.add_subcommand("z2a", "Write the _z2a.all text of a zLog .ZLO or .ZLOX log");
    z2aHome->addTo(z2a);
    z2a->add_option("--type", z2aRequest->type, "zlo or zlox, where the name cannot tell");
    z2a->add_option("LOG", z2aRequest->log, "The .ZLO or .ZLOX log")->required();
    z2a->callback([z2aRequest, z2aHome, &status] {
        z2aRequest->home = z2aHome->value();
        status = runZ2a(*z2aRequest);
    });
}

} // namespace vornhale::cli
