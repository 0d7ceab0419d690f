#include "engine/CallSplit.h"
#include "failure/Failure.h"
#include "support/RunFixture.h"
#include "text/SjisCodec.h"

#include <gtest/gtest.h>

using namespace vornhale;

TEST(CallSplit, PortableSuffixStaysBehindTheHomeCall)
{
    const auto p = engine::splitCall("ZZ9ZZZ/1");
    EXPECT_EQ(p.base_call, "ZZ9ZZZ");
    EXPECT_EQ(p.call_ext, "1");
    EXPECT_EQ(p.lookupCall, "ZZ9ZZZ/1");
}

TEST(CallSplit, ShorterPrefixBecomesTheOtherPart)
{
    const auto p = engine::splitCall("KH6/ZZ9ZZZ");
    EXPECT_EQ(p.base_call, "ZZ9ZZZ");
    EXPECT_EQ(p.call_ext, "KH6");
}

TEST(CallSplit, PartsOfEqualLengthKeepTheFirstAsHomeCall)
{
    const auto p = engine::splitCall("AB/CD");
    EXPECT_EQ(p.base_call, "AB");
    EXPECT_EQ(p.call_ext, "CD");
}

TEST(CallSplit, TwoSlashesLookUpTheTextBeforeTheLastAndIgnoreTheThirdPart)
{
    const auto p = engine::splitCall("ZZ9ZZZ/1/P");
    EXPECT_EQ(p.lookupCall, "ZZ9ZZZ/1");
    EXPECT_EQ(p.base_call, "ZZ9ZZZ");
    EXPECT_EQ(p.call_ext, "1");
}

TEST(CallSplit, NoSlashAndTrailingBlanks)
{
    const auto p = engine::splitCall("JA1ABC       ");
    EXPECT_EQ(p.base_call, "JA1ABC");
    EXPECT_EQ(p.call_ext, "");
    EXPECT_EQ(p.lookupCall, "JA1ABC");
}

namespace {

class RecordingEntities : public reference::EntityLookup
{
public:
    std::string entityOf(std::string_view call) override
    {
        asked.emplace_back(call);
        return call.starts_with("BV") ? "BV" : "";
    }
    reference::DxccEntry dxcc_lookup(std::string_view entity) override
    {
        if (entity == "BV") {
            return {"566A", "Taiwan", ""};
        }
        return {};
    }
    std::vector<std::string> asked;
};

std::string zlog1(std::initializer_list<std::vector<std::string>> records)
{
    std::string out;
    for (const auto& r : records) {
        out += text::formatRecord(r) + "\r\n";
    }
    return out;
}

} // namespace

TEST(bak_sep1, WritesNineteenFieldsWithDateCallPartsAndEntity)
{
    test::RunFixture f;
    RecordingEntities entities;
    f.entities = &entities;
    test::writeBytes(f.work("zlog_1.txt"),
                     zlog1({{"2026", "1", "2", " 0905 ", "BV2AB/1/P    ", " 599 ", "599", "14", "CW",
                             "OP1", "memo", "", "24"}}));
    engine::RunContext& c = f.context();
    engine::bak_sep1(c);
    const auto recs = f.records(f.work("zlog_2.txt"), 19);
    ASSERT_EQ(recs.size(), 1u);
    const std::vector<std::string> expected = {
        "BV", "260102", "0905", "BV2AB/1/P    ", "599", "599", "BV2AB", "1", "14", "CW", "", "",
        "566A", "Taiwan", "", "BV2AB/1/P    ", "OP1", "memo", "24"};
    EXPECT_EQ(recs[0], expected);
    EXPECT_EQ(entities.asked, (std::vector<std::string>{"BV2AB/1"}));
}

TEST(bak_sep1, FrequencyReplacesTheBandOnlyWithCheck17)
{
    const std::string line = zlog1({{"2026", "11", "22", "0905", "JA1ABC", "599", "599", "14", "CW",
                                     "", "", "14.025", "13"}});
    for (const auto& [tick, expected] : {std::pair{"1", "14.025"}, std::pair{"0", "14"}}) {
        test::RunFixture f;
        test::writeBytes(f.work("zlog_1.txt"), line);
        auto options = settings::Options::defaults();
        options.set("Check17", tick);
        engine::bak_sep1(f.context(options));
        EXPECT_EQ(f.records(f.work("zlog_2.txt"), 19)[0][8], expected);
    }
}

