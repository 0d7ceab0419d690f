#include "engine/SortSplit.h"

#include "base/WorkingFiles.h"
#include "failure/Failure.h"
#include "text/ByteKeySort.h"
#include "text/Chars.h"
#include "text/FileBytes.h"
#include "text/LineFile.h"
#include "text/Record.h"
#include "text/RecordBytes.h"
#include "text/SideBySide.h"
#include "text/SjisCodec.h"
#include "text/SjisText.h"
#include "text/Utf8.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <initializer_list>

namespace vornhale::engine {
namespace {

namespace fs = std::filesystem;

std::string time6Of(const std::string& q_time5)
{
    return text::left(q_time5, 2) + ":" + text::right(q_time5, 3);
}

// A keyed record: the final key in front, the manager field left out.
std::array<std::string_view, SortRecord::kFields> keyedFields(const SortRecord& r,
                                                             const std::string& key)
{
    const auto all = r.fields();
    std::array<std::string_view, SortRecord::kFields> f;
    f[0] = key;
    std::copy(all.begin(), all.begin() + 17, f.begin() + 1);
    std::copy(all.begin() + 18, all.end(), f.begin() + 18);
    return f;
}

// The first double quote from `p` on, or `end`. Empty fields are common, so the first byte is
// looked at alone; longer fields are looked through eight bytes at a time.
[[gnu::always_inline]] inline const char* findQuote(const char* p, const char* end)
{
    if (p < end && *p == '"') {
        return p;
    }
    if constexpr (std::endian::native == std::endian::little) {
        constexpr std::uint64_t ones = 0x0101010101010101u;
        constexpr std::uint64_t highs = 0x8080808080808080u;
        constexpr std::uint64_t quotes = 0x2222222222222222u;
        while (end - p >= 8) {
            std::uint64_t word;
            std::memcpy(&word, p, 8);
            const std::uint64_t x = word ^ quotes;
            // The lowest high bit set marks the first byte that was a quote; bits above it may
            // be false marks, which are not looked at.
            const std::uint64_t found = (x - ones) & ~x & highs;
            if (found != 0) {
                return p + (std::countr_zero(found) >> 3);
            }
            p += 8;
        }
    }
    while (p < end && *p != '"') {
        ++p;
    }
    return p;
}

// The fields of one record as views into the bytes of its file.
using RawFields = std::array<std::string_view, SortRecord::kFields>;

// The records of a working file read from its Shift-JIS bytes, undecoded, by the rule of
// text::RecordReader. A comma, a double quote, a blank, CR and LF are never the second byte of
// a double-byte character, so the fields found among the bytes are those of the decoded text,
// each the Shift-JIS form of its decoded field. A record whose fields are all ASCII is worked
// on as it stands; any other is decoded field by field and goes the general way, because
// decoding and encoding again need not give back the bytes that were read.
class RawRecords
{
public:
    explicit RawRecords(const fs::path& path)
        : m_bytes(std::make_shared<const text::FileBytes>(path)),
          m_ascii(text::isAsciiText(m_bytes->view()))
    {
    }
    /// Another reader of the same bytes from their start, sharing them with this one.
    RawRecords again() const { return RawRecords(m_bytes, m_ascii); }

    bool atEnd() const { return m_pos >= m_bytes->size(); }
    /// The offset of the next record's first byte in the file.
    std::size_t position() const { return m_pos; }
    /// The file's bytes.
    std::string_view bytes() const { return m_bytes->view(); }
    /// Reads on from `offset`, which is taken to be the start of a record.
    void skipTo(std::size_t offset)
    {
        m_pos = offset;
        m_released.skipTo(offset);
    }

