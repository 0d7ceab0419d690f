#include "engine/ManagerWalk.h"

#include "base/FileMask.h"
#include "failure/Failure.h"
#include "net/Http.h"
#include "readers/ZloRecord.h"

#include <string>

namespace vornhale::engine {
namespace {

// The `.ZLO` walker (`read_zlog_zlo`): the call of each QSO record after the header.
void read_zlog_zlo(RunContext& ctx, manager::BatchManagerWalk& walk)
{
    ctx.trace.line("Private sub read_zlog_zlo()");
    const readers::ZloFile file(ctx.run.in_name);
    const long count = file.count();
    walk.start(count > 0 ? count - 1 : 0);
    for (long n = 2; n <= count; ++n) {
        walk.walkCall(readers::decodeZloQso(file.record(n)).call);
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
                                   std::function<bool()> stopRequested)
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

    const std::string& kind = ctx.run.f_type;
    if (kind == "all" || kind == "txt") {
        walk.read_zlog_all(ctx.run.in_name, kind);
    } else if (kind == "zlo") {
        read_zlog_zlo(ctx, walk);
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
