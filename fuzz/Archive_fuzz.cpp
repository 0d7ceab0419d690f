// Unpacks arbitrary bytes as an LZH or ZIP archive into a scratch folder, with small limits.
// The specified outcomes are a refusal or files written inside the folder; a file reported
// outside the folder, or an uncaught exception, is a finding.

#include "tools/Archive.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    namespace fs = std::filesystem;
    using vornhale::tools::Archive;
    static const fs::path home =
        fs::temp_directory_path() / ("vornhale-fuzz-archive-" + std::to_string(getpid()));
    const fs::path file = home / "input.bin";
    const fs::path folder = home / "area" / "target";
    std::error_code ec;
    fs::remove_all(home / "area", ec);
    fs::create_directories(home, ec);
    {
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }

    const bool valid = Archive::isValid(file);
    const int count = Archive::count(file);
    if (valid != (count >= 0)) {
        std::abort();
    }
    vornhale::tools::ArchiveLimits limits;
    limits.maxTotalBytes = 1 << 20;
    limits.maxEntries = 64;
    const auto result = Archive::extractAll(file, folder, size > 0 && (data[0] & 1), limits);
    for (const fs::path& written : result.files) {
        if (written.is_absolute()) {
            std::abort();
        }
        for (const fs::path& part : written) {
            if (part == "..") {
                std::abort();
            }
        }
    }
    // Nothing may appear beside the target folder.
    for (const auto& entry : fs::directory_iterator(home / "area", ec)) {
        if (entry.path() != folder) {
            std::abort();
        }
    }
    return 0;
}
