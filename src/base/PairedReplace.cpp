#include "base/PairedReplace.h"

#include "base/FileReplace.h"
#include "failure/Failure.h"
#include "text/WriteBehind.h"

#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

namespace vornhale::base {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kWriting = "writing";
constexpr std::string_view kReady = "ready";

// The note: its state on the first line, then one final path a line (LF, raw bytes).
void writeNote(const fs::path& note, std::string_view state, const std::vector<fs::path>& finals)
{
    std::string text(state);
    text += '\n';
    for (const fs::path& f : finals) {
        text += f.string();
        text += '\n';
    }
    if (!replaceFileWith(note, text)) {
        throw failure::Failure(failure::PathFileAccess, "パス名が無効です。 " + note.string());
    }
}

bool readNote(const fs::path& note, std::string& state, std::vector<fs::path>& finals)
{
    std::ifstream in(note, std::ios::binary);
    if (!in) {
        return false;
    }
    std::string line;
    if (!std::getline(in, state)) {
        return false;
    }
    while (std::getline(in, line)) {
        if (!line.empty()) {
            finals.emplace_back(line);
        }
    }
    return true;
}

void removeTemporaries(const std::vector<fs::path>& finals)
{
    std::error_code ec;
    for (const fs::path& f : finals) {
        fs::remove(writingNameOf(f), ec);
    }
}

} // namespace

PairedReplace::PairedReplace(fs::path drive_path, std::vector<fs::path> finals)
    : m_drive_path(std::move(drive_path)), m_finals(std::move(finals))
{
    removeTemporaries(m_finals);
    writeNote(m_drive_path / kNoteName, kWriting, m_finals);
}

PairedReplace::~PairedReplace()
{
    if (!m_done) {
        removeTemporaries(m_finals);
        std::error_code ec;
        fs::remove(m_drive_path / kNoteName, ec);
    }
}

std::vector<fs::path> PairedReplace::temporaries() const
{
    std::vector<fs::path> out;
    for (const fs::path& f : m_finals) {
        out.push_back(writingNameOf(f));
    }
    return out;
}

void PairedReplace::commit()
{
    const std::vector<fs::path> written = temporaries();
    if (!syncFiles(written)) {
        for (const fs::path& t : written) {
            if (!syncFile(t)) {
                throw failure::Failure(failure::PathFileAccess, "パス名が無効です。 " + t.string());
            }
        }
    }
    writeNote(m_drive_path / kNoteName, kReady, m_finals);
    m_done = true;
    for (const fs::path& f : m_finals) {
        std::error_code ec;
        text::renameBehind(writingNameOf(f), f, ec);
        if (ec) {
            throw failure::Failure(failure::PathFileAccess, "パス名が無効です。 " + f.string());
        }
    }
    std::error_code ec;
    fs::remove(m_drive_path / kNoteName, ec);
}

void PairedReplace::recover(const fs::path& drive_path)
{
    const fs::path note = drive_path / kNoteName;
    std::string state;
    std::vector<fs::path> finals;
    std::error_code ec;
    if (readNote(note, state, finals)) {
        if (state == kReady) {
            // A temporary already renamed is gone; the others follow it.
            for (const fs::path& f : finals) {
                if (fs::is_regular_file(writingNameOf(f), ec)) {
                    text::renameBehind(writingNameOf(f), f, ec);
                }
            }
        } else {
            removeTemporaries(finals);
        }
    }
    fs::remove(note, ec);
    fs::remove(writingNameOf(note), ec);
}

} // namespace vornhale::base
