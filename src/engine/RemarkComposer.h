#pragma once

#include "base/Trace.h"
#include "engine/RemarkLayout.h"

#include <string>
#include <string_view>
#include <vector>

namespace vornhale::engine {

/// The values of one contact that the remark items show.
struct RemarkValues
{
    std::string mng; ///< manager text with its "@"
    std::string dx_mark;
    std::string calls_text;
    std::string cont_name;
    std::string q_memo;
    std::string q_op;
    std::string iota_text;
    std::string zone_text;
    std::string dx_state;
    std::string rcvd_text;
    std::string rmk1; ///< the fixed text of `txtRmks1`
    std::string rmk2; ///< the fixed text of `txtRmks2`
};

/// `compose_rmks`: the items of `layout` (working words, in order) joined into one remark.
/// Each item's width comes from `widths`; a width of 0 takes the value as it is, a width above
/// 0 pads it with blanks and cuts it to that many characters (characters, not bytes), and a
/// width below 0 cuts it to nothing. When `widths` sets no width at all the text is trimmed
/// before each item is appended; otherwise nothing is trimmed. `check1` puts one blank
/// between items; `check5` empties the state item. A word that is no item adds an empty
/// part. Never throws.
std::string compose_rmks(const std::vector<std::string>& layout, const RemarkValues& values,
                         const RemarkLayout& widths, bool check1, bool check5);

/// `compose_rmks` bound to the layouts and the two ticks of a run.
class RemarkComposer
{
public:
    RemarkComposer(const RemarkLayout& layout, bool check1, bool check5)
        : m_layout(layout), m_check1(check1), m_check5(check5)
    {
    }

    /// One remark from `layout` (a row of the bound layouts); see the free `compose_rmks`.
    std::string compose_rmks(const std::vector<std::string>& layout,
                             const RemarkValues& values) const
    {
        return engine::compose_rmks(layout, values, m_layout, m_check1, m_check5);
    }

private:
    const RemarkLayout& m_layout;
    bool m_check1;
    bool m_check5;
};

/// `iota_chk`: the IOTA reference in a received exchange. Writes "Private sub iota_chk()" to
/// `trace`. When one of the continent words stands in `q_rcvd` (case-blind), sets
/// `iota_text` to two characters, "-" and three digits, and, when the words' positions add
/// up to 4 (a three-character serial first), cuts `rcvd_text` to the first eight characters
/// of `q_rcvd`. Sets nothing when no continent word stands there. The positions of several
/// continent words are added, which gives a cut that fits none of them. Never throws.
void iota_chk(std::string_view q_rcvd, std::string& iota_text, std::string& rcvd_text,
              base::Trace& trace);

} // namespace vornhale::engine
