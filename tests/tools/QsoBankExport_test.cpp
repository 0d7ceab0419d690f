#include "support/TestSupport.h"
#include "text/Record.h"
#include "tools/QsoBankExport.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

base::QsoLine contact()
{
    base::QsoLine q;
    q.q_year = "2026";
    q.q_month = "11";
    q.q_day = "21";
    q.q_time = "2319";
    q.q_call = "JA1ZZZ";
    q.q_rst_sent = "599";
    q.q_rst_rcvd = "599";
    q.q_band = "3.5";
    q.q_mode = "CW";
    q.q_freq = "";
    q.q_rcvd = "13";
    return q;
}

std::string line(const base::QsoLine& q)
{
    return text::formatRecord(q.fields());
}

} // namespace

TEST(QsoBankExport, TakesTwoCharactersFromEachEndOfTheTime)
{
    base::QsoLine q = contact();
    q.q_time = "0905";
    EXPECT_EQ(tools::QsoBankExport::daytime(q), "2026/11/21 09:05:00 UTC");
    q.q_time = "09:05";
    EXPECT_EQ(tools::QsoBankExport::daytime(q), "2026/11/21 09:05:00 UTC");
}

TEST(QsoBankExport, WritesMonthAndDayAsTwoDigits)
{
    base::QsoLine q = contact();
    q.q_month = "3";
    q.q_day = "7";
    EXPECT_EQ(tools::QsoBankExport::daytime(q), "2026/03/07 23:19:00 UTC");
    q.q_month = " 3 ";
    EXPECT_EQ(tools::QsoBankExport::daytime(q), "2026/03/07 23:19:00 UTC");
}

TEST(QsoBankExport, KeepsTheFrequencyTextAndTakesTheBandWithoutIt)
{
    base::QsoLine q = contact();
    q.q_freq = " 14.025 ";
    EXPECT_EQ(tools::QsoBankExport::record(q)[3], "<frequency>14.025</frequency>");
    q.q_freq = "   ";
    EXPECT_EQ(tools::QsoBankExport::record(q)[3], "<frequency>3.5</frequency>");
}

TEST(QsoBankExport, NamesTheModesAsTheServiceDoes)
{
    const std::pair<const char*, const char*> table[] = {
        {"RTY", "RTTY"},  {"TTY", "RTTY"},   {"STV", "SSTV"},   {"SST", "SSTV"},
        {"PSK", "PSK31"}, {"PS3", "PSK31"},  {"PS31", "PSK31"}, {"PSK3", "PSK31"},
        {"PS6", "PSK63"}, {"PS63", "PSK63"}, {"PSK6", "PSK63"}, {"CW", "CW"},
        {"SSB", "SSB"},   {"RTT", "RTT"},    {"psk6", "psk6"},  {"PSK311", "PSK311"},
    };
    for (const auto& [from, to] : table) {
        EXPECT_EQ(tools::QsoBankExport::mode(from), to) << from;
    }
    base::QsoLine q = contact();
    q.q_mode = " PS6 ";
    EXPECT_EQ(tools::QsoBankExport::record(q)[4], "<mode>PSK63</mode>");
}

TEST(QsoBankExport, WritesTheWholeFileWithOneElementALine)
{
    test::TempDir dir;
    base::QsoLine second = contact();
    second.q_month = "3";
    second.q_time = "00:04";
    second.q_call = "JA8CCC";
    second.q_rst_sent = "59";
    second.q_rst_rcvd = "59";
    second.q_band = "28";
    second.q_mode = "SSB";
    second.q_freq = "28.500";
    test::writeSjisLines(dir / "zlog_1.txt", {line(contact()), line(second)});
    base::Trace trace;
    tools::QsoBankExport::write(dir / "zlog_1.txt", dir / "test.QSOBank.xml", trace);
    EXPECT_EQ(test::readBytes(dir / "test.QSOBank.xml"),
              "<?xml version=\"1\"?>\r\n"
              "<putqsodata_body>\r\n"
              "<qso_record>\r\n"
              "<daytime>2026/11/21 23:19:00 UTC</daytime>\r\n"
              "<callsign>JA1ZZZ</callsign>\r\n"
              "<frequency>3.5</frequency>\r\n"
              "<mode>CW</mode>\r\n"
              "<his_rpt>599</his_rpt>\r\n"
              "<my_rpt>599</my_rpt>\r\n"
              "</qso_record>\r\n"
              "<qso_record>\r\n"
              "<daytime>2026/03/21 00:04:00 UTC</daytime>\r\n"
              "<callsign>JA8CCC</callsign>\r\n"
              "<frequency>28.500</frequency>\r\n"
              "<mode>SSB</mode>\r\n"
              "<his_rpt>59</his_rpt>\r\n"
              "<my_rpt>59</my_rpt>\r\n"
              "</qso_record>\r\n"
              "</putqsodata_body>\r\n");
}

TEST(QsoBankExport, AnEmptyLineFileGivesOneEmptyRecord)
{
    test::TempDir dir;
    test::writeBytes(dir / "zlog_1.txt", "");
    fs::create_directories(dir / "Error_Log");
    base::Trace trace(dir / "Error_Log");
    tools::QsoBankExport::write(dir / "zlog_1.txt", dir / "x.QSOBank.xml", trace);
    EXPECT_EQ(test::readBytes(dir / "x.QSOBank.xml"), "<?xml version=\"1\"?>\r\n"
                                                      "<putqsodata_body>\r\n"
                                                      "<qso_record>\r\n"
                                                      "<daytime>// ::00 UTC</daytime>\r\n"
                                                      "<callsign></callsign>\r\n"
                                                      "<frequency></frequency>\r\n"
                                                      "<mode></mode>\r\n"
                                                      "<his_rpt></his_rpt>\r\n"
                                                      "<my_rpt></my_rpt>\r\n"
                                                      "</qso_record>\r\n"
                                                      "</putqsodata_body>\r\n");
    const std::vector<std::string> traced = test::readSjisLines(trace.path());
    EXPECT_EQ(traced,
              (std::vector<std::string>{"Private Sub mnuQSOBank_Click()", "エラー発生 ：　62"}));
}

TEST(QsoBankExport, EscapesNothingForXml)
{
    base::QsoLine q = contact();
    q.q_call = "A&B<C";
    EXPECT_EQ(tools::QsoBankExport::record(q)[2], "<callsign>A&B<C</callsign>");
}

TEST(QsoBankExport, RewritesTheFileAtEachExport)
{
    test::TempDir dir;
    test::writeBytes(dir / "t.QSOBank.xml", std::string(5000, '#'));
    test::writeSjisLines(dir / "zlog_1.txt", {line(contact())});
    base::Trace trace;
    tools::QsoBankExport::write(dir / "zlog_1.txt", dir / "t.QSOBank.xml", trace);
    const std::string bytes = test::readBytes(dir / "t.QSOBank.xml");
    EXPECT_EQ(bytes.find('#'), std::string::npos);
    EXPECT_EQ(bytes.rfind("</putqsodata_body>\r\n"), bytes.size() - 20);
}

TEST(QsoBankExport, NamesTheFileAfterTheStemOfTheInput)
{
    EXPECT_EQ(tools::QsoBankExport::fileName("/logs/test."), "/logs/test.QSOBank.xml");
}
