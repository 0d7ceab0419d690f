#include "failure/Failure.h"
#include "reference/ProvinceMaster.h"
#include "support/TestSupport.h"

#include <functional>
#include <gtest/gtest.h>
#include <random>

using namespace vornhale;
using reference::ProvinceMaster;

namespace {

ProvinceMaster loadMas(const test::TempDir& dir, const std::vector<std::string>& lines)
{
    test::writeSjisLines(dir / "m.mas", lines);
    ProvinceMaster m;
    base::Trace trace;
    m.read_prov_mas(dir / "m.mas", trace);
    return m;
}

ProvinceMaster loadDat(const test::TempDir& dir, const std::vector<std::string>& lines)
{
    test::writeSjisLines(dir / "c.dat", lines);
    ProvinceMaster m;
    base::Trace trace;
    m.read_prov_dat_all(dir / "c.dat", trace);
    return m;
}

int failureNumber(const std::function<void()>& f)
{
    try {
        f();
    } catch (const failure::Failure& e) {
        return e.number();
    }
    return 0;
}

} // namespace

// ---- .mas ----------------------------------------------------------------------------------

TEST(ProvinceMaster, MasReadsCodeAndNameAndIgnoresAThirdItem)
{
    test::TempDir dir;
    const ProvinceMaster m = loadMas(dir, {"AB,Alberta", "BC,British Columbia,extra,more"});
    ASSERT_EQ(m.Prov_kazu(), 2u);
    EXPECT_EQ(m.Prov_code(), (std::vector<std::string>{"AB", "BC", ""}));
    EXPECT_EQ(m.Prov_name(), (std::vector<std::string>{"Alberta", "British Columbia", ""}));
    EXPECT_TRUE(m.loaded());
}

TEST(ProvinceMaster, MasCommentAndBlankLinesAreNotCounted)
{
    test::TempDir dir;
    const ProvinceMaster m =
        loadMas(dir, {"; heading", "AB,Alberta", "", "   ", ";BC,Not this", "ON,Ontario"});
    EXPECT_EQ(m.Prov_kazu(), 2u);
    EXPECT_EQ(m.Prov_code()[1], "ON");
    EXPECT_EQ(m.get_prov_mas("BC", false, "", 0), "");
}

TEST(ProvinceMaster, MasTakesTheTextsAsTheyStand)
{
    test::TempDir dir;
    const ProvinceMaster m = loadMas(dir, {" AB , Alberta "});
    EXPECT_EQ(m.Prov_code()[0], " AB ");
    EXPECT_EQ(m.Prov_name()[0], " Alberta ");
    // The exchange is trimmed, the code is not: they can never be equal.
    EXPECT_EQ(m.get_prov_mas("AB", false, "", 0), "");
}

TEST(ProvinceMaster, MasLineWithoutCommaTakesTheFailurePathAndKeepsTheOldMaster)
{
    test::TempDir dir;
    ProvinceMaster m = loadMas(dir, {"AB,Alberta"});
    test::writeSjisLines(dir / "bad.mas", {"BC,British Columbia", "ON Ontario"});
    base::Trace trace;
    EXPECT_EQ(failureNumber([&] { m.read_prov_mas(dir / "bad.mas", trace); }),
              failure::SubscriptOutOfRange);
    EXPECT_EQ(m.get_prov_mas("AB", false, "", 0), "Alberta");
    EXPECT_EQ(m.get_prov_mas("BC", false, "", 0), "");
}

TEST(ProvinceMaster, MissingMasterFileFailsAtTheOpen)
{
    test::TempDir dir;
    ProvinceMaster m;
    base::Trace trace;
    EXPECT_EQ(failureNumber([&] { m.read_prov_mas(dir / "none.mas", trace); }),
              failure::FileNotFound);
    EXPECT_EQ(failureNumber([&] { m.read_prov_dat_all(dir / "none.dat", trace); }),
              failure::FileNotFound);
}

