#include "readers/AdifReader.h"

#include "base/WorkingFiles.h"
#include "failure/Failure.h"
#include "text/Chars.h"
#include "text/FileBytes.h"
#include "text/LineFile.h"
#include "text/Record.h"
#include "text/SideBySide.h"
#include "text/SjisCodec.h"
#include "text/Utf8.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

namespace vornhale::readers {
namespace {

constexpr int kMaxHeaderLines = 20;
constexpr int kMaxRecordLines = 20;

// The tags the reader looks for, by the name between "<" and ":".
enum Tag : std::size_t {
    Call,
    QsoDate,
    TimeOn,
    Band,
    Freq,
    RstSent,
    RstRcvd,
    Stx,
    Srx,
    Rcvd,
    AppWritelogRcvd,
    Mode,
    Cqz,
    Ituz,
    State,
    Cnty,
    Comment,
    QslSent,
    QslRcvd,
    Iota,
    Dxcc,
    kTagCount
};

constexpr std::array<std::string_view, kTagCount> kTagNames{
    "CALL",    "QSO_DATE", "TIME_ON",           "BAND", "FREQ", "RST_SENT", "RST_RCVD", "STX",
    "SRX",     "RCVD",     "APP_WRITELOG_RCVD", "MODE", "CQZ",  "ITUZ",     "STATE",    "CNTY",
    "COMMENT", "QSL_SENT", "QSL_RCVD",          "IOTA", "DXCC"};

// Up to eight characters of a name as one number, so that a name is compared at once.
constexpr std::uint64_t packedName(std::string_view name)
{
    std::uint64_t key = 0;
    for (std::size_t i = 0; i < name.size() && i < 8; ++i) {
        key |= static_cast<std::uint64_t>(static_cast<unsigned char>(name[i])) << (8 * i);
    }
    return key;
}

constexpr std::array<std::uint64_t, kTagCount> kPackedNames = [] {
    std::array<std::uint64_t, kTagCount> keys{};
    for (std::size_t t = 0; t < kTagCount; ++t) {
        keys[t] = packedName(kTagNames[t]);
    }
    return keys;
}();

// A multiplier that sends the packed names of up to eight characters to 20 different slots
// of 32 by the top five bits of the product.
constexpr std::uint64_t kSlotMultiplier = 0x18d8ed81e9113469ull;

constexpr std::size_t slotOf(std::uint64_t key)
{
    return static_cast<std::size_t>((key * kSlotMultiplier) >> 59);
}

// The tag of each slot, kTagCount where none.
constexpr std::array<std::uint8_t, 32> kSlotTags = [] {
    std::array<std::uint8_t, 32> slots{};
    slots.fill(static_cast<std::uint8_t>(kTagCount));
    for (std::size_t t = 0; t < kTagCount; ++t) {
        if (kTagNames[t].size() <= 8) {
            slots[slotOf(kPackedNames[t])] = static_cast<std::uint8_t>(t);
        }
    }
    return slots;
}();

static_assert([] {
    std::size_t filled = 0;
    for (const std::uint8_t t : kSlotTags) {
        filled += t != kTagCount ? 1 : 0;
    }
    return filled == kTagCount - 1; // every name but the one longer than eight
}());

// The tag of a name of `size` characters (up to 8) packed as `packedName` packs it, or
// kTagCount: the one name of its slot is compared, with its length.
constexpr std::size_t tagOfKey(std::size_t size, std::uint64_t key)
{
    const std::size_t t = kSlotTags[slotOf(key)];
    return t != kTagCount && kPackedNames[t] == key && kTagNames[t].size() == size ? t : kTagCount;
}

// The tag of a name, or kTagCount.
constexpr std::size_t tagOfName(std::string_view name)
{
    if (name.size() > 8) {
        return name == kTagNames[AppWritelogRcvd] ? AppWritelogRcvd : kTagCount;
    }
    return tagOfKey(name.size(), packedName(name));
}

static_assert([] {
    for (std::size_t t = 0; t < kTagCount; ++t) {
        if (tagOfName(kTagNames[t]) != t) {
            return false;
        }
    }
    return tagOfName("CALLS") == kTagCount && tagOfName("") == kTagCount;
}());

// The length of a tag's opening text with "<" and ":".
constexpr std::size_t openingLength(Tag t)
{
    return kTagNames[t].size() + 2;
}

// 0x80 in each byte of `word` that equals `c`, and nothing in the others: the low seven bits
// of each byte are added up to 0x7F so that no sum carries into the next byte.
constexpr std::uint64_t bytesEqual(std::uint64_t word, unsigned char c)
{
    constexpr std::uint64_t kLow = 0x7F7F7F7F7F7F7F7Full;
    const std::uint64_t x = word ^ (0x0101010101010101ull * c);
    return ~(((x & kLow) + kLow) | x | kLow);
}

static_assert(bytesEqual(0x3A41423A0000BA3Aull, ':') == 0x8000008000000080ull);

// A record as characters, with positions counted from 1 as the reader counts them. Values are
// views into the record's text. A record of ASCII alone (the common case) is searched and cut
// as bytes; any other through the byte offset of each character, so that each find and cut
// stays proportional to what it looks at. Reused from record to record.
class RecordText
{
public:
    RecordText() = default;
    explicit RecordText(std::string_view utf8) { reset(utf8); }

