#pragma once

#include "text/FileBytes.h"

#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::text {

/// One record line: every field in double quotes, separated by one comma, no blanks outside
/// the quotes. There is no escape for a double quote inside a field.
template <typename Range>
std::string formatRecord(const Range& fields)
{
    std::size_t size = 0;
    for (const auto& f : fields) {
        size += std::string_view(f).size() + 3;
    }
    std::string line;
    line.reserve(size);
    for (const auto& f : fields) {
        if (!line.empty()) {
            line.push_back(',');
        }
        line.push_back('"');
        line.append(std::string_view(f));
        line.push_back('"');
    }
    return line;
}

inline std::string formatRecord(std::initializer_list<std::string_view> fields)
{
    return formatRecord<std::initializer_list<std::string_view>>(fields);
}

/// Reads fields back by position, as records were always read by the program:
/// a field begins at the first non-blank character after the previous separator; a double
/// quote there makes it run to the next double quote (what follows up to the next comma or
/// line end is dropped), otherwise it runs to the next comma or line end with surrounding
/// blanks dropped. Line ends separate fields like commas, so a record with too few fields
/// takes the missing ones from the following line.
class RecordReader
{
public:
    /// Reads the whole Shift-JIS file. Throws Failure 53 when it cannot be opened.
    explicit RecordReader(const std::filesystem::path& path);
    /// Reads from text already decoded (UTF-8).
    static RecordReader fromText(std::string text);

    bool atEnd() const { return m_pos >= text().size(); }
    /// The next field. Throws Failure 62 when the input is at its end.
    std::string field();
    /// The next `count` fields.
    std::vector<std::string> fields(std::size_t count);
    /// The next `count` fields into `out` (cleared first), as views into the reader's text:
    /// they stay valid as long as the reader lives. Throws Failure 62 as `fields` does.
    void fieldViews(std::size_t count, std::vector<std::string_view>& out);

    /// Another reader of the same text from its start, sharing it with this one.
    RecordReader again() const;
    /// The offset of the next field in the text, the text, and a move to an offset taken to be
    /// the start of a record: for the work in parts of `text::turnRecords`.
    std::size_t position() const { return m_pos; }
    std::string_view bytes() const { return text(); }
    void skipTo(std::size_t offset) { m_pos = offset; }

private:
    RecordReader() = default;
    std::string_view text() const
    {
        return m_file      ? m_file->view()
               : m_decoded ? std::string_view(*m_decoded)
                           : std::string_view();
    }
    std::shared_ptr<const FileBytes> m_file;
    std::shared_ptr<const std::string> m_decoded;
    std::size_t m_pos = 0;
};

} // namespace vornhale::text
