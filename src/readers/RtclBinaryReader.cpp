#include "readers/RtclBinaryReader.h"

#include "base/WorkingFiles.h"
#include "failure/Failure.h"
#include "readers/RtclZlogMakers.h"
#include "readers/ZlogTextReader.h"
#include "text/Chars.h"
#include "text/FileBytes.h"
#include "text/LineFile.h"
#include "text/Record.h"
#include "text/RecordBytes.h"
#include "text/SideBySide.h"
#include "text/SjisCodec.h"
#include "text/Utf8.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

namespace vornhale::readers {
namespace {

namespace fs = std::filesystem;

// The rows of the rig, from 1.8 MHz up. A raw value is the frequency times a fixed factor
// above the row's start.
constexpr std::array<RtclRigRow, 21> kRig{{
    {997670912, 1800000, 256, 1},         {1023270912, 1900000, 256, 1},
    {1253306368, 3500000, 128, 1},        {1521741824, 7000000, 64, 1},
    {1662177280, 10000000, 32, 1},        {1790177280, 14000000, 32, 1},
    {1898612736, 18000000, 16, 1},        {1946612736, 21000000, 16, 1},
    {1994612736, 24000000, 16, 1},        {2058612736, 28000000, 16, 1},
    {2074612736, 29000000, 16, 1},        {2279048192, 50000000, 8, 1},
    {2287048192, 51000000, 8, 1},         {2295048192, 52000000, 8, 1},
    {2303048192, 53000000, 8, 1},         {2311048192, 54000000, 8, 1},
    {2703919104, 144000000, 2, 1},        {3114354560, 430000000, 1, 1},
    {3521225472, 1200000000, 25, 100},    {3789660928, 2400000000, 125, 1000},
    {4108096384, 5600000000, 625, 10000},
}};

struct BandBase
{
    std::string_view band;
    std::int64_t hz;
};

constexpr BandBase kBandBases[] = {
    {"1.8", 1800000},       {"1.9", 1900000},   {"3.5", 3500000},     {"7", 7000000},
    {"10", 10000000},       {"14", 14000000},   {"18", 18000000},     {"21", 21000000},
    {"24", 24000000},       {"28", 28000000},   {"29", 29000000},     {"50", 50000000},
    {"144", 144000000},     {"430", 430000000}, {"1200", 1200000000}, {"2400", 2400000000LL},
    {"5600", 5600000000LL},
};

std::int64_t bandBase(std::string_view band)
{
    const std::string_view b = text::trim(band);
    for (const BandBase& row : kBandBases) {
        if (b == row.band) {
            return row.hz;
        }
    }
    return 0;
}

// Field places of a record; the two generations part from offset 134.
struct Layout
{
    std::size_t multi1, multi1Size, multi2, multi2Size, multi3, op, memo;
};
constexpr Layout kV4{134, 6, 140, 6, 146, 158, 168};
constexpr Layout kV430{134, 10, 144, 8, 152, 164, 174};
constexpr std::size_t kMulti3Size = 6, kOpSize = 6, kMemoSize = 20;

// Whether every byte of the texts of a record stands in a record line as it is: ASCII and no
// double quote. Eight bytes at a time; the record's numbers between its texts are left out.
bool plainTexts(std::string_view r, const Layout& l)
{
    const std::pair<std::size_t, std::size_t> texts[] = {{0, 9},
                                                         {17, 27},
                                                         {37, 132},
                                                         {l.multi1, l.multi3 + kMulti3Size},
                                                         {l.op, l.op + kOpSize},
                                                         {l.memo, l.memo + kMemoSize}};
    constexpr std::uint64_t kHigh = 0x8080808080808080ULL;
    constexpr std::uint64_t kOnes = 0x0101010101010101ULL;
    constexpr std::uint64_t kQuotes = kOnes * '"';
    std::uint64_t other = 0;
    for (const auto& [from, to] : texts) {
        std::size_t at = from;
        for (; at + 8 <= to; at += 8) {
            std::uint64_t w = 0;
            std::memcpy(&w, r.data() + at, 8);
            const std::uint64_t q = w ^ kQuotes;
            other |= (w & kHigh) | ((q - kOnes) & ~q & kHigh);
        }
        for (; at < to; ++at) {
            const auto c = static_cast<unsigned char>(r[at]);
            other |= c >= 0x80 || c == '"' ? 1 : 0;
        }
    }
    return other == 0;
}

// A text field of a record into `out`: the record's bytes when all its texts are ASCII, else
// the field's decoded form kept in `room`.
void field(std::string_view& out, std::string& room, std::string_view r, std::size_t offset,
           std::size_t size, bool ascii)
{
    const std::string_view bytes = r.substr(offset, size);
    if (ascii) {
        out = bytes;
    } else {
        text::decodeSjisInto(room, bytes);
        out = room;
    }
}

// The VB date range: 0100-01-01 to 9999-12-31.
constexpr double kFirstDay = -657434.0;
constexpr double kPastLastDay = 2958466.0;

// The records of a binary log one by one, as `text::turnRecords` reads them: positions are
// byte offsets, and a part may start at any record. A record cut short by the end of the file
// reads zero bytes for the rest.
class RtclRecords
{
public:
    RtclRecords(std::string_view bytes, std::size_t size, long count)
        : m_bytes(bytes), m_size(size), m_count(count)
    {
    }
    /// Another reader of the same records from the first.
    RtclRecords again() const { return RtclRecords(m_bytes, m_size, m_count); }

