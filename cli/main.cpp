#include "CommandLine.h"
#include "ConvertCommand.h"
#include "DownloadCommand.h"
#include "EntityCommand.h"
#include "MngCommand.h"
#include "OpenCommand.h"
#include "QsoBankCommand.h"
#include "RtclCommand.h"
#include "SettingsCommand.h"
#include "TraceCommand.h"
#include "base/Version.h"

int main(int argc, char** argv)
{
    using namespace vornhale::cli;
    CLI::App app{"Vornhale: contest logs into Turbo HAMLOG import files"};
    app.require_subcommand(1);
    app.set_version_flag("--version", "vornhale-cli " + std::string(vornhale::base::kProgramVersion));

    ExitStatus status = 2;
    addConvertCommand(app, status);
    addOpenCommands(app, status);
    addSettingsCommand(app, status);
    addEntityCommand(app, status);
    addMngCommand(app, status);
    addQsoBankCommand(app, status);
    addDownloadCommand(app, status);
    addRtclCommand(app, status);
    addTraceCommand(app, status);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        const int code = app.exit(e);
        return code == 0 ? 0 : 2;
    }
    return status;
}
