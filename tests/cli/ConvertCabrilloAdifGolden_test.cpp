// Runs the command-line conversion on the Cabrillo and ADIF logs of tests/data and on every
// real Cabrillo and ADIF log in ../shared/realdata, and compares what each run leaves with the
// reviewed files in tests/data/golden, byte for byte (VORNHALE_UPDATE_GOLDEN=1 rewrites them
// for review). A run that takes the failure path is pinned by its number in the trace and by
// the files it left; a rejected log by its message and by leaving nothing.

#include "support/TestSupport.h"
#include "text/Chars.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

enum class Outcome {
    Converts,       ///< exit 0, the final files (and a Cabrillo log's .TXT form)
    FailsInReader,  ///< exit 1 with the failure number, nothing beside the log
    FailsInTxtForm, ///< exit 1 with the failure number after the final files were written
    Rejected,       ///< exit 1 with the open's message, nothing beside the log
};

struct Case
{
    const char* name; ///< folder under tests/data/golden
    const char* log;  ///< under tests/data, or "realdata:<path>"
    const char* type; ///< the --type word
    const char* args = "";
    Outcome outcome = Outcome::Converts;
    int failure = 0;       ///< the number in the trace, for the failure outcomes
    bool workFiles = true; ///< compare zlog_1.txt and zlog_2.txt too
};

constexpr const char* kCbr = "cabrillo/SAMPLE.CBR";
constexpr const char* kAdi = "adif/SAMPLE.ADI";

