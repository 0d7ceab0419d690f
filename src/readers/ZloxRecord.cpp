#include "readers/ZloxRecord.h"

#include "text/FileBytes.h"
#include "text/LineFile.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace vornhale::readers {
namespace {

// Places in a .ZLOX record.
constexpr std::size_t kMemoLen = 175, kMemo = 176, kZloMemoSize = 64;
constexpr std::size_t kDupe = 241;
constexpr std::size_t kFreqLen = 256, kFreq = 257, kFreqSize = 10;
constexpr std::size_t kQsyViolation = 267;
// The header's "ZLOX" mark and contact count, where a .ZLO header holds its time stamp.
constexpr std::size_t kHeaderMarkSize = 8;

std::uint8_t byteAt(std::string_view record, std::size_t at)
{
    return at < record.size() ? static_cast<std::uint8_t>(record[at]) : 0;
}

// A counted string of the record: its length byte, never past its field.
std::string_view counted(std::string_view record, std::size_t lengthAt, std::size_t at,
                         std::size_t size)
{
    const std::size_t length = std::min<std::size_t>(byteAt(record, lengthAt), size);
    if (at >= record.size()) {
        return {};
    }
    return record.substr(at, std::min(length, record.size() - at));
}

bool isLeadByte(unsigned char b)
{
    return (b >= 0x81 && b <= 0x9F) || (b >= 0xE0 && b <= 0xFC);
}

// The length of the first `limit` bytes of Shift-JIS text, one byte less where the cut would
// split a double-byte character.
std::size_t cutSjis(std::string_view bytes, std::size_t limit)
{
    std::size_t i = 0;
    while (i < bytes.size()) {
        const std::size_t width = isLeadByte(static_cast<unsigned char>(bytes[i])) ? 2 : 1;
        if (i + width > limit) {
            break;
        }
        i += width;
    }
    return std::min(i, bytes.size());
}

// The memo's parts joined, before the cut: built in place, as every contact of a log has one.
class JoinedMemo
{
public:
    explicit JoinedMemo(std::string_view record)
    {
        if (byteAt(record, kDupe) == 1) {
            add("-DUPE-");
        }
        // The field holds kHz with a decimal ("7123.0"); the memo gets the whole kHz, the form
        // in which the frequency rule of the .ZLO reader takes it.
        std::string_view freq = counted(record, kFreqLen, kFreq, kFreqSize);
        freq = freq.substr(0, freq.find('.'));
        if (!freq.empty()) {
            separate();
            put("(");
            put(freq);
            put(")");
        }
        add(counted(record, kMemoLen, kMemo, kZloMemoSize));
        if (byteAt(record, kQsyViolation) == 1) {
            add("*QSY Violation*");
        }
    }

    // The memo cut to the `.ZLO` field.
    std::string_view cut() const
    {
        const std::string_view all(m_text.data(), m_size);
        return all.substr(0, cutSjis(all, kZloMemoSize));
    }

private:
    void add(std::string_view part)
    {
        if (!part.empty()) {
            separate();
            put(part);
        }
    }
    void separate()
    {
        if (m_size > 0) {
            put(" ");
        }
    }
    void put(std::string_view part)
    {
        std::copy(part.begin(), part.end(), m_text.begin() + static_cast<std::ptrdiff_t>(m_size));
        m_size += part.size();
    }

    // "-DUPE-", the frequency in parentheses, the memo and the QSY mark, with their blanks.
    std::array<char, 6 + 1 + (kFreqSize + 2) + 1 + kZloMemoSize + 1 + 15> m_text{};
    std::size_t m_size = 0;
};

} // namespace

long zloxRecordCount(std::uintmax_t bytes)
{
    return static_cast<long>(bytes / kZloxRecordSize);
}

std::string zloMemoOfZlox(std::string_view record)
{
    return std::string(JoinedMemo(record).cut());
}

void zloRecordOfZlox(std::string_view record, bool header, std::uint8_t* out)
{
    std::memcpy(out, record.data(), kZloRecordSize);
    if (header) {
        std::fill_n(out, kHeaderMarkSize, 0);
        return;
    }
    const JoinedMemo joined(record);
    const std::string_view memo = joined.cut();
    std::fill_n(out + kMemo, kZloMemoSize, 0);
    out[kMemoLen] = static_cast<std::uint8_t>(memo.size());
    std::memcpy(out + kMemo, memo.data(), memo.size());
}

ZloFile zloOfZlox(std::string_view bytes)
{
    return ZloFile::ofZlox(
        std::make_shared<const text::FileBytes>(text::FileBytes::of(std::string(bytes))));
}

ZloFile readZloxFile(const std::filesystem::path& path)
{
    return ZloFile::ofZlox(text::readShared(path));
}

} // namespace vornhale::readers
