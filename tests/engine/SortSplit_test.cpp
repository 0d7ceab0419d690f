#include "base/WorkingFiles.h"
#include "engine/SortSplit.h"
#include "support/RunFixture.h"
#include "text/ByteKeySort.h"
#include "text/SjisCodec.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace vornhale;
using engine::SortRecord;

namespace {

SortRecord rec(const std::string& call, const std::string& band = "14", const std::string& date = "261122",
               const std::string& time = "0905U", const std::string& route = "J")
{
    SortRecord r;
    r.call_key = call;
    r.band_or_freq = band;
    r.mode = "CW";
    r.route = route;
    r.q_date6 = date;
    r.q_time5 = time;
    r.q_rst_sent = "599";
    r.q_rst_rcvd = "599";
    r.mng_pad = " ";
    r.q_call = call;
    return r;
}

struct SplitRun : test::RunFixture
{
    engine::RunContext* c = nullptr;

    explicit SplitRun(int sort_wake = 1, int sort_kind = 1)
    {
        c = &context();
        c->run.sort_wake = static_cast<std::int16_t>(sort_wake);
        c->run.sort_kind = static_cast<std::int16_t>(sort_kind);
        c->run.QSL_Q = "J";
        c->run.QSL_S = "*";
        c->run.names.out_name_con0 = (dir / "LOG_c0.csv").string();
    }
    void sortOut(const std::vector<SortRecord>& records)
    {
        text::LineWriter w(work(base::working::sort_in));
        for (const auto& r : records) {
            w.write(text::formatRecord(r.fields()));
        }
        w.close();
        engine::sort_(*c, 1, 8, false, work(base::working::sort_in), work(base::working::sort_out));
    }
    std::vector<std::string> calls(const std::filesystem::path& path, std::size_t width, std::size_t at)
    {
        std::vector<std::string> out;
        for (const auto& r : records(path, width)) {
            out.push_back(r[at]);
        }
        return out;
    }
    std::vector<std::string> resultCalls() { return calls(c->run.names.out_name_con0, 20, 0); }
};

} // namespace

TEST(SortSplit, OneContactGoesToTheSinglesAndTheSentinelStaysOutOfTheResult)
{
    SplitRun s;
    s.sortOut({rec("JA1ABC")});
    engine::temp_sep(*s.c);
    EXPECT_EQ(s.calls(s.work("semp_s.csv"), 23, 0), (std::vector<std::string>{"JA1ABC", "AAAAAA"}));
    EXPECT_EQ(s.calls(s.work("semp_d.csv"), 23, 0), (std::vector<std::string>{"AAAAAA"}));
    EXPECT_EQ(s.resultCalls(), (std::vector<std::string>{"JA1ABC"}));
    EXPECT_EQ(s.c->run.counters.qso_kazu, 1);
    EXPECT_EQ(s.c->run.counters.tan_kazu, 1);
    EXPECT_EQ(s.c->run.counters.fuku_kazu, 0);
}

TEST(SortSplit, EveryStationWorkedTwiceLeavesOnlyTheSentinelInTheSingles)
{
    SplitRun s;
    s.sortOut({rec("JA1ABC", "14"), rec("K1XX", "7"), rec("JA1ABC", "21"), rec("K1XX", "14")});
    engine::temp_sep(*s.c);
    EXPECT_EQ(s.calls(s.work("semp_s.csv"), 23, 0), (std::vector<std::string>{"AAAAAA"}));
    EXPECT_EQ(s.c->run.counters.tan_kazu, 0);
    EXPECT_EQ(s.c->run.counters.fuku_kazu, 4);
    EXPECT_EQ(s.c->run.counters.qso_kazu, 4);
    // Inside a station by band: 000000007 before 000000014.
    EXPECT_EQ(s.resultCalls(), (std::vector<std::string>{"JA1ABC", "JA1ABC", "K1XX", "K1XX"}));
    EXPECT_EQ(s.calls(s.c->run.names.out_name_con0, 20, 6),
              (std::vector<std::string>{"14", "21", "7", "14"}));
}

TEST(SortSplit, AStationCalledAaaaaaIsDroppedFromTheResult)
{
    SplitRun s;
    s.sortOut({rec("AAAAAA"), rec("JA1ABC")});
    engine::temp_sep(*s.c);
    EXPECT_EQ(s.resultCalls(), (std::vector<std::string>{"JA1ABC"}));
}

