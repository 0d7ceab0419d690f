#include "failure/Failure.h"
#include "readers/Lg8File.h"
#include "readers/Lg8Writer.h"
#include "support/TestSupport.h"
#include "text/Chars.h"
#include "text/LineFile.h"

#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <regex>

using namespace vornhale;
using test::Lg8QsoSpec;

namespace {

/// One contact as CTESTWIN's own text export shows it.
struct TwinLine
{
    int month = 0, day = 0;
    std::string time, call, band, mode, sent, rcvd;
};

std::vector<TwinLine> readTwin(const std::filesystem::path& path)
{
    static const std::regex line(
        R"(^\s*\d+\s+(\d+)/\s*(\d+)\s+(\d{4})\s+(\S+)\s+(\S+)MHz\s+(\S+)\s+(\S+)\s+(\S+)\s*$)");
    std::vector<TwinLine> out;
    for (const std::string& l : text::readLines(path)) {
        std::smatch m;
        if (std::regex_match(l, m, line)) {
            out.push_back({std::stoi(m[1]), std::stoi(m[2]), m[3], m[4], m[5], m[6], m[7], m[8]});
        }
    }
    return out;
}

/// The columns of a line in zLog's `.ALL` form, by byte place.
std::string columnOf(const std::string& line, std::size_t at, std::size_t width)
{
    return std::string(text::trim(line.substr(at, width)));
}

TEST(Lg8File, TheRealLogHoldsAThousandContactsAsItsTextTwinShowsThem)
{
    const auto lg8 = test::realData("ctestwin/allja1.lg8");
    const auto twin = test::realData("ctestwin/allja1_ctestwin_text.txt");
    if (!lg8 || !twin) {
        GTEST_SKIP() << "../shared/realdata/ctestwin is not beside the source tree";
    }
    const readers::Lg8File log = readers::Lg8File::read(*lg8);
    const std::vector<TwinLine> expected = readTwin(*twin);
    ASSERT_EQ(expected.size(), 1000u);
    ASSERT_EQ(log.size(), 1000u);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const TwinLine& t = expected[i];
        const std::string line = readers::zlogAllLine(log.qso(i));
        SCOPED_TRACE(line);
        EXPECT_EQ(std::stoi(line.substr(5, 2)), t.month);
        EXPECT_EQ(std::stoi(line.substr(8, 2)), t.day);
        EXPECT_EQ(line.substr(11, 2) + line.substr(14, 2), t.time);
        EXPECT_EQ(columnOf(line, 17, 13), t.call);
        EXPECT_EQ(columnOf(line, 66, 5), t.band);
        EXPECT_EQ(columnOf(line, 71, 5), t.mode);
        EXPECT_EQ(columnOf(line, 30, 4) + columnOf(line, 34, 8), t.sent);
        EXPECT_EQ(columnOf(line, 42, 4) + columnOf(line, 46, 8), t.rcvd);
    }
}

TEST(Lg8File, ReadsTheFieldsOfARecordUpToTheirNul)
{
    Lg8QsoSpec q;
    q.call = "JR1ABC/1";
    q.op = "JA1OPX";
    q.remarks = "メモ";
    const readers::Lg8File log = readers::Lg8File::fromBytes(test::lg8Bytes({q}));
    ASSERT_EQ(log.size(), 1u);
    const readers::Lg8Qso r = log.qso(0);
    EXPECT_EQ(r.call, "JR1ABC/1");
    EXPECT_EQ(r.sent, "599100110");
    EXPECT_EQ(r.rcvd, "59925");
    EXPECT_EQ(r.mode, 0);
    EXPECT_EQ(r.band, 4);
    EXPECT_EQ(r.utcSeconds, 1496534400);
    EXPECT_EQ(r.op, "JA1OPX");
    EXPECT_EQ(r.remarks, "メモ");
}

TEST(Lg8File, TakesTheCountFromTheRecordsNotFromTheCountAheadOfThem)
{
    std::vector<Lg8QsoSpec> qsos(3);
    qsos[2].call = "JA3CCC";
    // A list of 65,539 contacts shows 3 in its 16-bit count; a wrong count changes nothing.
    for (std::uint16_t count : {std::uint16_t{3}, std::uint16_t{1}, std::uint16_t{500}}) {
        const readers::Lg8File log = readers::Lg8File::fromBytes(test::lg8Bytes(qsos, count));
        ASSERT_EQ(log.size(), 3u) << count;
        EXPECT_EQ(log.qso(2).call, "JA3CCC");
    }
}

TEST(Lg8File, ReadsAListOfMoreThan65535Contacts)
{
    std::vector<Lg8QsoSpec> qsos(65537);
    qsos.back().call = "JA9LAST";
    const std::string bytes = test::lg8Bytes(qsos); // the count wraps to 1
    const readers::Lg8File log = readers::Lg8File::fromBytes(bytes);
    ASSERT_EQ(log.size(), 65537u);
    EXPECT_EQ(log.qso(log.size() - 1).call, "JA9LAST");
}

