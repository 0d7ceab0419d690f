// Runs the CTESTWIN log reader over arbitrary bytes and writes each contact in zLog's .ALL
// form. The specified outcomes are a Failure (no log, a cut-off record, a time outside the
// calendar) or the contacts.

#include "FuzzSupport.h"
#include "readers/Lg8File.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    fuzz::allowingFailure([&] {
        const readers::Lg8File log = readers::Lg8File::fromBytes(fuzz::bytesOf(data, size));
        for (std::size_t i = 0; i < log.size(); ++i) {
            (void)readers::zlogAllLine(log.qso(i));
        }
    });
    return 0;
}