TEST(SortSplit, SinglesComeFirstWhenSplit)
{
    SplitRun s(1);
    s.sortOut({rec("AA1AA"), rec("ZZ1ZZ"), rec("AA1AA", "21")});
    engine::temp_sep(*s.c);
    EXPECT_EQ(s.resultCalls(), (std::vector<std::string>{"ZZ1ZZ", "AA1AA", "AA1AA"}));
}

TEST(SortSplit, WithoutTheSplitStationsAreMixedByTheKeyAlone)
{
    SplitRun s(0);
    s.sortOut({rec("AA1AA"), rec("ZZ1ZZ"), rec("AA1AA", "21")});
    engine::temp_sep(*s.c);
    EXPECT_EQ(s.resultCalls(), (std::vector<std::string>{"AA1AA", "AA1AA", "ZZ1ZZ"}));
}

TEST(SortSplit, TheJRouteTakesTheBureauMarkOnlyAmongSingles)
{
    SplitRun s(1);
    s.c->run.QSL_Q = "B";
    s.sortOut({rec("AA1AA"), rec("ZZ1ZZ", "14", "261122", "0905U", "J"),
               rec("AA1AA", "21", "261122", "0906U", "J")});
    engine::temp_sep(*s.c);
    const auto qsl = s.calls(s.c->run.names.out_name_con0, 20, 10);
    // Route "J" becomes the bureau mark first; a single whose mark still starts with "J"
    // would take it for that letter, multiples never do.
    EXPECT_EQ(qsl, (std::vector<std::string>{"B  ", "B  ", "B  "}));
}

TEST(SortSplit, AMarkBeginningWithJIsReplacedInSinglesButNotInMultiples)
{
    SplitRun s(1);
    s.c->run.QSL_Q = "B";
    s.sortOut({rec("AA1AA", "14", "261122", "0905U", "JX"), rec("ZZ1ZZ", "14", "261122", "0905U", "JX"),
               rec("AA1AA", "21", "261122", "0906U", "JX")});
    engine::temp_sep(*s.c);
    EXPECT_EQ(s.calls(s.c->run.names.out_name_con0, 20, 10),
              (std::vector<std::string>{"BX  ", "JX  ", "JX  "}));
}

TEST(SortSplit, ResultRecordsCarryDateWithSlashesAndTimeWithColon)
{
    SplitRun s;
    s.sortOut({rec("JA1ABC", "14", "261122", "0905U")});
    engine::temp_sep(*s.c);
    const auto r = s.records(s.c->run.names.out_name_con0, 20)[0];
    EXPECT_EQ(r[2], "26/11/22");
    EXPECT_EQ(r[3], "09:05U");
}

TEST(SortSplit, TheFirstSortSeesOnlySevenCharactersOfTheCall)
{
    SplitRun s;
    // Same first seven characters: the sort keeps their log order, so the runs interleave.
    s.sortOut({rec("JA1ABCDE"), rec("JA1ABCDF"), rec("JA1ABCDE", "21")});
    engine::temp_sep(*s.c);
    EXPECT_EQ(s.c->run.counters.tan_kazu, 3);
    EXPECT_EQ(s.c->run.counters.fuku_kazu, 0);
}

TEST(SortSplit, KeyFormsByKind)
{
    SortRecord r = rec("JA1ABC", "144", "261122", "0905U");
    EXPECT_EQ(engine::sortKey(r, 1, false), "JA1ABC        000000144CW 2611220905U");
    EXPECT_EQ(engine::sortKey(r, 1, false).size(), 37u);
    EXPECT_EQ(engine::sortKey(r, 2, false), "JA1ABC        2611220905U000000144CW ");
    r.mng_pad = "@K1XX  ";
    EXPECT_EQ(engine::sortKey(r, 3, false), "K1XX   JA1ABC000000144CW 2611220905U");
    EXPECT_EQ(engine::sortKey(r, 4, false), "K1XX   JA1ABC2611220905U000000144CW ");
    r.mng_pad = "";
    EXPECT_EQ(engine::sortKey(r, 3, false).substr(0, 13), "JA1ABC JA1ABC");
}

