#include "readers/MemoNotes.h"

#include "text/Chars.h"
#include "text/SjisText.h"

#include <optional>
#include <utility>

namespace vornhale::readers {

namespace {

// The text behind the first "(" up to the next "(", every ")" removed and trimmed, as MHz
// text with the count of its characters; nothing for a length other than four to seven.
std::optional<std::pair<std::string, std::size_t>> megahertzOf(std::string_view note)
{
    const std::size_t open = note.find('(');
    if (open == std::string_view::npos) {
        return std::nullopt;
    }
    std::string_view inner = note.substr(open + 1);
    inner = inner.substr(0, inner.find('('));
    const std::string f(text::trim(text::replaceAll(inner, ")", "")));
    const std::size_t n = text::charCount(f);
    if (n < 4 || n > 7) {
        return std::nullopt;
    }
    return std::pair{text::replaceAll(text::left(f, n - 3) + "." + text::right(f, 3), "..", "."),
                     n};
}

} // namespace

void frequencyInParentheses(std::string_view note, std::string_view q_band, std::string& q_freq)
{
    if (text::contains(note, "(0)")) {
        q_freq = std::string(q_band);
    } else if (auto mhz = megahertzOf(note)) {
        q_freq = std::move(mhz->first);
    }
}

void freq_from_memo(std::string& q_memo, std::string_view q_band, std::string& q_freq)
{
    if (text::contains(q_memo, "(0)")) {
        q_freq = std::string(q_band);
    } else if (auto mhz = megahertzOf(q_memo)) {
        // The text stages write the frequency right-aligned.
        q_freq = std::string(mhz->second == 4 ? 6 : 5, ' ') + mhz->first;
    }
    const std::size_t open = text::instr(q_memo, "(");
    const std::size_t close = open == 0 ? 0 : text::instr(q_memo, ")", open);
    const std::string inner = open == 0    ? std::string()
                              : close == 0 ? text::mid(q_memo, open + 1)
                                           : text::mid(q_memo, open + 1, close - open - 1);
    if (!inner.empty()) {
        q_memo = text::replaceAll(q_memo, "(" + inner, "(");
    }
    q_memo = text::replaceAll(q_memo, "()", " ");
}

std::string op_from_memo(std::string_view line)
{
    const std::string_view l = text::Cut_nul(line);
    const std::size_t p = text::instr(l, "%");
    if (p == 0) {
        return {};
    }
    const std::string rest = text::mid(l, p + 2);
    const std::size_t end = text::instr(rest, "%");
    return std::string(text::trim(end == 0 ? rest : text::left(rest, end - 1)));
}

std::string memo_from_line(std::string_view line, std::string_view file_letter)
{
    const std::string l = text::replaceAll(line, "-DUPE-", "");
    const std::size_t fixed = file_letter == "A" ? 79 : 72;
    const std::size_t n = text::charCount(l);
    if (n <= fixed) {
        return {};
    }
    std::string memo = text::mid(l, fixed + 1);
    if (const std::size_t p = text::instrRev(memo, "%%"); p != 0) {
        memo = std::string(text::trim(text::mid(memo, p + 2)));
    }
    if (const std::size_t open = text::instr(memo, "("); open != 0) {
        const std::size_t close = text::instr(memo, ")");
        memo = text::left(memo, open - 1) + " " +
               (close == 0 ? std::string() : text::mid(memo, close + 1));
    }
    return memo;
}

} // namespace vornhale::readers
