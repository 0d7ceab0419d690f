#include "readers/InputSelection.h"

#include "text/Chars.h"
#include "text/FileBytes.h"
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

void Disp_in_name(InputState& run, base::Trace& trace)
{
    run.lblIn_name = shortenedPath(run.in_name);
    run.names = OutputNames::of(run.in_name);
    const long count = run.kind == InputKind::None
                           ? text::Count_lines(run.in_name)
                           : makeReader(run.kind)->countOpened(run);
    run.Label37 = countLabel(count);
    trace.line("入力ファイル in_name：" + run.in_name);
    trace.line("入力ファイル lblIn  ：" + run.lblIn_name);
    trace.line("入 力 件 数　：" + run.Label37);
}

OpenResult openInput(const ReaderContext& ctx, const std::filesystem::path& path,
                     std::string_view typeWord)
{
    InputState& run = ctx.run;
    run.in_name = path.string();
    run.chosen_name = run.in_name;
    run.cont_name.clear();
    run.opened_as_cbr = false; // only the Cabrillo open sets it
    run.Label39.clear();
    ctx.trace.line("入力ファイル ：" + run.in_name);
    // The log is read several times from here to the end of its conversion: once is enough
    // while it stays as it is.
    text::keepReadsOf(path);

    const InputKindRow* row = nullptr;
    if (typeWord.empty()) {
        row = rowOfFileName(path);
        if (row == nullptr) {
            row = &rowOf(InputKind::All);
        }
    } else {
        row = rowOfTypeWord(typeWord);
        if (row == nullptr) {
            run.in_name = "--type は次のどれかです: " + typeWords();
            run.lblIn_name = run.in_name;
            return OpenResult::Rejected;
        }
    }
    const OpenResult result = row->make()->open(ctx, path);
    if (result != OpenResult::Opened) {
        return result;
    }
    Disp_in_name(run, ctx.trace);
    if (text::contains(text::upper(run.in_name), "REF")) {
        ctx.options.set("Check13", "1");
    }
    return OpenResult::Opened;
}

} // namespace vornhale::readers
