#include "history/NoQslMarking.h"

#include "base/RunObserver.h"
#include "base/Trace.h"
#include "failure/Failure.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"
#include "text/SjisCodec.h"
#include "text/Utf8.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <unordered_set>
#include <vector>

namespace vornhale::history {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void inputPastEnd()
{
    throw failure::Failure(failure::InputPastEnd, "ファイルの終わりを越えて入力しようとしました。");
}

// The records of a working file (the same reader as the final output's and the call split's), read
// from its Shift-JIS bytes with the fields found where a text::RecordReader finds them in the
// decoded text. Commas, quotes, blanks and line ends are ASCII bytes that are never the second byte
// of a double-byte character, and the decoder never joins them to a byte before them, so they stand
// at the same places in the bytes as in the text. A record of ASCII bytes is its own text and is
// never decoded.
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

    // A field read by the general rules from `p`, which moves past the field's separator.
    static std::string_view generalField(const char*& p, const char* end);

private:
    // The usual record, quoted fields of ASCII bytes with one comma between them, read from
    // the quotes alone, eight bytes at a time. False, with nothing consumed, for any other.
    bool quotedRecord(std::size_t count, std::vector<std::string_view>& out);

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

// Positions of the fields of a twenty-field result record.
enum Field : std::size_t
{
    call_key = 0,
    call_ext = 1,
    qsl3 = 10,
    rmks1 = 13,
    rmks2 = 14,
    rmks1_c = 15,
    rmks2_c = 16,
    rmks1_nomng = 17,
    rmks2_nomng = 18,
    kResultFields = 20
};

// One result record as views of its fields. A field that a rule rewrites is kept in the
// record's own string for that field; a field may also view another field of the record.
class Record
{
public:
    Record() : m_view(kResultFields) {}
    std::string_view operator[](std::size_t i) const { return m_view[i]; }
    void set(std::size_t i, std::string text)
    {
        m_ownAscii = m_ownAscii && text::isAsciiText(text);
        m_own[i] = std::move(text);
        m_view[i] = m_own[i];
    }
    // Whether every text the rules wrote into this record is ASCII; cleared for the next one.
    bool ownAscii() const { return m_ownAscii; }
    void startRecord() { m_ownAscii = true; }
    void setView(std::size_t i, std::string_view view) { m_view[i] = view; }
    std::vector<std::string_view>& views() { return m_view; }

private:
    std::vector<std::string_view> m_view;
    std::array<std::string, kResultFields> m_own;
    bool m_ownAscii = true;
};

// A manager remark whose "@" stands alone loses every "@".
void dropLoneAt(Record& r, std::size_t i)
{
    const std::string_view remark = r[i];
    if (remark.find('@') == std::string_view::npos) {
        return;
    }
    for (const std::string& part : text::split(remark, " ")) {
        if (text::trim(part) == "@") {
            r.set(i, text::replaceAll(remark, "@", ""));
            return;
        }
    }
}

void cleanManagerRemarks(Record& r)
{
    dropLoneAt(r, rmks1_c);
    dropLoneAt(r, rmks2_c);
}

void leftTrimRemarks(Record& r)
{
    for (std::size_t i : {static_cast<std::size_t>(rmks1), static_cast<std::size_t>(rmks2)}) {
        if (text::startsWith(r[i], " ")) {
            r.setView(i, text::trimLeft(r[i]));
        }
    }
}

std::string fullCallOf(const Record& r)
{
    return Full_call_key(r[call_key], r[call_ext], r[rmks1], r[rmks2]);
}

std::string withFirst(std::string_view first, std::string_view s)
{
    return std::string(first) + text::mid(s, 2);
}

void copyLines(const fs::path& from, const fs::path& to)
{
    text::LineReader in(from);
    text::LineWriter out(to);
    while (!in.atEnd()) {
        out.writeRaw(in.nextRaw());
    }
    out.close();
}

void removeFile(const fs::path& path)
{
    std::error_code ec;
    fs::remove(path, ec);
}

// Reads `from` as result records and writes them to `to` as `change` leaves them.
template <typename Change>
void rewrite(const fs::path& from, const fs::path& to, Change change)
{
    RecordBytes in(from);
    text::LineWriter out(to);
    Record r;
    AsciiLine line;
    while (!in.atEnd()) {
        r.startRecord();
        const bool ascii = in.next(kResultFields, r.views());
        change(r);
        if (ascii && r.ownAscii()) {
            // Every field is ASCII: the line goes to the writer as it is built.
            line.clear();
            for (std::string_view f : r.views()) {
                line.field(f);
            }
            out.writeRaw(line.text());
        } else {
            out.writeRecord(r.views());
        }
    }
    out.close();
}

} // namespace

