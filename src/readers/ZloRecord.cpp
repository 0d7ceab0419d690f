#include "readers/ZloRecord.h"

#include "failure/Failure.h"
#include "readers/ZloxRecord.h"
#include "text/Chars.h"
#include "text/FileBytes.h"
#include "text/LineFile.h"
#include "text/SjisCodec.h"
#include "text/SjisText.h"

#include <cmath>
#include <cstring>

namespace vornhale::readers {
namespace {

// Field places of the records.
constexpr std::size_t kHeadNameLen = 8, kHeadName = 9, kHeadNameSize = 12;
constexpr std::size_t kHeadContestLen = 175, kHeadContest = 176, kHeadContestSize = 60;

constexpr std::size_t kWhen = 0;
constexpr std::size_t kCallLen = 8, kCall = 9, kCallSize = 12;
constexpr std::size_t kSentLen = 21, kSent = 22;
constexpr std::size_t kRcvdLen = 52, kRcvd = 53;
constexpr std::size_t kNrRead = 9; // of the 30 bytes of a number only these are read
constexpr std::size_t kRstSent = 84, kRstRcvd = 86;
constexpr std::size_t kMode = 92, kBand = 93, kPower = 94;
constexpr std::size_t kMulti1Len = 95, kMulti1 = 96, kMulti2Len = 126, kMulti2 = 127;
constexpr std::size_t kMultiSize = 30;
constexpr std::size_t kMulti1New = 157, kMulti2New = 158, kPoints = 159;
constexpr std::size_t kOpLen = 160, kOp = 161, kOpSize = 14;
constexpr std::size_t kMemoLen = 175, kMemo = 176, kMemoSize = 67;

// The VB date range: 0100-01-01 to 9999-12-31.
constexpr double kFirstDay = -657434.0;
constexpr double kPastLastDay = 2958466.0;

std::string_view bytesAt(const std::uint8_t* r, std::size_t offset, std::size_t size)
{
    return {reinterpret_cast<const char*>(r) + offset, size};
}

std::string field(const std::uint8_t* r, std::size_t offset, std::size_t size)
{
    return text::decodeSjis(bytesAt(r, offset, size));
}

// The first `length` characters of a decoded fixed field. Shift-JIS decodes each ASCII byte to
// one character and no ASCII byte starts a pair, so an ASCII start of the field is its own
// decoding.
void counted(std::string& out, const std::uint8_t* r, std::size_t lengthAt, std::size_t offset,
             std::size_t size)
{
    const std::size_t length = r[lengthAt];
    const std::string_view start = bytesAt(r, offset, std::min(length, size));
    if (text::isAsciiText(start)) {
        out.assign(start);
    } else {
        out = text::left(field(r, offset, size), length);
    }
}

std::string counted(const std::uint8_t* r, std::size_t lengthAt, std::size_t offset,
                    std::size_t size)
{
    std::string out;
    counted(out, r, lengthAt, offset, size);
    return out;
}

// Days from 1970-01-01 to a civil date and back (proleptic Gregorian).
void civilFromDays(long long z, long long& y, unsigned& m, unsigned& d)
{
    z += 719468;
    const long long era = (z >= 0 ? z : z - 146096) / 146097;
    const unsigned doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    y = static_cast<long long>(yoe) + era * 400;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    d = doy - (153 * mp + 2) / 5 + 1;
    m = mp < 10 ? mp + 3 : mp - 9;
    if (m <= 2) {
        ++y;
    }
}

} // namespace

long zloRecordCount(std::uintmax_t bytes)
{
    const std::uintmax_t whole = bytes / kZloRecordSize;
    const std::uintmax_t rest = bytes % kZloRecordSize;
    std::uintmax_t n = whole;
    if (rest > kZloRecordSize / 2 || (rest == kZloRecordSize / 2 && whole % 2 == 1)) {
        ++n;
    }
    return static_cast<long>(n);
}

ZloFile::ZloFile() : m_bytes(std::make_shared<const text::FileBytes>(text::FileBytes::of({}))) {}

ZloFile::ZloFile(const std::filesystem::path& path) : m_bytes(text::readShared(path)) {}

ZloFile ZloFile::fromBytes(std::string bytes)
{
    ZloFile f;
    f.m_bytes = std::make_shared<const text::FileBytes>(text::FileBytes::of(std::move(bytes)));
    return f;
}

ZloFile ZloFile::ofZlox(std::shared_ptr<const text::FileBytes> bytes)
{
    ZloFile f;
    f.m_bytes = std::move(bytes);
    f.m_zlox = true;
    return f;
}

long ZloFile::count() const
{
    return m_zlox ? zloxRecordCount(m_bytes->size()) : zloRecordCount(m_bytes->size());
}

std::size_t ZloFile::recordSize() const
{
    return m_zlox ? kZloxRecordSize : kZloRecordSize;
}

ZloRecord ZloFile::record(long n) const
{
    ZloRecord spare{};
    const std::uint8_t* r = recordAt(n, spare);
    ZloRecord out;
    std::memcpy(out.data(), r, kZloRecordSize);
    return out;
}

const std::uint8_t* ZloFile::recordAt(long n, ZloRecord& spare) const
{
    const std::string_view bytes = m_bytes->view();
    const std::size_t size = recordSize();
    const std::size_t start = static_cast<std::size_t>(n - 1) * size;
    if (n >= 1 && static_cast<std::size_t>(n) <= bytes.size() / size) {
        if (m_zlox) {
            zloRecordOfZlox(bytes.substr(start, size), n == 1, spare.data());
            return spare.data();
        }
        return reinterpret_cast<const std::uint8_t*>(bytes.data()) + start;
    }
    // Past the whole records: what the file holds of a short last record, zero-filled.
    spare.fill(0);
    if (n >= 1 && !m_zlox && start < bytes.size()) {
        std::memcpy(spare.data(), bytes.data() + start, std::min(size, bytes.size() - start));
    }
    return spare.data();
}

std::string ZloFile::callAt(long n, std::uint8_t& length) const
{
    // The call stands where a `.ZLO` record has it in either form, so it is read in place.
    ZloRecord spare;
    const std::string_view bytes = m_bytes->view();
    const std::uint8_t* r = nullptr;
    if (m_zlox && n >= 2 && n <= count()) {
        r = reinterpret_cast<const std::uint8_t*>(bytes.data()) +
            static_cast<std::size_t>(n - 1) * kZloxRecordSize;
    } else {
        r = recordAt(n, spare);
    }
    length = r[kCallLen];
    return counted(r, kCallLen, kCall, kCallSize);
}

ZloHeader decodeZloHeader(const ZloRecord& r)
{
    ZloHeader h;
    h.first_name = counted(r.data(), kHeadNameLen, kHeadName, kHeadNameSize);
    h.cont_name = std::string(text::Cut_nul(field(r.data(), kHeadContest, kHeadContestSize)));
    h.cont_name_length = r[kHeadContestLen];
    return h;
}

ZloQso decodeZloQso(const ZloRecord& r)
{
    return decodeZloQso(r.data());
}

ZloQso decodeZloQso(const std::uint8_t* r)
{
    ZloQso q;
    decodeZloQso(r, q);
    return q;
}

void decodeZloQso(const std::uint8_t* r, ZloQso& q)
{
    std::memcpy(&q.when, r + kWhen, sizeof q.when);
    q.call_length = r[kCallLen];
    counted(q.call, r, kCallLen, kCall, kCallSize);
    counted(q.sent_nr, r, kSentLen, kSent, kNrRead);
    counted(q.rcvd_nr, r, kRcvdLen, kRcvd, kNrRead);
    q.rst_sent_low = r[kRstSent];
    q.rst_sent_high = r[kRstSent + 1];
    q.rst_rcvd_low = r[kRstRcvd];
    q.rst_rcvd_high = r[kRstRcvd + 1];
    q.mode_index = r[kMode];
    q.band_index = r[kBand];
    q.power_index = r[kPower];
    counted(q.multi1, r, kMulti1Len, kMulti1, kMultiSize);
    counted(q.multi2, r, kMulti2Len, kMulti2, kMultiSize);
    q.multi1_new = r[kMulti1New] == 1;
    q.multi2_new = r[kMulti2New] == 1;
    q.points = r[kPoints];
    q.op_length = r[kOpLen];
    counted(q.op, r, kOpLen, kOp, kOpSize);
    q.memo_length = r[kMemoLen];
    counted(q.memo, r, kMemoLen, kMemo, kMemoSize);
}

void zloDateTime(double when, std::string& date, std::string& time)
{
    if (!(when >= kFirstDay && when < kPastLastDay)) {
        throw failure::Failure(failure::Overflow, "オーバーフローしました。");
    }
    // The whole days count from 1899-12-30 in either direction; the fraction is always the
    // time after midnight of that day.
    double whole = std::trunc(when);
    long long seconds = std::llround(std::fabs(when - whole) * 86400.0);
    if (seconds >= 86400) {
        seconds -= 86400;
        whole += 1;
    }
    long long y = 0;
    unsigned m = 0, d = 0;
    civilFromDays(static_cast<long long>(whole) - 25569, y, m, d);
    date.clear();
    text::appendZeroPadded(date, static_cast<unsigned long long>(y), 4);
    date += '/';
    text::appendZeroPadded(date, m, 2);
    date += '/';
    text::appendZeroPadded(date, d, 2);
    time.clear();
    text::appendZeroPadded(time, static_cast<unsigned long long>(seconds / 3600), 2);
    time += ':';
    text::appendZeroPadded(time, static_cast<unsigned long long>((seconds / 60) % 60), 2);
}

std::string zloRst(std::uint8_t low, std::uint8_t high)
{
    if (high >= 128) {
        throw failure::Failure(failure::Overflow, "オーバーフローしました。");
    }
    return std::to_string(low + 256 * high);
}

void zloMode(std::uint8_t index, std::string& mode, ZloModes modes)
{
    static constexpr const char* kModes[] = {"CW", "SSB", "FM", "AM", "RTY", "Other"};
    static constexpr const char* kCurrentModes[] = {"CW",  "SSB", "FM",  "AM",
                                                    "RTY", "FT4", "FT8", "Other"};
    if (modes == ZloModes::Current) {
        if (index < std::size(kCurrentModes)) {
            mode = kCurrentModes[index];
        }
    } else if (index < std::size(kModes)) {
        mode = kModes[index];
    }
}

void zloBand(std::uint8_t index, std::string& band)
{
    static constexpr const char* kBands[] = {"1.9",  "3.5",  "7",    "10", "14",  "18",
                                             "21",   "24",   "28",   "50", "144", "430",
                                             "1200", "2400", "5600", "10G"};
    if (index < std::size(kBands)) {
        band = kBands[index];
    }
}

void zloPower(std::uint8_t index, std::string& power)
{
    static constexpr const char* kPowers[] = {"P", "L", "M", "H"};
    if (index < std::size(kPowers)) {
        power = kPowers[index];
    }
}

std::string zloCutField(std::string_view chars, std::uint8_t length)
{
    if (text::isAsciiText(chars)) {
        // Characters are bytes.
        return std::string(text::Cut_nul(chars.substr(0, length)));
    }
    const std::string byChars = text::left(chars, length);
    const std::string byBytes = length == 0 ? std::string() : text::Mid_sjis(byChars, 1, length);
    return std::string(text::Cut_nul(byBytes));
}

} // namespace vornhale::readers
