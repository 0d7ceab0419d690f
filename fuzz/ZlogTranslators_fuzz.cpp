// Runs both zLog text translators over arbitrary bytes. The allowed outcomes are a written
// side output or a failure; nothing else may escape, and a failure leaves no file behind.

#include "FuzzSupport.h"
#include "readers/ZlogTranslators.h"

#include <cstdlib>

namespace {

using namespace vornhale;

void translate(const char* name, const std::uint8_t* data, std::size_t size, bool toAll)
{
    const std::filesystem::path log = fuzz::writeInput(name, data, size);
    settings::Options options = settings::Options::defaults();
    options.set("txtYYYY", "2026");
    fuzz::FuzzRun run(options);
    engine::RunContext& ctx = run.ctx;
    ctx.run.in_name = log.string();
    const std::filesystem::path out =
        log.parent_path() / (toAll ? "FUZZ_zt2a.all" : "FUZZ_za2t.txt");
    std::filesystem::remove(out);
    try {
        if (toAll) {
            readers::zlog_txt_2_zlog_all(ctx);
        } else {
            readers::zlog_all_2_zlog_txt(ctx);
        }
    } catch (const failure::Failure&) {
        if (std::filesystem::exists(out)) {
            std::abort(); // a failed run must not leave a half text
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    translate("FUZZ.TXT", data, size, true);
    translate("FUZZ.ALL", data, size, false);
    return 0;
}
