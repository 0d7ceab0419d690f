#pragma once

#include "base/Dialogs.h"
#include "base/ProgramFolder.h"
#include "base/Trace.h"
#include "engine/RecordLookups.h"
#include "history/HistoryMaster.h"
#include "history/NoQslCountries.h"
#include "manager/ManagerMaster.h"
#include "manager/ManagerResultLog.h"
#include "manager/WebManagerSearch.h"
#include "reference/ArdxMaster.h"
#include "reference/CtyEntityLookup.h"
#include "reference/NameQthMasters.h"
#include "reference/ProvinceMaster.h"

#include <filesystem>
#include <future>
#include <optional>
#include <string>

namespace vornhale::engine {

/// The reference masters of one run of the program: the entity masters made from `cty.dat`
/// and `dxcc_mas.txt`, the state master made from zLog's ARRL files, the name and QTH
/// masters, the province master chosen for the input, and the history master made from the
/// operator's HAMLOG log with the list of entities that get no cards, and the manager master
/// with the web search of managers. They are made or loaded once and then answer every
/// contact of every conversion until the program ends.
class ReferenceData : public RecordLookups
{
public:
    /// The entity lookups (`get_entity`, `cty_conv_apply`, `dxcc_lookup`); empty answers
    /// until `prepareMasters` has run.
    reference::CtyEntityLookup& entities() { return m_entities; }

    /// The province master for `Check5`, as chosen for the input; empty for none.
    void setProvinceMaster(std::filesystem::path mas_dat_name);
    const std::filesystem::path& provinceMaster() const { return m_provinceMaster; }

    /// The import of `cty.dat` and the load of `dxcc_mas.txt` (also `mnuGet_Entity`), then
    /// `ardx_sep`. Throws failure::Failure when a file they need is missing.
    void prepareMasters(RunContext& ctx) override;
    void startMasters(RunContext& ctx) override;
    void finishMasters(RunContext& ctx) override;
    void beforeFirstRecord(RunContext& ctx) override;
    void ensureStateMaster(RunContext& ctx) override;
    void prepareHistory(RunContext& ctx) override;

    std::string band_mode_code(std::string_view band_or_freq, std::string_view mode) override;
    bool historyDone(std::string_view q_call, std::string_view key) override;
    bool clubStation(std::string_view paddedCall) override;
    bool noQslCountry(std::string_view q_entity) override;

    bool nameMasterOn() override { return m_nameMasterOn; }
    std::string nameOf(std::string_view base_call) override;
    QthEntry qthOf(std::string_view base_call) override;
    std::string stateOf(std::string_view q_rcvd) override;
    std::string provinceOf(std::string_view q_rcvd) override;

    std::string managerFromFile(std::string_view q_call) override;
    void keepManagerFromFile(std::string_view mng_file) override;
    /// The masters are read only once made, and the web search is asked in order.
    bool answersFromAnyThread() const override { return true; }
    std::string managerFromWeb(std::string_view q_call) override;
    void openWebSearchResults(RunContext& ctx) override;
    void closeWebSearchResults(RunContext& ctx) override;

    /// The manager master, loaded at the first conversion (or walk) of the program.
    manager::ManagerMaster& managers() { return m_managers; }
    /// The manager values that the conversion's web search shares with the batch walk.
    manager::SharedManagerValues& sharedManagers() { return m_sharedManagers; }
    /// How the pause between web requests is spent (by default the thread sleeps).
    void setWebPause(manager::WebManagerSearch::Sleeper sleeper) { m_webPause = std::move(sleeper); }

private:
    // The system's prefix list copied into a program folder that has none.
    void takeSystemCtyDat(RunContext& ctx);
    // The masters themselves; reads nothing of the run but what it is given.
    void makeMasters(const base::ProgramFolder& folder, base::Trace& trace,
                     base::Dialogs& dialogs, const std::string& zlog_dat_dir);
    void loadCallMaster(RunContext& ctx, reference::CallMaster& master, const char* key,
                        const char* file, const char* display);

    reference::CtyEntityLookup m_entities;
    std::future<void> m_mastersAside;
    reference::ArdxMaster m_ardx;
    reference::CallMaster m_names{reference::CallMaster::Kind::Name};
    reference::CallMaster m_qths{reference::CallMaster::Kind::Qth};
    reference::ProvinceMaster m_provinces;
    std::filesystem::path m_provinceMaster;
    std::filesystem::path m_provinceLoaded;
    history::HistoryMaster m_history;
    history::NoQslCountries m_countries;
    bool m_historyOn = false;
    bool m_sameBand = false; ///< `Check04`: the history test asks for the same band
    bool m_sameMode = false; ///< `Check05`: and for the same mode
    bool m_nameMasterOn = false;
    bool m_provinceKeepsDigits = false; ///< `Check13`
    manager::ManagerMaster m_managers;
    manager::SharedManagerValues m_sharedManagers;
    std::optional<manager::WebManagerSearch> m_web; ///< set for a conversion with `Check18`
    manager::WebManagerSearch::Sleeper m_webPause;
    manager::ManagerResultLog m_webResults;
    std::string m_webInterval; ///< `GetMng_Interval` of the conversion
    int m_managerOrder = 0;    ///< `Option10`: how the file and the web answers merge
    std::string m_webSearchMode; ///< the mode of the search as the result list tells it
    base::RunObserver* m_runObserver = nullptr; ///< the observer of the running conversion
};

} // namespace vornhale::engine
