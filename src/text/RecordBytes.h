#pragma once

#include "text/FileBytes.h"

#include <cstddef>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::text {

/// The records of a working file, read from its Shift-JIS bytes with the fields found where a
/// `RecordReader` finds them in the decoded text. Commas, quotes, blanks and line ends are
/// ASCII bytes that are never the second byte of a double-byte character, and the decoder
/// never joins them to a byte before them, so they stand at the same places in the bytes as in
/// the text. A record of ASCII bytes is its own text and is never decoded.
class RecordBytes
{
public:
    /// Reads the whole file. Throws Failure 53 when it cannot be opened.
    explicit RecordBytes(const std::filesystem::path& path);
    /// Another reader of the same bytes from their start, sharing them with this one.
    RecordBytes again() const { return RecordBytes(m_bytes); }

    bool atEnd() const { return m_pos >= m_bytes->size(); }
    /// The offset of the next record's first byte in the file.
    std::size_t position() const { return m_pos; }
    /// The file's bytes.
    std::string_view bytes() const { return m_bytes->view(); }
    /// Reads on from `offset`, which is taken to be the start of a record.
    void skipTo(std::size_t offset)
    {
        m_pos = offset;
        m_released.skipTo(offset);
    }

    /// The next `count` fields into `out`, as `RecordReader::fieldViews` gives them. True when
    /// the record's bytes are all ASCII: the views are then the file's own bytes. Otherwise
    /// each field with other bytes is decoded into the reader and stays valid until the next
    /// call. Throws Failure 62 when the file ends before the record does.
    bool next(std::size_t count, std::vector<std::string_view>& out);

    /// Whether the last record stood as a record line writes it: every field opened by a quote
    /// right after the comma of the one before. The bytes from a field's opening quote to a
    /// later field's closing quote are then those fields as a record line holds them.
    bool canonical() const { return m_canonical; }

    /// A field read by the general rules from `p` (a record's bytes ending at `end`), as
    /// `RecordReader` reads it from the text; `p` moves past the field's separator. For a field
    /// that does not start with its quote, or whose quote no comma follows.
    static std::string_view generalField(const char*& p, const char* end);
    /// The first comma, CR or LF from `q` on, or `end`.
    static const char* toSeparator(const char* q, const char* end)
    {
        while (q < end && *q != ',' && *q != '\r' && *q != '\n') {
            ++q;
        }
        return q;
    }
    /// The position after the separator at `q`: past a comma, an LF, a CR or a CR LF pair.
    static const char* pastSeparator(const char* q, const char* end)
    {
        if (q < end) {
            if (*q == ',' || *q == '\n') {
                ++q;
            } else if (*q == '\r') {
                q += (q + 1 < end && q[1] == '\n') ? 2 : 1;
            }
        }
        return q;
    }

private:
    explicit RecordBytes(std::shared_ptr<const FileBytes> bytes) : m_bytes(std::move(bytes)) {}

    // The usual record, quoted fields of ASCII bytes with one comma between them, read from
    // the quotes alone, eight bytes at a time. False, with nothing consumed, for any other.
    bool quotedRecord(std::size_t count, std::vector<std::string_view>& out);

    std::shared_ptr<const FileBytes> m_bytes;
    std::size_t m_pos = 0;
    ReleasedBehind m_released;
    std::vector<std::string> m_decoded;
    bool m_canonical = false;
};

/// A record line of ASCII fields, every field in double quotes and one comma between them, for
/// the writer's raw path: there is nothing to encode.
class AsciiRecordLine
{
public:
    void clear() { m_size = 0; }
    /// Appends one field.
    void field(std::string_view f)
    {
        char* p = room(f.size() + 3);
        p[0] = ',';
        p[1] = '"';
        if (!f.empty()) {
            std::memcpy(p + 2, f.data(), f.size());
        }
        p[f.size() + 2] = '"';
        m_size += f.size() + 3;
    }
    /// Appends the fields from `first` to `last` of a canonical record of ASCII bytes (both views
    /// into that record), copied with their quotes and commas.
    void fields(std::string_view first, std::string_view last);
    void emptyField();
    /// The line; the comma before its first field is not part of it.
    std::string_view text() const { return std::string_view(m_text).substr(1, m_size - 1); }

private:
    // Room for `size` more bytes at the end of the line.
    char* room(std::size_t size)
    {
        if (m_size + size > m_text.size()) [[unlikely]] {
            grow(size);
        }
        return m_text.data() + m_size;
    }
    void grow(std::size_t size);

    std::string m_text;
    std::size_t m_size = 0;
};

} // namespace vornhale::text
