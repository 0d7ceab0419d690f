#include "CabrilloAdifFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    return vornhale::fuzz::runCabrilloAdif(data, size, "FUZZ.ADI",
                                           vornhale::readers::InputKind::Adi);
}
