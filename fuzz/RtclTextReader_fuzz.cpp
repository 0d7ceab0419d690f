// Runs the RTCL text readers over arbitrary bytes: the generation test, the exchange analysis,
// the conversion into the common line and the zLog texts, with the generation and the
// options varied by the first byte. The specified outcomes are a refusal, a Failure, or
// written files.

#include "base/ProgramFolder.h"
#include "base/Trace.h"
#include "engine/RunContext.h"
#include "failure/Failure.h"
#include "readers/ExchangeAnalysis.h"
#include "readers/RtclTextReader.h"
#include "readers/RtclZlogMakers.h"
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
        std::filesystem::temp_directory_path() /
        ("vornhale-fuzz-rtcl-text-" + std::to_string(getpid()));
    static const base::ProgramFolder folder = [] {
        auto f = base::ProgramFolder::at(home);
        f.makeFolders();
        return f;
    }();
    const std::filesystem::path log = home / "FUZZ.log";
    {
        std::ofstream out(log, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    const std::uint8_t flags = size > 0 ? data[0] : 0;
    const bool old = (flags & 1) != 0;
    settings::Options options = settings::Options::defaults();
    options.set("Check02", (flags & 2) ? "1" : "0");
    options.set("Check17", (flags & 4) ? "1" : "0");
    options.set("Rmks1_cfg", (flags & 8) ? "MNG,$DX,Calls,Zone,IOTA,," : "MNG,,");
    options.set("Rmks2_cfg", (flags & 8) ? "州名,memo,," : "");

    base::Trace trace;
    base::RunObserver observer;
    SilentDialogs dialogs;
    engine::ProgramState program;
    reference::NoEntities entities;
    engine::RunContext ctx{options, folder, trace, observer, dialogs, program, entities, {}};
    ctx.run.in_name = log.string();
    ctx.run.chosen_name = ctx.run.in_name;
    ctx.run.op_filter_name = (flags & 16) ? "OP1" : "";
    const readers::InputKind kind = old ? readers::InputKind::LogOld : readers::InputKind::LogNew;
    readers::RtclTextReader reader(kind);
    const readers::ReaderContext rc = ctx;
    try {
        if (reader.open(rc, log) != readers::OpenResult::Opened) {
            return 0;
        }
        reader.read(rc);
    } catch (const failure::Failure&) {
    }
    try {
        if (flags & 32) {
            old ? readers::mnu_rtcl_log2all(rc) : readers::mnu_rtcl_log2all_new(rc);
        } else {
            old ? readers::mnu_rtcl_log2txt(rc) : readers::mnu_rtcl_log2txt_new(rc);
        }
    } catch (const failure::Failure&) {
    }
    return 0;
}
