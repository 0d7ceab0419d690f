// Runs the reader of an N1MM Logger table export over arbitrary text: the first-line test of
// the open, then the conversion and its sort, with options varied by the first byte. The
// specified outcomes are a rejection, a Failure (a row of too few fields, a date and time of
// the wrong shape), or a written zlog_1.txt.

#include "base/ProgramFolder.h"
#include "base/Trace.h"
#include "engine/RunContext.h"
#include "failure/Failure.h"
#include "readers/N1mmReader.h"
#include "reference/EntityLookup.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace {

using namespace vornhale;

class SilentDialogs : public base::Dialogs
{
public:
    void message(std::string_view, std::string_view, Icon) override {}
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const std::filesystem::path home =
        std::filesystem::temp_directory_path() / ("vornhale-fuzz-mdb-" + std::to_string(getpid()));
    static const base::ProgramFolder folder = [] {
        auto f = base::ProgramFolder::at(home);
        f.makeFolders();
        return f;
    }();
    const std::filesystem::path csv = folder.drive_path / "dxlog.csv";
    {
        std::ofstream out(csv, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    const std::uint8_t flags = size > 0 ? data[0] : 0;
    settings::Options options = settings::Options::defaults();
    options.set("Check02", (flags & 1) ? "1" : "0");
    options.set("Check17", (flags & 2) ? "1" : "0");

    base::Trace trace;
    base::RunObserver observer;
    SilentDialogs dialogs;
    engine::ProgramState program;
    reference::NoEntities entities;
    engine::RunContext ctx{options, folder, trace, observer, dialogs, program, entities, {}};
    ctx.run.in_name = (home / "FUZZ.mdb").string();
    ctx.run.mdb.mdb_csv_name = csv.string();
    ctx.run.op_filter_name = (flags & 4) ? "OP1" : "";
    ctx.run.use.op = flags & 8;
    ctx.run.use.memo = flags & 16;
    try {
        if (!readers::testExportFirstLine(ctx)) {
            return 0;
        }
        readers::henkan_mdb_2_t(ctx);
    } catch (const failure::Failure&) {
    }
    return 0;
}
