#include "history/HistoryScan.h"

#include "failure/Failure.h"
#include "base/RunObserver.h"
#include "base/Trace.h"
#include "history/HamlogCsvReader.h"
#include "history/HamlogHdbReader.h"
#include "history/HdbBuilder.h"
#include "history/HistoryMaster.h"
#include "settings/Options.h"
#include "settings/SettingsFiles.h"
#include "support/TestSupport.h"
#include "text/Chars.h"
#include "text/ByteKeySort.h"
#include "text/LineFile.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <thread>

namespace vornhale::history {
namespace {

namespace fs = std::filesystem;

/// Records served from memory, remembering how it was used.
class MemoryReader : public HamlogReader
{
public:
    explicit MemoryReader(std::vector<HamlogFields> records, bool opens = true)
        : m_records(std::move(records)), m_opens(opens)
    {
    }
    std::optional<long> open(const fs::path& path) override
    {
        opened = path;
        if (!m_opens) {
            return std::nullopt;
        }
        return static_cast<long>(m_records.size()) + extraCount;
    }
    const HamlogFields& read(long number) override
    {
        if (number > static_cast<long>(m_records.size())) {
            throw failure::Failure(failure::InputPastEnd, "past end");
        }
        return m_records[static_cast<std::size_t>(number - 1)];
    }
    void close() override { ++closes; }

    fs::path opened;
    int closes = 0;
    long extraCount = 0;

private:
    std::vector<HamlogFields> m_records;
    bool m_opens;
};

HamlogFields contact(std::string call, std::string date, std::string freq, std::string mode,
                     std::string qsl = "J  ")
{
    HamlogFields f;
    f[0] = std::move(call);
    f[1] = std::move(date);
    f[2] = "12:00J";
    f[5] = std::move(freq);
    f[6] = std::move(mode);
    f[9] = std::move(qsl);
    return f;
}

class Recorder : public base::RunObserver
{
public:
    void status(std::string_view text, base::Colour colour) override
    {
        statuses.emplace_back(std::string(text), colour);
    }
    void progressRange(long maximum) override { ranges.push_back(maximum); }
    void progress(long value) override { last = value; }
    std::vector<std::pair<std::string, base::Colour>> statuses;
    std::vector<long> ranges;
    long last = -1;
};

class HistoryScanTest : public ::testing::Test
{
protected:
    HistoryScanTest()
    {
        fs::create_directories(m_dir / "Work");
        fs::create_directories(m_dir / "Temp_Files");
        m_options = settings::Options::defaults();
        m_options.set("Option04", "1");
        m_options.set("Option01", "0");
        m_options.set("Check19", "0");
        m_options.set("Start_date", "19000101");
        m_options.set("End_date", "20991231");
        m_options.set("hamlog_hdb_dir", (m_dir / "Hamlog.hdb").string());
        test::writeBytes(m_dir / "Hamlog.hdb", "stands for the database");
    }
    HistoryScan scan() { return HistoryScan(m_dir / "Work", m_dir / "Temp_Files", m_options, m_trace, m_observer); }
    std::string bak(const char* name) { return test::readBytes(m_dir / "Work" / name); }
    std::string master(int kind = 1)
    {
        return test::readBytes(m_dir / "Temp_Files" / ("bak_qso.mas" + std::to_string(kind) + "_p"));
    }
    // Scans `records` with `kind` and condenses them into the master.
    std::string scanned(std::vector<HamlogFields> records, int kind = 1)
    {
        MemoryReader reader(std::move(records));
        HistoryScan s = scan();
        EXPECT_TRUE(s.readDatabase(kind, reader));
        s.sum_bak_2();
        s.sum_bak_3(kind);
        return master(kind);
    }

