// Any bytes as the list of entities without cards (a settings value): the names split and
// check, and a contact's entity is tested against the table.

#include "FuzzSupport.h"
#include "history/NoQslCountries.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    const std::string_view bytes = fuzz::bytesOf(data, size);
    const auto pieces = fuzz::piecesOf(bytes, 2);
    const auto check = [](std::string_view name) {
        return name == "JA" || name == "W" ? std::string() : std::string(name);
    };
    const auto table = history::NoQslCountries::no_qsl_cty_0(pieces[0], check);
    if (table.names().size() > history::NoQslCountries::kMaxNames) {
        __builtin_trap();
    }
    (void)table.no_qsl_cty_1(pieces[1]);
    for (const std::string& name : table.names()) {
        if (!name.empty() && !table.no_qsl_cty_1(name)) {
            __builtin_trap(); // a name of the table is found in itself
        }
    }
    return 0;
}
