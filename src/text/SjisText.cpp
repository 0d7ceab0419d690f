#include "text/SjisText.h"

#include "app/Failure.h"
#include "text/SjisCodec.h"
#include "text/Utf8.h"

namespace vornhale::text {

std::size_t Len_sjis(std::string_view text)
{
    std::size_t bytes = 0;
    for (std::size_t pos = 0; pos < text.size();) {
        if (static_cast<unsigned char>(text[pos]) < 0x80) {
            ++bytes;
            ++pos;
            continue;
        }
        bytes += static_cast<std::size_t>(sjisWidth(nextCodePoint(text, pos)));
    }
    return bytes;
}

std::string Mid_sjis(std::string_view text, long start, std::optional<long> length, bool byteCut)
{
    if (start < 1) {
        throw app::Failure(app::failure::InvalidCall, "プロシージャの呼び出し、または引数が不正です。");
    }
    const long total = static_cast<long>(Len_sjis(text));
    long want = length ? *length : total - start + 1;
    if (length && *length < 0) {
        throw app::Failure(app::failure::InvalidCall, "プロシージャの呼び出し、または引数が不正です。");
    }
    if (want <= 0) {
        return {};
    }

    if (byteCut) {
        std::string bytes = encodeSjis(text);
        if (static_cast<std::size_t>(start) > bytes.size()) {
            return {};
        }
        return decodeSjis(std::string_view(bytes).substr(static_cast<std::size_t>(start - 1),
                                                         static_cast<std::size_t>(want)));
    }

    // Walk the characters once: the first one whose preceding bytes reach start - 1 begins the
    // result, which is the growing-prefix rule measured incrementally.
    std::size_t pos = 0;
    long before = 0;
    while (pos < text.size() && before < start - 1) {
        before += sjisWidth(nextCodePoint(text, pos));
    }
    if (before < start - 1) {
        return {};
    }
    std::string out;
    long taken = 0;
    while (pos < text.size()) {
        std::size_t next = pos;
        const int w = sjisWidth(nextCodePoint(text, next));
        if (taken + w > want) {
            break;
        }
        out.append(text.substr(pos, next - pos));
        taken += w;
        pos = next;
    }
    return out;
}

std::string_view Cut_nul(std::string_view text)
{
    const auto nul = text.find('\0');
    return nul == std::string_view::npos ? text : text.substr(0, nul);
}

} // namespace vornhale::text
