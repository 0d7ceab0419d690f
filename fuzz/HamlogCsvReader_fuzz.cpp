// Any bytes as a HAMLOG CSV export used as history: the open gives a count or nothing, every
// record reads or throws the failure of the run, and a number past the count is refused.

#include "FuzzSupport.h"
#include "history/HamlogCsvReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    const std::filesystem::path path = fuzz::writeInput("FUZZ.csv", data, size);
    history::HamlogCsvReader reader;
    const auto count = reader.open(path);
    if (count) {
        const long last = *count < 2000 ? *count : 2000;
        for (long n = 1; n <= last; ++n) {
            fuzz::allowingFailure([&] { (void)reader.read(n); });
        }
        bool refused = false;
        try {
            reader.read(*count + 1);
        } catch (const failure::Failure&) {
            refused = true;
        }
        if (!refused) {
            __builtin_trap(); // a record past the count cannot exist
        }
    }
    reader.close();
    (void)history::HamlogCsvReader::parseLine(fuzz::bytesOf(data, size));
    return 0;
}
