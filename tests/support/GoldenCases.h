#pragma once

#include <filesystem>
#include <ostream>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace vornhale::test {

/// One reviewed end-to-end case: a log, the command-line arguments of its conversion and the
/// files in tests/data/golden/<name>/ that the conversion must leave, byte for byte. The
/// command-line runner and the in-process runner share the table.
struct GoldenCase
{
    const char* name;
    const char* log;  ///< under data/sample, or "realdata:<path>"
    /// Extra command-line arguments; "@masters@" is tests/data/masters, "@hamlog@" the HAMLOG
    /// export tests/data/hamlog/history.csv.
    const char* args;
    bool ownMasters = false; ///< the home starts with the name and QTH masters of the tests
};

/// The case's name, for the test names and messages of GoogleTest.
void PrintTo(const GoldenCase& c, std::ostream* os);

/// Every case of the sample and real zLog logs.
std::span<const GoldenCase> goldenCases();

/// A case made ready in a folder: the log copied as CONTEST.<ext> (so that the paths in the
/// files do not differ), the program folder with the case's own masters, the arguments with
/// their placeholders filled. Empty `log` when the real data is not at hand.
struct PreparedCase
{
    std::filesystem::path log;
    std::filesystem::path home;
    std::vector<std::string> args; ///< one word each: "--set", "Check17=1", ...
};
PreparedCase prepareGoldenCase(const GoldenCase& c, const std::filesystem::path& dir);

/// The files a case leaves and their reviewed copies: (golden name, path left by the run).
std::vector<std::pair<std::string, std::filesystem::path>>
goldenOutputs(const std::filesystem::path& dir);

} // namespace vornhale::test
