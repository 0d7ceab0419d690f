#include "failure/Failure.h"
#include "reference/CtyImport.h"
#include "reference/CtyFixture.h"
#include "support/TestSupport.h"
#include "text/LineFile.h"

#include <gtest/gtest.h>

using namespace vornhale;
using test::ctyHeader;
using test::CtyFolders;
using test::joinLines;
using test::readBytes;

namespace {

// Runs the first stage and returns the bytes of cty_dat1.txt.
std::string dat1Of(std::string_view cty)
{
    CtyFolders f;
    f.writeCty(cty);
    f.writeConv({});
    reference::CtyImport imp(f.places, f.trace, f.dialogs);
    EXPECT_TRUE(imp.cty_dat_sep());
    return readBytes(f.work("cty_dat1.txt"));
}

// The lines of cty_dat1.txt, owned.
std::vector<std::string> dat1Lines(std::string_view cty)
{
    const std::string bytes = dat1Of(cty);
    std::vector<std::string> out;
    for (std::string_view l : text::splitLines(bytes)) {
        out.emplace_back(l);
    }
    return out;
}

std::string quoted(std::string_view prefix10, std::string_view name, std::string_view primary,
                   std::string_view continent)
{
    return "\"" + std::string(prefix10) + "\",\"" + std::string(name) + "\",\"" +
           std::string(primary) + "\",\"" + std::string(continent) + "\"\r\n";
}

const std::vector<std::string> kSmall = {
    ctyHeader("Sov Mil Order of Malta", "EU", "1A"),
    "    1A;",
    "",
    ctyHeader("Fiji", "OC", "3D2"),
    "    3D2,=3D5X;",
    ctyHeader("Japan", "AS", "JA"),
    "    JA,JE,7J1ABC,JA1LONGER123(25)[45],",
    "    =JA1ZZZ(26);",
};

} // namespace

TEST(CtyImport, CtyDat0TurnsEveryCrAndEveryLfIntoCrLf)
{
    CtyFolders f;
    f.writeCty("a\rb\nc\r\nd");
    f.writeConv({});
    reference::CtyImport imp(f.places, f.trace, f.dialogs);
    ASSERT_TRUE(imp.cty_dat_sep());
    EXPECT_EQ(readBytes(f.work("cty_dat0.txt")), "a\r\nb\r\nc\r\n\r\nd");
}

TEST(CtyImport, LfOnlyCrOnlyAndCrLfFilesGiveTheSameCtyDat1)
{
    const std::string lf = dat1Of(joinLines(kSmall, "\n"));
    EXPECT_FALSE(lf.empty());
    EXPECT_EQ(dat1Of(joinLines(kSmall, "\r\n")), lf);
    EXPECT_EQ(dat1Of(joinLines(kSmall, "\r")), lf);
}

TEST(CtyImport, CtyDat1HoldsOneQuotedLinePerPrefixByteForByte)
{
    const std::string expected =
        quoted("1A        ", "Sov Mil Order of Malta", "1A", "EU 3") +
        quoted("3D2       ", "Fiji", "3D2", "OC 5") +
        quoted("=3D5X     ", "Fiji", "3D2", "OC 5") +
        quoted("JA        ", "Japan", "JA", "AS 2") +
        quoted("JE        ", "Japan", "JA", "AS 2") +
        quoted("7J1ABC    ", "Japan", "JA", "AS 2") +
        quoted("JA1LONGER1", "Japan", "JA", "AS 2") +
        quoted("=JA1ZZZ   ", "Japan", "JA", "AS 2");
    EXPECT_EQ(dat1Of(joinLines(kSmall, "\r\n")), expected);
}

