// Runs the .ZLOX reader over arbitrary bytes: the open with its header and exchange analysis,
// the conversion and the .ALL text, with options varied by the last byte. The specified
// outcomes are a Failure, the end asked for by a cancelled question, or written files.

#include "base/ProgramFolder.h"
#include "base/Trace.h"
#include "engine/RunContext.h"
#include "failure/Failure.h"
#include "readers/ZloReader.h"
#include "readers/ZloxReader.h"
#include "reference/EntityLookup.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace {

using namespace vornhale;

class AnsweringDialogs : public base::Dialogs
{
public:
    explicit AnsweringDialogs(Answer answer) : m_answer(answer) {}
    void message(std::string_view, std::string_view, Icon) override {}
    Answer question(std::string_view, std::string_view, Buttons, Icon) override { return m_answer; }

private:
    Answer m_answer;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const std::filesystem::path home =
        std::filesystem::temp_directory_path() / ("vornhale-fuzz-zlox-" + std::to_string(getpid()));
    static const base::ProgramFolder folder = [] {
        auto f = base::ProgramFolder::at(home);
        f.makeFolders();
        return f;
    }();
    const std::filesystem::path log = home / "FUZZ.ZLOX";
    {
        std::ofstream out(log, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    const std::uint8_t flags = size > 0 ? data[size - 1] : 0;
    settings::Options options = settings::Options::defaults();
    options.set("Check02", (flags & 1) ? "1" : "0");
    options.set("Check17", (flags & 2) ? "1" : "0");
    options.set("Rmks1_cfg", (flags & 4) ? "MNG,$DX,Calls,Zone,IOTA,," : "MNG,,");
    options.set("Rmks2_cfg", (flags & 4) ? "州名,memo,," : "");

    base::Trace trace;
    base::RunObserver observer;
    AnsweringDialogs dialogs((flags & 8) ? base::Dialogs::Answer::Cancel
                                         : base::Dialogs::Answer::Retry);
    engine::ProgramState program;
    reference::NoEntities entities;
    engine::RunContext ctx{options, folder, trace, observer, dialogs, program, entities, {}};
    ctx.run.in_name = log.string();
    ctx.run.chosen_name = ctx.run.in_name;
    ctx.run.op_filter_name = (flags & 16) ? "OP1" : "";
    ctx.run.use.op = flags & 32;
    ctx.run.use.memo = flags & 64;
    ctx.run.use.memoEquals = flags & 128;
    readers::ZloxReader reader;
    try {
        if (reader.open(ctx, log) != readers::OpenResult::Opened) {
            return 0;
        }
        reader.read(ctx);
        readers::mnuMake_z2a_Click(ctx);
    } catch (const failure::Failure&) {
    }
    return 0;
}
