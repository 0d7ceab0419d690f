// Runs the open step and the reader of a CTESTWIN .lg8 log over arbitrary bytes: the log
// decoded, the converted .ALL text, the exchange analysis and the common lines.

#include "KindReaderFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    return vornhale::fuzz::runKindReader(data, size, "FUZZ.LG8", vornhale::readers::InputKind::Lg8);
}