TEST(CtyImport, ContinentTextsCarryTheirNumbersAndOthersStay)
{
    EXPECT_EQ(reference::CtyImport::continentText("AF"), "AF 1");
    EXPECT_EQ(reference::CtyImport::continentText("AS"), "AS 2");
    EXPECT_EQ(reference::CtyImport::continentText("EU"), "EU 3");
    EXPECT_EQ(reference::CtyImport::continentText("NA"), "NA 4");
    EXPECT_EQ(reference::CtyImport::continentText("OC"), "OC 5");
    EXPECT_EQ(reference::CtyImport::continentText("SA"), "SA 6");
    EXPECT_EQ(reference::CtyImport::continentText("AN"), "AN");
    EXPECT_EQ(reference::CtyImport::continentText("eu"), "eu");
    const std::string dat1 = dat1Of(ctyHeader("Nowhere", "AN", "ZZ0") + "\n ZZ0;\n");
    EXPECT_EQ(dat1, quoted("ZZ0       ", "Nowhere", "ZZ0", "AN"));
}

TEST(CtyImport, HeaderTextsAreCutAtTheirColonAndTrimmed)
{
    // The name is taken from the first 30 characters only; the primary from 7 at column 70.
    std::string header = ctyHeader("  Long Name", "NA", "AB1");
    const std::string dat1 = dat1Of(header + "\n AB1;\n");
    EXPECT_EQ(dat1, quoted("AB1       ", "Long Name", "AB1", "NA 4"));
}

TEST(CtyImport, ParenthesisAndBracketCutThePrefixAtTheFirstOfThem)
{
    const std::string dat1 =
        dat1Of(ctyHeader("E", "EU", "XX") + "\n=XX9TST(14)[27],AB[3](4),CD(5)[6],EF[7];\n");
    EXPECT_EQ(dat1, quoted("=XX9TST   ", "E", "XX", "EU 3") + quoted("AB        ", "E", "XX", "EU 3") +
                        quoted("CD        ", "E", "XX", "EU 3") +
                        quoted("EF        ", "E", "XX", "EU 3"));
}

TEST(CtyImport, PrefixesAreTakenInUpperCaseAndLongOnesCutToTen)
{
    const std::string dat1 = dat1Of(ctyHeader("E", "EU", "ab") + "\nxx1,ABCDEFGHIJK;\n");
    EXPECT_EQ(dat1, quoted("XX1       ", "E", "ab", "EU 3") + quoted("ABCDEFGHIJ", "E", "ab", "EU 3"));
}

TEST(CtyImport, SemicolonEndsTheEntityAndTheNextLineIsAHeader)
{
    const std::string dat1 = dat1Of(ctyHeader("One", "EU", "A1") + "\nA1;\n\n  \n" +
                                    ctyHeader("Two", "EU", "B1") + "\nB1;\n");
    EXPECT_EQ(dat1, quoted("A1        ", "One", "A1", "EU 3") + quoted("B1        ", "Two", "B1", "EU 3"));
}

TEST(CtyImport, APrefixLeftOpenAtTheEndOfItsLineIsNotWritten)
{
    const std::string dat1 = dat1Of(ctyHeader("E", "EU", "A1") + "\nA1,A2\nA3;\n");
    EXPECT_EQ(dat1, quoted("A1        ", "E", "A1", "EU 3") + quoted("A3        ", "E", "A1", "EU 3"));
}

TEST(CtyImport, OnlyTheFirst500CharactersOfALineAreRead)
{
    std::string line;
    for (int i = 0; i < 100; ++i) {
        line += "ABCD,"; // 500 characters
    }
    line += "ZZ,";
    const std::string dat1 = dat1Of(ctyHeader("E", "EU", "A1") + "\n" + line + "\nQQ;\n");
    const auto lines = text::splitLines(dat1);
    ASSERT_EQ(lines.size(), 101u);
    EXPECT_EQ(std::string(lines[99]), "\"ABCD      \",\"E\",\"A1\",\"EU 3\"");
    EXPECT_EQ(std::string(lines[100]), "\"QQ        \",\"E\",\"A1\",\"EU 3\"");

    // A line of 499 characters and a comma at 500 still ends its last prefix.
    const std::string edge = "ABCD," + std::string(494, 'Y') + ",";
    ASSERT_EQ(edge.size(), 500u);
    const auto edgeLines = dat1Lines(ctyHeader("E", "EU", "A1") + "\n" + edge + ";\n");
    EXPECT_EQ(edgeLines.size(), 2u);
}