    // The text stays with the caller and must outlive every view taken from here.
    RecordText(const RecordText&) = delete;
    RecordText& operator=(const RecordText&) = delete;

    void reset(std::string_view utf8) { reset(utf8, text::isAsciiText(utf8)); }

    // The same, for a text already known to be ASCII alone or not (`ascii`).
    void reset(std::string_view utf8, bool ascii)
    {
        m_tagAt.fill(0);
        m_soleDate = true;
        m_ascii = ascii;
        if (!m_ascii) {
            // Each character in its own UTF-8 form, as the character walk reads it, with the
            // byte offset where it starts.
            m_storage.clear();
            m_offsets.clear();
            for (std::size_t pos = 0; pos < utf8.size();) {
                m_offsets.push_back(m_storage.size());
                text::appendCodePoint(m_storage, text::nextCodePoint(utf8, pos));
            }
            m_offsets.push_back(m_storage.size());
            m_text = m_storage;
            m_soleDate = false; // not counted here
            std::string needle;
            for (std::size_t t = 0; t < kTagCount; ++t) {
                needle.assign("<").append(kTagNames[t]).append(":");
                m_tagAt[t] = find(needle);
            }
            return;
        }
        m_text = utf8;
        // The first "<NAME:" of every tag the reader looks for, in one walk over the record:
        // each "<" opens the name that runs to the next ":".
        const std::size_t n = m_text.size();
        for (std::size_t lt = m_text.find('<'); lt != std::string_view::npos;
             lt = m_text.find('<', lt + 1)) {
            // The eight bytes behind the "<" at once, where the text reaches that far: a name
            // that ends within them ends at the first ":" among them.
            std::size_t t = kTagCount;
            if (std::endian::native == std::endian::little && lt + 9 <= n) {
                std::uint64_t word = 0;
                std::memcpy(&word, m_text.data() + lt + 1, 8);
                if (const std::uint64_t colons = bytesEqual(word, ':'); colons != 0) {
                    const std::size_t size = static_cast<std::size_t>(std::countr_zero(colons)) / 8;
                    word &= (std::uint64_t{1} << (8 * size)) - 1;
                    t = tagOfKey(size, word);
                    if (t != kTagCount && m_tagAt[t] == 0) {
                        m_tagAt[t] = lt + 1;
                    } else if (t == QsoDate) {
                        m_soleDate = false;
                    }
                    continue;
                }
                // A name of eight characters, its ":" just behind them.
                if (lt + 10 <= n && m_text[lt + 9] == ':') {
                    t = tagOfKey(8, word);
                    if (t != kTagCount && m_tagAt[t] == 0) {
                        m_tagAt[t] = lt + 1;
                    } else if (t == QsoDate) {
                        m_soleDate = false;
                    }
                    continue;
                }
            }
            // Names are short: a walk finds their end sooner than a search.
            std::size_t colon = lt + 1;
            while (colon < n && m_text[colon] != ':') {
                ++colon;
            }
            if (colon == n) {
                break;
            }
            const std::string_view name = m_text.substr(lt + 1, colon - lt - 1);
            if (std::endian::native == std::endian::little && name.size() == 8 && lt + 9 <= n) {
                std::uint64_t word = 0;
                std::memcpy(&word, name.data(), 8);
                t = tagOfKey(8, word);
            } else {
                t = tagOfName(name);
            }
            if (t != kTagCount && m_tagAt[t] == 0) {
                m_tagAt[t] = lt + 1;
            } else if (t == QsoDate) {
                m_soleDate = false;
            }
        }
    }

