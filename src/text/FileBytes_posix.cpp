#include "text/FileBytes.h"

#include "text/LineFile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace vornhale::text {
namespace {

// Below this a read is as cheap as a mapping and keeps no mapping open.
constexpr std::size_t kSmallestMapped = 1 << 16;

} // namespace

FileBytes::FileBytes(const std::filesystem::path& path)
{
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd >= 0) {
        struct stat st {};
        if (::fstat(fd, &st) == 0 && S_ISREG(st.st_mode) &&
            static_cast<std::size_t>(st.st_size) >= kSmallestMapped) {
            const auto size = static_cast<std::size_t>(st.st_size);
            void* const map = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, fd, 0);
            if (map != MAP_FAILED) {
                m_mapping = map;
                m_data = static_cast<const char*>(map);
                m_size = size;
            }
        }
        ::close(fd);
        if (m_mapping != nullptr) {
            return;
        }
    }
    // Small files, folders, pipes and anything that cannot be mapped: read, with the failures
    // of a read.
    m_held = readFileBytes(path);
    m_data = m_held.data();
    m_size = m_held.size();
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
        m_held = std::move(other.m_held);
        m_size = std::exchange(other.m_size, 0);
        m_data = m_mapping != nullptr ? std::exchange(other.m_data, "") : m_held.data();
        other.m_data = "";
        other.m_held.clear();
    }
    return *this;
}

void FileBytes::release() noexcept
{
    if (m_mapping != nullptr) {
        ::munmap(m_mapping, m_size);
        m_mapping = nullptr;
    }
}

} // namespace vornhale::text
