#include "text/SjisText.h"

#include "failure/Failure.h"
#include "text/SjisCodec.h"
#include "text/Utf8.h"

#include <algorithm>

namespace vornhale::text {

std::size_t Len_sjis(std::string_view text)
{
    if (isAsciiText(text)) {
        return text.size();
    }
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
    if (start < 1 || (length && *length < 0)) {
        throw failure::Failure(failure::InvalidCall, "プロシージャの呼び出し、または引数が不正です。");
    }
    const long want = length ? *length : static_cast<long>(Len_sjis(text)) - start + 1;
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

    // Log columns are nearly always ASCII: then bytes are characters.
    const std::size_t reach =
        std::min(text.size(), static_cast<std::size_t>(start - 1) + static_cast<std::size_t>(want));
    if (isAsciiText(text.substr(0, reach))) {
        if (static_cast<std::size_t>(start - 1) >= text.size()) {
            return {};
        }
        return std::string(text.substr(static_cast<std::size_t>(start - 1),
                                       static_cast<std::size_t>(want)));
    }

    // One walk over the characters: the first whose preceding bytes reach start - 1 begins
    // the result (the growing-prefix rule, measured incrementally); then characters are
    // taken while they fit in `want` bytes.
    auto widthAt = [&](std::size_t& pos) -> long {
        if (static_cast<unsigned char>(text[pos]) < 0x80) {
            ++pos;
            return 1;
        }
        return sjisWidth(nextCodePoint(text, pos));
    };
    std::size_t pos = 0;
    long before = 0;
    while (pos < text.size() && before < start - 1) {
        before += widthAt(pos);
    }
    if (before < start - 1) {
        return {};
    }
    const std::size_t begin = pos;
    long taken = 0;
    while (pos < text.size()) {
        std::size_t next = pos;
        const long w = widthAt(next);
        if (taken + w > want) {
            break;
        }
        taken += w;
        pos = next;
    }
    return std::string(text.substr(begin, pos - begin));
}

std::string_view Cut_nul(std::string_view text)
{
    const auto nul = text.find('\0');
    return nul == std::string_view::npos ? text : text.substr(0, nul);
}

std::string sjisColumn(std::string_view text, long width)
{
    std::string out = Mid_sjis(text, 1, width);
    const std::size_t bytes = Len_sjis(out);
    if (width > 0 && bytes < static_cast<std::size_t>(width)) {
        out.append(static_cast<std::size_t>(width) - bytes, ' ');
    }
    return out;
}

void appendSjisColumn(std::string& out, std::string_view text, long width)
{
    if (width <= 0 || !isAsciiText(text)) {
        out += sjisColumn(text, width);
        return;
    }
    // Every ASCII character is one byte of Shift-JIS.
    const auto w = static_cast<std::size_t>(width);
    const std::size_t n = std::min(text.size(), w);
    out.append(text.data(), n);
    out.append(w - n, ' ');
}

} // namespace vornhale::text
