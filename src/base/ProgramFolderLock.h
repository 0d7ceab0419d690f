#pragma once

#include <filesystem>
#include <functional>

namespace vornhale::base {

/// An exclusive hold on a program folder, so that one run at a time writes its working
/// folder and its settings files. The hold is a lock on the file `Vornhale.lock` in the
/// folder; it lasts from construction to destruction and ends with the process, however the
/// process ends. A second holder, in another process, waits until the first lets go.
class ProgramFolderLock
{
public:
    /// The name of the lock file in the program folder.
    static constexpr const char* kFileName = "Vornhale.lock";

    /// Takes the hold on `strPath` (an existing folder), waiting while another process holds
    /// it; `waiting` is called once, before the wait, when there is one. Throws Failure 75 when
    /// the lock file cannot be opened or locked.
    explicit ProgramFolderLock(const std::filesystem::path& strPath,
                               const std::function<void()>& waiting = {});
    ~ProgramFolderLock();
    ProgramFolderLock(const ProgramFolderLock&) = delete;
    ProgramFolderLock& operator=(const ProgramFolderLock&) = delete;

private:
    int m_fd = -1;
};

} // namespace vornhale::base