    bool atEnd() const { return m_next > m_count; }
    std::string_view next()
    {
        const std::size_t start = static_cast<std::size_t>(m_next++ - 1) * m_size;
        if (start + m_size <= m_bytes.size()) {
            return m_bytes.substr(start, m_size);
        }
        m_spare.assign(m_size, '\0');
        if (start < m_bytes.size()) {
            std::memcpy(m_spare.data(), m_bytes.data() + start, m_bytes.size() - start);
        }
        return m_spare;
    }

    std::string_view bytes() const { return m_bytes; }
    std::size_t position() const { return static_cast<std::size_t>(m_next - 1) * m_size; }
    void skipTo(std::size_t at) { m_next = static_cast<long>(at / m_size) + 1; }
    std::size_t boundaryFrom(std::size_t at) const { return (at + m_size - 1) / m_size * m_size; }

private:
    std::string_view m_bytes;
    std::size_t m_size;
    long m_count;
    long m_next = 1;
    std::string m_spare;
};

} // namespace

std::size_t rtclRecordSize(InputKind kind)
{
    return kind == InputKind::LogV430 ? kRtclV430RecordSize : kRtclV4RecordSize;
}

long rtclRecordCount(std::uintmax_t bytes, std::size_t recordSize)
{
    const std::uintmax_t whole = bytes / recordSize;
    const std::uintmax_t rest = bytes % recordSize;
    std::uintmax_t n = whole;
    // Rounded as the language rounds: a half goes to the even neighbour.
    if (2 * rest > recordSize || (2 * rest == recordSize && whole % 2 == 1)) {
        ++n;
    }
    return static_cast<long>(n);
}

std::span<const RtclRigRow> rtclRigTable()
{
    return kRig;
}

std::string rtclHz(std::int32_t raw, std::string_view band)
{
    std::int64_t base = bandBase(band);
    std::int64_t step = 0;
    if (raw != 0) {
        const std::int64_t r = raw;
        for (std::size_t i = 0; i < kRig.size(); ++i) {
            const std::int64_t from = kRig[i].start - 1;
            const std::int64_t to = i + 1 < kRig.size() ? kRig[i + 1].start - 1
                                                        : std::numeric_limits<std::int64_t>::max();
            // The start − 1 of a row belongs to that row, not to the one below it.
            if (r >= from && r < to) {
                base = kRig[i].baseHz;
                const std::int64_t d = r - kRig[i].start;
                if (d > 0) {
                    const double s = static_cast<double>(d) / kRig[i].divisor * kRig[i].multiplier;
                    step = static_cast<std::int64_t>(std::nearbyint(s));
                }
                break;
            }
        }
    }
    return std::to_string(base + step);
}

std::string rtclRoundedKhz(std::string_view hz)
{
    const std::size_t n = text::charCount(hz);
    // Whole hertz of three digits or more: the kHz with its three decimals, rounded half up,
    // is exact in whole numbers.
    if (n >= 3 && n <= 18 && text::countDigits(hz) == n) {
        unsigned long long value = 0;
        std::from_chars(hz.data(), hz.data() + hz.size(), value);
        return std::to_string((value + 500) / 1000);
    }
    const std::string khz = text::left(hz, n >= 3 ? n - 3 : 0) + "." + text::right(hz, 3);
    const double rounded = std::floor(text::val(khz) + 0.5);
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.0f", rounded);
    return buf;
}

long rtclPoints(std::uint8_t byte)
{
    // The decimal digits taken as hexadecimal ones.
    long value = 0;
    for (const char c : std::to_string(byte)) {
        value = value * 16 + (c - '0');
    }
    return value;
}

void decodeRtclRecord(std::string_view r, InputKind kind, RtclBinaryRecord& q)
{
    const Layout& l = kind == InputKind::LogV430 ? kV430 : kV4;
    q.plain = plainTexts(r, l);
    std::size_t place = 0;
    const auto text = [&](std::string_view& out, std::size_t offset, std::size_t size) {
        field(out, q.decoded[place++], r, offset, size, q.plain);
    };
    text(q.number, 0, 5);
    text(q.band, 5, 4);
    std::uint32_t rig = 0;
    std::memcpy(&rig, r.data() + 12, sizeof rig);
    q.rig = static_cast<std::int32_t>(rig);
    text(q.mode, 17, 5);
    text(q.kept, 22, 5);
    q.dupe = static_cast<std::uint8_t>(r[27]);
    std::memcpy(&q.when, r.data() + 29, sizeof q.when);
    text(q.call, 37, 13);
    text(q.sent_rst, 50, 6);
    text(q.sent1, 56, 25);
    text(q.sent2, 81, 10);
    text(q.rcvd_rst, 91, 6);
    text(q.rcvd1, 97, 25);
    text(q.rcvd2, 122, 10);
    q.points = static_cast<std::uint8_t>(r[132]);
    text(q.multi1, l.multi1, l.multi1Size);
    text(q.multi2, l.multi2, l.multi2Size);
    text(q.multi3, l.multi3, kMulti3Size);
    text(q.op, l.op, kOpSize);
    text(q.memo, l.memo, kMemoSize);
}

void rtclDateTime(double when, std::string& date, std::string& time)
{
    if (!(when >= kFirstDay && when < kPastLastDay)) {
        throw failure::Failure(failure::Overflow, "オーバーフローしました。");
    }
    // Whole days count from 1899-12-30 either way; the fraction is the time of that day.
    double whole = std::trunc(when);
    long long seconds = std::llround(std::fabs(when - whole) * 86400.0);
    if (seconds >= 86400) {
        seconds -= 86400;
        whole += 1;
    }
    using namespace std::chrono;
    const sys_days epoch = sys_days(year(1899) / December / 30);
    const year_month_day ymd(epoch + days(static_cast<long long>(whole)));
    date.clear();
    text::appendZeroPadded(date, static_cast<unsigned long long>(static_cast<int>(ymd.year())), 4);
    date += '/';
    text::appendZeroPadded(date, static_cast<unsigned>(ymd.month()), 2);
    date += '/';
    text::appendZeroPadded(date, static_cast<unsigned>(ymd.day()), 2);
    time.clear();
    text::appendZeroPadded(time, static_cast<unsigned long long>(seconds / 3600), 2);
    text::appendZeroPadded(time, static_cast<unsigned long long>((seconds / 60) % 60), 2);
    text::appendZeroPadded(time, static_cast<unsigned long long>(seconds % 60), 2);
}

std::array<std::string_view, 23> RtclWorkingFields::of(const RtclBinaryRecord& q)
{
    rtclDateTime(q.when, date, time);
    hz = rtclHz(q.rig, q.band);
    khz = rtclRoundedKhz(hz);
    points = std::to_string(rtclPoints(q.points));
    const std::string_view note = q.dupe != 0 ? "-DUPE- " : "";
    return {q.number, q.band,   date,       time,     q.band,  hz,         khz,     q.mode,
            q.kept,   q.call,   q.sent_rst, q.sent1,  q.sent2, q.rcvd_rst, q.rcvd1, q.rcvd2,
            points,   q.multi1, q.multi2,   q.multi3, note,    q.op,       q.memo};
}

namespace {

// The records of a binary log decoded one by one into the fields of the working text.
class RecordDecoder
{
public:
    explicit RecordDecoder(InputKind kind) : m_kind(kind) {}

