// Whole conversions of the sample log with the manager master of the tests and the web search
// against a QSL-manager search served on loopback, under each member of Option10, with and
// without Check22. The final files and the result list of the web search are compared byte
// for byte with the reviewed files in tests/data/golden (VORNHALE_UPDATE_GOLDEN=1 rewrites
// them); the result list's own path and clock are put in fixed words first.

#include "support/LoopbackServer.h"
#include "support/TestSupport.h"
#include "text/Chars.h"
#include "text/SjisCodec.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <mutex>
#include <regex>
#include <string>
#include <vector>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

/// What the web search answers: the manager of a result line, "" for a result line with an
/// empty manager piece, "-" for a result line that names another call.
const std::map<std::string, std::string> kWebAnswers = {
    {"DL1ABC", "DL5WEB"},   {"BY1AA", "BY1WEB"}, {"W6ABC", "W6MGR"},
    {"HL5XYZ", ""},         {"ON4XX", "ON4XX"},  {"K1XX", "W1WEB"},
    {"KH6/K1XX", "KH6WEB"}, {"VE3ABC", "-"},     {"JA1ZZZ", "JA1WEB"}};

std::string page(const std::string& call)
{
    const auto it = kWebAnswers.find(call);
    std::string body;
    if (it == kWebAnswers.end()) {
        body = "<p>該当するコールサインはありません。</p>\n<p>No records found.</p>";
    } else if (it->second == "-") {
        body = "<p>Search Results: <BR>ZZ9ZZZ<BR>ZZ9MGR  01/15/2025<BR></p>";
    } else if (it->second.empty()) {
        body = "<p>Search Results: <BR>" + call + "<BR>   <BR>記録 0 件</p>";
    } else {
        body = "<p>Search Results: <BR>" + call + "<BR>  " + it->second +
               "  03/01/2025  経由<BR>記録 1 件</p>";
    }
    return text::encodeSjis(
        text::replaceAll("<html>\n<head><title>QSL マネージャー検索</title></head>\n<body>\n" +
                             body + "\n</body>\n</html>\n",
                         "\n", "\r\n"));
}

class SearchServer
{
public:
    SearchServer()
    {
        m_server.server().Get("/vq4r/qsl2_2.asp",
                              [this](const httplib::Request& req, httplib::Response& res) {
                                  const std::string call = req.get_param_value("call");
                                  {
                                      std::lock_guard<std::mutex> lock(m_mutex);
                                      m_calls.push_back(call);
                                  }
                                  res.set_content(page(call), "text/html");
                              });
        m_started = m_server.start();
    }
    bool started() const { return m_started; }
    std::string base() const { return m_server.base(); }
    std::vector<std::string> calls()
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_calls;
    }

private:
    std::mutex m_mutex;
    std::vector<std::string> m_calls;
    bool m_started = false;
    test::LoopbackServer m_server;
};

struct ManagerCase
{
    const char* name;
    std::vector<std::string> sets; ///< KEY=VALUE for `--set`
    bool web;                      ///< Check18 on: the result list is written
    bool check22;                  ///< stations marked "N" are searched too
};

const ManagerCase kCases[] = {
    {"mng_file_only", {"Check18=0"}, false, false},
    {"mng_web_only", {"Check18=1", "Option10=0"}, true, false},
    {"mng_web_only_check22", {"Check18=1", "Option10=0", "Check22=1"}, true, true},
    {"mng_file_first", {"Check18=1", "Option10=1"}, true, false},
    {"mng_file_first_check22", {"Check18=1", "Option10=1", "Check22=1"}, true, true},
    {"mng_web_first", {"Check18=1", "Option10=2"}, true, false},
    {"mng_web_first_check22", {"Check18=1", "Option10=2", "Check22=1"}, true, true},
};

// A conversion of `log` with the manager master of the tests and the pause of the web search
// set to none, plus `sets`.
int convert(const fs::path& home, const fs::path& log, const std::vector<std::string>& sets,
            std::string* output)
{
    const fs::path master = test::testData("manager") / "MNG_Vornhale_full.txt";
    std::vector<std::string> args{"convert",
                                  "--home",
                                  home.string(),
                                  "--set",
                                  "GetMng_Interval=0",
                                  "--set",
                                  "mng_z_full_txt_dir=" + master.string()};
    for (const std::string& set : sets) {
        args.insert(args.end(), {"--set", set});
    }
    args.push_back(log.string());
    return test::runCli(args, output);
}

void PrintTo(const ManagerCase& c, std::ostream* os)
{
    *os << c.name;
}