    // The position of the first opening of `t` ("<NAME:"); 0 when absent.
    std::size_t at(Tag t) const { return m_tagAt[t]; }

    // Whether the text is ASCII alone, and the text itself, a byte a character then.
    bool ascii() const { return m_ascii; }
    std::string_view text() const { return m_text; }

    // The position of the first `needle`, which begins with the opening of the date's tag.
    // Every such text stands at an opening of that tag: with only one, it is there or nowhere.
    std::size_t findDate(std::string_view needle) const
    {
        const std::size_t p = m_tagAt[QsoDate];
        if (p == 0) {
            return 0;
        }
        if (m_soleDate) {
            return m_text.substr(p - 1, needle.size()) == needle ? p : 0;
        }
        return find(needle, p);
    }

    // The position of the first `needle` (ASCII) at or after `from`; 0 when absent.
    std::size_t find(std::string_view needle, std::size_t from = 1) const
    {
        if (from < 1) {
            from = 1;
        }
        if (m_ascii) {
            const std::size_t at = m_text.find(needle, from - 1);
            return at == std::string_view::npos ? 0 : at + 1;
        }
        // An ASCII byte in UTF-8 is always that character, so a byte match is a character
        // match, and it starts a character.
        if (from - 1 >= m_offsets.size()) {
            return 0;
        }
        const std::size_t at = m_text.find(needle, m_offsets[from - 1]);
        if (at == std::string_view::npos) {
            return 0;
        }
        return static_cast<std::size_t>(std::lower_bound(m_offsets.begin(), m_offsets.end(), at) -
                                        m_offsets.begin()) +
               1;
    }

