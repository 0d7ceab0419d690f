#include "text/Record.h"

#include "failure/Failure.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/SjisCodec.h"

#include <cstring>

namespace vornhale::text {

RecordReader::RecordReader(const std::filesystem::path& path)
    : m_text(decodeSjisTaking(readFileBytes(path)))
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
        throw failure::Failure(failure::InputPastEnd, "ファイルの終わりを越えて入力しようとしました。");
    }
    const char* const begin = m_text.data();
    const char* const end = begin + m_text.size();
    const char* p = begin + m_pos;
    auto toSeparator = [end](const char* q) {
        while (q < end && *q != ',' && *q != '\r' && *q != '\n') {
            ++q;
        }
        return q;
    };
    auto consumeSeparator = [end](const char* q) {
        if (q < end) {
            if (*q == ',' || *q == '\n') {
                ++q;
            } else if (*q == '\r') {
                q += (q + 1 < end && q[1] == '\n') ? 2 : 1;
            }
        }
        return q;
    };

    while (p < end && *p == ' ') {
        ++p;
    }
    if (p < end && *p == '"') {
        const char* open = p + 1;
        const char* close = static_cast<const char*>(std::memchr(open, '"', static_cast<std::size_t>(end - open)));
        if (close == nullptr) {
            close = end;
        }
        std::string value(open, close);
        p = close < end ? close + 1 : end;
        // The usual case, a comma right after the closing quote, needs no walk.
        if (p < end && *p == ',') {
            m_pos = static_cast<std::size_t>(p + 1 - begin);
        } else {
            m_pos = static_cast<std::size_t>(consumeSeparator(toSeparator(p)) - begin);
        }
        return value;
    }
    const char* stop = toSeparator(p);
    std::string value(trim(std::string_view(p, static_cast<std::size_t>(stop - p))));
    m_pos = static_cast<std::size_t>(consumeSeparator(stop) - begin);
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
