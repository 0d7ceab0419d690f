#pragma once

// Runs the zLog .ALL or .TXT reader over arbitrary bytes with options varied by the first
// byte. The allowed outcomes are a rejection, a failure of the run, or a written zlog_1.txt.

#include "FuzzSupport.h"
#include "readers/ZlogTextReader.h"

namespace vornhale::fuzz {

inline int runZlogReader(const std::uint8_t* data, std::size_t size, const char* name)
{
    const std::filesystem::path log = writeInput(name, data, size);
    const std::uint8_t flags = firstByte(data, size);
    settings::Options options = settings::Options::defaults();
    options.set("Check02", (flags & 1) ? "1" : "0");
    options.set("Check17", (flags & 2) ? "1" : "0");
    options.set("txtOp_name", (flags & 4) ? "OP1" : "");
    FuzzRun run(options);
    engine::RunContext& ctx = run.ctx;
    ctx.run.use.op = flags & 8;
    ctx.run.use.opPercent = flags & 16;
    ctx.run.use.memo = flags & 32;
    ctx.run.use.memoEquals = flags & 64;
    ctx.run.use.iota = flags & 128;
    allowingFailure([&] {
        if (!readers::FileOpen_all_txt_set(ctx.run, log)) {
            return;
        }
        ctx.run.in_name = log.string();
        ctx.run.chosen_name = ctx.run.in_name;
        ctx.run.file_letter = ctx.run.f_type == "all" ? "A" : "T";
        readers::henkan_at_2_t(ctx);
    });
    return 0;
}

} // namespace vornhale::fuzz