    // `length` characters from `start` (from 1); fewer at the end of the text.
    std::string_view mid(std::size_t start, std::size_t length) const
    {
        if (start < 1) {
            start = 1;
        }
        if (m_ascii) {
            return start - 1 < m_text.size() ? m_text.substr(start - 1, length)
                                             : std::string_view();
        }
        const std::size_t chars = m_offsets.size() - 1;
        if (start - 1 >= chars) {
            return {};
        }
        const std::size_t end = length >= chars - (start - 1) ? chars : start - 1 + length;
        return m_text.substr(m_offsets[start - 1], m_offsets[end] - m_offsets[start - 1]);
    }

private:
    std::string_view m_text;
    bool m_ascii = true;
    std::string m_storage;              // the characters of a record that is not ASCII
    std::vector<std::size_t> m_offsets; // and the byte offset of each, then of the end
    std::array<std::size_t, kTagCount> m_tagAt{};
    bool m_soleDate = true; // one opening of the date's tag, in an ASCII record
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

// ASCII letters a to z of `bytes` in upper case, eight bytes at a time: a byte from 'a' up
// reaches 0x80 when 0x1F is added, one beyond 'z' when 5 is; no sum of an ASCII byte carries
// into the next byte, and upper case is lower case without 0x20. Returns whether every byte
// was ASCII; the bytes are of no use when one was not.
bool upperAscii(char* bytes, std::size_t n)
{
    constexpr std::uint64_t kOnes = 0x0101010101010101ull;
    std::uint64_t high = 0;
    std::size_t i = 0;
    for (; i + 8 <= n; i += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes + i, 8);
        high |= word;
        const std::uint64_t fromA = word + 0x1F * kOnes;
        const std::uint64_t pastZ = word + 0x05 * kOnes;
        word ^= ((fromA & ~pastZ) & (0x80 * kOnes)) >> 2;
        std::memcpy(bytes + i, &word, 8);
    }
    for (; i < n; ++i) {
        high |= static_cast<unsigned char>(bytes[i]);
        if (bytes[i] >= 'a' && bytes[i] <= 'z') {
            bytes[i] = static_cast<char>(bytes[i] - 0x20);
        }
    }
    return (high & 0x8080808080808080ull) == 0;
}

// Appends the next line of `in`, decoded and in upper case, to `record`, clearing `ascii`
// when the line appended is not ASCII; true when the line holds "<EOR>". An ASCII line decodes to
// itself, so it is taken as it stands.
bool appendUpperLine(text::LineReader& in, std::string& record, bool& ascii)
{
    const std::string_view raw = in.nextRaw();
    const std::size_t from = record.size();
    // Taken as it stands and put in upper case in place; a line that proves not to be ASCII
    // is taken back and decoded.
    record.append(raw);
    if (!upperAscii(record.data() + from, raw.size())) {
        record.resize(from);
        record += upperLine(text::decodeSjis(raw));
        ascii = ascii && text::isAsciiText(std::string_view(record).substr(from));
    }
    // Looked for from the end, where a record's closing tag stands.
    return std::string_view(record).substr(from).rfind("<EOR>") != std::string_view::npos;
}

// Whether an ASCII line holds "<call:": the lower-case letter is looked for, rare in a log
// written in capitals.
bool holdsLowerCall(std::string_view line)
{
    const char* const begin = line.data();
    const char* const end = begin + line.size();
    for (const char* p = begin;
         (p = static_cast<const char*>(std::memchr(p, 'c', static_cast<std::size_t>(end - p))));
         ++p) {
        if (p > begin && p[-1] == '<' && end - p >= 5 && std::memcmp(p, "call:", 5) == 0) {
            return true;
        }
    }
    return false;
}

// One for a line holding "<CALL:" and one more for a line holding "<call:" (as written),
// both looked for in one walk over the "<" of the line.
long callOpenings(std::string_view line)
{
    bool upperCall = false;
    bool lowerCall = false;
    for (std::size_t lt = line.find('<'); lt != std::string_view::npos && !(upperCall && lowerCall);
         lt = line.find('<', lt + 1)) {
        const std::string_view rest = line.substr(lt + 1, 5);
        upperCall = upperCall || rest == "CALL:";
        lowerCall = lowerCall || rest == "call:";
    }
    return (upperCall ? 1 : 0) + (lowerCall ? 1 : 0);
}

// A length as BASIC's Val reads the digits; a negative one is an invalid call of the
// substring, as it always was. One or two plain digits, the common case, are read directly.
std::size_t lengthOf(std::string_view digits)
{
    const auto digit = [](char c) { return c >= '0' && c <= '9'; };
    if (digits.size() == 1 && digit(digits[0])) {
        return static_cast<std::size_t>(digits[0] - '0');
    }
    if (digits.size() == 2 && digit(digits[0]) && digit(digits[1])) {
        return static_cast<std::size_t>((digits[0] - '0') * 10 + (digits[1] - '0'));
    }
    const double v = text::val(digits);
    if (v < 0) {
        throw failure::Failure(failure::InvalidCall,
                               "プロシージャの呼び出し、または引数が不正です。");
    }
    return static_cast<std::size_t>(v);
}

// The value of the tag of `n` characters at `p`: the length is the one character behind the
// tag, the value starts two places behind it.
std::string_view valueAt(const RecordText& rec, std::size_t p, std::size_t n)
{
    // The usual case, a one-digit length in an ASCII record, read where it stands.
    if (rec.ascii() && p >= 1) {
        const std::string_view text = rec.text();
        if (p + n - 1 < text.size()) {
            if (const char digit = text[p + n - 1]; digit >= '0' && digit <= '9') {
                const std::size_t start = p + n + 1;
                return start < text.size()
                           ? text.substr(start, static_cast<std::size_t>(digit - '0'))
                           : std::string_view();
            }
        }
    }
    return rec.mid(p + n + 2, lengthOf(rec.mid(p + n, 1)));
}

// The value of the tag of `n` characters at `p`: behind a one-digit length when the tag's
// ">" was found where one digit puts it, behind two digits otherwise.
std::string_view valueByClose(const RecordText& rec, std::size_t p, std::size_t n, bool closeFound)
{
    if (closeFound) {
        return valueAt(rec, p, n);
    }
    return rec.mid(p + n + 3, lengthOf(rec.mid(p + n, 2)));
}

std::optional<std::string_view> valueOf(const RecordText& rec, Tag tag)
{
    const std::size_t p = rec.at(tag);
    if (p == 0) {
        return std::nullopt;
    }
    return valueAt(rec, p, openingLength(tag));
}

// Whether `s` is ASCII alone: values are short, and a walk over a few bytes is quicker than
// a call.
bool isAsciiShort(std::string_view s)
{
    unsigned high = 0;
    for (const char c : s) {
        high |= static_cast<unsigned char>(c);
    }
    return high < 0x80;
}

// Whether `a` and `b` hold the same bytes; the texts compared are a few bytes long, compared
// in place rather than through a call.
bool sameBytes(std::string_view a, std::string_view b)
{
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (a[i] != b[i]) {
            return false;
        }
    }
    return true;
}

// `s` without the blanks at either end, as `text::trim` gives it; values are short, looked
// through in place.
std::string_view trimBlanks(std::string_view s)
{
    std::size_t from = 0;
    std::size_t to = s.size();
    while (from < to && s[from] == ' ') {
        ++from;
    }
    while (to > from && s[to - 1] == ' ') {
        --to;
    }
    return s.substr(from, to - from);
}

// `s` into `to`, which keeps its room from record to record.
void setTo(std::string& to, std::string_view s)
{
    to.clear();
    to.append(s);
}

// The first `n` characters, the `n` characters from `start` and the last `n` characters of
// `s` into `to`; ASCII text (`ascii` when it is known to be) is cut as bytes.
void assignLeft(std::string& to, std::string_view s, std::size_t n, bool ascii)
{
    if (ascii || isAsciiShort(s)) {
        setTo(to, s.substr(0, n));
    } else {
        to = text::left(s, n);
    }
}

void assignMid(std::string& to, std::string_view s, std::size_t start, std::size_t n, bool ascii)
{
    if (ascii || isAsciiShort(s)) {
        setTo(to, start - 1 < s.size() ? s.substr(start - 1, n) : std::string_view());
    } else {
        to = text::mid(s, start, n);
    }
}

void assignRight(std::string& to, std::string_view s, std::size_t n, bool ascii)
{
    if (ascii || isAsciiShort(s)) {
        setTo(to, s.size() > n ? s.substr(s.size() - n) : s);
    } else {
        to = text::right(s, n);
    }
}

// "Kept as" text of a zone or place: the caption and the value, when there is a value.
void assignCaptioned(std::string& to, std::string_view caption, std::string_view value)
{
    to.clear();
    if (!value.empty()) {
        to.assign(caption).append(value);
    }
}

// `s` cut to its first `n` characters, in place.
void cutTo(std::string& s, std::size_t n)
{
    if (isAsciiShort(s)) {
        s.resize(std::min(s.size(), n));
    } else {
        s = text::left(s, n);
    }
}

// The record line of `fields` as `text::LineWriter::writeRecord` writes it (each field in
// double quotes, separated by commas) into `line`, as the fields' bytes stand: the line
// `writeRecord` writes when every field is ASCII, which Shift-JIS holds as it stands.
// Returns whether every field is ASCII.
template <std::size_t N>
bool recordLine(const std::array<std::string_view, N>& fields, std::string& line)
{
    std::size_t size = N * 3 - 1;
    for (const std::string_view f : fields) {
        size += f.size();
    }
    line.resize(size);
    char* p = line.data();
    unsigned high = 0;
    for (std::size_t i = 0; i < N; ++i) {
        const std::string_view f = fields[i];
        if (i != 0) {
            *p++ = ',';
        }
        *p++ = '"';
        // Fields are short: copied in place rather than through a call.
        for (const char c : f) {
            high |= static_cast<unsigned char>(c);
            *p++ = c;
        }
        *p++ = '"';
    }
    return high < 0x80;
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
        const std::size_t p = rec.at(Call);
        if (const std::string_view digit = rec.mid(p + 6, 1);
            digit.size() == 1 && digit[0] == '1') {
            setTo(v.call, trimBlanks(rec.mid(p + 9, lengthOf(rec.mid(p + 6, 2)))));
        } else {
            setTo(v.call, trimBlanks(rec.mid(p + 8, lengthOf(rec.mid(p + 6, 1)))));
        }
    }

