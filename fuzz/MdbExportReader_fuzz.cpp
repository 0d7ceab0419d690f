// Runs the reader of an N1MM Logger table export over arbitrary text: the first-line test of
// the open, then the conversion and its sort, with options varied by the first byte. The
// allowed outcomes are a rejection, a failure (a row of too few fields, a date and time of
// the wrong shape), or a written zlog_1.txt.

#include "FuzzSupport.h"
#include "readers/N1mmReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    const std::filesystem::path csv = fuzz::programFolder().drive_path / "dxlog.csv";
    fuzz::writeInput(csv, fuzz::bytesOf(data, size));
    const std::uint8_t flags = fuzz::firstByte(data, size);
    settings::Options options = settings::Options::defaults();
    options.set("Check02", (flags & 1) ? "1" : "0");
    options.set("Check17", (flags & 2) ? "1" : "0");
    fuzz::FuzzRun run(options);
    engine::RunContext& ctx = run.ctx;
    ctx.run.in_name = (fuzz::scratchHome() / "FUZZ.mdb").string();
    ctx.run.mdb.mdb_csv_name = csv.string();
    ctx.run.op_filter_name = (flags & 4) ? "OP1" : "";
    ctx.run.use.op = flags & 8;
    ctx.run.use.memo = flags & 16;
    fuzz::allowingFailure([&] {
        if (!readers::testExportFirstLine(ctx)) {
            return;
        }
        readers::henkan_mdb_2_t(ctx);
    });
    return 0;
}
