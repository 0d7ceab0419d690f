#include "engine/QsoBankMenu.h"

#include "base/WorkingFiles.h"
#include "engine/RemarkLayout.h"
#include "readers/InputKinds.h"
#include "readers/OutputNames.h"
#include "text/LineFile.h"
#include "tools/QsoBankExport.h"

#include <memory>

namespace vornhale::engine {

bool qsoBankReadsInput(readers::InputKind kind)
{
    using readers::InputKind;
    switch (kind) {
    case InputKind::Zlo:
    case InputKind::Zlox:
    case InputKind::All:
    case InputKind::Txt:
    case InputKind::LogOld:
    case InputKind::LogNew:
        return true;
    default:
        return false;
    }
}

std::filesystem::path mnuQSOBank_Click(RunContext& ctx)
{
    RunState& run = ctx.run;
    ctx.observer.status("", base::Colour::Black);
    if (qsoBankReadsInput(run.kind)) {
        // The reader sees the options as a conversion would.
        const std::unique_ptr<readers::LogReader> reader = readers::makeReader(run.kind);
        run.use = RemarkLayout::fromOptions(ctx.options).use();
        run.op_filter_name = ctx.options.value("txtOp_name");
        run.written_count = 0;
        if (reader->countsLines()) {
            run.line_count = text::Count_lines(run.in_name);
        }
        reader->read(ctx);
    }
    const std::filesystem::path out =
        tools::QsoBankExport::fileName(readers::stemWithPoint(run.in_name));
    tools::QsoBankExport::write(ctx.work(base::working::zlog_1), out, ctx.trace);
    ctx.observer.status("　変 換 終 了", base::Colour::Black);
    return out;
}

} // namespace vornhale::engine
