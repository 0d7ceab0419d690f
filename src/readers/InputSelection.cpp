#include "readers/InputSelection.h"

#include "readers/ExchangeAnalysis.h"
#include "readers/ZloReader.h"
#include "readers/ZloRecord.h"
#include "readers/ZlogTextReader.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/SjisText.h"

namespace vornhale::readers {

std::string shortenedPath(std::string_view path)
{
    const std::size_t bytes = text::Len_sjis(path);
    if (bytes <= 40) {
        return std::string(path);
    }
    const std::string last = std::filesystem::path(std::string(path)).filename().string();
    const long room =
        40 - static_cast<long>(text::Len_sjis(".../")) - static_cast<long>(text::Len_sjis(last));
    const std::string lead = room > 0 ? text::Mid_sjis(path, 1, room) : std::string();
    return lead + ".../" + last;
}

std::string countLabel(long count)
{
    std::string n = std::to_string(count - 1);
    if (n.size() < 4) {
        n.insert(0, 4 - n.size(), ' ');
    }
    return n + "　件";
}

void Disp_in_name(engine::RunState& run, app::Trace& trace)
{
    run.lblIn_name = shortenedPath(run.in_name);
    run.names = OutputNames::of(run.in_name);
    if (run.f_type == "zlo") {
        std::error_code ec;
        const auto bytes = std::filesystem::file_size(run.in_name, ec);
        run.Label37 = countLabel(zloRecordCount(ec ? 0 : bytes));
    } else {
        run.Label37 = countLabel(text::Count_lines(run.in_name));
    }
    trace.line("入力ファイル in_name：" + run.in_name);
    trace.line("入力ファイル lblIn  ：" + run.lblIn_name);
    trace.line("入 力 件 数　：" + run.Label37);
}

OpenResult openInput(engine::RunContext& ctx, const std::filesystem::path& path,
                     const std::string& kind)
{
    engine::RunState& run = ctx.run;
    run.in_name = path.string();
    run.chosen_name = run.in_name;
    run.cont_name.clear();
    ctx.trace.line("入力ファイル ：" + run.in_name);

    const bool zlo =
        kind == "zlo" || (kind.empty() && text::upper(path.extension().string()) == ".ZLO");
    if (zlo) {
        switch (openZloFile(ctx, run.zlo, run.exchange, false)) {
        case ZloHead::ProgramEnds:
            return OpenResult::ProgramEnds;
        case ZloHead::NoInput:
            return OpenResult::Rejected;
        case ZloHead::Read:
            break;
        }
    } else if (kind.empty() || kind == "all" || kind == "txt") {
        if (!FileOpen_all_txt_set(run, path)) {
            return OpenResult::Rejected;
        }
        // What the received exchange of the log holds, for the warnings of the window.
        const RemarkCells layout = RemarkCells::fromOptions(ctx.options);
        const bool check6 = ctx.options.tick("Check6");
        if (run.f_type == "all") {
            run.exchange.check_rcvd_all(path, run.in_name, check6, layout);
        } else {
            run.exchange.check_rcvd_txt(path, run.in_name, check6, layout);
        }
    } else {
        run.f_type = kind;
    }
    Disp_in_name(run, ctx.trace);
    if (text::contains(text::upper(run.in_name), "REF")) {
        ctx.options.set("Check13", "1");
    }
    return OpenResult::Opened;
}

} // namespace vornhale::readers
