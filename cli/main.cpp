#include "ConvertCommand.h"
#include "EntityCommand.h"
#include "OpenCommand.h"
#include "SettingsCommand.h"

#include <CLI/CLI.hpp>

int main(int argc, char** argv)
{
    CLI::App app{"Vornhale: contest logs into Turbo HAMLOG import files"};
    app.require_subcommand(1);

    vornhale::cli::ConvertRequest convert;
    std::string home;
    auto* conv = app.add_subcommand("convert", "Convert a contest log into _hn.csv and _cn.csv");
    conv->add_option("--home", home, "Program folder (default: $VORNHALE_HOME or XDG data home)");
    conv->add_option("--set", convert.sets, "Override an option for this run: KEY=VALUE")
        ->allow_extra_args(false);
    conv->add_option("--type", convert.type,
                     "Input kind: all, txt, zlo, log, log_v4, log_v430, cbr, adi, mdb, lg8");
    conv->add_option("--year", convert.year, "Year of a log that carries none (txtYYYY)");
    conv->add_option(
        "--province-master", convert.provinceMaster,
        "Province master (*.mas or zLog *.dat) for Check5; default: guessed from the contest");
    conv->add_flag("--cancel-questions", convert.cancelQuestions,
                   "Answer the operator's questions with cancel instead of going on");
    conv->add_flag("--keep-work", convert.keepWork,
                   "Leave the working files in the working folder");
    conv->add_option("LOG", convert.log, "The contest log")->required();

    vornhale::cli::SettingsRequest settingsRequest;
    std::string settingsHome;
    auto* settingsCmd = app.add_subcommand(
        "settings", "Show, read or change the settings files of the program folder");
    settingsCmd->add_option("--home", settingsHome,
                            "Program folder (default: $VORNHALE_HOME or XDG data home)");
    settingsCmd
        ->add_option("ACTION", settingsRequest.action, "show, init, get KEY or set KEY=VALUE")
        ->required()
        ->check(CLI::IsMember({"show", "init", "get", "set"}));
    settingsCmd->add_option("ARGUMENT", settingsRequest.argument, "KEY for get, KEY=VALUE for set");

    vornhale::cli::EntityRequest entityRequest;
    std::string entityHome;
    auto* entityCmd = app.add_subcommand(
        "entity", "Import cty.dat as a conversion does and show the DX entity of call signs");
    entityCmd->add_option("--home", entityHome,
                          "Program folder (default: $VORNHALE_HOME or XDG data home)");
    entityCmd->add_option("CALL", entityRequest.calls, "Call signs")->required();

    vornhale::cli::OpenRequest openRequest;
    std::string openHome;
    auto* openCmd =
        app.add_subcommand("open", "Open a log as the window does and show what was decided");
    openCmd->add_option("--home", openHome,
                        "Program folder (default: $VORNHALE_HOME or XDG data home)");
    openCmd->add_option("--type", openRequest.type, "Input kind, as for convert");
    openCmd->add_option("LOG", openRequest.log, "The contest log")->required();

    vornhale::cli::OpenRequest z2aRequest;
    std::string z2aHome;
    auto* z2aCmd = app.add_subcommand("z2a", "Write the _z2a.all text of a zLog .ZLO log");
    z2aCmd->add_option("--home", z2aHome,
                       "Program folder (default: $VORNHALE_HOME or XDG data home)");
    z2aCmd->add_option("LOG", z2aRequest.log, "The .ZLO log")->required();

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        const int code = app.exit(e);
        return code == 0 ? 0 : 2;
    }
    if (!home.empty()) {
        convert.home = home;
    }
    if (settingsCmd->parsed()) {
        if (!settingsHome.empty()) {
            settingsRequest.home = settingsHome;
        }
        return vornhale::cli::runSettings(settingsRequest);
    }
    if (openCmd->parsed() || z2aCmd->parsed()) {
        const bool open = openCmd->parsed();
        auto& request = open ? openRequest : z2aRequest;
        const std::string& home = open ? openHome : z2aHome;
        if (!home.empty()) {
            request.home = home;
        }
        return open ? vornhale::cli::runOpen(request) : vornhale::cli::runZ2a(request);
    }
    if (entityCmd->parsed()) {
        if (!entityHome.empty()) {
            entityRequest.home = entityHome;
        }
        return vornhale::cli::runEntity(entityRequest);
    }
    if (conv->parsed()) {
        return vornhale::cli::runConvert(convert);
    }
    return 2;
}
