#pragma once

// Runs the open step and the reader of one input kind over arbitrary bytes, with options
// varied by the first byte. The allowed outcomes are a rejection, a failure of the run, or a
// written zlog_1.txt (and whatever `after` writes).

#include "FuzzSupport.h"
#include "readers/InputKinds.h"

#include <functional>

namespace vornhale::fuzz {

/// Writes the input to a log named `name`, opens it as `kind` and, when it opens, reads it
/// and runs `after` (the end-of-run side output) on the opened run.
inline int runKindReader(const std::uint8_t* data, std::size_t size, const char* name,
                         readers::InputKind kind,
                         const std::function<void(const readers::ReaderContext&)>& after = {})
{
    const std::filesystem::path log = writeInput(name, data, size);
    const std::uint8_t flags = firstByte(data, size);
    settings::Options options = settings::Options::defaults();
    options.set("Check02", (flags & 1) ? "1" : "0");
    options.set("Check17", (flags & 2) ? "1" : "0");
    options.set("txtOp_name", (flags & 4) ? "OP1" : "");
    FuzzRun run(options);
    engine::RunContext& ctx = run.ctx;
    const readers::ReaderContext reader = ctx;
    allowingFailure([&] {
        ctx.run.in_name = log.string();
        ctx.run.op_filter_name = ctx.options.value("txtOp_name");
        const auto logReader = readers::makeReader(kind);
        if (logReader->open(reader, log) != readers::OpenResult::Opened) {
            return;
        }
        ctx.run.in_name = log.string();
        logReader->read(reader);
        if (after) {
            after(reader);
        }
    });
    return 0;
}

} // namespace vornhale::fuzz
