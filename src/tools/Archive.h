#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace vornhale::tools {

/// Bounds that keep a hostile or broken archive from filling the disk.
struct ArchiveLimits
{
    std::uintmax_t maxTotalBytes = 64ull << 20; ///< unpacked bytes of all entries together
    std::size_t maxEntries = 10000;
};

/// How an unpacking ended.
struct ExtractResult
{
    bool ok = false;
    int count = 0;                            ///< files (and links) written into the folder
    std::string error;                        ///< a plain description when not ok
    std::vector<std::filesystem::path> files; ///< what was written, inside the folder
};

/// LZH and ZIP archives through libarchive, in place of the two archive libraries the data
/// files were once unpacked with: validate, extract all into a folder, count.
///
/// An archive is refused whole, before anything is written, when one of its entries would
/// land outside the target folder (a "../" part, an absolute path or a drive letter, with
/// either separator), when a link points outside the folder (an absolute target or a "../"
/// part), or when it unpacks to more than the limits allow. Nothing outside the folder is
/// ever touched: no entry is written through a link that stands in the folder.
class Archive
{
public:
    /// Whether the file is an LZH or ZIP archive whose headers all read (`UnlhaCheckArchive`).
    static bool isValid(const std::filesystem::path& archive);

    /// The entries that are not folders (`UnlhaGetFileCount`); -1 when the file is no valid
    /// archive.
    static int count(const std::filesystem::path& archive);

    /// Extracts every entry into `folder`, made when missing; an existing file of the same
    /// name is replaced. With `junkPaths` each file lands directly in `folder` under its own
    /// name, as the LZH "e" command extracts. Never throws.
    static ExtractResult extractAll(const std::filesystem::path& archive,
                                    const std::filesystem::path& folder, bool junkPaths = false,
                                    const ArchiveLimits& limits = {});
};

} // namespace vornhale::tools
