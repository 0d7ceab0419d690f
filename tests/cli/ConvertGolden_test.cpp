// Runs the command-line conversion on the bundled sample logs (and on real zLog logs where
// they are at hand) and compares every file it leaves with the reviewed files in
// tests/data/golden, byte for byte. VORNHALE_UPDATE_GOLDEN=1 rewrites them for review.

#include "support/TestSupport.h"
#include "text/Chars.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

struct GoldenCase
{
    const char* name;
    const char* log;  ///< under data/sample, or "realdata:<path>"
    /// Extra command-line arguments; "@masters@" is tests/data/masters, "@hamlog@" the HAMLOG
    /// export tests/data/hamlog/history.csv.
    const char* args;
    bool ownMasters = false; ///< the home starts with the name and QTH masters of the tests
};

const GoldenCase kCases[] = {
    {"all_defaults", "SAMPLE2026.ALL", ""},
    {"txt_defaults", "SAMPLE2026.TXT", "--year 2026"},
    {"all_frequency", "SAMPLE2026.ALL", "--set Check17=1"},
    {"all_operator_filter", "SAMPLE2026.ALL", "--set Check02=1 --set txtOp_name=JH1QRL"},
    {"all_memo_op_layout", "SAMPLE2026.ALL",
     "--set Rmks1_cfg=OP,memo,Zone,Rcvd --set Rmks2_cfg=MNG,$DX,Rmks2 --set txtRmks2=TNX"},
    {"all_fixed_widths", "SAMPLE2026.ALL",
     "--set Rmks1_cfg=MNG,Rcvd,Zone,memo= --set Rmks1_cfg_len=6,4,4,0,0,0,0,0,0,0,0,0, "
     "--set Rmks2_cfg=Rmks1 --set txtRmks1=TNX"},
    {"all_sort_call_date", "SAMPLE2026.ALL", "--set Option02=1"},
    {"all_sort_manager", "SAMPLE2026.ALL", "--set Option02=2"},
    {"all_sort_manager_date", "SAMPLE2026.ALL", "--set Option02=3"},
    {"all_log_order", "SAMPLE2026.ALL", "--set Option02=4"},
    {"all_no_split", "SAMPLE2026.ALL", "--set Option08=1"},
    {"all_to_japan_time", "SAMPLE2026.ALL", "--set Option05=1"},
    {"all_to_utc", "SAMPLE2026.ALL", "--set Option05=2"},
    {"all_japan_time_for_ja", "SAMPLE2026.ALL", "--set Option05=3"},
    {"all_check16_off", "SAMPLE2026.ALL", "--set Check16=0 --set Check17=1"},
    {"all_marks", "SAMPLE2026.ALL", "--set txtQSL_Q=B --set txtQSL_S= --set Option6=1"},
    {"all_names_and_qth", "SAMPLE2026.ALL",
     "--set Check15=1 --set Check29=1 --set Check25=1 --set Check26=1 --set Check27=1 "
     "--set Check28=1",
     true},
    {"all_qth_name_only", "SAMPLE2026.ALL", "--set Check29=1 --set Check27=1", true},
    {"all_province", "SAMPLE2026.ALL",
     "--set Check5=1 --set Option4=0 --province-master @masters@/sample_prov.mas"},
    {"all_province_rmks2_free_prefix", "SAMPLE2026.ALL",
     "--set Check5=1 --set Option3=1 --set Option4=3 --set txtProv_moji=Pref. "
     "--province-master @masters@/sample_prov.mas"},
    {"history_worked", "SAMPLE2026.ALL", "--set Option04=1 --set hamlog_hdb_dir=@hamlog@"},
    {"history_worked_any_band", "SAMPLE2026.ALL",
     "--set Option04=1 --set Check04=0 --set hamlog_hdb_dir=@hamlog@"},
    {"history_card_sent", "SAMPLE2026.ALL", "--set Option04=2 --set hamlog_hdb_dir=@hamlog@"},
    {"history_card_received", "SAMPLE2026.ALL",
     "--set Option04=3 --set Check04=0 --set Check05=0 --set hamlog_hdb_dir=@hamlog@"},
    {"history_sent_n_to_j", "SAMPLE2026.ALL",
     "--set Option04=2 --set Check3=1 --set hamlog_hdb_dir=@hamlog@"},
    {"history_sent_j_to_n", "SAMPLE2026.ALL",
     "--set Option04=2 --set Check4=1 --set hamlog_hdb_dir=@hamlog@"},
    {"no_qsl_club_and_country", "SAMPLE2026.ALL",
     "--set Check10=1 --set Check09=1 --set 'No_qsl_cty=VK,DL' --set No_QSL_moji=_"},
    {"realdata_allja1_all", "realdata:zlog/allja1_qxsl_fixture.ALL", "--set Rmks1_cfg=OP,Rcvd"},
    {"realdata_allja1_zlo", "realdata:zlog/allja1_qxsl_fixture.ZLO", "--set Rmks1_cfg=OP,Rcvd"},
    {"realdata_allja1_txt", "realdata:zlog/allja1_qxsl_fixture.TXT",
     "--year 2017 --set Rmks1_cfg=OP,Rcvd"},
};

std::string quote(const std::string& s) { return "'" + s + "'"; }

void PrintTo(const GoldenCase& c, std::ostream* os) { *os << c.name; }

} // namespace

class ConvertGolden : public ::testing::TestWithParam<GoldenCase>
{
};

TEST_P(ConvertGolden, EveryFileMatchesItsReviewedCopy)
{
    const GoldenCase& c = GetParam();
    std::string logName = c.log;
    fs::path source;
    if (logName.rfind("realdata:", 0) == 0) {
        const auto real = test::realData(logName.substr(9));
        if (!real) {
            GTEST_SKIP() << "../shared/realdata is not beside the source tree";
        }
        source = *real;
    } else {
        source = test::sourceDir() / "data" / "sample" / logName;
    }
    test::TempDir dir;
    // The same name for every case, so that the paths in the files do not differ.
    const std::string ext = source.extension().string();
    const fs::path log = dir / ("CONTEST" + ext);
    fs::copy_file(source, log);

    if (c.ownMasters) {
        fs::create_directories(dir / "home");
        for (const char* master : {"name_mas.txt", "qth_mas.txt"}) {
            fs::copy_file(test::testData("masters") / master, dir / "home" / master);
        }
    }
    std::string args = text::replaceAll(c.args, "@masters@", test::testData("masters").string());
    args = text::replaceAll(args, "@hamlog@", (test::testData("hamlog") / "history.csv").string());
    std::string output;
    const int status = test::runCommand(quote(test::cliPath()) + " convert --keep-work --home " +
                                            quote((dir / "home").string()) + " " + args + " " +
                                            quote(log.string()),
                                        &output);
    ASSERT_EQ(status, 0) << output;

    const fs::path golden = test::testData("golden") / c.name;
    for (const auto& [file, actual] :
         {std::pair{"CONTEST_hn.csv", dir / "CONTEST_hn.csv"},
          std::pair{"CONTEST_cn.csv", dir / "CONTEST_cn.csv"},
          std::pair{"zlog_1.txt", dir / "home" / "Work" / "zlog_1.txt"},
          std::pair{"zlog_2.txt", dir / "home" / "Work" / "zlog_2.txt"}}) {
        ASSERT_TRUE(fs::exists(actual)) << actual;
        const std::string diff = test::compareGolden(golden / file, test::readBytes(actual));
        EXPECT_EQ(diff, "") << c.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, ConvertGolden, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });
