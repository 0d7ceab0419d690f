// Any bytes as the layout history Vornhale_Rireki.cfg: it reads (perhaps stopping with an
// error), writes back, reads again to the same rows, and takes a new layout.

#include "FuzzSupport.h"
#include "settings/LayoutHistory.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    const std::filesystem::path file = fuzz::writeInput("Vornhale_Rireki.cfg", data, size);
    base::Trace trace;
    const auto first = settings::LayoutHistory::read(file, &trace);
    settings::LayoutHistory::save_rireki(file, first.rows);
    const auto second = settings::LayoutHistory::read(file, &trace);
    settings::LayoutHistory::save_rireki(file, second.rows);
    const auto third = settings::LayoutHistory::read(file, &trace);
    if (third.rows != second.rows) {
        __builtin_trap(); // a history written by the program reads back as written
    }
    if (!first.rows.empty()) {
        settings::LayoutHistory::addLayout(file, settings::LayoutHistory::lineOf(first.rows[0]));
    }
    return 0;
}
