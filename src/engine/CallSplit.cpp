#include "engine/CallSplit.h"

#include "base/WorkingFiles.h"
#include "engine/Records.h"
#include "failure/Failure.h"
#include "reference/EntityLookup.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/RecordBytes.h"
#include "text/Record.h"
#include "text/SideBySide.h"
#include "text/SjisCodec.h"
#include "text/Utf8.h"

#include <algorithm>
#include <filesystem>

namespace vornhale::engine {

namespace {

namespace fs = std::filesystem;

using text::RecordBytes;
using AsciiLine = text::AsciiRecordLine;

// The parts of a call as views into it.
struct CallViews
{
    std::string_view base_call, call_ext, lookupCall;
};

CallViews splitCallViews(std::string_view call)
{
    CallViews parts;
    const auto first = call.find('/');
    if (first == std::string_view::npos) {
        parts.base_call = text::trim(call);
        parts.lookupCall = parts.base_call;
        return parts;
    }
    const auto last = call.rfind('/');
    parts.lookupCall = text::trim(first != last ? call.substr(0, last) : call);
    // The first two "/" parts; a third and later ones play no part.
    const auto second = call.find('/', first + 1);
    const std::string_view a = text::trim(call.substr(0, first));
    const std::string_view b = text::trim(call.substr(
        first + 1, second == std::string_view::npos ? std::string_view::npos : second - first - 1));
    if (text::charCount(a) < text::charCount(b)) {
        parts.base_call = b;
        parts.call_ext = a;
    } else {
        parts.base_call = a;
        parts.call_ext = b;
    }
    return parts;
}

// The last `n` characters of `s`, or all of it.
std::string_view lastChars(std::string_view s, std::size_t n)
{
    if (text::isAsciiText(s)) {
        return s.size() > n ? s.substr(s.size() - n) : s;
    }
    const std::size_t count = text::charCount(s);
    return count > n ? s.substr(text::byteOffsetOfChar(s, count - n)) : s;
}

// Appends two digits: a leading "0" and the last two characters.
void appendTwoDigits(std::string& out, std::string_view s)
{
    const std::size_t chars = text::isAsciiText(s) ? s.size() : text::charCount(s);
    if (chars < 2) {
        out.push_back('0');
    }
    out.append(lastChars(s, 2));
}

} // namespace

CallParts splitCall(std::string_view call)
{
    const CallViews v = splitCallViews(call);
    return {std::string(v.base_call), std::string(v.call_ext), std::string(v.lookupCall)};
}

namespace {

// Turns one common QSO line into an enriched line.
class Enricher
{
public:
    Enricher(reference::EntityLookup& entities, bool useFreq)
        : m_entities(entities), m_useFreq(useFreq)
    {
    }

    void operator()(RecordBytes& in, text::LineWriter& out);

private:
    reference::EntityLookup& m_entities;
    const bool m_useFreq;
    std::vector<std::string_view> q;
    std::string q_date6;
    AsciiLine line;
};

void Enricher::operator()(RecordBytes& in, text::LineWriter& out)
{
    // The fields of the common QSO line.
    constexpr std::size_t q_year = 0, q_month = 1, q_day = 2, q_time = 3, q_call = 4,
                          q_rst_sent = 5, q_rst_rcvd = 6, q_band = 7, q_mode = 8, q_op = 9,
                          q_memo = 10, q_freq = 11, q_rcvd = 12;
    reference::EntityLookup& entities = m_entities;
    const bool useFreq = m_useFreq;
    const bool ascii = in.next(QsoLine::kFields, q);
    q_date6.assign(lastChars(q[q_year], 2));
    appendTwoDigits(q_date6, q[q_month]);
    appendTwoDigits(q_date6, q[q_day]);
    const CallViews parts = splitCallViews(q[q_call]);
    const std::string q_entity = entities.entityOf(parts.lookupCall);
    const reference::DxccEntry dx = entities.dxcc_lookup(q_entity);
    const std::string_view band_or_freq =
        text::trim(useFreq && !q[q_freq].empty() ? q[q_freq] : q[q_band]);
    const std::string_view time = text::trim(q[q_time]);
    const std::string_view rstSent = text::trim(q[q_rst_sent]);
    if (ascii && text::isAsciiText(q_entity) && text::isAsciiText(dx.dx_code) &&
        text::isAsciiText(dx.dx_name)) {
        // Every field is ASCII (the date is built from ASCII digits): nothing to encode.
        line.clear();
        line.field(q_entity);
        line.field(q_date6);
        line.field(time);
        line.field(q[q_call]);
        line.field(rstSent);
        line.field(q[q_rst_rcvd]);
        line.field(parts.base_call);
        line.field(parts.call_ext);
        line.field(band_or_freq);
        line.field(q[q_mode]);
        line.emptyField();
        line.emptyField();
        line.field(dx.dx_code);
        line.field(dx.dx_name);
        line.emptyField();
        line.field(q[q_call]);
        line.field(q[q_op]);
        line.field(q[q_memo]);
        line.field(q[q_rcvd]);
        out.writeRaw(line.text());
    } else {
        // The fields of the enriched line, in its order.
        const std::string_view e[EnrichedLine::kFields] = {
            q_entity,        q_date6,        time,         q[q_call], rstSent, q[q_rst_rcvd],
            parts.base_call, parts.call_ext, band_or_freq, q[q_mode], {},      {},
            dx.dx_code,      dx.dx_name,     {},           q[q_call], q[q_op], q[q_memo],
            q[q_rcvd]};
        out.writeRecord(e);
    }
}

} // namespace

void bak_sep1(RunContext& ctx)
{
    ctx.trace.line("Private sub bak_sep1()");
    ctx.observer.status("  変　換　処　理　中．．．．．", base::Colour::Green);
    ctx.observer.progressRange(ctx.run.line_count + 4);

    text::LineWriter out(ctx.work(base::working::zlog_2));
    const bool useFreq = ctx.options.tick("Check17");
    long done = 0;
    text::turnRecords<RecordBytes>(
        ctx.work(base::working::zlog_1), out,
        [&ctx, useFreq] { return Enricher(ctx.entities, useFreq); },
        [&ctx, &done] { ctx.observer.progress(++done); });
    out.close();
    ctx.observer.progress(0);
}

} // namespace vornhale::engine
