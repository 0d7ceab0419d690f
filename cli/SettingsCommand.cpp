#include "SettingsCommand.h"

#include "ProgramSession.h"
#include "failure/Failure.h"
#include "text/LineFile.h"

#include <iostream>
#include <memory>

namespace vornhale::cli {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSettingsFiles[] = {"Vornhale_cfg.ini",       "Vornhale_new.ini",
                                          "Vornhale.ini",           "Vornhale_fdt.ini",
                                          "Vornhale_Zone_moji.ini", "Vornhale_posi.ini"};

void show(ProgramSession& session)
{
    for (const char* name : kSettingsFiles) {
        const fs::path path = session.files().file(name);
        std::error_code ec;
        if (!fs::is_regular_file(path, ec)) {
            continue;
        }
        std::cout << "# " << path.string() << "\n";
        for (const std::string& line : text::readLines(path)) {
            std::cout << line << "\n";
        }
        std::cout << "\n";
    }
}

// Writes the file that holds `key`, as the program writes it.
void store(settings::SettingsFiles& files, const std::string& file)
{
    if (file == "Vornhale_new.ini") {
        files.ini_write_new();
    } else if (file == "Vornhale_cfg.ini") {
        files.ini_write_cfg();
    } else if (file == "Vornhale_fdt.ini") {
        files.ini_write_fdt();
    } else {
        files.ini_write_zone_moji();
    }
}

} // namespace

int runSettings(const SettingsRequest& request)
{
    std::string key = request.argument;
    std::string value;
    if (request.action == "get" || request.action == "set") {
        if (request.action == "set") {
            const auto eq = key.find('=');
            if (eq == std::string::npos || eq == 0) {
                std::cerr << "set needs KEY=VALUE: " << request.argument << "\n";
                return 2;
            }
            value = key.substr(eq + 1);
            key.resize(eq);
        }
        if (settings::SettingsFiles::fileOfKey(key).empty()) {
            std::cerr << "no settings file holds the key: " << key << "\n";
            return 2;
        }
        // A stored value the option cannot hold would greet every later start.
        if (const auto refusal = settingRefusal(key, value);
            refusal && request.action == "set") {
            std::cerr << "set " << request.argument << ": " << *refusal << "\n";
            return 2;
        }
    } else if (request.action != "show" && request.action != "init") {
        std::cerr << "unknown action: " << request.action << "\n";
        return 2;
    }

    const std::unique_ptr<ProgramSession> session = ProgramSession::begin(request.home);
    if (!session) {
        return 1;
    }

    if (request.action == "init") {
        std::cout << "プログラムフォルダ ：" << session->folder().strPath.string() << "\n";
        std::cout << "環境設定を先に開く ："
                  << (session->decision().environmentFirst ? "はい" : "いいえ") << "\n";
    } else if (request.action == "show") {
        show(*session);
    } else if (request.action == "get") {
        std::cout << session->stored().value(key) << "\n";
    } else {
        session->stored().set(key, value);
        store(session->files(), settings::SettingsFiles::fileOfKey(key));
    }
    return session->reportWriteFailures() ? 0 : 1;
}

void addSettingsCommand(CLI::App& app, ExitStatus& status)
{
    auto request = std::make_shared<SettingsRequest>();
    auto home = std::make_shared<HomeOption>();
    CLI::App* settings = app.add_subcommand(
        "settings", "Show, read or change the settings files of the program folder");
    home->addTo(settings);
    settings->add_option("ACTION", request->action, "show, init, get KEY or set KEY=VALUE")
        ->required()
        ->check(CLI::IsMember({"show", "init", "get", "set"}));
    settings->add_option("ARGUMENT", request->argument, "KEY for get, KEY=VALUE for set");
    settings->callback([request, home, &status] {
        request->home = home->value();
        status = runSettings(*request);
    });
}

} // namespace vornhale::cli