    // The fields of the next record, good until the next call; null for QTC traffic, which is
    // no contact.
    const std::array<std::string_view, rtcl_tmp::kFields>* next(RtclRecords& records)
    {
        const std::string_view record = records.next();
        if (text::startsWith(record, "QTC")) {
            return nullptr;
        }
        decodeRtclRecord(record, m_kind, m_record);
        m_fields = m_working.of(m_record);
        return &m_fields;
    }
    // Whether every field of the last record stands in a record line as it is.
    bool plain() const { return m_record.plain; }

private:
    InputKind m_kind;
    RtclBinaryRecord m_record;
    RtclWorkingFields m_working;
    std::array<std::string_view, rtcl_tmp::kFields> m_fields;
};

// Decodes a record into a line of the working text and makes its `.ALL` line from the fields
// as a reader of that text gets them back: a field of other than ASCII comes back decoded from
// the bytes it was written as. A field with a quote in it does not come back as it went, since
// the quote ends it; the worker notes it, and its `.ALL` lines are then no good.
struct DecoderWithAll
{
    explicit DecoderWithAll(InputKind kind) : decoder(kind) {}

    RecordDecoder decoder;
    RtclAllLines all;
    text::AsciiRecordLine line;
    std::array<std::string, rtcl_tmp::kFields> readBack;
    std::array<std::string_view, rtcl_tmp::kFields> fields;
    bool quoted = false;