TEST(SortSplit, BandKeys)
{
    SortRecord r = rec("JA1ABC", "14.025");
    EXPECT_EQ(engine::sortKey(r, 1, true).substr(14, 9), "00014.025");
    EXPECT_EQ(engine::sortKey(r, 1, false).substr(14, 9), "000000001");
    r.band_or_freq = "3.5";
    EXPECT_EQ(engine::sortKey(r, 1, false).substr(14, 9), "000000003");
    r.band_or_freq = "144";
    EXPECT_EQ(engine::sortKey(r, 1, true).substr(14, 9), "000000144");
}

TEST(SortSplit, LogOrderCountsAndWritesTheContestFileUnsorted)
{
    SplitRun s(1, 0);
    std::vector<SortRecord> in = {rec("ZZ1ZZ"), rec("AA1AA"), rec("ZZ1ZZ", "21", "261122", "0906U", "N")};
    in[2].rmks1 = "@K1XX  QSL";
    in[2].mng_pad = "@K1XX  ";
    {
        text::LineWriter w(s.work(base::working::sort_in));
        for (const auto& r : in) {
            w.write(text::formatRecord(r.fields()));
        }
        w.close();
    }
    engine::Henkan_out_name_con(*s.c);
    const auto out = s.records(s.c->run.names.out_name_con0, 20);
    ASSERT_EQ(out.size(), 3u);
    EXPECT_EQ(out[0][0], "ZZ1ZZ");
    EXPECT_EQ(out[1][0], "AA1AA");
    EXPECT_EQ(out[0][10], "J* ");
    EXPECT_EQ(out[2][10], "N* ");
    EXPECT_EQ(out[2][13], "QSL");
    engine::sort_(*s.c, 1, 8, false, s.work(base::working::sort_in), s.work(base::working::sort_out));
    engine::count_tan_fuku(*s.c);
    EXPECT_EQ(s.c->run.counters.qso_kazu, 3);
    EXPECT_EQ(s.c->run.counters.tan_kazu, 1);
    EXPECT_EQ(s.c->run.counters.fuku_kazu, 2);
}

TEST(SortSplit, AFailedSortLeavesNoOutput)
{
    SplitRun s;
    engine::sort_(*s.c, 1, 8, false, s.work("missing.csv"), s.work("out.csv"));
    EXPECT_FALSE(std::filesystem::exists(s.work("out.csv")));
}

namespace {

// The keyed record and the result record as the stages formed them from whole decoded
// records: the reference for the stages, which work on undecoded ASCII records.
void keyByDecoding(const std::filesystem::path& in, int kind, bool frequencies,
                   text::LineWriter& out)
{
    text::RecordReader reader(in);
    do {
        const SortRecord r = SortRecord::from(reader.fields(SortRecord::kFields));
        const std::string key = engine::sortKey(r, kind, frequencies);
        const auto all = r.fields();
        std::vector<std::string_view> f{key};
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (i != 17) {
                f.push_back(all[i]);
            }
        }
        out.writeRecord(f);
    } while (!reader.atEnd());
}

void resultsByDecoding(const std::filesystem::path& in, bool singles, const std::string& QSL_Q,
                       text::LineWriter& out)
{
    text::RecordReader reader(in);
    do {
        const auto k = reader.fields(SortRecord::kFields);
        auto at = [&k](std::size_t i) -> const std::string& { return k[i < 17 ? i + 1 : i]; };
        if (at(0) == "AAAAAA") {
            continue;
        }
        std::string route = at(7);
        if (route == QSL_Q || route == "J") {
            route = QSL_Q.empty() ? " " : QSL_Q;
        }
        std::string qsl3 = route + "  ";
        if (singles && text::startsWith(qsl3, "J")) {
            qsl3 = QSL_Q + qsl3.substr(1);
        }
        const std::string date8 = engine::date8Of(at(10));
        const std::string time6 = text::left(at(11), 2) + ":" + text::right(at(11), 3);
        out.writeRecord({at(0),  at(1),  date8,  time6,  at(12), at(13), at(4),
                         at(5),  at(2),  at(8),  qsl3,   at(6),  at(14), at(15),
                         at(16), at(18), at(19), at(20), at(21), at(22)});
    } while (!reader.atEnd());
}

std::string sjisRecord(const SortRecord& r)
{
    return text::encodeSjis(text::formatRecord(r.fields())) + "\r\n";
}

