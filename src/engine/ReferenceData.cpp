#include "engine/ReferenceData.h"

#include "failure/Failure.h"
#include "base/DataFiles.h"
#include "engine/RunContext.h"
#include "history/HistoryScan.h"
#include "history/NoQslMarking.h"
#include "net/Http.h"
#include "reference/CtyImport.h"
#include "text/Chars.h"

#include <ctime>

namespace vornhale::engine {
namespace {

namespace fs = std::filesystem;

bool isFile(const fs::path& p)
{
    std::error_code ec;
    return fs::is_regular_file(p, ec);
}

} // namespace

void ReferenceData::setProvinceMaster(fs::path mas_dat_name)
{
    m_provinceMaster = std::move(mas_dat_name);
}

void ReferenceData::takeSystemCtyDat(RunContext& ctx)
{
    // A program folder without its own prefix list takes the system's current one.
    const fs::path own = ctx.folder.strPath / "cty.dat";
    if (const fs::path system = base::systemCtyDat(); !isFile(own) && !system.empty()) {
        std::error_code ec;
        if (fs::copy_file(system, own, ec)) {
            ctx.trace.line("     cty.dat : " + system.string());
        }
    }
}

void ReferenceData::makeMasters(const base::ProgramFolder& folder, base::Trace& trace,
                                base::Dialogs& dialogs, const std::string& zlog_dat_dir)
{
    reference::CtyImport import({folder.strPath, folder.drive_path}, trace, dialogs);
    if (!import.importAll(folder.strPath / "dxcc_mas.txt")) {
        throw failure::Failure(failure::FileNotFound,
                           (folder.strPath / "cty_conv.txt").string() + "　がありません。");
    }
    m_entities.load(import.tables(), folder.strPath / "cty_mastL.txt");
    trace.line("Private sub cmdStart_ardx_sep");
    m_ardx.ardx_sep(zlog_dat_dir, folder.drive_path, trace);
}

void ReferenceData::prepareMasters(RunContext& ctx)
{
    takeSystemCtyDat(ctx);
    makeMasters(ctx.folder, ctx.trace, ctx.dialogs, ctx.options.value("zlog_dat_dir"));
}

void ReferenceData::startMasters(RunContext& ctx)
{
    takeSystemCtyDat(ctx);
    // A missing list is told to the operator before anything else happens: then the masters
    // are made here and now.
    if (!isFile(ctx.folder.strPath / "cty.dat") || !isFile(ctx.folder.strPath / "cty_conv.txt")) {
        makeMasters(ctx.folder, ctx.trace, ctx.dialogs, ctx.options.value("zlog_dat_dir"));
        return;
    }
    ctx.trace.holdThisThread();
    m_mastersAside = std::async(std::launch::async,
                                [this, folder = ctx.folder, &trace = ctx.trace,
                                 &dialogs = ctx.dialogs,
                                 zlog_dat_dir = ctx.options.value("zlog_dat_dir")] {
                                    makeMasters(folder, trace, dialogs, zlog_dat_dir);
                                });
}

void ReferenceData::finishMasters(RunContext& ctx)
{
    if (!m_mastersAside.valid()) {
        return;
    }
    try {
        m_mastersAside.get();
    } catch (...) {
        ctx.trace.endHold(false);
        throw;
    }
    ctx.trace.endHold(true);
}

void ReferenceData::ensureStateMaster(RunContext& ctx)
{
    if (!m_ardx.loaded()) {
        m_ardx.ardx_sep(ctx.options.value("zlog_dat_dir"), ctx.folder.drive_path, ctx.trace);
    }
}

void ReferenceData::loadCallMaster(RunContext& ctx, reference::CallMaster& master, const char* key,
                                   const char* file, const char* display)
{
    const std::string folder = ctx.options.value(key);
    const fs::path path = fs::path(folder) / file;
    if (!isFile(path)) {
        // A master that is switched on must be there: the operator is told and the program
        // ends.
        const std::string title = std::string("　　") + display + " がありません。";
        ctx.dialogs.message(title,
                            folder + "\n[　" + display + "  ] がありません。\n" +
                                "同梱されているサンプルファイルまたは自己作成ファイルを\n" +
                                " フォルダにコピーして下さい。",
                            base::Dialogs::Icon::Stop);
        throw failure::Failure(failure::FileNotFound, path.string() + " がありません。");
    }
    if (master.kazu() == 0 || !master.loaded()) {
        if (&master == &m_names) {
            reference::read_name_mas_txt(master, path, ctx.observer);
        } else {
            reference::read_qth_mas_txt(master, path, ctx.observer);
        }
    }
}

void ReferenceData::prepareHistory(RunContext& ctx)
{
    const settings::Options& o = ctx.options;
    if (o.tick("Check09")) {
        m_countries = history::NoQslCountries::no_qsl_cty_0(
            o.value("No_qsl_cty"),
            [this](std::string_view name) { return m_entities.dxcc_name_check(name); });
    }
    history::HistoryScan scan(ctx.folder.drive_path, ctx.folder.Temp_Files, ctx.options, ctx.trace,
                              ctx.observer, ctx.settings);
    if (scan.run() == history::HistoryStep::OpenFailed) {
        throw failure::ProgramEnd{"history database: " + o.value("hamlog_hdb_dir")};
    }
}

void ReferenceData::beforeFirstRecord(RunContext& ctx)
{
    const settings::Options& o = ctx.options;
    m_historyOn = o.member("Option04") != 0;
    m_sameBand = o.tick("Check04");
    m_sameMode = o.tick("Check05");
    if (m_historyOn) {
        m_history = history::HistoryMaster();
        m_history.sum_bak_4_bas_p(
            history::bak_qso_mas_file(ctx.folder.Temp_Files, o.member("Option04")), ctx.trace);
    }
    // One flag gates both masters per contact; each master loads by its own.
    m_nameMasterOn = reference::masterFolderOn(o.value("name_mas_dir"));
    const bool qthOn = reference::masterFolderOn(o.value("qth_mas_dir"));
    if (o.tick("Check15") && m_nameMasterOn && !m_names.loaded()) {
        ctx.trace.line("    Private sub Henkan_txt() : read_name_mas_txt");
        loadCallMaster(ctx, m_names, "name_mas_dir", "name_mas.txt", "name_mas．txt");
    }
    if (o.tick("Check29") && qthOn && !m_qths.loaded()) {
        ctx.trace.line("    Private sub Henkan_txt() : read_qth_mas_txt");
        loadCallMaster(ctx, m_qths, "qth_mas_dir", "qth_mas.txt", "qth_mas．txt");
    }
    m_provinceKeepsDigits = o.tick("Check13");
    if (!m_managers.loaded()) {
        // Once per program: a file replaced while the program runs waits for the next start.
        ctx.trace.line("    Private sub Henkan_txt() : read_MNG_z_full_mp");
        m_managers.read_MNG_z_full_mp(o.value("mng_z_full_txt_dir"), ctx.trace, &ctx.observer);
    }
    m_runObserver = &ctx.observer;
    m_web.reset();
    if (o.tick("Check18")) {
        m_web.emplace(net::WebConfig::load(ctx.folder.strPath), ctx.folder.strPath,
                      ctx.folder.drive_path, m_webPause);
        m_webInterval = o.value("GetMng_Interval");
        m_managerOrder = o.member("Option10");
        m_webSearchMode = manager::webSearchModeText(m_managerOrder);
    }
    if (o.tick("Check5") && !m_provinceMaster.empty() && m_provinceLoaded != m_provinceMaster) {
        m_provinces = reference::ProvinceMaster();
        m_provinces.read_prov_mas_dat(m_provinceMaster, ctx.trace);
        m_provinceLoaded = m_provinceMaster;
    }
}

std::string ReferenceData::band_mode_code(std::string_view band_or_freq, std::string_view mode)
{
    return history::band_mode_code(band_or_freq, mode).code();
}

bool ReferenceData::historyDone(std::string_view q_call, std::string_view key)
{
    return m_historyOn && m_history.chk_bak_qso(q_call, key, m_sameBand, m_sameMode);
}

bool ReferenceData::clubStation(std::string_view paddedCall)
{
    return history::Check_JA_club(paddedCall);
}

bool ReferenceData::noQslCountry(std::string_view q_entity)
{
    return m_countries.no_qsl_cty_1(q_entity);
}

std::string ReferenceData::nameOf(std::string_view base_call)
{
    std::string name, code, qth, remark;
    reference::get_name_mas(m_names, base_call, name, code, qth, remark);
    return name;
}

QthEntry ReferenceData::qthOf(std::string_view base_call)
{
    QthEntry e;
    int hit = 0;
    reference::get_qth_mas(m_qths, base_call, e.name, e.code, e.qth, e.gl, hit);
    e.found = hit == 1;
    return e;
}

std::string ReferenceData::managerFromFile(std::string_view q_call)
{
    return m_managers.MNG_lookup(q_call);
}

void ReferenceData::keepManagerFromFile(std::string_view mng_file)
{
    m_sharedManagers.mng_file = mng_file;
}

std::string ReferenceData::managerFromWeb(std::string_view q_call)
{
    if (!m_web) {
        return {};
    }
    // The pause comes before each request: it protects the remote service.
    m_web->pause(m_webInterval);
    manager::WebSearchResult r = m_web->Get_MNG_web(q_call, m_sharedManagers.mng_file);
    m_sharedManagers.mng_web = r.mng_web;
    r.Set_mng = manager::managerByOption10(m_managerOrder, m_sharedManagers.mng_file, r.mng_web)
                    .value_or("");
    if (m_runObserver != nullptr) {
        manager::WebManagerSearch::show(r, *m_runObserver);
    }
    m_webResults.add(r, m_webSearchMode);
    return r.mng_web;
}

void ReferenceData::openWebSearchResults(RunContext& ctx)
{
    if (!ctx.options.tick("Check18")) {
        return;
    }
    const std::string& name = ctx.run.names.Get_Mng_result_name;
    ctx.trace.line("Get_Mng_result_name : " + name);
    m_webResults.close();
    m_webResults.open(name, ctx.run.in_name,
                      manager::ManagerResultLog::dateTimeText(std::time(nullptr)));
    ctx.observer.label("Label29", manager::webSearchModeText(ctx.options.member("Option10")));
}

void ReferenceData::closeWebSearchResults(RunContext& /*ctx*/)
{
    m_webResults.close();
}

std::string ReferenceData::stateOf(std::string_view q_rcvd)
{
    return m_ardx.loaded() ? m_ardx.get_ardx(q_rcvd) : std::string();
}

std::string ReferenceData::provinceOf(std::string_view q_rcvd)
{
    // The prefix and the place are the record conversion's; here only the name.
    return m_provinces.loaded() ? m_provinces.get_prov_mas(q_rcvd, m_provinceKeepsDigits, "", 2)
                                : std::string();
}

} // namespace vornhale::engine