TEST(bak_sep1, ARecordWithTooFewFieldsTakesTheRestFromTheNextLine)
{
    test::RunFixture f;
    test::writeBytes(f.work("zlog_1.txt"),
                     "\"2026\",\"11\",\"22\",\"0905\",\"JA1ABC\"\r\n\"599\",\"599\",\"14\",\"CW\","
                     "\"\",\"\",\"\",\"13\"\r\n");
    engine::bak_sep1(f.context());
    const auto recs = f.records(f.work("zlog_2.txt"), 19);
    ASSERT_EQ(recs.size(), 1u);
    EXPECT_EQ(recs[0][6], "JA1ABC");
    EXPECT_EQ(recs[0][8], "14");
    EXPECT_EQ(recs[0][18], "13");
}

TEST(bak_sep1, AnEmptyWorkingFileIsReadPastItsEnd)
{
    test::RunFixture f;
    test::writeBytes(f.work("zlog_1.txt"), "");
    try {
        engine::bak_sep1(f.context());
        FAIL();
    } catch (const failure::Failure& e) {
        EXPECT_EQ(e.number(), 62);
    }
}

TEST(bak_sep1, RunningOutOfInputInsideARecordIsAFailure)
{
    test::RunFixture f;
    test::writeBytes(f.work("zlog_1.txt"), "\"2026\",\"11\"\r\n");
    EXPECT_THROW(engine::bak_sep1(f.context()), failure::Failure);
}

TEST(CallSplit, PartsAreComparedByCharactersNotBytes)
{
    // "ＡＢ" takes four bytes but two characters, fewer than the three of "CDE".
    const auto p = engine::splitCall("ＡＢ/CDE");
    EXPECT_EQ(p.base_call, "CDE");
    EXPECT_EQ(p.call_ext, "ＡＢ");
    EXPECT_EQ(p.lookupCall, "ＡＢ/CDE");
}

TEST(CallSplit, AnEmptyPartAfterTheSlashIsTheOtherPart)
{
    const auto p = engine::splitCall(" ZZ9ZZZ /");
    EXPECT_EQ(p.base_call, "ZZ9ZZZ");
    EXPECT_EQ(p.call_ext, "");
    EXPECT_EQ(p.lookupCall, "ZZ9ZZZ /");
}

TEST(bak_sep1, KanjiFieldsGiveTheSameLineAsTheirAsciiNeighbours)
{
    test::RunFixture f;
    RecordingEntities entities;
    f.entities = &entities;
    // One ASCII record and one whose operator, memo and date parts are not ASCII: the digits
    // are counted as characters, so a full-width "１" still gets its leading zero.
    test::writeBytes(
        f.work("zlog_1.txt"),
        text::encodeSjis(zlog1(
            {{"2026", "1", "2", "0905", "BV2AB", "599", "599", "14", "CW", "OP", "memo", "", "24"},
             {"２０２６", "１", "１２", "0905", "BV2AB", "599", "599", "14", "CW", "山田",
              "ＱＳＬ　via", "", "24"}})));
    engine::bak_sep1(f.context());
    const std::string bytes = text::readFileBytes(f.work("zlog_2.txt"));
    EXPECT_EQ(bytes, text::encodeSjis(
                         "\"BV\",\"260102\",\"0905\",\"BV2AB\",\"599\",\"599\",\"BV2AB\",\"\","
                         "\"14\",\"CW\",\"\",\"\",\"566A\",\"Taiwan\",\"\",\"BV2AB\",\"OP\","
                         "\"memo\",\"24\"\r\n"
                         "\"BV\",\"２６0１１２\",\"0905\",\"BV2AB\",\"599\",\"599\",\"BV2AB\","
                         "\"\",\"14\",\"CW\",\"\",\"\",\"566A\",\"Taiwan\",\"\",\"BV2AB\","
                         "\"山田\",\"ＱＳＬ　via\",\"24\"\r\n"));
}
