#pragma once

// Real LZH and ZIP archives for the tests, made with the Debian tools `jlha` (jlha-utils) and
// `zip`; hostile entry names are made by patching a harmless name of the same length in the
// archive the tool wrote.

#include "support/TestSupport.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace vornhale::test {

inline std::string shellQuote(const std::string& s)
{
    std::string out = "'";
    for (char c : s) {
        if (c == '\'') {
            out += "'\\''";
        } else {
            out += c;
        }
    }
    return out + "'";
}

/// Runs `command` in `folder`; true when it ended with status 0.
inline bool runIn(const std::filesystem::path& folder, const std::string& command)
{
    std::string output;
    const int status = runCommand("cd " + shellQuote(folder.string()) + " && " + command, &output);
    if (status != 0) {
        ADD_FAILURE() << command << ": " << output;
    }
    return status == 0;
}

/// Whether the archive tools are installed (scripts/install-deps.sh installs them).
inline bool haveTool(const char* tool)
{
    return runCommand(std::string("command -v ") + tool + " >/dev/null 2>&1") == 0;
}

/// Every `from` in the file replaced by `to` (of the same length).
inline void patchBytes(const std::filesystem::path& file, const std::string& from,
                       const std::string& to)
{
    std::string bytes = readBytes(file);
    ASSERT_EQ(from.size(), to.size());
    std::size_t at = 0;
    int patched = 0;
    while ((at = bytes.find(from, at)) != std::string::npos) {
        bytes.replace(at, from.size(), to);
        at += to.size();
        ++patched;
    }
    ASSERT_GT(patched, 0) << from;
    writeBytes(file, bytes);
}

/// Replaces the name in the level-0 header of the first entry of an LZH archive and puts the
/// header's checksum right, so that the entry reads as if the tool had written that name.
inline void patchLzhLevel0Name(const std::filesystem::path& file, const std::string& from,
                               const std::string& to)
{
    std::string bytes = readBytes(file);
    ASSERT_EQ(from.size(), to.size());
    const std::size_t at = bytes.find(from);
    ASSERT_NE(at, std::string::npos);
    bytes.replace(at, from.size(), to);
    const auto size = static_cast<unsigned char>(bytes[0]);
    unsigned sum = 0;
    for (std::size_t i = 2; i < 2u + size; ++i) {
        sum += static_cast<unsigned char>(bytes[i]);
    }
    bytes[1] = static_cast<char>(sum & 0xFF);
    writeBytes(file, bytes);
}

} // namespace vornhale::test