TEST(ProvinceMaster, BothReadersTraceTheMasterNameFirst)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "m.mas", {"AB,Alberta"});
    test::writeSjisLines(dir / "c.dat", {"AB Alberta"});
    std::filesystem::path tracePath;
    {
        base::Trace trace(dir / "Error_Log");
        tracePath = trace.path();
        ProvinceMaster m;
        m.read_prov_mas(dir / "m.mas", trace);
        m.read_prov_dat_all(dir / "c.dat", trace);
    }
    EXPECT_EQ(test::readSjisLines(tracePath),
              (std::vector<std::string>{"mas_dat_name ： " + (dir / "m.mas").string(),
                                        "mas_dat_name ： " + (dir / "c.dat").string()}));
}

// ---- .dat ----------------------------------------------------------------------------------

TEST(ProvinceMaster, DatCodeTextWithCommasGivesOneEntryPerCode)
{
    test::TempDir dir;
    const ProvinceMaster m = loadDat(dir, {"A,B  Name Two"});
    EXPECT_EQ(m.Prov_kazu(), 2u);
    EXPECT_EQ(m.Prov_code(), (std::vector<std::string>{"A", "B", ""}));
    EXPECT_EQ(m.get_prov_mas("A", false, "", 2), "Name Two");
    EXPECT_EQ(m.get_prov_mas("B", false, "", 2), "Name Two");
}

TEST(ProvinceMaster, DatSkipsCommentsAndDatLinesAndStopsAtEndOfFile)
{
    test::TempDir dir;
    const ProvinceMaster m =
        loadDat(dir, {"CONTEST.DAT for zLog", "; XX Comment", "AA First", "some.dat line",
                      "BB Second", "end of file contest.dat", "CC After the end"});
    EXPECT_EQ(m.Prov_kazu(), 2u);
    EXPECT_EQ(m.get_prov_mas("AA", false, "", 2), "First");
    EXPECT_EQ(m.get_prov_mas("BB", false, "", 2), "Second");
    EXPECT_EQ(m.get_prov_mas("XX", false, "", 2), "");
    EXPECT_EQ(m.get_prov_mas("CC", false, "", 2), "");
    EXPECT_EQ(m.get_prov_mas("some.dat", false, "", 2), "");
}

TEST(ProvinceMaster, DatEndOfFileIsCaseSensitiveAndACommentIsTestedFirst)
{
    test::TempDir dir;
    const ProvinceMaster m =
        loadDat(dir, {"; end of file", "AA First", "END OF FILE", "BB Second"});
    EXPECT_EQ(m.get_prov_mas("AA", false, "", 2), "First");
    EXPECT_EQ(m.get_prov_mas("BB", false, "", 2), "Second");
    EXPECT_EQ(m.get_prov_mas("END", false, "", 2), "OF FILE");
}

TEST(ProvinceMaster, DatFullWidthBlankAndTabReadLikeABlank)
{
    test::TempDir dir;
    const ProvinceMaster m =
        loadDat(dir, {"AA　Full Width", "BB\tTabbed", "CC Plain", "DD　鶴見　税務署"});
    EXPECT_EQ(m.get_prov_mas("AA", false, "", 2), "Full Width");
    EXPECT_EQ(m.get_prov_mas("BB", false, "", 2), "Tabbed");
    EXPECT_EQ(m.get_prov_mas("CC", false, "", 2), "Plain");
    EXPECT_EQ(m.get_prov_mas("DD", false, "", 2), "鶴見 税務署");
}

TEST(ProvinceMaster, DatReplacesTwoBlanksByOneInASinglePassBeforeTheOtherBlanks)
{
    test::TempDir dir;
    const ProvinceMaster m =
        loadDat(dir, {"AA Name   Three", "BB Tab\t\tTwice", "CC          Far"});
    EXPECT_EQ(m.get_prov_mas("AA", false, "", 2), "Name  Three");
    EXPECT_EQ(m.get_prov_mas("BB", false, "", 2), "Tab  Twice");
    EXPECT_EQ(m.get_prov_mas("CC", false, "", 2), "Far");
}