TEST(CtyImport, AnEntityEndsAfter801PrefixLinesWithoutSemicolon)
{
    std::string cty = ctyHeader("Big", "EU", "BG") + "\n";
    for (int i = 0; i < 801; ++i) {
        cty += "P" + std::to_string(i) + ",\n";
    }
    // Line 802 after the header is read as a header: its text is no prefix list.
    cty += ctyHeader("Next", "AF", "NX") + "\nNX;\n";
    const auto lines = dat1Lines(cty);
    ASSERT_EQ(lines.size(), 802u);
    EXPECT_EQ(std::string(lines[800]), "\"P800      \",\"Big\",\"BG\",\"EU 3\"");
    EXPECT_EQ(std::string(lines[801]), "\"NX        \",\"Next\",\"NX\",\"AF 1\"");
}

TEST(CtyImport, With802PrefixLinesTheLastIsTakenAsAHeader)
{
    std::string cty = ctyHeader("Big", "EU", "BG") + "\n";
    for (int i = 0; i < 802; ++i) {
        cty += "P" + std::to_string(i) + ",\n";
    }
    cty += "Q1;\n";
    const auto lines = dat1Lines(cty);
    // "P801," becomes a header (name "P801,"), and "Q1;" its prefix line.
    ASSERT_EQ(lines.size(), 802u);
    EXPECT_EQ(std::string(lines[801]).substr(0, 18), "\"Q1        \",\"P801");
}

TEST(CtyImport, CrLfFilesCountTheirEmptyLinesAsPrefixLines)
{
    // Each CR LF becomes two line ends: the empty line after the header and after each
    // prefix line counts, so 400 prefix lines and 401 empty ones fill the 801.
    std::vector<std::string> lines = {ctyHeader("Big", "EU", "BG")};
    for (int i = 0; i < 402; ++i) {
        lines.push_back("P" + std::to_string(i) + ",");
    }
    lines.push_back("Q1;");
    const auto crlf = dat1Lines(joinLines(lines, "\r\n"));
    ASSERT_EQ(crlf.size(), 402u);
    EXPECT_EQ(std::string(crlf[399]), "\"P399      \",\"Big\",\"BG\",\"EU 3\"");
    EXPECT_EQ(std::string(crlf[400]).substr(0, 18), "\"P401      \",\"P400");
    EXPECT_EQ(std::string(crlf[401]).substr(0, 18), "\"Q1        \",\"P400");
    // The same file with LF ends keeps all 402 prefixes in the one entity.
    const auto lf = dat1Lines(joinLines(lines, "\n"));
    EXPECT_EQ(lf.size(), 403u);
}

TEST(CtyImport, MissingCtyDatIsShownAndTheOpenFails)
{
    CtyFolders f;
    f.writeConv({});
    reference::CtyImport imp(f.places, f.trace, f.dialogs);
    try {
        imp.cty_dat_sep();
        FAIL() << "no failure";
    } catch (const failure::Failure& e) {
        EXPECT_EQ(e.number(), failure::FileNotFound);
    }
    ASSERT_EQ(f.dialogs.shown.size(), 1u);
    EXPECT_EQ(f.dialogs.shown[0].title, "Vornhale");
    EXPECT_EQ(f.dialogs.shown[0].text, f.places.strPath.string() + "/cty.dat　がありません。");
}

TEST(CtyImport, MissingCtyConvIsShownAndTheProgramMustEnd)
{
    CtyFolders f;
    f.writeCty(joinLines(kSmall, "\r\n"));
    reference::CtyImport imp(f.places, f.trace, f.dialogs);
    EXPECT_FALSE(imp.cty_dat_sep());
    ASSERT_EQ(f.dialogs.shown.size(), 1u);
    EXPECT_EQ(f.dialogs.shown[0].text, f.places.strPath.string() + "/cty_conv.txt　がありません。");
    // cty_dat1.txt is written before the alias table is looked for.
    EXPECT_TRUE(std::filesystem::exists(f.work("cty_dat1.txt")));
    EXPECT_FALSE(imp.importAll(f.prog("dxcc_mas.txt")));
    EXPECT_FALSE(std::filesystem::exists(f.prog("cty_mastS.txt")));
}