const Case kCases[] = {
    {"cbr_defaults", kCbr, "cbr"},
    {"cbr_frequency", kCbr, "cbr", "--set Check17=1"},
    {"cbr_operator_no_name", kCbr, "cbr", "--set Check02=1"},
    {"cbr_memo_op_layout", kCbr, "cbr",
     "--set Rmks1_cfg=OP,memo,Zone,Rcvd --set 'Rmks2_cfg=OP %,memo=,IOTA,Rmks2' "
     "--set txtRmks2=TNX --set Check6=1"},
    {"cbr_to_japan_time", kCbr, "cbr", "--set Option05=1"},
    {"cbr_to_utc", kCbr, "cbr", "--set Option05=2"},
    {"cbr_japan_time_for_ja", kCbr, "cbr", "--set Option05=3"},
    {"cbr_log_order", kCbr, "cbr", "--set Option02=4"},
    {"adi_defaults", kAdi, "adi"},
    {"adi_frequency", kAdi, "adi", "--set Check17=1"},
    {"adi_operator_filter_ignored", kAdi, "adi", "--set Check02=1 --set txtOp_name=JA1ZZZ"},
    {"adi_memo_op_layout", kAdi, "adi",
     "--set Rmks1_cfg=OP,memo,Zone,Rcvd --set 'Rmks2_cfg=OP %,memo=,IOTA,Rmks2' "
     "--set txtRmks2=TNX --set Check6=1"},
    {"adi_to_japan_time", kAdi, "adi", "--set Option05=1"},
    {"adi_japan_time_for_ja", kAdi, "adi", "--set Option05=3"},
    {"adi_sort_call_date", kAdi, "adi", "--set Option02=1"},

    // Real Cabrillo logs. Lines of single blanks stop short of the third range of the .TXT
    // form, and tabs move its columns: the form then fails on the first such line.
    {"realdata_cbr_arrl_vhf", "realdata:cabrillo/adifmt_arrl_vhf_example.cbr", "cbr", "",
     Outcome::FailsInReader, 9},
    {"realdata_cbr_bartg_rtty", "realdata:cabrillo/adifmt_bartg_rtty_example.cbr", "cbr"},
    {"realdata_cbr_rsgb_ft4", "realdata:cabrillo/adifmt_rsgb_ft4_example.cbr", "cbr", "",
     Outcome::FailsInTxtForm, 9},
    {"realdata_cbr_rsgb_iota", "realdata:cabrillo/adifmt_rsgb_iota_example.cbr", "cbr"},
    {"realdata_cbr_wwrof_tabs", "realdata:cabrillo/adifmt_wwrof_tabs.cbr", "cbr", "",
     Outcome::FailsInTxtForm, 9},
    {"realdata_cbr_gocab_v2", "realdata:cabrillo/gocab_generated_v2.log", "cbr"},
    {"realdata_cbr_k1ir", "realdata:cabrillo/gocab_k1ir_cqww_cw_2017.log", "cbr"},
    {"realdata_cbr_k3mm", "realdata:cabrillo/kd4d_k3mm_cq_ww_rtty_2024.log", "cbr", "",
     Outcome::Converts, 0, false},
    {"realdata_cbr_te5t", "realdata:cabrillo/kd4d_te5t_arrl_dx_cw_2024.log", "cbr", "",
     Outcome::FailsInTxtForm, 9},
    {"realdata_cbr_wr3z", "realdata:cabrillo/kd4d_wr3z_cq_wpx_ssb_2025.log", "cbr", "",
     Outcome::Converts, 0, false},
    {"realdata_cbr_pa0xaw_tabs", "realdata:cabrillo/ntc_PA0XAW_tabs_handedited.log", "cbr", "",
     Outcome::FailsInReader, 9},
    {"realdata_cbr_pa3jd", "realdata:cabrillo/ntc_PA3JD_mixedcase.log", "cbr"},
    {"realdata_cbr_7m4aoe", "realdata:cabrillo/s53zo_7m4aoe_cqww_cw_2005_noversion.log", "cbr"},
    {"realdata_cbr_bad_style", "realdata:cabrillo/thxo_CQWPX_bad_style.log", "cbr", "",
     Outcome::Rejected},
    {"realdata_cbr_gb0wr", "realdata:cabrillo/thxo_GB0WR.log", "cbr"},
    {"realdata_cbr_i44z", "realdata:cabrillo/thxo_I44Z.log", "cbr", "", Outcome::FailsInTxtForm, 9},
    {"realdata_cbr_laqp", "realdata:cabrillo/thxo_LAQP.log", "cbr", "", Outcome::FailsInTxtForm, 9},
    {"realdata_cbr_yarc", "realdata:cabrillo/thxo_YARC.log", "cbr"},
    {"realdata_cbr_iaru", "realdata:cabrillo/thxo_iaru.log", "cbr"},
    {"realdata_cbr_allja1_cqww", "realdata:qxsl_allja1/allja1.cqww", "cbr", "", Outcome::Rejected},
    {"realdata_cbr_zlog_allja8", "realdata:zlog/samples_zlog_repo/Debug_ALLJA8_2022.CBR", "cbr"},
    {"realdata_cbr_zlog_acag", "realdata:zlog/samples_zlog_repo/Release_acagtest.CBR", "cbr"},

    // Real ADIF logs.
    {"realdata_adi_comments", "realdata:adif/adifmt_comments_log1.adi", "adi", "",
     Outcome::Rejected},
    {"realdata_adi_ww4n_noheader", "realdata:adif/urbancamo_WW4N_POTA_noheader.adi", "adi", "",
     Outcome::Rejected},
    {"realdata_adi_dp9x_latin1", "realdata:adif/urbancamo_cqgma_DP9X_latin1.adi", "adi"},
    {"realdata_adi_csn_sat", "realdata:adif/urbancamo_csn_sat_adifvers22.adi", "adi"},
    {"realdata_adi_dl1hw", "realdata:adif/urbancamo_dl1hw_excel_converter.ADI", "adi"},
    {"realdata_adi_fle_rsgb", "realdata:adif/urbancamo_fle_rsgb_contest.adi", "adi"},
    {"realdata_adi_hamrs", "realdata:adif/urbancamo_hamrs_POTA_K1980.adi", "adi"},
    {"realdata_adi_loghx", "realdata:adif/urbancamo_loghx_shuttle.adi", "adi"},
    {"realdata_adi_lotw", "realdata:adif/urbancamo_lotw_dxcc_report_typed.adi", "adi", "",
     Outcome::Rejected},
    {"realdata_adi_minos", "realdata:adif/urbancamo_minos_M0KPW_vhf.adi", "adi"},
    {"realdata_adi_monolog", "realdata:adif/urbancamo_monolog_sample_multiline.adi", "adi", "",
     Outcome::Rejected},
    {"realdata_adi_qle", "realdata:adif/urbancamo_qle_eor_own_line.adi", "adi"},
    {"realdata_adi_qlog", "realdata:adif/urbancamo_qlog_LU7HF_lowercase_typed.adi", "adi"},
    {"realdata_adi_qrz_utf8", "realdata:adif/urbancamo_qrz_snippet_utf8.adi", "adi"},
    {"realdata_adi_allja1_adis", "realdata:qxsl_allja1/allja1.adis", "adi", "", Outcome::Converts,
     0, false},
};

