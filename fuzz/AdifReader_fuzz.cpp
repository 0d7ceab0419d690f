#include "KindReaderFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    return vornhale::fuzz::runKindReader(data, size, "FUZZ.ADI", vornhale::readers::InputKind::Adi);
}