    /// The next record into `f`. Throws Failure 62 when the file ends first.
    void next(RawFields& f)
    {
        m_released.at(*m_bytes, m_pos);
        const char* const begin = m_bytes->data();
        const char* const end = begin + m_bytes->size();
        const char* p = begin + m_pos;
        bool plain = true;
        const std::size_t last = f.size() - 1;
        for (std::size_t i = 0; i <= last; ++i) {
            if (p >= end) {
                throw failure::Failure(failure::InputPastEnd,
                                       "ファイルの終わりを越えて入力しようとしました。");
            }
            if (*p != '"') {
                plain = false;
                f[i] = text::RecordBytes::generalField(p, end);
                continue;
            }
            // The usual field: in double quotes, a comma right after them.
            const char* const close = findQuote(p + 1, end);
            f[i] = std::string_view(p + 1, static_cast<std::size_t>(close - p - 1));
            if (close + 1 < end && close[1] == ',') {
                p = close + 2;
                continue;
            }
            // Only the last field of a plain record may end otherwise.
            if (i != last || close == end) {
                plain = false;
            }
            p = text::RecordBytes::pastSeparator(
                text::RecordBytes::toSeparator(close < end ? close + 1 : end, end), end);
        }
        m_plain = plain;
        m_pos = static_cast<std::size_t>(p - begin);
    }

    /// Whether the fields of the last record are all ASCII.
    bool ascii(const RawFields& f) const
    {
        if (m_ascii) {
            return true;
        }
        if (m_plain) {
            return text::isAsciiText(quoted(f, 0, f.size() - 1));
        }
        return std::all_of(f.begin(), f.end(),
                           [](std::string_view v) { return text::isAsciiText(v); });
    }

    /// Whether the last record was read in the form the program writes: every field in double
    /// quotes from its first byte, one comma between two fields. Its fields `first` to `last`
    /// then stand in the file exactly as they are written out (see `quoted`).
    bool plain() const { return m_plain; }

    /// Fields `first` to `last` of a plain record as written: quoted, separated by commas.
    static std::string_view quoted(const RawFields& f, std::size_t first, std::size_t last)
    {
        const char* const from = f[first].data() - 1;
        const char* const to = f[last].data() + f[last].size() + 1;
        return {from, static_cast<std::size_t>(to - from)};
    }

    /// The fields of `f` decoded, for the general way.
    static std::vector<std::string> decoded(const RawFields& f)
    {
        std::vector<std::string> out;
        out.reserve(f.size());
        for (std::string_view v : f) {
            out.push_back(text::decodeSjis(v));
        }
        return out;
    }

private:
    RawRecords(std::shared_ptr<const text::FileBytes> bytes, bool ascii)
        : m_bytes(std::move(bytes)), m_ascii(ascii)
    {
    }