TEST(ProvinceMaster, DatBoundCountsEveryCommaOfADataLine)
{
    test::TempDir dir;
    const ProvinceMaster m = loadDat(dir, {"AA Bosnia, Herzegovina", "BB,CC Two"});
    // 2 data lines and 2 commas; three entries, the rest of the arrays empty.
    EXPECT_EQ(m.Prov_kazu(), 4u);
    EXPECT_EQ(m.Prov_code(), (std::vector<std::string>{"AA", "BB", "CC", "", ""}));
    EXPECT_EQ(m.get_prov_mas("AA", false, "", 2), "Bosnia, Herzegovina");
}

TEST(ProvinceMaster, DatLineWithoutBlankIsACodeWithoutName)
{
    test::TempDir dir;
    const ProvinceMaster m = loadDat(dir, {"AA", "BB Name"});
    EXPECT_EQ(m.Prov_kazu(), 2u);
    EXPECT_EQ(m.Prov_name()[0], "");
    EXPECT_EQ(m.get_prov_mas("AA", false, "X = ", 0), "X = ");
}

TEST(ProvinceMaster, ReaderIsChosenByTheLowerCasedExtension)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "A.MAS", {"AA,From mas"});
    test::writeSjisLines(dir / "B.Dat", {"AA From dat"});
    test::writeSjisLines(dir / "C.txt", {"AA,From txt"});
    ProvinceMaster m;
    base::Trace trace;
    EXPECT_TRUE(m.read_prov_mas_dat(dir / "A.MAS", trace));
    EXPECT_EQ(m.get_prov_mas("AA", false, "", 2), "From mas");
    EXPECT_TRUE(m.read_prov_mas_dat(dir / "B.Dat", trace));
    EXPECT_EQ(m.get_prov_mas("AA", false, "", 2), "From dat");
    EXPECT_FALSE(m.read_prov_mas_dat(dir / "C.txt", trace));
    EXPECT_EQ(m.get_prov_mas("AA", false, "", 2), "From dat");
    EXPECT_FALSE(m.read_prov_mas_dat("", trace));
}

// ---- get_prov_mas --------------------------------------------------------------------------

TEST(ProvinceMaster, DigitsAreRemovedUnlessCheck13IsOn)
{
    test::TempDir dir;
    const ProvinceMaster m = loadMas(dir, {"AB,Short", "AB12,Long"});
    EXPECT_EQ(m.get_prov_mas("AB12", false, "", 2), "Short");
    EXPECT_EQ(m.get_prov_mas("AB12", true, "", 2), "Long");
    EXPECT_EQ(m.get_prov_mas("1A2B", false, "", 2), "Short");
}

TEST(ProvinceMaster, EmptyExchangeNeverMatchesAnEmptyCode)
{
    test::TempDir dir;
    const ProvinceMaster m = loadMas(dir, {",Empty code", "AB,Alberta"});
    ASSERT_EQ(m.Prov_code()[0], "");
    EXPECT_EQ(m.get_prov_mas("", false, "", 2), "");
    EXPECT_EQ(m.get_prov_mas("   ", false, "", 2), "");
    EXPECT_EQ(m.get_prov_mas("123", false, "", 2), "");
    EXPECT_EQ(m.get_prov_mas(" 12 ", true, "", 2), "");
}

TEST(ProvinceMaster, TheCaseOfACodeMatters)
{
    test::TempDir dir;
    const ProvinceMaster m = loadMas(dir, {"Ab,Mixed", "AB,Upper"});
    EXPECT_EQ(m.get_prov_mas("AB", false, "", 2), "Upper");
    EXPECT_EQ(m.get_prov_mas("Ab", false, "", 2), "Mixed");
    EXPECT_EQ(m.get_prov_mas("ab", false, "", 2), "");
}

TEST(ProvinceMaster, ExchangeIsTrimmedAndTheFirstEqualCodeWins)
{
    test::TempDir dir;
    const ProvinceMaster m = loadMas(dir, {"AB,First", "AB,Second"});
    EXPECT_EQ(m.get_prov_mas("  AB  ", false, "", 2), "First");
}

