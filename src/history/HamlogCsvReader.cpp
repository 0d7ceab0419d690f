#include "history/HamlogCsvReader.h"

#include "failure/Failure.h"
#include "text/LineFile.h"
#include "text/SjisCodec.h"
#include "text/SjisText.h"

#include <fstream>
#include <iterator>

namespace vornhale::history {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// "yyyy/mm/dd" becomes "yy/mm/dd"; anything else stays as it is.
void twoDigitYear(std::string& date)
{
    if (date.size() > 4 && isDigit(date[0]) && isDigit(date[1]) && isDigit(date[2]) &&
        isDigit(date[3]) && date[4] == '/') {
        date.erase(0, 2);
    }
}

} // namespace

std::optional<long> HamlogCsvReader::open(const std::filesystem::path& path)
{
    close();
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) {
        return std::nullopt;
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        return std::nullopt;
    }
    m_bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    if (in.bad()) {
        close();
        return std::nullopt;
    }
    for (std::string_view line : text::splitLines(m_bytes)) {
        if (!line.empty()) {
            m_lines.push_back(line);
        }
    }
    return static_cast<long>(m_lines.size());
}

const HamlogFields& HamlogCsvReader::read(long number)
{
    if (number < 1 || static_cast<std::size_t>(number) > m_lines.size()) {
        throw failure::Failure(failure::SubscriptOutOfRange,
                           "インデックスが有効範囲にありません。 " + std::to_string(number));
    }
    m_fields = parseLine(m_lines[static_cast<std::size_t>(number - 1)]);
    return m_fields;
}

void HamlogCsvReader::close()
{
    m_lines.clear();
    m_bytes.clear();
    m_bytes.shrink_to_fit();
}

HamlogFields HamlogCsvReader::parseLine(std::string_view line)
{
    HamlogFields fields;
    std::size_t pos = 0;
    for (std::size_t n = 0; n < fields.size() && pos <= line.size(); ++n) {
        std::string raw;
        if (pos < line.size() && line[pos] == '"') {
            ++pos;
            while (pos < line.size()) {
                const char c = line[pos++];
                if (c == '"') {
                    if (pos < line.size() && line[pos] == '"') {
                        raw.push_back('"');
                        ++pos;
                        continue;
                    }
                    break;
                }
                raw.push_back(c);
            }
            // What follows the closing quote up to the comma is not part of the field.
            const std::size_t comma = line.find(',', pos);
            pos = comma == std::string_view::npos ? line.size() + 1 : comma + 1;
        } else {
            const std::size_t comma = line.find(',', pos);
            const std::size_t end = comma == std::string_view::npos ? line.size() : comma;
            raw.assign(line.substr(pos, end - pos));
            pos = end + 1;
        }
        fields[n] = text::decodeSjisTaking(std::string(text::Cut_nul(raw)));
    }
    twoDigitYear(fields[1]);
    return fields;
}

} // namespace vornhale::history
