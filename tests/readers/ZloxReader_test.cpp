#include "base/WorkingFiles.h"
#include "failure/Failure.h"
#include "readers/InputKinds.h"
#include "readers/InputSelection.h"
#include "readers/ZloReader.h"
#include "readers/ZloWriter.h"
#include "readers/ZloxReader.h"
#include "readers/ZloxRecord.h"
#include "support/RunFixture.h"
#include "text/Chars.h"
#include "text/SjisCodec.h"
#include "text/SjisText.h"

#include <cstring>
#include <gtest/gtest.h>
#include <random>

using namespace vornhale;
using test::ZloQsoSpec;
using test::ZloWriter;

namespace {

enum Field { Year, Month, Day, Time, Call, RstSent, RstRcvd, Band, Mode, Op, Memo, Freq, Rcvd };

/// What a `.ZLOX` record holds beyond the `.ZLO` record.
struct ZloxExtra
{
    std::string freq;  ///< kHz text, "7123.0"
    bool dupe = false; ///< byte 241
    bool qsyViolation = false;
    std::uint8_t qslState = 0;
};

/// Builds a `.ZLOX` file from the records of a `.ZLO` image: "ZLOX" and the count of contacts
/// in the header, each record widened to 384 bytes with its extra fields.
std::string zloxOf(const std::string& zlo, const std::vector<ZloxExtra>& extras = {})
{
    const std::size_t records = zlo.size() / 256;
    std::string out;
    for (std::size_t n = 0; n < records; ++n) {
        std::string r = zlo.substr(n * 256, 256) + std::string(128, '\0');
        if (n == 0) {
            std::memcpy(r.data(), "ZLOX", 4);
            const auto count = static_cast<std::uint32_t>(records - 1);
            std::memcpy(r.data() + 4, &count, 4);
        } else if (n - 1 < extras.size()) {
            const ZloxExtra& e = extras[n - 1];
            r[241] = e.dupe ? 1 : 0;
            r[256] = static_cast<char>(e.freq.size());
            r.replace(257, e.freq.size(), e.freq);
            r[267] = e.qsyViolation ? 1 : 0;
            r[280] = static_cast<char>(e.qslState);
        }
        out += r;
    }
    return out;
}

struct ZloxRun : ::testing::Test, test::RunFixture
{
    settings::Options options = settings::Options::defaults();
    engine::LayoutUse use;

    engine::RunContext& make(const std::filesystem::path& path)
    {
        engine::RunContext& c = context(options);
        c.run.in_name = path.string();
        c.run.chosen_name = path.string();
        c.run.setKind(readers::InputKind::Zlox);
        c.run.use = use;
        return c;
    }

    std::filesystem::path file(const std::string& bytes, const char* name = "TEST.ZLOX")
    {
        const auto path = dir / name;
        test::writeBytes(path, bytes);
        return path;
    }

