// Any bytes as a page of the web manager search or of the call directory: the page is decoded
// and scanned without a crash or a hang, and a manager found is one piece of one line.

#include "FuzzSupport.h"
#include "manager/WebManagerSearch.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using vornhale::manager::WebManagerSearch;
    const std::string_view bytes = vornhale::fuzz::bytesOf(data, size);
    const auto lines = WebManagerSearch::pageLines(bytes);
    for (const char* call : {"XX9TST", ""}) {
        const auto scan = WebManagerSearch::scanQslSearchPage(lines, call);
        if (!scan.Web_ok && !scan.mng_web.empty()) {
            __builtin_trap(); // no result line, no manager
        }
    }
    const auto directory = WebManagerSearch::scanCallDirectoryPage(lines);
    if (!directory.Web_ok && !directory.mng_web.empty()) {
        __builtin_trap();
    }
    for (const auto& line : lines) {
        WebManagerSearch::webDateText(line);
        WebManagerSearch::squeezeBlanks(line);
    }
    return 0;
}
