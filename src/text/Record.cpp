#include "text/Record.h"

#include "failure/Failure.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/RecordBytes.h"
#include "text/SjisCodec.h"


namespace vornhale::text {

RecordReader::RecordReader(const std::filesystem::path& path)
    : m_file(std::make_shared<const FileBytes>(FileBytes::read(path)))
{
    // Text of ASCII bytes is read from the file's bytes as they are.
    if (!isAsciiText(m_file->view())) {
        m_decoded = std::make_shared<const std::string>(decodeSjis(m_file->view()));
        m_file.reset();
    }
}

RecordReader RecordReader::fromText(std::string text)
{
    RecordReader r;
    r.m_decoded = std::make_shared<const std::string>(std::move(text));
    return r;
}

RecordReader RecordReader::again() const
{
    RecordReader r;
    r.m_file = m_file;
    r.m_decoded = m_decoded;
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
    const char* p = text.data() + pos;
    const std::string_view field = RecordBytes::generalField(p, text.data() + text.size());
    pos = static_cast<std::size_t>(p - text.data());
    return field;
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
