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

/// The same values as views into texts that outlive the composition: the record conversion
/// composes from its own fields without copying them.
struct RemarkViews
{
    std::string_view mng, dx_mark, calls_text, cont_name, q_memo, q_op, iota_text, zone_text,
        dx_state, rcvd_text, rmk1, rmk2;

    RemarkViews() = default;
    explicit RemarkViews(const RemarkValues& v)
        : mng(v.mng), dx_mark(v.dx_mark), calls_text(v.calls_text), cont_name(v.cont_name),
          q_memo(v.q_memo), q_op(v.q_op), iota_text(v.iota_text), zone_text(v.zone_text),
          dx_state(v.dx_state), rcvd_text(v.rcvd_text), rmk1(v.rmk1), rmk2(v.rmk2)
    {
    }
};

/// `compose_rmks`: the items of one packed row joined into one remark. `words` are the row's
/// working words in order and `widths` their widths, place by place, as the layout's per-cell
/// tables hold them (`RemarkLayout::cellWidths`); a place without a width reads 0. A width of
/// 0 takes the value as it is, a width above 0 pads it with blanks and cuts it to that many
/// characters (characters, not bytes), and a width below 0 cuts it to nothing. When
/// `layout` sets no width at all (`total_width` 0) the text is trimmed before each item is
/// appended; otherwise nothing is trimmed. `separated` (`Check1`) puts one blank between
/// items; `provinceOn` (`Check5`) empties the state item. A word that is no item adds an empty
/// part. Never throws.
std::string compose_rmks(const std::vector<std::string>& words, const std::vector<int>& widths,
                         const RemarkValues& values, const RemarkLayout& layout, bool separated,
                         bool provinceOn);

/// `compose_rmks` bound to the layouts and the two ticks of a run. The rows, their widths and
/// which item each working word names are taken from `layout` once, when the composer is
/// made; a layout changed afterwards needs a new composer.
class RemarkComposer
{
public:
    RemarkComposer(const RemarkLayout& layout, bool separated, bool provinceOn);

    /// Remark 1 or 2 from its packed row of the bound layouts; see the free `compose_rmks`.
    /// Any other row number throws std::out_of_range.
    std::string compose_rmks(int row, const RemarkValues& values) const;

    /// The same remark written into `out` (replacing what it held, keeping its capacity), from
    /// views of the values. Any other row number than 1 or 2 throws std::out_of_range.
    void composeInto(int row, const RemarkViews& values, std::string& out) const;

private:
    // One place of a packed row: the item its working word names, and the cell's width.
    struct Place
    {
        unsigned char item = 0;
        int width = 0;
    };

    std::vector<Place> m_places[2];
    bool m_fixed;       // the layout sets widths: nothing is trimmed
    bool m_callsHidden; // "Calls" has a width and so shows the field kept blank
    bool m_separated;
    bool m_provinceOn;
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