TEST(CtyImport, AliasTableSkipsCommentsAndBlanksAndTakesAtMost51Rows)
{
    CtyFolders f;
    f.writeCty(joinLines(kSmall, "\r\n"));
    std::vector<std::string> conv = {";comment,with comma", "", "   ", "FT/X,FT/x",
                                     "\"3D2/r    \",\"ROT\"", "nocomma"};
    for (int i = 0; i < 60; ++i) {
        conv.push_back("A" + std::to_string(i) + ",B" + std::to_string(i));
    }
    f.writeConv(conv);
    reference::CtyImport imp(f.places, f.trace, f.dialogs);
    ASSERT_TRUE(imp.cty_dat_sep());
    const auto& rows = imp.tables().cty_conv;
    ASSERT_EQ(rows.size(), 51u);
    EXPECT_EQ(rows[0].from, "FT/X");
    EXPECT_EQ(rows[0].to, "FT/x");
    EXPECT_EQ(rows[1].from, "3D2/r    ");
    EXPECT_EQ(rows[1].to, "ROT");
    EXPECT_EQ(rows[2].from, "A0");
    EXPECT_EQ(rows[50].from, "A48");
    EXPECT_EQ(rows[50].to, "B48");
}

namespace {

struct Masters
{
    CtyFolders f;
    std::string mastS, mastL, dat3;
    explicit Masters(std::string_view cty)
    {
        f.writeCty(cty);
        f.writeConv({});
        reference::CtyImport imp(f.places, f.trace, f.dialogs);
        EXPECT_TRUE(imp.cty_dat_sep());
        imp.make_dx_mas2_new();
        mastS = readBytes(f.prog("cty_mastS.txt"));
        mastL = readBytes(f.prog("cty_mastL.txt"));
        dat3 = readBytes(f.work("cty_dat3.txt"));
    }
};

} // namespace

TEST(CtyImport, MastersAreWrittenByteForByte)
{
    Masters m(joinLines(kSmall, "\n"));
    EXPECT_EQ(m.mastS, "'JE     JA         AS 2  Japan                       \r\n"
                       "'JA     JA         AS 2  Japan                       \r\n"
                       "'7J1ABC JA         AS 2  Japan                       \r\n"
                       "'3D2    3D2        OC 5  Fiji                        \r\n"
                       "'1A     1A         EU 3  Sov Mil Order of Malta      \r\n");
    EXPECT_EQ(m.mastL,
              "\"JA1LONGER1\",\"Japan                     \",\"JA     \",\"AS 2\"\r\n"
              "\"=JA1ZZZ   \",\"Japan                     \",\"JA     \",\"AS 2\"\r\n"
              "\"=3D5X     \",\"Fiji                      \",\"3D2    \",\"OC 5\"\r\n");
    // cty_dat3.txt: cty_dat1.txt descending on its first ten columns.
    const auto lines = text::splitLines(m.dat3);
    ASSERT_EQ(lines.size(), 8u);
    for (std::size_t i = 1; i < lines.size(); ++i) {
        EXPECT_GE(lines[i - 1].substr(0, 10), lines[i].substr(0, 10));
    }
}

TEST(CtyImport, SixCharactersGoToTheShortMasterSevenToTheLong)
{
    Masters m(ctyHeader("E", "EU", "XX") + "\nABCDEF,ABCDEFG;\n");
    EXPECT_EQ(m.mastS, "'ABCDEF XX         EU 3  E                           \r\n");
    EXPECT_EQ(m.mastL, "\"ABCDEFG   \",\"E                         \",\"XX     \",\"EU 3\"\r\n");
}

TEST(CtyImport, DoublesAreKeptInTheShortMaster)
{
    Masters m(ctyHeader("One", "EU", "A1") + "\nAA,AA;\n" + ctyHeader("Two", "EU", "B1") +
              "\nAA;\n");
    // Equal keys keep their order through the sort.
    EXPECT_EQ(m.mastS, "'AA     A1         EU 3  One                         \r\n"
                       "'AA     A1         EU 3  One                         \r\n"
                       "'AA     B1         EU 3  Two                         \r\n");
}

