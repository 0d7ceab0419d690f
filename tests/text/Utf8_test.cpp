#include "text/Utf8.h"

#include <gtest/gtest.h>
#include <string>

using namespace vornhale::text;

TEST(Utf8, AsciiTextIsTrueOnlyWhenNoByteIsAtOrAbove0x80)
{
    EXPECT_TRUE(isAsciiText(""));
    EXPECT_TRUE(isAsciiText("JA1ABC,\"599\"\r\n\x7F"));
    // A high byte at every place of texts shorter and longer than the eight-byte step.
    for (std::size_t size = 1; size <= 20; ++size) {
        for (std::size_t at = 0; at < size; ++at) {
            std::string s(size, 'a');
            s[at] = '\x80';
            EXPECT_FALSE(isAsciiText(s)) << "size " << size << " at " << at;
            s[at] = '\xFF';
            EXPECT_FALSE(isAsciiText(s)) << "size " << size << " at " << at;
        }
        EXPECT_TRUE(isAsciiText(std::string(size, 'a')));
    }
    EXPECT_FALSE(isAsciiText("州"));
}
