#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace vornhale::text {

/// The bytes of a whole file, read only. A file of the program's own (a working file or a
/// result beside the log, written and closed before it is read) is mapped rather than copied:
/// its pages stay where the system keeps them, so reading it costs neither a copy nor fresh
/// memory. Where the file cannot be mapped the bytes are read into memory instead.
///
/// A mapped file must not be emptied or cut short while its bytes are in use (the system ends
/// a program that reads past a cut), so it is only for files that the program replaces by
/// writing a new file and renaming it, never by writing over them, and that no other program
/// writes: never for the operator's log or masters.
class FileBytes
{
public:
    /// Throws Failure 53 when the file cannot be opened, as `readFileBytes` does.
    explicit FileBytes(const std::filesystem::path& path);
    ~FileBytes();
    FileBytes(FileBytes&& other) noexcept;
    FileBytes& operator=(FileBytes&& other) noexcept;
    FileBytes(const FileBytes&) = delete;
    FileBytes& operator=(const FileBytes&) = delete;

    std::string_view view() const { return {m_data, m_size}; }
    const char* data() const { return m_data; }
    std::size_t size() const { return m_size; }

private:
    void release() noexcept;

    const char* m_data = "";
    std::size_t m_size = 0;
    void* m_mapping = nullptr;
    std::string m_held;
};

} // namespace vornhale::text
