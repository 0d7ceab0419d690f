#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::base {

/// The suffix of the program's own temporary files: a file is written whole under its name
/// with this suffix, then renamed into place. A file of that name left behind belongs to a
/// run that was killed.
inline constexpr std::string_view kWritingSuffix = ".writing";

/// The temporary name beside `path` under which its new content is written.
std::filesystem::path writingNameOf(const std::filesystem::path& path);

/// Replaces the file at `path` by `bytes` so that no reader ever sees a part of them: the
/// bytes go to the temporary name in the same folder, are flushed to the disk, and the file is
/// renamed into place. The previous file stays whole until the rename. A file that holds
/// exactly `bytes` already is left as it is. False (and no temporary left) when the file
/// cannot be written.
bool replaceFileWith(const std::filesystem::path& path, std::string_view bytes);

/// Removes the temporaries (names ending in `kWritingSuffix`) that killed runs left in
/// `folder`, not below it; other files are never touched.
void removeLeftTemporaries(const std::filesystem::path& folder);

/// Flushes a written file to the disk; false when it cannot be opened or flushed.
bool syncFile(const std::filesystem::path& path);
/// Flushes written files to the disk, all at once; false when one cannot be opened or flushed.
bool syncFiles(const std::vector<std::filesystem::path>& paths);

/// Flushes a folder's entries (a rename in it) to the disk.
void syncFolder(const std::filesystem::path& folder);

} // namespace vornhale::base
