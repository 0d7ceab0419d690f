#include "text/SjisCodec.h"

#include <gtest/gtest.h>

using namespace vornhale::text;

TEST(SjisCodec, RoundTripsKanjiKanaAndAscii)
{
    const std::string utf8 = "変換結果 ｺﾝﾃｽﾄ ABC-123 ①≒～";
    EXPECT_EQ(decodeSjis(encodeSjis(utf8)), utf8);
}

TEST(SjisCodec, EncodesKanjiAsTwoBytesAndHalfWidthKanaAsOne)
{
    EXPECT_EQ(encodeSjis("変"), "\x95\xCF");
    EXPECT_EQ(encodeSjis("ｺ"), "\xBA");
    EXPECT_EQ(encodeSjis("A"), "A");
}

TEST(SjisCodec, KeepsBackslashAndTildeAsAsciiBytes)
{
    EXPECT_EQ(decodeSjis("\x5C\x7E"), "\\~");
    EXPECT_EQ(encodeSjis("\\~"), "\x5C\x7E");
}

TEST(SjisCodec, MapsTheWaveDashToFullWidthTilde)
{
    EXPECT_EQ(decodeSjis("\x81\x60"), "\xEF\xBD\x9E"); // U+FF5E
    EXPECT_EQ(encodeSjis("\xEF\xBD\x9E"), "\x81\x60");
}

TEST(SjisCodec, WritesTheJisWaveDashAndMinusWithTheWindowsBytes)
{
    EXPECT_EQ(encodeSjis("〜"), "\x81\x60");
    EXPECT_EQ(encodeSjis("−"), "\x81\x7C");
}

TEST(SjisCodec, WritesTheNecSpecialCharactersWithTheirWindowsBytes)
{
    EXPECT_EQ(encodeSjis("①"), "\x87\x40");
    EXPECT_EQ(decodeSjis("\x87\x40"), "①");
}

TEST(SjisCodec, UndecodableBytesSurviveARoundTrip)
{
    const std::string bytes[] = {"\x80", "\xA0", "\xFD\xFE\xFF", "AB\x81", "\x81\x20X", "\x82\x7F"};
    for (const std::string& b : bytes) {
        EXPECT_EQ(encodeSjis(decodeSjis(b)), b);
    }
}

TEST(SjisCodec, WritesAQuestionMarkForACharacterShiftJisCannotHold)
{
    EXPECT_EQ(encodeSjis("é"), "?");
    EXPECT_EQ(encodeSjis("😀"), "?");
}

TEST(SjisCodec, WidthOfCharacters)
{
    EXPECT_EQ(sjisWidth(U'A'), 1);
    EXPECT_EQ(sjisWidth(U'ｺ'), 1);
    EXPECT_EQ(sjisWidth(U'変'), 2);
    EXPECT_EQ(sjisWidth(rawByteCodePoint(0x80)), 1);
}

TEST(SjisCodec, EveryDoubleByteCharacterComesBackAsTheBytesWindowsWritesForIt)
{
    int characters = 0;
    for (unsigned lead = 0x81; lead <= 0xFC; ++lead) {
        if (lead > 0x9F && lead < 0xE0) {
            continue;
        }
        for (unsigned trail = 0x40; trail <= 0xFC; ++trail) {
            if (trail == 0x7F) {
                continue;
            }
            const std::string pair{static_cast<char>(lead), static_cast<char>(trail)};
            const std::string text = decodeSjis(pair);
            if (encodeSjis(text) == pair) {
                ++characters;
                continue;
            }
            // A character with two byte pairs goes out as the other one, which reads back
            // as the same character.
            EXPECT_EQ(decodeSjis(encodeSjis(text)), text) << std::hex << lead << trail;
        }
    }
    // The IBM extensions of the NEC rows go out in the IBM rows, as Windows writes them.
    EXPECT_EQ(encodeSjis(decodeSjis("\xED\x40")), "\xFA\x5C");
    EXPECT_EQ(encodeSjis(decodeSjis("\x87\x90")), "\x81\xE0"); // ≒: the JIS row wins
    EXPECT_GT(characters, 9000);
}

TEST(SjisCodec, DecodesIntoATextWhatDecodeSjisGives)
{
    std::string out = "what the record before left, longer than the next";
    for (const std::string utf8 : {"JA1ZZZ", "", "東京都 ｺﾝﾃｽﾄ", "A\\B~"}) {
        const std::string bytes = encodeSjis(utf8);
        decodeSjisInto(out, bytes);
        EXPECT_EQ(out, decodeSjis(bytes)) << utf8;
    }
}
