#pragma once

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace vornhale::text {

/// The bytes of a whole file, read only, held in one of two ways.
///
/// A file of the program's own (a working file or a result beside the log, written and closed
/// before it is read) is mapped rather than copied: its pages stay where the system keeps them,
/// so reading it costs neither a copy nor fresh memory. A mapped file must not be emptied or cut
/// short while its bytes are in use (the system ends a program that reads past a cut), so this
/// is only for files that the program replaces by writing a new file and renaming it, never by
/// writing over them, and that no other program writes.
///
/// Any other file (masters, lists) is copied into memory by `read`. The operator's log, kept
/// for the run (see `keepReadsOf`), is mapped too, under a guard against its being cut short
/// by the logging program while it is read (see `guardMapping`): a copy would cost as much
/// fresh memory as the log is long, and fresh memory is the dearest part of reading a log.
class FileBytes
{
public:
    /// Maps a file of the program's own; one that cannot be mapped is copied instead. Throws
    /// Failure 53 when the file cannot be opened, as `readFileBytes` does.
    explicit FileBytes(const std::filesystem::path& path);
    /// The bytes of a file from outside the program. The kept input is read once and its
    /// bytes shared for as long as the file stays as it was; any other file is copied into
    /// memory. Throws as `readFileBytes` does.
    static FileBytes read(const std::filesystem::path& path);
    /// The bytes of a file from outside the program, mapped under the guard where it can be
    /// and copied where not. Throws as `readFileBytes` does.
    static FileBytes mapGuarded(const std::filesystem::path& path);
    /// Bytes held in memory, as though read from a file.
    static FileBytes of(std::string bytes);

    ~FileBytes();
    FileBytes(FileBytes&& other) noexcept;
    FileBytes& operator=(FileBytes&& other) noexcept;
    FileBytes(const FileBytes&) = delete;
    FileBytes& operator=(const FileBytes&) = delete;

    std::string_view view() const { return {m_data, m_size}; }
    /// Lets the system take back the pages of a mapped file that lie wholly between `from` and
    /// `to`, a part read already: the process then holds less of the file, and a later read
    /// of that part brings the pages back from the file. Nothing for bytes held in memory.
    void releaseRange(std::size_t from, std::size_t to) const;
    const char* data() const { return m_data; }
    std::size_t size() const { return m_size; }

private:
    FileBytes() = default;
    FileBytes(std::shared_ptr<const void> owner, std::string_view bytes);
    void release() noexcept;

    const char* m_data = "";
    std::size_t m_size = 0;
    void* m_mapping = nullptr;
    int m_guard = -1;
    // What holds the bytes when they are not this object's own mapping (a string, or the kept
    // input's bytes), shared, so that they never move while a view of them is in use.
    std::shared_ptr<const void> m_owner;
};

/// The part of a file that a reader reading from start to end has read, given back to the
/// system a few megabytes at a time (`FileBytes::releaseRange`), so that a long working file is
/// never held whole while it is read.
class ReleasedBehind
{
public:
    /// The reader reads on from `offset`.
    void skipTo(std::size_t offset) { m_from = offset; }
    /// The reader is at `position` of `bytes`.
    void at(const FileBytes& bytes, std::size_t position)
    {
        if (position >= m_from + kStep) {
            bytes.releaseRange(m_from, position);
            m_from = position;
        }
    }

private:
    static constexpr std::size_t kStep = std::size_t{4} << 20;
    // Where the part read and not yet released begins.
    std::size_t m_from = 0;
};

/// Asks the system to back a large buffer that is about to be written with large pages where
/// it can, which spares most of the faults of its first writing. Only a hint; the parts of the
/// buffer outside whole large pages, and small buffers, are left as they are.
void preferLargePages(void* data, std::size_t size);

/// Reads up to `size` bytes from the start of the open file `file` into `into` and leaves the
/// file's position after them; returns the bytes read, fewer when the file ends sooner. A large
/// file is read in two halves side by side: the copy out of the system's cache is the cost of a
/// read, and two processors copy it in half the time.
std::size_t readFromStart(std::FILE* file, char* into, std::size_t size);

/// Makes `path` the kept input: the log a run reads several times (to tell its kind, to count
/// and analyse it, to convert it). `FileBytes::read` then maps it once and shares those bytes
/// while its size, times and identity stay as they were; `Count_lines` counts them when they
/// are there. An empty path keeps nothing and lets the kept bytes go.
void keepReadsOf(const std::filesystem::path& path);

/// The bytes of `path` when it is the kept input, read now or shared from before; null for any
/// other file. Throws as `readFileBytes` does when the kept input cannot be read.
std::shared_ptr<const FileBytes> keptBytesOf(const std::filesystem::path& path);

/// The bytes of `path` when it is the kept input and was read already, unchanged since; null
/// otherwise. Never reads.
std::shared_ptr<const FileBytes> keptBytesIfRead(const std::filesystem::path& path);

/// The bytes of a file from outside the program as `FileBytes::read` gives them, to be shared
/// by those who read them.
std::shared_ptr<const FileBytes> readShared(const std::filesystem::path& path);

} // namespace vornhale::text
