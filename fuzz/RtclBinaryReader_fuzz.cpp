// Runs the RTCL binary readers over arbitrary bytes: the version check, the decoder, the
// .ALL text and a_2_t over it, and the makers of the RTCL v4 window, with the generation and
// the options varied by the last byte. The allowed outcomes are a refusal, a failure, or
// written files.

#include "FuzzSupport.h"
#include "readers/RtclBinaryReader.h"
#include "readers/RtclV4Form.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    const std::filesystem::path log = fuzz::writeInput("FUZZ.log", data, size);
    const std::uint8_t flags = fuzz::lastByte(data, size);
    const readers::InputKind kind =
        (flags & 1) ? readers::InputKind::LogV430 : readers::InputKind::LogV4;
    settings::Options options = settings::Options::defaults();
    options.set("Check02", (flags & 2) ? "1" : "0");
    options.set("Check17", (flags & 4) ? "1" : "0");
    fuzz::FuzzRun run(options);
    engine::RunContext& ctx = run.ctx;
    ctx.run.in_name = log.string();
    ctx.run.chosen_name = ctx.run.in_name;
    ctx.run.op_filter_name = (flags & 8) ? "OP1" : "";
    ctx.run.use.op = flags & 16;
    ctx.run.use.memo = flags & 32;
    const readers::ReaderContext rc = ctx;
    readers::RtclBinaryReader reader(kind);
    fuzz::allowingFailure([&] {
        // The decoder alone takes any length; the open refuses most of them.
        readers::decodeRtclLog(std::string(fuzz::bytesOf(data, size)), kind,
                               fuzz::scratchHome() / "decoded.txt");
        if (reader.open(rc, log) == readers::OpenResult::Opened) {
            reader.read(rc);
        }
    });
    fuzz::allowingFailure([&] {
        readers::RtclV4Form form;
        const bool chosen =
            kind == readers::InputKind::LogV4 ? form.mnuVer_430mae(log) : form.mnuVer_430ato(log);
        if (chosen) {
            (flags & 64) ? form.cmdMake_all(run.trace) : form.cmdMake_txt(run.trace);
        }
    });
    return 0;
}
