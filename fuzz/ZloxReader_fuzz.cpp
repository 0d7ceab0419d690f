// Runs the .ZLOX reader over arbitrary bytes: the open with its header and exchange analysis,
// the conversion and the .ALL text, with options varied by the last byte. The allowed
// outcomes are a failure, the end asked for by a cancelled question, or written files.

#include "FuzzSupport.h"
#include "readers/ZloReader.h"
#include "readers/ZloxReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    const std::filesystem::path log = fuzz::writeInput("FUZZ.ZLOX", data, size);
    const std::uint8_t flags = fuzz::lastByte(data, size);
    settings::Options options = settings::Options::defaults();
    options.set("Check02", (flags & 1) ? "1" : "0");
    options.set("Check17", (flags & 2) ? "1" : "0");
    options.set("Rmks1_cfg", (flags & 4) ? "MNG,$DX,Calls,Zone,IOTA,," : "MNG,,");
    options.set("Rmks2_cfg", (flags & 4) ? "州名,memo,," : "");
    fuzz::FuzzRun run(options, fuzz::QuietDialogs((flags & 8) ? base::Dialogs::Answer::Cancel
                                                              : base::Dialogs::Answer::Retry));
    engine::RunContext& ctx = run.ctx;
    ctx.run.in_name = log.string();
    ctx.run.chosen_name = ctx.run.in_name;
    ctx.run.op_filter_name = (flags & 16) ? "OP1" : "";
    ctx.run.use.op = flags & 32;
    ctx.run.use.memo = flags & 64;
    ctx.run.use.memoEquals = flags & 128;
    readers::ZloxReader reader;
    fuzz::allowingFailure([&] {
        if (reader.open(ctx, log) != readers::OpenResult::Opened) {
            return;
        }
        reader.read(ctx);
        readers::mnuMake_z2a_Click(ctx);
    });
    return 0;
}
