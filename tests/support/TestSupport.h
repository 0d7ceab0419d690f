#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::test {

/// A fresh folder under the system's temporary folder, removed with its content at the end.
class TempDir
{
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    std::filesystem::path operator/(std::string_view name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};

/// The source tree and its test data.
std::filesystem::path sourceDir();
std::filesystem::path testData(std::string_view relative);

/// `../shared/realdata/<relative>` beside the source tree, or nothing when it is absent
/// (a user's fresh clone). Tests call GTEST_SKIP with a message then.
std::optional<std::filesystem::path> realData(std::string_view relative);

/// File contents as bytes.
std::string readBytes(const std::filesystem::path& path);
/// Writes bytes as they are.
void writeBytes(const std::filesystem::path& path, std::string_view bytes);
/// Writes UTF-8 lines as Shift-JIS, each ended by CR LF.
void writeSjisLines(const std::filesystem::path& path, const std::vector<std::string>& lines);
/// The lines of a Shift-JIS file, decoded.
std::vector<std::string> readSjisLines(const std::filesystem::path& path);

/// Path of the command-line program.
std::filesystem::path cliPath();

/// Runs the command-line program with `args`, each passed as one word, and the environment
/// `environment` ("NAME=value" words, may be empty) in front; returns its exit status and
/// fills `output` with what it printed on stdout and stderr together.
int runCli(const std::vector<std::string>& args, std::string* output = nullptr,
           const std::vector<std::string>& environment = {});

/// `text` as one word for the shell.
std::string shellWord(std::string_view text);

/// Runs a command through the shell; returns its exit status and fills `output` with what it
/// printed on stdout and stderr together.
int runCommand(const std::string& command, std::string* output = nullptr);

/// When VORNHALE_UPDATE_GOLDEN is set, writes `actual` over the golden file; otherwise
/// compares byte for byte and returns the difference as a message (empty when equal).
std::string compareGolden(const std::filesystem::path& golden, std::string_view actual);

} // namespace vornhale::test
