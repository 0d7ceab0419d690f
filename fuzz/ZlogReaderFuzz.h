#pragma once

// Runs a zLog text reader over arbitrary bytes with options varied by the first byte. The
// specified outcomes are a rejection, a Failure, or a written zlog_1.txt.

#include "failure/Failure.h"
#include "base/ProgramFolder.h"
#include "base/Trace.h"
#include "engine/RunContext.h"
#include "readers/ZlogTextReader.h"
#include "reference/EntityLookup.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace vornhale::fuzz {

class SilentDialogs : public base::Dialogs
{
public:
    void message(std::string_view, std::string_view, Icon) override {}
};

inline int runZlogReader(const std::uint8_t* data, std::size_t size, const char* name)
{
    static const std::filesystem::path home =
        std::filesystem::temp_directory_path() / ("vornhale-fuzz-" + std::to_string(getpid()));
    static const base::ProgramFolder folder = [] {
        auto f = base::ProgramFolder::at(home);
        f.makeFolders();
        return f;
    }();
    const std::filesystem::path log = home / name;
    {
        std::ofstream out(log, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    const std::uint8_t flags = size > 0 ? data[0] : 0;
    settings::Options options = settings::Options::defaults();
    options.set("Check02", (flags & 1) ? "1" : "0");
    options.set("Check17", (flags & 2) ? "1" : "0");
    options.set("txtOp_name", (flags & 4) ? "OP1" : "");

    base::Trace trace;
    base::RunObserver observer;
    SilentDialogs dialogs;
    engine::ProgramState program;
    reference::NoEntities entities;
    engine::RunContext ctx{options, folder, trace, observer, dialogs, program, entities, {}};
    ctx.run.use.op = flags & 8;
    ctx.run.use.opPercent = flags & 16;
    ctx.run.use.memo = flags & 32;
    ctx.run.use.memoEquals = flags & 64;
    ctx.run.use.iota = flags & 128;
    try {
        if (!readers::FileOpen_all_txt_set(ctx.run, log)) {
            return 0;
        }
        ctx.run.in_name = log.string();
        ctx.run.chosen_name = ctx.run.in_name;
        ctx.run.file_letter = ctx.run.f_type == "all" ? "A" : "T";
        readers::henkan_at_2_t(ctx);
    } catch (const failure::Failure&) {
    }
    return 0;
}

} // namespace vornhale::fuzz
