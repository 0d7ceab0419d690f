// Any bytes as a HAMLOG database: an open either fails or gives a count, and every record
// either reads or throws the failure of the run; nothing is read beyond the file.

#include "FuzzSupport.h"
#include "history/HamlogHdbReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    const std::filesystem::path path = fuzz::writeInput("FUZZ.hdb", data, size);
    history::HamlogHdbReader reader;
    const auto count = reader.open(path);
    if (count) {
        // A claimed count may be huge; the file holds few records, so stop at the first
        // failure past a bound.
        const long last = *count < 2000 ? *count : 2000;
        for (long n = 1; n <= last; ++n) {
            try {
                (void)reader.read(n);
            } catch (const failure::Failure&) {
                break;
            }
        }
        fuzz::allowingFailure([&] { reader.read(*count + 1); });
    }
    reader.close();
    return 0;
}
