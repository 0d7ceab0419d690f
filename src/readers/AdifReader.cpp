#include "readers/AdifReader.h"

#include "base/WorkingFiles.h"
#include "failure/Failure.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"
#include "text/SjisCodec.h"
#include "text/Utf8.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace vornhale::readers {
namespace {

constexpr int kMaxHeaderLines = 20;
constexpr int kMaxRecordLines = 20;

// A record as characters, with positions counted from 1 as the reader counts them. A record
// of ASCII alone (the common case) is searched and cut as bytes; any other as code points, so
// that each find and cut stays proportional to what it looks at.
class RecordText
{
public:
    explicit RecordText(std::string utf8) : m_bytes(std::move(utf8))
    {
        m_ascii = std::all_of(m_bytes.begin(), m_bytes.end(),
                              [](char c) { return static_cast<unsigned char>(c) < 0x80; });
        if (!m_ascii) {
            for (std::size_t pos = 0; pos < m_bytes.size();) {
                m_chars.push_back(text::nextCodePoint(m_bytes, pos));
            }
            return;
        }
        // Every "<NAME:" opening with its first place, so that the many tags the reader looks
        // for are found in one walk over the record.
        for (std::size_t lt = m_bytes.find('<'); lt != std::string::npos;
             lt = m_bytes.find('<', lt + 1)) {
            const std::size_t colon = m_bytes.find(':', lt + 1);
            if (colon == std::string::npos) {
                break;
            }
            if (colon - lt > kLongestName) {
                continue;
            }
            // In the order of the text, so that a look-up meets the first of a name first.
            m_openings.emplace_back(std::string_view(m_bytes.data() + lt + 1, colon - lt - 1),
                                    lt + 1);
        }
    }

    // The openings point into the text, which therefore stays where it is.
    RecordText(const RecordText&) = delete;
    RecordText& operator=(const RecordText&) = delete;

    // The position of the first `needle` (ASCII) at or after `from`; 0 when absent.
    std::size_t find(std::string_view needle, std::size_t from = 1) const
    {
        if (m_ascii) {
            // "<NAME:" from the start: the first opening of that name.
            if (from == 1 && needle.size() > 2 && needle.front() == '<' && needle.back() == ':' &&
                needle.find(':') == needle.size() - 1) {
                const std::string_view name = needle.substr(1, needle.size() - 2);
                for (const auto& [opening, at] : m_openings) {
                    if (opening == name) {
                        return at;
                    }
                }
                return 0;
            }
            const std::size_t at = m_bytes.find(needle, from - 1);
            return at == std::string::npos ? 0 : at + 1;
        }
        const std::u32string wide(needle.begin(), needle.end());
        const std::size_t at = std::u32string_view(m_chars).find(wide, from - 1);
        return at == std::u32string_view::npos ? 0 : at + 1;
    }

    // `length` characters from `start` (from 1), as UTF-8; fewer at the end of the text.
    std::string mid(std::size_t start, std::size_t length) const
    {
        if (start < 1) {
            start = 1;
        }
        if (m_ascii) {
            return start - 1 < m_bytes.size() ? m_bytes.substr(start - 1, length) : std::string();
        }
        std::string out;
        for (std::size_t i = start - 1; i < m_chars.size() && i - (start - 1) < length; ++i) {
            text::appendCodePoint(out, m_chars[i]);
        }
        return out;
    }

    const std::string& utf8() const { return m_bytes; }

private:
    // Longer than any tag name the reader looks for.
    static constexpr std::size_t kLongestName = 40;