TEST(Lg8File, ReadsTheWideCountOfALongList)
{
    std::vector<Lg8QsoSpec> qsos(2);
    std::string bytes = test::lg8Bytes(qsos);
    // 0xFFFF and a double word stand where the word of a short list does.
    bytes.replace(0, 2, std::string("\xFF\xFF\x02\x00\x00\x00", 6));
    EXPECT_EQ(readers::Lg8File::fromBytes(bytes).size(), 2u);
}

TEST(Lg8File, AnEmptyLogHasNoContacts)
{
    EXPECT_TRUE(readers::Lg8File::fromBytes(test::lg8Bytes({})).size() == 0);
}

TEST(Lg8File, ARecordCutOffByTheEndOfTheFileIsAFailure)
{
    std::vector<Lg8QsoSpec> qsos(2);
    const std::string whole = test::lg8Bytes(qsos, {}, "");
    for (std::size_t cut : {whole.size() - 1, whole.size() - 100, std::size_t{20}}) {
        try {
            readers::Lg8File::fromBytes(std::string_view(whole).substr(0, cut));
            FAIL() << cut;
        } catch (const failure::Failure& f) {
            EXPECT_EQ(f.number(), failure::InputPastEnd);
            EXPECT_TRUE(text::contains(f.description(), "途中で切れています")) << f.description();
        }
    }
    // Without its settings the log ends after a whole record and is read.
    EXPECT_EQ(readers::Lg8File::fromBytes(whole).size(), 2u);
}

TEST(Lg8File, BytesThatDoNotBeginAsALogAreAFailure)
{
    for (const std::string& bytes :
         {std::string("zLog for Windows\r\n"), std::string("\x05"), std::string(),
          std::string("\x03\x00\xFF\xFF\x00\x00\x08\x00CQsoDat", 15)}) {
        try {
            readers::Lg8File::fromBytes(bytes);
            FAIL() << bytes;
        } catch (const failure::Failure& f) {
            EXPECT_EQ(f.number(), failure::TypeMismatch);
        }
    }
}

TEST(Lg8File, AnyBytesAreReadOrFailCleanly)
{
    std::mt19937 random(8);
    const std::string real = test::lg8Bytes(std::vector<Lg8QsoSpec>(4));
    for (int round = 0; round < 2000; ++round) {
        std::string bytes = real.substr(0, random() % (real.size() + 1));
        for (int flips = static_cast<int>(random() % 8); flips > 0 && !bytes.empty(); --flips) {
            bytes[random() % bytes.size()] = static_cast<char>(random());
        }
        try {
            const readers::Lg8File log = readers::Lg8File::fromBytes(bytes);
            for (std::size_t i = 0; i < log.size(); ++i) {
                (void)readers::zlogAllLine(log.qso(i));
            }
        } catch (const failure::Failure&) {
        }
    }
}

TEST(Lg8Tables, NameEveryModeAndBand)
{
    EXPECT_EQ(readers::lg8ModeName(0), "CW");
    EXPECT_EQ(readers::lg8ModeName(1), "RTTY");
    EXPECT_EQ(readers::lg8ModeName(2), "SSB");
    EXPECT_EQ(readers::lg8ModeName(17), "FT8");
    EXPECT_EQ(readers::lg8ModeName(23), "FT4");
    EXPECT_EQ(readers::lg8ModeName(24), "");
    EXPECT_EQ(readers::lg8BandName(0), "1.9");
    EXPECT_EQ(readers::lg8BandName(2), "7");
    EXPECT_EQ(readers::lg8BandName(15), "10G");
    EXPECT_EQ(readers::lg8BandName(22), "136k");
    EXPECT_EQ(readers::lg8BandName(23), "");
}

TEST(Lg8Exchange, TheReportIsTwoDigitsInVoiceModesAndThreeInOthers)
{
    struct Case
    {
        const char* exchange;
        const char* mode;
        const char* rst;
        const char* number;
    };
    for (const Case c : {Case{"599100110", "CW", "599", "100110"},
                         {"59100110", "SSB", "59", "100110"},
                         {"5913", "FM", "59", "13"},
                         {"59913", "FT8", "599", "13"},
                         {"599", "CW", "599", ""},
                         {"59", "CW", "", "59"},
                         {"ABC123", "CW", "", "ABC123"},
                         {"", "SSB", "", ""}}) {
        std::string rst, number;
        readers::splitLg8Exchange(c.exchange, c.mode, rst, number);
        EXPECT_EQ(rst, c.rst) << c.exchange;
        EXPECT_EQ(number, c.number) << c.exchange;
    }
}

