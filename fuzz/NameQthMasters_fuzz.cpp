// Any bytes as name_mas.txt and as qth_mas.txt: the masters load, every call they hold is
// found at or before its own record, and the line count of the file is shown.

#include "FuzzSupport.h"
#include "reference/NameQthMasters.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    const std::filesystem::path file = fuzz::writeInput("name_mas.txt", data, size);
    base::RunObserver observer;
    for (const auto kind : {reference::CallMaster::Kind::Name, reference::CallMaster::Kind::Qth}) {
        reference::CallMaster master(kind);
        fuzz::allowingFailure([&] {
            kind == reference::CallMaster::Kind::Name
                ? reference::read_name_mas_txt(master, file, observer)
                : reference::read_qth_mas_txt(master, file, observer);
        });
        const auto& calls = master.calls();
        for (std::size_t i = 0; i < calls.size() && i < 500; ++i) {
            const std::ptrdiff_t found = master.find(calls[i]);
            if (!calls[i].empty() && (found < 0 || static_cast<std::size_t>(found) > i)) {
                __builtin_trap();
            }
            std::string name, code, qth, last;
            int hit = 0;
            reference::get_name_mas(master, calls[i], name, code, qth, last);
            reference::get_qth_mas(master, calls[i], name, code, qth, last, hit);
        }
    }
    (void)reference::cmdCount_Click(file, observer);
    return 0;
}
