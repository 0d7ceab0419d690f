// The indexed lookup must give the answers of the plain first-wins walks, on the real
// cty.dat and on generated masters of 100,000 lines.

#include "reference/CtyFixture.h"
#include "reference/LiteralEntityLookup.h"
#include "support/TestSupport.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <set>

using namespace vornhale;

namespace {

const std::filesystem::path kRealCty = "/usr/share/hamradio-files/cty.dat";

// Every prefix and exact call that the import wrote to cty_dat1.txt, "=" removed, in order.
std::vector<std::string> listedCalls(const std::filesystem::path& dat1)
{
    std::vector<std::string> calls;
    text::RecordReader in(dat1);
    while (!in.atEnd()) {
        const auto f = in.fields(4);
        calls.push_back(std::string(text::trim(text::replaceAll(f[0], "=", ""))));
    }
    return calls;
}

// Calls built from the listed ones: home calls behind a prefix, portable marks, two-part
// calls both ways, long right parts, case changes.
std::vector<std::string> generatedCalls(const std::vector<std::string>& listed, std::size_t count,
                                        unsigned seed)
{
    std::mt19937 rng(seed);
    auto pick = [&](const std::vector<std::string>& v) -> const std::string& {
        return v[std::uniform_int_distribution<std::size_t>(0, v.size() - 1)(rng)];
    };
    auto roll = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng); };
    const std::string letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    auto suffix = [&] {
        std::string s;
        for (int i = 0, n = 1 + roll(3); i < n; ++i) {
            s += letters[static_cast<std::size_t>(roll(26))];
        }
        return s;
    };
    const std::vector<std::string> marks = {"P", "p",  "M",  "m",   "MM",      "mm",  "R",
                                            "r", "QRP", "7", "1A",  "AM",      "Mm",  "",
                                            " P", "KH6", "VP2E", "ABCDEFGH", "3D2R", "/P"};
    std::vector<std::string> calls;
    calls.reserve(count);
    while (calls.size() < count) {
        const std::string& p = pick(listed);
        std::string home = p.find('/') == std::string::npos ? p + std::to_string(roll(10)) + suffix()
                                                            : p;
        switch (roll(8)) {
        case 0:
            calls.push_back(home);
            break;
        case 1:
            calls.push_back(home + "/" + pick(marks));
            break;
        case 2:
            calls.push_back(pick(listed) + "/" + home);
            break;
        case 3:
            calls.push_back(home + "/" + pick(listed));
            break;
        case 4:
            calls.push_back(text::lower(home));
            break;
        case 5:
            calls.push_back(p + "/" + suffix() + suffix() + suffix());
            break;
        case 6:
            calls.push_back(p.substr(0, p.size() > 1 ? p.size() - 1 : 1) + "/" + p);
            break;
        default:
            calls.push_back(" " + home + " ");
            break;
        }
    }
    return calls;
}

// Compares every call and returns the number of differences; the first few are reported.
int compareAll(test::ImportedCty& cty, const test::LiteralEntityLookup& literal,
               const std::vector<std::string>& calls)
{
    int differences = 0;
    for (const std::string& call : calls) {
        const std::string indexed = cty.lookup.entityOf(call);
        const std::string plain = literal.cty_conv_apply(literal.get_entity(call));
        const auto a = cty.lookup.dxcc_lookup(indexed);
        const auto b = literal.dxcc_lookup(plain);
        if (indexed != plain || a.dx_code != b.dx_code || a.dx_name != b.dx_name ||
            a.dx_buro != b.dx_buro) {
            if (++differences <= 10) {
                ADD_FAILURE() << "call \"" << call << "\": indexed \"" << indexed << "\" "
                              << a.dx_code << ", plain walk \"" << plain << "\" " << b.dx_code;
            }
        }
    }
    return differences;
}

} // namespace

TEST(EntityLookupEquivalence, RealCtyDatGivesThePlainWalksAnswers)
{
    if (!std::filesystem::exists(kRealCty)) {
        GTEST_SKIP() << kRealCty << " is not installed (Debian package hamradio-files)";
    }
    test::ImportedCty cty;
    cty.runFiles(kRealCty, test::sourceDir() / "data/seed/cty_conv.txt",
                 test::sourceDir() / "data/seed/dxcc_mas.txt");
    const test::LiteralEntityLookup literal(cty.import.tables(), cty.mastL(), false);

    std::vector<std::string> calls = listedCalls(cty.folders.work("cty_dat1.txt"));
    ASSERT_GT(calls.size(), 20000u);
    const std::vector<std::string> named = {
        "KH6/AB1CD", "AB1CD/KH6", "VP2EAB",   "3D2AG/R", "3D2AG/r", "3D2AG/P",   "XX9TST/MM",
        "XX9TST/M",  "XX9TST/P",  "W1AW/7",   "W1AW",    "JA1ABC",  "JA1ABC/1",  "VE3XX",
        "KL7XX",     "BV2XX",     "FT5XO",    "KH6/JA1ABC", "JA1ABC/KH6", "UA9ABC/UA1",
        "R1ANZ/MM",  "9M6/LA6VM", "DL1ABC/P5ABCDEFG", "SV2ASP/A", "CE0Y/W1AW"};
    calls.insert(calls.end(), named.begin(), named.end());
    // Calls whose prefix is 7 characters or more.
    for (const std::string& c : listedCalls(cty.folders.work("cty_dat1.txt"))) {
        if (c.size() >= 7 && c.find('/') == std::string::npos) {
            calls.push_back(c + "1");
            calls.push_back(c.substr(0, 6) + "/P");
        }
    }
    const auto generated = generatedCalls(listedCalls(cty.folders.work("cty_dat1.txt")), 4000, 7);
    calls.insert(calls.end(), generated.begin(), generated.end());

    EXPECT_EQ(compareAll(cty, literal, calls), 0);
}