TEST(CtyImport, StarEntitiesAreDroppedFromBothMasters)
{
    Masters m(ctyHeader("Not DXCC", "EU", "*TA1") + "\nTA1,=TA1XYZ,TA1ABCDE;\n" +
              ctyHeader("Turkey", "EU", "TA") + "\nTA;\n");
    EXPECT_EQ(m.mastS, "'TA     TA         EU 3  Turkey                      \r\n");
    EXPECT_EQ(m.mastL, "");
}

TEST(CtyImport, LongPrefixesOfIG9AreDroppedButItsExactCallsAndShortPrefixesStay)
{
    Masters m(ctyHeader("African Italy", "AF", "IG9") + "\nIG9,IG9ABCD,=IG9XYZ;\n" +
              ctyHeader("Italy", "EU", "I") + "\nIG9ABCE;\n");
    EXPECT_EQ(m.mastS, "'IG9    IG9        AF 1  African Italy               \r\n");
    EXPECT_EQ(m.mastL,
              "\"IG9ABCE   \",\"Italy                     \",\"I      \",\"EU 3\"\r\n"
              "\"=IG9XYZ   \",\"African Italy             \",\"IG9    \",\"AF 1\"\r\n");
}

TEST(CtyImport, MissingCtyDat1AndCtyDat3AreShownThenTheOpenFails)
{
    CtyFolders f;
    reference::CtyImport imp(f.places, f.trace, f.dialogs);
    try {
        imp.make_dx_mas2_new();
        FAIL() << "no failure";
    } catch (const failure::Failure& e) {
        EXPECT_EQ(e.number(), failure::FileNotFound);
    }
    ASSERT_EQ(f.dialogs.shown.size(), 2u);
    EXPECT_EQ(f.dialogs.shown[0].text, f.places.drive_path.string() + "/cty_dat1.txt　がありません。");
    EXPECT_EQ(f.dialogs.shown[1].text, f.places.drive_path.string() + "/cty_dat3.txt　がありません。");
}

TEST(CtyImport, ShortMasterIsReadFromIndexOneWithTheLineCount)
{
    CtyFolders f;
    test::writeBytes(f.prog("cty_mastS.txt"),
                     "'JE     JA         AS 2  Japan                       \r\n"
                     "'VP8H   VP8/h      SA 6  Shetland                    \r\n"
                     "'XY     ABCDEFGHIJKEU 3  Long                        \r\n");
    reference::CtyImport imp(f.places, f.trace, f.dialogs);
    imp.cty_mas_read();
    const auto& t = imp.tables();
    // Three line ends: the line count is four, and the last slot stays empty.
    EXPECT_EQ(t.cty_s_kazu, 4);
    ASSERT_EQ(t.cty_s_prefix.size(), 5u);
    EXPECT_EQ(t.cty_s_prefix[0], "");
    EXPECT_EQ(t.cty_s_prefix[1], "JE");
    EXPECT_EQ(t.cty_s_primary[1], "JA");
    EXPECT_EQ(t.cty_s_prefix[2], "VP8H");
    EXPECT_EQ(t.cty_s_primary[2], "VP8/h");
    EXPECT_EQ(t.cty_s_primary[3], "ABCDEFGHI");
    EXPECT_EQ(t.cty_s_prefix[4], "");
}

TEST(CtyImport, MissingShortMasterIsPassedOver)
{
    CtyFolders f;
    reference::CtyImport imp(f.places, f.trace, f.dialogs);
    EXPECT_NO_THROW(imp.cty_mas_read());
    EXPECT_EQ(imp.tables().cty_s_kazu, 0);
    EXPECT_TRUE(f.dialogs.shown.empty());
}

