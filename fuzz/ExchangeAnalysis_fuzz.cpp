// Runs the exchange analysis over arbitrary bytes: the .ALL and .TXT passes, the .ZLO call
// pass, the contest decision and the contest from a file name. The first byte picks the pass
// and the layout. The specified outcomes are a Failure or a result.

#include "FuzzSupport.h"
#include "readers/ExchangeAnalysis.h"
#include "readers/ZloRecord.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    if (size == 0) {
        return 0;
    }
    const std::uint8_t flags = data[0];
    const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);

    settings::Options options;
    const char* layouts[] = {"MNG,$DX,Calls,Zone,IOTA,州名,,", "Zone,,", "", "IOTA,Calls"};
    options.set("Rmks1_cfg", layouts[flags & 3]);
    options.set("Rmks2_cfg", layouts[(flags >> 2) & 3]);
    const readers::RemarkCells layout = readers::RemarkCells::fromOptions(options);
    readers::ExchangeAnalysis analysis;

    const std::filesystem::path path =
        fuzz::writeInput(fuzz::scratchHome() / ((flags & 16) ? "IARU.TXT" : "FUZZ.ALL"), bytes);
    fuzz::allowingFailure([&] {
        if (flags & 16) {
            analysis.check_rcvd_txt(path, path.string(), flags & 32, layout);
        } else {
            analysis.check_rcvd_all(path, path.string(), flags & 32, layout);
        }
    });
    // The same bytes as a .ZLO, and as a contest name and a file name.
    analysis.Check_Use_Item(bytes, layout);
    analysis.check_rcvd_zlo(readers::ZloFile::fromBytes(bytes), layout);
    (void)readers::contestFromFileName(bytes);
    (void)analysis.hasMissingItems();
    return 0;
}