    std::vector<std::vector<std::string>> convert(const std::string& zloxBytes)
    {
        engine::RunContext& c = make(file(zloxBytes));
        readers::read_zlo(c);
        return records(work(base::working::zlog_1), 13);
    }
};

// --- Records ---------------------------------------------------------------------------------

TEST(ZloxRecordCount, CountsWhole384ByteRecordsOnly)
{
    EXPECT_EQ(readers::zloxRecordCount(0), 0);
    EXPECT_EQ(readers::zloxRecordCount(383), 0);
    EXPECT_EQ(readers::zloxRecordCount(384), 1);
    EXPECT_EQ(readers::zloxRecordCount(767), 1);
    EXPECT_EQ(readers::zloxRecordCount(768), 2);
    EXPECT_EQ(readers::zloxRecordCount(384 * 700 + 200), 700);
}

TEST(ZloxMemo, JoinsTheDupeMarkTheFrequencyTheMemoAndTheQsyMarkWithSingleBlanks)
{
    ZloQsoSpec q;
    q.memo = "GL PM95";
    const std::string zlox =
        zloxOf(ZloWriter().header("X").qso(q).bytes(), {{"7123.0", true, true, 0}});
    EXPECT_EQ(readers::zloMemoOfZlox(std::string_view(zlox).substr(384, 384)),
              "-DUPE- (7123) GL PM95 *QSY Violation*");
}

TEST(ZloxMemo, LeavesOutWhatIsNotThere)
{
    ZloQsoSpec plain, onlyFreq;
    plain.memo = "hello";
    const std::string zlox = zloxOf(ZloWriter().header("X").qso(plain).qso(onlyFreq).bytes(),
                                    {{"", false, false, 0}, {"14025.5", false, false, 0}});
    EXPECT_EQ(readers::zloMemoOfZlox(std::string_view(zlox).substr(384, 384)), "hello");
    EXPECT_EQ(readers::zloMemoOfZlox(std::string_view(zlox).substr(768, 384)), "(14025)");
}

TEST(ZloxMemo, TheQslMarkIsNotWrittenBecauseItDependsOnZlogsOwnSettings)
{
    ZloQsoSpec q;
    q.memo = "x";
    const std::string zlox =
        zloxOf(ZloWriter().header("X").qso(q).bytes(), {{"", false, false, 2}});
    EXPECT_EQ(readers::zloMemoOfZlox(std::string_view(zlox).substr(384, 384)), "x");
}

TEST(ZloxMemo, IsCutToSixtyFourBytesWithoutSplittingADoubleByteCharacter)
{
    ZloQsoSpec q;
    q.memo = std::string(23, 'a') + "あいうえおかきくけこさしすせそたちつてと"; // 23 + 40 bytes
    const std::string zlox =
        zloxOf(ZloWriter().header("X").qso(q).bytes(), {{"7123.0", true, false, 0}});
    const std::string memo = readers::zloMemoOfZlox(std::string_view(zlox).substr(384, 384));
    // "-DUPE- (7123) " is 14 bytes and the letters 23; of the 27 bytes left the 14th
    // double-byte character would need the 65th.
    EXPECT_EQ(memo.size(), 63u);
    EXPECT_EQ(text::decodeSjis(memo),
              "-DUPE- (7123) " + std::string(23, 'a') + "あいうえおかきくけこさしす");
}

TEST(ZloxImage, IsTheZloThatZlogWouldHaveWritten)
{
    ZloQsoSpec q;
    q.call = "JA1ABC";
    q.memo = "TNX";
    const std::string zlo = ZloWriter().header("ALL JA").qso(q).bytes();
    const readers::ZloFile image = readers::zloOfZlox(zloxOf(zlo, {{"7001.0", false, false, 0}}));
    ASSERT_EQ(image.count(), 2);
    EXPECT_EQ(image.modes(), readers::ZloModes::Current);
    const readers::ZloRecord header = image.record(1);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(header.data()), 8), std::string(8, '\0'));
    EXPECT_EQ(readers::decodeZloHeader(header).cont_name, "ALL JA");
    const readers::ZloQso qso = readers::decodeZloQso(image.record(2));
    EXPECT_EQ(qso.call, "JA1ABC");
    EXPECT_EQ(qso.memo_length, 10);
    EXPECT_EQ(std::string(text::Cut_nul(qso.memo)), "(7001) TNX");
}

// --- Conversion ------------------------------------------------------------------------------

TEST_F(ZloxRun, ModesFollowCurrentZlogsTable)
{
    std::vector<ZloQsoSpec> qsos(9);
    for (std::uint8_t i = 0; i < 9; ++i) {
        qsos[i].mode = i;
    }
    qsos[8].mode = 8; // outside the table: the mode before stays
    ZloWriter w;
    w.header("X");
    for (const auto& q : qsos) {
        w.qso(q);
    }
    const auto lines = convert(zloxOf(w.bytes()));
    ASSERT_EQ(lines.size(), 9u);
    const char* modes[] = {"CW", "SSB", "FM", "AM", "RTY", "FT4", "FT8", "Other", "Other"};
    for (std::size_t i = 0; i < 9; ++i) {
        EXPECT_EQ(lines[i][Mode], modes[i]) << i;
    }
}

// A long `.ZLOX` log is read in two parts side by side, and gives what its halves give.
TEST_F(ZloxRun, ALongLogGivesWhatItsHalvesGive)
{
    options.set("Check17", "1");
    auto log = [](int from, int to) {
        ZloWriter w;
        w.header("X");
        std::vector<ZloxExtra> extras;
        for (int i = from; i < to; ++i) {
            ZloQsoSpec q;
            q.call = "JA" + std::to_string(i);
            q.mode = static_cast<std::uint8_t>(i % 9); // 8 keeps the mode before
            q.band = 4;
            w.qso(q);
            extras.push_back({i % 2 == 0 ? std::to_string(14000 + i % 300) + ".0" : "", i % 7 == 0,
                              i % 11 == 0, 0});
        }
        return zloxOf(w.bytes(), extras);
    };
    constexpr int kQsos = 3000;
    const std::string whole = log(0, kQsos);
    ASSERT_GT(whole.size(), 1u << 20);
    const auto lines = convert(whole);
    // Cut where a record gives its own mode.
    auto halves = convert(log(0, 1800));
    const auto second = convert(log(1800, kQsos));
    halves.insert(halves.end(), second.begin(), second.end());
    ASSERT_EQ(lines.size(), static_cast<std::size_t>(kQsos));
    EXPECT_EQ(lines, halves);
}