// The result list with its first line (the input's path) and second line (the clock) in
// fixed words, after checking that they are what they should be.
std::string fixedResultList(const std::string& bytes, const std::string& in_name)
{
    const std::string text = text::decodeSjis(bytes);
    const std::size_t first = text.find("\r\n");
    const std::size_t second = text.find("\r\n", first + 2);
    EXPECT_NE(second, std::string::npos);
    if (second == std::string::npos) {
        return bytes;
    }
    EXPECT_EQ(text.substr(0, first), in_name);
    const std::string clock = text.substr(first + 2, second - first - 2);
    EXPECT_TRUE(std::regex_match(clock, std::regex(R"(\d{4}/\d{2}/\d{2} \d{2}:\d{2}:\d{2})")))
        << clock;
    return text::encodeSjis("@in_name@\r\n@date and time@" + text.substr(second));
}

class ConvertManagerGolden : public ::testing::TestWithParam<ManagerCase>
{
};

} // namespace

TEST_P(ConvertManagerGolden, EveryFileMatchesItsReviewedCopy)
{
    const ManagerCase& c = GetParam();
    SearchServer server;
    ASSERT_TRUE(server.started());

    test::TempDir dir;
    const fs::path log = dir / "CONTEST.ALL";
    fs::copy_file(test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL", log);
    fs::create_directories(dir / "home");
    test::writeSjisLines(
        dir / "home" / "Vornhale_web.ini",
        {"[web]", "qsl2_search=" + server.base(), "connect_timeout_s=2", "total_timeout_s=5"});
    std::vector<std::string> sets{"Check09=1", "No_qsl_cty=VK,DL"};
    sets.insert(sets.end(), c.sets.begin(), c.sets.end());
    std::string output;
    const int status = convert(dir / "home", log, sets, &output);
    ASSERT_EQ(status, 0) << output;

    const fs::path golden = test::testData("golden") / c.name;
    for (const char* file : {"CONTEST_hn.csv", "CONTEST_cn.csv"}) {
        ASSERT_TRUE(fs::exists(dir / file)) << file;
        EXPECT_EQ(test::compareGolden(golden / file, test::readBytes(dir / file)), "") << file;
    }

    const fs::path results = dir / "CONTEST.mng_rslt";
    const std::vector<std::string> asked = server.calls();
    if (!c.web) {
        EXPECT_FALSE(fs::exists(results));
        EXPECT_TRUE(asked.empty());
        return;
    }
    ASSERT_TRUE(fs::exists(results));
    const std::string list = fixedResultList(test::readBytes(results), log.string());
    EXPECT_EQ(test::compareGolden(golden / "CONTEST.mng_rslt", list), "");

    // One request per contact searched, each with its record in the list; without Check22
    // the stations of the countries without cards (VK, DL) are spared.
    std::size_t records = 0;
    for (std::size_t at = list.find("Searching for : "); at != std::string::npos;
         at = list.find("Searching for : ", at + 1)) {
        ++records;
    }
    EXPECT_EQ(asked.size(), records);
    const long spared = std::count_if(asked.begin(), asked.end(), [](const std::string& call) {
        return call == "VK2XYZ" || call == "DL1ABC";
    });
    const long contacts = 64;
    if (c.check22) {
        EXPECT_EQ(static_cast<long>(asked.size()), contacts);
        EXPECT_GT(spared, 0);
    } else {
        EXPECT_EQ(spared, 0);
        EXPECT_LT(static_cast<long>(asked.size()), contacts);
    }
    // Nothing but the results stays beside the log.
    for (const auto& entry : fs::directory_iterator(dir.path())) {
        const std::string name = entry.path().filename().string();
        EXPECT_TRUE(name == "home" || name == "CONTEST.ALL" || name == "CONTEST_hn.csv" ||
                    name == "CONTEST_cn.csv" || name == "CONTEST.mng_rslt")
            << name;
    }
}

INSTANTIATE_TEST_SUITE_P(Managers, ConvertManagerGolden, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(ConvertManagers, AServerThatIsDownIsAContactWithoutAWebManager)
{
    std::string base = test::closedLoopbackBase();
    test::TempDir dir;
    const fs::path log = dir / "CONTEST.ALL";
    fs::copy_file(test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL", log);
    fs::create_directories(dir / "home");
    test::writeSjisLines(dir / "home" / "Vornhale_web.ini", {"[web]", "qsl2_search=" + base});
    std::string output;
    const int status = convert(dir / "home", log, {"Check18=1", "Option10=2"}, &output);
    ASSERT_EQ(status, 0) << output;
    const std::vector<std::string> lines = test::readSjisLines(dir / "CONTEST.mng_rslt");
    long none = 0;
    for (const std::string& line : lines) {
        EXPECT_NE(line, "MNG           : DL5WEB");
        none += line == "MNG           : " ? 1 : 0;
    }
    EXPECT_EQ(none, 64);
    // The file's managers still stand where the web gave none.
    EXPECT_NE(test::readBytes(dir / "CONTEST_hn.csv").find("DL9MGR"), std::string::npos);
}
