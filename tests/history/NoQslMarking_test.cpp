#include "history/NoQslMarking.h"

#include "failure/Failure.h"
#include "base/RunObserver.h"
#include "base/Trace.h"
#include "history/NoQslCountries.h"
#include "support/TestSupport.h"
#include "text/Record.h"
#include "text/SjisCodec.h"

#include <gtest/gtest.h>

namespace vornhale::history {
namespace {

namespace fs = std::filesystem;

TEST(NoQslMarking, ClubStationsAreJCallsWithYOrZInTheFourthPlace)
{
    EXPECT_TRUE(Check_JA_club("JA1YAA"));
    EXPECT_TRUE(Check_JA_club("JH1ZXX"));
    EXPECT_TRUE(Check_JA_club("JR1YA"));  // five characters: the padded form has six
    EXPECT_TRUE(Check_JA_club("JA1Y"));
    EXPECT_TRUE(Check_JA_club("J11YAB"));
    EXPECT_FALSE(Check_JA_club("JA1ABC"));
    EXPECT_FALSE(Check_JA_club("KA1YAA"));
    EXPECT_FALSE(Check_JA_club("ja1yaa"));
    EXPECT_FALSE(Check_JA_club("JA1yAA"));
    EXPECT_FALSE(Check_JA_club("JA"));
    EXPECT_FALSE(Check_JA_club(""));
}

TEST(NoQslMarking, FullCallKeyFollowsTheDxMarker)
{
    EXPECT_EQ(Full_call_key(" JA1ABC ", "  ", "", ""), "JA1ABC");
    EXPECT_EQ(Full_call_key("JA1ABC", "3", "", ""), "JA1ABC/3");
    EXPECT_EQ(Full_call_key("JA1ABC", "KH6", "", "x $DX"), "KH6/JA1ABC");
    EXPECT_EQ(Full_call_key("JA1ABC", "KH6", "$DX", ""), "KH6/JA1ABC");
}

TEST(NoQslCountries, ChecksTheNamesAndCollectsTheUnknownOnes)
{
    auto check = [](std::string_view name) {
        return name == "Japan" || name == "Fiji" ? std::string() : std::string(name);
    };
    const NoQslCountries c = NoQslCountries::no_qsl_cty_0(" Japan , Atlantis,Fiji,Mu", check);
    ASSERT_EQ(c.names().size(), 4u);
    EXPECT_EQ(c.names()[0], "Japan");
    EXPECT_EQ(c.names()[1], "");
    EXPECT_EQ(c.names()[2], "Fiji");
    EXPECT_EQ(c.ngText(), "Atlantis , Mu , ");
    EXPECT_TRUE(c.no_qsl_cty_1("  japan  "));
    EXPECT_TRUE(c.no_qsl_cty_1("FIJI ISLANDS"));
    EXPECT_FALSE(c.no_qsl_cty_1("Atlantis"));
    EXPECT_FALSE(c.no_qsl_cty_1(""));
}

TEST(NoQslCountries, TakesAtMostFiftyOneNames)
{
    std::string list;
    for (int i = 0; i < 60; ++i) {
        list += "N" + std::to_string(i) + "X,";
    }
    const NoQslCountries c = NoQslCountries::no_qsl_cty_0(
        list, [](std::string_view) { return std::string(); });
    EXPECT_EQ(c.names().size(), 51u);
    EXPECT_TRUE(c.no_qsl_cty_1("N50X"));
    EXPECT_FALSE(c.no_qsl_cty_1("N55X"));
    const NoQslCountries none = NoQslCountries::no_qsl_cty_0("", nullptr);
    EXPECT_FALSE(none.no_qsl_cty_1("anything"));
}

// A twenty-field result record.
std::vector<std::string> result(std::string call_key, std::string call_ext, std::string qsl3,
                                std::string rmks1 = "r1", std::string rmks2 = "r2",
                                std::string rmks1_c = "c1", std::string rmks2_c = "c2")
{
    return {call_key, call_ext, "24/01/01", "12:00U", "599", "599", "7", "CW", "", "",
            qsl3, "", "", rmks1, rmks2, rmks1_c, rmks2_c, "n1", "n2", call_key};
}

class Rewrite : public ::testing::Test
{
protected:
    Rewrite()
    {
        m_files.out_name_con0 = m_dir / "LOG_c0.csv";
        m_files.out_name_ham0 = m_dir / "LOG_h0.csv";
        m_files.drive_path = m_dir.path();
    }
    void write(const fs::path& path, const std::vector<std::vector<std::string>>& records)
    {
        std::vector<std::string> lines;
        for (const auto& r : records) {
            lines.push_back(text::formatRecord(r));
        }
        test::writeSjisLines(path, lines);
    }
    std::vector<std::vector<std::string>> read(const fs::path& path)
    {
        std::vector<std::vector<std::string>> out;
        text::RecordReader in(path);
        while (!in.atEnd()) {
            out.push_back(in.fields(20));
        }
        return out;
    }
    void noTemporaries()
    {
        for (const char* name : {"contest_n_1.csv", "hamlog_n_1.csv", "Hamlog_n_1.csv"}) {
            EXPECT_FALSE(fs::exists(m_dir / name)) << name;
        }
    }
    test::TempDir m_dir;
    ResultFiles m_files;
    base::Trace m_trace;
};

TEST_F(Rewrite, AnNInTheContestFileTurnsTheFullCallNInBothFiles)
{
    write(m_files.out_name_con0, {result("JA1ABC", "", "N  "), result("JA1ABC", "", "J* "),
                                  result("JA1ABC", "3", "J* "), result("W1AW", "", "J* ")});
    write(m_files.out_name_ham0, {result("JA1ABC", "", "J* "), result("W1AW", "", "N  "),
                                  result("JA1ABC", "3", "J* ")});
    all_JN_Chikan_full(m_files, "B", "*", m_trace);
    const auto con = read(m_files.out_name_con0);
    ASSERT_EQ(con.size(), 4u);
    EXPECT_EQ(con[0][10], "N*  ");
    EXPECT_EQ(con[0][13], "n1");
    EXPECT_EQ(con[0][14], "n2");
    EXPECT_EQ(con[1][10], "N*  ");
    EXPECT_EQ(con[2][10], "B* "); // another full call; its "J" becomes QSL_Q
    EXPECT_EQ(con[3][10], "B* ");
    const auto ham = read(m_files.out_name_ham0);
    EXPECT_EQ(ham[0][10], "N*  ");
    // An "N" that stands only in the log-order file does nothing.
    EXPECT_EQ(ham[1][10], "N  ");
    EXPECT_EQ(ham[2][10], "B* ");
    noTemporaries();
}

TEST_F(Rewrite, JnCleansLoneManagerMarksAndLeftTrimsTheRemarks)
{
    write(m_files.out_name_con0,
          {result("A1A", "", "M* ", "  lead", " x", "@ X", "@K1ABC y"),
           result("B1B", "", "J* ", "r", "r", "a @ b", "c@d")});
    write(m_files.out_name_ham0, {});
    all_JN_Chikan_full(m_files, "J", " ", m_trace);
    const auto con = read(m_files.out_name_con0);
    EXPECT_EQ(con[0][13], "lead");
    EXPECT_EQ(con[0][14], "x");
    EXPECT_EQ(con[0][15], " X");
    EXPECT_EQ(con[0][16], "@K1ABC y");
    EXPECT_EQ(con[1][15], "a  b");
    EXPECT_EQ(con[1][16], "c@d");
    EXPECT_EQ(con[1][10], "J* ");
}

TEST_F(Rewrite, ThePortableOrderFollowsTheDxMarker)
{
    write(m_files.out_name_con0, {result("JA1ABC", "KH6", "N  ", "$DX", ""),
                                  result("JA1ABC", "KH6", "J  ", "", "")});
    write(m_files.out_name_ham0, {result("JA1ABC", "KH6", "J  ", "", "$DX")});
    all_JN_Chikan_full(m_files, "J", " ", m_trace);
    EXPECT_EQ(read(m_files.out_name_con0)[1][10], "J  ");  // JA1ABC/KH6 is another key
    EXPECT_EQ(read(m_files.out_name_ham0)[0][10], "N   "); // KH6/JA1ABC
}

TEST_F(Rewrite, NjGivesTheNormalRouteAndSearchesTheContestFileByMainCall)
{
    write(m_files.out_name_ham0, {result("JA1ABC", "", "J* "), result("JA1ABC", "", "N  "),
                                  result("JA2XYZ", "2", "J* "), result("W1AW", "", "N  "),
                                  result("K1M", "", "N  ", "r", "r", "@MGR", "")});
    write(m_files.out_name_con0, {result("JA1ABC", "", "N  "), result("JA2XYZ", "2", "N  "),
                                  result("W1AW", "", "N  ")});
    all_NJ_Chikan_full(m_files, "J", "*", m_trace);
    const auto ham = read(m_files.out_name_ham0);
    EXPECT_EQ(ham[0][10], "J* ");
    EXPECT_EQ(ham[1][10], "J* ");
    EXPECT_EQ(ham[2][10], "J* ");
    EXPECT_EQ(ham[3][10], "N  ");
    EXPECT_EQ(ham[4][10], "N  "); // all its records are "N": nothing to take over
    const auto con = read(m_files.out_name_con0);
    EXPECT_EQ(con[0][10], "J  "); // only the first character changes here
    EXPECT_EQ(con[1][10], "N  "); // a portable call is not found by its main call
    EXPECT_EQ(con[2][10], "N  ");
    noTemporaries();
}

TEST_F(Rewrite, NjMarksManagersM)
{
    write(m_files.out_name_ham0, {result("K1M", "", "J* ", "r1", "r2", "via @MGR", ""),
                                  result("K1M", "", "N  ", "r1", "r2", "via @MGR", "")});
    write(m_files.out_name_con0, {result("K1M", "", "N  ", " r1", "r2", "", "via @MGR")});
    all_NJ_Chikan_full(m_files, "J", "*", m_trace);
    const auto ham = read(m_files.out_name_ham0);
    EXPECT_EQ(ham[1][10], "M* ");
    EXPECT_EQ(ham[1][13], "via @MGR");
    EXPECT_EQ(ham[1][14], "");
    const auto con = read(m_files.out_name_con0);
    EXPECT_EQ(con[0][10], "M  ");
    EXPECT_EQ(con[0][13], "");
    EXPECT_EQ(con[0][14], "via @MGR");
}

TEST_F(Rewrite, AMissingFileFails)
{
    EXPECT_THROW(all_JN_Chikan_full(m_files, "J", " ", m_trace), failure::Failure);
    EXPECT_THROW(all_NJ_Chikan_full(m_files, "J", " ", m_trace), failure::Failure);
}

TEST_F(Rewrite, NoQslMojiRewritesTheNRecordsIntoTheOtherFiles)
{
    auto reduced = [](std::string call, std::string qsl3) {
        return std::vector<std::string>{call, "", "24/01/01", "12:00U", "599", "599", "7", "CW",
                                        "", "", qsl3, "", "", "r1", "r2", call};
    };
    write(m_files.out_name_ham0, {reduced("A1A", "N  "), reduced("B1B", "J* ")});
    write(m_files.out_name_con0, {reduced("A1A", "N* ")});
    const fs::path ham = m_dir / "LOG_h.csv", con = m_dir / "LOG_c.csv";
    test::TempDir logs;
    base::Trace trace(logs.path());
    base::RunObserver observer;
    No_QSL_moji_ReWrite(m_files.out_name_ham0, ham, m_files.out_name_con0, con, "NO", true, trace,
                        observer);
    EXPECT_EQ(test::readBytes(ham),
              "\"A1A\",\"\",\"24/01/01\",\"12:00U\",\"599\",\"599\",\"7\",\"CW\",\"\",\"\",\"NO  \","
              "\"\",\"\",\"r1\",\"r2\",\"A1A\"\r\n"
              "\"B1B\",\"\",\"24/01/01\",\"12:00U\",\"599\",\"599\",\"7\",\"CW\",\"\",\"\",\"J* \","
              "\"\",\"\",\"r1\",\"r2\",\"B1B\"\r\n");
    EXPECT_NE(test::readBytes(con).find("\"NO* \""), std::string::npos);
    EXPECT_FALSE(fs::exists(m_files.out_name_ham0.string() + "_1"));
    EXPECT_FALSE(fs::exists(m_files.out_name_con0.string() + "_1"));
    const auto lines = test::readSjisLines(trace.path());
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], "Private Sub No_QSL_moji_ReWrite");
    EXPECT_EQ(lines[1], m_files.out_name_ham0.string() + "    Open out_name_ham0 For Input As #f_i :");
    EXPECT_EQ(lines[2], m_files.out_name_con0.string() + "    Open out_name_con0 For Input As #f_i :");
}