TEST(Lg8AllLine, PutsEachFieldInItsZlogColumnInJapanTime)
{
    Lg8QsoSpec qso;
    qso.utcSeconds = 1496534400 + 15 * 3600 + 5 * 60 + 59; // 15:05:59 UTC
    qso.op = "JA1OPX";
    qso.remarks = "GL";
    const readers::Lg8Qso q = readers::Lg8File::fromBytes(test::lg8Bytes({qso})).qso(0);
    EXPECT_EQ(readers::zlogAllLine(q), std::string("2017/06/05 00:05 ") + "JA1ABC       " + "599 " +
                                           "100110  " + "599 " + "25      " + "-     -     " +
                                           "14   " + "CW   " + "   " + "%%JA1OPX%%         " +
                                           "GL");
}

TEST(Lg8AllLine, WithoutAnOperatorTheRemarksFollowThePointsColumn)
{
    Lg8QsoSpec qso;
    qso.remarks = "TNX";
    qso.mode = 2;
    qso.rcvd = "5913";
    const readers::Lg8Qso q = readers::Lg8File::fromBytes(test::lg8Bytes({qso})).qso(0);
    const std::string line = readers::zlogAllLine(q);
    EXPECT_EQ(line.substr(42, 12), "59  13      ");
    EXPECT_EQ(line.substr(71, 5), "SSB  ");
    EXPECT_EQ(line.substr(79), "TNX");
}

TEST(Lg8AllLine, ATimeOutsideTheCalendarIsAFailure)
{
    Lg8QsoSpec qso;
    qso.utcSeconds = std::numeric_limits<std::int64_t>::max();
    const readers::Lg8Qso q = readers::Lg8File::fromBytes(test::lg8Bytes({qso})).qso(0);
    try {
        readers::zlogAllLine(q);
        FAIL();
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), failure::Overflow);
    }
}

TEST(Lg8AllText, BeginsAsZlogsAllTextAndHasALineAContact)
{
    test::TempDir dir;
    const readers::Lg8File log =
        readers::Lg8File::fromBytes(test::lg8Bytes(std::vector<Lg8QsoSpec>(3)));
    readers::writeZlogAll(log, dir / "x.all");
    const auto lines = test::readSjisLines(dir / "x.all");
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0], "zLog for Windows ");
    EXPECT_TRUE(text::endsWith(test::readBytes(dir / "x.all"), "\r\n"));
}

// A long log is written in two parts side by side: the lines are those of one pass, in order.
TEST(Lg8AllText, ALongLogHasItsLinesInTheOrderOfItsContacts)
{
    test::TempDir dir;
    std::vector<Lg8QsoSpec> qsos(6000);
    for (std::size_t i = 0; i < qsos.size(); ++i) {
        qsos[i].call = "JA" + std::to_string(i);
        qsos[i].utcSeconds += static_cast<std::int64_t>(i) * 60;
        qsos[i].remarks = i % 3 == 0 ? "\x82\xa0" : "";
    }
    const readers::Lg8File log = readers::Lg8File::fromBytes(test::lg8Bytes(qsos));
    readers::writeZlogAll(log, dir / "x.all");
    const auto lines = test::readSjisLines(dir / "x.all");
    ASSERT_EQ(lines.size(), qsos.size() + 1);
    for (std::size_t i = 0; i < qsos.size(); ++i) {
        ASSERT_EQ(lines[i + 1], readers::zlogAllLine(log.qso(i))) << i;
        ASSERT_EQ(columnOf(lines[i + 1], 17, 13), qsos[i].call) << i;
    }
}

// A long log with contacts outside the calendar fails at the first of them, wherever its two
// parts meet, and leaves no text.
TEST(Lg8AllText, ALongLogFailsAtItsFirstContactOutsideTheCalendar)
{
    for (const std::size_t first : {std::size_t{100}, std::size_t{5000}}) {
        test::TempDir dir;
        std::vector<Lg8QsoSpec> qsos(6000);
        for (std::size_t i = 0; i < qsos.size(); ++i) {
            qsos[i].call = "JA" + std::to_string(i);
        }
        qsos[first].utcSeconds = std::numeric_limits<std::int64_t>::max();
        qsos[5500].utcSeconds = std::numeric_limits<std::int64_t>::max();
        const readers::Lg8File log = readers::Lg8File::fromBytes(test::lg8Bytes(qsos));
        try {
            readers::writeZlogAll(log, dir / "x.all");
            ADD_FAILURE() << first;
        } catch (const failure::Failure& f) {
            EXPECT_EQ(f.number(), failure::Overflow);
            EXPECT_TRUE(text::contains(f.description(), "(JA" + std::to_string(first) + ")"))
                << f.description();
        }
        EXPECT_FALSE(std::filesystem::exists(dir / "x.all"));
    }
}

} // namespace
