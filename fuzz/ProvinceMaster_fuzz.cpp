// Any bytes as a province master, in the program's .mas form or as a zLog contest .dat file
// (the first byte chooses), and as cont_name_zlo.cfg: every load either fails or gives codes
// that the lookup finds again.

#include "FuzzSupport.h"
#include "reference/ProvinceMaster.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    const std::uint8_t flags = fuzz::firstByte(data, size);
    const std::filesystem::path file =
        fuzz::writeInput((flags & 1) ? "FUZZ.dat" : "FUZZ.mas", data, size);
    base::Trace trace;
    reference::ProvinceMaster master;
    fuzz::allowingFailure([&] {
        if (!master.read_prov_mas_dat(file, trace)) {
            std::abort(); // both extensions are known
        }
    });
    for (const std::string& code : master.Prov_code()) {
        (void)master.get_prov_mas(code, (flags & 2) != 0, "Prov:", flags & 4 ? 2 : 0);
    }
    (void)master.get_prov_mas(fuzz::bytesOf(data, size).substr(0, 12), false, "", 1);

    const base::ProgramFolder& folder = fuzz::programFolder();
    fuzz::writeInput(folder.strPath / "cont_name_zlo.cfg", fuzz::bytesOf(data, size));
    fuzz::allowingFailure([&] {
        for (std::string_view contest : {"ALL JA", "CQ WW", ""}) {
            (void)reference::read_cont_name_zlo(contest, folder.strPath, "/prov/", "/dat/",
                                                "given.mas");
        }
    });
    return 0;
}
