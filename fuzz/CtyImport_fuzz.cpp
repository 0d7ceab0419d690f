// Any bytes as cty.dat, its alias table cty_conv.txt and the DXCC master dxcc_mas.txt (three
// pieces cut at 0x1E): the import either fails or writes the masters, and the lookups over
// what it wrote answer for any call.

#include "FuzzSupport.h"
#include "reference/CtyEntityLookup.h"
#include "reference/CtyImport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    const base::ProgramFolder& folder = fuzz::programFolder();
    const auto pieces = fuzz::piecesOf(fuzz::bytesOf(data, size), 3);
    fuzz::writeInput(folder.strPath / "cty.dat", pieces[0]);
    fuzz::writeInput(folder.strPath / "cty_conv.txt", pieces[1]);
    const std::filesystem::path dxcc = fuzz::writeInput(folder.strPath / "dxcc_mas.txt", pieces[2]);
    for (const char* made : {"cty_mastS.txt", "cty_mastL.txt"}) {
        std::filesystem::remove(folder.strPath / made);
    }
    base::Trace trace;
    fuzz::QuietDialogs dialogs;
    reference::CtyImport import({folder.strPath, folder.drive_path}, trace, dialogs);
    bool imported = false;
    fuzz::allowingFailure([&] { imported = import.importAll(dxcc); });
    if (!imported) {
        return 0;
    }
    reference::CtyEntityLookup lookup;
    lookup.load(import.tables(), folder.strPath / "cty_mastL.txt");
    fuzz::allowingFailure([&] {
        for (std::string_view call : {"JA1ZZZ", "K1ABC/JA1", "VK9/W1AW/P", "", "/"}) {
            const std::string entity = lookup.entityOf(call);
            (void)lookup.dxcc_lookup(entity);
        }
        for (const std::string& prefix : import.tables().cty_s_prefix) {
            (void)lookup.entityOf(prefix + "1A");
        }
        (void)lookup.dxcc_name_check(pieces[1]);
        (void)lookup.dxcc_buro_by_code(pieces[2].substr(0, 8));
    });
    return 0;
}
