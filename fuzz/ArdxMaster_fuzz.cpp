// Any bytes as zLog's ARDX.DAT and ARRL10.DAT (two pieces cut at 0x1E): the fold into
// ardx_dat.mas either fails or loads codes that the lookup finds again.

#include "FuzzSupport.h"
#include "reference/ArdxMaster.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    const base::ProgramFolder& folder = fuzz::programFolder();
    const std::filesystem::path dat = folder.strPath / "zlog_dat";
    std::filesystem::create_directories(dat);
    const auto pieces = fuzz::piecesOf(fuzz::bytesOf(data, size), 2);
    fuzz::writeInput(dat / "ARDX.DAT", pieces[0]);
    fuzz::writeInput(dat / "ARRL10.DAT", pieces[1]);
    base::Trace trace;
    reference::ArdxMaster master;
    fuzz::allowingFailure([&] { master.ardx_sep(dat, folder.drive_path, trace); });
    for (const std::string& code : master.Ardx_code()) {
        (void)master.get_ardx(code);
    }
    (void)master.get_ardx(pieces[0].substr(0, 8));
    return 0;
}
