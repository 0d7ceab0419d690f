#include "engine/RemarkComposer.h"

#include "text/Chars.h"
#include "text/SjisText.h"

#include <optional>

namespace vornhale::engine {
namespace {

bool isBlank(std::string_view s) { return text::trim(s).empty(); }

// The value of an item by its working word; nothing for a word that is no item.
std::optional<std::string> valueOf(std::string_view word, const RemarkValues& v,
                                   const RemarkLayout& layout, bool provinceOn)
{
    if (word == "MNG") {
        return v.mng;
    }
    if (word == "$DX") {
        return v.dx_mark;
    }
    if (word == "Calls") {
        // With a width the item shows the field the conversion keeps blank.
        return layout.widthOf("Calls") > 0 ? std::string() : v.calls_text;
    }
    if (word == "cont_name_h") {
        return v.cont_name;
    }
    if (word == "memo") {
        return v.q_memo;
    }
    if (word == "memo=") {
        return isBlank(v.q_memo) ? std::string() : "memo=" + v.q_memo;
    }
    if (word == "OP") {
        return v.q_op;
    }
    if (word == "OP %") {
        return isBlank(v.q_op) ? std::string() : "%" + v.q_op + "%";
    }
    if (word == "IOTA") {
        return v.iota_text;
    }
    if (word == "ZONE") {
        return v.zone_text;
    }
    if (word == "s_name") {
        return provinceOn ? std::string() : v.dx_state;
    }
    if (word == "Rcvd") {
        return v.rcvd_text;
    }
    if (word == "rmk1") {
        return v.rmk1;
    }
    if (word == "rmk2") {
        return v.rmk2;
    }
    return std::nullopt;
}

} // namespace

std::string compose_rmks(const std::vector<std::string>& words, const std::vector<int>& widths,
                         const RemarkValues& values, const RemarkLayout& layout, bool separated,
                         bool provinceOn)
{
    const int total_width = layout.total_width();
    std::string rmks_out;
    for (std::size_t place = 0; place < words.size(); ++place) {
        const std::string& word = words[place];
        std::string part;
        if (const auto value = valueOf(word, values, layout, provinceOn)) {
            // The width of the cell, not of the item: "memo=" has no slot and takes the width
            // the packing wrote into its own cell.
            const int w = place < widths.size() ? widths[place] : 0;
            if (w == 0) {
                part = *value;
            } else if (w > 0) {
                part = text::padRight(*value, static_cast<std::size_t>(w));
            }
        }

        if (total_width == 0) {
            rmks_out = std::string(text::trim(rmks_out)) + (separated ? " " : "") + part;
        } else {
            // A fixed layout keeps its columns.
            rmks_out += part;
            if (separated) {
                rmks_out += ' ';
            }
        }
    }
    return rmks_out;
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