    // The date's value starts as if the tag were "<QSO_DATE:8:D>", unless it is "<QSO_DATE:8>".
    if (const std::size_t p = rec.at(QsoDate); p != 0) {
        const std::size_t length = lengthOf(rec.mid(p + 10, 1));
        std::string_view date = rec.mid(p + 14, length);
        if (const std::size_t d = rec.findDate("<QSO_DATE:8:D>"); d != 0) {
            date = rec.mid(d + 14, length);
        }
        if (const std::size_t d = rec.findDate("<QSO_DATE:8>"); d != 0) {
            date = rec.mid(d + 12, length);
        }
        // A view of an ASCII record is ASCII.
        assignLeft(v.year, date, 4, rec.ascii());
        assignMid(v.month, date, 5, 2, rec.ascii());
        assignRight(v.day, date, 2, rec.ascii());
    }

    if (const std::size_t p = rec.at(TimeOn); p != 0) {
        assignLeft(v.time, rec.mid(p + 11, lengthOf(rec.mid(p + 9, 1))), 4, rec.ascii());
    }
    if (auto x = valueOf(rec, Band)) {
        setTo(v.band, *x);
    }
    if (auto x = valueOf(rec, Freq)) {
        setTo(v.freq, *x);
    }
    if (auto x = valueOf(rec, RstSent)) {
        setTo(v.rst_sent, *x);
    }
    if (const std::size_t p = rec.at(RstRcvd); p != 0) {
        setTo(v.rst_rcvd, trimBlanks(valueByClose(rec, p, 10, rec.mid(p + 11, 1) == ">")));
    }
    if (auto x = valueOf(rec, Stx)) {
        setTo(v.stx, *x);
    }
    if (auto x = valueOf(rec, Srx)) {
        setTo(v.rcvd_exchange, *x);
    }
    if (auto x = valueOf(rec, Rcvd)) {
        setTo(v.rcvd_exchange, *x);
    }
    if (auto x = valueOf(rec, AppWritelogRcvd)) {
        setTo(v.rcvd_exchange, *x);
    }
    if (auto x = valueOf(rec, Mode)) {
        setTo(v.mode, *x);
    }
    if (auto x = valueOf(rec, Cqz)) {
        assignCaptioned(v.cqz, "CQZ: ", *x);
    }
    if (auto x = valueOf(rec, Ituz)) {
        assignCaptioned(v.ituz, "ITUZ: ", *x);
    }
    if (auto x = valueOf(rec, State)) {
        assignCaptioned(v.adi_state, "STATE: ", *x);
    }
    // The ">" of these two is looked for in the text from the tag on.
    if (const std::size_t p = rec.at(Cnty); p != 0) {
        const bool oneDigit = rec.find(">", p) == p + 7;
        assignCaptioned(v.cnty, "CNTY: ", valueByClose(rec, p, 6, oneDigit));
    }
    if (const std::size_t p = rec.at(Comment); p != 0) {
        const bool oneDigit = rec.find(">", p) == p + 10;
        setTo(v.comment, trimBlanks(valueByClose(rec, p, 9, oneDigit)));
    }
    if (auto x = valueOf(rec, QslSent)) {
        const bool sent = *x == "Y";
        v.qsl_sent = sent ? "J" : "N";
        v.qsl_sent_mark = sent ? "*" : " ";
    }
    if (auto x = valueOf(rec, QslRcvd)) {
        v.qsl_rcvd_mark = *x == "Y" ? "*" : " ";
    }
    if (auto x = valueOf(rec, Iota)) {
        setTo(v.adi_iota, trimBlanks(*x));
    }
    if (auto x = valueOf(rec, Dxcc)) {
        setTo(v.dxcc, *x);
    }

