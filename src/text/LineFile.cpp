#include "text/LineFile.h"

#include "failure/Failure.h"
#include "text/FileBytes.h"
#include "text/SjisCodec.h"
#include "text/Utf8.h"
#include "text/WriteBehind.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <system_error>

namespace vornhale::text {
namespace {

[[noreturn]] void fileNotFound(const std::filesystem::path& path)
{
    throw failure::Failure(failure::FileNotFound, "ファイルが見つかりません。 " + path.string());
}

[[noreturn]] void inputPastEnd()
{
    throw failure::Failure(failure::InputPastEnd, "ファイルの終わりを越えて入力しようとしました。");
}

// The offset of the CR or LF that ends the line starting at `start`, or the size of `text`.
// The search goes by windows, each looked through with memchr for an LF and then for an
// earlier CR, so that a file whose lines end in CR alone or LF alone is still read in one pass.
std::size_t lineEnd(std::string_view text, std::size_t start)
{
    constexpr std::size_t kWindow = 256;
    for (std::size_t at = start; at < text.size(); at += kWindow) {
        const char* const from = text.data() + at;
        const std::size_t size = std::min(kWindow, text.size() - at);
        const auto* lf = static_cast<const char*>(std::memchr(from, '\n', size));
        const std::size_t span = lf != nullptr ? static_cast<std::size_t>(lf - from) : size;
        const auto* cr = static_cast<const char*>(std::memchr(from, '\r', span));
        if (cr != nullptr) {
            return at + static_cast<std::size_t>(cr - from);
        }
        if (lf != nullptr) {
            return at + span;
        }
    }
    return text.size();
}

// The offset after the line end at `end`: past a CR LF pair, a CR or an LF.
std::size_t afterLineEnd(std::string_view text, std::size_t end)
{
    if (end >= text.size()) {
        return end;
    }
    return (text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n') ? end + 2
                                                                                : end + 1;
}

// The bytes a writer gathers before handing them to the writer thread: few enough hand-overs
// that their cost does not count, little enough memory that a short file needs one buffer.
constexpr std::size_t kHandOver = 1 << 18;

} // namespace

std::string readFileBytes(const std::filesystem::path& path)
{
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec)) {
        fileNotFound(path);
    }
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (f == nullptr) {
        fileNotFound(path);
    }
    std::string bytes;
    const auto size = std::filesystem::file_size(path, ec);
    if (!ec) {
        bytes.reserve(static_cast<std::size_t>(size));
        preferLargePages(bytes.data(), bytes.capacity());
        bytes.resize(static_cast<std::size_t>(size));
        bytes.resize(readFromStart(f, bytes.data(), bytes.size()));
    }
    char buf[1 << 16];
    std::size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) {
        bytes.append(buf, n);
    }
    std::fclose(f);
    return bytes;
}

std::vector<std::string_view> splitLines(std::string_view text)
{
    std::vector<std::string_view> lines;
    lines.reserve(text.size() / 64 + 1);
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t end = lineEnd(text, start);
        lines.push_back(text.substr(start, end - start));
        start = afterLineEnd(text, end);
    }
    return lines;
}

std::vector<std::string> readLines(const std::filesystem::path& path)
{
    const std::string bytes = readFileBytes(path);
    std::vector<std::string> lines;
    for (std::string_view line : splitLines(bytes)) {
        lines.push_back(decodeSjis(line));
    }
    return lines;
}

std::vector<std::string> readRawLines(const std::filesystem::path& path)
{
    const std::string bytes = readFileBytes(path);
    std::vector<std::string> lines;
    for (std::string_view line : splitLines(bytes)) {
        lines.emplace_back(line);
    }
    return lines;
}

namespace {

// Counts the line ends of the file's bytes piece by piece: CR, LF and CR LF each end a line.
class LineEndCount
{
public:
    void add(const char* buf, std::size_t n)
    {
        if (n == 0) {
            return;
        }
        const char* const end = buf + n;
        // Both bytes count, and one is taken back per CR LF.
        for (const char* p = buf; (p = static_cast<const char*>(std::memchr(p, '\n', end - p)));
             ++p) {
            ++m_ends;
        }
        // A CR counts unless an LF follows it in this piece; an LF at the start of the next
        // piece is taken back below.
        for (const char* p = buf; (p = static_cast<const char*>(std::memchr(p, '\r', end - p)));
             ++p) {
            if (!(p + 1 < end && p[1] == '\n')) {
                ++m_ends;
            }
        }
        if (m_lastWasCr && buf[0] == '\n') {
            --m_ends;
        }
        m_lastWasCr = buf[n - 1] == '\r';
    }
    long ends() const { return m_ends; }

private:
    long m_ends = 0;
    bool m_lastWasCr = false;
};

} // namespace

