#include "engine/CallSplit.h"

#include "base/WorkingFiles.h"
#include "engine/Records.h"
#include "failure/Failure.h"
#include "reference/EntityLookup.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"
#include "text/SjisCodec.h"
#include "text/Utf8.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <filesystem>

namespace vornhale::engine {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void inputPastEnd()
{
    throw failure::Failure(failure::InputPastEnd, "ファイルの終わりを越えて入力しようとしました。");
}

// The records of a working file (the same reader as the final output's), read from its Shift-JIS
// bytes with the fields found where a text::RecordReader finds them in the decoded text. Commas,
// quotes, blanks and line ends are ASCII bytes that are never the second byte of a double-byte
// character, and the decoder never joins them to a byte before them, so they stand at the same
// places in the bytes as in the text. A record of ASCII bytes is its own text and is never decoded.
class RecordBytes
{
public:
    explicit RecordBytes(const fs::path& path) : m_bytes(text::readFileBytes(path)) {}

    bool atEnd() const { return m_pos >= m_bytes.size(); }

    // The next `count` fields into `out`, as text::RecordReader::fieldViews gives them. True
    // when the record's bytes are all ASCII: the views are then the file's own bytes. Otherwise
    // each field with other bytes is decoded into the reader and stays valid until the next
    // call. Throws Failure 62 when the file ends before the record does.
    bool next(std::size_t count, std::vector<std::string_view>& out);

    // Whether the last record stood as a record line writes it: every field opened by a quote
    // right after the comma of the one before. The bytes from a field's opening quote to a
    // later field's closing quote are then those fields as a record line holds them.
    bool canonical() const { return m_canonical; }

private:
    // The usual record, quoted fields of ASCII bytes with one comma between them, read from
    // the quotes alone, eight bytes at a time. False, with nothing consumed, for any other.
    bool quotedRecord(std::size_t count, std::vector<std::string_view>& out);
    // A field that does not start with its quote, or whose quote is not followed by a comma:
    // read by the general rules from `p`, which moves past the field's separator.
    static std::string_view generalField(const char*& p, const char* end);