TEST_F(ZloxRun, TheFrequencyFieldReachesTheZloFrequencyRuleThroughTheMemo)
{
    options.set("Check17", "1");
    ZloQsoSpec a, b;
    a.band = 4;
    b.band = 4;
    const std::string zlo = ZloWriter().header("X").qso(a).qso(b).bytes();
    const auto lines = convert(zloxOf(zlo, {{"14025", false, false, 0}, {"", false, false, 0}}));
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0][Freq], "14.025");
    EXPECT_EQ(lines[0][Memo], "");
    // Without a frequency there is no bracket: the frequency is the band.
    EXPECT_EQ(lines[1][Freq], "14");
}

TEST_F(ZloxRun, TheFrequencyFieldsDecimalIsLeftOutSoThatTheZloRuleReadsTheKhz)
{
    options.set("Check17", "1");
    ZloQsoSpec a, b;
    a.band = 2;
    b.band = 4;
    const auto lines = convert(zloxOf(ZloWriter().header("X").qso(a).qso(b).bytes(),
                                      {{"7123.0", false, false, 0}, {"14025.5", false, false, 0}}));
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0][Freq], "7.123");
    EXPECT_EQ(lines[1][Freq], "14.025");
}

TEST_F(ZloxRun, TheDupeMarkStandsInTheMemoAsInAZloWrittenByZlog)
{
    use.memo = true;
    ZloQsoSpec q;
    q.memo = "late";
    const auto lines =
        convert(zloxOf(ZloWriter().header("X").qso(q).bytes(), {{"", true, false, 0}}));
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0][Memo], "-DUPE- late");
}

TEST_F(ZloxRun, ACutOffLastRecordIsNotRead)
{
    ZloQsoSpec a, b;
    a.call = "JA1AAA";
    b.call = "JA2BBB";
    std::string bytes = zloxOf(ZloWriter().header("X").qso(a).qso(b).bytes());
    bytes.resize(bytes.size() - 100);
    const auto lines = convert(bytes);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0][Call], "JA1AAA");
}

TEST_F(ZloxRun, AFileShorterThanItsHeaderGivesAnEmptyWorkingFile)
{
    EXPECT_TRUE(convert("ZLOX").empty());
    EXPECT_TRUE(convert("").empty());
}

TEST_F(ZloxRun, AnyBytesAreReadOrFailCleanly)
{
    std::mt19937 random(15);
    for (int round = 0; round < 200; ++round) {
        std::string bytes(random() % 2000, '\0');
        for (char& c : bytes) {
            c = static_cast<char>(random());
        }
        try {
            convert(bytes);
        } catch (const failure::Failure&) {
        }
    }
}

// --- Open ------------------------------------------------------------------------------------

TEST_F(ZloxRun, OpensByItsExtensionInAnyCaseAsTheZloOpenDoes)
{
    for (const char* name : {"A.ZLOX", "b.zlox", "c.ZLOx"}) {
        ZloQsoSpec q;
        const auto path = file(zloxOf(ZloWriter().header("CQ WPX Contest").qso(q).bytes()), name);
        engine::RunContext& c = context(options);
        ASSERT_EQ(readers::openInput(c, path, ""), readers::OpenResult::Opened) << name;
        EXPECT_EQ(c.run.kind, readers::InputKind::Zlox);
        EXPECT_EQ(c.run.f_type, "zlo");
        EXPECT_EQ(c.run.file_letter, "Z");
        EXPECT_EQ(c.run.cont_name, "CQ WPX Contest");
        EXPECT_EQ(text::trim(c.run.Label37), "1　件");
    }
}

TEST_F(ZloxRun, OpensByItsTypeWordWhateverTheName)
{
    ZloQsoSpec q;
    const auto path = file(zloxOf(ZloWriter().header("X").qso(q).qso(q).bytes()), "log.bin");
    engine::RunContext& c = context(options);
    ASSERT_EQ(readers::openInput(c, path, "ZLOX"), readers::OpenResult::Opened);
    EXPECT_EQ(c.run.kind, readers::InputKind::Zlox);
    EXPECT_EQ(text::trim(c.run.Label37), "2　件");
}

