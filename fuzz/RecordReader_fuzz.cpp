// Any text read as records: fields come back or the end is reported, never a crash or hang.
#include "FuzzSupport.h"
#include "text/Record.h"
#include "text/SjisCodec.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    auto reader = text::RecordReader::fromText(text::decodeSjis(fuzz::bytesOf(data, size)));
    try {
        std::size_t fields = 0;
        while (!reader.atEnd()) {
            reader.fields(13);
            if (++fields > size + 1) {
                __builtin_trap(); // every read must consume input
            }
        }
    } catch (const failure::Failure&) {
        // Running out of input inside a record is the specified outcome.
    }
    return 0;
}