// Records of every form a working file can hold: ASCII as the program writes them, kanji,
// bytes that decode and encode again to other bytes, undecodable bytes, blanks and unquoted
// fields, a record over two lines, text after a closing quote.
std::string mixedRecords(bool withManagers)
{
    std::string bytes;
    SortRecord plain = rec("JA1ABC", "14.025", "261122", "0905U", "J");
    if (withManagers) {
        plain.mng_pad = "@K1MGR  ";
    }
    bytes += sjisRecord(plain);
    SortRecord kanji = rec("JA1KAN", "7", "261123", "1201U", "JX");
    kanji.q_name = "山田";
    kanji.rmks1 = "東京都 ｺﾝﾃｽﾄ";
    kanji.dx_name = "日本";
    bytes += sjisRecord(kanji);
    SortRecord wide = rec("ＪＡ１ＷＩＤＥＣＡＬＬＳＩＧＮ", "１４", "261124", "０９05U", "N");
    wide.mode = "ＣＷ";
    wide.mng_pad = withManagers ? "@ＫＩＭＧＲ " : "";
    bytes += sjisRecord(wide);
    // 0xED40 and 0xFA5C stand for one character; reading and writing gives the second.
    std::string twice = sjisRecord(rec("JA1DUP", "21"));
    twice.replace(twice.find("599"), 3, "\xED\x40\xFA\x5C");
    bytes += twice;
    std::string raw = sjisRecord(rec("JA1RAW", "28"));
    raw.replace(raw.rfind("\"JA1RAW\""), 8, "\"\x80\xFD\xA0RAW\"");
    bytes += raw;
    SortRecord loose = rec("JA1LSE", "3.5", "261125", "2359U", "");
    std::string looseLine = text::formatRecord(loose.fields());
    // Blanks around the fields, the call unquoted, text after one closing quote.
    looseLine.replace(0, 8, " JA1LSE ");
    looseLine.replace(looseLine.find("\"CW\""), 4, "  \"CW\"xx");
    bytes += looseLine + "\r\n";
    const SortRecord two = rec("JA1TWO", "50");
    const auto split = two.fields();
    bytes += text::formatRecord(std::vector<std::string_view>(split.begin(), split.begin() + 10)) +
             "\n" +
             text::formatRecord(std::vector<std::string_view>(split.begin() + 10, split.end())) +
             "\r";
    SortRecord shortFields = rec("K1X", "", "", "", "B");
    shortFields.mode = "";
    bytes += sjisRecord(shortFields);
    bytes += std::string(engine::kSentinel) + "\r\n";
    return bytes;
}

struct StageOrder
{
    int sort_kind;
    bool frequencies;
    int sort_wake;
    const char* QSL_Q;
    // How many times the records stand in the files: many make files long enough to be
    // worked on in two parts side by side.
    int copies = 1;
};

void PrintTo(const StageOrder& o, std::ostream* os)
{
    *os << "kind " << o.sort_kind << (o.frequencies ? ", frequencies" : ", bands")
        << (o.sort_wake == 1 ? ", split" : ", together") << ", " << o.copies << " copies";
}

// `records` (ending in the sentinel) `copies` times over, with one sentinel at the end.
std::string copiesOf(const std::string& records, int copies)
{
    const std::string sentinel = std::string(engine::kSentinel) + "\r\n";
    const std::string body = records.substr(0, records.size() - sentinel.size());
    std::string out;
    for (int i = 0; i < copies; ++i) {
        out += body;
    }
    return out + sentinel;
}

class SortSplitReadingUndecoded : public ::testing::TestWithParam<StageOrder>
{
};

} // namespace

