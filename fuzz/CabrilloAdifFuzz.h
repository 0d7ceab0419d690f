#pragma once

// Runs the open action and the reader of a Cabrillo or ADIF log over arbitrary bytes, with
// options varied by the first byte. The specified outcomes are a rejection, a Failure, or a
// written zlog_1.txt (and, for Cabrillo, its .TXT form).

#include "base/ProgramFolder.h"
#include "base/Trace.h"
#include "engine/RunContext.h"
#include "failure/Failure.h"
#include "readers/InputKinds.h"
#include "reference/EntityLookup.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <unistd.h>

namespace vornhale::fuzz {

class SilentCabrilloAdifDialogs : public base::Dialogs
{
public:
    void message(std::string_view, std::string_view, Icon) override {}
};

/// Writes `data` to a log named `name`, opens it as `kind` and, when it opens, reads it and
/// runs `after` (the end-of-run side output) on the opened run.
inline int runCabrilloAdif(const std::uint8_t* data, std::size_t size, const char* name,
                           readers::InputKind kind,
                           const std::function<void(const readers::ReaderContext&)>& after = {})
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
    SilentCabrilloAdifDialogs dialogs;
    engine::ProgramState program;
    reference::NoEntities entities;
    engine::RunContext ctx{options, folder, trace, observer, dialogs, program, entities, {}};
    const readers::ReaderContext reader = ctx;
    try {
        ctx.run.in_name = log.string();
        ctx.run.op_filter_name = options.value("txtOp_name");
        const auto logReader = readers::makeReader(kind);
        if (logReader->open(reader, log) != readers::OpenResult::Opened) {
            return 0;
        }
        ctx.run.in_name = log.string();
        logReader->read(reader);
        if (after) {
            after(reader);
        }
    } catch (const failure::Failure&) {
    }
    return 0;
}

} // namespace vornhale::fuzz
