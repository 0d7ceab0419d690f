// Any bytes as the manager file: it loads or takes the failure path, and every entry it holds
// is found again by its own call.

#include "FuzzSupport.h"
#include "manager/ManagerMaster.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    const std::filesystem::path path = fuzz::writeInput("MNG_fuzz.txt", data, size);
    base::Trace trace;
    manager::ManagerMaster master;
    try {
        master.read_MNG_z_full_mp(path.string(), trace);
    } catch (const failure::Failure&) {
        return 0; // a file without its two heading lines
    }
    const auto& calls = master.MNG_call();
    for (std::size_t i = 0; i < calls.size(); ++i) {
        // The first entry of a call answers for it, and no other answer can come back.
        const std::string answer = master.MNG_lookup(calls[i]);
        bool some = false;
        for (std::size_t k = 0; k <= i && !some; ++k) {
            some = master.MNG_manager()[k] == answer;
        }
        if (!some) {
            __builtin_trap();
        }
    }
    return 0;
}