    // The reports carry the exchanges until the cut below.
    v.rst_sent.append(trimBlanks(v.stx));
    v.rst_rcvd.append(trimBlanks(v.rcvd_exchange));

    if (sameBytes(v.mode, "RTTY")) {
        v.mode = "RTY";
    } else if (sameBytes(v.mode, "SSTV")) {
        v.mode = "STV";
    }

    // The band in metres; a text of another form (such as 6M) stays as it is.
    std::string_view metres = v.band;
    for (const auto& [written, m] : {std::pair<std::string_view, std::string_view>{"160M", "160"},
                                     {"80M", "80"},
                                     {"40M", "40"},
                                     {"30M", "30"},
                                     {"20M", "20"},
                                     {"17M", "17"},
                                     {"15M", "15"},
                                     {"12M", "12"},
                                     {"10M", "10"}}) {
        if (sameBytes(v.band, written)) {
            metres = m;
            break;
        }
    }
    if (v.freq.empty()) {
        struct FromMetres
        {
            std::string_view metres;
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
            if (sameBytes(metres, f.metres)) {
                v.freq = f.freq;
                if (f.digit != nullptr) {
                    v.band_digit = f.digit;
                }
                break;
            }
        }
    }

    const std::size_t keep = sameBytes(v.mode, "SSB") ? 2 : 3;
    cutTo(v.rst_sent, keep);
    cutTo(v.rst_rcvd, keep);
}

} // namespace