long Count_lines(const std::filesystem::path& path)
{
    LineEndCount count;
    // A count needs no copy of the file: one made already for its reading is used.
    if (const auto kept = keptBytesIfRead(path)) {
        count.add(kept->data(), kept->size());
        return count.ends() + 1;
    }
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (f == nullptr) {
        return 0;
    }
    char buf[1 << 16];
    std::size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) {
        count.add(buf, n);
    }
    std::fclose(f);
    return count.ends() + 1;
}

LineReader::LineReader(const std::filesystem::path& path)
    : m_bytes(std::make_shared<const FileBytes>(FileBytes::read(path)))
{
}

LineReader LineReader::ofWorkingFile(const std::filesystem::path& path)
{
    return LineReader(std::make_shared<const FileBytes>(path));
}

std::string_view LineReader::nextRaw()
{
    if (atEnd()) {
        inputPastEnd();
    }
    m_released.at(*m_bytes, m_pos);
    const std::string_view all = m_bytes->view();
    const std::size_t end = lineEnd(all, m_pos);
    const std::string_view line = all.substr(m_pos, end - m_pos);
    m_pos = afterLineEnd(all, end);
    return line;
}

std::string LineReader::next() { return decodeSjis(nextRaw()); }

LineWriter::LineWriter(const std::filesystem::path& path, Mode mode)
    : m_path(path), m_writePath(path), m_replace(mode == Mode::ReplaceWhenDone)
{
    if (m_replace) {
        m_writePath += ".writing";
    }
    m_file =
        std::make_unique<WriteBehind>(m_writePath, mode == Mode::Append, mode == Mode::ForTheDisk);
    if (!m_file->isOpen()) {
        throw failure::Failure(failure::PathFileAccess,
                           "パス名が無効です。 " + m_path.string());
    }
    m_buffer.reserve(1 << 16);
}

LineWriter::~LineWriter()
{
    if (m_file != nullptr) {
        // A replacing writer that was not closed is abandoned; any other keeps what it wrote.
        if (!m_replace) {
            m_file->writeNow(m_buffer);
        }
        m_file->close();
        if (m_replace) {
            std::error_code ec;
            std::filesystem::remove(m_writePath, ec);
        }
    }
}

void LineWriter::writeRaw(std::string_view bytes)
{
    m_buffer.append(bytes);
    endLine();
}

void LineWriter::endLine()
{
    m_buffer.append("\r\n", 2);
    if (m_buffer.size() >= kHandOver) [[unlikely]] {
        flush();
    }
}

void LineWriter::appendEncoded(std::string_view utf8)
{
    if (isAsciiText(utf8)) {
        m_buffer.append(utf8);
    } else {
        m_buffer.append(encodeSjis(utf8));
    }
}

void LineWriter::flush()
{
    if (m_file != nullptr) {
        m_file->write(m_buffer);
    }
}

LineWriter LineWriter::inMemory(std::size_t expectedSize)
{
    LineWriter memory;
    memory.m_buffer.reserve(expectedSize);
    preferLargePages(memory.m_buffer.data(), memory.m_buffer.capacity());
    return memory;
}

void LineWriter::writeLines(std::string&& lines)
{
    if (m_file == nullptr) {
        m_buffer.append(lines);
        return;
    }
    if (!m_buffer.empty()) {
        flush();
    }
    m_file->writeBlock(std::move(lines));
}

void LineWriter::write(std::string_view line)
{
    if (isAsciiText(line)) {
        writeRaw(line);
    } else {
        writeRaw(encodeSjis(line));
    }
}

void LineWriter::close()
{
    if (m_file == nullptr) {
        return;
    }
    m_file->writeNow(m_buffer);
    const bool written = m_file->close();
    m_file.reset();
    if (!written) {
        if (m_replace) {
            std::error_code ec;
            std::filesystem::remove(m_writePath, ec);
        }
        throw failure::Failure(failure::DeviceIo, "デバイス I/O エラーです。 " + m_path.string());
    }
    if (m_replace) {
        std::error_code ec;
        std::filesystem::rename(m_writePath, m_path, ec);
        if (ec) {
            std::filesystem::remove(m_writePath, ec);
            throw failure::Failure(failure::PathFileAccess,
                               "パス名が無効です。 " + m_path.string());
        }
    }
}

void writeFileSjis(const std::filesystem::path& path, std::string_view text)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out) {
        throw failure::Failure(failure::PathFileAccess, "パス名が無効です。 " + path.string());
    }
    const std::string bytes = encodeSjis(text);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

} // namespace vornhale::text