bool Check_JA_club(std::string_view base_call)
{
    const std::string padded = text::padRight(base_call, 6);
    const std::string first = text::mid(padded, 1, 1);
    const std::string fourth = text::mid(padded, 4, 1);
    return first == "J" && (fourth == "Y" || fourth == "Z") && text::charCount(padded) != 5;
}

std::string Full_call_key(std::string_view call_key, std::string_view call_ext,
                          std::string_view rmks1, std::string_view rmks2)
{
    if (text::trim(call_ext).empty()) {
        return std::string(text::trim(call_key));
    }
    if (!text::contains(rmks1, "$DX") && !text::contains(rmks2, "$DX")) {
        return std::string(call_key) + "/" + std::string(call_ext);
    }
    return std::string(call_ext) + "/" + std::string(call_key);
}

void all_JN_Chikan_full(const ResultFiles& files, std::string_view QSL_Q, std::string_view QSL_S,
                        base::Trace& trace)
{
    trace.line("Private sub all_JN_Chikan_full()_a_1  'No QSL はフルコールで行うに　レ点有りの時");
    const fs::path contest = files.drive_path / "contest_n_1.csv";
    const fs::path hamlog = files.drive_path / "hamlog_n_1.csv";

    std::unordered_set<std::string> noCard;
    rewrite(files.out_name_con0, contest, [&](Record& r) {
        cleanManagerRemarks(r);
        if (text::startsWith(r[qsl3], "N")) {
            noCard.insert(fullCallOf(r));
        }
    });

    auto mark = [&](Record& r) {
        cleanManagerRemarks(r);
        if (noCard.count(fullCallOf(r))) {
            r.set(qsl3, "N" + std::string(QSL_S) + "  ");
            r.setView(rmks1, r[rmks1_nomng]);
            r.setView(rmks2, r[rmks2_nomng]);
        }
        if (text::startsWith(r[qsl3], "J")) {
            r.set(qsl3, withFirst(QSL_Q, r[qsl3]));
        }
        leftTrimRemarks(r);
    };
    rewrite(contest, files.out_name_con0, mark);
    removeFile(contest);

    // The log-order file is held against the calls of the contest file.
    copyLines(files.out_name_ham0, hamlog);
    rewrite(hamlog, files.out_name_ham0, mark);
    removeFile(hamlog);
}