    void operator()(RtclRecords& records, text::LineWriterPair& lines)
    {
        const auto* const decoded = decoder.next(records);
        if (decoded == nullptr) {
            return;
        }
        if (decoder.plain()) {
            line.clear();
            for (const std::string_view f : *decoded) {
                line.field(f);
            }
            lines.first().writeRaw(line.text());
            lines.second().writeRaw(all.of(*decoded));
            return;
        }
        lines.first().writeRecord(*decoded);
        for (std::size_t i = 0; i < fields.size(); ++i) {
            const std::string_view f = (*decoded)[i];
            quoted = quoted || f.find('"') != std::string_view::npos;
            if (text::isAsciiText(f)) {
                fields[i] = f;
            } else {
                readBack[i] = text::decodeSjis(text::encodeSjis(f));
                fields[i] = readBack[i];
            }
        }
        lines.second().write(all.of(fields));
    }

    const std::string& carried() const { return all.mode(); }
};

} // namespace

long decodeRtclLog(std::string_view bytes, InputKind kind, const std::filesystem::path& out)
{
    const std::size_t size = rtclRecordSize(kind);
    const long count = rtclRecordCount(bytes.size(), size);
    text::LineWriter writer(out);
    long written = 0;
    RtclRecords in(bytes, size, count);
    if (!in.atEnd()) {
        const auto makeWorker = [kind] {
            return [decoder = RecordDecoder(kind)](RtclRecords& records,
                                                   text::LineWriter& lines) mutable {
                const auto* const fields = decoder.next(records);
                if (fields != nullptr) {
                    lines.writeRecord(*fields);
                }
                return fields != nullptr;
            };
        };
        text::turnRecords(in, writer, makeWorker,
                          [&written](bool line) { written += line ? 1 : 0; });
    }
    writer.close();
    return written;
}

bool decodeRtclLogWithAll(std::string_view bytes, InputKind kind, const fs::path& out,
                          const fs::path& all)
{
    const std::size_t size = rtclRecordSize(kind);
    RtclRecords in(bytes, size, rtclRecordCount(bytes.size(), size));
    text::LineWriter working(out);
    text::LineWriter allLines(all, text::LineWriter::Mode::ReplaceWhenDone);
    allLines.write(rtclAllHeader());
    text::LineWriterPair lines(working, allLines);
    bool quoted = false;
    if (!in.atEnd()) {
        const auto worker = text::turnRecords(
            in, lines, [kind] { return DecoderWithAll(kind); }, [] {},
            [](DecoderWithAll& first, const DecoderWithAll& second) {
                first.quoted = first.quoted || second.quoted;
            });
        quoted = worker->quoted;
    }
    working.close();
    // Lines made from fields that did not come back as they went are left unwritten.
    if (!quoted) {
        allLines.close();
    }
    return !quoted;
}

std::string_view rtclVersionProblem(std::string_view bytes, InputKind kind)
{
    if (bytes.empty() || bytes[0] != '0') {
        return kNotRtclV4;
    }
    if (kind == InputKind::LogV4 && bytes.size() % kRtclV4RecordSize != 0) {
        return kNotBefore430;
    }
    if (kind == InputKind::LogV430 && bytes.size() % kRtclV430RecordSize != 0) {
        return kNotFrom430;
    }
    return {};
}

RtclBinaryReader::RtclBinaryReader(InputKind kind) : m_kind(kind) {}

std::unique_ptr<LogReader> RtclBinaryReader::makeV4()
{
    return std::make_unique<RtclBinaryReader>(InputKind::LogV4);
}

std::unique_ptr<LogReader> RtclBinaryReader::makeV430()
{
    return std::make_unique<RtclBinaryReader>(InputKind::LogV430);
}

OpenResult RtclBinaryReader::open(const ReaderContext& ctx, const std::filesystem::path& path)
{
    InputState& run = ctx.run;
    // The menu names the generation before the file is looked at.
    run.setKind(m_kind);
    const text::FileBytes bytes = text::FileBytes::read(path);
    const std::string_view problem = rtclVersionProblem(bytes.view(), m_kind);
    if (!problem.empty()) {
        ctx.dialogs.message("Vornhale", run.in_name + std::string(problem),
                            base::Dialogs::Icon::Information);
        return OpenResult::Rejected;
    }
    return OpenResult::Opened;
}

long RtclBinaryReader::countForLabel(const std::filesystem::path& path) const
{
    std::error_code ec;
    const auto bytes = fs::file_size(path, ec);
    return rtclRecordCount(ec ? 0 : bytes, rtclRecordSize(m_kind)) + 1;
}

void RtclBinaryReader::read(const ReaderContext& ctx)
{
    InputState& run = ctx.run;
    // The text beside the log must not be the log itself: found out before anything is written.
    const std::string beside = rtclOutputName(run.in_name, "_log2a.all");
    ctx.observer.status("  入力ファイル読み込み中", base::Colour::Green);
    const bool allMade = decodeRtclLogWithAll(text::FileBytes::read(run.in_name).view(), m_kind,
                                              ctx.work("rtcl_tmp.txt"), beside);
    // The log is read no more: the texts made of it follow.
    text::keepReadsOf({});
    std::string allText = beside;
    if (allMade) {
        ctx.trace.line(kMakeRtclAllTrace);
    } else {
        make_rtcl_log_to_zlog_all(ctx);
        allText = ctx.work(base::working::zlog_01).string();
    }

    // `a_2_t` reads the working text and puts the operator's path back when it ends.
    if (run.chosen_name.empty()) {
        run.chosen_name = run.in_name;
    }
    run.in_name = allText;
    run.file_letter = "A";
    a_2_t(ctx);
}

} // namespace vornhale::readers
