#pragma once

#include <cstdio>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace vornhale::base {

/// The running trace of one start of the program: one Shift-JIS file in `Error_Log`, named
/// by the stamp of the start, each line written through at once so that it survives any end.
class Trace
{
public:
    /// A trace that writes nothing (for tests and tools that run without a program folder).
    Trace() = default;
    /// Makes `errorLogDir` if needed and opens a new trace file in it, named
    /// "yyyymmdd_hhmmss.txt" by the present local time ("_2", "_3" … behind the stamp when
    /// a file of that name is there already). Throws Failure 75 when the folder cannot be
    /// made or the file cannot be opened.
    explicit Trace(const std::filesystem::path& errorLogDir);
    ~Trace();
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;

    /// Writes one line. Lines may come from several threads.
    void line(std::string_view text);

    /// From now on the lines of the calling thread wait, while those of other threads are
    /// written: work moved to another thread that would have come first keeps its lines first.
    void holdThisThread();
    /// Ends the hold: the waiting lines are written, or with `keep` false dropped (the work
    /// that came first failed, so the held lines would never have been written).
    void endHold(bool keep);

    /// Path of the trace file; empty for a trace that writes nothing.
    const std::filesystem::path& path() const { return m_path; }

    /// The stamp of a time as the file name uses it.
    static std::string stampOf(std::time_t when);

private:
    void write(std::string_view text);

    std::filesystem::path m_path;
    std::FILE* m_file = nullptr;
    std::mutex m_mutex;
    std::optional<std::thread::id> m_held;
    std::vector<std::string> m_heldLines;
};

} // namespace vornhale::base