    std::string m_bytes;
    std::size_t m_pos = 0;
    std::vector<std::string> m_decoded;
    bool m_canonical = false;
};

// The position after the separator at `q`: past a comma, an LF, a CR or a CR LF pair.
const char* pastSeparator(const char* q, const char* end)
{
    if (q < end) {
        if (*q == ',' || *q == '\n') {
            ++q;
        } else if (*q == '\r') {
            q += (q + 1 < end && q[1] == '\n') ? 2 : 1;
        }
    }
    return q;
}

std::string_view RecordBytes::generalField(const char*& p, const char* end)
{
    auto toSeparator = [end](const char* q) {
        while (q < end && *q != ',' && *q != '\r' && *q != '\n') {
            ++q;
        }
        return q;
    };
    while (p < end && *p == ' ') {
        ++p;
    }
    if (p < end && *p == '"') {
        const char* const open = p + 1;
        const char* close = open;
        while (close < end && *close != '"') {
            ++close;
        }
        // What follows the closing quote up to the separator is dropped.
        p = pastSeparator(toSeparator(close < end ? close + 1 : end), end);
        return {open, static_cast<std::size_t>(close - open)};
    }
    const char* const stop = toSeparator(p);
    const std::string_view field(p, static_cast<std::size_t>(stop - p));
    p = pastSeparator(stop, end);
    return text::trim(field);
}

// A bit at the top of each byte of `word` that is a double quote.
std::uint64_t quoteBytes(std::uint64_t word)
{
    constexpr std::uint64_t kQuotes = 0x2222222222222222ULL;
    constexpr std::uint64_t kLow7 = 0x7F7F7F7F7F7F7F7FULL;
    const std::uint64_t x = word ^ kQuotes;
    // A byte of x is zero exactly where the top bit of ((x & 0x7F) + 0x7F) | x stays clear;
    // no carry crosses from one byte to the next.
    return ~(((x & kLow7) + kLow7) | x) & ~kLow7;
}

bool RecordBytes::quotedRecord(std::size_t count, std::vector<std::string_view>& out)
{
    constexpr std::uint64_t kHigh = 0x8080808080808080ULL;
    constexpr std::size_t kMostFields = 32;
    if (count > kMostFields) {
        return false;
    }
    const char* const end = m_bytes.data() + m_bytes.size();
    const char* const start = m_bytes.data() + m_pos;
    // A record that does not open with a quote is never searched for quotes, so that a file of
    // unquoted fields is not read to its end once for each record.
    if (*start != '"') {
        return false;
    }
    // The offsets from `start` of the record's quotes, two a field, gathered first; a word
    // can add up to eight beyond those wanted.
    std::uint32_t quoteAt[2 * kMostFields + 8];
    const std::size_t wanted = 2 * count;
    std::size_t found = 0;
    std::uint64_t high = 0;
    std::uint64_t word = 0;
    const char* w = start;
    for (; end - w >= 8; w += 8) {
        std::memcpy(&word, w, 8);
        std::uint64_t quotes = quoteBytes(word);
        const auto base = static_cast<std::uint32_t>(w - start);
        for (; quotes != 0; quotes &= quotes - 1) {
            quoteAt[found++] = base + static_cast<std::uint32_t>(std::countr_zero(quotes) / 8);
        }
        if (found >= wanted) {
            break;
        }
        high |= word;
    }
    if (found < wanted) {
        // The last bytes of the file; the missing ones are no quotes.
        const auto n = static_cast<std::size_t>(end - w);
        if (n == 0) {
            return false;
        }
        word = 0;
        std::memcpy(&word, w, n);
        std::uint64_t quotes = quoteBytes(word) & ((std::uint64_t{1} << (8 * n)) - 1);
        const auto base = static_cast<std::uint32_t>(w - start);
        for (; quotes != 0; quotes &= quotes - 1) {
            quoteAt[found++] = base + static_cast<std::uint32_t>(std::countr_zero(quotes) / 8);
        }
        if (found < wanted) {
            return false;
        }
    }
    {
        // The bytes of the last word up to the last closing quote belong to the record.
        const std::size_t used = quoteAt[wanted - 1] - static_cast<std::size_t>(w - start) + 1;
        high |= used < 8 ? word & ((std::uint64_t{1} << (8 * used)) - 1) : word;
    }
    if ((high & kHigh) != 0 || quoteAt[0] != 0) {
        return false;
    }
    // Each closing quote but the last is followed by a comma and the next opening quote. The
    // views are set on the way; a record that fails is read again by the general rules.
    std::string_view* const view = out.data();
    view[0] = std::string_view(start + 1, quoteAt[1] - 1);
    for (std::size_t i = 1; i < count; ++i) {
        const std::uint32_t close = quoteAt[2 * i - 1];
        const std::uint32_t open = quoteAt[2 * i];
        if (open != close + 2 || start[close + 1] != ',') {
            return false;
        }
        view[i] = std::string_view(start + open + 1, quoteAt[2 * i + 1] - open - 1);
    }
    const char* p = start + quoteAt[wanted - 1] + 1;
    if (p < end && *p == ',') {
        ++p;
    } else {
        while (p < end && *p != ',' && *p != '\r' && *p != '\n') {
            ++p;
        }
        p = pastSeparator(p, end);
    }
    m_pos = static_cast<std::size_t>(p - m_bytes.data());
    return true;
}

bool RecordBytes::next(std::size_t count, std::vector<std::string_view>& out)
{
    out.resize(count);
    // The usual record: quoted fields of ASCII bytes, one comma between them.
    if (count > 0 && m_pos < m_bytes.size() && quotedRecord(count, out)) {
        m_canonical = true;
        return true;
    }
    const char* const end = m_bytes.data() + m_bytes.size();
    const char* const start = m_bytes.data() + m_pos;
    const char* p = start;
    bool canonical = true;
    for (std::size_t i = 0; i < count; ++i) {
        if (p >= end) {
            inputPastEnd();
        }
        if (*p == '"') {
            const char* const open = p + 1;
            const char* close = open;
            while (close < end && *close != '"') {
                ++close;
            }
            // The usual field: its quotes, then the comma before the next one.
            if (close + 1 < end && close[1] == ',') {
                out[i] = std::string_view(open, static_cast<std::size_t>(close - open));
                p = close + 2;
                continue;
            }
        }
        // Only the last field may end otherwise, and only after its closing quote.
        const char* const fieldStart = p;
        out[i] = generalField(p, end);
        canonical = canonical && i + 1 == count && *fieldStart == '"' &&
                    out[i].data() + out[i].size() < end;
    }
    m_pos = static_cast<std::size_t>(p - m_bytes.data());
    m_canonical = canonical;
    if (text::isAsciiText(std::string_view(start, static_cast<std::size_t>(p - start)))) {
        return true;
    }
    m_canonical = false;
    m_decoded.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (!text::isAsciiText(out[i])) {
            m_decoded[i] = text::decodeSjis(out[i]);
            out[i] = m_decoded[i];
        }
    }
    return false;
}

