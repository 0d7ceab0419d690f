#include "text/ByteKeySort.h"

#include "text/LineFile.h"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <vector>

namespace vornhale::text {

void sortLinesByKey(const std::filesystem::path& in, const std::filesystem::path& out, int start,
                    int length, bool descending)
{
    const std::string bytes = readFileBytes(in);
    const std::vector<std::string_view> lines = splitLines(bytes);
    const std::size_t from = start > 0 ? static_cast<std::size_t>(start - 1) : 0;
    const std::size_t count = length > 0 ? static_cast<std::size_t>(length) : 0;

    std::vector<std::string_view> keys;
    keys.reserve(lines.size());
    for (std::string_view line : lines) {
        keys.push_back(from < line.size() ? line.substr(from, count) : std::string_view{});
    }
    // string_view compares chars through char_traits<char>, which compares as unsigned char.
    std::vector<std::size_t> order(lines.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    if (descending) {
        std::stable_sort(order.begin(), order.end(),
                         [&](std::size_t a, std::size_t b) { return keys[b] < keys[a]; });
    } else {
        std::stable_sort(order.begin(), order.end(),
                         [&](std::size_t a, std::size_t b) { return keys[a] < keys[b]; });
    }

    LineWriter writer(out);
    for (std::size_t i : order) {
        writer.writeRaw(lines[i]);
    }
    writer.close();
}

} // namespace vornhale::text
