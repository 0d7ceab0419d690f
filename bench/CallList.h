#pragma once

// The call signs of a real call list (MASTER.SCP: one call a line, "#" comments), for the
// generators of the benchmarks.

#include <cstddef>
#include <fstream>
#include <string>
#include <vector>

namespace vornhale::bench {

/// The calls of `path` of at most `maxLength` characters, in file order; empty when the file
/// cannot be read.
inline std::vector<std::string> readCalls(const std::string& path, std::size_t maxLength)
{
    std::ifstream in(path);
    std::vector<std::string> calls;
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (!line.empty() && line[0] != '#' && line.size() <= maxLength) {
            calls.push_back(line);
        }
    }
    return calls;
}

} // namespace vornhale::bench
