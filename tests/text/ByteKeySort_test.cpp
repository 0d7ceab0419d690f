#include "support/TestSupport.h"
#include "text/ByteKeySort.h"

#include <gtest/gtest.h>

using namespace vornhale;

namespace {
std::string sorted(const std::string& input, int start, int length, bool descending)
{
    test::TempDir dir;
    test::writeBytes(dir / "in", input);
    text::sortLinesByKey(dir / "in", dir / "out", start, length, descending);
    return test::readBytes(dir / "out");
}
} // namespace

TEST(ByteKeySort, SortsByTheKeyColumnsOnly)
{
    EXPECT_EQ(sorted("xb2\r\nxa1\r\nxc0\r\n", 2, 1, false), "xa1\r\nxb2\r\nxc0\r\n");
}

TEST(ByteKeySort, IsStableOnEqualKeys)
{
    EXPECT_EQ(sorted("a3\r\nb1\r\na1\r\nb2\r\na2\r\n", 1, 1, false), "a3\r\na1\r\na2\r\nb1\r\nb2\r\n");
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
