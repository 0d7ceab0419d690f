#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

namespace vornhale::text {

/// A file whose bytes are written by one writer thread of the program while the caller goes on
/// making the next ones. The writes of all such files keep the order in which they were handed
/// over, and `close` returns only when every byte of its file is written, so a file is whole
/// before anything can open it again.
class WriteBehind
{
public:
    /// Opens `path` for writing, emptied or, with `append`, at its end; `isOpen` tells whether
    /// it could be. With `forTheDisk` each piece starts on its way to the disk once written,
    /// for a file that is to be flushed when whole.
    WriteBehind(const std::filesystem::path& path, bool append, bool forTheDisk = false);
    /// Waits for the file's writes and closes it.
    ~WriteBehind();
    WriteBehind(const WriteBehind&) = delete;
    WriteBehind& operator=(const WriteBehind&) = delete;

    bool isOpen() const;
    /// Hands the bytes of `buffer` over to be written, leaving `buffer` empty with room for as
    /// many again.
    void write(std::string& buffer);
    /// Hands over a block of bytes made elsewhere, to be written after those handed before.
    void writeBlock(std::string&& block);
    /// Writes the bytes of `buffer` at once, after those handed over before (the last of a
    /// file, which nothing else overtakes), and empties it.
    void writeNow(std::string& buffer);
    /// Waits for the file's writes and closes it; false when a write or the close failed.
    bool close();

    struct State;

private:
    std::shared_ptr<State> m_state;
};

/// Removes the file at `path` as `std::filesystem::remove` does: true when there was one. The
/// system releases the pages of a removed file as it goes, at a cost in proportion to its
/// size; for a large file that is left to the writer thread.
bool removeBehind(const std::filesystem::path& path, std::error_code& ec);

/// Renames `from` to `to` as `std::filesystem::rename` does; a large file that was at `to` is
/// released by the writer thread, as `removeBehind` releases it.
void renameBehind(const std::filesystem::path& from, const std::filesystem::path& to,
                  std::error_code& ec);

} // namespace vornhale::text
