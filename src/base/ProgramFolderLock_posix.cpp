#include "base/ProgramFolderLock.h"

#include "failure/Failure.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace vornhale::base {
namespace {

// Waits through signals that interrupt the lock call.
int lockFile(int fd, int operation)
{
    int rc = 0;
    do {
        rc = ::flock(fd, operation);
    } while (rc != 0 && errno == EINTR);
    return rc;
}

} // namespace

ProgramFolderLock::ProgramFolderLock(const std::filesystem::path& strPath,
                                     const std::function<void()>& waiting)
{
    const std::filesystem::path file = strPath / kFileName;
    // Close-on-exec: an outside converter started during the run must not keep the hold.
    m_fd = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (m_fd < 0) {
        throw failure::Failure(failure::PathFileAccess, "パス名が無効です。 " + file.string());
    }
    if (lockFile(m_fd, LOCK_EX | LOCK_NB) == 0) {
        return;
    }
    if (errno == EWOULDBLOCK && waiting) {
        waiting();
    }
    if (lockFile(m_fd, LOCK_EX) != 0) {
        ::close(m_fd);
        m_fd = -1;
        throw failure::Failure(failure::PathFileAccess, "パス名が無効です。 " + file.string());
    }
}

ProgramFolderLock::~ProgramFolderLock()
{
    if (m_fd >= 0) {
        // Closing the descriptor ends the hold.
        ::close(m_fd);
    }
}

} // namespace vornhale::base
