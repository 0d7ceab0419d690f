#include "base/FileReplace.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace vornhale::base {
namespace {

bool writeAll(int fd, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t n = ::write(fd, bytes.data(), bytes.size());
        if (n < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(n));
    }
    return true;
}

// Whether the regular file at `path` holds exactly `bytes`.
bool holdsExactly(const std::filesystem::path& path, std::string_view bytes)
{
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        return false;
    }
    struct stat st
    {
    };
    bool same = ::fstat(fd, &st) == 0 && S_ISREG(st.st_mode) &&
                static_cast<std::size_t>(st.st_size) == bytes.size();
    char buf[1 << 14];
    std::size_t at = 0;
    while (same && at < bytes.size()) {
        const ssize_t n = ::read(fd, buf, std::min(sizeof buf, bytes.size() - at));
        if (n < 0 && errno == EINTR) {
            continue;
        }
        same = n > 0 && bytes.compare(at, static_cast<std::size_t>(n),
                                      std::string_view(buf, static_cast<std::size_t>(n))) == 0;
        at += n > 0 ? static_cast<std::size_t>(n) : 0;
    }
    ::close(fd);
    return same;
}

std::filesystem::path folderOf(const std::filesystem::path& path)
{
    return path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
}

} // namespace

std::filesystem::path writingNameOf(const std::filesystem::path& path)
{
    std::filesystem::path writing = path;
    writing += std::string(kWritingSuffix);
    return writing;
}

bool replaceFileWith(const std::filesystem::path& path, std::string_view bytes)
{
    // The settings are written at many moments of a run, mostly as they already stand: a file
    // that holds these bytes already is left alone, which spares the disk a write and a flush.
    if (holdsExactly(path, bytes)) {
        return true;
    }
    const std::filesystem::path writing = writingNameOf(path);
    const int fd = ::open(writing.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0) {
        return false;
    }
    const bool written = writeAll(fd, bytes) && ::fsync(fd) == 0;
    const bool closed = ::close(fd) == 0;
    std::error_code ec;
    if (!written || !closed) {
        std::filesystem::remove(writing, ec);
        return false;
    }
    std::filesystem::rename(writing, path, ec);
    if (ec) {
        std::filesystem::remove(writing, ec);
        return false;
    }
    syncFolder(folderOf(path));
    return true;
}

void removeLeftTemporaries(const std::filesystem::path& folder)
{
    std::error_code ec;
    std::filesystem::directory_iterator it(folder, ec);
    if (ec) {
        return;
    }
    for (const auto& entry : it) {
        const std::string name = entry.path().filename().string();
        if (name.size() > kWritingSuffix.size() &&
            name.compare(name.size() - kWritingSuffix.size(), kWritingSuffix.size(),
                         kWritingSuffix) == 0 &&
            entry.is_regular_file(ec)) {
            std::filesystem::remove(entry.path(), ec);
        }
    }
}

bool syncFile(const std::filesystem::path& path)
{
    return syncFiles({path});
}

bool syncFiles(const std::vector<std::filesystem::path>& paths)
{
    std::vector<int> fds;
    bool synced = true;
    for (const std::filesystem::path& path : paths) {
        const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        if (fd < 0) {
            synced = false;
            break;
        }
        // Every file's writing starts before the first flush waits: the disk then takes them
        // together instead of one after the other.
        ::sync_file_range(fd, 0, 0, SYNC_FILE_RANGE_WRITE);
        fds.push_back(fd);
    }
    for (const int fd : fds) {
        synced = synced && ::fsync(fd) == 0;
        ::close(fd);
    }
    return synced;
}

void syncFolder(const std::filesystem::path& folder)
{
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        // A folder that cannot be flushed keeps the rename in memory; nothing is lost to a
        // killed process either way.
        ::fsync(fd);
        ::close(fd);
    }
}

} // namespace vornhale::base
