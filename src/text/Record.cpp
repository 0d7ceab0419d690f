#include "text/Record.h"

#include "failure/Failure.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/SjisCodec.h"

#include <cstring>

namespace vornhale::text {

RecordReader::RecordReader(const std::filesystem::path& path) : m_file(FileBytes::copyOf(path))
{
    // Text of ASCII bytes is read from the file's bytes as they are.
    if (!isAsciiText(m_file->view())) {
        m_decoded = decodeSjis(m_file->view());
        m_file.reset();
    }
}

RecordReader RecordReader::fromText(std::string text)
{
    RecordReader r;
    r.m_decoded = std::move(text);
    return r;
}

namespace {

[[noreturn]] void inputPastEnd()
{
    throw failure::Failure(failure::InputPastEnd, "ファイルの終わりを越えて入力しようとしました。");
}

// The next field of `text` from `pos`, which must be before the end; `pos` moves past its
// separator. The field is a view into `text`, so the caller builds its string in place.
std::string_view nextField(std::string_view text, std::size_t& pos)
{
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    const char* p = begin + pos;
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
        p = close < end ? close + 1 : end;
        // The usual case, a comma right after the closing quote, needs no walk.
        if (p < end && *p == ',') {
            pos = static_cast<std::size_t>(p + 1 - begin);
        } else {
            pos = static_cast<std::size_t>(consumeSeparator(toSeparator(p)) - begin);
        }
        return {open, static_cast<std::size_t>(close - open)};
    }
    const char* stop = toSeparator(p);
    pos = static_cast<std::size_t>(consumeSeparator(stop) - begin);
    return trim(std::string_view(p, static_cast<std::size_t>(stop - p)));
}

} // namespace

std::string RecordReader::field()
{
    if (atEnd()) {
        inputPastEnd();
    }
    return std::string(nextField(text(), m_pos));
}

std::vector<std::string> RecordReader::fields(std::size_t count)
{
    std::vector<std::string> out;
    out.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (atEnd()) {
            inputPastEnd();
        }
        out.emplace_back(nextField(text(), m_pos));
    }
    return out;
}

void RecordReader::fieldViews(std::size_t count, std::vector<std::string_view>& out)
{
    out.clear();
    out.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (atEnd()) {
            inputPastEnd();
        }
        out.push_back(nextField(text(), m_pos));
    }
}

} // namespace vornhale::text
