#include "support/TestSupport.h"

#include "text/LineFile.h"
#include "text/SjisCodec.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <sys/wait.h>

namespace vornhale::test {

TempDir::TempDir()
{
    std::random_device rd;
    for (;;) {
        m_path = std::filesystem::temp_directory_path() /
                 ("vornhale-test-" + std::to_string(rd()) + std::to_string(rd()));
        if (std::filesystem::create_directory(m_path)) {
            return;
        }
    }
}

TempDir::~TempDir()
{
    std::error_code ec;
    std::filesystem::remove_all(m_path, ec);
}

std::filesystem::path sourceDir() { return VORNHALE_SOURCE_DIR; }

std::filesystem::path testData(std::string_view relative)
{
    return sourceDir() / "tests" / "data" / relative;
}

std::optional<std::filesystem::path> realData(std::string_view relative)
{
    std::filesystem::path p = sourceDir().parent_path() / "shared" / "realdata" / relative;
    if (std::filesystem::exists(p)) {
        return p;
    }
    return std::nullopt;
}

std::string readBytes(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void writeBytes(const std::filesystem::path& path, std::string_view bytes)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

void writeSjisLines(const std::filesystem::path& path, const std::vector<std::string>& lines)
{
    std::string bytes;
    for (const auto& line : lines) {
        bytes += text::encodeSjis(line);
        bytes += "\r\n";
    }
    writeBytes(path, bytes);
}

std::vector<std::string> readSjisLines(const std::filesystem::path& path)
{
    return text::readLines(path);
}

std::filesystem::path cliPath() { return VORNHALE_CLI_PATH; }

int runCommand(const std::string& command, std::string* output)
{
    std::string full = command + " 2>&1";
    FILE* pipe = popen(full.c_str(), "r");
    if (pipe == nullptr) {
        return -1;
    }
    std::array<char, 4096> buf{};
    std::string out;
    std::size_t n;
    while ((n = std::fread(buf.data(), 1, buf.size(), pipe)) > 0) {
        out.append(buf.data(), n);
    }
    const int status = pclose(pipe);
    if (output != nullptr) {
        *output = out;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string compareGolden(const std::filesystem::path& golden, std::string_view actual)
{
    if (std::getenv("VORNHALE_UPDATE_GOLDEN") != nullptr) {
        std::filesystem::create_directories(golden.parent_path());
        writeBytes(golden, actual);
        return {};
    }
    if (!std::filesystem::exists(golden)) {
        return "golden file missing: " + golden.string();
    }
    const std::string expected = readBytes(golden);
    if (expected == actual) {
        return {};
    }
    std::size_t i = 0;
    while (i < expected.size() && i < actual.size() && expected[i] == actual[i]) {
        ++i;
    }
    const auto lineNo = std::count(expected.begin(), expected.begin() + static_cast<long>(i), '\n') + 1;
    auto lineAt = [&](std::string_view s) {
        const auto b = s.rfind('\n', i == 0 ? 0 : i - 1);
        const auto start = b == std::string_view::npos ? 0 : b + 1;
        return text::decodeSjis(s.substr(start, s.find('\n', start) - start));
    };
    return golden.filename().string() + " differs at byte " + std::to_string(i) + ", line " +
           std::to_string(lineNo) + "\n expected: " + lineAt(expected) + "\n actual:   " +
           lineAt(actual);
}

std::string shellWord(std::string_view text)
{
    std::string word = "'";
    for (const char c : text) {
        if (c == '\'') {
            word += "'\\''";
        } else {
            word += c;
        }
    }
    return word + "'";
}

int runCli(const std::vector<std::string>& args, std::string* output,
           const std::vector<std::string>& environment)
{
    std::string command;
    for (const std::string& e : environment) {
        command += e + " ";
    }
    command += shellWord(cliPath().string());
    for (const std::string& a : args) {
        command += " " + shellWord(a);
    }
    return runCommand(command, output);
}

} // namespace vornhale::test
