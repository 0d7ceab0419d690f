#include "tools/Archive.h"

#include <archive.h>
#include <archive_entry.h>
#include <fstream>
#include <optional>
#include <string_view>

namespace vornhale::tools {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBlockSize = 16384;

// One libarchive reader of the two formats the data files come in.
class Reader
{
public:
    Reader() : m_a(archive_read_new())
    {
        archive_read_support_format_lha(m_a);
        archive_read_support_format_zip(m_a);
    }
    ~Reader() { archive_read_free(m_a); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    bool open(const fs::path& file)
    {
        return archive_read_open_filename(m_a, file.c_str(), kBlockSize) == ARCHIVE_OK;
    }
    archive* get() const { return m_a; }
    std::string error() const
    {
        const char* e = archive_error_string(m_a);
        return e != nullptr ? e : "unreadable archive";
    }

    /// The next header; false at the end or on a failure (`failed` then tells which).
    bool next(archive_entry*& entry)
    {
        const int rc = archive_read_next_header(m_a, &entry);
        m_failed = rc != ARCHIVE_OK && rc != ARCHIVE_WARN && rc != ARCHIVE_EOF;
        return rc == ARCHIVE_OK || rc == ARCHIVE_WARN;
    }
    bool failed() const { return m_failed; }

private:
    archive* m_a;
    bool m_failed = false;
};

bool isSeparator(char c)
{
    return c == '/' || c == '\\';
}

// The parts of an archive path, or nothing when it could lead out of the folder: an absolute
// path, a drive letter, or a ".." part, with either separator. Empty and "." parts drop out.
std::optional<std::vector<std::string>> safeParts(std::string_view name)
{
    if (name.empty() || isSeparator(name.front())) {
        return std::nullopt;
    }
    if (name.size() >= 2 && name[1] == ':') {
        return std::nullopt;
    }
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= name.size(); ++i) {
        if (i < name.size() && !isSeparator(name[i])) {
            continue;
        }
        const std::string_view part = name.substr(start, i - start);
        start = i + 1;
        if (part == "..") {
            return std::nullopt;
        }
        if (!part.empty() && part != ".") {
            parts.emplace_back(part);
        }
    }
    return parts;
}

fs::path joined(const std::vector<std::string>& parts)
{
    fs::path p;
    for (const std::string& part : parts) {
        p /= part;
    }
    return p;
}

bool isLink(const fs::path& p)
{
    std::error_code ec;
    return fs::is_symlink(fs::symlink_status(p, ec));
}

// Makes the folders of `relative` under `folder`, refusing to pass through a link that stands
// in the folder (it could lead anywhere).
bool makeFoldersInside(const fs::path& folder, const fs::path& relative, std::string& error)
{
    fs::path at = folder;
    for (const fs::path& part : relative) {
        at /= part;
        std::error_code ec;
        const fs::file_status st = fs::symlink_status(at, ec);
        if (fs::is_symlink(st)) {
            error = "a link in the folder stands in the way: " + at.string();
            return false;
        }
        if (!fs::exists(st)) {
            fs::create_directory(at, ec);
            if (ec) {
                error = "cannot make " + at.string() + ": " + ec.message();
                return false;
            }
        } else if (!fs::is_directory(st)) {
            error = "a file stands where a folder belongs: " + at.string();
            return false;
        }
    }
    return true;
}

// Clears the place of a file to be written: a link or file there goes, a folder refuses.
bool clearPlace(const fs::path& target, std::string& error)
{
    std::error_code ec;
    const fs::file_status st = fs::symlink_status(target, ec);
    if (!fs::exists(st) && !fs::is_symlink(st)) {
        return true;
    }
    if (fs::is_directory(st)) {
        error = "a folder stands where a file belongs: " + target.string();
        return false;
    }
    fs::remove(target, ec);
    if (ec) {
        error = "cannot replace " + target.string() + ": " + ec.message();
        return false;
    }
    return true;
}

std::string entryName(archive_entry* entry)
{
    const char* name = archive_entry_pathname(entry);
    return name != nullptr ? name : "";
}

// Reads every entry without writing, and refuses what must not be unpacked. The data are
// decompressed and counted, since a header's size can lie.
std::string survey(const fs::path& file, const ArchiveLimits& limits)
{
    Reader r;
    if (!r.open(file)) {
        return "not an LZH or ZIP archive: " + r.error();
    }
    archive_entry* entry = nullptr;
    std::size_t entries = 0;
    std::uintmax_t total = 0;
    while (r.next(entry)) {
        const std::string name = entryName(entry);
        if (++entries > limits.maxEntries) {
            return "more than " + std::to_string(limits.maxEntries) + " entries";
        }
        if (!safeParts(name)) {
            return "an entry would land outside the folder: " + name;
        }
        if (const char* hard = archive_entry_hardlink(entry); hard != nullptr && !safeParts(hard)) {
            return "a link points outside the folder: " + name + " -> " + hard;
        }
        if (archive_entry_filetype(entry) == AE_IFLNK) {
            const char* target = archive_entry_symlink(entry);
            if (target == nullptr || !safeParts(target)) {
                return "a link points outside the folder: " + name + " -> " +
                       (target != nullptr ? target : "");
            }
        }
        if (archive_entry_size_is_set(entry) != 0 && archive_entry_size(entry) >= 0 &&
            static_cast<std::uintmax_t>(archive_entry_size(entry)) > limits.maxTotalBytes) {
            return "unpacks to more than " + std::to_string(limits.maxTotalBytes) + " bytes";
        }
        const void* buffer = nullptr;
        std::size_t size = 0;
        la_int64_t offset = 0;
        for (;;) {
            const int rc = archive_read_data_block(r.get(), &buffer, &size, &offset);
            if (rc == ARCHIVE_EOF) {
                break;
            }
            if (rc != ARCHIVE_OK && rc != ARCHIVE_WARN) {
                return "broken entry " + name + ": " + r.error();
            }
            total += size;
            if (total > limits.maxTotalBytes) {
                return "unpacks to more than " + std::to_string(limits.maxTotalBytes) + " bytes";
            }
        }
    }
    if (r.failed()) {
        return "not an LZH or ZIP archive: " + r.error();
    }
    return {};
}

bool writeData(Reader& r, const fs::path& target, std::uintmax_t& total,
               const ArchiveLimits& limits, std::string& error)
{
    std::ofstream out(target, std::ios::binary | std::ios::trunc);
    if (!out) {
        error = "cannot write " + target.string();
        return false;
    }
    const void* buffer = nullptr;
    std::size_t size = 0;
    la_int64_t offset = 0;
    std::uintmax_t written = 0;
    for (;;) {
        const int rc = archive_read_data_block(r.get(), &buffer, &size, &offset);
        if (rc == ARCHIVE_EOF) {
            break;
        }
        if (rc != ARCHIVE_OK && rc != ARCHIVE_WARN) {
            error = "broken entry: " + r.error();
            return false;
        }
        total += size;
        if (total > limits.maxTotalBytes) {
            error = "unpacks to more than " + std::to_string(limits.maxTotalBytes) + " bytes";
            return false;
        }
        // A sparse entry leaves its gaps as zero bytes.
        if (offset >= 0 && static_cast<std::uintmax_t>(offset) > written) {
            out.seekp(offset);
            written = static_cast<std::uintmax_t>(offset);
        }
        out.write(static_cast<const char*>(buffer), static_cast<std::streamsize>(size));
        written += size;
    }
    out.close();
    if (!out) {
        error = "cannot write " + target.string();
        return false;
    }
    return true;
}

} // namespace

