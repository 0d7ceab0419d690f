// Any bytes as the manager file: it loads or takes the failure path, and every entry it holds
// is found again by its own call.
#include "base/Trace.h"
#include "failure/Failure.h"
#include "manager/ManagerMaster.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    static const std::string path = "/tmp/ManagerMaster_fuzz_" + std::to_string(getpid()) + ".txt";
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (f == nullptr) {
        return 0;
    }
    std::fwrite(data, 1, size, f);
    std::fclose(f);
    base::Trace trace;
    manager::ManagerMaster master;
    try {
        master.read_MNG_z_full_mp(path, trace);
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
