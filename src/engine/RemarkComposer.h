#pragma once

#include "app/Trace.h"
#include "engine/RemarkLayout.h"

#include <string>
#include <string_view>
#include <vector>

namespace vornhale::engine {

/// The values of one contact that the remark items show.
struct RemarkValues
{
    std::string mng;        ///< manager text with its "@"
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

/// Composes remark columns from a layout. Holds the width that was looked up last for the
/// whole run: an item without a width slot ("memo=") takes that width.
class RemarkComposer
{
public:
    RemarkComposer(const RemarkLayout& layout, bool check1, bool check5)
        : m_layout(layout), m_check1(check1), m_check5(check5)
    {
    }

    /// `compose_rmks`: the items of `layout` (working words, in order) joined into one remark.
    /// Widths count characters; with any width set the columns are kept, otherwise the text
    /// is trimmed at each step.
    std::string compose_rmks(const std::vector<std::string>& layout, const RemarkValues& values);

private:
    const RemarkLayout& m_layout;
    bool m_check1;
    bool m_check5;
    int m_lastWidth = 0;
};

/// `iota_chk`: the IOTA reference in a received exchange. Sets `iota_text` (continent, "-",
/// three digits) and, when a three-character serial comes first, cuts `rcvd_text` to eight
/// characters. Sets nothing when no continent word is in the exchange.
void iota_chk(std::string_view q_rcvd, std::string& iota_text, std::string& rcvd_text,
              app::Trace& trace);

} // namespace vornhale::engine
