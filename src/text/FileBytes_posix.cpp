#include "text/CutFileGuard.h"
#include "text/FileBytes.h"
#include "text/LineFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <future>
#include <mutex>
#include <sys/mman.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace vornhale::text {
namespace {

// Below this a read is as cheap as a mapping and keeps no mapping open.
constexpr std::size_t kSmallestMapped = 1 << 16;

// What tells one state of a file from another: a file written again, replaced or renamed
// differs in one of these.
struct Stamp
{
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = -1;
    timespec modified{};
    timespec changed{};

    bool operator==(const Stamp& o) const
    {
        return device == o.device && inode == o.inode && size == o.size &&
               modified.tv_sec == o.modified.tv_sec && modified.tv_nsec == o.modified.tv_nsec &&
               changed.tv_sec == o.changed.tv_sec && changed.tv_nsec == o.changed.tv_nsec;
    }
};

bool stampOf(const std::filesystem::path& path, Stamp& out)
{
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) {
        return false;
    }
    out = {st.st_dev, st.st_ino, st.st_size, st.st_mtim, st.st_ctim};
    return true;
}

struct KeptInput
{
    std::mutex mutex;
    std::filesystem::path path;
    Stamp stamp;
    std::shared_ptr<const FileBytes> bytes;
};

KeptInput& kept()
{
    static KeptInput k;
    return k;
}

} // namespace

void preferLargePages(void* data, std::size_t size)
{
    constexpr std::uintptr_t kLargePage = std::uintptr_t{1} << 21;
    const auto start = reinterpret_cast<std::uintptr_t>(data);
    const std::uintptr_t first = (start + kLargePage - 1) & ~(kLargePage - 1);
    const std::uintptr_t end = (start + size) & ~(kLargePage - 1);
    if (end > first) {
        ::madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE);
    }
}

namespace {

// Up to `size` bytes of `fd` from `offset` on into `into`; fewer where the file ends or fails.
std::size_t readAt(int fd, char* into, std::size_t size, std::size_t offset)
{
    std::size_t done = 0;
    while (done < size) {
        const ssize_t n = ::pread(fd, into + done, size - done, static_cast<off_t>(offset + done));
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n <= 0) {
            break;
        }
        done += static_cast<std::size_t>(n);
    }
    return done;
}

} // namespace

std::size_t readFromStart(std::FILE* file, char* into, std::size_t size)
{
    // Below this a second thread costs more than it saves.
    constexpr std::size_t kInTwoFrom = std::size_t{4} << 20;
    const int fd = ::fileno(file);
    const std::size_t half = size / 2;
    std::future<std::size_t> back;
    if (size >= kInTwoFrom) {
        try {
            back = std::async(std::launch::async,
                              [=] { return readAt(fd, into + half, size - half, half); });
        } catch (const std::system_error&) {
            // No thread to be had: one read does it all.
        }
    }
    std::size_t got = 0;
    if (back.valid()) {
        const std::size_t front = readAt(fd, into, half, 0);
        const std::size_t rest = back.get();
        // A file that shrank meanwhile ends where the front half ended short.
        got = front < half ? front : half + rest;
    } else {
        got = readAt(fd, into, size, 0);
    }
    std::fseek(file, static_cast<long>(got), SEEK_SET);
    return got;
}

void keepReadsOf(const std::filesystem::path& path)
{
    KeptInput& k = kept();
    const std::lock_guard lock(k.mutex);
    if (path.lexically_normal() != k.path) {
        k.path = path.lexically_normal();
        k.bytes.reset();
    }
}

std::shared_ptr<const FileBytes> keptBytesOf(const std::filesystem::path& path)
{
    KeptInput& k = kept();
    const std::lock_guard lock(k.mutex);
    if (k.path.empty() || path.lexically_normal() != k.path) {
        return nullptr;
    }
    Stamp now;
    if (k.bytes != nullptr && stampOf(path, now) && now == k.stamp) {
        return k.bytes;
    }
    // Read afresh; the stamp is taken before the read, so a change during the read shows at
    // the next look. A file system that keeps its times to the second or coarser (a memory
    // card's) cannot tell two writes in one second apart: such a file is never kept.
    k.bytes.reset();
    const bool stamped = stampOf(path, now) && now.modified.tv_nsec != 0;
    auto bytes = std::make_shared<const FileBytes>(FileBytes::mapGuarded(path));
    if (stamped) {
        k.stamp = now;
        k.bytes = bytes;
    }
    return bytes;
}

