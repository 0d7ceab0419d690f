#include "readers/AdifReader.h"

#include "base/WorkingFiles.h"
#include "failure/Failure.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"

namespace vornhale::readers {
namespace {

using text::mid;

constexpr int kMaxHeaderLines = 20;
constexpr int kMaxRecordLines = 20;

// A length as BASIC's Val reads the digits; a negative one is an invalid call of the
// substring, as it always was.
std::size_t lengthOf(std::string_view digits)
{
    const double v = text::val(digits);
    if (v < 0) {
        throw failure::Failure(failure::InvalidCall,
                               "プロシージャの呼び出し、または引数が不正です。");
    }
    return static_cast<std::size_t>(v);
}

// The value of the tag of `n` characters at `p`: behind a one-digit length when the tag's
// ">" was found where one digit puts it, behind two digits otherwise.
std::string valueByClose(std::string_view record, std::size_t p, std::size_t n, bool closeFound)
{
    if (closeFound) {
        return mid(record, p + n + 2, lengthOf(mid(record, p + n, 1)));
    }
    return mid(record, p + n + 3, lengthOf(mid(record, p + n, 2)));
}

std::string trimmed(std::string_view s) { return std::string(text::trim(s)); }

// "Kept as" text of a zone or place: the caption and the value, when there is a value.
std::string captioned(const char* caption, const std::string& value)
{
    return value.empty() ? std::string() : caption + value;
}

} // namespace

std::optional<std::string> adifValue(std::string_view record, std::string_view tag)
{
    const std::size_t p = text::instr(record, tag);
    if (p == 0) {
        return std::nullopt;
    }
    const std::size_t n = text::charCount(tag);
    return mid(record, p + n + 2, lengthOf(mid(record, p + n, 1)));
}

void AdifValues::take(std::string_view rec)
{
    freq.clear();
    band.clear();
    cqz.clear();
    ituz.clear();
    adi_state.clear();
    cnty.clear();
    comment.clear();
    qsl_sent.clear();
    qsl_sent_mark.clear();
    qsl_rcvd_mark.clear();
    adi_iota.clear();
    dxcc.clear();

    // The call sign is read even without its tag: position 0 stands in for the tag's place.
    // A first length digit of 1 is read as two digits (calls of 10 to 19 characters).
    {
        const std::size_t p = text::instr(rec, "<CALL:");
        if (mid(rec, p + 6, 1) == "1") {
            call = trimmed(mid(rec, p + 9, lengthOf(mid(rec, p + 6, 2))));
        } else {
            call = trimmed(mid(rec, p + 8, lengthOf(mid(rec, p + 6, 1))));
        }
    }

    // The date's value starts as if the tag were "<QSO_DATE:8:D>", unless it is "<QSO_DATE:8>".
    if (const std::size_t p = text::instr(rec, "<QSO_DATE:"); p != 0) {
        const std::size_t length = lengthOf(mid(rec, p + 10, 1));
        std::string date = mid(rec, p + 14, length);
        if (const std::size_t d = text::instr(rec, "<QSO_DATE:8:D>"); d != 0) {
            date = mid(rec, d + 14, length);
        }
        if (const std::size_t d = text::instr(rec, "<QSO_DATE:8>"); d != 0) {
            date = mid(rec, d + 12, length);
        }
        year = text::left(date, 4);
        month = mid(date, 5, 2);
        day = text::right(date, 2);
    }

    if (const std::size_t p = text::instr(rec, "<TIME_ON:"); p != 0) {
        time = text::left(mid(rec, p + 11, lengthOf(mid(rec, p + 9, 1))), 4);
    }
    if (auto v = adifValue(rec, "<BAND:")) {
        band = std::move(*v);
    }
    if (auto v = adifValue(rec, "<FREQ:")) {
        freq = std::move(*v);
    }
    if (auto v = adifValue(rec, "<RST_SENT:")) {
        rst_sent = std::move(*v);
    }
    if (const std::size_t p = text::instr(rec, "<RST_RCVD:"); p != 0) {
        rst_rcvd = trimmed(valueByClose(rec, p, 10, mid(rec, p + 11, 1) == ">"));
    }
    if (auto v = adifValue(rec, "<STX:")) {
        stx = std::move(*v);
    }
    if (auto v = adifValue(rec, "<SRX:")) {
        rcvd_exchange = std::move(*v);
    }
    if (auto v = adifValue(rec, "<RCVD:")) {
        rcvd_exchange = std::move(*v);
    }
    if (auto v = adifValue(rec, "<APP_WRITELOG_RCVD:")) {
        rcvd_exchange = std::move(*v);
    }
    if (auto v = adifValue(rec, "<MODE:")) {
        mode = std::move(*v);
    }
    if (auto v = adifValue(rec, "<CQZ:")) {
        cqz = captioned("CQZ: ", *v);
    }
    if (auto v = adifValue(rec, "<ITUZ:")) {
        ituz = captioned("ITUZ: ", *v);
    }
    if (auto v = adifValue(rec, "<STATE:")) {
        adi_state = captioned("STATE: ", *v);
    }
    if (const std::size_t p = text::instr(rec, "<CNTY:"); p != 0) {
        const bool oneDigit = text::instr(mid(rec, p), ">") == 8;
        cnty = captioned("CNTY: ", valueByClose(rec, p, 6, oneDigit));
    }
    if (const std::size_t p = text::instr(rec, "<COMMENT:"); p != 0) {
        const bool oneDigit = text::instr(mid(rec, p), ">") == 11;
        comment = trimmed(valueByClose(rec, p, 9, oneDigit));
    }
    if (auto v = adifValue(rec, "<QSL_SENT:")) {
        const bool sent = *v == "Y";
        qsl_sent = sent ? "J" : "N";
        qsl_sent_mark = sent ? "*" : " ";
    }
    if (auto v = adifValue(rec, "<QSL_RCVD:")) {
        qsl_rcvd_mark = *v == "Y" ? "*" : " ";
    }
    if (auto v = adifValue(rec, "<IOTA:")) {
        adi_iota = trimmed(*v);
    }
    if (auto v = adifValue(rec, "<DXCC:")) {
        dxcc = std::move(*v);
    }

    // The reports carry the exchanges until the cut below.
    rst_sent += trimmed(stx);
    rst_rcvd += trimmed(rcvd_exchange);

    if (mode == "RTTY") {
        mode = "RTY";
    } else if (mode == "SSTV") {
        mode = "STV";
    }

    // The band in metres; a text of another form (such as 6M) stays as it is.
    std::string metres = band;
    for (const auto& [written, m] : {std::pair{"160M", "160"}, {"80M", "80"}, {"40M", "40"},
                                  {"30M", "30"}, {"20M", "20"}, {"17M", "17"}, {"15M", "15"},
                                  {"12M", "12"}, {"10M", "10"}}) {
        if (band == written) {
            metres = m;
            break;
        }
    }
    if (freq.empty()) {
        struct FromMetres
        {
            const char* metres;
            const char* freq;
            const char* digit;
        };
        for (const FromMetres& f : {FromMetres{"160", "1.9", "0"}, {"80", "3.5", "1"},
                                    {"40", "7", "2"}, {"30", "10", nullptr},
                                    {"20", "14", "3"}, {"17", "18", nullptr},
                                    {"15", "21", "4"}, {"12", "24", nullptr},
                                    {"10", "28", "5"}, {"6", "50", nullptr}}) {
            if (metres == f.metres) {
                freq = f.freq;
                if (f.digit != nullptr) {
                    band_digit = f.digit;
                }
                break;
            }
        }
    }

    const std::size_t keep = mode == "SSB" ? 2 : 3;
    rst_sent = text::left(rst_sent, keep);
    rst_rcvd = text::left(rst_rcvd, keep);
}

void AdifValues::fill(base::QsoLine& q) const
{
    q.q_year = year;
    q.q_month = month;
    q.q_day = day;
    q.q_time = time;
    q.q_call = call;
    q.q_rst_sent = rst_sent;
    q.q_rst_rcvd = rst_rcvd;
    q.q_band = freq;
    q.q_mode = mode;
    q.q_freq = freq;
}

bool FileOpen_adi(InputState& run, const std::filesystem::path& path)
{
    text::LineReader in(path);
    bool reports = false;
    while (!in.atEnd() && !reports) {
        reports = text::contains(text::upper(in.next()), "<RST_SENT:");
    }
    if (!reports) {
        run.lblIn_name = kNotAdif;
        run.in_name = kNotAdif;
        return false;
    }
    run.setKind(InputKind::Adi);
    return true;
}

long count_in_name_adi(const ReaderContext& ctx)
{
    InputState& run = ctx.run;
    if (run.f_type != "adi") {
        return run.line_count;
    }
    long count = 0;
    text::LineReader in(run.in_name);
    while (!in.atEnd()) {
        const std::string line = in.next();
        count += text::contains(line, "<CALL:") ? 1 : 0;
        count += text::contains(line, "<call:") ? 1 : 0;
    }
    run.line_count = count;
    run.Label39 = std::to_string(count) + " 件";
    ctx.observer.label("Label39", run.Label39);
    return count;
}

void henkan_adi_2_t(const ReaderContext& ctx)
{
    InputState& run = ctx.run;
    ctx.trace.line("Private sub henkan_adi_2_t()");
    text::LineReader in(run.in_name);
    text::LineWriter out(ctx.work(base::working::zlog_1));
    ctx.observer.progressRange(run.line_count + 1);

    for (int i = 0; i < kMaxHeaderLines && !in.atEnd(); ++i) {
        if (text::contains(text::upper(in.next()), "<EOH>")) {
            break;
        }
    }

    AdifValues values;
    base::QsoLine q; // operator, memo and received exchange: never assigned here
    long done = 0;
    std::string record;
    while (!in.atEnd()) {
        record.clear();
        for (int i = 0; i < kMaxRecordLines && !in.atEnd(); ++i) {
            const std::string line = text::upper(in.next());
            record += line;
            if (text::contains(line, "<EOR>")) {
                break;
            }
        }
        try {
            values.take(record);
        } catch (const failure::Failure& f) {
            throw failure::Failure(f.number(), f.description() + " (" +
                                                   std::to_string(done + 1) + " 件目: " + record +
                                                   ")");
        }
        values.fill(q);
        out.write(text::formatRecord(q.fields()));
        ++run.written_count;
        ctx.observer.progress(++done);
    }
    ctx.observer.progress(0);
    out.close();
}

OpenResult AdifReader::open(const ReaderContext& ctx, const std::filesystem::path& path)
{
    if (!FileOpen_adi(ctx.run, path)) {
        return OpenResult::Rejected;
    }
    count_in_name_adi(ctx);
    return OpenResult::Opened;
}

} // namespace vornhale::readers
