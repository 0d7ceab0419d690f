#pragma once

#include "text/FileBytes.h"

#include <cstdio>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::text {

class WriteBehind;

/// The whole file as bytes. Throws Failure 53 when it cannot be opened.
std::string readFileBytes(const std::filesystem::path& path);

/// Splits text into lines: CR LF, CR and LF each end a line; a final line end opens no
/// empty last line.
std::vector<std::string_view> splitLines(std::string_view text);

/// The lines of a Shift-JIS file, decoded. Throws Failure 53 when it cannot be opened.
std::vector<std::string> readLines(const std::filesystem::path& path);

/// The lines of a file as raw bytes, undecoded (for byte-exact stages such as the sort).
std::vector<std::string> readRawLines(const std::filesystem::path& path);

/// The line number of the end of a text file: the number of line ends plus one, so a file
/// whose last line ends in CR LF counts one more than its lines. 0 when it cannot be read.
/// The kept input (see `keepReadsOf`), when read already, is counted from its bytes.
long Count_lines(const std::filesystem::path& path);

/// Reads a Shift-JIS file line by line, testing for the end before each read.
class LineReader
{
public:
    /// Opens and reads the file. Throws Failure 53 when it cannot be opened.
    explicit LineReader(const std::filesystem::path& path);
    /// Reads a file of the program's own where it lies (see `FileBytes`).
    static LineReader ofWorkingFile(const std::filesystem::path& path);

    /// Another reader of the same bytes from their start, sharing them with this one.
    LineReader again() const { return LineReader(m_bytes); }

    bool atEnd() const { return m_pos >= m_bytes->size(); }
    /// The offset of the next line's first byte in the file.
    std::size_t position() const { return m_pos; }
    /// The file's bytes.
    std::string_view bytes() const { return m_bytes->view(); }
    /// Reads on from `offset`, which is taken to be the start of a line.
    void skipTo(std::size_t offset)
    {
        m_pos = offset;
        m_released.skipTo(offset);
    }
    /// The next line, decoded. Throws Failure 62 at the end of the file.
    std::string next();
    /// The next line as raw bytes. Throws Failure 62 at the end of the file.
    std::string_view nextRaw();

private:
    explicit LineReader(std::shared_ptr<const FileBytes> bytes) : m_bytes(std::move(bytes)) {}

    std::shared_ptr<const FileBytes> m_bytes;
    std::size_t m_pos = 0;
    ReleasedBehind m_released;
};

/// Writes lines as Shift-JIS with CR LF. With `replaceWhenDone`, the lines go to a temporary
/// file beside `path` that replaces it only at `close()`, so a failure never leaves a half
/// file in place of the previous one.
class LineWriter
{
public:
    /// `ForTheDisk`: emptied as `Truncate`, for a file that is flushed to the disk once
    /// written; its bytes start on their way to the disk as they are written, so that the
    /// flush finds little left to wait for.
    enum class Mode { Truncate, Append, ReplaceWhenDone, ForTheDisk };

    /// Throws Failure 75 when the file cannot be opened for writing.
    explicit LineWriter(const std::filesystem::path& path, Mode mode = Mode::Truncate);
    ~LineWriter();
    LineWriter(const LineWriter&) = delete;
    LineWriter& operator=(const LineWriter&) = delete;

    /// Writes `line` (UTF-8) encoded as Shift-JIS, then CR LF.
    void write(std::string_view line);
    /// Writes bytes as they are, then CR LF.
    void writeRaw(std::string_view bytes);
    /// Writes one record line, every field in double quotes and separated by one comma, as
    /// `write(formatRecord(fields))` would, without building the line first.
    template <typename Range>
    void writeRecord(const Range& fields)
    {
        bool first = true;
        for (const auto& f : fields) {
            m_buffer.append(",\"" + (first ? 1 : 0), first ? 1 : 2);
            appendEncoded(std::string_view(f));
            m_buffer.push_back('"');
            first = false;
        }
        endLine();
    }
    void writeRecord(std::initializer_list<std::string_view> fields)
    {
        writeRecord<std::initializer_list<std::string_view>>(fields);
    }

    /// A writer that keeps its lines in memory: a part of a file made apart from the rest,
    /// joined to it by `writeLines`.
    static LineWriter inMemory(std::size_t expectedSize);
    LineWriter(LineWriter&&) = default;
    /// The lines an in-memory writer holds, taken out of it.
    std::string takeLines() { return std::move(m_buffer); }
    /// Appends whole lines already made (with their line ends) after those written so far.
    void writeLines(std::string&& lines);

    /// Flushes, closes and, in ReplaceWhenDone mode, moves the file into place.
    /// Throws Failure 57 on a failed write.
    void close();

private:
    LineWriter() = default;
    void flush();
    // Appends UTF-8 text encoded as Shift-JIS to the buffer.
    void appendEncoded(std::string_view utf8);
    // Ends the line with CR LF and flushes a full buffer.
    void endLine();

    std::filesystem::path m_path;
    std::filesystem::path m_writePath;
    std::unique_ptr<WriteBehind> m_file;
    std::string m_buffer;
    bool m_replace = false;
};

/// Writes `text` (UTF-8, no line end added) encoded as Shift-JIS, replacing the file.
void writeFileSjis(const std::filesystem::path& path, std::string_view text);

} // namespace vornhale::text
