// Runs both zLog text translators over arbitrary bytes. The specified outcomes are a written
// side output or a Failure; nothing else may escape, and a failure leaves no file behind.

#include "failure/Failure.h"
#include "base/ProgramFolder.h"
#include "base/Trace.h"
#include "engine/RunContext.h"
#include "readers/ZlogTranslators.h"
#include "reference/EntityLookup.h"

#include <cstdint>
#include <cstdlib>
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

void translate(const std::filesystem::path& log, const std::uint8_t* data, std::size_t size,
               const base::ProgramFolder& folder, bool toAll)
{
    {
        std::ofstream out(log, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    settings::Options options = settings::Options::defaults();
    options.set("txtYYYY", "2026");
    base::Trace trace;
    base::RunObserver observer;
    SilentDialogs dialogs;
    engine::ProgramState program;
    reference::NoEntities entities;
    engine::RunContext ctx{options, folder, trace, observer, dialogs, program, entities, {}};
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
    static const std::filesystem::path home =
        std::filesystem::temp_directory_path() / ("vornhale-fuzz-" + std::to_string(getpid()));
    static const base::ProgramFolder folder = [] {
        auto f = base::ProgramFolder::at(home);
        f.makeFolders();
        return f;
    }();
    translate(home / "FUZZ.TXT", data, size, folder, true);
    translate(home / "FUZZ.ALL", data, size, folder, false);
    return 0;
}
