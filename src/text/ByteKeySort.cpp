#include "text/ByteKeySort.h"

#include "text/LineFile.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
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
    std::memcpy(bytes, key.data(), std::min<std::size_t>(key.size(), 8));
    std::uint64_t head = 0;
    for (unsigned char b : bytes) {
        head = head << 8 | b;
    }
    return head;
}

// Whether `a` goes before `b` in the order of their keys' unsigned bytes. The heads decide
// unless they are equal: a smaller head means a smaller byte at the first difference, or a
// key that ends where the other goes on. The places break ties, so the order is stable.
bool keyBefore(const Entry& a, const Entry& b)
{
    if (a.head != b.head) {
        return a.head < b.head;
    }
    // string_view compares chars through char_traits<char>, which compares as unsigned char.
    const int order = a.key.compare(b.key);
    return order != 0 ? order < 0 : a.index < b.index;
}

} // namespace

void sortLinesByKey(const std::filesystem::path& in, const std::filesystem::path& out, int start,
                    int length, bool descending)
{
    const std::string bytes = readFileBytes(in);
    const std::vector<std::string_view> lines = splitLines(bytes);
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
        std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
            if (a.head != b.head) {
                return a.head > b.head;
            }
            const int order = a.key.compare(b.key);
            return order != 0 ? order > 0 : a.index < b.index;
        });
    } else {
        std::sort(entries.begin(), entries.end(), keyBefore);
    }

    LineWriter writer(out);
    for (const Entry& e : entries) {
        writer.writeRaw(lines[e.index]);
    }
    writer.close();
}

} // namespace vornhale::text
