#include "text/Record.h"

#include "app/Failure.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/SjisCodec.h"

namespace vornhale::text {

std::string formatRecord(const std::vector<std::string>& fields)
{
    std::string line;
    std::size_t size = 0;
    for (const auto& f : fields) {
        size += f.size() + 3;
    }
    line.reserve(size);
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (i > 0) {
            line.push_back(',');
        }
        line.push_back('"');
        line.append(fields[i]);
        line.push_back('"');
    }
    return line;
}

RecordReader::RecordReader(const std::filesystem::path& path)
    : m_text(decodeSjis(readFileBytes(path)))
{
}

RecordReader RecordReader::fromText(std::string text)
{
    RecordReader r;
    r.m_text = std::move(text);
    return r;
}

std::string RecordReader::field()
{
    if (atEnd()) {
        throw app::Failure(app::failure::InputPastEnd, "ファイルの終わりを越えて入力しようとしました。");
    }
    const std::string_view t(m_text);
    auto isLineEnd = [&](std::size_t i) { return t[i] == '\r' || t[i] == '\n'; };
    auto consumeSeparator = [&] {
        if (m_pos >= t.size()) {
            return;
        }
        if (t[m_pos] == ',') {
            ++m_pos;
        } else if (t[m_pos] == '\r') {
            m_pos += (m_pos + 1 < t.size() && t[m_pos + 1] == '\n') ? 2 : 1;
        } else if (t[m_pos] == '\n') {
            ++m_pos;
        }
    };

    while (m_pos < t.size() && t[m_pos] == ' ') {
        ++m_pos;
    }
    if (m_pos < t.size() && t[m_pos] == '"') {
        const std::size_t begin = m_pos + 1;
        std::size_t end = t.find('"', begin);
        if (end == std::string_view::npos) {
            end = t.size();
        }
        std::string value(t.substr(begin, end - begin));
        m_pos = end < t.size() ? end + 1 : end;
        while (m_pos < t.size() && t[m_pos] != ',' && !isLineEnd(m_pos)) {
            ++m_pos;
        }
        consumeSeparator();
        return value;
    }
    const std::size_t begin = m_pos;
    while (m_pos < t.size() && t[m_pos] != ',' && !isLineEnd(m_pos)) {
        ++m_pos;
    }
    std::string value(trim(t.substr(begin, m_pos - begin)));
    consumeSeparator();
    return value;
}

std::vector<std::string> RecordReader::fields(std::size_t count)
{
    std::vector<std::string> out;
    out.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        out.push_back(field());
    }
    return out;
}

} // namespace vornhale::text
