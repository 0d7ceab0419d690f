#pragma once

#include "base/RunObserver.h"
#include "readers/ReaderContext.h"

#include <string>

namespace vornhale::session {

/// What the main window shows of the open input: the input label with its colour and tip,
/// the counts, the names of the results, the title of the sort frame, the entries of a
/// `.ZLO` log's text, the year box and the state of the web search's result list. It is
/// derived from the open step's state alone, so that every front end shows the same.
struct InputDisplay
{
    std::string lblIn_name;
    base::Colour lblIn_nameColour = base::Colour::Red;
    std::string lblIn_nameTip; ///< the full path (for a CTESTWIN log, its converted text)
    std::string Label37, Label39;
    /// The "_cn.csv" and "_hn.csv" names of the file alone (`control18`, `control20`) and of
    /// the whole path (`control19`, `control21`).
    std::string control18, control20, control19, control21;
    std::string Frame04; ///< the "_cn.csv" name and " の Ｓｏｒｔ 順の指定"; empty: no input
    std::string mnuDisp_dup; ///< the duplicate list's name
    /// `txtYYYY` takes input: only a `.TXT` log (or none) leaves the year to the operator.
    bool yearBox = true;
    /// `mnuMake_z2a` and "z2a作成": a `.ZLO` log. `mnuDisp_z2a` and "z2a表示": its text is
    /// there.
    bool makeZ2a = false;
    bool showZ2a = false;
    /// `Label33` and the viewers of the web search's result list.
    std::string Label33;
    base::Colour Label33Colour = base::Colour::Red;
    bool showMngResult = false;
};

/// What the window shows of `input`. A usable input (a path with a folder) is shown in
/// bright blue, shortened as the open step shortened it, the full path in the tip; any
/// other text is a rejection or a request, in red. `afterRun`: the result list counts only
/// when its first line is the input's path, as a run leaves it.
InputDisplay inputDisplay(const readers::InputState& input, bool afterRun = false);

/// "検索済み", "未 検 索": the states of `Label33`.
inline constexpr const char* kSearched = "検索済み";
inline constexpr const char* kNotSearched = "未 検 索";

} // namespace vornhale::session
