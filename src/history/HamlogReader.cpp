#include "history/HamlogReader.h"

#include "history/HamlogCsvReader.h"
#include "history/HamlogHdbReader.h"
#include "text/Chars.h"
#include "text/SjisText.h"

namespace vornhale::history {

std::unique_ptr<HamlogReader> makeHamlogReader(const std::filesystem::path& path)
{
    if (text::equalsNoCase(path.extension().string(), ".csv")) {
        return std::make_unique<HamlogCsvReader>();
    }
    return std::make_unique<HamlogHdbReader>();
}

bool hamlogFilesPresent(std::string_view hamlog_hdb_dir)
{
    namespace fs = std::filesystem;
    std::error_code ec;
    const fs::path path{std::string(hamlog_hdb_dir)};
    if (text::equalsNoCase(path.extension().string(), ".csv")) {
        return fs::is_regular_file(path, ec);
    }
    std::string stem = text::Mid_sjis(hamlog_hdb_dir, 1, 120);
    const std::size_t dot = stem.rfind('.');
    if (dot == std::string::npos) {
        return false;
    }
    stem.resize(dot + 1);
    auto present = [&](const char* lower, const char* upper) {
        return fs::is_regular_file(fs::path(stem + lower), ec) ||
               fs::is_regular_file(fs::path(stem + upper), ec);
    };
    return present("hdb", "HDB") && present("mst", "MST");
}

} // namespace vornhale::history
