// Runs the RTCL binary readers over arbitrary bytes: the version check, the decoder, the
// .ALL text and a_2_t over it, and the makers of the RTCL v4 window, with the generation and
// the options varied by the last byte. The specified outcomes are a refusal, a Failure, or
// written files.

#include "base/ProgramFolder.h"
#include "base/Trace.h"
#include "engine/RunContext.h"
#include "failure/Failure.h"
#include "readers/RtclBinaryReader.h"
#include "readers/RtclV4Form.h"
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
        ("vornhale-fuzz-rtcl-binary-" + std::to_string(getpid()));
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
    const std::uint8_t flags = size > 0 ? data[size - 1] : 0;
    const readers::InputKind kind =
        (flags & 1) ? readers::InputKind::LogV430 : readers::InputKind::LogV4;
    settings::Options options = settings::Options::defaults();
    options.set("Check02", (flags & 2) ? "1" : "0");
    options.set("Check17", (flags & 4) ? "1" : "0");

    base::Trace trace;
    base::RunObserver observer;
    SilentDialogs dialogs;
    engine::ProgramState program;
    reference::NoEntities entities;
    engine::RunContext ctx{options, folder, trace, observer, dialogs, program, entities, {}};
    ctx.run.in_name = log.string();
    ctx.run.chosen_name = ctx.run.in_name;
    ctx.run.op_filter_name = (flags & 8) ? "OP1" : "";
    ctx.run.use.op = flags & 16;
    ctx.run.use.memo = flags & 32;
    const readers::ReaderContext rc = ctx;
    readers::RtclBinaryReader reader(kind);
    try {
        // The decoder alone takes any length; the open refuses most of them.
        readers::decodeRtclLog(std::string(reinterpret_cast<const char*>(data), size), kind,
                               home / "decoded.txt");
        if (reader.open(rc, log) == readers::OpenResult::Opened) {
            reader.read(rc);
        }
    } catch (const failure::Failure&) {
    }
    try {
        readers::RtclV4Form form;
        const bool chosen =
            kind == readers::InputKind::LogV4 ? form.mnuVer_430mae(log) : form.mnuVer_430ato(log);
        if (chosen) {
            (flags & 64) ? form.cmdMake_all(trace) : form.cmdMake_txt(trace);
        }
    } catch (const failure::Failure&) {
    }
    return 0;
}