TEST(ProvinceMaster, TextIsPrefixAndNameOrTheNameAloneUnderOption4Member2)
{
    test::TempDir dir;
    const ProvinceMaster m = loadMas(dir, {"AB,Alberta"});
    EXPECT_EQ(m.get_prov_mas("AB", false, "Province = ", 0), "Province = Alberta");
    EXPECT_EQ(m.get_prov_mas("AB", false, "My ", 3), "My Alberta");
    EXPECT_EQ(m.get_prov_mas("AB", false, "Province = ", 2), "Alberta");
    EXPECT_EQ(m.get_prov_mas("ZZ", false, "Province = ", 0), "");
}

TEST(ProvinceMaster, EmptyMasterFindsNothing)
{
    ProvinceMaster m;
    EXPECT_FALSE(m.loaded());
    EXPECT_EQ(m.get_prov_mas("AB", false, "P ", 0), "");
}

TEST(ProvinceMaster, TextGoesIntoTheRemarkOfOption3)
{
    std::string r1 = " one ", r2 = "two";
    reference::addProvinceText(r1, r2, "P = X", 0);
    // Only the ends are trimmed: the blank behind "one" stays.
    EXPECT_EQ(r1, "one  P = X");
    EXPECT_EQ(r2, "two");
    reference::addProvinceText(r1, r2, "P = Y", 1);
    EXPECT_EQ(r2, "two P = Y");
    std::string e1, e2;
    reference::addProvinceText(e1, e2, "Alberta", 0);
    EXPECT_EQ(e1, "Alberta");
    reference::addProvinceText(e1, e2, "Nowhere", -1);
    reference::addProvinceText(e1, e2, "", 1);
    EXPECT_EQ(e1, "Alberta");
    EXPECT_EQ(e2, "");
}

// ---- cont_name_zlo.cfg ---------------------------------------------------------------------

TEST(ProvinceMaster, ContestNameChoosesMasFromTheMasFolderAndDatFromTheDatFolder)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "cont_name_zlo.cfg",
                         {"コンテスト名,マスター,cfg,番号",
                          "REFコンテスト(DX),F_prov.MAS,ref.cfg,1",
                          "RSGB 7MHz (DX),rsgb.dat,rsgb7as.cfg,3", "Odd,odd.txt,-,4"});
    auto c =
        reference::read_cont_name_zlo("REFコンテスト(DX)", dir.path(), "/p/Prov/", "/z/", "old");
    EXPECT_TRUE(c.Prov_auto_found);
    EXPECT_EQ(c.mas_dat_name, "/p/Prov/F_prov.MAS");
    EXPECT_EQ(c.thirdItem, "ref.cfg");
    EXPECT_EQ(c.fourthItem, "1");

    c = reference::read_cont_name_zlo("RSGB 7MHz (DX)", dir.path(), "/p/Prov/", "/z/", "old");
    EXPECT_TRUE(c.Prov_auto_found);
    EXPECT_EQ(c.mas_dat_name, "/z/rsgb.dat");

    c = reference::read_cont_name_zlo("Odd", dir.path(), "/p/Prov/", "/z/", "old");
    EXPECT_TRUE(c.Prov_auto_found);
    EXPECT_EQ(c.mas_dat_name, "old");
}

TEST(ProvinceMaster, ContestNameComparesExactlyAndSkipsTheHeading)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "cont_name_zlo.cfg",
                         {"Heading,h.mas,-,0", "YO DX,YO_prov.mas,yodx.cfg,7"});
    for (const char* name : {"Heading", "yo dx", "YO DX ", "YO"}) {
        const auto c = reference::read_cont_name_zlo(name, dir.path(), "/p/", "/z/", "old");
        EXPECT_FALSE(c.Prov_auto_found) << name;
        EXPECT_EQ(c.mas_dat_name, "old") << name;
    }
    EXPECT_TRUE(
        reference::read_cont_name_zlo("YO DX", dir.path(), "/p/", "/z/", "").Prov_auto_found);
}

TEST(ProvinceMaster, ContestNameTakesTheFirstEqualLineAndToleratesShortLines)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "cont_name_zlo.cfg",
                         {"h", "Short", "X,first.mas", "X,second.mas,-,2"});
    const auto c = reference::read_cont_name_zlo("X", dir.path(), "/p/", "/z/", "");
    EXPECT_EQ(c.mas_dat_name, "/p/first.mas");
    EXPECT_EQ(c.fourthItem, "");
    EXPECT_EQ(reference::read_cont_name_zlo("Short", dir.path(), "/p/", "/z/", "k").mas_dat_name,
              "k");
}

