#pragma once

#include <filesystem>
#include <vector>

namespace vornhale::base {

/// Puts several result files in place together, so that a reader finds either all of the
/// previous files or all of the new ones, never a mix, even when the process is killed.
///
/// Each new file is written whole under its temporary name (`writingNameOf`) first. A note
/// in the working folder names the files from the start: while it says "writing", the
/// temporaries are a run's unfinished work; once every file is complete it says "ready", and
/// the renames follow one after the other. A run killed before "ready" leaves the previous
/// files untouched; one killed during the renames is completed by `recover` at the next start.
class PairedReplace
{
public:
    /// The note's name in the working folder.
    static constexpr const char* kNoteName = "result_pair.note";

    /// Notes that `finals` are about to be written (their temporaries, that is). Removes
    /// temporaries of theirs that a killed run left. Throws Failure 75 when the note cannot be
    /// written.
    PairedReplace(std::filesystem::path drive_path, std::vector<std::filesystem::path> finals);
    /// Without `commit`, removes the temporaries and the note: the previous files stay.
    ~PairedReplace();
    PairedReplace(const PairedReplace&) = delete;
    PairedReplace& operator=(const PairedReplace&) = delete;

    /// The temporary name of each final file, in the order given.
    std::vector<std::filesystem::path> temporaries() const;

    /// Every temporary is complete: flushes them, notes "ready", renames each into place and
    /// removes the note. Throws Failure 75 when a rename fails (the note stays, and the next
    /// start completes the renames).
    void commit();

    /// At a start: completes the renames of a run killed after "ready", or removes the
    /// temporaries of one killed before. Nothing to do without a note.
    static void recover(const std::filesystem::path& drive_path);

private:
    std::filesystem::path m_drive_path;
    std::vector<std::filesystem::path> m_finals;
    bool m_done = false;
};

} // namespace vornhale::base