std::string quote(const std::string& s)
{
    return "'" + s + "'";
}

void PrintTo(const Case& c, std::ostream* os)
{
    *os << c.name;
}

std::vector<std::string> filesBeside(const fs::path& dir)
{
    std::vector<std::string> names;
    for (const auto& e : fs::directory_iterator(dir)) {
        if (e.is_regular_file()) {
            names.push_back(e.path().filename().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::string> traceLines(const fs::path& home)
{
    std::vector<std::string> lines;
    for (const auto& e : fs::directory_iterator(home / "Error_Log")) {
        const auto more = test::readSjisLines(e.path());
        lines.insert(lines.end(), more.begin(), more.end());
    }
    return lines;
}

} // namespace

class ConvertCabrilloAdifGolden : public ::testing::TestWithParam<Case>
{
};

TEST_P(ConvertCabrilloAdifGolden, EveryOutcomeMatchesItsReviewedCopy)
{
    const Case& c = GetParam();
    std::string logName = c.log;
    fs::path source;
    if (logName.rfind("realdata:", 0) == 0) {
        const auto real = test::realData(logName.substr(9));
        if (!real) {
            GTEST_SKIP() << "../shared/realdata is not beside the source tree";
        }
        source = *real;
    } else {
        source = test::testData(logName);
    }
    test::TempDir dir;
    // The same stem for every case, so that the paths in the files do not differ.
    const std::string ext = source.extension().string();
    const fs::path log = dir / ("CONTEST" + ext);
    fs::copy_file(source, log);

    std::string output;
    // A run that hangs would stop the whole suite; `timeout` turns it into a failure (124).
    const int status =
        test::runCommand("timeout 300 " + quote(test::cliPath().string()) +
                             " convert --keep-work --home " + quote((dir / "home").string()) +
                             " --type " + c.type + " " + c.args + " " + quote(log.string()),
                         &output);

    const std::string logFile = "CONTEST" + ext;
    const bool cbr = std::string(c.type) == "cbr";
    std::vector<std::string> expected{logFile};
    switch (c.outcome) {
    case Outcome::Converts:
        ASSERT_EQ(status, 0) << output;
        expected.insert(expected.end(), {"CONTEST_cn.csv", "CONTEST_hn.csv"});
        if (cbr) {
            expected.push_back("CONTEST_cbr2zlogt.txt");
        }
        break;
    case Outcome::FailsInTxtForm:
        expected.insert(expected.end(), {"CONTEST_cn.csv", "CONTEST_hn.csv"});
        [[fallthrough]];
    case Outcome::FailsInReader: {
        ASSERT_EQ(status, 1) << output;
        const auto trace = traceLines(dir / "home");
        EXPECT_NE(
            std::find(trace.begin(), trace.end(), "エラー発生 ：　" + std::to_string(c.failure)),
            trace.end())
            << output;
        break;
    }
    case Outcome::Rejected:
        ASSERT_EQ(status, 1) << output;
        EXPECT_NE(output.find(cbr ? "Cabrillo ﾌｧｲﾙではありません！" : "ADIF ﾌｧｲﾙではありません！"),
                  std::string::npos)
            << output;
        break;
    }
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(filesBeside(dir.path()), expected);

    const fs::path golden = test::testData("golden") / c.name;
    for (const std::string& file : expected) {
        if (file == logFile) {
            continue;
        }
        const std::string diff = test::compareGolden(golden / file, test::readBytes(dir / file));
        EXPECT_EQ(diff, "") << c.name;
    }
    if (c.workFiles && c.outcome != Outcome::Rejected && c.outcome != Outcome::FailsInReader) {
        for (const char* file : {"zlog_1.txt", "zlog_2.txt"}) {
            const fs::path actual = dir / "home" / "Work" / file;
            ASSERT_TRUE(fs::exists(actual)) << actual;
            const std::string diff = test::compareGolden(golden / file, test::readBytes(actual));
            EXPECT_EQ(diff, "") << c.name;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(CabrilloAndAdif, ConvertCabrilloAdifGolden, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });
