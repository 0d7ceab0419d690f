// Any bytes as a comment history Vornhale.rmk1: it reads, is tidied (or refused when it holds
// too many comments) and written back without a crash.

#include "FuzzSupport.h"
#include "settings/RemarkHistory.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    const std::filesystem::path file = fuzz::writeInput("Vornhale.rmk1", data, size);
    const auto comments = settings::RemarkHistory::read(file);
    fuzz::allowingFailure([&] { settings::RemarkHistory::dupe_chk(file); });
    settings::RemarkHistory::save_rmks(fuzz::scratchHome(), comments, comments);
    (void)settings::RemarkHistory::read(file);
    return 0;
}
