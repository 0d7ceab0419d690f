// The bundled DXCC master and alias table with the real cty.dat: common calls reach the
// codes that the later stages test for.

#include "reference/CtyFixture.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace vornhale;

namespace {

const std::filesystem::path kRealCty = "/usr/share/hamradio-files/cty.dat";

struct Expected
{
    const char* call;
    const char* entity;
    const char* code;
    const char* name;
};

} // namespace

TEST(SeedEntities, CommonCallsGetTheirDxccCodes)
{
    if (!std::filesystem::exists(kRealCty)) {
        GTEST_SKIP() << kRealCty << " is not installed (Debian package hamradio-files)";
    }
    test::ImportedCty cty;
    cty.runFiles(kRealCty, test::sourceDir() / "data/seed/cty_conv.txt",
                 test::sourceDir() / "data/seed/dxcc_mas.txt");
    EXPECT_TRUE(cty.folders.dialogs.shown.empty());

    const Expected cases[] = {
        {"JA1ABC", "JA", "D339", "Japan"},
        {"W1AW", "K", "784A", "United States"},
        {"VE3XX", "VE", "758A", "Canada"},
        {"KL7XX", "KL", "667A", "Alaska"},
        {"BV2XX", "BV", "566A", "Taiwan"},
        // Found through the short prefix FT5X as "FT/X"; the alias table turns it back.
        {"FT5XO", "FT/x", "D131", "Kerguelen Islands"},
        {"KH6/JA1ABC", "KH6", "D110", "Hawaii"},
        {"JA1ABC/KH6", "KH6", "D110", "Hawaii"},
        {"XX9TST/MM", "", "", ""},
    };
    for (const Expected& c : cases) {
        const std::string entity = cty.lookup.entityOf(c.call);
        EXPECT_EQ(entity, c.entity) << c.call;
        const auto dx = cty.lookup.dxcc_lookup(entity);
        EXPECT_EQ(dx.dx_code, c.code) << c.call;
        EXPECT_EQ(dx.dx_name, c.name) << c.call;
    }
}

TEST(SeedEntities, RotumaCallsReachTheirOwnKey)
{
    if (!std::filesystem::exists(kRealCty)) {
        GTEST_SKIP() << kRealCty << " is not installed (Debian package hamradio-files)";
    }
    test::ImportedCty cty;
    cty.runFiles(kRealCty, test::sourceDir() / "data/seed/cty_conv.txt",
                 test::sourceDir() / "data/seed/dxcc_mas.txt");
    EXPECT_EQ(cty.lookup.dxcc_lookup(cty.lookup.entityOf("3D2AG/R")).dx_code, "D460");
    // An exact call of the long master comes padded, and the DXCC lookup trims it.
    const std::string exact = cty.lookup.entityOf("3D2RX");
    EXPECT_EQ(exact, "3D2/r    ");
    EXPECT_EQ(cty.lookup.dxcc_lookup(exact).dx_code, "D460");
}
