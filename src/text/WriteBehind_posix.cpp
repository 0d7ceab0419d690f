#include "text/WriteBehind.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace vornhale::text {

struct WriteBehind::State
{
    int fd = -1;
    // Buffers handed over and not yet written; guarded by the writer's lock.
    int pending = 0;
    bool failed = false;
    // Whether written pieces start on their way to the disk, and how far the file is written.
    bool forTheDisk = false;
    off_t written = 0;
};

namespace {

// All of `bytes` to `fd`; false when the system refuses.
bool writeAll(int fd, const std::string& bytes)
{
    const char* p = bytes.data();
    std::size_t left = bytes.size();
    while (left > 0) {
        const ssize_t n = ::write(fd, p, left);
        if (n < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        p += n;
        left -= static_cast<std::size_t>(n);
    }
    return true;
}

// The one writer thread, started by the first buffer handed over and living as long as the
// program. Buffers come back to the caller once written, so a long file costs no fresh memory
// after its first few buffers.
class Writer
{
public:
    static Writer& instance()
    {
        // Never destroyed: the thread may still wait on it while the program ends.
        static Writer* const writer = new Writer;
        return *writer;
    }

    void hand(const std::shared_ptr<WriteBehind::State>& file, std::string& buffer)
    {
        std::unique_lock lock(m_mutex);
        ++file->pending;
        queue(lock, {file, std::move(buffer), -1});
        buffer = takeSpare(buffer.capacity());
    }

    void handBlock(const std::shared_ptr<WriteBehind::State>& file, std::string&& block)
    {
        std::unique_lock lock(m_mutex);
        ++file->pending;
        queue(lock, {file, std::move(block), -1});
    }

    // Closes `fd`, the last hold on a removed file, on the writer thread.
    void release(int fd)
    {
        std::unique_lock lock(m_mutex);
        queue(lock, {nullptr, std::string(), fd});
    }

    void waitFor(const WriteBehind::State& file)
    {
        std::unique_lock lock(m_mutex);
        m_done.wait(lock, [&file] { return file.pending == 0; });
    }

private:
    static constexpr std::size_t kMostQueued = 16;
    static constexpr std::size_t kLargestSpare = 1 << 20;
    struct Job
    {
        std::shared_ptr<WriteBehind::State> file;
        std::string bytes;
        int release;
    };

    void queue(std::unique_lock<std::mutex>& lock, Job job)
    {
        // A bounded queue: a caller faster than the disk waits for it.
        m_room.wait(lock, [this] { return m_jobs.size() < kMostQueued; });
        m_jobs.push_back(std::move(job));
        if (!m_started) {
            std::thread([this] { run(); }).detach();
            m_started = true;
        }
        m_work.notify_one();
    }

    std::string takeSpare(std::size_t capacity)
    {
        std::string spare;
        if (!m_spares.empty()) {
            spare = std::move(m_spares.back());
            m_spares.pop_back();
        }
        spare.clear();
        spare.reserve(capacity);
        return spare;
    }

    [[noreturn]] void run()
    {
        std::unique_lock lock(m_mutex);
        for (;;) {
            m_work.wait(lock, [this] { return !m_jobs.empty(); });
            Job job = std::move(m_jobs.front());
            m_jobs.pop_front();
            m_room.notify_one();
            if (job.release >= 0) {
                lock.unlock();
                ::close(job.release);
                lock.lock();
                continue;
            }
            const bool skip = job.file->failed;
            lock.unlock();
            const bool ok = skip || writeAll(job.file->fd, job.bytes);
            if (!skip && ok && job.file->forTheDisk) {
                const auto size = static_cast<off_t>(job.bytes.size());
                ::sync_file_range(job.file->fd, job.file->written, size, SYNC_FILE_RANGE_WRITE);
                job.file->written += size;
            }
            lock.lock();
            job.file->failed = job.file->failed || !ok;
            --job.file->pending;
            // Buffers of the usual size come back; a large block is let go.
            if (m_spares.size() < kMostQueued && job.bytes.capacity() <= kLargestSpare) {
                m_spares.push_back(std::move(job.bytes));
            }
            m_done.notify_all();
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_work;
    std::condition_variable m_room;
    std::condition_variable m_done;
    std::deque<Job> m_jobs;
    std::vector<std::string> m_spares;
    bool m_started = false;
};

// Below this a file is released at once: handing it over would cost more than it saves.
constexpr off_t kSmallestReleasedBehind = 1 << 20;

// A hold on the file at `path` when it is a large regular file, else -1.
int holdLargeFile(const std::filesystem::path& path)
{
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (fd < 0) {
        return -1;
    }
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode) || st.st_size < kSmallestReleasedBehind) {
        ::close(fd);
        return -1;
    }
    return fd;
}

} // namespace

bool removeBehind(const std::filesystem::path& path, std::error_code& ec)
{
    const int held = holdLargeFile(path);
    if (held < 0) {
        return std::filesystem::remove(path, ec);
    }
    if (::unlink(path.c_str()) != 0) {
        ::close(held);
        return std::filesystem::remove(path, ec);
    }
    ec.clear();
    Writer::instance().release(held);
    return true;
}

void renameBehind(const std::filesystem::path& from, const std::filesystem::path& to,
                  std::error_code& ec)
{
    const int held = holdLargeFile(to);
    std::filesystem::rename(from, to, ec);
    if (held >= 0) {
        Writer::instance().release(held);
    }
}

WriteBehind::WriteBehind(const std::filesystem::path& path, bool append, bool forTheDisk)
    : m_state(std::make_shared<State>())
{
    const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | (append ? O_APPEND : O_TRUNC);
    m_state->fd = ::open(path.c_str(), flags, 0666);
    m_state->forTheDisk = forTheDisk && !append;
}

WriteBehind::~WriteBehind()
{
    close();
}

bool WriteBehind::isOpen() const
{
    return m_state->fd >= 0;
}

void WriteBehind::write(std::string& buffer)
{
    Writer::instance().hand(m_state, buffer);
}

void WriteBehind::writeBlock(std::string&& block)
{
    Writer::instance().handBlock(m_state, std::move(block));
}

void WriteBehind::writeNow(std::string& buffer)
{
    Writer::instance().waitFor(*m_state);
    if (!m_state->failed && !writeAll(m_state->fd, buffer)) {
        m_state->failed = true;
    }
    buffer.clear();
}

bool WriteBehind::close()
{
    if (m_state->fd < 0) {
        return true;
    }
    Writer::instance().waitFor(*m_state);
    const bool ok = !m_state->failed && ::close(m_state->fd) == 0;
    m_state->fd = -1;
    return ok;
}

} // namespace vornhale::text
