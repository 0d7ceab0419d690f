#include "settings/Options.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <ctime>

namespace vornhale::settings {
namespace {

// Text boxes whose text is a stored key.
constexpr std::pair<std::string_view, std::string_view> kAliases[] = {
    {"txtYYYY", "YYYY"},           {"txtQSL_Q", "QSL_Q"},
    {"txtQSL_S", "QSL_S"},         {"txtNo_qsl_cty", "No_qsl_cty"},
    {"txtZone_moji", "Zone_moji"}, {"txtProv_moji", "Prov_moji"},
};

std::string today(const char* format)
{
    std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char buf[16];
    std::strftime(buf, sizeof buf, format, &local);
    return buf;
}

} // namespace

bool Options::NoCase::operator()(std::string_view a, std::string_view b) const
{
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) <
               std::tolower(static_cast<unsigned char>(y));
    });
}

std::string_view Options::canonical(std::string_view name)
{
    if (name.size() < 3 || (name[0] != 't' && name[0] != 'T')) {
        return name;
    }
    for (const auto& [alias, key] : kAliases) {
        if (!NoCase{}(alias, name) && !NoCase{}(name, alias)) {
            return key;
        }
    }
    return name;
}

const std::string& Options::value(std::string_view name) const
{
    static const std::string empty;
    const auto it = m_values.find(canonical(name));
    return it == m_values.end() ? empty : it->second;
}

void Options::set(std::string_view name, std::string value)
{
    const std::string_view key = canonical(name);
    const auto it = m_values.find(key);
    if (it != m_values.end()) {
        it->second = std::move(value);
    } else {
        m_values.emplace(std::string(key), std::move(value));
    }
}

bool Options::tick(std::string_view name) const { return value(name) == "1"; }

int Options::member(std::string_view name) const
{
    const std::string& v = value(name);
    int index = 0;
    const char* begin = v.data();
    while (begin < v.data() + v.size() && *begin == ' ') {
        ++begin;
    }
    std::from_chars(begin, v.data() + v.size(), index);
    return index;
}

Options Options::defaults()
{
    Options o;
    // Environment keys, as a first start leaves them (the option defaults win for the marks).
    const std::pair<const char*, std::string> environment[] = {
        {"version", "5.44"},        {"zlog_dat_dir", ""},      {"name_mas_dir", ""},
        {"qth_mas_dir", ""},        {"mng_z_full_txt_dir", ""}, {"hamlog_hdb_dir", ""},
        {"hamlog_hdb_2_dir", ""},   {"zlo_dir", ""},           {"all_dir", ""},
        {"log_dir", "使用しない"},  {"Prov_mas_dat_dir", ""},  {"No_QSL_moji", "N"},
        {"No_QSL_moji_set_flag", "2"}, {"buro_QSL_moji", ""},  {"inet_flag", "NO"},
        {"mng_search_url", "Dalmuir"}, {"DXCC_mas_txt_55_use", ""},
    };
    const std::pair<const char*, std::string> options[] = {
        {"restart", "restart"}, {"Option2", "0"},     {"QSL_Q", "J"},       {"QSL_S", "*"},
        {"YYYY", today("%Y")}, {"Check06", "0"},     {"Option04", "0"},    {"Check04", "1"},
        {"Check05", "1"},       {"Check10", "0"},     {"Check16", "1"},     {"Check17", "0"},
        {"Check18", "0"},       {"Option08", "0"},    {"Option02", "0"},    {"Check02", "0"},
        {"Check09", "0"},       {"No_qsl_cty", ""},   {"Check15", "0"},     {"Option05", "0"},
        {"Option5", "0"},       {"Option7", "0"},     {"Check1", "1"},      {"Option1", "0"},
        {"Rmks1_cfg", "ｺﾝﾃｽﾄ,,,,,,,,,,,,"},         {"Rmks2_cfg", "MNG,$DX,,,,,,,,,,,"},
        {"Rmks1_cfg_len", "0,0,0,0,0,0,0,0,0,0,0,0,"},
        {"Rmks2_cfg_len", "0,0,0,0,0,0,0,0,0,0,0,0,"},
        {"Start_date", "19600101"}, {"End_date", today("%Y%m%d")},
        {"use_system_date_flag", "1"}, {"Check2", "1"}, {"Check3", "0"},  {"Check4", "0"},
        {"Check5", "0"},        {"Check12", "0"},     {"Check13", "1"},     {"Check14", "1"},
        {"Check19", "0"},       {"Check20", "0"},     {"Check21", "0"},     {"Check22", "0"},
        {"Check23", "0"},       {"Check25", "0"},     {"Check26", "0"},     {"Check27", "0"},
        {"Check28", "0"},       {"Check29", "0"},     {"Option3", "0"},     {"Option4", "2"},
        {"Option6", "0"},       {"Zone_moji", ""},    {"Check6", "1"},      {"disp_top_SSTab", "0"},
        {"Prov_moji", ""},      {"Option10", "0"},    {"Make_a2t", "0"},    {"Make_t2a", "0"},
        {"GetMng_Interval", "2"}, {"Option01", "0"}, {"txtOp_name", ""},   {"txtRmks1", ""},
        {"txtRmks2", ""},
    };
    for (const auto& [key, value] : environment) {
        o.set(key, value);
    }
    for (const auto& [key, value] : options) {
        o.set(key, value);
    }
    return o;
}

} // namespace vornhale::settings
