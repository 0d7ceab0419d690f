#include "support/GoldenCases.h"

#include "support/TestSupport.h"
#include "text/Chars.h"

namespace vornhale::test {
namespace {

namespace fs = std::filesystem;

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
    // "memo=" in both rows: each takes the width of the item looked up just before it in its
    // own row, "Rcvd" (4) in row 1 and "ｺﾝﾃｽﾄ" (7) in row 2.
    {"all_memo_eq_in_both_rows", "SAMPLE2026.ALL",
     "--set Rmks1_cfg=,Rcvd,,,,,,memo=,,,,, --set Rmks1_cfg_len=0,4,0,0,0,0,0,9,0,0,0,0, "
     "--set Rmks2_cfg=,Calls,Rcvd,,,,,ｺﾝﾃｽﾄ,,,,memo=, "
     "--set Rmks2_cfg_len=0,2,4,0,0,0,0,7,0,0,0,5,"},
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


// The words of an argument text, with single quotes holding a word together.
std::vector<std::string> words(const std::string& text)
{
    std::vector<std::string> out;
    std::string word;
    bool quoted = false, any = false;
    for (const char c : text) {
        if (c == '\'') {
            quoted = !quoted;
            any = true;
        } else if (c == ' ' && !quoted) {
            if (any) {
                out.push_back(word);
            }
            word.clear();
            any = false;
        } else {
            word += c;
            any = true;
        }
    }
    if (any) {
        out.push_back(word);
    }
    return out;
}

} // namespace

void PrintTo(const GoldenCase& c, std::ostream* os)
{
    *os << c.name;
}

std::span<const GoldenCase> goldenCases()
{
    return kCases;
}

PreparedCase prepareGoldenCase(const GoldenCase& c, const fs::path& dir)
{
    PreparedCase p;
    const std::string logName = c.log;
    fs::path source;
    if (logName.rfind("realdata:", 0) == 0) {
        const auto real = realData(logName.substr(9));
        if (!real) {
            return p;
        }
        source = *real;
    } else {
        source = sourceDir() / "data" / "sample" / logName;
    }
    p.log = dir / ("CONTEST" + source.extension().string());
    fs::copy_file(source, p.log);
    p.home = dir / "home";
    if (c.ownMasters) {
        fs::create_directories(p.home);
        for (const char* master : {"name_mas.txt", "qth_mas.txt"}) {
            fs::copy_file(testData("masters") / master, p.home / master);
        }
    }
    std::string args = text::replaceAll(c.args, "@masters@", testData("masters").string());
    args = text::replaceAll(args, "@hamlog@", (testData("hamlog") / "history.csv").string());
    p.args = words(args);
    return p;
}

std::vector<std::pair<std::string, fs::path>> goldenOutputs(const fs::path& dir)
{
    return {{"CONTEST_hn.csv", dir / "CONTEST_hn.csv"},
            {"CONTEST_cn.csv", dir / "CONTEST_cn.csv"},
            {"zlog_1.txt", dir / "home" / "Work" / "zlog_1.txt"},
            {"zlog_2.txt", dir / "home" / "Work" / "zlog_2.txt"}};
}

} // namespace vornhale::test