TEST_F(Rewrite, AOneCharacterNoQslMojiKeepsThreeCharacters)
{
    write(m_files.out_name_ham0, {result("A1A", "", "N  ")});
    write(m_files.out_name_con0, {});
    base::RunObserver observer;
    No_QSL_moji_ReWrite(m_files.out_name_ham0, m_dir / "h.csv", m_files.out_name_con0,
                        m_dir / "c.csv", "_", false, m_trace, observer);
    text::RecordReader in(m_dir / "h.csv");
    EXPECT_EQ(in.fields(20)[10], "_  ");
    EXPECT_EQ(test::readBytes(m_dir / "c.csv"), "");
}

TEST_F(Rewrite, NoQslMojiKeepsKanjiAndTheFieldsOfEachLineAsTheyStand)
{
    // Lines of any number of fields, a kanji mark and kanji fields, an empty line.
    test::writeBytes(
        m_files.out_name_ham0,
        text::encodeSjis("\"東\",\"\",\"a\",\"b\",\"c\",\"d\",\"e\",\"f\",\"g\","
                         "\"h\",\"N* \",\"山田\"\r\n"
                         "\r\n"
                         " x , \"N\"\r\n"
                         "\"1\",\"2\",\"3\",\"4\",\"5\",\"6\",\"7\",\"8\",\"9\",\"10\","
                         "\"Nを\"\r\n"));
    test::writeBytes(m_files.out_name_con0, "");
    base::RunObserver observer;
    No_QSL_moji_ReWrite(m_files.out_name_ham0, m_dir / "h.csv", m_files.out_name_con0,
                        m_dir / "c.csv", "無", false, m_trace, observer);
    EXPECT_EQ(test::readBytes(m_dir / "h.csv"),
              text::encodeSjis("\"東\",\"\",\"a\",\"b\",\"c\",\"d\",\"e\",\"f\",\"g\",\"h\","
                               "\"無* \",\"山田\"\r\n"
                               "\r\n"
                               "\"x\",\"N\"\r\n"
                               "\"1\",\"2\",\"3\",\"4\",\"5\",\"6\",\"7\",\"8\",\"9\",\"10\","
                               "\"無を \"\r\n"));
}

