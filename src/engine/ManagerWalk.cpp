#include "engine/ManagerWalk.h"

#include "base/FileMask.h"
#include "failure/Failure.h"
#include "net/Http.h"
#include "readers/RtclTextReader.h"
#include "readers/ZloReader.h"
#include "text/Record.h"

#include <string>
#include <vector>

namespace vornhale::engine {
namespace {

// The `.ZLO` walker (`read_zlog_zlo`): the call of each QSO record after the header, of a
// `.ZLOX` log as of the `.ZLO` log it stands for.
void read_zlog_zlo(RunContext& ctx, manager::BatchManagerWalk& walk)
{
    ctx.trace.line("Private sub read_zlog_zlo()");
    const readers::ZloFile file = readers::openZloInput(ctx.run);
    const long count = file.count();
    walk.start(count > 0 ? count - 1 : 0);
    for (long n = 2; n <= count; ++n) {
        std::uint8_t length = 0;
        walk.walkCall(file.callAt(n, length));
    }
}

// The RTCL walker (`read_rtcl_log`): the call of each record of a text log, read as its
// generation's reader reads it; a record of kind "QTC" is no contact.
void read_rtcl_log(RunContext& ctx, manager::BatchManagerWalk& walk)
{
    const bool old = readers::rtcl_gen(ctx.run.kind) == "old";
    const std::size_t fields = old ? 12 : 13, callField = old ? 3 : 2;
    text::RecordReader in(ctx.run.in_name);
    std::vector<std::string> calls;
    while (!in.atEnd()) {
        const std::vector<std::string> record = in.fields(fields);
        if (record[0] != "QTC") {
            calls.push_back(record[callField]);
        }
    }
    walk.start(static_cast<long>(calls.size()));
    for (const std::string& call : calls) {
        walk.walkCall(call);
    }
}

} // namespace

manager::WalkOptions walkOptionsOf(const settings::Options& options)
{
    manager::WalkOptions w;
    const std::string& useWeb = options.value("Get_MNG_use_web");
    w.Check1 = useWeb.empty() || useWeb == "1";
    w.Check18 = options.tick("Check18");
    w.Option10 = options.member("Option10");
    return w;
}

ManagerWalkResult mnuGet_MNG_Click(RunContext& ctx, ReferenceData& data,
                                   std::function<bool()> stopRequested,
                                   manager::BatchManagerWalk::RowWalked rowWalked)
{
    ctx.observer.label("Label1", "");
    if (!data.managers().loaded()) {
        // The walk's own load shows nothing on the status line.
        data.managers().read_MNG_z_full_mp(ctx.options.value("mng_z_full_txt_dir"), ctx.trace);
    }
    const manager::WebManagerSearch web(net::WebConfig::load(ctx.folder.strPath),
                                        ctx.folder.strPath, ctx.folder.drive_path);
    manager::BatchManagerWalk walk(data.managers(), &web, data.sharedManagers(),
                                   walkOptionsOf(ctx.options), ctx.observer);
    walk.setStopRequest(std::move(stopRequested));
    walk.setRowWalked(std::move(rowWalked));

    const std::string& kind = ctx.run.f_type;
    if (kind == "all" || kind == "txt") {
        walk.read_zlog_all(ctx.run.in_name, kind);
    } else if (kind == "zlo") {
        read_zlog_zlo(ctx, walk);
    } else if (kind == "log") {
        read_rtcl_log(ctx, walk);
    } else {
        throw failure::Failure(failure::InvalidCall,
                               "ＭＮＧ取得はこの入力ファイルの種類に対応していません。 " +
                                   ctx.run.in_name);
    }

    base::deleteByMask(ctx.folder.drive_path, std::string(manager::kCallDirectoryPage) + "_?");
    ctx.observer.label("Label1", "ＭＮＧ取得終了");
    return {walk.rows(), walk.gridRows()};
}

} // namespace vornhale::engine
