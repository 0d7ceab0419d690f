#include "text/ByteKeySort.h"

#include "text/FileBytes.h"
#include "text/LineFile.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <future>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::text {
namespace {

// A line to sort: the first eight bytes of its key as one big-endian number (zeros past the
// key's end), the whole key and the line's place in the file.
struct Entry
{
    std::uint64_t head;
    std::string_view key;
    std::size_t index;
};

std::uint64_t headOf(std::string_view key)
{
    if constexpr (std::endian::native == std::endian::little) {
        if (key.size() >= 8) {
            std::uint64_t word;
            std::memcpy(&word, key.data(), 8);
            return __builtin_bswap64(word);
        }
    }
    unsigned char bytes[8] = {};
    if (!key.empty()) {
        std::memcpy(bytes, key.data(), std::min<std::size_t>(key.size(), 8));
    }
    std::uint64_t head = 0;
    for (unsigned char b : bytes) {
        head = head << 8 | b;
    }
    return head;
}

// The order of the keys of two entries whose heads are equal (<0, 0, >0), as their unsigned
// bytes compare. Equal heads mean equal first eight bytes, where a key's missing bytes count as
// zeros: two keys of eight bytes or fewer then differ at most in their length, and two longer
// keys first differ after their eighth byte.
int orderOfEqualHeads(std::string_view a, std::string_view b)
{
    if (a.size() <= 8 && b.size() <= 8) {
        return a.size() < b.size() ? -1 : (a.size() > b.size() ? 1 : 0);
    }
    // string_view compares chars through char_traits<char>, which compares as unsigned char.
    if (a.size() > 8 && b.size() > 8) {
        return a.substr(8).compare(b.substr(8));
    }
    return a.compare(b);
}

// Whether `a` goes before `b` in the order of their keys' unsigned bytes. The heads decide
// unless they are equal: a smaller head means a smaller byte at the first difference, or a
// key that ends where the other goes on. The places break ties, so the order is stable.
bool keyBefore(const Entry& a, const Entry& b)
{
    if (a.head != b.head) {
        return a.head < b.head;
    }
    const int order = orderOfEqualHeads(a.key, b.key);
    return order != 0 ? order < 0 : a.index < b.index;
}

// Puts `entries` in the order of `before`, a strict order in which no two entries are equal,
// so that any way of sorting gives the one same result. A file that comes nearly in order (the
// card-order keys follow a file already in the order of its calls) is put in order by moving
// each line back past the few it must precede; when that moves more than a few lines per line,
// the file is taken as unordered and sorted whole.
template <typename Before> void sortEntries(std::vector<Entry>& entries, Before before)
{
    std::size_t budget = 4 * entries.size() + 64;
    for (std::size_t i = 1; i < entries.size(); ++i) {
        if (!before(entries[i], entries[i - 1])) {
            continue;
        }
        const Entry moving = entries[i];
        std::size_t j = i;
        do {
            entries[j] = entries[j - 1];
            --j;
        } while (--budget != 0 && j > 0 && before(moving, entries[j - 1]));
        entries[j] = moving;
        if (budget == 0) {
            std::sort(entries.begin(), entries.end(), before);
            return;
        }
    }
}

// From this many lines, the two halves are put in order side by side and then merged: `before`
// leaves no two entries equal, so the merge gives what one sort gives.
constexpr std::size_t kSideBySideFrom = 1 << 15;

template <typename Before> void sortInHalves(std::vector<Entry>& entries, Before before)
{
    if (entries.size() < kSideBySideFrom) {
        sortEntries(entries, before);
        return;
    }
    const auto middle = entries.begin() + static_cast<std::ptrdiff_t>(entries.size() / 2);
    std::vector<Entry> second(middle, entries.end());
    entries.erase(middle, entries.end());
    auto secondDone = std::async(std::launch::async, [&second, before] {
        sortEntries(second, before);
    });
    sortEntries(entries, before);
    secondDone.get();
    std::vector<Entry> merged;
    merged.reserve(entries.size() + second.size());
    std::merge(entries.begin(), entries.end(), second.begin(), second.end(),
               std::back_inserter(merged), before);
    entries.swap(merged);
}

} // namespace

void sortLinesByKey(const std::filesystem::path& in, const std::filesystem::path& out, int start,
                    int length, bool descending)
{
    // A file sorted onto itself is emptied before its lines are written: they are then held
    // rather than read where the file lies.
    std::error_code ec;
    std::optional<FileBytes> mapped;
    std::string held;
    if (std::filesystem::equivalent(in, out, ec)) {
        held = readFileBytes(in);
    } else {
        mapped.emplace(in);
    }
    const std::vector<std::string_view> lines =
        splitLines(mapped ? mapped->view() : std::string_view(held));
    const std::size_t from = start > 0 ? static_cast<std::size_t>(start - 1) : 0;
    const std::size_t count = length > 0 ? static_cast<std::size_t>(length) : 0;

    std::vector<Entry> entries;
    entries.reserve(lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string_view line = lines[i];
        const std::string_view key =
            from < line.size() ? line.substr(from, count) : std::string_view{};
        entries.push_back({headOf(key), key, i});
    }
    if (descending) {
        // Keys reversed, equal keys still in the file's order.
        sortInHalves(entries, [](const Entry& a, const Entry& b) {
            if (a.head != b.head) {
                return a.head > b.head;
            }
            const int order = orderOfEqualHeads(a.key, b.key);
            return order != 0 ? order > 0 : a.index < b.index;
        });
    } else {
        sortInHalves(entries, keyBefore);
    }

    // The lines go out in their new order, each from wherever it lies in the file: what the
    // lines ahead need is fetched while earlier ones are copied, so that the copies do not
    // each wait on memory.
    constexpr std::size_t kAhead = 8;
    LineWriter writer(out);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i + 2 * kAhead < entries.size()) {
            __builtin_prefetch(&lines[entries[i + 2 * kAhead].index]);
        }
        if (i + kAhead < entries.size()) {
            const std::string_view ahead = lines[entries[i + kAhead].index];
            __builtin_prefetch(ahead.data());
            __builtin_prefetch(ahead.data() + ahead.size());
        }
        writer.writeRaw(lines[entries[i].index]);
    }
    writer.close();
}

} // namespace vornhale::text