    std::shared_ptr<const text::FileBytes> m_bytes;
    bool m_ascii;
    text::ReleasedBehind m_released;
    std::size_t m_pos = 0;
    bool m_plain = true;
};

// Appends one field in double quotes, with the comma before it unless it is the first.
void appendQuoted(std::string& line, std::string_view field)
{
    if (line.empty()) {
        line.push_back('"');
    } else {
        line.append(",\"", 2);
    }
    line.append(field);
    line.push_back('"');
}

// Keys one record of `reader` into `out`.
void keyRecord(RawRecords& reader, RawFields& f, std::string& line, bool frequencies, int kind,
               text::LineWriter& out)
{
    reader.next(f);
    if (!reader.ascii(f)) {
        const SortRecord r = SortRecord::from(RawRecords::decoded(f));
        out.writeRecord(keyedFields(r, sortKey(r, kind, frequencies)));
        return;
    }
    line.assign(1, '"');
    appendAsciiSortKey(line, f[0], f[4], f[5], f[10], f[11], f[17], kind, frequencies);
    line.push_back('"');
    if (reader.plain()) {
        // The record as it was read, the key in front and the manager field left out.
        line.push_back(',');
        line.append(RawRecords::quoted(f, 0, 16));
        line.push_back(',');
        line.append(RawRecords::quoted(f, 18, 22));
    } else {
        for (std::size_t i = 0; i < SortRecord::kFields; ++i) {
            if (i != 17) {
                appendQuoted(line, f[i]);
            }
        }
    }
    out.writeRaw(line);
}

// Keys the records of `in` (read at least once: the sentinel is always there) into `out`.
void keyFile(RunContext& ctx, const fs::path& in, text::LineWriter& out)
{
    const bool frequencies = ctx.options.tick("Check17");
    const int kind = ctx.run.sort_kind;
    text::turnRecords<RawRecords>(in, out, [frequencies, kind] {
        return [frequencies, kind, f = RawFields(), line = std::string()](
                   RawRecords& reader, text::LineWriter& out) mutable {
            keyRecord(reader, f, line, frequencies, kind, out);
        };
    });
}

// The result record of a keyed record `k`; `date8`, `time6` and `qsl3` receive the three
// values formed for it, which the result's views then show. `singles` says whether a "J"
// route of the card mark takes the operator's bureau mark.
template <typename Fields>
std::array<std::string_view, ResultRecord::kFields>
resultFields(const Fields& k, bool singles, const std::string& QSL_Q, std::string& date8,
             std::string& time6, std::string& qsl3)
{
    // A keyed record holds the sort record's fields one place later, up to the manager field
    // that it leaves out; `at` finds a sort record field among them.
    auto at = [&k](std::size_t sortField) -> std::string_view {
        return k[sortField < 17 ? sortField + 1 : sortField];
    };
    std::string_view route = at(7);
    if (route == QSL_Q || route == "J") {
        route = QSL_Q.empty() ? std::string_view(" ") : std::string_view(QSL_Q);
    }
    qsl3.assign(route);
    qsl3.append("  ");
    if (singles && text::startsWith(qsl3, "J")) {
        qsl3 = QSL_Q + qsl3.substr(1);
    }
    // "YY/MM/DD" cut by bytes from the six-digit date; "HH:MMU" by characters from the
    // five-character time.
    const std::string_view date6 = at(10);
    date8.assign(date6.substr(0, 2));
    date8.push_back('/');
    date8.append(date6.substr(std::min<std::size_t>(2, date6.size()), 2));
    date8.push_back('/');
    date8.append(date6.substr(std::min<std::size_t>(4, date6.size()), 2));
    const std::string_view time5 = at(11);
    if (text::isAsciiText(time5)) {
        time6.assign(time5.substr(0, 2));
        time6.push_back(':');
        time6.append(time5.size() > 3 ? time5.substr(time5.size() - 3) : time5);
    } else {
        time6 = time6Of(std::string(time5));
    }
    // The fields in the order of a result record.
    return {at(0), at(1), date8,  time6,  at(12), at(13), at(4),  at(5),  at(2),  at(8),
            qsl3,  at(6), at(14), at(15), at(16), at(18), at(19), at(20), at(21), at(22)};
}

// A line built in place: room is made once for the whole line, then bytes are copied in.
class LineBuilder
{
public:
    /// Starts a new line of at most `size` bytes.
    void start(std::size_t size)
    {
        if (m_buffer.size() < size) {
            m_buffer.resize(2 * size);
        }
        m_end = m_buffer.data();
    }
    void put(std::string_view bytes)
    {
        // An empty view may have no bytes at all to point at.
        if (!bytes.empty()) {
            std::memcpy(m_end, bytes.data(), bytes.size());
            m_end += bytes.size();
        }
    }
    void put(char byte) { *m_end++ = byte; }
    std::string_view view() const
    {
        return {m_buffer.data(), static_cast<std::size_t>(m_end - m_buffer.data())};
    }

private:
    std::string m_buffer;
    char* m_end = nullptr;
};

// "YY/MM/DD" from an ASCII six-digit date, as date8Of forms it.
void putDate8(LineBuilder& line, std::string_view date6)
{
    line.put(date6.substr(0, 2));
    line.put('/');
    line.put(date6.substr(std::min<std::size_t>(2, date6.size()), 2));
    line.put('/');
    line.put(date6.substr(std::min<std::size_t>(4, date6.size()), 2));
}

// "HH:MMU" from an ASCII five-character time, as time6Of forms it.
void putTime6(LineBuilder& line, std::string_view time5)
{
    line.put(time5.substr(0, 2));
    line.put(':');
    line.put(time5.size() > 3 ? time5.substr(time5.size() - 3) : time5);
}

// Fields each in double quotes, separated by commas.
template <typename Fields> void putQuoted(LineBuilder& line, const Fields& fields)
{
    std::size_t size = 0;
    for (std::string_view f : fields) {
        size += f.size() + 3;
    }
    line.start(size);
    for (std::size_t i = 0; i < fields.size(); ++i) {
        line.put(i == 0 ? std::string_view("\"") : std::string_view(",\""));
        line.put(fields[i]);
        line.put('"');
    }
}

// The result line of a plain ASCII keyed record `k` (see resultFields), the card mark being
// ASCII too: runs of neighbouring fields are copied as they stand in the keyed record.
void writePlainResult(LineBuilder& line, const RawFields& k, bool singles, const std::string& QSL_Q)
{
    line.start(RawRecords::quoted(k, 0, k.size() - 1).size() + 2 * QSL_Q.size() + 64);
    line.put(RawRecords::quoted(k, 1, 2));
    line.put(",\"");
    putDate8(line, k[11]);
    line.put("\",\"");
    putTime6(line, k[12]);
    line.put("\",");
    line.put(RawRecords::quoted(k, 13, 14));
    line.put(',');
    line.put(RawRecords::quoted(k, 5, 6));
    line.put(',');
    line.put(RawRecords::quoted(k, 3, 3));
    line.put(',');
    line.put(RawRecords::quoted(k, 9, 9));
    // The card mark: the route, the bureau mark for "J" or the mark itself, two blanks.
    std::string_view route = k[8];
    if (route == QSL_Q || route == "J") {
        route = QSL_Q.empty() ? std::string_view(" ") : std::string_view(QSL_Q);
    }
    line.put(",\"");
    if (singles && !route.empty() && route[0] == 'J') {
        line.put(QSL_Q);
        line.put(route.substr(1));
    } else {
        line.put(route);
    }
    line.put("  \",");
    line.put(RawRecords::quoted(k, 7, 7));
    line.put(',');
    line.put(RawRecords::quoted(k, 15, 22));
}

// Turns one keyed record of `reader` into a result record; the sentinel is dropped.
// `singles` says whether a "J" route of the card mark takes the operator's bureau mark.
struct ResultWriter
{
    ResultWriter(const std::string& QSL_Q, bool asciiMark, bool singles)
        : QSL_Q(QSL_Q), asciiMark(asciiMark), singles(singles)
    {
    }

