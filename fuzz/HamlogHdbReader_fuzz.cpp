// Any bytes as a HAMLOG database: an open either fails or gives a count, and every record
// either reads or throws the failure of the run; nothing is read beyond the file.

#include "failure/Failure.h"
#include "history/HamlogHdbReader.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace {

std::filesystem::path scratchFile()
{
    static const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("HamlogHdbReader_fuzz_" + std::to_string(getpid()) + ".hdb");
    return path;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto path = scratchFile();
    if (std::FILE* f = std::fopen(path.c_str(), "wb")) {
        std::fwrite(data, 1, size, f);
        std::fclose(f);
    } else {
        return 0;
    }
    vornhale::history::HamlogHdbReader reader;
    const auto count = reader.open(path);
    if (count) {
        // A claimed count may be huge; the file holds few records, so stop at the first
        // failure past a bound.
        const long last = *count < 2000 ? *count : 2000;
        for (long n = 1; n <= last; ++n) {
            try {
                const auto& fields = reader.read(n);
                (void)fields;
            } catch (const vornhale::failure::Failure&) {
                break;
            }
        }
        try {
            reader.read(*count + 1);
        } catch (const vornhale::failure::Failure&) {
        }
    }
    reader.close();
    return 0;
}