TEST(ProvinceMaster, MissingContestFileFailsAtTheOpen)
{
    test::TempDir dir;
    EXPECT_EQ(failureNumber([&] { reference::read_cont_name_zlo("X", dir.path(), "", "", ""); }),
              failure::FileNotFound);
}

TEST(ProvinceMaster, BundledContestFileFindsABundledMasterForEachMasLine)
{
    const auto cfgDir = test::sourceDir() / "data" / "seed";
    const auto lines = test::readSjisLines(cfgDir / "cont_name_zlo.cfg");
    ASSERT_GT(lines.size(), 1u);
    int masLines = 0;
    for (std::size_t i = 1; i < lines.size(); ++i) {
        const std::string contest = lines[i].substr(0, lines[i].find(','));
        const auto c = reference::read_cont_name_zlo(contest, cfgDir,
                                                     (cfgDir / "Prov").string() + "/", "/z/", "");
        ASSERT_TRUE(c.Prov_auto_found) << contest;
        if (c.mas_dat_name.rfind("/z/", 0) == 0) {
            continue;
        }
        ++masLines;
        ProvinceMaster m;
        base::Trace trace;
        ASSERT_TRUE(m.read_prov_mas_dat(c.mas_dat_name, trace)) << c.mas_dat_name;
        EXPECT_GT(m.Prov_kazu(), 5u) << c.mas_dat_name;
    }
    EXPECT_GT(masLines, 10);
}

TEST(ProvinceMaster, LabelsOfAZloInputWithAndWithoutItsMaster)
{
    auto l = reference::provMasterLabels(true, true, true);
    ASSERT_TRUE(l.lblMas_dat_zlo);
    EXPECT_EQ(l.lblMas_dat_zlo->text, "cont_name_zlo.cfg より自動選択しました。");
    EXPECT_EQ(l.lblMas_dat_zlo->colour, base::Colour::Green);
    EXPECT_TRUE(l.read);

    l = reference::provMasterLabels(true, false, true);
    ASSERT_TRUE(l.lblMas_dat_zlo && l.lblMas_dat);
    EXPECT_EQ(l.lblMas_dat_zlo->text, "マスターファイル無し、Province 取得は不可能かも知れない");
    EXPECT_EQ(l.lblMas_dat_zlo->colour, base::Colour::Red);
    EXPECT_EQ(l.lblMas_dat->text, "手動選択するか、レ点を消して下さい。");
    EXPECT_EQ(l.lblMas_dat->colour, base::Colour::Red);
    EXPECT_EQ(l.status, "マスター無し、手動選択するか、レ点を消して下さい。");
    EXPECT_FALSE(l.read);

    l = reference::provMasterLabels(true, true, false);
    EXPECT_FALSE(l.lblMas_dat_zlo);
    EXPECT_TRUE(l.read);

    l = reference::provMasterLabels(false, false, false);
    ASSERT_TRUE(l.lblMas_dat_zlo);
    EXPECT_EQ(l.lblMas_dat_zlo->text, "");
    EXPECT_FALSE(l.lblMas_dat);
    EXPECT_TRUE(l.read);
}

// ---- real files ----------------------------------------------------------------------------

TEST(ProvinceMaster, BundledMasFilesCountTheirDataLines)
{
    const auto provDir = test::sourceDir() / "data" / "seed" / "Prov";
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(provDir)) {
        if (entry.path().extension() != ".mas") {
            continue;
        }
        ++files;
        std::size_t data = 0;
        std::vector<std::pair<std::string, std::string>> pairs;
        for (const auto& line : test::readSjisLines(entry.path())) {
            if (line.empty() || line[0] == ';' ||
                line.find_first_not_of(' ') == std::string::npos) {
                continue;
            }
            ++data;
            const auto comma = line.find(',');
            pairs.emplace_back(line.substr(0, comma),
                               line.substr(comma + 1, line.find(',', comma + 1) - comma - 1));
        }
        ProvinceMaster m;
        base::Trace trace;
        m.read_prov_mas(entry.path(), trace);
        EXPECT_EQ(m.Prov_kazu(), data) << entry.path();
        for (std::size_t i = pairs.size(); i-- > 0;) {
            // the first line of a code is the one found
            bool earlier = false;
            for (std::size_t j = 0; j < i; ++j) {
                earlier = earlier || pairs[j].first == pairs[i].first;
            }
            if (!earlier && !pairs[i].first.empty()) {
                EXPECT_EQ(m.get_prov_mas(pairs[i].first, true, "", 2), pairs[i].second)
                    << entry.path();
            }
        }
    }
    EXPECT_GE(files, 13);
}

