#include "ZlogTextFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    return vornhale::fuzz::runZlogReader(data, size, "FUZZ.TXT");
}