    std::string m_bytes;
    bool m_ascii = false;
    std::u32string m_chars;
    std::vector<std::pair<std::string_view, std::size_t>> m_openings;
};

// `line` in upper case as the program's upper case goes (ASCII and full-width Latin letters).
std::string upperLine(std::string line)
{
    bool ascii = true;
    for (char& c : line) {
        if (c >= 'a' && c <= 'z') {
            c = static_cast<char>(c - 0x20);
        } else if (static_cast<unsigned char>(c) >= 0x80) {
            ascii = false;
        }
    }
    return ascii ? line : text::upper(line);
}

bool isAscii(std::string_view bytes)
{
    return std::all_of(bytes.begin(), bytes.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// Appends the next line of `in`, decoded and in upper case, to `record`; true when the line
// holds "<EOR>". An ASCII line decodes to itself, so it is taken as it stands.
bool appendUpperLine(text::LineReader& in, std::string& record)
{
    const std::string_view raw = in.nextRaw();
    const std::size_t from = record.size();
    if (isAscii(raw)) {
        record.append(raw);
        for (std::size_t i = from; i < record.size(); ++i) {
            if (record[i] >= 'a' && record[i] <= 'z') {
                record[i] = static_cast<char>(record[i] - 0x20);
            }
        }
    } else {
        record += upperLine(text::decodeSjis(raw));
    }
    return std::string_view(record).substr(from).find("<EOR>") != std::string_view::npos;
}

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

// The value of the tag of `n` characters at `p`: the length is the one character behind the
// tag, the value starts two places behind it.
std::string valueAt(const RecordText& rec, std::size_t p, std::size_t n)
{
    return rec.mid(p + n + 2, lengthOf(rec.mid(p + n, 1)));
}

// The value of the tag of `n` characters at `p`: behind a one-digit length when the tag's
// ">" was found where one digit puts it, behind two digits otherwise.
std::string valueByClose(const RecordText& rec, std::size_t p, std::size_t n, bool closeFound)
{
    if (closeFound) {
        return valueAt(rec, p, n);
    }
    return rec.mid(p + n + 3, lengthOf(rec.mid(p + n, 2)));
}

std::optional<std::string> valueOf(const RecordText& rec, std::string_view tag)
{
    const std::size_t p = rec.find(tag);
    if (p == 0) {
        return std::nullopt;
    }
    return valueAt(rec, p, tag.size());
}

std::string trimmed(std::string_view s)
{
    return std::string(text::trim(s));
}

// "Kept as" text of a zone or place: the caption and the value, when there is a value.
std::string captioned(const char* caption, const std::string& value)
{
    return value.empty() ? std::string() : caption + value;
}

void takeRecord(AdifValues& v, const RecordText& rec)
{
    v.freq.clear();
    v.band.clear();
    v.cqz.clear();
    v.ituz.clear();
    v.adi_state.clear();
    v.cnty.clear();
    v.comment.clear();
    v.qsl_sent.clear();
    v.qsl_sent_mark.clear();
    v.qsl_rcvd_mark.clear();
    v.adi_iota.clear();
    v.dxcc.clear();

    // The call sign is read even without its tag: position 0 stands in for the tag's place.
    // A first length digit of 1 is read as two digits (calls of 10 to 19 characters).
    {
        const std::size_t p = rec.find("<CALL:");
        if (rec.mid(p + 6, 1) == "1") {
            v.call = trimmed(rec.mid(p + 9, lengthOf(rec.mid(p + 6, 2))));
        } else {
            v.call = trimmed(rec.mid(p + 8, lengthOf(rec.mid(p + 6, 1))));
        }
    }

    // The date's value starts as if the tag were "<QSO_DATE:8:D>", unless it is "<QSO_DATE:8>".
    if (const std::size_t p = rec.find("<QSO_DATE:"); p != 0) {
        const std::size_t length = lengthOf(rec.mid(p + 10, 1));
        std::string date = rec.mid(p + 14, length);
        if (const std::size_t d = rec.find("<QSO_DATE:8:D>"); d != 0) {
            date = rec.mid(d + 14, length);
        }
        if (const std::size_t d = rec.find("<QSO_DATE:8>"); d != 0) {
            date = rec.mid(d + 12, length);
        }
        v.year = text::left(date, 4);
        v.month = text::mid(date, 5, 2);
        v.day = text::right(date, 2);
    }

    if (const std::size_t p = rec.find("<TIME_ON:"); p != 0) {
        v.time = text::left(rec.mid(p + 11, lengthOf(rec.mid(p + 9, 1))), 4);
    }
    if (auto x = valueOf(rec, "<BAND:")) {
        v.band = std::move(*x);
    }
    if (auto x = valueOf(rec, "<FREQ:")) {
        v.freq = std::move(*x);
    }
    if (auto x = valueOf(rec, "<RST_SENT:")) {
        v.rst_sent = std::move(*x);
    }
    if (const std::size_t p = rec.find("<RST_RCVD:"); p != 0) {
        v.rst_rcvd = trimmed(valueByClose(rec, p, 10, rec.mid(p + 11, 1) == ">"));
    }
    if (auto x = valueOf(rec, "<STX:")) {
        v.stx = std::move(*x);
    }
    if (auto x = valueOf(rec, "<SRX:")) {
        v.rcvd_exchange = std::move(*x);
    }
    if (auto x = valueOf(rec, "<RCVD:")) {
        v.rcvd_exchange = std::move(*x);
    }
    if (auto x = valueOf(rec, "<APP_WRITELOG_RCVD:")) {
        v.rcvd_exchange = std::move(*x);
    }
    if (auto x = valueOf(rec, "<MODE:")) {
        v.mode = std::move(*x);
    }
    if (auto x = valueOf(rec, "<CQZ:")) {
        v.cqz = captioned("CQZ: ", *x);
    }
    if (auto x = valueOf(rec, "<ITUZ:")) {
        v.ituz = captioned("ITUZ: ", *x);
    }
    if (auto x = valueOf(rec, "<STATE:")) {
        v.adi_state = captioned("STATE: ", *x);
    }
    // The ">" of these two is looked for in the text from the tag on.
    if (const std::size_t p = rec.find("<CNTY:"); p != 0) {
        const bool oneDigit = rec.find(">", p) == p + 7;
        v.cnty = captioned("CNTY: ", valueByClose(rec, p, 6, oneDigit));
    }
    if (const std::size_t p = rec.find("<COMMENT:"); p != 0) {
        const bool oneDigit = rec.find(">", p) == p + 10;
        v.comment = trimmed(valueByClose(rec, p, 9, oneDigit));
    }
    if (auto x = valueOf(rec, "<QSL_SENT:")) {
        const bool sent = *x == "Y";
        v.qsl_sent = sent ? "J" : "N";
        v.qsl_sent_mark = sent ? "*" : " ";
    }
    if (auto x = valueOf(rec, "<QSL_RCVD:")) {
        v.qsl_rcvd_mark = *x == "Y" ? "*" : " ";
    }
    if (auto x = valueOf(rec, "<IOTA:")) {
        v.adi_iota = trimmed(*x);
    }
    if (auto x = valueOf(rec, "<DXCC:")) {
        v.dxcc = std::move(*x);
    }

    // The reports carry the exchanges until the cut below.
    v.rst_sent += trimmed(v.stx);
    v.rst_rcvd += trimmed(v.rcvd_exchange);

    if (v.mode == "RTTY") {
        v.mode = "RTY";
    } else if (v.mode == "SSTV") {
        v.mode = "STV";
    }

    // The band in metres; a text of another form (such as 6M) stays as it is.
    std::string metres = v.band;
    for (const auto& [written, m] : {std::pair{"160M", "160"},
                                     {"80M", "80"},
                                     {"40M", "40"},
                                     {"30M", "30"},
                                     {"20M", "20"},
                                     {"17M", "17"},
                                     {"15M", "15"},
                                     {"12M", "12"},
                                     {"10M", "10"}}) {
        if (v.band == written) {
            metres = m;
            break;
        }
    }
    if (v.freq.empty()) {
        struct FromMetres
        {
            const char* metres;
            const char* freq;
            const char* digit;
        };
        for (const FromMetres& f : {FromMetres{"160", "1.9", "0"},
                                    {"80", "3.5", "1"},
                                    {"40", "7", "2"},
                                    {"30", "10", nullptr},
                                    {"20", "14", "3"},
                                    {"17", "18", nullptr},
                                    {"15", "21", "4"},
                                    {"12", "24", nullptr},
                                    {"10", "28", "5"},
                                    {"6", "50", nullptr}}) {
            if (metres == f.metres) {
                v.freq = f.freq;
                if (f.digit != nullptr) {
                    v.band_digit = f.digit;
                }
                break;
            }
        }
    }

    const std::size_t keep = v.mode == "SSB" ? 2 : 3;
    v.rst_sent = text::left(v.rst_sent, keep);
    v.rst_rcvd = text::left(v.rst_rcvd, keep);
}

} // namespace

std::optional<std::string> adifValue(std::string_view record, std::string_view tag)
{
    return valueOf(RecordText(std::string(record)), tag);
}

void AdifValues::take(std::string_view record)
{
    takeRecord(*this, RecordText(std::string(record)));
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
    std::string decoded;
    while (!in.atEnd()) {
        const std::string_view raw = in.nextRaw();
        std::string_view line = raw;
        if (!isAscii(raw)) {
            decoded = text::decodeSjis(raw);
            line = decoded;
        }
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
        // The lines of a record are joined in upper case.
        record.clear();
        for (int i = 0; i < kMaxRecordLines && !in.atEnd(); ++i) {
            if (appendUpperLine(in, record)) {
                break;
            }
        }
        const RecordText joined(record);
        try {
            takeRecord(values, joined);
        } catch (const failure::Failure& f) {
            throw failure::Failure(f.number(), f.description() + " (" + std::to_string(done + 1) +
                                                   " 件目: " + joined.utf8() + ")");
        }
        values.fill(q);
        out.writeRecord(q.fields());
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