std::optional<std::string> adifValue(std::string_view record, std::string_view tag)
{
    const RecordText rec(record);
    const std::size_t p = rec.find(tag);
    if (p == 0) {
        return std::nullopt;
    }
    return std::string(valueAt(rec, p, tag.size()));
}

void AdifValues::take(std::string_view record)
{
    takeRecord(*this, RecordText(record));
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
    // The log is the kept input: the count and the conversion share this read.
    const text::FileBytes bytes = text::FileBytes::read(path);
    bool reports = false;
    for (const std::string_view line : text::splitLines(bytes.view())) {
        reports = text::contains(text::upper(text::decodeSjis(line)), "<RST_SENT:");
        if (reports) {
            break;
        }
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
    const text::FileBytes bytes = text::FileBytes::read(run.in_name);
    long count = 0;
    const std::string_view all = bytes.view();
    const bool ascii = text::isAsciiText(all);
    std::string decoded;
    for (const std::string_view raw : text::splitLines(all)) {
        if (ascii) {
            count += (raw.find("<CALL:") != std::string_view::npos ? 1 : 0) +
                     (holdsLowerCall(raw) ? 1 : 0);
            continue;
        }
        std::string_view line = raw;
        if (!text::isAsciiText(raw)) {
            decoded = text::decodeSjis(raw);
            line = decoded;
        }
        count += callOpenings(line);
    }
    run.line_count = count;
    run.Label39 = std::to_string(count) + " 件";
    ctx.observer.label("Label39", run.Label39);
    return count;
}

namespace {

// Turns the lines of one record into a line of zlog_1. What a record does not give keeps what
// the records before it left.
class AdifTurner
{
public:
    void operator()(text::LineReader& in, text::LineWriter& out)
    {
        // The lines of a record are joined in upper case.
        m_record.clear();
        bool ascii = true;
        for (int i = 0; i < kMaxRecordLines && !in.atEnd(); ++i) {
            if (appendUpperLine(in, m_record, ascii)) {
                break;
            }
        }
        m_joined.reset(m_record, ascii);
        ++m_number;
        try {
            takeRecord(m_values, m_joined);
        } catch (const failure::Failure& f) {
            throw failure::Failure(f.number(), f.description() + " (" + std::to_string(m_number) +
                                                   " 件目: " + m_record + ")");
        }
        // As `fill` puts the record into the common line, written without the copy.
        const std::array<std::string_view, 13> fields{
            m_values.year,     m_values.month,    m_values.day,  m_values.time, m_values.call,
            m_values.rst_sent, m_values.rst_rcvd, m_values.freq, m_values.mode, m_q.q_op,
            m_q.q_memo,        m_values.freq,     m_q.q_rcvd};
        if (recordLine(fields, m_line)) {
            out.writeRaw(m_line);
        } else {
            out.writeRecord(fields);
        }
    }

    // What the next record may take over.
    const AdifValues& carried() const { return m_values; }

private:
    AdifValues m_values;
    base::QsoLine m_q; // operator, memo and received exchange: never assigned here
    std::string m_record, m_line;
    RecordText m_joined;
    long m_number = 0; // the records read, for the failure's text
};

} // namespace

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

    if (!in.atEnd()) {
        long done = 0;
        text::turnRecords(
            in, out, [] { return AdifTurner(); },
            [&ctx, &run, &done] {
                ++run.written_count;
                ctx.observer.progress(++done);
            });
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