    test::TempDir m_dir;
    settings::Options m_options;
    base::Trace m_trace;
    Recorder m_observer;
};

constexpr const char* kClosing = "\"YYYYYYE2       \",\"YYYYYY       \",\"E2\"\r\n"
                                 "\"ZZZZZYE2       \",\"ZZZZZZ       \",\"E2\"\r\n";
constexpr const char* kEmptyMaster = "\"YYYYYY\",\"E2\"\r\n\"ZZZZZZ\",\"E2\"\r\nZZZ/ZZZZZZ,E2\r\n";

TEST_F(HistoryScanTest, WritesOneLinePerRecordAndTheClosingLines)
{
    MemoryReader reader({contact("XX9TST", "24/01/01", "14.025", "CW"),
                         contact("VERYLONGCALL/QRP", "24/01/01", "144", "SSB"),
                         contact("A\"B", "24/01/01", "5", "FT8")});
    ASSERT_TRUE(scan().readDatabase(1, reader));
    EXPECT_EQ(bak("bak_1.txt"), std::string("\"XX9TST       E2\",\"XX9TST       \",\"E2\"\r\n"
                                            "\"VERYLONGCALL/K1\",\"VERYLONGCALL/\",\"K1\"\r\n"
                                            "\"A\"\"B         Z9\",\"A\"\"B         \",\"Z9\"\r\n") +
                                    kClosing);
    EXPECT_EQ(reader.closes, 1);
}

TEST_F(HistoryScanTest, AnEmptyDatabaseGivesTheThreeClosingLines)
{
    EXPECT_EQ(scanned({}), kEmptyMaster);
    EXPECT_EQ(bak("bak_1.txt"), kClosing);
    HistoryMaster m;
    m.sum_bak_4_bas_p(m_dir / "Temp_Files" / "bak_qso.mas1_", m_trace);
    EXPECT_FALSE(m.chk_bak_qso("JA1ABC", "E", "2", false, false));
    EXPECT_TRUE(m.chk_bak_qso("YYYYYY", "E", "2", true, true));
}

TEST_F(HistoryScanTest, TheCenturyRuleOfTheDatabaseDate)
{
    m_options.set("Start_date", "20000101");
    m_options.set("End_date", "20991231");
    EXPECT_EQ(scanned({contact("NEW", "50/01/01", "7", "CW"), contact("OLD", "51/01/01", "7", "CW")}),
              std::string("\"NEW\",\"C2\"\r\n") + kEmptyMaster);
    m_options.set("Start_date", "19000101");
    m_options.set("End_date", "19991231");
    EXPECT_EQ(scanned({contact("NEW", "50/01/01", "7", "CW"), contact("OLD", "51/01/01", "7", "CW")}),
              std::string("\"OLD\",\"C2\"\r\n") + kEmptyMaster);
}

TEST_F(HistoryScanTest, BothEndsOfThePeriodBelongToIt)
{
    m_options.set("Start_date", "20240110");
    m_options.set("End_date", "20240120");
    EXPECT_EQ(scanned({contact("A1", "24/01/09", "7", "CW"), contact("B1", "24/01/10", "7", "CW"),
                       contact("C1", "24/01/20", "7", "CW"), contact("D1", "24/01/21", "7", "CW")}),
              std::string("\"B1\",\"C2\"\r\n\"C1\",\"C2\"\r\n") + kEmptyMaster);
}

TEST_F(HistoryScanTest, AnEmptyEndDateTakesToday)
{
    m_options.set("End_date", "");
    MemoryReader reader({contact("PAST", "24/06/30", "7", "CW"), contact("LATER", "24/07/02", "7", "CW")});
    HistoryScan s = scan();
    s.setToday("20240701");
    ASSERT_TRUE(s.readDatabase(1, reader));
    EXPECT_EQ(m_options.value("End_date"), "20240701");
    EXPECT_EQ(bak("bak_1.txt"), std::string("\"PAST         C2\",\"PAST         \",\"C2\"\r\n") + kClosing);
}

TEST_F(HistoryScanTest, SentAndReceivedScansLookAtTheirQslPosition)
{
    const std::vector<HamlogFields> records = {
        contact("NONE", "24/01/01", "7", "CW", "J  "), contact("SENT", "24/01/01", "7", "CW", "J* "),
        contact("RCVD", "24/01/01", "7", "CW", "J R"), contact("BOTH", "24/01/01", "7", "CW", "J*R"),
        contact("SHORT", "24/01/01", "7", "CW", "J"),  contact("EMPTY", "24/01/01", "7", "CW", "")};
    EXPECT_EQ(scanned(records, 1), std::string("\"BOTH\",\"C2\"\r\n\"EMPTY\",\"C2\"\r\n\"NONE\",\"C2\"\r\n"
                                               "\"RCVD\",\"C2\"\r\n\"SENT\",\"C2\"\r\n\"SHORT\",\"C2\"\r\n") +
                                       kEmptyMaster);
    EXPECT_EQ(scanned(records, 2),
              std::string("\"BOTH\",\"C2\"\r\n\"SENT\",\"C2\"\r\n") + kEmptyMaster);
    EXPECT_EQ(scanned(records, 3),
              std::string("\"BOTH\",\"C2\"\r\n\"RCVD\",\"C2\"\r\n") + kEmptyMaster);
}

TEST_F(HistoryScanTest, ACodeStandsOncePerCallAndTheCodesInOrder)
{
    EXPECT_EQ(scanned({contact("XX9TST", "24/01/01", "144", "SSB"),
                       contact("XX9TST", "24/01/01", "14", "CW"),
                       contact("XX9TST", "24/01/02", "14.1", "CW"),
                       contact("XX9TST/1", "24/01/01", "7", "CW"),
                       contact("xx9tst", "24/01/01", "7", "CW")}),
              std::string("\"XX9TST\",\"E2K1\"\r\n\"XX9TST/1\",\"C2\"\r\n") +
                  "\"YYYYYY\",\"E2\"\r\n\"ZZZZZZ\",\"E2\"\r\n\"xx9tst\",\"C2\"\r\nZZZ/ZZZZZZ,E2\r\n");
}

TEST_F(HistoryScanTest, TheClosingRecordsSortAmongTheOthers)
{
    EXPECT_EQ(scanned({contact("YYYYYY", "24/01/01", "144", "SSB"),
                       contact("ZZZZZZ", "24/01/01", "144", "SSB"),
                       contact("ZZZZZYA", "24/01/01", "7", "CW"),
                       contact("ZZZZZYZ", "24/01/01", "7", "CW")}),
              "\"YYYYYY\",\"K1E2\"\r\n\"ZZZZZYA\",\"C2\"\r\n\"ZZZZZZ\",\"E2\"\r\n"
              "\"ZZZZZYZ\",\"C2\"\r\n\"ZZZZZZ\",\"K1\"\r\nZZZ/ZZZZZZ,E2\r\n");
}

TEST_F(HistoryScanTest, ShowsItsStepsAndProgress)
{
    m_options.set("hamlog_hdb_dir", "/some/where/Hamlog.hdb");
    scanned({contact("A1", "24/01/01", "7", "CW"), contact("B1", "24/01/01", "7", "CW")});
    ASSERT_EQ(m_observer.statuses.size(), 4u);
    EXPECT_EQ(m_observer.statuses[0].first, "Hamlog.．ｈｄｂ の読込 for No QSL");
    EXPECT_EQ(m_observer.statuses[0].second, base::Colour::Green);
    EXPECT_EQ(m_observer.statuses[1].first, "  ソ ー ト 中 ．．．１");
    EXPECT_EQ(m_observer.statuses[2].first, "  処　理　中 ．．．１");
    EXPECT_EQ(m_observer.statuses[3].first, "  処　理　中 ．．．．．．２");
    ASSERT_FALSE(m_observer.ranges.empty());
    EXPECT_EQ(m_observer.ranges[0], 4);
    EXPECT_EQ(m_observer.last, 0);
    m_observer.statuses.clear();
    MemoryReader reader({});
    scan().readDatabase(3, reader);
    EXPECT_EQ(m_observer.statuses[0].first, "Hamlog.．ｈｄｂ の 読込 for No QSL");
}

TEST_F(HistoryScanTest, WritesItsNameToTheTrace)
{
    test::TempDir logs;
    base::Trace trace(logs.path());
    HistoryScan s(m_dir / "Work", m_dir / "Temp_Files", m_options, trace, m_observer);
    MemoryReader reader({});
    s.readDatabase(2, reader);
    const auto lines = test::readSjisLines(trace.path());
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[0], "Private sub read_hl_hdb_2()");
}

TEST_F(HistoryScanTest, AFailedOpenReportsItAndKeepsThePreviousMaster)
{
    test::writeBytes(m_dir / "Temp_Files" / "bak_qso.mas1_p", "previous master\r\n");
    m_options.set("Check19", "1");
    HistoryScan s = scan();
    auto* seen = new MemoryReader({}, false);
    s.setReaderFactory([&](const fs::path&) { return std::unique_ptr<HamlogReader>(seen); });
    EXPECT_EQ(s.run(), HistoryStep::OpenFailed);
    EXPECT_EQ(master(), "previous master\r\n");
    EXPECT_EQ(m_options.value("hamlog_hdb_dir_FileDateTime_QSO"),
              fileDateTime(m_dir / "Hamlog.hdb"));
}

TEST_F(HistoryScanTest, AFailedReadThrowsAndKeepsThePreviousMaster)
{
    test::writeBytes(m_dir / "Temp_Files" / "bak_qso.mas1_p", "previous master\r\n");
    std::vector<test::HdbRecord> records(3);
    std::string bytes = test::hdbFile(test::defaultHdbLayout(), records);
    bytes[4] = 9;
    test::writeBytes(m_dir / "Hamlog.hdb", bytes);
    m_options.set("Check19", "1");
    HistoryScan s = scan();
    EXPECT_THROW(s.run(), failure::Failure);
    EXPECT_EQ(master(), "previous master\r\n");
}

TEST_F(HistoryScanTest, AMissingDatabaseIsAFailedOpen)
{
    fs::remove(m_dir / "Hamlog.hdb");
    EXPECT_EQ(scan().run(), HistoryStep::OpenFailed);
    m_options.set("hamlog_hdb_dir", (m_dir / "missing.csv").string());
    EXPECT_EQ(scan().run(), HistoryStep::OpenFailed);
}

TEST_F(HistoryScanTest, ADatabaseOfAnotherFormatIsAFailedOpen)
{
    test::writeBytes(m_dir / "Hamlog.hdb", "no database at all");
    EXPECT_EQ(scan().run(), HistoryStep::OpenFailed);
    EXPECT_FALSE(fs::exists(m_dir / "Temp_Files" / "bak_qso.mas1_p"));
}

TEST_F(HistoryScanTest, WithoutBak3TheMasterStays)
{
    test::writeBytes(m_dir / "Temp_Files" / "bak_qso.mas2_p", "previous master\r\n");
    EXPECT_THROW(scan().sum_bak_3(2), failure::Failure);
    EXPECT_EQ(master(2), "previous master\r\n");
    EXPECT_FALSE(fs::exists(m_dir / "Temp_Files" / "bak_qso.mas2_p.writing"));
}

TEST_F(HistoryScanTest, OptionZeroDoesNothingAndOption01OffScansNothing)
{
    m_options.set("Option04", "0");
    EXPECT_EQ(scan().run(), HistoryStep::Off);
    m_options.set("Option04", "2");
    m_options.set("Option01", "-1");
    m_options.set("Check19", "1");
    EXPECT_EQ(scan().run(), HistoryStep::Kept);
    EXPECT_FALSE(fs::exists(m_dir / "Work" / "bak_1.txt"));
}

class Reuse : public HistoryScanTest
{
protected:
    Reuse()
    {
        m_settings = std::make_unique<settings::SettingsFiles>(m_dir.path() / "", m_stored);
        test::writeBytes(m_dir / "Hamlog.hdb",
                         test::hdbFile(test::defaultHdbLayout(), {hdb("JA1ABC", 24), hdb("JA2XYZ", 10)}));
    }
    static test::HdbRecord hdb(const char* call, unsigned char yy)
    {
        test::HdbRecord r;
        r.calls = call;
        r.yy = yy;
        r.freq = "14";
        return r;
    }
    HistoryStep runScan()
    {
        HistoryScan s(m_dir / "Work", m_dir / "Temp_Files", m_options, m_trace, m_observer,
                      m_settings.get());
        return s.run();
    }
    settings::Options m_stored;
    std::unique_ptr<settings::SettingsFiles> m_settings;
};

TEST_F(Reuse, AMissingMasterIsScannedAndTheDateTimeStored)
{
    EXPECT_EQ(runScan(), HistoryStep::Scanned);
    EXPECT_EQ(master(), "\"JA1ABC\",\"E2\"\r\n\"JA2XYZ\",\"E2\"\r\n" + std::string(kEmptyMaster));
    const std::string stamp = fileDateTime(m_dir / "Hamlog.hdb");
    EXPECT_EQ(m_stored.value("hamlog_hdb_dir_FileDateTime_QSO"), stamp);
    const std::string fdt = test::readBytes(m_dir / "Vornhale_fdt.ini");
    EXPECT_NE(fdt.find("hamlog_hdb_dir_FileDateTime_QSO=" + stamp), std::string::npos) << fdt;
    EXPECT_NE(fdt.find("[Sansyou_files QSO]"), std::string::npos);
}

TEST_F(Reuse, AnUnchangedDatabaseReusesTheMasterWhateverThePeriod)
{
    ASSERT_EQ(runScan(), HistoryStep::Scanned);
    const std::string before = master();
    m_options.set("Start_date", "20200101");
    EXPECT_EQ(runScan(), HistoryStep::Kept);
    EXPECT_EQ(master(), before);
    // Check19 scans again, and the new period takes effect.
    m_options.set("Check19", "1");
    EXPECT_EQ(runScan(), HistoryStep::Scanned);
    EXPECT_EQ(master(), "\"JA1ABC\",\"E2\"\r\n" + std::string(kEmptyMaster));
}

TEST_F(Reuse, AChangedDateTimeScansAgain)
{
    ASSERT_EQ(runScan(), HistoryStep::Scanned);
    m_options.set("Start_date", "20200101");
    const auto when = fs::last_write_time(m_dir / "Hamlog.hdb");
    fs::last_write_time(m_dir / "Hamlog.hdb", when + std::chrono::seconds(5));
    EXPECT_EQ(runScan(), HistoryStep::Scanned);
    EXPECT_EQ(master(), "\"JA1ABC\",\"E2\"\r\n" + std::string(kEmptyMaster));
}

TEST_F(Reuse, TheStoredDateTimeIsReadFromTheFileAndKeptPerKind)
{
    ASSERT_EQ(runScan(), HistoryStep::Scanned);
    m_stored.set("hamlog_hdb_dir_FileDateTime_QSO", "changed in memory only");
    EXPECT_EQ(runScan(), HistoryStep::Kept); // the file's value counts
    m_options.set("Option04", "3");
    EXPECT_EQ(runScan(), HistoryStep::Scanned);
    EXPECT_TRUE(fs::exists(m_dir / "Temp_Files" / "bak_qso.mas3_p"));
    EXPECT_EQ(master(3), kEmptyMaster);
}

TEST(HistoryScanNames, MasterNamesAndKeys)
{
    EXPECT_EQ(bak_qso_mas_file("/p/Temp_Files/", 2), fs::path("/p/Temp_Files/bak_qso.mas2_"));
    EXPECT_EQ(dateTimeKey(1), "hamlog_hdb_dir_FileDateTime_QSO");
    EXPECT_EQ(dateTimeKey(2), "hamlog_hdb_dir_FileDateTime_QSL_sent");
    EXPECT_EQ(dateTimeKey(3), "hamlog_hdb_dir_FileDateTime_QSL_rcvd");
    EXPECT_EQ(fileDateTime("/no/such/file"), "");
    test::TempDir dir;
    test::writeBytes(dir / "f", "x");
    const std::string stamp = fileDateTime(dir / "f");
    ASSERT_EQ(stamp.size(), 19u);
    EXPECT_EQ(stamp[4], '/');
    EXPECT_EQ(stamp[13], ':');
}

// Calls from a real call list where there is one, else made up.
std::vector<std::string> someCalls(std::size_t count)
{
    std::vector<std::string> calls;
    std::ifstream in("/usr/share/hamradio-files/MASTER.SCP");
    std::string line;
    while (calls.size() < count && std::getline(in, line)) {
        if (!line.empty() && line[0] != '#') {
            calls.push_back(std::string(text::trim(text::replaceAll(line, "\r", ""))));
        }
    }
    for (std::size_t i = calls.size(); i < count; ++i) {
        calls.push_back("K" + std::to_string(i) + "AA");
    }
    return calls;
}

TEST_F(HistoryScanTest, AGeneratedDatabaseAndItsCsvExportGiveTheSameMaster)
{
    const std::vector<std::string> calls = someCalls(500);
    const char* freqs[] = {"1.9", "3.5", "7", "14", "21", "28", "50", "144", "430", "1200"};
    const char* modes[] = {"CW", "SSB", "FM", "RTTY", "FT8"};
    std::vector<test::HdbRecord> records;
    std::string csv;
    for (std::size_t i = 0; i < 3000; ++i) {
        test::HdbRecord r;
        const std::string call = calls[(i * 7919) % calls.size()];
        const std::string portable = i % 11 == 0 ? "3" : "";
        r.calls = call.substr(0, 8);
        r.ign = test::hamlogIgn(call.size() > 8 ? call.substr(8) : "", portable, 12);
        r.yy = static_cast<unsigned char>(i % 30);
        r.mm = static_cast<unsigned char>(i % 12 + 1);
        r.dd = 1;
        r.freq = freqs[i % 10];
        r.mode = modes[i % 5];
        r.qsl = i % 3 ? "J* " : "J  ";
        records.push_back(r);
        char date[16];
        std::snprintf(date, sizeof date, "20%02u/%02u/01", r.yy, r.mm);
        csv += "\"" + call + (portable.empty() ? "" : "/" + portable) + "\",\"" + date +
               "\",\"00:00U\",\"599\",\"599\",\"" + r.freq + "\",\"" + r.mode + "\",\"\",\"\",\"" +
               r.qsl + "\",\"\",\"\",\"\",\"\",\"8\"\r\n";
    }
    test::writeBytes(m_dir / "Hamlog.hdb", test::hdbFile(test::defaultHdbLayout(), records));
    test::writeBytes(m_dir / "export.csv", csv);
    m_options.set("Start_date", "20050101");
    m_options.set("End_date", "20251231");
    m_options.set("Option04", "2");
    m_options.set("Check19", "1");

    ASSERT_EQ(scan().run(), HistoryStep::Scanned);
    const std::string fromDatabase = master(2);
    m_options.set("hamlog_hdb_dir", (m_dir / "export.csv").string());
    ASSERT_EQ(scan().run(), HistoryStep::Scanned);
    EXPECT_EQ(master(2), fromDatabase);
    EXPECT_GT(fromDatabase.size(), 1000u);

    // And each call of the period with a card sent is found by the lookup.
    HistoryMaster m;
    m.sum_bak_4_bas_p(m_dir / "Temp_Files" / "bak_qso.mas2_", m_trace);
    for (std::size_t i = 0; i < records.size(); ++i) {
        const auto& r = records[i];
        const std::string call = calls[(i * 7919) % calls.size()] + (i % 11 == 0 ? "/3" : "");
        const bool wanted = r.yy >= 5 && r.yy <= 25 && i % 3 != 0;
        const BandModeCode code = band_mode_code(r.freq, r.mode);
        if (wanted) {
            ASSERT_TRUE(m.chk_bak_qso(call, code.Band_code, code.Mode_code, true, true)) << call;
        }
    }
}

} // namespace
} // namespace vornhale::history

namespace vornhale::history {
namespace {

TEST_F(HistoryScanTest, SortsBak1AsTheFileSortDoesOnColumnsOneToSixteen)
{
    const std::string lines[] = {"\"B            E2\",\"B\",\"E2\"", "\"A            K1\",\"A\",\"K1\"",
                                 "\"A\xe9           C2\",\"x\",\"C2\"", "\"A",
                                 std::string("\"A\0B", 4), "\"A            K1\",\"second\",\"K1\"",
                                 "", "\"A            K1\",\"A\",\"K1\"extra"};
    std::string bytes;
    for (const std::string& l : lines) {
        bytes += l + "\r\n";
    }
    test::writeBytes(m_dir / "Work" / "bak_1.txt", bytes);
    test::writeBytes(m_dir / "other.txt", bytes);
    try {
        scan().sum_bak_2();
    } catch (const failure::Failure&) {
        // The odd lines have too few parts for the condensing; the sort stands before it.
    }
    text::sortLinesByKey(m_dir / "other.txt", m_dir / "sorted.txt", 1, 16, false);
    EXPECT_EQ(bak("bak_2.txt"), test::readBytes(m_dir / "sorted.txt"));
}

} // namespace
} // namespace vornhale::history
