#include "engine/RemarkComposer.h"

#include "text/Chars.h"
#include "text/SjisText.h"
#include "text/Utf8.h"

#include <stdexcept>
#include <utility>

namespace vornhale::engine {
namespace {

bool isBlank(std::string_view s) { return text::trim(s).empty(); }

// The items a working word can name; `None` for a word that is no item.
enum Item : unsigned char {
    None,
    Mng,
    DxMark,
    Calls,
    ContName,
    Memo,
    MemoEquals,
    Op,
    OpPercent,
    Iota,
    Zone,
    StateName,
    Rcvd,
    Rmk1,
    Rmk2,
};

Item itemOf(std::string_view word)
{
    static constexpr std::pair<std::string_view, Item> kWords[] = {{"MNG", Mng},
                                                                   {"$DX", DxMark},
                                                                   {"Calls", Calls},
                                                                   {"cont_name_h", ContName},
                                                                   {"memo", Memo},
                                                                   {"memo=", MemoEquals},
                                                                   {"OP", Op},
                                                                   {"OP %", OpPercent},
                                                                   {"IOTA", Iota},
                                                                   {"ZONE", Zone},
                                                                   {"s_name", StateName},
                                                                   {"Rcvd", Rcvd},
                                                                   {"rmk1", Rmk1},
                                                                   {"rmk2", Rmk2}};
    for (const auto& [text, item] : kWords) {
        if (word == text) {
            return item;
        }
    }
    return None;
}

// Appends the value of `item` to `out`; nothing for a word that is no item.
void appendValue(std::string& out, Item item, const RemarkViews& v, bool callsHidden,
                 bool provinceOn)
{
    switch (item) {
    case Mng:
        out += v.mng;
        break;
    case DxMark:
        out += v.dx_mark;
        break;
    case Calls:
        // With a width the item shows the field the conversion keeps blank.
        if (!callsHidden) {
            out += v.calls_text;
        }
        break;
    case ContName:
        out += v.cont_name;
        break;
    case Memo:
        out += v.q_memo;
        break;
    case MemoEquals:
        if (!isBlank(v.q_memo)) {
            out += "memo=";
            out += v.q_memo;
        }
        break;
    case Op:
        out += v.q_op;
        break;
    case OpPercent:
        if (!isBlank(v.q_op)) {
            out += '%';
            out += v.q_op;
            out += '%';
        }
        break;
    case Iota:
        out += v.iota_text;
        break;
    case Zone:
        out += v.zone_text;
        break;
    case StateName:
        if (!provinceOn) {
            out += v.dx_state;
        }
        break;
    case Rcvd:
        out += v.rcvd_text;
        break;
    case Rmk1:
        out += v.rmk1;
        break;
    case Rmk2:
        out += v.rmk2;
        break;
    case None:
        break;
    }
}

// Pads or cuts what stands in `out` from `from` on to `width` characters.
void fitTail(std::string& out, std::size_t from, std::size_t width)
{
    const std::string_view tail = std::string_view(out).substr(from);
    if (text::isAsciiText(tail)) {
        // One byte is one character: the cut and the padding count bytes.
        if (tail.size() > width) {
            out.resize(from + width);
        } else {
            out.append(width - tail.size(), ' ');
        }
        return;
    }
    const std::string fitted = text::padRight(tail, width);
    out.resize(from);
    out += fitted;
}

void trimInPlace(std::string& s)
{
    if (s.empty() || (s.front() != ' ' && s.back() != ' ')) {
        return;
    }
    const std::string_view t = text::trim(s);
    const std::size_t begin = t.empty() ? 0 : static_cast<std::size_t>(t.data() - s.data());
    s.resize(begin + t.size());
    s.erase(0, begin);
}

// The part of one place appended to `out`: the value, fitted to the cell's width.
void appendPart(std::string& out, Item item, int width, const RemarkViews& v, bool callsHidden,
                bool provinceOn)
{
    if (item == None || width < 0) {
        return;
    }
    const std::size_t from = out.size();
    appendValue(out, item, v, callsHidden, provinceOn);
    if (width > 0) {
        fitTail(out, from, static_cast<std::size_t>(width));
    }
}

template <typename PlaceAt>
void composeRow(std::size_t places, PlaceAt placeAt, const RemarkViews& v, bool fixed,
                bool callsHidden, bool separated, bool provinceOn, std::string& out)
{
    out.clear();
    for (std::size_t place = 0; place < places; ++place) {
        const auto [item, width] = placeAt(place);
        if (fixed) {
            // A fixed layout keeps its columns.
            appendPart(out, item, width, v, callsHidden, provinceOn);
            if (separated) {
                out += ' ';
            }
        } else {
            trimInPlace(out);
            if (separated) {
                out += ' ';
            }
            appendPart(out, item, width, v, callsHidden, provinceOn);
        }
    }
}

} // namespace

std::string compose_rmks(const std::vector<std::string>& words, const std::vector<int>& widths,
                         const RemarkValues& values, const RemarkLayout& layout, bool separated,
                         bool provinceOn)
{
    std::string rmks_out;
    // The width of the cell, not of the item: "memo=" has no slot and takes the width the
    // packing wrote into its own cell.
    composeRow(
        words.size(),
        [&](std::size_t place) {
            return std::pair<Item, int>{itemOf(words[place]),
                                        place < widths.size() ? widths[place] : 0};
        },
        RemarkViews(values), layout.total_width() != 0, layout.widthOf("Calls") > 0, separated,
        provinceOn, rmks_out);
    return rmks_out;
}

RemarkComposer::RemarkComposer(const RemarkLayout& layout, bool separated, bool provinceOn)
    : m_fixed(layout.total_width() != 0), m_callsHidden(layout.widthOf("Calls") > 0),
      m_separated(separated), m_provinceOn(provinceOn)
{
    for (int row = 1; row <= 2; ++row) {
        const std::vector<std::string>& words = layout.row(row);
        const std::vector<int>& widths = layout.cellWidths(row);
        std::vector<Place>& places = m_places[row - 1];
        places.reserve(words.size());
        for (std::size_t place = 0; place < words.size(); ++place) {
            places.push_back({itemOf(words[place]), place < widths.size() ? widths[place] : 0});
        }
    }
}

std::string RemarkComposer::compose_rmks(int row, const RemarkValues& values) const
{
    std::string out;
    composeInto(row, RemarkViews(values), out);
    return out;
}

void RemarkComposer::composeInto(int row, const RemarkViews& values, std::string& out) const
{
    if (row != 1 && row != 2) {
        throw std::out_of_range("remark row");
    }
    const std::vector<Place>& places = m_places[row - 1];
    composeRow(
        places.size(),
        [&](std::size_t place) {
            return std::pair<Item, int>{static_cast<Item>(places[place].item), places[place].width};
        },
        values, m_fixed, m_callsHidden, m_separated, m_provinceOn, out);
}

void iota_chk(std::string_view q_rcvd, std::string& iota_text, std::string& rcvd_text,
              base::Trace& trace)
{
    trace.line("Private sub iota_chk()");

    const std::string upper = text::upper(q_rcvd);
    long p = 0;
    for (const char* continent : {"AN", "AS", "AF", "NA", "OC", "SA", "EU"}) {
        p += static_cast<long>(text::instr(upper, continent));
    }
    if (p == 0) {
        return;
    }

    long n = static_cast<long>(text::charCount(text::trim(q_rcvd)));
    if (p == 4) {
        n = 8;
        rcvd_text = text::left(q_rcvd, 8);
    }
    // Added positions can reach past the text; a negative count then takes nothing instead
    // of stopping the conversion.
    const long count = n - p + 1;
    const std::string reference =
        count > 0 ? std::string(text::trim(text::Mid_sjis(q_rcvd, p, count))) : std::string();
    iota_text = text::left(reference, 2) + "-" + text::right("00" + text::mid(reference, 3), 3);
}

} // namespace vornhale::engine
