#pragma once

#include <filesystem>

namespace vornhale::text {

/// Sorts the lines of a file by the unsigned bytes of the key columns `start` to
/// `start + length - 1` (from 1) of each raw line, and writes them with CR LF to `out`.
/// Stable: lines of equal keys keep their order. A line shorter than the key columns
/// compares by what it has, so a key that is a prefix of another sorts first.
/// `descending` reverses the order of the keys (not of equal lines).
/// Throws Failure 53 when `in` cannot be read.
void sortLinesByKey(const std::filesystem::path& in, const std::filesystem::path& out, int start,
                    int length, bool descending);

} // namespace vornhale::text
