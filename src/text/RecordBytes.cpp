#include "text/RecordBytes.h"

#include "failure/Failure.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/SjisCodec.h"
#include "text/Utf8.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vornhale::text {
namespace {

[[noreturn]] void inputPastEnd()
{
    throw failure::Failure(failure::InputPastEnd, "ファイルの終わりを越えて入力しようとしました。");
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

} // namespace

RecordBytes::RecordBytes(const std::filesystem::path& path)
    : m_bytes(std::make_shared<const FileBytes>(path))
{
}

std::string_view RecordBytes::generalField(const char*& p, const char* end)
{
    while (p < end && *p == ' ') {
        ++p;
    }
    if (p < end && *p == '"') {
        const char* const open = p + 1;
        const auto* found =
            static_cast<const char*>(std::memchr(open, '"', static_cast<std::size_t>(end - open)));
        const char* const close = found != nullptr ? found : end;
        // The usual field: a comma right after its closing quote. Otherwise what follows the
        // closing quote up to the separator is dropped.
        if (close + 1 < end && close[1] == ',') {
            p = close + 2;
        } else {
            p = pastSeparator(toSeparator(close < end ? close + 1 : end, end), end);
        }
        return {open, static_cast<std::size_t>(close - open)};
    }
    const char* const stop = toSeparator(p, end);
    const std::string_view field(p, static_cast<std::size_t>(stop - p));
    p = pastSeparator(stop, end);
    return trim(field);
}

bool RecordBytes::quotedRecord(std::size_t count, std::vector<std::string_view>& out)
{
    constexpr std::uint64_t kHigh = 0x8080808080808080ULL;
    constexpr std::size_t kMostFields = 32;
    if (count > kMostFields) {
        return false;
    }
    const char* const end = m_bytes->data() + m_bytes->size();
    const char* const start = m_bytes->data() + m_pos;
    // A record that does not open with a quote is never searched for quotes, so that a file of
    // unquoted fields is not read to its end once for each record.
    if (*start != '"') {
        return false;
    }
    // The offsets from `start` of the record's quotes, two a field, gathered first; a block
    // can add up to sixteen beyond those wanted.
    std::uint32_t quoteAt[2 * kMostFields + 16];
    const std::size_t wanted = 2 * count;
    std::size_t found = 0;
    std::uint64_t high = 0;
    std::uint64_t word = 0;
    const char* w = start;
#if defined(__SSE2__)
    // Sixteen bytes at a time where the processor has the instructions for it (every x86-64
    // has): the quotes and the bytes above ASCII each come out as a mask of bits.
    const __m128i quote = _mm_set1_epi8('"');
    for (; end - w >= 16; w += 16) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(w));
        auto quotes = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(block, quote)));
        auto nonAscii = static_cast<unsigned>(_mm_movemask_epi8(block));
        const auto base = static_cast<std::uint32_t>(w - start);
        for (; quotes != 0; quotes &= quotes - 1) {
            quoteAt[found++] = base + static_cast<std::uint32_t>(std::countr_zero(quotes));
        }
        if (found >= wanted) {
            // Only the bytes up to the last closing quote belong to the record.
            const std::uint32_t used = quoteAt[wanted - 1] - base + 1;
            nonAscii &= used < 16 ? (1U << used) - 1 : 0xFFFFU;
        }
        if (nonAscii != 0) {
            return false;
        }
        if (found >= wanted) {
            break;
        }
    }
#endif
    // Eight bytes at a time from there: each quote byte comes out as the top bit of its byte.
    for (; found < wanted && end - w >= 8; w += 8) {
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
        // The bytes of the last word up to the last closing quote belong to the record (no
        // word was read when the wide blocks found every quote: it is still zero).
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
    m_pos = static_cast<std::size_t>(p - m_bytes->data());
    return true;
}

bool RecordBytes::next(std::size_t count, std::vector<std::string_view>& out)
{
    m_released.at(*m_bytes, m_pos);
    out.resize(count);
    // The usual record: quoted fields of ASCII bytes, one comma between them.
    if (count > 0 && m_pos < m_bytes->size() && quotedRecord(count, out)) {
        m_canonical = true;
        return true;
    }
    const char* const end = m_bytes->data() + m_bytes->size();
    const char* const start = m_bytes->data() + m_pos;
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
    m_pos = static_cast<std::size_t>(p - m_bytes->data());
    m_canonical = canonical;
    if (isAsciiText(std::string_view(start, static_cast<std::size_t>(p - start)))) {
        return true;
    }
    m_canonical = false;
    m_decoded.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (!isAsciiText(out[i])) {
            m_decoded[i] = decodeSjis(out[i]);
            out[i] = m_decoded[i];
        }
    }
    return false;
}

void AsciiRecordLine::fields(std::string_view first, std::string_view last)
{
    const char* const from = first.data() - 1;
    const std::size_t size = static_cast<std::size_t>(last.data() + last.size() + 1 - from);
    char* p = room(size + 1);
    *p = ',';
    std::memcpy(p + 1, from, size);
    m_size += size + 1;
}

void AsciiRecordLine::emptyField()
{
    char* p = room(3);
    p[0] = ',';
    p[1] = '"';
    p[2] = '"';
    m_size += 3;
}

void AsciiRecordLine::grow(std::size_t size)
{
    m_text.resize(std::max<std::size_t>(2 * m_text.size(), m_size + size + 256));
}

} // namespace vornhale::text