std::shared_ptr<const FileBytes> keptBytesIfRead(const std::filesystem::path& path)
{
    KeptInput& k = kept();
    const std::lock_guard lock(k.mutex);
    Stamp now;
    if (k.bytes == nullptr || path.lexically_normal() != k.path || !stampOf(path, now) ||
        !(now == k.stamp)) {
        return nullptr;
    }
    return k.bytes;
}

void FileBytes::releaseRange(std::size_t from, std::size_t to) const
{
    if (m_mapping == nullptr) {
        return;
    }
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    const std::size_t first = (from + page - 1) / page * page;
    const std::size_t end = std::min(to, m_size) / page * page;
    if (end > first) {
        ::madvise(static_cast<char*>(m_mapping) + first, end - first, MADV_DONTNEED);
    }
}

namespace {

// A read-only mapping of the whole of `fd`, with its size in `size`; or null, `size` left as it
// was, where the file is no regular file, is too small to be worth one or cannot be mapped.
void* mapWhole(int fd, std::size_t& size)
{
    struct stat st
    {
    };
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode) ||
        static_cast<std::size_t>(st.st_size) < kSmallestMapped) {
        return nullptr;
    }
    const auto whole = static_cast<std::size_t>(st.st_size);
    void* const map = ::mmap(nullptr, whole, PROT_READ, MAP_PRIVATE, fd, 0);
    if (map == MAP_FAILED) {
        return nullptr;
    }
    size = whole;
    return map;
}

} // namespace

FileBytes::FileBytes(const std::filesystem::path& path)
{
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd >= 0) {
        m_mapping = mapWhole(fd, m_size);
        ::close(fd);
        if (m_mapping != nullptr) {
            m_data = static_cast<const char*>(m_mapping);
            return;
        }
    }
    // Small files, folders, pipes and anything that cannot be mapped: read, with the failures
    // of a read.
    *this = of(readFileBytes(path));
}

FileBytes FileBytes::mapGuarded(const std::filesystem::path& path)
{
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd >= 0) {
        FileBytes mapped;
        mapped.m_mapping = mapWhole(fd, mapped.m_size);
        ::close(fd);
        if (mapped.m_mapping != nullptr) {
            mapped.m_guard = guardMapping(mapped.m_mapping, mapped.m_size);
            if (mapped.m_guard >= 0) {
                mapped.m_data = static_cast<const char*>(mapped.m_mapping);
                return mapped;
            }
        }
        // Unguarded, the mapping goes; `mapped` lets it go as it ends.
    }
    return of(readFileBytes(path));
}

FileBytes FileBytes::read(const std::filesystem::path& path)
{
    if (auto shared = keptBytesOf(path)) {
        const std::string_view bytes = shared->view();
        return FileBytes(std::move(shared), bytes);
    }
    return of(readFileBytes(path));
}

FileBytes FileBytes::of(std::string bytes)
{
    auto held = std::make_shared<const std::string>(std::move(bytes));
    const std::string_view view = *held;
    return FileBytes(std::move(held), view);
}

std::shared_ptr<const FileBytes> readShared(const std::filesystem::path& path)
{
    if (auto shared = keptBytesOf(path)) {
        return shared;
    }
    return std::make_shared<const FileBytes>(FileBytes::of(readFileBytes(path)));
}

FileBytes::FileBytes(std::shared_ptr<const void> owner, std::string_view bytes)
    : m_data(bytes.data()), m_size(bytes.size()), m_owner(std::move(owner))
{
}

FileBytes::~FileBytes()
{
    release();
}

FileBytes::FileBytes(FileBytes&& other) noexcept
{
    *this = std::move(other);
}

FileBytes& FileBytes::operator=(FileBytes&& other) noexcept
{
    if (this != &other) {
        release();
        m_mapping = std::exchange(other.m_mapping, nullptr);
        m_guard = std::exchange(other.m_guard, -1);
        m_owner = std::move(other.m_owner);
        m_data = std::exchange(other.m_data, "");
        m_size = std::exchange(other.m_size, 0);
    }
    return *this;
}

void FileBytes::release() noexcept
{
    if (m_mapping != nullptr) {
        // The guard ends first: the addresses may be mapped again for something else.
        unguardMapping(std::exchange(m_guard, -1));
        ::munmap(m_mapping, m_size);
        m_mapping = nullptr;
    }
    m_owner.reset();
}

} // namespace vornhale::text
