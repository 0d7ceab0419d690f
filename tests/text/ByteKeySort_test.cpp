#include "support/TestSupport.h"
#include "text/ByteKeySort.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using namespace vornhale;

namespace {
std::string sorted(const std::string& input, int start, int length, bool descending)
{
    test::TempDir dir;
    test::writeBytes(dir / "in", input);
    text::sortLinesByKey(dir / "in", dir / "out", start, length, descending);
    return test::readBytes(dir / "out");
}

// The lines put in order by a stable sort of their keys, written with CR LF.
template <typename KeyOf>
std::string stablySorted(std::vector<std::string> lines, const KeyOf& keyOf, bool descending)
{
    std::stable_sort(lines.begin(), lines.end(), [&](const std::string& a, const std::string& b) {
        return descending ? keyOf(b) < keyOf(a) : keyOf(a) < keyOf(b);
    });
    std::string output;
    for (const auto& line : lines) {
        output += line + "\r\n";
    }
    return output;
}
} // namespace

TEST(ByteKeySort, SortsByTheKeyColumnsOnly)
{
    EXPECT_EQ(sorted("xb2\r\nxa1\r\nxc0\r\n", 2, 1, false), "xa1\r\nxb2\r\nxc0\r\n");
}

TEST(ByteKeySort, IsStableOnEqualKeys)
{
    EXPECT_EQ(sorted("a3\r\nb1\r\na1\r\nb2\r\na2\r\n", 1, 1, false),
              "a3\r\na1\r\na2\r\nb1\r\nb2\r\n");
}

TEST(ByteKeySort, ComparesBytesAsUnsigned)
{
    EXPECT_EQ(sorted("\xB1\r\nZ\r\n", 1, 1, false), "Z\r\n\xB1\r\n");
}

TEST(ByteKeySort, DescendingKeepsEqualKeysInOrder)
{
    EXPECT_EQ(sorted("a1\nb1\na2\n", 1, 1, true), "b1\r\na1\r\na2\r\n");
}

TEST(ByteKeySort, AShortLineSortsBeforeLongerOnesItPrefixes)
{
    EXPECT_EQ(sorted("abc\r\nab\r\n\r\na\r\n", 1, 3, false), "\r\na\r\nab\r\nabc\r\n");
}

TEST(ByteKeySort, AKeyThatGoesOnInZeroBytesSortsAfterTheKeyItExtends)
{
    // Short keys that are alike in their first eight bytes, where a missing byte counts as a
    // zero: only their lengths tell them apart.
    const std::string lines("A\0\0\r\nA\r\nA\0\r\n", 12);
    EXPECT_EQ(sorted(lines, 1, 5, false), std::string("A\r\nA\0\r\nA\0\0\r\n", 12));
    EXPECT_EQ(sorted(lines, 1, 5, true), std::string("A\0\0\r\nA\0\r\nA\r\n", 12));
}

TEST(ByteKeySort, OrdersAsAStableSortOfTheKeyBytesDoes)
{
    // Keys that differ past their eighth byte, keys that are prefixes of others, zero bytes
    // and bytes above 0x7F, lines shorter than the key's start, and many equal keys; in a
    // short file and in one long enough to be sorted in halves side by side.
    for (const int count : {2000, 70000}) {
        std::mt19937 random(20261124);
        const std::string alphabet("AB\0\x7F\x80\xFF ", 7);
        std::vector<std::string> lines;
        for (int i = 0; i < count; ++i) {
            std::string line;
            const std::size_t size = random() % 14;
            for (std::size_t j = 0; j < size; ++j) {
                line.push_back(alphabet[random() % (j < 9 ? 2 : alphabet.size())]);
            }
            line += "#" + std::to_string(i);
            lines.push_back(line);
        }
        std::string input;
        for (const auto& line : lines) {
            input += line + "\r\n";
        }
        for (bool descending : {false, true}) {
            for (const auto& [start, length] :
                 {std::pair{1, 12}, std::pair{2, 10}, std::pair{1, 3}, std::pair{4, 40}}) {
                auto keyOf = [&](const std::string& line) {
                    const auto from = static_cast<std::size_t>(start - 1);
                    return from < line.size() ? std::string_view(line).substr(from, length)
                                              : std::string_view{};
                };
                const std::string output = stablySorted(lines, keyOf, descending);
                ASSERT_EQ(sorted(input, start, length, descending), output)
                    << count << " lines, " << start << "," << length
                    << (descending ? " descending" : "");
            }
        }
    }
}

TEST(ByteKeySort, PutsANearlyOrderedFileInOrderAsAStableSortDoes)
{
    // Lines in key order but for small groups in reverse, with repeated keys, as a file keyed
    // from lines already in the order of their calls comes; and the same lines reversed whole.
    for (const int groups : {300, 14000}) {
        std::vector<std::string> lines;
        for (int group = 0; group < groups; ++group) {
            for (int inGroup = 4; inGroup >= 0; --inGroup) {
                lines.push_back("K" + std::to_string(1000 + group) + "/" +
                                std::to_string(inGroup % 3) + "#" + std::to_string(lines.size()));
            }
        }
        for (bool reversed : {false, true}) {
            std::vector<std::string> input = lines;
            if (reversed) {
                std::reverse(input.begin(), input.end());
            }
            std::string bytes;
            for (const auto& line : input) {
                bytes += line + "\r\n";
            }
            for (bool descending : {false, true}) {
                auto keyOf = [](const std::string& line) { return line.substr(0, 7); };
                const std::string output = stablySorted(input, keyOf, descending);
                EXPECT_EQ(sorted(bytes, 1, 7, descending), output)
                    << groups << " groups, " << (reversed ? "reversed" : "nearly ordered")
                    << (descending ? ", descending" : "");
            }
        }
    }
}

TEST(ByteKeySort, ALargeFileSortedOntoItselfKeepsEveryLine)
{
    // Large enough to be read where it lies were it another file's input.
    std::string input;
    std::string expected;
    for (int i = 9999; i >= 0; --i) {
        input += std::to_string(100000 + i) + std::string(40, 'x') + "\r\n";
    }
    for (int i = 0; i <= 9999; ++i) {
        expected += std::to_string(100000 + i) + std::string(40, 'x') + "\r\n";
    }
    test::TempDir dir;
    test::writeBytes(dir / "file", input);
    text::sortLinesByKey(dir / "file", dir / "file", 1, 6, false);
    EXPECT_EQ(test::readBytes(dir / "file"), expected);
}