TEST_F(ZloxRun, AHeaderWithoutAContestNameAsksTheZloQuestion)
{
    ZloQsoSpec q;
    const auto path = file(zloxOf(ZloWriter().header("", 0).qso(q).bytes()));
    engine::RunContext& c = context(options);
    c.run.in_name = path.string();
    readers::ZloxReader reader;
    // The recording dialogs answer with the first button, retry, which goes on.
    EXPECT_EQ(reader.open(c, path), readers::OpenResult::Opened);
    EXPECT_TRUE(c.run.zlo.zlo_name_missing);
}

TEST_F(ZloxRun, Z2aWritesTheAllTextOfAZlox)
{
    ZloQsoSpec q;
    q.call = "JA1ABC";
    q.mode = 6;
    q.band = 2;
    const auto path =
        file(zloxOf(ZloWriter().header("X").qso(q).bytes(), {{"7074.0", false, false, 0}}));
    engine::RunContext& c = make(path);
    const readers::Z2aResult result = readers::mnuMake_z2a_Click(c);
    EXPECT_EQ(result.path, (dir / "TEST_z2a.all").string());
    EXPECT_TRUE(result.showZ2a);
    const auto lines = test::readSjisLines(result.path);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(text::mid(lines[1], 18, 6), "JA1ABC");
    EXPECT_EQ(text::trim(text::mid(lines[1], 67, 5)), "7");
    EXPECT_EQ(text::trim(text::mid(lines[1], 72, 5)), "FT8");
    EXPECT_TRUE(text::endsWith(lines[1], "(7074)"));
}

// --- Real logs -------------------------------------------------------------------------------

// The contacts of a real file that carry a call.
long callsIn(const std::string& bytes)
{
    long calls = 0;
    for (long n = 1; n < readers::zloxRecordCount(bytes.size()); ++n) {
        if (static_cast<unsigned char>(bytes[static_cast<std::size_t>(n) * 384 + 8]) != 0) {
            ++calls;
        }
    }
    return calls;
}

TEST_F(ZloxRun, EveryRealZloxConvertsEachContact)
{
    const auto folderPath = test::realData("zlog");
    if (!folderPath) {
        GTEST_SKIP() << "../shared/realdata/zlog is not beside the source tree";
    }
    int files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(*folderPath)) {
        if (text::upper(entry.path().extension().string()) != ".ZLOX") {
            continue;
        }
        ++files;
        const std::string bytes = test::readBytes(entry.path());
        engine::RunContext& c = make(entry.path());
        readers::ZloxReader reader;
        ASSERT_EQ(reader.open(c, entry.path()), readers::OpenResult::Opened) << entry.path();
        c.run.written_count = 0;
        reader.read(c);
        const auto lines = records(work(base::working::zlog_1), 13);
        EXPECT_EQ(static_cast<long>(lines.size()), readers::zloxRecordCount(bytes.size()) - 1)
            << entry.path();
        EXPECT_EQ(c.run.written_count, static_cast<long>(lines.size()));
        long withCall = 0;
        for (const auto& l : lines) {
            withCall += l[Call].empty() ? 0 : 1;
        }
        EXPECT_EQ(withCall, callsIn(bytes)) << entry.path();
    }
    EXPECT_EQ(files, 25);
}

TEST_F(ZloxRun, TheQxslFixtureGivesTheContactsOfItsZloTwin)
{
    const auto zloxPath = test::realData("zlog/allja1_qxsl_fixture.ZLOX");
    const auto zloPath = test::realData("zlog/allja1_qxsl_fixture.ZLO");
    if (!zloxPath || !zloPath) {
        GTEST_SKIP() << "../shared/realdata/zlog is not beside the source tree";
    }
    engine::RunContext& z = context(options);
    z.run.in_name = zloPath->string();
    z.run.setKind(readers::InputKind::Zlo);
    readers::read_zlo(z);
    const auto fromZlo = records(work(base::working::zlog_1), 13);
    const auto fromZlox = convert(test::readBytes(*zloxPath));
    ASSERT_EQ(fromZlo.size(), 1000u);
    ASSERT_EQ(fromZlox.size(), fromZlo.size());
    int sameModes = 0;
    for (std::size_t i = 0; i < fromZlo.size(); ++i) {
        for (Field f : {Year, Month, Day, Time, Call, Band, RstSent, RstRcvd, Rcvd}) {
            EXPECT_EQ(fromZlox[i][f], fromZlo[i][f]) << i << " field " << f;
        }
        // The generations agree on CW to RTTY; 5 is "Other" to the old zLog, "FT4" to the new.
        if (fromZlo[i][Mode] != "Other") {
            EXPECT_EQ(fromZlox[i][Mode], fromZlo[i][Mode]) << i;
            ++sameModes;
        }
    }
    EXPECT_EQ(sameModes, 776);
}

} // namespace