TEST(EntityLookupEquivalence, GeneratedMastersOf100000LinesGiveThePlainWalksAnswers)
{
    // 2,000 entities of 50 listings each: short prefixes that repeat across entities, long
    // prefixes, exact calls with and without "/", zone overrides, "*" entities, IG9.
    std::mt19937 rng(2024);
    auto roll = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng); };
    const std::string alnum = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    auto word = [&](int n) {
        std::string s;
        for (int i = 0; i < n; ++i) {
            s += alnum[static_cast<std::size_t>(roll(i == 0 ? 26 : 36))];
        }
        return s;
    };
    std::string cty;
    for (int e = 0; e < 2000; ++e) {
        std::string primary = e == 7 ? "IG9" : (e % 97 == 0 ? "*" : "") + word(2) + std::to_string(e % 10);
        if (e % 53 == 0) {
            primary = word(2) + "/" + std::string(1, static_cast<char>('a' + roll(26)));
        }
        cty += test::ctyHeader("Entity " + std::to_string(e), e % 2 ? "EU" : "NA", primary) + "\n";
        for (int line = 0; line < 5; ++line) {
            std::string text = "    ";
            for (int k = 0; k < 10; ++k) {
                std::string p;
                switch (roll(6)) {
                case 0:
                case 1:
                    p = word(1 + roll(3)); // short, often repeated
                    break;
                case 2:
                    p = word(4 + roll(3));
                    break;
                case 3:
                    p = word(7 + roll(5)); // long, some cut at 10
                    break;
                case 4:
                    p = "=" + word(4 + roll(3)) + (roll(3) == 0 ? "/" + word(1 + roll(3)) : "");
                    break;
                default:
                    p = word(3) + (roll(2) ? "(" + std::to_string(roll(40)) + ")" : "[12]");
                    break;
                }
                text += p + (line == 4 && k == 9 ? ";" : ",");
            }
            cty += text + "\n";
        }
    }
    test::ImportedCty imported;
    imported.run(cty, {"IG9,XX", "AB0,CD1"},
                 {" AB0     1         D001  One", " IG9     2         D002  Two"});
    const auto& t = imported.import.tables();
    const auto mastLLines = text::Count_lines(imported.mastL()) - 1;
    EXPECT_GE(t.cty_s_kazu - 1 + mastLLines, 95000);
    const test::LiteralEntityLookup literal(t, imported.mastL(), false);

    const auto listed = listedCalls(imported.folders.work("cty_dat1.txt"));
    ASSERT_EQ(listed.size(), 100000u);
    std::vector<std::string> calls;
    for (std::size_t i = 0; i < listed.size(); i += 100) {
        calls.push_back(listed[i]);
    }
    const auto generated = generatedCalls(listed, 2000, 99);
    calls.insert(calls.end(), generated.begin(), generated.end());
    EXPECT_EQ(compareAll(imported, literal, calls), 0);
}

TEST(EntityLookupEquivalence, CallsWithKanjiOrInnerBlanksGiveThePlainWalksAnswers)
{
    // Calls of capitals, digits and "/" take the walk along the trie of prefixes; these take
    // the search that counts characters and trims each key. Both must answer as the walk
    // over the masters does.
    if (!std::filesystem::exists(kRealCty)) {
        GTEST_SKIP() << kRealCty << " is not installed (Debian package hamradio-files)";
    }
    test::ImportedCty cty;
    cty.runFiles(kRealCty, test::sourceDir() / "data/seed/cty_conv.txt",
                 test::sourceDir() / "data/seed/dxcc_mas.txt");
    const test::LiteralEntityLookup literal(cty.import.tables(), cty.mastL(), false);
    const std::vector<std::string> calls = {
        "東京/JA1ABC", "JA1ABC/東京", "ＪＡ１ＡＢＣ",   "JA 1ABC", "JA1 ABC/P",   "K 1/W1AW",
        "ｶﾅ1ABC",      "JA1ABC/ｶﾅ",   "JA東京",         "VP2E 東", "KH6 /JA1ABC", "JA1ABC/ KH6",
        "W1AW/7 東",   "3D2 AG/R",    "DL1ABC/P5 東京", "東",      " ",           "JA1ABC",
        "KH6/JA1ABC",  "VP2EAB",      "ja1abc",         "JA1ABC-", "W1AW#7",      "kh6/JA1ABC",
        "3D2AG/r",     "JA1ABC/qrp",  "VE3.XX"};
    EXPECT_EQ(compareAll(cty, literal, calls), 0);
}