void all_NJ_Chikan_full(const ResultFiles& files, std::string_view QSL_Q, std::string_view QSL_S,
                        base::Trace& trace)
{
    trace.line("Private sub all_NJ_Chikan_full()_b_1  'No QSL はフルコールで行うに　レ点有りの時");
    const fs::path hamlog = files.drive_path / "Hamlog_n_1.csv";
    const fs::path contest = files.drive_path / "contest_n_1.csv";

    std::unordered_set<std::string> withCard;
    rewrite(files.out_name_ham0, hamlog, [&](Record& r) {
        if (!text::startsWith(r[qsl3], "N")) {
            withCard.insert(fullCallOf(r));
        }
    });

    auto managerRule = [](Record& r) {
        if (text::contains(r[rmks1_c], "@") || text::contains(r[rmks2_c], "@")) {
            r.set(qsl3, withFirst("M", r[qsl3]));
            r.setView(rmks1, r[rmks1_c]);
            r.setView(rmks2, r[rmks2_c]);
        }
    };
    rewrite(hamlog, files.out_name_ham0, [&](Record& r) {
        cleanManagerRemarks(r);
        if (withCard.count(fullCallOf(r))) {
            r.set(qsl3, std::string(QSL_Q) + std::string(QSL_S) + " ");
            managerRule(r);
        }
        leftTrimRemarks(r);
    });
    removeFile(hamlog);

    // The contest file is searched by the main call alone: a portable call there finds
    // nothing, as the set holds full calls.
    copyLines(files.out_name_con0, contest);
    rewrite(contest, files.out_name_con0, [&](Record& r) {
        cleanManagerRemarks(r);
        if (withCard.count(std::string(r[call_key]))) {
            r.set(qsl3, withFirst(QSL_Q, r[qsl3]));
            managerRule(r);
        }
        leftTrimRemarks(r);
    });
    removeFile(contest);
}

void No_QSL_moji_ReWrite(const fs::path& out_name_ham0, const fs::path& out_name_ham,
                         const fs::path& out_name_con0, const fs::path& out_name_con,
                         std::string_view No_QSL_moji, bool reportOn, base::Trace& trace,
                         base::RunObserver& observer)
{
    trace.line("Private Sub No_QSL_moji_ReWrite");
    const std::pair<fs::path, fs::path> passes[] = {{out_name_ham0, out_name_ham},
                                                    {out_name_con0, out_name_con}};
    const char* const opening[] = {"    Open out_name_ham0 For Input As #f_i :",
                                   "    Open out_name_con0 For Input As #f_i :"};
    std::vector<fs::path> copies;
    for (std::size_t p = 0; p < 2; ++p) {
        const auto& [source, final] = passes[p];
        if (reportOn) {
            trace.line(source.string() + opening[p]);
        }
        const fs::path copy = source.string() + "_1";
        observer.progressRange(text::Count_lines(source));
        text::LineReader in(source);
        text::LineWriter out(copy);
        long n = 0;
        // A line's fields as views into the line (or into its decoded text), and the one field
        // that may change.
        std::vector<std::string_view> r;
        std::string decoded, mark;
        AsciiLine line;
        while (!in.atEnd()) {
            std::string_view lineText = in.nextRaw();
            // The separators are ASCII bytes, found in the bytes where they stand in the text.
            const bool ascii = text::isAsciiText(lineText);
            if (!ascii) {
                decoded = text::decodeSjis(lineText);
                lineText = decoded;
            }
            r.clear();
            for (const char *p = lineText.data(), *end = p + lineText.size(); p < end;) {
                r.push_back(RecordBytes::generalField(p, end));
            }
            bool asciiMark = true;
            if (r.size() > qsl3 && text::startsWith(r[qsl3], "N")) {
                mark = std::string(No_QSL_moji) + text::mid(r[qsl3], 2, 1) + " ";
                r[qsl3] = mark;
                asciiMark = text::isAsciiText(mark);
            }
            if (ascii && asciiMark) {
                line.clear();
                for (std::string_view f : r) {
                    line.field(f);
                }
                out.writeRaw(r.empty() ? std::string_view() : line.text());
            } else {
                out.writeRecord(r);
            }
            observer.progress(++n);
        }
        out.close();
        std::error_code ec;
        fs::copy_file(copy, final, fs::copy_options::overwrite_existing, ec);
        if (ec) {
            throw failure::Failure(failure::PathFileAccess, "パス名が無効です。 " + final.string());
        }
        copies.push_back(copy);
    }
    for (const fs::path& copy : copies) {
        removeFile(copy);
    }
    observer.progress(0);
}

} // namespace vornhale::history
