#include "readers/Lg8File.h"

#include "failure/Failure.h"
#include "text/Chars.h"
#include "text/FileBytes.h"
#include "text/LineFile.h"
#include "text/SideBySide.h"
#include "text/SjisCodec.h"
#include "text/SjisText.h"

#include <array>
#include <cstring>

namespace vornhale::readers {
namespace {

constexpr std::string_view kClassName = "CQsoData";
// The tag that stands before each further object of the class already named.
constexpr std::string_view kClassTag = "\x01\x80";
constexpr std::size_t kRecordSize = 168;

// Places in a record.
constexpr std::size_t kCall = 0, kCallSize = 20;
constexpr std::size_t kSent = 20, kSentSize = 30;
constexpr std::size_t kRcvd = 50, kRcvdSize = 30;
constexpr std::size_t kMode = 80, kBand = 82;
constexpr std::size_t kTime = 88;
constexpr std::size_t kOp = 96, kOpSize = 20;
constexpr std::size_t kRemarks = 118, kRemarksSize = 50;

// CTESTWIN keeps the clock of a Japanese station.
constexpr std::int64_t kStationOffset = 9 * 3600;
// 0001-01-01 and 9999-12-31 23:59:59 in seconds since 1970.
constexpr std::int64_t kFirstSecond = -62135596800LL;
constexpr std::int64_t kLastSecond = 253402300799LL;

constexpr std::array<std::string_view, 24> kModes{
    "CW",    "RTTY", "SSB",  "FM",    "AM",     "ATV",  "SSTV", "PSK",
    "GMSK",  "MFSK", "QPSK", "FSK",   "D-STAR", "C4FM", "JT65", "JT9",
    "ISCAT", "FT8",  "JT4",  "QRA64", "MSK144", "WSPR", "JTMS", "FT4"};

constexpr std::array<std::string_view, 23> kBands{
    "1.9",  "3.5",  "7",    "10",  "14",  "18",  "21",  "24",  "28",   "50",   "144", "430",
    "1200", "2400", "5600", "10G", "24G", "47G", "75G", "77G", "135G", "248G", "136k"};

[[noreturn]] void notLg8()
{
    throw failure::Failure(failure::TypeMismatch,
                           "CTESTWIN の ＊．lg8 ファイルではありません (CQsoData がありません)");
}

std::uint16_t word(std::string_view b, std::size_t at)
{
    return static_cast<std::uint16_t>(static_cast<unsigned char>(b[at]) |
                                      static_cast<unsigned char>(b[at + 1]) << 8);
}

// A NUL-ended text of a fixed field; the bytes after the NUL are whatever the buffer held.
std::string textField(std::string_view record, std::size_t at, std::size_t size)
{
    return text::decodeSjis(text::Cut_nul(record.substr(at, size)));
}

Lg8Qso decodeRecord(std::string_view r)
{
    Lg8Qso q;
    q.call = textField(r, kCall, kCallSize);
    q.sent = textField(r, kSent, kSentSize);
    q.rcvd = textField(r, kRcvd, kRcvdSize);
    q.mode = static_cast<std::uint8_t>(r[kMode]);
    q.band = static_cast<std::uint8_t>(r[kBand]);
    std::uint64_t seconds = 0;
    for (std::size_t i = 0; i < 8; ++i) {
        seconds |= static_cast<std::uint64_t>(static_cast<unsigned char>(r[kTime + i])) << (8 * i);
    }
    q.utcSeconds = static_cast<std::int64_t>(seconds);
    q.op = textField(r, kOp, kOpSize);
    q.remarks = textField(r, kRemarks, kRemarksSize);
    return q;
}

// Where the first record starts: behind the count (a word, or 0xFFFF and a double word for a
// list of 65,535 and more), the new-class mark 0xFFFF, the schema, and the counted class
// name. Zero when the list is empty and names no class.
std::size_t firstRecord(std::string_view b, std::uint32_t& count)
{
    if (b.size() < 2) {
        notLg8();
    }
    count = word(b, 0);
    std::size_t at = 2;
    if (count == 0xFFFF && b.size() >= 6) {
        const std::uint32_t wide =
            static_cast<std::uint32_t>(word(b, 2)) | static_cast<std::uint32_t>(word(b, 4)) << 16;
        if (b.size() >= 8 && word(b, 6) == 0xFFFF) {
            count = wide;
            at = 6;
        }
    }
    const std::size_t nameAt = at + 6;
    if (b.size() >= nameAt && word(b, at) == 0xFFFF && word(b, at + 4) == kClassName.size() &&
        b.substr(nameAt, kClassName.size()) == kClassName) {
        return nameAt + kClassName.size();
    }
    if (count == 0) {
        return 0;
    }
    notLg8();
}

void civilFromDays(std::int64_t z, std::int64_t& y, unsigned& m, unsigned& d)
{
    z += 719468;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const auto doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    y = static_cast<std::int64_t>(yoe) + era * 400;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    d = doy - (153 * mp + 2) / 5 + 1;
    m = mp < 10 ? mp + 3 : mp - 9;
    if (m <= 2) {
        ++y;
    }
}

bool isVoiceMode(std::string_view mode)
{
    return mode == "SSB" || mode == "FM" || mode == "AM" || mode == "ATV" || mode == "D-STAR" ||
           mode == "C4FM";
}

} // namespace

Lg8File Lg8File::read(const std::filesystem::path& path)
{
    return of(text::readShared(path));
}

Lg8File Lg8File::fromBytes(std::string_view bytes)
{
    return of(std::make_shared<const text::FileBytes>(text::FileBytes::of(std::string(bytes))));
}

Lg8File Lg8File::of(std::shared_ptr<const text::FileBytes> bytes)
{
    Lg8File log;
    log.m_bytes = std::move(bytes);
    const std::string_view b = log.m_bytes->view();
    std::uint32_t count = 0;
    std::size_t at = firstRecord(b, count);
    if (at == 0) {
        return log;
    }
    log.m_starts.reserve((b.size() - at) / (kRecordSize + kClassTag.size()) + 1);
    for (bool first = true;; first = false) {
        if (!first) {
            if (b.size() - at < kClassTag.size() || b.substr(at, kClassTag.size()) != kClassTag) {
                break;
            }
            at += kClassTag.size();
        }
        if (b.size() - at < kRecordSize) {
            throw failure::Failure(failure::InputPastEnd,
                                   "CTESTWIN の ＊．lg8 ファイルが途中で切れています (" +
                                       std::to_string(log.m_starts.size() + 1) + " 件目)");
        }
        log.m_starts.push_back(at);
        at += kRecordSize;
    }
    return log;
}

Lg8Qso Lg8File::qso(std::size_t i) const
{
    return decodeRecord(m_bytes->view().substr(m_starts.at(i), kRecordSize));
}

std::string_view lg8ModeName(std::uint8_t index)
{
    return index < kModes.size() ? kModes[index] : std::string_view();
}

std::string_view lg8BandName(std::uint8_t index)
{
    return index < kBands.size() ? kBands[index] : std::string_view();
}

void splitLg8Exchange(std::string_view exchange, std::string_view mode, std::string& rst,
                      std::string& number)
{
    const std::size_t digits = isVoiceMode(mode) ? 2 : 3;
    const std::string lead = text::left(exchange, digits);
    if (text::charCount(lead) == digits && text::countDigits(lead) == digits) {
        rst = lead;
        number = text::mid(exchange, digits + 1);
    } else {
        rst.clear();
        number = std::string(exchange);
    }
}

std::string zlogAllLine(const Lg8Qso& qso)
{
    if (qso.utcSeconds < kFirstSecond || qso.utcSeconds > kLastSecond) {
        throw failure::Failure(failure::Overflow, "オーバーフローしました。 (" + qso.call + ")");
    }
    const std::int64_t local = qso.utcSeconds + kStationOffset;
    std::int64_t days = local / 86400;
    std::int64_t seconds = local % 86400;
    if (seconds < 0) {
        seconds += 86400;
        --days;
    }
    std::int64_t year = 0;
    unsigned month = 0, day = 0;
    civilFromDays(days, year, month, day);
    std::string line;
    text::appendZeroPadded(line, static_cast<unsigned long long>(year), 4);
    line += '/';
    text::appendZeroPadded(line, month, 2);
    line += '/';
    text::appendZeroPadded(line, day, 2);
    line += ' ';
    text::appendZeroPadded(line, static_cast<unsigned long long>(seconds / 3600), 2);
    line += ':';
    text::appendZeroPadded(line, static_cast<unsigned long long>(seconds / 60 % 60), 2);
    line += ' ';

    const std::string_view mode = lg8ModeName(qso.mode);
    std::string sentRst, sentNr, rcvdRst, rcvdNr;
    splitLg8Exchange(qso.sent, mode, sentRst, sentNr);
    splitLg8Exchange(qso.rcvd, mode, rcvdRst, rcvdNr);

    // Columns of Shift-JIS bytes, padded with blanks and cut as zLog's own text writer does.
    using text::appendSjisColumn;
    appendSjisColumn(line, qso.call, 13);
    appendSjisColumn(line, sentRst, 4);
    appendSjisColumn(line, sentNr, 8);
    appendSjisColumn(line, rcvdRst, 4);
    appendSjisColumn(line, rcvdNr, 8);
    // Multipliers are not in the log: the columns show none as new.
    line += "-     -     ";
    appendSjisColumn(line, lg8BandName(qso.band), 5);
    appendSjisColumn(line, mode, 5);
    appendSjisColumn(line, "", 3);
    if (!qso.op.empty()) {
        appendSjisColumn(line, "%%" + qso.op + "%%", 19);
    }
    line += qso.remarks;
    return line;
}

void writeZlogAll(const Lg8File& log, const std::filesystem::path& path)
{
    text::LineWriter out(path, text::LineWriter::Mode::ReplaceWhenDone);
    out.write("zLog for Windows ");
    // Each contact is decoded as its line is made, a long log in two parts side by side.
    text::turnItems(log.size(), out, 96, [&log](std::size_t i, text::LineWriter& lines) {
        lines.write(zlogAllLine(log.qso(i)));
    });
    out.close();
}

} // namespace vornhale::readers
