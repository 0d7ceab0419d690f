#include "TraceCommand.h"

#include "base/ProgramFolder.h"
#include "text/LineFile.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <system_error>
#include <vector>

namespace vornhale::cli {
namespace {

namespace fs = std::filesystem;

// The traces, oldest first: by the time of their last line, then by name.
std::vector<fs::path> tracesOf(const fs::path& Error_Log)
{
    std::vector<std::pair<fs::file_time_type, fs::path>> found;
    std::error_code ec;
    for (const auto& e : fs::directory_iterator(Error_Log, ec)) {
        if (e.is_regular_file(ec) && e.path().extension() == ".txt") {
            found.emplace_back(e.last_write_time(ec), e.path());
        }
    }
    std::sort(found.begin(), found.end());
    std::vector<fs::path> paths;
    for (auto& [when, path] : found) {
        paths.push_back(std::move(path));
    }
    return paths;
}

void print(const fs::path& trace)
{
    // Traces are written in Shift-JIS, as the original program wrote them.
    for (const std::string& line : text::readLines(trace)) {
        std::cout << line << "\n";
    }
}

} // namespace

int runTrace(const TraceRequest& request)
{
    const base::ProgramFolder folder = base::ProgramFolder::resolve(request.home);
    if (!request.file.empty()) {
        fs::path trace = request.file;
        std::error_code ec;
        if (!fs::is_regular_file(trace, ec)) {
            trace = folder.Error_Log / request.file;
        }
        if (!fs::is_regular_file(trace, ec)) {
            std::cerr << "no such trace: " << request.file << " (in " << folder.Error_Log.string()
                      << ")\n";
            return 2;
        }
        print(trace);
        return 0;
    }
    const std::vector<fs::path> traces = tracesOf(folder.Error_Log);
    if (traces.empty()) {
        std::cerr << "no trace in " << folder.Error_Log.string() << "\n";
        return 1;
    }
    if (request.last) {
        std::cerr << "# " << traces.back().string() << "\n";
        print(traces.back());
        return 0;
    }
    for (const fs::path& trace : traces) {
        std::cout << trace.string() << "\n";
    }
    return 0;
}

void addTraceCommand(CLI::App& app, ExitStatus& status)
{
    auto request = std::make_shared<TraceRequest>();
    auto home = std::make_shared<HomeOption>();
    CLI::App* command = app.add_subcommand(
        "trace", "List the traces of the program folder (Error_Log), or print one in UTF-8");
    home->addTo(command);
    command->add_flag("--last", request->last, "Print the newest trace");
    command->add_option("FILE", request->file, "Print this trace (a name in Error_Log or a path)");
    command->callback([request, home, &status] {
        request->home = home->value();
        status = runTrace(*request);
    });
}

} // namespace vornhale::cli
