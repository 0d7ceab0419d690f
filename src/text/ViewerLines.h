#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::text {

/// Columns between two tab stops in a viewer.
inline constexpr std::size_t kViewerTabStop = 8;

/// `line` with each tab replaced by the blanks that reach the next tab stop. Columns count
/// Shift-JIS bytes, as a fixed-pitch face shows them: a full-width character takes two.
std::string expandTabs(std::string_view line, std::size_t tabStop = kViewerTabStop);

/// The lines of a Shift-JIS text file as a viewer lists them, tabs expanded. A file that
/// cannot be read gives the lines read so far, here none; nothing is thrown.
std::vector<std::string> viewerLines(const std::filesystem::path& file);

} // namespace vornhale::text
