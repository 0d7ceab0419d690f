// Runs the two page parsers of the download window over arbitrary bytes. A name they return
// becomes a file of the program folder, so anything but a plain file name is a finding.

#include "FuzzSupport.h"
#include "tools/DataDownloads.h"

#include <cstdlib>

namespace {

void expectPlainName(const std::string& name)
{
    if (name == "." || name == ".." || name.find_first_of("/\\:") != std::string::npos) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using vornhale::tools::DataDownloads;
    const std::string_view page = vornhale::fuzz::bytesOf(data, size);
    expectPlainName(DataDownloads::ctyNameFromPage(page));
    expectPlainName(DataDownloads::unlhaNameFromPage(page));
    return 0;
}