TEST(ProvinceMaster, RealZlogContestDatFiles)
{
    const auto dx = test::realData("zlog/setup_v3000/cfg_dat_dx/dxcfg12");
    const auto ja = test::realData("zlog/setup_v3000/cfg_dat");
    if (!dx || !ja) {
        GTEST_SKIP() << "zLog's contest .dat files are not in ../shared/realdata";
    }
    ProvinceMaster m;
    base::Trace trace;
    m.read_prov_dat_all(*dx / "aridx.dat", trace);
    EXPECT_EQ(m.get_prov_mas("AG", false, "Province = ", 0), "Province = Agrigento(IT9)");
    EXPECT_EQ(m.get_prov_mas("ARIDX.DAT", false, "", 2), "");

    m.read_prov_dat_all(*dx / "arrlrac.dat", trace);
    for (const char* code : {"CT", "CN", "CON", "CONN"}) {
        EXPECT_EQ(m.get_prov_mas(code, false, "", 2), "Connecticut") << code;
    }
    EXPECT_EQ(m.get_prov_mas("ME", false, "", 2), "Maine");
    EXPECT_EQ(m.get_prov_mas("MAI", false, "", 2), "Maine");

    m.read_prov_dat_all(*dx / "holyland.dat", trace); // tab separated, no title line
    EXPECT_EQ(m.get_prov_mas("AK", false, "", 2), "Akko");
    EXPECT_EQ(m.get_prov_mas("HS", false, "", 2), "Hasharon");

    m.read_prov_dat_all(*ja / "ecd.dat", trace); // full-width blanks inside names
    EXPECT_EQ(m.get_prov_mas("2308550", true, "", 2), "鶴見 税務署");
    EXPECT_EQ(m.get_prov_mas("2308628", true, "", 2), "キリンビール 横浜工場");
    EXPECT_EQ(m.get_prov_mas("010101", true, "", 2), "札幌市中央区");
    EXPECT_EQ(m.get_prov_mas("2308550", false, "", 2), "");
}

// ---- size ----------------------------------------------------------------------------------

TEST(ProvinceMaster, IndexedLookupOfA100000LineMasterAnswersAsTheWalkFromIndexZero)
{
    test::TempDir dir;
    std::mt19937 rng(4711);
    std::uniform_int_distribution<int> letter(0, 25), len(1, 4);
    auto randomCode = [&] {
        std::string c;
        for (int i = len(rng); i > 0; --i) {
            c += static_cast<char>((letter(rng) % 2 ? 'A' : 'a') + letter(rng) % 8);
        }
        return c;
    };
    std::vector<std::string> lines;
    for (int i = 0; i < 100000; ++i) {
        lines.push_back(randomCode() + ",Name " + std::to_string(i));
    }
    const ProvinceMaster m = loadMas(dir, lines);
    ASSERT_EQ(m.Prov_kazu(), 100000u);

    auto walk = [&](std::string key) -> std::string {
        for (std::size_t i = 0; i <= m.Prov_kazu(); ++i) {
            if (m.Prov_code()[i] == key) {
                return "P " + m.Prov_name()[i];
            }
        }
        return {};
    };
    int hits = 0;
    for (int q = 0; q < 2000; ++q) {
        const std::string key = randomCode();
        const std::string expected = walk(key);
        hits += !expected.empty();
        EXPECT_EQ(m.get_prov_mas(key, true, "P ", 0), expected) << key;
    }
    EXPECT_GT(hits, 100);
}