bool Archive::isValid(const fs::path& archive)
{
    return count(archive) >= 0;
}

int Archive::count(const fs::path& file)
{
    Reader r;
    if (!r.open(file)) {
        return -1;
    }
    archive_entry* entry = nullptr;
    int files = 0;
    while (r.next(entry)) {
        if (archive_entry_filetype(entry) != AE_IFDIR) {
            ++files;
        }
        archive_read_data_skip(r.get());
    }
    return r.failed() ? -1 : files;
}

ExtractResult Archive::extractAll(const fs::path& file, const fs::path& folder, bool junkPaths,
                                  const ArchiveLimits& limits)
{
    ExtractResult result;
    result.error = survey(file, limits);
    if (!result.error.empty()) {
        return result;
    }
    if (isLink(folder)) {
        result.error = "the target folder is a link: " + folder.string();
        return result;
    }
    std::error_code ec;
    fs::create_directories(folder, ec);
    if (!fs::is_directory(folder, ec)) {
        result.error = "cannot make the folder " + folder.string();
        return result;
    }

    Reader r;
    if (!r.open(file)) {
        result.error = r.error();
        return result;
    }
    archive_entry* entry = nullptr;
    std::uintmax_t total = 0;
    while (r.next(entry)) {
        std::vector<std::string> parts = *safeParts(entryName(entry));
        const auto type = archive_entry_filetype(entry);
        if (type == AE_IFDIR) {
            if (!junkPaths && !makeFoldersInside(folder, joined(parts), result.error)) {
                return result;
            }
            continue;
        }
        if (parts.empty()) {
            continue;
        }
        if (junkPaths) {
            parts.erase(parts.begin(), parts.end() - 1);
        }
        const fs::path relative = joined(parts);
        if (!makeFoldersInside(folder, relative.parent_path(), result.error) ||
            !clearPlace(folder / relative, result.error)) {
            return result;
        }
        const fs::path target = folder / relative;
        if (const char* hard = archive_entry_hardlink(entry); hard != nullptr) {
            std::vector<std::string> source = *safeParts(hard);
            if (junkPaths && !source.empty()) {
                source.erase(source.begin(), source.end() - 1);
            }
            fs::create_hard_link(folder / joined(source), target, ec);
            if (ec) {
                result.error = "cannot link " + target.string() + ": " + ec.message();
                return result;
            }
        } else if (type == AE_IFLNK) {
            fs::create_symlink(joined(*safeParts(archive_entry_symlink(entry))), target, ec);
            if (ec) {
                result.error = "cannot link " + target.string() + ": " + ec.message();
                return result;
            }
        } else if (type == AE_IFREG || type == 0) {
            if (!writeData(r, target, total, limits, result.error)) {
                return result;
            }
        } else {
            // Devices and pipes have no place among data files.
            continue;
        }
        result.files.push_back(relative);
        ++result.count;
    }
    if (r.failed()) {
        result.error = r.error();
        return result;
    }
    result.ok = true;
    return result;
}

} // namespace vornhale::tools
