// Runs the RTCL text readers over arbitrary bytes: the generation test, the exchange analysis,
// the conversion into the common line and the zLog texts, with the generation and the
// options varied by the first byte. The allowed outcomes are a refusal, a failure, or
// written files.

#include "FuzzSupport.h"
#include "readers/ExchangeAnalysis.h"
#include "readers/RtclTextReader.h"
#include "readers/RtclZlogMakers.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    const std::filesystem::path log = fuzz::writeInput("FUZZ.log", data, size);
    const std::uint8_t flags = fuzz::firstByte(data, size);
    const bool old = (flags & 1) != 0;
    settings::Options options = settings::Options::defaults();
    options.set("Check02", (flags & 2) ? "1" : "0");
    options.set("Check17", (flags & 4) ? "1" : "0");
    options.set("Rmks1_cfg", (flags & 8) ? "MNG,$DX,Calls,Zone,IOTA,," : "MNG,,");
    options.set("Rmks2_cfg", (flags & 8) ? "州名,memo,," : "");
    fuzz::FuzzRun run(options);
    engine::RunContext& ctx = run.ctx;
    ctx.run.in_name = log.string();
    ctx.run.chosen_name = ctx.run.in_name;
    ctx.run.op_filter_name = (flags & 16) ? "OP1" : "";
    const readers::InputKind kind = old ? readers::InputKind::LogOld : readers::InputKind::LogNew;
    readers::RtclTextReader reader(kind);
    const readers::ReaderContext rc = ctx;
    bool refused = false;
    fuzz::allowingFailure([&] {
        refused = reader.open(rc, log) != readers::OpenResult::Opened;
        if (!refused) {
            reader.read(rc);
        }
    });
    if (refused) {
        return 0;
    }
    fuzz::allowingFailure([&] {
        if (flags & 32) {
            old ? readers::mnu_rtcl_log2all(rc) : readers::mnu_rtcl_log2all_new(rc);
        } else {
            old ? readers::mnu_rtcl_log2txt(rc) : readers::mnu_rtcl_log2txt_new(rc);
        }
    });
    return 0;
}
