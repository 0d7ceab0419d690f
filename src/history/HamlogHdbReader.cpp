#include "history/HamlogHdbReader.h"

#include "failure/Failure.h"
#include "text/SjisCodec.h"
#include "text/SjisText.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <sys/types.h>

namespace vornhale::history {
namespace {

constexpr std::size_t kHeaderSize = 32;
constexpr std::size_t kDescriptorSize = 32;
// Records are read in windows of about this many bytes.
constexpr std::size_t kWindowBytes = 1 << 20;

std::uint16_t le16(const unsigned char* p) { return static_cast<std::uint16_t>(p[0] | p[1] << 8); }
std::uint32_t le32(const unsigned char* p)
{
    return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
           static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

std::string_view rtrimBlanks(std::string_view s)
{
    while (!s.empty() && s.back() == ' ') {
        s.remove_suffix(1);
    }
    return s;
}
std::string_view ltrimBlanks(std::string_view s)
{
    while (!s.empty() && s.front() == ' ') {
        s.remove_prefix(1);
    }
    return s;
}

bool sameName(std::string_view a, std::string_view b)
{
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::toupper(static_cast<unsigned char>(x)) ==
                      std::toupper(static_cast<unsigned char>(y));
           });
}

// At least two decimal digits, as "%02u" gives them.
void appendTwoDigits(std::string& out, unsigned value)
{
    if (value >= 100) {
        out.append(std::to_string(value));
        return;
    }
    out.push_back(static_cast<char>('0' + value / 10));
    out.push_back(static_cast<char>('0' + value % 10));
}

// Shift-JIS bytes into a field, reusing its storage for the usual ASCII text.
void assignText(std::string& field, std::string_view bytes)
{
    const bool ascii = std::all_of(bytes.begin(), bytes.end(),
                                   [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (ascii) {
        field.assign(bytes);
    } else {
        field = text::decodeSjis(bytes);
    }
}

} // namespace

HamlogHdbReader::~HamlogHdbReader() { close(); }

std::optional<long> HamlogHdbReader::open(const std::filesystem::path& path)
{
    close();
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) {
        return std::nullopt;
    }
    const auto size = std::filesystem::file_size(path, ec);
    if (ec || size < kHeaderSize) {
        return std::nullopt;
    }
    m_file = std::fopen(path.c_str(), "rb");
    if (!m_file) {
        return std::nullopt;
    }
    m_fileSize = size;

    auto fail = [this]() -> std::optional<long> {
        close();
        return std::nullopt;
    };
    unsigned char head[kHeaderSize];
    if (std::fread(head, 1, kHeaderSize, m_file) != kHeaderSize) {
        return fail();
    }
    if (head[0] != 0x03 && head[0] != 0x1A) {
        return fail();
    }
    const std::uint32_t count = le32(head + 4);
    m_headerLength = le16(head + 8);
    m_recordLength = le16(head + 10);
    if (m_headerLength <= kHeaderSize || m_headerLength > m_fileSize || m_recordLength < 1) {
        return fail();
    }
    std::vector<unsigned char> descriptors(m_headerLength - kHeaderSize);
    if (std::fread(descriptors.data(), 1, descriptors.size(), m_file) != descriptors.size()) {
        return fail();
    }
    std::size_t offset = 1;
    for (std::size_t at = 0; at < descriptors.size() && descriptors[at] != 0x0D;
         at += kDescriptorSize) {
        if (at + kDescriptorSize > descriptors.size()) {
            return fail();
        }
        const unsigned char* d = descriptors.data() + at;
        Field f;
        f.name.assign(reinterpret_cast<const char*>(d), 11);
        f.name = std::string(rtrimBlanks(text::Cut_nul(f.name)));
        f.offset = offset;
        f.width = d[16];
        offset += f.width;
        m_layout.push_back(std::move(f));
    }
    if (m_layout.empty() || offset > m_recordLength) {
        return fail();
    }
    m_calls = find("CALLS");
    m_ign = find("IGN");
    m_date = find("DATE");
    m_time = find("TIME");
    m_flag = find("FLAG");
    static const char* const kText[14] = {nullptr, nullptr, nullptr, "HIS",  "MY",
                                          "FREQ",  "MODE",  "CODE",  "GL",   "QSL",
                                          "NAME",  "QTH",   "RMK1",  "RMK2"};
    for (std::size_t i = 0; i < 14; ++i) {
        m_text[i] = kText[i] ? find(kText[i]) : nullptr;
    }
    if (!m_calls || !m_date || !m_time || !m_text[5] || !m_text[6] || !m_text[9]) {
        return fail();
    }
    m_count = static_cast<long>(count);
    return m_count;
}

const HamlogHdbReader::Field* HamlogHdbReader::find(std::string_view name) const
{
    for (const Field& f : m_layout) {
        if (sameName(f.name, name)) {
            return &f;
        }
    }
    return nullptr;
}

std::string_view HamlogHdbReader::fieldBytes(const unsigned char* record, const Field* field) const
{
    if (!field) {
        return {};
    }
    return {reinterpret_cast<const char*>(record) + field->offset, field->width};
}

const unsigned char* HamlogHdbReader::recordBytes(long number)
{
    if (!m_file || number < 1 || number > m_count) {
        throw failure::Failure(failure::SubscriptOutOfRange,
                           "インデックスが有効範囲にありません。 " + std::to_string(number));
    }
    if (number >= m_bufferFirst && number < m_bufferFirst + m_bufferCount) {
        return m_buffer.data() + static_cast<std::size_t>(number - m_bufferFirst) * m_recordLength;
    }
    const std::uint64_t start =
        m_headerLength + static_cast<std::uint64_t>(number - 1) * m_recordLength;
    const std::uint64_t available = start < m_fileSize ? m_fileSize - start : 0;
    const long inFile = static_cast<long>(std::min<std::uint64_t>(
        available / m_recordLength, static_cast<std::uint64_t>(m_count - number + 1)));
    if (inFile < 1) {
        throw failure::Failure(failure::InputPastEnd,
                           "ファイルにこれ以上データがありません。 レコード " +
                               std::to_string(number));
    }
    const long want =
        std::min<long>(inFile, std::max<long>(1, static_cast<long>(kWindowBytes / m_recordLength)));
    m_buffer.resize(static_cast<std::size_t>(want) * m_recordLength);
    if (fseeko(m_file, static_cast<off_t>(start), SEEK_SET) != 0 ||
        std::fread(m_buffer.data(), 1, m_buffer.size(), m_file) != m_buffer.size()) {
        m_bufferCount = 0;
        throw failure::Failure(failure::DeviceIo,
                           "デバイス I/O エラーです。 レコード " + std::to_string(number));
    }
    m_bufferFirst = number;
    m_bufferCount = want;
    return m_buffer.data();
}

const HamlogFields& HamlogHdbReader::read(long number)
{
    const unsigned char* record = recordBytes(number);

    std::uint16_t flag = 0;
    if (m_flag && m_flag->width >= 2) {
        flag = le16(record + m_flag->offset);
    }
    assignText(m_fields[0], joinCall(text::Cut_nul(fieldBytes(record, m_calls)),
                                     text::Cut_nul(fieldBytes(record, m_ign)), flag));

    unsigned char date[4] = {0, 0, 0, 0};
    std::memcpy(date, record + m_date->offset, std::min<std::size_t>(4, m_date->width));
    std::string& d = m_fields[1];
    d.clear();
    appendTwoDigits(d, date[1]);
    d.push_back('/');
    appendTwoDigits(d, date[2]);
    d.push_back('/');
    appendTwoDigits(d, date[3]);

    unsigned char time[2] = {0, 0};
    std::memcpy(time, record + m_time->offset, std::min<std::size_t>(2, m_time->width));
    std::string& t = m_fields[2];
    t.clear();
    appendTwoDigits(t, time[0]);
    t.push_back(':');
    appendTwoDigits(t, time[1] & 0x7Fu);
    t.push_back((time[1] & 0x80) ? 'U' : 'J');

    for (std::size_t i = 3; i < 14; ++i) {
        std::string_view bytes = text::Cut_nul(fieldBytes(record, m_text[i]));
        if (i != 9) {
            bytes = rtrimBlanks(bytes);
        }
        assignText(m_fields[i], bytes);
    }
    return m_fields;
}

void HamlogHdbReader::close()
{
    if (m_file) {
        std::fclose(m_file);
        m_file = nullptr;
    }
    m_layout.clear();
    m_calls = m_ign = m_date = m_time = m_flag = nullptr;
    std::fill(std::begin(m_text), std::end(m_text), nullptr);
    m_buffer.clear();
    m_buffer.shrink_to_fit();
    m_bufferFirst = m_bufferCount = 0;
    m_count = 0;
    m_fileSize = 0;
}

std::string HamlogHdbReader::joinCall(std::string_view calls, std::string_view ign,
                                      std::uint16_t flag)
{
    const std::string_view base = ltrimBlanks(rtrimBlanks(calls));
    // The head of IGN, up to a blank, is the rest of a call too long for CALLS.
    std::string_view more;
    std::string_view rest = ign;
    if (!rest.empty() && rest.front() != ' ') {
        const std::size_t blank = rest.find(' ');
        more = rest.substr(0, blank);
        rest = blank == std::string_view::npos ? std::string_view{} : rest.substr(blank);
    }
    // What stands right-aligned behind is the portable or prefix part.
    rest = rtrimBlanks(ltrimBlanks(rest));

    std::string call;
    constexpr std::uint16_t kForeign = 0x08, kReversed = 0x02;
    if ((flag & kForeign) && (flag & kReversed)) {
        const std::size_t slash = rest.find('/');
        const std::string_view prefix = rest.substr(0, slash);
        const std::string_view after =
            slash == std::string_view::npos ? std::string_view{} : rest.substr(slash + 1);
        call.append(prefix);
        if (!prefix.empty()) {
            call.push_back('/');
        }
        call.append(base);
        call.append(more);
        if (!after.empty()) {
            call.push_back('/');
            call.append(after);
        }
    } else {
        call.append(base);
        call.append(more);
        if (!rest.empty()) {
            call.push_back('/');
            call.append(rest);
        }
    }
    return call;
}

} // namespace vornhale::history
