#include "DownloadCommand.h"

#include "ConsoleFrontEnd.h"
#include "ProgramSession.h"
#include "net/Http.h"
#include "text/Chars.h"
#include "tools/DataDownloads.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <ostream>

namespace vornhale::cli {
namespace {

using tools::DownloadRow;

void printRow(std::ostream& out, const tools::DataDownloads& window,
              const tools::DownloadRowEntry& entry)
{
    const tools::DownloadRowState& s = window.row(entry.row);
    out << entry.word << "\t" << s.label << "\t" << s.source << "\t" << s.target.string();
    if (!s.detail.empty()) {
        out << "\t" << s.detail;
    }
    out << "\n";
}

void printUnpack(std::ostream& out, const tools::DownloadRowEntry& entry,
                 const tools::UnpackOutcome& outcome)
{
    out << entry.word << "\t"
        << (outcome.applies ? (outcome.ok ? "解凍 完了" : "解凍 失敗") : "解凍 対象外") << "\t"
        << text::replaceAll(outcome.text, "\n", " ");
    if (!outcome.detail.empty()) {
        out << "\t" << outcome.detail;
    }
    out << "\n";
}

} // namespace

bool runStartDownloads(tools::DataDownloads& window)
{
    std::vector<const tools::DownloadRowEntry*> ticked;
    for (const tools::DownloadRowEntry& entry : tools::downloadRows()) {
        if (window.row(entry.row).tick) {
            ticked.push_back(&entry);
        }
    }
    const bool allCame = window.cmdStart();
    for (const tools::DownloadRowEntry* entry : ticked) {
        printRow(std::cerr, window, *entry);
    }
    // The window's operator would press the cty unpack next; the list is of no use packed.
    if (window.row(DownloadRow::Cty).label == "完 了") {
        printUnpack(std::cerr, *tools::downloadRowOf("cty"), window.Command4());
    }
    return allCame;
}

int runDownload(const DownloadRequest& request)
{
    std::vector<const tools::DownloadRowEntry*> chosen;
    if (request.all) {
        for (const tools::DownloadRowEntry& entry : tools::downloadRows()) {
            chosen.push_back(&entry);
        }
    }
    for (const std::string& word : request.rows) {
        const tools::DownloadRowEntry* entry = tools::downloadRowOf(word);
        if (entry == nullptr) {
            std::cerr << "unknown row: " << word
                      << " (th505api, unzip32, unlha32, cty, ardx, arrl10)\n";
            return 2;
        }
        if (std::find(chosen.begin(), chosen.end(), entry) == chosen.end()) {
            chosen.push_back(entry);
        }
    }
    // The rows run, and are told, in the window's order.
    std::sort(chosen.begin(), chosen.end(),
              [](const auto* a, const auto* b) { return a->row < b->row; });
    if (chosen.empty()) {
        std::cerr << "download: name the rows (th505api, unzip32, unlha32, cty, ardx, arrl10) "
                     "or give --all\n";
        return 2;
    }

    const std::unique_ptr<ProgramSession> session = ProgramSession::begin(request.home);
    if (!session) {
        return 1;
    }
    const settings::Options& options = session->stored();
    if (options.value("inet_flag") != "OK") {
        std::cerr << "インターネットの使用が許可されていません (inet_flag="
                  << options.value("inet_flag")
                  << ")。vornhale-cli settings set inet_flag=OK で許可して下さい。\n";
        return 1;
    }
    const std::filesystem::path& strPath = session->folder().strPath;
    tools::DataDownloads window(strPath, options, net::WebConfig::load(strPath), session->trace(),
                                session->dialogs());
    bool ok = true;
    for (const tools::DownloadRowEntry* entry : chosen) {
        // The two rows whose file name is found on a page read that page first.
        if (entry->row == DownloadRow::Unlha32) {
            window.get_unlha_name();
        } else if (entry->row == DownloadRow::Cty) {
            window.get_cty_dat_name();
        }
        window.setTick(entry->row, true);
    }
    ok = window.cmdStart();
    for (const tools::DownloadRowEntry* entry : chosen) {
        printRow(std::cout, window, *entry);
    }
    if (request.unpack) {
        for (const tools::DownloadRowEntry* entry : chosen) {
            if (entry->button.empty()) {
                continue;
            }
            const tools::UnpackOutcome outcome = window.unpack(entry->row);
            printUnpack(std::cout, *entry, outcome);
            ok = ok && (outcome.ok || !outcome.applies);
        }
    }
    return ok ? 0 : 1;
}

void addDownloadCommand(CLI::App& app, ExitStatus& status)
{
    auto request = std::make_shared<DownloadRequest>();
    auto home = std::make_shared<HomeOption>();
    CLI::App* command = app.add_subcommand(
        "download", "Download data files from the homes of Vornhale_web.ini [web]");
    home->addTo(command);
    command->add_flag("--all", request->all, "Every row");
    command->add_flag("--unpack", request->unpack, "Run each row's unpack action afterwards");
    command->add_option("ROW", request->rows,
                        "Rows: th505api, unzip32, unlha32, cty, ardx, arrl10");
    command->callback([request, home, &status] {
        request->home = home->value();
        status = runDownload(*request);
    });
}

} // namespace vornhale::cli