TEST_F(Rewrite, KanjiRecordsKeepTheirBytesThroughBothRewrites)
{
    auto kanji = [](std::string qsl3) {
        auto r = result("JA1ABC", "", qsl3, "山 ", "　川", "@ 東京", "x");
        r[11] = "山田";
        return r;
    };
    write(m_files.out_name_con0, {kanji("N  "), result("W1AW", "", "J* ")});
    write(m_files.out_name_ham0, {kanji("J* "), result("W1AW", "", "J* ")});
    all_JN_Chikan_full(m_files, "B", "*", m_trace);
    const auto con = read(m_files.out_name_con0);
    ASSERT_EQ(con.size(), 2u);
    EXPECT_EQ(con[0], (std::vector<std::string>{"JA1ABC", "",     "24/01/01", "12:00U", "599",
                                                "599",    "7",    "CW",       "",       "",
                                                "N*  ",   "山田", "",         "n1",     "n2",
                                                " 東京",  "x",    "n1",       "n2",     "JA1ABC"}));
    EXPECT_EQ(read(m_files.out_name_ham0)[0][10], "N*  ");
    write(m_files.out_name_ham0, {kanji("J* ")});
    write(m_files.out_name_con0, {kanji("N  ")});
    all_NJ_Chikan_full(m_files, "J", "*", m_trace);
    // The lone "@" is gone before the manager test, and the ideographic blank is no blank.
    const auto ham = read(m_files.out_name_ham0);
    EXPECT_EQ(ham[0], (std::vector<std::string>{"JA1ABC", "",     "24/01/01", "12:00U", "599",
                                                "599",    "7",    "CW",       "",       "",
                                                "J* ",    "山田", "",         "山 ",    "　川",
                                                " 東京",  "x",    "n1",       "n2",     "JA1ABC"}));
    EXPECT_EQ(read(m_files.out_name_con0)[0][10], "J  ");
}

TEST_F(Rewrite, AKanjiRouteLetterReachesAnAsciiRecordEncoded)
{
    write(m_files.out_name_con0, {result("W1AW", "", "J* ")});
    write(m_files.out_name_ham0, {result("W1AW", "", "J* ")});
    all_JN_Chikan_full(m_files, "Ｂ", "*", m_trace);
    const std::string expected = text::encodeSjis(
        "\"W1AW\",\"\",\"24/01/01\",\"12:00U\",\"599\",\"599\",\"7\",\"CW\",\"\",\"\","
        "\"Ｂ* \",\"\",\"\",\"r1\",\"r2\",\"c1\",\"c2\",\"n1\",\"n2\",\"W1AW\"\r\n");
    EXPECT_EQ(test::readBytes(m_files.out_name_con0), expected);
    EXPECT_EQ(test::readBytes(m_files.out_name_ham0), expected);
}

} // namespace
} // namespace vornhale::history