TEST(CtyImport, DxccMasterSkipsTwoHeadingsAndReadsByteColumns)
{
    CtyFolders f;
    test::TempDir logs;
    base::Trace trace(logs.path());
    // Byte columns: 2-8 prefix, 9-19 number, 20-25 code, 26-53 name, 54 blank, 55 flag.
    const std::string japan = std::string(" JA     ") + "  339      " + "D339  " + "日本" +
                              std::string(24, ' ') + " X";
    const std::string rotuma = std::string(" 3D2/r  ") + "  460      " + "D460  " +
                               "Rotuma Island" + std::string(15, ' ') + " -";
    test::writeSjisLines(f.prog("dxcc_mas.txt"),
                         {" heading one", " heading two", japan, rotuma, " K"});
    reference::CtyImport imp(f.places, trace, f.dialogs);
    imp.make_dxcc_mas(f.prog("dxcc_mas.txt"));
    const auto& t = imp.tables();
    ASSERT_EQ(t.dxcc_kazu, 3);
    EXPECT_EQ(t.dxcc_prefix[0], "JA     ");
    EXPECT_EQ(t.dxcc_code[0], "D339  ");
    // Two bytes a kanji: the name column ends at byte 53 and the flag stands at byte 55.
    EXPECT_EQ(t.dxcc_name[0], "日本" + std::string(24, ' '));
    EXPECT_EQ(t.dxcc_buro[0], "X");
    EXPECT_EQ(t.dxcc_prefix[1], "3D2/r  ");
    EXPECT_EQ(t.dxcc_buro[1], "-");
    EXPECT_EQ(t.dxcc_prefix[2], "K");
    EXPECT_EQ(t.dxcc_code[2], "");
    const auto traced = test::readSjisLines(trace.path());
    ASSERT_FALSE(traced.empty());
    EXPECT_EQ(traced.back(), "Public Sub make_dxcc_mas()");
}

TEST(CtyImport, DxccMasterWithoutItsHeadingsOrMissingFails)
{
    CtyFolders f;
    reference::CtyImport imp(f.places, f.trace, f.dialogs);
    test::writeSjisLines(f.prog("dxcc_mas.txt"), {" only one heading"});
    try {
        imp.make_dxcc_mas(f.prog("dxcc_mas.txt"));
        FAIL() << "no failure";
    } catch (const failure::Failure& e) {
        EXPECT_EQ(e.number(), failure::InputPastEnd);
    }
    try {
        imp.make_dxcc_mas(f.prog("absent.txt"));
        FAIL() << "no failure";
    } catch (const failure::Failure& e) {
        EXPECT_EQ(e.number(), failure::FileNotFound);
    }
}

TEST(CtyImport, ImportAllTracesEachStageInOrder)
{
    CtyFolders f;
    test::TempDir logs;
    base::Trace trace(logs.path());
    f.writeCty(joinLines(kSmall, "\r\n"));
    f.writeConv({});
    test::writeSjisLines(f.prog("dxcc_mas.txt"), {"h1", "h2", " JA      339       D339  Japan"});
    reference::CtyImport imp(f.places, trace, f.dialogs);
    ASSERT_TRUE(imp.importAll(f.prog("dxcc_mas.txt")));
    EXPECT_EQ(test::readSjisLines(trace.path()),
              (std::vector<std::string>{"Private sub cmdStart_cty_dat_sep",
                                        "Private sub cmdStart_make_dx_mas2_new",
                                        "Private sub cmdStart_cty_mas_read",
                                        "Private sub cmdStart_make_dxcc_mas",
                                        "Public Sub make_dxcc_mas()"}));
    EXPECT_EQ(imp.tables().cty_s_kazu, 6);
    EXPECT_EQ(imp.tables().cty_s_prefix[1], "JE");
    EXPECT_EQ(imp.tables().dxcc_kazu, 1);
}

TEST(CtyImport, GarbageInputNeverStopsTheImport)
{
    std::string junk;
    for (int i = 0; i < 4000; ++i) {
        junk.push_back(static_cast<char>((i * 7919) % 256));
    }
    CtyFolders f;
    f.writeCty(junk);
    f.writeConv({});
    test::writeSjisLines(f.prog("dxcc_mas.txt"), {"h1", "h2"});
    reference::CtyImport imp(f.places, f.trace, f.dialogs);
    try {
        imp.importAll(f.prog("dxcc_mas.txt"));
    } catch (const failure::Failure& e) {
        // A stray double quote may break a record: that is a reported failure, not a crash.
        EXPECT_EQ(e.number(), failure::InputPastEnd);
    }
}
