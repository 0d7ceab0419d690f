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

namespace {

// Entities from the first two letters of the call: a lookup that only reads, as the real one.
class PrefixEntities : public reference::EntityLookup
{
public:
    std::string entityOf(std::string_view call) override { return std::string(call.substr(0, 2)); }
    reference::DxccEntry dxcc_lookup(std::string_view entity) override
    {
        return {"C" + std::string(entity), entity == "JA" ? "日本" : "Other", ""};
    }
};

// Common QSO lines of every kind: ASCII, Shift-JIS and odd notation. With `twoLines`, the
// records from `from` to `to` each run over two lines.
std::string qsoLines(int first, int last, int from = -1, int to = -1)
{
    std::string out;
    for (int i = first; i < last; ++i) {
        const std::string call = (i % 3 == 0 ? "JA" : i % 3 == 1 ? "W" : "DL") +
                                 std::to_string(i % 10) + "X" + std::to_string(i) +
                                 (i % 7 == 0 ? "/P" : "");
        std::vector<std::string> f = {"2026", std::to_string(1 + i % 12), std::to_string(1 + i % 28),
                                      "0905", call, "599", "599", std::to_string(7 * (1 + i % 4)),
                                      i % 5 == 0 ? "SSB" : "CW", i % 11 == 0 ? "山田" : "OP",
                                      i % 13 == 0 ? "ＱＳＬ　via" : "memo " + std::to_string(i),
                                      "", std::to_string(i % 40)};
        std::string line = text::encodeSjis(text::formatRecord(f));
        if (i >= from && i < to) {
            // The record breaks after its fifth field and goes on on the next line.
            std::size_t comma = 0;
            for (int n = 0; n < 5; ++n) {
                comma = line.find("\",\"", comma) + 1;
            }
            line = line.substr(0, comma) + "\r\n" + line.substr(comma + 1);
        }
        out += line + "\r\n";
    }
    return out;
}

struct Enriched
{
    std::string bytes;
    std::vector<long> progress;
    int failure = 0;
};

Enriched enrich(const std::string& zlog_1)
{
    test::RunFixture f;
    PrefixEntities entities;
    f.entities = &entities;
    test::writeBytes(f.work("zlog_1.txt"), zlog_1);
    Enriched out;
    try {
        engine::bak_sep1(f.context());
    } catch (const failure::Failure& e) {
        out.failure = e.number();
    }
    out.bytes = text::readFileBytes(f.work("zlog_2.txt"));
    out.progress = f.observer.progressValues;
    return out;
}

// Progress 1, 2 … n, then 0.
std::vector<long> countedTo(long n)
{
    std::vector<long> values;
    for (long i = 1; i <= n; ++i) {
        values.push_back(i);
    }
    values.push_back(0);
    return values;
}

} // namespace

// A long file is turned in two parts side by side; what comes out is what one pass through it
// gives, as the two halves of its records give it one after the other (each short enough to
// be turned in one pass).
TEST(bak_sep1, ALongFileGivesWhatOnePassGives)
{
    constexpr int kRecords = 16000;
    const std::string whole = qsoLines(0, kRecords);
    ASSERT_GT(whole.size(), 1u << 20);
    const Enriched expected{enrich(qsoLines(0, kRecords / 2)).bytes +
                                enrich(qsoLines(kRecords / 2, kRecords)).bytes,
                            countedTo(kRecords), 0};
    const Enriched got = enrich(whole);
    EXPECT_EQ(got.failure, 0);
    EXPECT_EQ(got.bytes, expected.bytes);
    EXPECT_EQ(got.progress, expected.progress);
}

TEST(bak_sep1, ALongFileWhoseRecordsRunOverTwoLinesWhereItIsSplitGivesWhatOnePassGives)
{
    // Every record from 40 % to 80 % of the file runs over two lines, so the part turned on
    // the second thread starts inside a record or at its start, as the lines fall: the files
    // differ in the length of their first record to meet both.
    constexpr int kRecords = 16000;
    for (const std::size_t pad : {0, 23, 47, 71, 95}) {
        const std::string first =
            text::formatRecord({"2026", "1", "1", "0000", "JA1PAD", "599", "599", "7", "CW", "OP",
                                std::string(pad, 'p'), "", "1"}) + "\r\n";
        const std::string whole =
            first + qsoLines(0, kRecords, kRecords * 2 / 5, kRecords * 4 / 5);
        const std::string expected =
            enrich(first + qsoLines(0, kRecords / 2, kRecords * 2 / 5, kRecords)).bytes +
            enrich(qsoLines(kRecords / 2, kRecords, 0, kRecords * 4 / 5)).bytes;
        const Enriched got = enrich(whole);
        EXPECT_EQ(got.failure, 0);
        EXPECT_EQ(got.bytes, expected) << pad;
        EXPECT_EQ(got.progress, countedTo(kRecords + 1)) << pad;
    }
}

TEST(bak_sep1, ALongFileCutInsideItsLastRecordFailsAsOnePassFails)
{
    constexpr int kRecords = 16000;
    std::string whole = qsoLines(0, kRecords);
    // The last record loses its last four fields.
    for (int n = 0; n < 4; ++n) {
        whole.resize(whole.rfind("\",\"") + 1);
    }
    const Enriched got = enrich(whole);
    EXPECT_EQ(got.failure, 62);
    const std::string done = enrich(qsoLines(0, kRecords / 2)).bytes +
                             enrich(qsoLines(kRecords / 2, kRecords - 1)).bytes;
    EXPECT_EQ(got.bytes, done);
    // No closing 0: the failure comes first.
    std::vector<long> progress = countedTo(kRecords - 1);
    progress.pop_back();
    EXPECT_EQ(got.progress, progress);
}
