#include "engine/CallSplit.h"

#include "engine/Records.h"
#include "base/WorkingFiles.h"
#include "reference/EntityLookup.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"

namespace vornhale::engine {

CallParts splitCall(std::string_view call)
{
    CallParts parts;
    const auto first = call.find('/');
    if (first == std::string_view::npos) {
        parts.base_call = std::string(text::trim(call));
        parts.lookupCall = parts.base_call;
        return parts;
    }
    const auto last = call.rfind('/');
    parts.lookupCall = std::string(text::trim(first != last ? call.substr(0, last) : call));
    const auto pieces = text::split(call, "/");
    const std::string_view a = text::trim(pieces[0]);
    const std::string_view b = text::trim(pieces[1]);
    if (text::charCount(a) < text::charCount(b)) {
        parts.base_call = std::string(b);
        parts.call_ext = std::string(a);
    } else {
        parts.base_call = std::string(a);
        parts.call_ext = std::string(b);
    }
    return parts;
}

namespace {

// Two digits: a leading "0" and the last two characters.
std::string twoDigits(std::string_view s) { return text::right("0" + std::string(s), 2); }

} // namespace

void bak_sep1(RunContext& ctx)
{
    ctx.trace.line("Private sub bak_sep1()");
    ctx.observer.status("  変　換　処　理　中．．．．．", base::Colour::Green);
    ctx.observer.progressRange(ctx.run.line_count + 4);

    text::RecordReader in(ctx.work(base::working::zlog_1));
    text::LineWriter out(ctx.work(base::working::zlog_2));
    const bool useFreq = ctx.options.tick("Check17");

    // A first read happens before the end is tested: an empty zlog_1.txt is a failure.
    long done = 0;
    do {
        QsoLine q = QsoLine::from(in.fields(QsoLine::kFields));
        EnrichedLine e;
        e.q_date6 = text::right(q.q_year, 2) + twoDigits(q.q_month) + twoDigits(q.q_day);
        e.q_time = std::string(text::trim(q.q_time));
        e.q_call = q.q_call;
        e.q_rst_sent = std::string(text::trim(q.q_rst_sent));
        e.q_rst_rcvd = q.q_rst_rcvd;
        e.band_or_freq =
            std::string(text::trim(useFreq && !q.q_freq.empty() ? q.q_freq : q.q_band));
        e.q_mode = q.q_mode;

        CallParts parts = splitCall(q.q_call);
        e.base_call = parts.base_call;
        e.call_ext = parts.call_ext;
        e.q_entity = ctx.entities.entityOf(parts.lookupCall);
        reference::DxccEntry dx = ctx.entities.dxcc_lookup(e.q_entity);
        e.dx_code = dx.dx_code;
        e.dx_name = dx.dx_name;

        e.q_call2 = q.q_call;
        e.q_op = q.q_op;
        e.q_memo = q.q_memo;
        e.q_rcvd = q.q_rcvd;
        out.writeRecord(e.fields());
        ctx.observer.progress(++done);
    } while (!in.atEnd());
    out.close();
    ctx.observer.progress(0);
}

} // namespace vornhale::engine
