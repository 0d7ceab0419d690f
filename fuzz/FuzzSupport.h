#pragma once

// The set-up every fuzz target shares: a program folder of its own under the temporary
// folder, the input written to a file there, a run context with quiet dialogs, and the
// failures of the run taken as an allowed outcome. Anything else that escapes (a crash, a
// sanitizer report, an exception of another type, a hang) is a finding.

#include "base/Dialogs.h"
#include "base/ProgramFolder.h"
#include "base/RunObserver.h"
#include "base/Trace.h"
#include "engine/RunContext.h"
#include "failure/Failure.h"
#include "reference/EntityLookup.h"
#include "settings/Options.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace vornhale::fuzz {

/// Dialogs that show nothing and answer every question with one fixed answer (by default the
/// first button, as a front end that cannot ask does).
class QuietDialogs : public base::Dialogs
{
public:
    QuietDialogs() = default;
    explicit QuietDialogs(Answer answer) : m_answer(answer), m_fixed(true) {}

    void message(std::string_view, std::string_view, Icon) override {}

    Answer question(std::string_view title, std::string_view text, Buttons buttons,
                    Icon icon) override
    {
        return m_fixed ? m_answer : base::Dialogs::question(title, text, buttons, icon);
    }

private:
    Answer m_answer = Answer::Ok;
    bool m_fixed = false;
};

/// The fuzz target's own scratch folder, `<temp>/vornhale-fuzz-<pid>/`, made once and
/// removed when the process ends normally.
inline const std::filesystem::path& scratchHome()
{
    struct Scratch
    {
        std::filesystem::path path;
        Scratch()
            : path(std::filesystem::temp_directory_path() /
                   ("vornhale-fuzz-" + std::to_string(::getpid())))
        {
            std::filesystem::create_directories(path);
        }
        ~Scratch()
        {
            std::error_code ec;
            std::filesystem::remove_all(path, ec);
        }
    };
    static const Scratch scratch;
    return scratch.path;
}

/// A program folder with all its sub-folders in the scratch folder, made once.
inline const base::ProgramFolder& programFolder()
{
    static const base::ProgramFolder folder = [] {
        auto f = base::ProgramFolder::at(scratchHome());
        f.makeFolders();
        return f;
    }();
    return folder;
}

/// The input as text, bytes as they came.
inline std::string_view bytesOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

/// The input cut into `count` pieces at the byte 0x1E (record separator), for targets that
/// read several files; missing pieces are empty and the last piece keeps any further 0x1E.
inline std::vector<std::string_view> piecesOf(std::string_view bytes, std::size_t count)
{
    std::vector<std::string_view> pieces;
    while (pieces.size() + 1 < count) {
        const std::size_t cut = bytes.find('\x1e');
        if (cut == std::string_view::npos) {
            break;
        }
        pieces.push_back(bytes.substr(0, cut));
        bytes.remove_prefix(cut + 1);
    }
    pieces.push_back(bytes);
    pieces.resize(count);
    return pieces;
}

/// Writes `bytes` to `file` (replacing it) and gives the path back.
inline const std::filesystem::path& writeInput(const std::filesystem::path& file,
                                               std::string_view bytes)
{
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return file;
}

/// Writes the input to `name` in the program folder and gives its path.
inline std::filesystem::path writeInput(std::string_view name, const std::uint8_t* data,
                                        std::size_t size)
{
    std::filesystem::path file = programFolder().strPath / std::string(name);
    writeInput(file, bytesOf(data, size));
    return file;
}

/// The flag byte that varies the options: the first byte of the input, 0 for none.
inline std::uint8_t firstByte(const std::uint8_t* data, std::size_t size)
{
    return size > 0 ? data[0] : 0;
}

/// The flag byte taken from the end, for formats whose first bytes are a fixed header.
inline std::uint8_t lastByte(const std::uint8_t* data, std::size_t size)
{
    return size > 0 ? data[size - 1] : 0;
}

/// Runs `step`; a failure of the run or the end of the program on purpose are the outcomes
/// the program allows for bad input, so they end the step quietly.
template <typename Step> void allowingFailure(Step&& step)
{
    try {
        step();
    } catch (const failure::Failure&) {
    } catch (const failure::ProgramEnd&) {
    }
}

/// One conversion's worth of context over the program folder, with the default options and
/// no entity master. Built on the stack per input; set options before taking `ctx`.
class FuzzRun
{
public:
    explicit FuzzRun(settings::Options options = settings::Options::defaults(),
                     QuietDialogs dialogs = QuietDialogs())
        : m_dialogs(dialogs), ctx{std::move(options), programFolder(), trace,    observer,
                                  m_dialogs,          program,         entities, {}}
    {
    }
    FuzzRun(const FuzzRun&) = delete;
    FuzzRun& operator=(const FuzzRun&) = delete;

    base::Trace trace;
    base::RunObserver observer;

private:
    QuietDialogs m_dialogs;

public:
    engine::ProgramState program;
    reference::NoEntities entities;
    engine::RunContext ctx;
};

} // namespace vornhale::fuzz
