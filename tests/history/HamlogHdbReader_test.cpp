#include "history/HamlogHdbReader.h"

#include "failure/Failure.h"
#include "history/HdbBuilder.h"
#include "history/HistoryMaster.h"
#include "support/TestSupport.h"
#include "text/Chars.h"

#include <gtest/gtest.h>

#include <map>

namespace vornhale::history {
namespace {

using test::HdbRecord;

std::vector<std::map<std::string, std::string>> readAdif(const std::filesystem::path& path)
{
    const std::string bytes = test::readBytes(path);
    std::vector<std::map<std::string, std::string>> records;
    std::map<std::string, std::string> current;
    std::size_t pos = bytes.find("<", bytes.find(">", text::upper(bytes).find("<EOH>")));
    while (pos != std::string::npos && pos < bytes.size()) {
        const std::size_t close = bytes.find('>', pos);
        if (close == std::string::npos) {
            break;
        }
        const std::string tag = bytes.substr(pos + 1, close - pos - 1);
        const auto parts = text::split(tag, ":");
        const std::string name = text::upper(parts[0]);
        std::size_t next = close + 1;
        if (name == "EOR") {
            records.push_back(current);
            current.clear();
        } else if (parts.size() > 1) {
            const std::size_t length = std::stoul(parts[1]);
            current[name] = bytes.substr(close + 1, length);
            next = close + 1 + length;
        }
        pos = bytes.find('<', next);
    }
    return records;
}

std::filesystem::path writeHdb(const test::TempDir& dir, const std::string& bytes,
                               const char* name = "Hamlog.hdb")
{
    const auto path = dir / name;
    test::writeBytes(path, bytes);
    return path;
}

void expectSameContacts(const std::filesystem::path& hdb, const std::filesystem::path& adif,
                        bool compareFrequency)
{
    const auto contacts = readAdif(adif);
    HamlogHdbReader reader;
    const auto count = reader.open(hdb);
    ASSERT_TRUE(count.has_value());
    ASSERT_EQ(static_cast<std::size_t>(*count), contacts.size());
    for (long n = 1; n <= *count; ++n) {
        const auto& want = contacts[static_cast<std::size_t>(n - 1)];
        const HamlogFields& f = reader.read(n);
        const std::string date = want.at("QSO_DATE");
        const std::string time = want.at("TIME_ON");
        ASSERT_EQ(f[0], want.at("CALL")) << "record " << n;
        EXPECT_EQ(f[1], date.substr(2, 2) + "/" + date.substr(4, 2) + "/" + date.substr(6, 2));
        EXPECT_EQ(f[2], time.substr(0, 2) + ":" + time.substr(2, 2) + "U");
        EXPECT_EQ(f[6], want.at("MODE"));
        EXPECT_EQ(f[3], want.at("RST_SENT"));
        EXPECT_EQ(f[4], want.at("RST_RCVD"));
        if (compareFrequency) {
            EXPECT_EQ(band_mode_code(f[5], f[6]).Band_code,
                      band_mode_code(want.at("FREQ"), want.at("MODE")).Band_code)
                << want.at("FREQ") << " against " << f[5];
        }
    }
    reader.close();
}

TEST(HamlogHdbReader, GivesBackTheContactsOfTheAllJa1Database)
{
    const auto hdb = test::realData("hamlog/allja1_qxsl.hdb");
    const auto adif = test::realData("qxsl_allja1/allja1.adis");
    if (!hdb || !adif) {
        GTEST_SKIP() << "realdata not present";
    }
    expectSameContacts(*hdb, *adif, false);
}

TEST(HamlogHdbReader, GivesBackTheTenThousandContactsWithPortableCalls)
{
    const auto hdb = test::realData("hamlog/gen10k_qxsl.hdb");
    const auto adif = test::realData("hamlog/gen10k_source.adi");
    if (!hdb || !adif) {
        GTEST_SKIP() << "realdata not present";
    }
    expectSameContacts(*hdb, *adif, true);
}

TEST(HamlogHdbReader, ReadsTheWidthsFromTheHeader)
{
    test::TempDir dir;
    test::HdbLayout layout = test::defaultHdbLayout();
    for (auto& [name, width] : layout) {
        if (name == "FREQ") {
            width = 12;
        } else if (name == "NAME") {
            width = 30;
        } else if (name == "RMK1") {
            width = 120;
        }
    }
    HdbRecord r;
    r.calls = "JA1ABC";
    r.freq = "1296.12345";
    r.name = "A NAME WIDER THAN TWELVE";
    r.rmk1 = std::string(100, 'x');
    r.rmk2 = "second";
    r.qsl = "JA ";
    const auto path = writeHdb(dir, test::hdbFile(layout, {r}));
    HamlogHdbReader reader;
    ASSERT_EQ(reader.open(path), 1);
    const HamlogFields& f = reader.read(1);
    EXPECT_EQ(f[0], "JA1ABC");
    EXPECT_EQ(f[5], "1296.12345");
    EXPECT_EQ(f[10], "A NAME WIDER THAN TWELVE");
    EXPECT_EQ(f[12], std::string(100, 'x'));
    EXPECT_EQ(f[13], "second");
    EXPECT_EQ(f[9], "JA ");
}

TEST(HamlogHdbReader, FindsFieldsByNameInAnyOrder)
{
    test::TempDir dir;
    test::HdbLayout layout = {{"MODE", 4}, {"QSL", 3}, {"FREQ", 7}, {"TIME", 2},
                              {"DATE", 4}, {"CALLS", 10}, {"EXTRA", 5}};
    HdbRecord r;
    r.calls = "W1AW";
    r.yy = 3;
    r.mm = 12;
    r.dd = 9;
    r.hh = 23;
    r.mi = 59;
    r.utc = false;
    r.mode = "SSB";
    const auto path = writeHdb(dir, test::hdbFile(layout, {r}));
    HamlogHdbReader reader;
    ASSERT_EQ(reader.open(path), 1);
    const HamlogFields& f = reader.read(1);
    EXPECT_EQ(f[0], "W1AW");
    EXPECT_EQ(f[1], "03/12/09");
    EXPECT_EQ(f[2], "23:59J");
    EXPECT_EQ(f[6], "SSB");
    EXPECT_EQ(f[3], "");  // no HIS field
    EXPECT_EQ(f[13], ""); // no RMK2 field
}

struct CallCase
{
    std::string calls, overflow, portable;
    std::uint16_t flag;
    std::string expected;
};

class HdbCallOrder : public ::testing::TestWithParam<CallCase>
{
};

TEST_P(HdbCallOrder, RebuildsTheCallFromCallsIgnAndFlag)
{
    const CallCase& c = GetParam();
    test::TempDir dir;
    HdbRecord r;
    r.calls = c.calls;
    r.ign = test::hamlogIgn(c.overflow, c.portable, 12);
    r.flag = c.flag;
    const auto path = writeHdb(dir, test::hdbFile(test::defaultHdbLayout(), {r}));
    HamlogHdbReader reader;
    ASSERT_EQ(reader.open(path), 1);
    EXPECT_EQ(reader.read(1)[0], c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Calls, HdbCallOrder,
    ::testing::Values(CallCase{"JA1ABC", "", "", 0, "JA1ABC"},
                      CallCase{"JA1ABC", "", "3", 0, "JA1ABC/3"},
                      CallCase{"JE3HHT", "", "KH6", 0x08 | 0x01, "JE3HHT/KH6"},
                      CallCase{"JE3HHT", "", "KH6", 0x08 | 0x02, "KH6/JE3HHT"},
                      CallCase{"JE3HHT", "", "KH6/P", 0x08 | 0x02, "KH6/JE3HHT/P"},
                      // The reversed order needs the foreign-station bit as well.
                      CallCase{"JE3HHT", "", "KH6", 0x02, "JE3HHT/KH6"},
                      CallCase{"VERYLONG", "CALL", "", 0x08, "VERYLONGCALL"},
                      CallCase{"VERYLONG", "CA", "QRP", 0x08, "VERYLONGCA/QRP"},
                      CallCase{"jh1xyz", "", "", 0, "jh1xyz"}));

TEST(HamlogHdbReader, TakesAFieldThatFillsItsWidthWholeAndCutsAtTheFirstNul)
{
    test::TempDir dir;
    HdbRecord r;
    r.calls = "AB1CDEFG"; // fills CALLS
    r.name = std::string("TARO\0XYZ", 8);
    r.qsl = "J";            // shorter than the field: blanks at the missing places
    r.rmk1 = "  inner  ";  // leading blanks stay
    const auto path = writeHdb(dir, test::hdbFile(test::defaultHdbLayout(), {r}));
    HamlogHdbReader reader;
    ASSERT_EQ(reader.open(path), 1);
    const HamlogFields& f = reader.read(1);
    EXPECT_EQ(f[0], "AB1CDEFG");
    EXPECT_EQ(f[10], "TARO");
    EXPECT_EQ(f[9], "J  ");
    EXPECT_EQ(f[12], "  inner");
}

TEST(HamlogHdbReader, DecodesShiftJisText)
{
    test::TempDir dir;
    HdbRecord r;
    r.calls = "JA1ABC";
    r.name = "\x91\xbe\x98\x59"; // 太郎
    const auto path = writeHdb(dir, test::hdbFile(test::defaultHdbLayout(), {r}));
    HamlogHdbReader reader;
    ASSERT_EQ(reader.open(path), 1);
    EXPECT_EQ(reader.read(1)[10], "太郎");
}

TEST(HamlogHdbReader, AnEmptyDatabaseHasNoRecords)
{
    test::TempDir dir;
    const auto path = writeHdb(dir, test::hdbFile(test::defaultHdbLayout(), {}));
    HamlogHdbReader reader;
    EXPECT_EQ(reader.open(path), 0);
    EXPECT_THROW(reader.read(1), failure::Failure);
}

TEST(HamlogHdbReader, ReadsRecordsOutOfOrderAndAcrossWindows)
{
    test::TempDir dir;
    std::vector<HdbRecord> records(12000);
    for (std::size_t i = 0; i < records.size(); ++i) {
        records[i].calls = "K" + std::to_string(i);
    }
    const auto path = writeHdb(dir, test::hdbFile(test::defaultHdbLayout(), records));
    HamlogHdbReader reader;
    ASSERT_EQ(reader.open(path), 12000);
    EXPECT_EQ(reader.read(11999)[0], "K11998");
    EXPECT_EQ(reader.read(1)[0], "K0");
    for (long n = 1; n <= 12000; ++n) {
        ASSERT_EQ(reader.read(n)[0], "K" + std::to_string(n - 1));
    }
}

TEST(HamlogHdbReader, FailsToOpenWhatIsNoDatabase)
{
    test::TempDir dir;
    const std::string good = test::hdbFile(test::defaultHdbLayout(), {HdbRecord{}});
    HamlogHdbReader reader;
    EXPECT_FALSE(reader.open(dir / "missing.hdb"));
    EXPECT_FALSE(reader.open(writeHdb(dir, "", "empty.hdb")));
    EXPECT_FALSE(reader.open(writeHdb(dir, good.substr(0, 20), "short.hdb")));
    EXPECT_FALSE(reader.open(writeHdb(dir, good.substr(0, 100), "cut_header.hdb")));
    EXPECT_FALSE(reader.open(writeHdb(dir, "CALL,DATE\r\nJA1ABC,24/01/01\r\n", "text.hdb")));
    std::string otherType = good;
    otherType[0] = 0x30;
    EXPECT_FALSE(reader.open(writeHdb(dir, otherType, "type.hdb")));
    std::string shortRecord = good;
    shortRecord[10] = 50; // record length below the sum of the widths
    shortRecord[11] = 0;
    EXPECT_FALSE(reader.open(writeHdb(dir, shortRecord, "reclen.hdb")));
    std::string longHeader = good;
    longHeader[8] = static_cast<char>(0xFF);
    longHeader[9] = static_cast<char>(0xFF);
    EXPECT_FALSE(reader.open(writeHdb(dir, longHeader, "hdrlen.hdb")));
    const std::string noCalls =
        test::hdbFile({{"DATE", 4}, {"TIME", 2}, {"QSL", 3}, {"FREQ", 7}, {"MODE", 4}}, {});
    EXPECT_FALSE(reader.open(writeHdb(dir, noCalls, "nocalls.hdb")));
    EXPECT_FALSE(reader.open(dir.path())); // a folder
}

TEST(HamlogHdbReader, ARecordCountBeyondTheFileFailsAtThatRecord)
{
    test::TempDir dir;
    std::vector<HdbRecord> records(3);
    records[0].calls = "A1A";
    records[1].calls = "B1B";
    std::string bytes = test::hdbFile(test::defaultHdbLayout(), records);
    bytes[4] = 100; // claims 100 records
    const auto path = writeHdb(dir, bytes.substr(0, bytes.size() - 100)); // and the last is cut
    HamlogHdbReader reader;
    ASSERT_EQ(reader.open(path), 100);
    EXPECT_EQ(reader.read(2)[0], "B1B");
    try {
        reader.read(3);
        FAIL() << "a cut record was read";
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), failure::InputPastEnd);
    }
    EXPECT_THROW(reader.read(100), failure::Failure);
    EXPECT_EQ(reader.read(1)[0], "A1A");
}

TEST(HamlogHdbReader, AHugeClaimedCountNeitherAllocatesNorReadsPastTheFile)
{
    test::TempDir dir;
    std::string bytes = test::hdbFile(test::defaultHdbLayout(), {HdbRecord{}});
    bytes[4] = bytes[5] = bytes[6] = bytes[7] = static_cast<char>(0xFF);
    const auto path = writeHdb(dir, bytes);
    HamlogHdbReader reader;
    const auto count = reader.open(path);
    ASSERT_TRUE(count);
    EXPECT_EQ(*count, 4294967295L);
    EXPECT_NO_THROW(reader.read(1));
    EXPECT_THROW(reader.read(2), failure::Failure);
}

TEST(HamlogHdbReader, CloseIsHarmlessTwiceAndBeforeOpen)
{
    HamlogHdbReader reader;
    reader.close();
    reader.close();
    EXPECT_THROW(reader.read(1), failure::Failure);
}

} // namespace
} // namespace vornhale::history
