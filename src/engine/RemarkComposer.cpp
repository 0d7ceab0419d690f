#include "engine/RemarkComposer.h"

#include "text/Chars.h"
#include "text/SjisText.h"

namespace vornhale::engine {
namespace {

bool blank(std::string_view s) { return text::trim(s).empty(); }

} // namespace

std::string RemarkComposer::compose_rmks(const std::vector<std::string>& layout,
                                         const RemarkValues& v)
{
    const int total_width = m_layout.total_width();
    std::string rmks_out;
    std::string part;
    for (const std::string& word : layout) {
        // An unknown word leaves the previous part's text in place but adds nothing.
        bool known = true;
        std::string value;
        if (word == "MNG") {
            value = v.mng;
        } else if (word == "$DX") {
            value = v.dx_mark;
        } else if (word == "Calls") {
            value = m_layout.widthOf("Calls") > 0 ? std::string() : v.calls_text;
        } else if (word == "cont_name_h") {
            value = v.cont_name;
        } else if (word == "memo") {
            value = v.q_memo;
        } else if (word == "memo=") {
            value = blank(v.q_memo) ? std::string() : "memo=" + v.q_memo;
        } else if (word == "OP") {
            value = v.q_op;
        } else if (word == "OP %") {
            value = blank(v.q_op) ? std::string() : "%" + v.q_op + "%";
        } else if (word == "IOTA") {
            value = v.iota_text;
        } else if (word == "ZONE") {
            value = v.zone_text;
        } else if (word == "s_name") {
            value = m_check5 ? std::string() : v.dx_state;
        } else if (word == "Rcvd") {
            value = v.rcvd_text;
        } else if (word == "rmk1") {
            value = v.rmk1;
        } else if (word == "rmk2") {
            value = v.rmk2;
        } else {
            known = false;
        }
        if (!known) {
            continue;
        }
        if (const auto slot = m_layout.slotWidth(word)) {
            m_lastWidth = *slot;
        }
        const int w = m_lastWidth;
        part = w <= 0 ? value : text::padRight(value, static_cast<std::size_t>(w));

        if (total_width == 0) {
            rmks_out = std::string(text::trim(rmks_out)) + (m_check1 ? " " : "") + part;
        } else {
            rmks_out += part;
            if (m_check1) {
                rmks_out += " ";
            }
        }
    }
    return rmks_out;
}

void iota_chk(std::string_view q_rcvd, std::string& iota_text, std::string& rcvd_text,
              app::Trace& trace)
{
    trace.line("Private sub iota_chk()");
    const std::string upper = text::upper(q_rcvd);
    std::size_t p = 0;
    for (const char* word : {"AN", "AS", "AF", "NA", "OC", "SA", "EU"}) {
        p += text::instr(upper, word);
    }
    if (p == 0) {
        return;
    }
    long n = static_cast<long>(text::charCount(text::trim(q_rcvd)));
    if (p == 4) {
        n = 8;
        rcvd_text = text::left(q_rcvd, 8);
    }
    const long length = n - static_cast<long>(p) + 1;
    const std::string ref =
        length > 0 ? std::string(text::trim(text::Mid_sjis(q_rcvd, static_cast<long>(p), length)))
                   : std::string();
    iota_text = text::left(ref, 2) + "-" + text::right("00" + text::mid(ref, 3), 3);
}

} // namespace vornhale::engine