    const std::string& QSL_Q;
    const bool asciiMark;
    const bool singles;
    RawFields k{};
    std::string date8, time6, qsl3;
    LineBuilder line;

    void operator()(RawRecords& reader, text::LineWriter& out)
    {
        reader.next(k);
        // ASCII bytes decode to themselves and no other bytes decode to ASCII, so the call is
        // compared undecoded.
        if (k[1] == "AAAAAA") {
            return;
        }
        if (!reader.ascii(k)) {
            const std::vector<std::string> decoded = RawRecords::decoded(k);
            out.writeRecord(resultFields(decoded, singles, QSL_Q, date8, time6, qsl3));
            return;
        }
        if (asciiMark && reader.plain()) {
            writePlainResult(line, k, singles, QSL_Q);
            out.writeRaw(line.view());
            return;
        }
        const auto fields = resultFields(k, singles, QSL_Q, date8, time6, qsl3);
        if (!text::isAsciiText(qsl3)) {
            out.writeRecord(fields);
            return;
        }
        putQuoted(line, fields);
        out.writeRaw(line.view());
    }
};

// Turns a sorted keyed file into result records (read at least once).
void writeResults(RunContext& ctx, const fs::path& in, bool singles, text::LineWriter& out)
{
    const std::string& QSL_Q = ctx.run.QSL_Q;
    const bool asciiMark = text::isAsciiText(QSL_Q);
    text::turnRecords<RawRecords>(in, out, [&QSL_Q, asciiMark, singles] {
        return ResultWriter(QSL_Q, asciiMark, singles);
    });
}

// The split of sorted raw lines into runs of equal keys. `single` and `multiple` receive the
// lines of stations worked once and more than once.
template <typename Single, typename Multiple>
void splitRuns(RunContext& ctx, Single single, Multiple multiple)
{
    Counters& c = ctx.run.counters;
    auto in = text::LineReader::ofWorkingFile(ctx.work(base::working::sort_out));
    // The reader holds the whole file, so the previous line is kept as a view into it.
    std::string_view previous, previousKey;
    bool havePrevious = false, inRun = false;
    while (!in.atEnd()) {
        const std::string_view line = in.nextRaw();
        ++c.qso_kazu;
        const std::string_view key = line.substr(0, line.find(','));
        if (havePrevious && key == previousKey) {
            multiple(previous);
            ++c.fuku_kazu;
            inRun = true;
        } else if (inRun) {
            multiple(previous);
            ++c.fuku_kazu;
            inRun = false;
        } else if (havePrevious) {
            single(previous);
            ++c.tan_kazu;
        }
        previous = line;
        previousKey = key;
        havePrevious = true;
    }
    if (havePrevious) {
        if (inRun) {
            multiple(previous);
            ++c.fuku_kazu;
        } else {
            single(previous);
            ++c.tan_kazu;
        }
    }
}

} // namespace

void sort_(RunContext& ctx, int start, int length, bool descending, const fs::path& in,
           const fs::path& out)
{
    ctx.trace.line("Public Sub sort_()");
    try {
        text::sortLinesByKey(in, out, start, length, descending);
    } catch (const failure::Failure&) {
        // The sort's result is not examined: it only leaves no output.
        std::error_code ec;
        fs::remove(out, ec);
    }
}

std::string sortKey(const SortRecord& r, int sort_kind, bool frequencies)
{
    const std::string k_call = text::padRight(r.call_key, 14);
    std::string band = r.band_or_freq;
    if (!frequencies && text::contains(band, ".")) {
        band = text::left(band, 1);
    }
    const std::string k_band = text::right("00000000" + band, 9);
    const std::string k_mode = text::left(r.mode + " ", 3);
    const std::string& k_date = r.q_date6;
    const std::string& k_time = r.q_time5;
    const std::string seven = "       ";
    auto joined = [](std::initializer_list<std::string_view> parts) {
        std::size_t size = 0;
        for (std::string_view p : parts) {
            size += p.size();
        }
        std::string key;
        key.reserve(size);
        for (std::string_view p : parts) {
            key.append(p);
        }
        return key;
    };
    // The manager part is worked out only for the two orders that use it.
    auto managerPart = [&] {
        return !r.mng_pad.empty()
                   ? text::Mid_sjis(std::string(text::trim(text::mid(r.mng_pad, 2))) + seven, 1, 7)
                   : text::Mid_sjis(r.call_key + seven, 1, 7);
    };
    switch (sort_kind) {
    case 1:
        return joined({k_call, k_band, k_mode, k_date, k_time});
    case 2:
        return joined({k_call, k_date, k_time, k_band, k_mode});
    case 3:
        return joined({managerPart(), r.call_key, k_band, k_mode, k_date, k_time});
    case 4:
        return joined({managerPart(), r.call_key, k_date, k_time, k_band, k_mode});
    default:
        return {};
    }
}

void appendAsciiSortKey(std::string& key, std::string_view call_key, std::string_view band_or_freq,
                        std::string_view mode, std::string_view q_date6, std::string_view q_time5,
                        std::string_view mng_pad, int sort_kind, bool frequencies)
{
    // `text` left-aligned in `width` columns: cut, or padded with blanks.
    auto column = [&key](std::string_view text, std::size_t width) {
        const std::size_t n = std::min(text.size(), width);
        key.append(text.data(), n);
        key.append(width - n, ' ');
    };
    auto call = [&] { column(call_key, 14); };
    // The last nine characters of eight zeros and the band; eight zeros alone for no band.
    auto band = [&] {
        std::string_view b = band_or_freq;
        if (!frequencies && b.find('.') != std::string_view::npos) {
            b = b.substr(0, 1);
        }
        if (b.size() >= 9) {
            key.append(b.substr(b.size() - 9));
        } else {
            key.append(b.empty() ? 8 : 9 - b.size(), '0');
            key.append(b);
        }
    };
    // The first three characters of the mode and a blank.
    auto modePart = [&] {
        key.append(mode.substr(0, 3));
        if (mode.size() < 3) {
            key.push_back(' ');
        }
    };
    auto dateTime = [&] {
        key.append(q_date6);
        key.append(q_time5);
    };
    auto managerPart = [&] {
        column(!mng_pad.empty() ? text::trim(mng_pad.substr(1)) : call_key, 7);
        key.append(call_key);
    };
    switch (sort_kind) {
    case 1:
        call();
        band();
        modePart();
        dateTime();
        break;
    case 2:
        call();
        dateTime();
        band();
        modePart();
        break;
    case 3:
        managerPart();
        band();
        modePart();
        dateTime();
        break;
    case 4:
        managerPart();
        dateTime();
        band();
        modePart();
        break;
    default:
        break;
    }
}

void count_tan_fuku(RunContext& ctx)
{
    ctx.trace.line("Private sub count_tan_fuku()");
    ctx.observer.status("　単／複　カウント中", base::Colour::Green);
    splitRuns(ctx, [](std::string_view) {}, [](std::string_view) {});
}

void Henkan_out_name_con(RunContext& ctx)
{
    ctx.trace.line("Private sub Henkan_out_name_con()");
    const RunState& run = ctx.run;
    const bool asciiMarks = text::isAsciiText(run.QSL_Q) && text::isAsciiText(run.QSL_S);
    RawRecords in(ctx.work(base::working::sort_in));
    text::LineWriter out(run.names.out_name_con0);
    RawFields f;
    std::string qsl3, rmks1, rmks2;
    LineBuilder line;
    while (!in.atEnd()) {
        in.next(f);
        if (!asciiMarks || !in.ascii(f)) {
            SortRecord r = SortRecord::from(RawRecords::decoded(f));
            if (r.route != "N") {
                const bool manager = text::contains(r.rmks1, "@") || text::contains(r.rmks2, "@");
                qsl3 = (manager ? std::string("M") : run.QSL_Q) + run.QSL_S + " ";
            } else {
                qsl3 = "N" + run.QSL_S + " ";
                r.rmks1 = text::replaceAll(r.rmks1, r.mng_pad, "");
                r.rmks2 = text::replaceAll(r.rmks2, r.mng_pad, "");
            }
            out.writeRecord(
                resultOf(r, date8Of(r.q_date6), time6Of(r.q_time5), std::move(qsl3)).fields());
            continue;
        }
        // An ASCII record, its fields taken as they stand.
        const bool noCard = f[7] == "N";
        std::string_view remarks1 = f[15], remarks2 = f[16];
        if (!noCard) {
            const bool manager = remarks1.find('@') != std::string_view::npos ||
                                 remarks2.find('@') != std::string_view::npos;
            qsl3.assign(manager ? std::string_view("M") : std::string_view(run.QSL_Q));
        } else {
            qsl3.assign("N");
            rmks1 = text::replaceAll(remarks1, f[17], "");
            rmks2 = text::replaceAll(remarks2, f[17], "");
            remarks1 = rmks1;
            remarks2 = rmks2;
        }
        qsl3.append(run.QSL_S);
        qsl3.push_back(' ');
        if (in.plain() && !noCard) {
            // Runs of neighbouring fields are copied as they stand in the sort record.
            line.start(RawRecords::quoted(f, 0, f.size() - 1).size() + qsl3.size() + 64);
            line.put(RawRecords::quoted(f, 0, 1));
            line.put(",\"");
            putDate8(line, f[10]);
            line.put("\",\"");
            putTime6(line, f[11]);
            line.put("\",");
            line.put(RawRecords::quoted(f, 12, 13));
            line.put(',');
            line.put(RawRecords::quoted(f, 4, 5));
            line.put(',');
            line.put(RawRecords::quoted(f, 2, 2));
            line.put(',');
            line.put(RawRecords::quoted(f, 8, 8));
            line.put(",\"");
            line.put(qsl3);
            line.put("\",");
            line.put(RawRecords::quoted(f, 6, 6));
            line.put(',');
            line.put(RawRecords::quoted(f, 14, 16));
            line.put(',');
            line.put(RawRecords::quoted(f, 18, 22));
        } else {
            const std::string date8 = date8Of(std::string(f[10]));
            const std::string time6 = time6Of(std::string(f[11]));
            putQuoted(line, std::array<std::string_view, ResultRecord::kFields>{
                                f[0],     f[1],  date8, time6, f[12], f[13], f[4],
                                f[5],     f[2],  f[8],  qsl3,  f[6],  f[14], remarks1,
                                remarks2, f[18], f[19], f[20], f[21], f[22]});
        }
        out.writeRaw(line.view());
    }
    out.close();
}

void temp_sep(RunContext& ctx)
{
    ctx.trace.line("Private sub temp_sep()");
    ctx.observer.status("　単／複　ＱＳＯに分割中", base::Colour::Green);
    {
        text::LineWriter singles(ctx.work(base::working::semp_s));
        text::LineWriter multiples(ctx.work(base::working::semp_d));
        splitRuns(
            ctx, [&](std::string_view line) { singles.writeRaw(line); },
            [&](std::string_view line) { multiples.writeRaw(line); });
        singles.write(kSentinel);
        multiples.write(kSentinel);
        singles.close();
        multiples.close();
    }
    if (ctx.run.sort_wake == 1) {
        sort_wakeru_c(ctx);
    } else {
        sort_wakenai_c(ctx);
    }
}

void sort_wakeru_c(RunContext& ctx)
{
    ctx.trace.line("Private sub sort_wakeru_c()");
    ctx.observer.status("　最　終　処　理　中", base::Colour::Green);
    for (const auto& [semp, temp, uemp] : {std::tuple{base::working::semp_s, base::working::temp_s, base::working::uemp_s},
                                          std::tuple{base::working::semp_d, base::working::temp_d, base::working::uemp_d}}) {
        {
            text::LineWriter out(ctx.work(temp));
            keyFile(ctx, ctx.work(semp), out);
            out.close();
        }
        sort_(ctx, 2, 37, false, ctx.work(temp), ctx.work(uemp));
    }
    temp_marge(ctx);
}

void sort_wakenai_c(RunContext& ctx)
{
    ctx.trace.line("Private sub sort_wakenai_c()");
    ctx.observer.status("　最　終　処　理　中", base::Colour::Green);
    {
        text::LineWriter out(ctx.work(base::working::temp_s));
        keyFile(ctx, ctx.work(base::working::semp_s), out);
        keyFile(ctx, ctx.work(base::working::semp_d), out);
        out.close();
    }
    sort_(ctx, 2, 37, false, ctx.work(base::working::temp_s), ctx.work(base::working::uemp_s));
    text::LineWriter out(ctx.run.names.out_name_con0);
    writeResults(ctx, ctx.work(base::working::uemp_s), true, out);
    out.close();
}

void temp_marge(RunContext& ctx)
{
    ctx.trace.line("Private sub temp_marge()");
    const std::string name = fs::path(ctx.run.names.out_name_con0).filename().string();
    ctx.observer.status(name + "  に変換中", base::Colour::Green);
    text::LineWriter out(ctx.run.names.out_name_con0);
    writeResults(ctx, ctx.work(base::working::uemp_s), true, out);
    writeResults(ctx, ctx.work(base::working::uemp_d), false, out);
    out.close();
}

} // namespace vornhale::engine
