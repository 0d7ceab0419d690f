#pragma once

#include <string>
#include <string_view>

namespace vornhale::engine {

struct RunContext;

/// A row of the QTH master as the record conversion uses it.
struct QthEntry
{
    bool found = false;
    std::string code, name, gl, qth;
};

/// The lookups that the record conversion asks per contact: history, managers, names, QTH,
/// states and provinces. Each answer of this base is the lookup's "not found"; the masters
/// and services override what they provide.
class RecordLookups
{
public:
    virtual ~RecordLookups() = default;

    /// The masters of the program, made once before the first conversion of a run of the
    /// program (and again on request): the entity masters and the state master.
    virtual void prepareMasters(RunContext& /*ctx*/) {}
    /// `prepareMasters` at the start of a conversion, made beside the conversion's first steps
    /// where it can be. Nothing may ask the masters before `finishMasters`.
    virtual void startMasters(RunContext& ctx) { prepareMasters(ctx); }
    /// Waits for the masters that `startMasters` began, if any. Their trace lines come before
    /// those of the steps beside them, and their failure is thrown (the lines of those steps
    /// then dropped), as if they had been made first.
    virtual void finishMasters(RunContext& /*ctx*/) {}
    /// Before the record loop of a conversion: the masters this conversion needs and has not
    /// yet loaded. May end the program (throws failure::Failure) when a master that is switched on
    /// is missing.
    virtual void beforeFirstRecord(RunContext& /*ctx*/) {}
    /// Before the reader of a conversion: the list of entities without cards (`Check09`) and
    /// the history scan. Throws failure::ProgramEnd when the history database cannot be opened.
    virtual void prepareHistory(RunContext& /*ctx*/) {}
    /// Before the record conversion: the state master, when a layout uses the state item and
    /// it is not loaded.
    virtual void ensureStateMaster(RunContext& /*ctx*/) {}

    /// The two-character band and mode code of a contact ("0" where nothing fits).
    virtual std::string band_mode_code(std::string_view /*band_or_freq*/, std::string_view /*mode*/)
    {
        return "00";
    }
    /// Whether the history counts the contact as done, for the test key of `Check04`/`Check05`.
    virtual bool historyDone(std::string_view /*q_call*/, std::string_view /*key*/) { return false; }
    /// The club-station test (`Check10`) on the call padded to six columns: true when the
    /// station gets no card.
    virtual bool clubStation(std::string_view /*paddedCall*/) { return false; }
    /// The country test (`Check09`) on the contact's entity text: true when the entity is on
    /// the no-card list.
    virtual bool noQslCountry(std::string_view /*q_entity*/) { return false; }
    /// The manager of a call in the manager master, as the file gives it.
    virtual std::string managerFromFile(std::string_view /*q_call*/) { return {}; }
    /// Keeps the manager file's answer for a call, without its "@": the web search merges its
    /// answer with it, and after the conversion it is the last contact's, which the manager
    /// walk merges with its own web answers.
    virtual void keepManagerFromFile(std::string_view /*mng_file*/) {}
    /// Whether the answers for contacts (from `band_mode_code` to `provinceOf`, but not the
    /// web search) may be asked from two threads at once, so that the record conversion can
    /// work on two parts of a log side by side.
    virtual bool answersFromAnyThread() const { return false; }
    /// The manager found by the web search, after the pause between requests; the search is
    /// shown and added to the result list. Called only with `Check18` on.
    virtual std::string managerFromWeb(std::string_view /*q_call*/) { return {}; }
    /// At the start of a conversion with `Check18`: opens the result list of the web search
    /// (`Get_Mng_result_name`), replacing it, and shows the mode of the search.
    virtual void openWebSearchResults(RunContext& /*ctx*/) {}
    /// After the stages of a conversion: closes the result list of the web search.
    virtual void closeWebSearchResults(RunContext& /*ctx*/) {}
    /// Whether the name master is loaded and switched on.
    virtual bool nameMasterOn() { return false; }
    /// The name of a station in the name master.
    virtual std::string nameOf(std::string_view /*base_call*/) { return {}; }
    /// The QTH master row of a station.
    virtual QthEntry qthOf(std::string_view /*base_call*/) { return {}; }
    /// The state or province from the received exchange of an ARRL-style contest.
    virtual std::string stateOf(std::string_view /*q_rcvd*/) { return {}; }
    /// The province name of a received exchange in the chosen master (`get_prov_mas`), empty
    /// when the exchange is blank or no code matches.
    virtual std::string provinceOf(std::string_view /*q_rcvd*/) { return {}; }
};

} // namespace vornhale::engine