TEST_P(SortSplitReadingUndecoded, GivesTheBytesOfDecodedWholeRecords)
{
    const StageOrder order = GetParam();
    SplitRun s(order.sort_wake, order.sort_kind);
    settings::Options options = settings::Options::defaults();
    options.set("Check17", order.frequencies ? "1" : "0");
    engine::RunContext& c = s.context(options);
    c.run.sort_wake = static_cast<std::int16_t>(order.sort_wake);
    c.run.sort_kind = static_cast<std::int16_t>(order.sort_kind);
    c.run.QSL_Q = order.QSL_Q;
    c.run.names.out_name_con0 = (s.dir / "LOG_c0.csv").string();
    const std::string singles = copiesOf(mixedRecords(order.sort_kind >= 3), order.copies);
    const std::string multiples = copiesOf(mixedRecords(false), order.copies);
    test::writeBytes(s.work(base::working::semp_s), singles);
    test::writeBytes(s.work(base::working::semp_d), multiples);

    if (order.sort_wake == 1) {
        engine::sort_wakeru_c(c);
    } else {
        engine::sort_wakenai_c(c);
    }

    const auto expected = s.dir / "expected";
    std::filesystem::create_directories(expected);
    if (order.sort_wake == 1) {
        for (const char* name : {"s", "d"}) {
            const std::string semp = std::string("semp_") + name + ".csv";
            const std::string temp = std::string("temp_") + name + ".csv";
            const std::string uemp = std::string("uemp_") + name + ".csv";
            text::LineWriter keyed(expected / temp);
            keyByDecoding(s.work(semp.c_str()), order.sort_kind, order.frequencies, keyed);
            keyed.close();
            text::sortLinesByKey(expected / temp, expected / uemp, 2, 37, false);
            EXPECT_EQ(test::readBytes(s.work(temp.c_str())), test::readBytes(expected / temp))
                << temp;
        }
        text::LineWriter results(expected / "LOG_c0.csv");
        resultsByDecoding(expected / "uemp_s.csv", true, c.run.QSL_Q, results);
        resultsByDecoding(expected / "uemp_d.csv", false, c.run.QSL_Q, results);
        results.close();
    } else {
        text::LineWriter keyed(expected / "temp_s.csv");
        keyByDecoding(s.work(base::working::semp_s), order.sort_kind, order.frequencies, keyed);
        keyByDecoding(s.work(base::working::semp_d), order.sort_kind, order.frequencies, keyed);
        keyed.close();
        EXPECT_EQ(test::readBytes(s.work(base::working::temp_s)),
                  test::readBytes(expected / "temp_s.csv"));
        text::sortLinesByKey(expected / "temp_s.csv", expected / "uemp_s.csv", 2, 37, false);
        text::LineWriter results(expected / "LOG_c0.csv");
        resultsByDecoding(expected / "uemp_s.csv", true, c.run.QSL_Q, results);
        results.close();
    }
    const std::string result = test::readBytes(c.run.names.out_name_con0);
    EXPECT_EQ(result, test::readBytes(expected / "LOG_c0.csv"));
    // Every record but the two sentinels came through, kanji and all.
    EXPECT_EQ(std::count(result.begin(), result.end(), '\n'), 16 * order.copies);
    EXPECT_NE(result.find(text::encodeSjis("山田")), std::string::npos);
    EXPECT_NE(result.find("\xFA\x5C\xFA\x5C"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    EveryOrderAndSplit, SortSplitReadingUndecoded,
    ::testing::Values(StageOrder{1, false, 1, "J"}, StageOrder{1, true, 1, "Ｊ"},
                      StageOrder{2, false, 1, "B"}, StageOrder{3, false, 1, ""},
                      StageOrder{4, true, 1, "J"}, StageOrder{1, false, 0, "J"},
                      StageOrder{3, true, 0, "Ｊ"}, StageOrder{0, false, 1, "J"},
                      StageOrder{1, false, 1, "J", 1500}, StageOrder{3, true, 1, "Ｊ", 1500},
                      StageOrder{4, false, 0, "J", 1500}),
    [](const ::testing::TestParamInfo<StageOrder>& info) {
        const StageOrder& o = info.param;
        return "Kind" + std::to_string(o.sort_kind) + (o.frequencies ? "Frequencies" : "Bands") +
               (o.sort_wake == 1 ? "Split" : "Together") + "Mark" +
               std::to_string(std::string_view(o.QSL_Q).size()) + "Bytes" +
               (o.copies > 1 ? std::to_string(o.copies) + "Copies" : "");
    });

TEST(SortSplit, TheAsciiKeyIsTheKeyOfTheWholeRecord)
{
    const std::vector<std::string> calls = {"", "K1X", "JA1ABC", "JA1ABCDEFGHIJK",
                                            "JA1ABCDEFGHIJKLM"};
    const std::vector<std::string> bands = {"",   "7",         "3.5",         "14.025",
                                            ".5", "123456789", "1234567890.1"};
    const std::vector<std::string> modes = {"", "C", "CW", "SSB", "RTTY"};
    const std::vector<std::string> managers = {"", " ", "@", "@K1XX  ", "@  AB  ", "@VERYLONGMGR"};
    int compared = 0;
    for (const auto& call : calls) {
        for (const auto& band : bands) {
            for (const auto& mode : modes) {
                for (const auto& manager : managers) {
                    SortRecord r = rec(call, band, band.empty() ? "" : "261122", "0905U");
                    r.mode = mode;
                    r.mng_pad = manager;
                    for (int kind = 0; kind <= 5; ++kind) {
                        for (bool frequencies : {false, true}) {
                            std::string key = "\"";
                            engine::appendAsciiSortKey(key, r.call_key, r.band_or_freq, r.mode,
                                                       r.q_date6, r.q_time5, r.mng_pad, kind,
                                                       frequencies);
                            ASSERT_EQ(key, "\"" + engine::sortKey(r, kind, frequencies))
                                << call << "|" << band << "|" << mode << "|" << manager << "|"
                                << kind << frequencies;
                            ++compared;
                        }
                    }
                }
            }
        }
    }
    EXPECT_EQ(compared, 5 * 7 * 5 * 6 * 6 * 2);
}

namespace {

// The contest file in log order as it was formed from whole decoded records.
void logOrderByDecoding(const std::filesystem::path& in, const engine::RunState& run,
                        text::LineWriter& out)
{
    text::RecordReader reader(in);
    while (!reader.atEnd()) {
        SortRecord r = SortRecord::from(reader.fields(SortRecord::kFields));
        std::string qsl3;
        if (r.route != "N") {
            const bool manager = text::contains(r.rmks1, "@") || text::contains(r.rmks2, "@");
            qsl3 = (manager ? std::string("M") : run.QSL_Q) + run.QSL_S + " ";
        } else {
            qsl3 = "N" + run.QSL_S + " ";
            r.rmks1 = text::replaceAll(r.rmks1, r.mng_pad, "");
            r.rmks2 = text::replaceAll(r.rmks2, r.mng_pad, "");
        }
        const std::string time6 = text::left(r.q_time5, 2) + ":" + text::right(r.q_time5, 3);
        out.writeRecord(engine::resultOf(r, engine::date8Of(r.q_date6), time6, qsl3).fields());
    }
}

} // namespace

TEST(SortSplit, LogOrderGivesTheBytesOfDecodedWholeRecords)
{
    std::string records = mixedRecords(true);
    // Managers in the remarks, and stations that want no card with and without a manager.
    SortRecord managed = rec("JA1MGD", "14", "261122", "0905U", "J");
    managed.rmks2 = "VIA @K1MGR";
    records += sjisRecord(managed);
    SortRecord noCard = rec("JA1NOC", "14", "261122", "0906U", "N");
    noCard.mng_pad = "@K1MGR  ";
    noCard.rmks1 = "@K1MGR  QSL VIA @K1MGR  ";
    noCard.rmks2 = "@K1MGR  ";
    records += sjisRecord(noCard);
    SortRecord noCardKanji = noCard;
    noCardKanji.rmks1 = "@K1MGR  東京";
    records += sjisRecord(noCardKanji);
    SortRecord noCardUnmanaged = rec("JA1NOD", "14", "261122", "0907U", "N");
    noCardUnmanaged.mng_pad = "";
    noCardUnmanaged.rmks1 = "QSL";
    records += sjisRecord(noCardUnmanaged);

    for (const auto& [QSL_Q, QSL_S] :
         {std::pair{"J", "*"}, std::pair{"Ｊ", "*"}, std::pair{"J", "＊"}, std::pair{"", ""}}) {
        SplitRun s(1, 0);
        s.c->run.QSL_Q = QSL_Q;
        s.c->run.QSL_S = QSL_S;
        test::writeBytes(s.work(base::working::sort_in), records);
        engine::Henkan_out_name_con(*s.c);
        text::LineWriter expected(s.dir / "expected.csv");
        logOrderByDecoding(s.work(base::working::sort_in), s.c->run, expected);
        expected.close();
        const std::string result = test::readBytes(s.c->run.names.out_name_con0);
        EXPECT_EQ(result, test::readBytes(s.dir / "expected.csv")) << QSL_Q << QSL_S;
        EXPECT_EQ(std::count(result.begin(), result.end(), '\n'), 13);
        // The manager is cut out of the remarks of a station that wants no card.
        EXPECT_NE(result.find("\"QSL VIA \""), std::string::npos);
    }
}
