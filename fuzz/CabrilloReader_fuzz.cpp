#include "KindReaderFuzz.h"
#include "readers/CabrilloTxtForm.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    return vornhale::fuzz::runKindReader(data, size, "FUZZ.CBR", vornhale::readers::InputKind::Cbr,
                                         [](const vornhale::readers::ReaderContext& ctx) {
                                             vornhale::readers::cabrillo_2_zlog_txt(ctx);
                                         });
}