// A record line of ASCII fields, built for the writer's raw path: there is nothing to encode.
class AsciiLine
{
public:
    void clear() { m_size = 0; }
    void field(std::string_view f)
    {
        char* p = room(f.size() + 3);
        *p++ = ',';
        *p++ = '"';
        std::memcpy(p, f.data(), f.size());
        p[f.size()] = '"';
        m_size += f.size() + 3;
    }
    // The fields from `first` to `last` of a canonical record of ASCII bytes, copied with their
    // quotes and commas.
    void fields(std::string_view first, std::string_view last)
    {
        const char* const from = first.data() - 1;
        const std::size_t size = static_cast<std::size_t>(last.data() + last.size() + 1 - from);
        char* p = room(size + 1);
        *p = ',';
        std::memcpy(p + 1, from, size);
        m_size += size + 1;
    }
    void emptyField()
    {
        char* p = room(3);
        p[0] = ',';
        p[1] = '"';
        p[2] = '"';
        m_size += 3;
    }
    // The line; the comma before its first field is not part of it.
    std::string_view text() const { return std::string_view(m_text).substr(1, m_size - 1); }

private:
    // Room for `size` more bytes at the end of the line.
    char* room(std::size_t size)
    {
        if (m_size + size > m_text.size()) [[unlikely]] {
            grow(size);
        }
        return m_text.data() + m_size;
    }
    [[gnu::noinline]] void grow(std::size_t size)
    {
        m_text.resize(std::max<std::size_t>(2 * m_text.size(), m_size + size + 256));
    }

    std::string m_text;
    std::size_t m_size = 0;
};

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

void bak_sep1(RunContext& ctx)
{
    ctx.trace.line("Private sub bak_sep1()");
    ctx.observer.status("  変　換　処　理　中．．．．．", base::Colour::Green);
    ctx.observer.progressRange(ctx.run.line_count + 4);

    RecordBytes in(ctx.work(base::working::zlog_1));
    text::LineWriter out(ctx.work(base::working::zlog_2));
    const bool useFreq = ctx.options.tick("Check17");

    // The fields of the common QSO line.
    constexpr std::size_t q_year = 0, q_month = 1, q_day = 2, q_time = 3, q_call = 4,
                          q_rst_sent = 5, q_rst_rcvd = 6, q_band = 7, q_mode = 8, q_op = 9,
                          q_memo = 10, q_freq = 11, q_rcvd = 12;
    std::vector<std::string_view> q;
    std::string q_date6;
    AsciiLine line;
    // A first read happens before the end is tested: an empty zlog_1.txt is a failure.
    long done = 0;
    do {
        const bool ascii = in.next(QsoLine::kFields, q);
        q_date6.assign(lastChars(q[q_year], 2));
        appendTwoDigits(q_date6, q[q_month]);
        appendTwoDigits(q_date6, q[q_day]);
        const CallViews parts = splitCallViews(q[q_call]);
        const std::string q_entity = ctx.entities.entityOf(parts.lookupCall);
        const reference::DxccEntry dx = ctx.entities.dxcc_lookup(q_entity);
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
        ctx.observer.progress(++done);
    } while (!in.atEnd());
    out.close();
    ctx.observer.progress(0);
}

} // namespace vornhale::engine
