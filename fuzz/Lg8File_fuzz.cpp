// Runs the CTESTWIN log reader over arbitrary bytes and writes each contact in zLog's .ALL
// form. The specified outcomes are a Failure (no log, a cut-off record, a time outside the
// calendar) or the contacts.

#include "failure/Failure.h"
#include "readers/Lg8File.h"

#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    try {
        const readers::Lg8File log = readers::Lg8File::fromBytes(
            std::string_view(reinterpret_cast<const char*>(data), size));
        for (const readers::Lg8Qso& qso : log.qsos()) {
            (void)readers::zlogAllLine(qso);
        }
    } catch (const failure::Failure&) {
    }
    return 0;
}
