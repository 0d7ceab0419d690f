#include "settings/OptionSchema.h"

#include "text/Chars.h"

#include <charconv>
#include <vector>

namespace vornhale::settings {
namespace {

using F = SettingsFileId;
using S = KeySection;
using V = ValueKind;
using R = DefaultRule;

constexpr std::string_view kGridWidths12 =
    "600,900,450,850,700,400,400,800,450,900,900,550,1800,3700,7100,7100";
constexpr std::string_view kGridWidths45 =
    "600,1300,850,700,400,400,800,450,900,900,550,1800,3700,7100,7100,400";
constexpr std::string_view kZeroWidths = "0,0,0,0,0,0,0,0,0,0,0,0,";

SchemaKey optionKey(std::string key, V kind, R rule = R::None, std::string_view value = {},
                    int members = 0)
{
    SchemaKey k;
    k.key = std::move(key);
    k.kind = kind;
    k.rule = rule;
    k.defaultValue = value;
    k.members = members;
    return k;
}

SchemaKey tick(const char* key, std::string_view value)
{
    return optionKey(key, V::Tick, R::Value, value);
}

SchemaKey group(const char* key, int members, std::string_view value = "0")
{
    return optionKey(key, V::Group, R::Value, value, members);
}

SchemaKey text(const char* key, std::string_view value)
{
    return optionKey(key, V::Text, R::Value, value);
}

SchemaKey placed(SchemaKey k, SettingsFileId file, KeySection section,
                 std::string_view sectionName = {})
{
    k.file = file;
    k.section = section;
    k.sectionName = sectionName;
    return k;
}

SchemaKey environment(const char* key, R rule, std::string_view value = {},
                      std::string_view firstStart = {})
{
    SchemaKey k = placed(optionKey(key, V::Text, rule, value), F::Environment, S::Own);
    k.firstStartValue = firstStart;
    return k;
}

std::vector<SchemaKey> build()
{
    std::vector<SchemaKey> k;
    // The option files: the left column of the table of keys, then the right one, the keys
    // of the other sections where they fall in that order.
    k.push_back(optionKey("version", V::Stamp));
    k.push_back(optionKey("restart", V::Stamp));
    k.push_back(group("Option2", 2));
    k.push_back(text("QSL_Q", "J"));
    k.push_back(text("QSL_S", "*"));
    k.push_back(optionKey("YYYY", V::Text, R::ThisYear));
    k.push_back(tick("Check06", "0"));
    k.push_back(group("Option04", 4));
    k.push_back(tick("Check04", "1"));
    k.push_back(tick("Check05", "1"));
    k.push_back(tick("Check10", "0"));
    // The band tick has no default of its own: an empty value turns on at the window's load.
    k.push_back(optionKey("Check16", V::Tick));
    k.push_back(tick("Check17", "0"));
    k.push_back(tick("Check18", "0"));
    k.push_back(group("Option08", 2));
    k.push_back(group("Option02", 5));
    k.push_back(tick("Check02", "0"));
    k.push_back(tick("Check09", "0"));
    k.push_back(text("No_qsl_cty", ""));
    k.push_back(tick("Check15", "0"));
    k.push_back(group("Option05", 4));
    k.push_back(group("Option5", 4));
    k.push_back(group("Option7", 2));
    k.push_back(tick("Check1", "1"));
    k.push_back(group("Option1", 1));
    k.push_back(text("Rmks1_cfg", "ｺﾝﾃｽﾄ,,,,,,,,,,,,"));
    k.push_back(text("Rmks2_cfg", "MNG,$DX,,,,,,,,,,,"));
    k.push_back(text("Start_date", "19600101"));
    k.push_back(optionKey("End_date", V::Text, R::Today));
    k.push_back(optionKey("use_system_date_flag", V::Number, R::Value, "1"));
    k.push_back(tick("Check2", "1"));
    k.push_back(tick("Check3", "0"));
    k.push_back(tick("Check4", "0"));
    k.push_back(tick("Check5", "0"));
    k.push_back(tick("Check12", "0"));
    k.push_back(tick("Check14", "1"));
    for (const char* name : {"Check19", "Check20", "Check21", "Check22", "Check23", "Check25",
                             "Check26", "Check27", "Check28", "Check29"}) {
        k.push_back(tick(name, "0"));
    }
    k.push_back(group("Option3", 2));
    k.push_back(group("Option4", 5, "2"));
    k.push_back(group("Option6", 4));
    k.push_back(text("Zone_moji", ""));
    k.push_back(tick("Check6", "1"));
    k.push_back(optionKey("disp_top_SSTab", V::Number, R::Value, "0"));
    k.push_back(text("Prov_moji", ""));
    k.push_back(group("Option10", 3));
    k.push_back(tick("Make_a2t", "0"));
    k.push_back(tick("Make_t2a", "0"));
    k.push_back(text("GetMng_Interval", "2"));
    k.push_back(placed(text("mng_search_url", "Dalmuir"), F::Options, S::SetKnName));
    for (const char* name : {"get_ColWidth_Grid1", "get_ColWidth_Grid2"}) {
        k.push_back(placed(text(name, kGridWidths12), F::Options, S::ColWidth));
    }
    for (const char* name : {"get_ColWidth_Grid4", "get_ColWidth_Grid5"}) {
        k.push_back(placed(text(name, kGridWidths45), F::Options, S::ColWidth));
    }
    for (const char* name : {"Grid1_Check1", "Grid2_Check1", "Grid4_Check1", "Grid5_Check1"}) {
        k.push_back(placed(tick(name, "0"), F::Options, S::ColWidth));
    }
    k.push_back(placed(text("exe_rec", "0"), F::Options, S::Main));
    for (int row = 1; row <= 10; ++row) {
        for (const char* suffix : {"_0_txt", "_1_txt", "_chk"}) {
            k.push_back(placed(optionKey("mode_" + std::to_string(row) + suffix, V::Text),
                               F::Options, S::ModeTable));
        }
    }
    k.push_back(optionKey("Rmks1_cfg_len", V::Widths, R::Value, kZeroWidths));
    k.push_back(optionKey("Rmks2_cfg_len", V::Widths, R::Value, kZeroWidths));

    // The environment.
    k.push_back(placed(optionKey("version", V::Stamp), F::Environment, S::Own));
    for (const char* name : {"zlog_dat_dir", "name_mas_dir", "qth_mas_dir", "mng_z_full_txt_dir",
                             "hamlog_hdb_dir", "hamlog_hdb_2_dir", "zlo_dir", "all_dir"}) {
        k.push_back(environment(name, R::Found));
    }
    k.push_back(environment("log_dir", R::Value, "使用しない"));
    k.push_back(environment("Prov_mas_dat_dir", R::Found));
    k.push_back(environment("No_QSL_moji", R::Value, "_", "N"));
    k.push_back(environment("No_QSL_moji_set_flag", R::Value, "1", "2"));
    k.push_back(environment("buro_QSL_moji", R::Value, ""));
    k.push_back(environment("inet_flag", R::Value, "NO", "NO"));
    // Written here as well, but the value in force is the option files' one.
    k.push_back(environment("mng_search_url", R::Value, "Dalmuir"));
    k.push_back(environment("DXCC_mas_txt_55_use", R::Value, ""));

    // The stored file dates, one section each, after the version of the file.
    k.push_back(placed(optionKey("version", V::Stamp), F::FileDates, S::Own));
    for (const auto& [section, name] :
         {std::pair{"Sansyou_files QSO", "hamlog_hdb_dir_FileDateTime_QSO"},
          std::pair{"Sansyou_files QSL_sent", "hamlog_hdb_dir_FileDateTime_QSL_sent"},
          std::pair{"Sansyou_files QSL_rcvd", "hamlog_hdb_dir_FileDateTime_QSL_rcvd"},
          std::pair{"Sansyou_files_MNG", "mng_z_full_txt_dir_FileDateTime"}}) {
        k.push_back(placed(optionKey(name, V::Text), F::FileDates, S::Named, section));
    }

    // The saved zone mark.
    k.push_back(placed(optionKey("Zone_moji_save", V::Text), F::ZoneMark, S::Named, "Zone_moji"));

    // Values without a key: they live in memory until the program ends.
    k.push_back(placed(tick("Check13", "1"), F::None, S::Own));
    k.push_back(placed(optionKey("Check9", V::Tick), F::None, S::Own));
    k.push_back(placed(optionKey("Option01", V::Group, R::None, {}, 1), F::None, S::Own));
    for (const char* name : {"txtOp_name", "txtRmks1", "txtRmks2"}) {
        k.push_back(placed(optionKey(name, V::Text), F::None, S::Own));
    }
    // The web tick of the batch manager window; empty counts as on.
    k.push_back(placed(optionKey("Get_MNG_use_web", V::Tick), F::None, S::Own));
    return k;
}

bool isWholeNumber(std::string_view value, int& out)
{
    const auto [ptr, ec] = std::from_chars(value.data(), value.data() + value.size(), out);
    return !value.empty() && ec == std::errc{} && ptr == value.data() + value.size();
}

} // namespace

std::span<const SchemaKey> optionSchema()
{
    static const std::vector<SchemaKey> schema = build();
    return schema;
}

const SchemaKey* findSchemaKey(std::string_view name, SettingsFileId file)
{
    for (const SchemaKey& k : optionSchema()) {
        if (k.file == file && text::equalsNoCase(k.key, name)) {
            return &k;
        }
    }
    return nullptr;
}

const SchemaKey* findAnySchemaKey(std::string_view name)
{
    for (const SettingsFileId file :
         {SettingsFileId::Options, SettingsFileId::Environment, SettingsFileId::FileDates,
          SettingsFileId::ZoneMark, SettingsFileId::None}) {
        if (const SchemaKey* k = findSchemaKey(name, file)) {
            return k;
        }
    }
    return nullptr;
}

std::string defaultValueOf(const SchemaKey& key, std::string_view today)
{
    switch (key.rule) {
    case DefaultRule::Value:
        return std::string(key.defaultValue);
    case DefaultRule::ThisYear:
        return std::string(today.substr(0, 4));
    case DefaultRule::Today:
        return std::string(today);
    case DefaultRule::Found:
    case DefaultRule::None:
        break;
    }
    return {};
}

bool valueFits(const SchemaKey& key, std::string_view value)
{
    int n = 0;
    switch (key.kind) {
    case ValueKind::Tick:
        return value == "0" || value == "1";
    case ValueKind::Group:
        return isWholeNumber(value, n) && n >= 0 && n < key.members;
    case ValueKind::Number:
        return isWholeNumber(value, n) && n >= -32768 && n <= 32767;
    case ValueKind::Stamp:
        return false;
    case ValueKind::Text:
    case ValueKind::Widths:
        break;
    }
    return true;
}

} // namespace vornhale::settings
