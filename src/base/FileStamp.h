#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <system_error>

namespace vornhale::base {

/// What tells whether a file is still the one read before: its size and its time of change.
struct FileStamp
{
    std::uintmax_t size = 0;
    std::filesystem::file_time_type changed;

    /// The stamp of `path`; nothing when its size or its time cannot be had.
    static std::optional<FileStamp> of(const std::filesystem::path& path)
    {
        std::error_code ec;
        FileStamp stamp;
        stamp.size = std::filesystem::file_size(path, ec);
        if (ec) {
            return std::nullopt;
        }
        stamp.changed = std::filesystem::last_write_time(path, ec);
        if (ec) {
            return std::nullopt;
        }
        return stamp;
    }

    bool operator==(const FileStamp&) const = default;
};

} // namespace vornhale::base
