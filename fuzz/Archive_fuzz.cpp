// Unpacks arbitrary bytes as an LZH or ZIP archive into a scratch folder, with small limits.
// The specified outcomes are a refusal or files written inside the folder; a file reported
// outside the folder, or an uncaught exception, is a finding.

#include "FuzzSupport.h"
#include "tools/Archive.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    namespace fs = std::filesystem;
    using vornhale::tools::Archive;
    const fs::path& home = vornhale::fuzz::scratchHome();
    const fs::path file =
        vornhale::fuzz::writeInput(home / "input.bin", vornhale::fuzz::bytesOf(data, size));
    const fs::path folder = home / "area" / "target";
    std::error_code ec;
    fs::remove_all(home / "area", ec);

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
