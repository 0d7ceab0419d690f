#include "settings/SettingsFiles.h"

#include "settings/PeriodModel.h"
#include "settings/ProfileFile.h"
#include "text/Chars.h"

#include <cmath>

namespace vornhale::settings {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kNewIni = "Vornhale_new.ini";
constexpr std::string_view kOldIni = "Vornhale.ini";
constexpr std::string_view kCfgIni = "Vornhale_cfg.ini";
constexpr std::string_view kFdtIni = "Vornhale_fdt.ini";
constexpr std::string_view kZoneMojiIni = "Vornhale_Zone_moji.ini";
constexpr std::string_view kNotUsed = "使用しない";

// Where a key of the option files lives: its own section, or a named one.
enum class Place { Own, SetKnName, ColWidth, Main };

struct OptionKey
{
    const char* name;
    Place place = Place::Own;
};

// The option keys in the order of writing: the left column of the table of keys, then the
// right one, the keys of the other sections where they fall in that order.
const std::vector<OptionKey>& optionKeys()
{
    static const std::vector<OptionKey> keys = [] {
        std::vector<OptionKey> k;
        for (const char* name :
             {"version",   "restart",        "Option2",    "QSL_Q",      "QSL_S",
              "YYYY",      "Check06",        "Option04",   "Check04",    "Check05",
              "Check10",   "Check16",        "Check17",    "Check18",    "Option08",
              "Option02",  "Check02",        "Check09",    "No_qsl_cty", "Check15",
              "Option05",  "Option5",        "Option7",    "Check1",     "Option1",
              "Rmks1_cfg", "Rmks2_cfg",      "Start_date", "End_date",   "use_system_date_flag",
              "Check2",    "Check3",         "Check4",     "Check5",     "Check12",
              "Check14",   "Check19",        "Check20",    "Check21",    "Check22",
              "Check23",   "Check25",        "Check26",    "Check27",    "Check28",
              "Check29",   "Option3",        "Option4",    "Option6",    "Zone_moji",
              "Check6",    "disp_top_SSTab", "Prov_moji",  "Option10",   "Make_a2t",
              "Make_t2a",  "GetMng_Interval"}) {
            k.push_back({name});
        }
        k.push_back({"mng_search_url", Place::SetKnName});
        for (const char* name : {"get_ColWidth_Grid1", "get_ColWidth_Grid2", "get_ColWidth_Grid4",
                                 "get_ColWidth_Grid5", "Grid1_Check1", "Grid2_Check1",
                                 "Grid4_Check1", "Grid5_Check1"}) {
            k.push_back({name, Place::ColWidth});
        }
        k.push_back({"exe_rec", Place::Main});
        return k;
    }();
    return keys;
}

std::string modeKey(int row, const char* suffix)
{
    return "mode_" + std::to_string(row) + suffix;
}

constexpr const char* kModeSuffixes[] = {"_0_txt", "_1_txt", "_chk"};

// The environment keys in the order of writing.
constexpr const char* kEnvironmentKeys[] = {
    "version",
    "zlog_dat_dir",
    "name_mas_dir",
    "qth_mas_dir",
    "mng_z_full_txt_dir",
    "hamlog_hdb_dir",
    "hamlog_hdb_2_dir",
    "zlo_dir",
    "all_dir",
    "log_dir",
    "Prov_mas_dat_dir",
    "No_QSL_moji",
    "No_QSL_moji_set_flag",
    "buro_QSL_moji",
    "inet_flag",
    "mng_search_url",
    "DXCC_mas_txt_55_use",
};

// The sections of the stored file dates, one key each.
constexpr std::pair<const char*, const char*> kFdtKeys[] = {
    {"Sansyou_files QSO", "hamlog_hdb_dir_FileDateTime_QSO"},
    {"Sansyou_files QSL_sent", "hamlog_hdb_dir_FileDateTime_QSL_sent"},
    {"Sansyou_files QSL_rcvd", "hamlog_hdb_dir_FileDateTime_QSL_rcvd"},
    {"Sansyou_files_MNG", "mng_z_full_txt_dir_FileDateTime"},
};

constexpr const char* kGridWidths12 =
    "600,900,450,850,700,400,400,800,450,900,900,550,1800,3700,7100,7100";
constexpr const char* kGridWidths45 =
    "600,1300,850,700,400,400,800,450,900,900,550,1800,3700,7100,7100,400";
constexpr const char* kZeroWidths = "0,0,0,0,0,0,0,0,0,0,0,0,";

// Values held as small integers in memory: a text that is no number reads as 0.
bool isIntegerValue(std::string_view key)
{
    return key == "use_system_date_flag" || key == "disp_top_SSTab";
}

std::string asIntegerText(std::string_view value)
{
    double v = std::nearbyint(text::val(value));
    if (v < -32768 || v > 32767) {
        v = 0;
    }
    return std::to_string(static_cast<int>(v));
}

std::string withSeparator(const fs::path& folder)
{
    std::string s = folder.string();
    if (s.empty() || (s.back() != '/' && s.back() != '\\')) {
        s += '/';
    }
    return s;
}

bool isFile(const fs::path& p)
{
    std::error_code ec;
    return fs::is_regular_file(p, ec);
}

} // namespace

SettingsFiles::SettingsFiles(fs::path strPath, Options& options)
    : m_strPath(std::move(strPath)), m_options(options)
{
}

fs::path SettingsFiles::file(std::string_view name) const
{
    return m_strPath / fs::path(name);
}

bool SettingsFiles::exists(std::string_view name) const
{
    return isFile(file(name));
}

std::string SettingsFiles::today() const
{
    return m_today.empty() ? dateDigits(systemToday()) : m_today;
}

void SettingsFiles::selectFile(std::string_view name)
{
    m_currentFile = std::string(name);
}

void SettingsFiles::saveProfile(ProfileFile& profile)
{
    if (!profile.save()) {
        noteWriteFailure(profile.path());
    }
}

void SettingsFiles::noteWriteFailure(fs::path file)
{
    if (m_onWriteFailure) {
        m_onWriteFailure(file);
    }
    m_writeFailures.push_back(std::move(file));
}

std::vector<fs::path> SettingsFiles::takeWriteFailures()
{
    std::vector<fs::path> out;
    out.swap(m_writeFailures);
    return out;
}

std::string SettingsFiles::normaliseWidths(std::string_view widths)
{
    std::string s(widths);
    if (!s.empty() && s.front() == ',') {
        s.insert(0, "0");
    }
    return text::replaceAll(s, ",,", ",0,");
}

std::vector<std::string> SettingsFiles::optionFileKeys()
{
    std::vector<std::string> keys;
    for (const OptionKey& key : optionKeys()) {
        const std::string_view name = key.name;
        if (name != "version" && name != "restart") {
            keys.emplace_back(name);
        }
    }
    for (int row = 1; row <= 10; ++row) {
        for (const char* suffix : kModeSuffixes) {
            keys.push_back(modeKey(row, suffix));
        }
    }
    keys.emplace_back("Rmks1_cfg_len");
    keys.emplace_back("Rmks2_cfg_len");
    return keys;
}

std::vector<std::string> SettingsFiles::environmentKeys()
{
    std::vector<std::string> keys;
    for (const char* key : kEnvironmentKeys) {
        if (std::string_view(key) != "version") {
            keys.emplace_back(key);
        }
    }
    return keys;
}

std::string SettingsFiles::fileOfKey(std::string_view key)
{
    auto among = [&](const std::vector<std::string>& keys) {
        for (const std::string& k : keys) {
            if (text::equalsNoCase(k, key)) {
                return true;
            }
        }
        return false;
    };
    // The search label is in both files; the one in force is the option file's.
    if (among(optionFileKeys())) {
        return std::string(kNewIni);
    }
    if (among(environmentKeys())) {
        return std::string(kCfgIni);
    }
    for (const auto& [section, name] : kFdtKeys) {
        if (text::equalsNoCase(name, key)) {
            return std::string(kFdtIni);
        }
    }
    if (text::equalsNoCase(key, "Zone_moji_save")) {
        return std::string(kZoneMojiIni);
    }
    return {};
}

// ---- option files ----

void SettingsFiles::ini_read_new()
{
    selectFile(kNewIni);
    m_optionSection = std::string(kNewIni);
    readOptionKeys();
}

void SettingsFiles::ini_write_new()
{
    selectFile(kNewIni);
    m_optionSection = std::string(kNewIni);
    writeOptionKeys();
}

void SettingsFiles::ini_read_old()
{
    selectFile(kOldIni);
    m_optionSection = std::string(kOldIni);
    readOptionKeys();
}

void SettingsFiles::ini_write_old()
{
    selectFile(kOldIni);
    m_optionSection = std::string(kOldIni);
    writeOptionKeys();
}

void SettingsFiles::readOptionKeys()
{
    const ProfileFile profile(file(m_currentFile));
    for (const OptionKey& key : optionKeys()) {
        const std::string_view name = key.name;
        std::string value;
        switch (key.place) {
        case Place::Own:
        case Place::SetKnName:
            // The search label is written to its own section but read from the option
            // section, so a file of this program gives it back empty.
            value = profile.read(m_optionSection, name);
            break;
        case Place::ColWidth:
            // The grid ticks are read under names that no writer produces.
            value = profile.read("ColWidth_Grid", text::startsWith(name, "Grid")
                                                      ? std::string(name) + "_"
                                                      : std::string(name));
            break;
        case Place::Main:
            value = profile.read("Main", name);
            break;
        }
        if (name == "version") {
            m_lastVersion = value;
            continue;
        }
        if (name == "restart") {
            m_restart = value == "restart";
            continue;
        }
        if (isIntegerValue(name)) {
            value = asIntegerText(value);
        }
        m_options.set(name, std::move(value));
    }
    // The mode table is written to the option section and read from the environment one.
    for (int row = 1; row <= 10; ++row) {
        for (const char* suffix : kModeSuffixes) {
            const std::string key = modeKey(row, suffix);
            m_options.set(key, profile.read(m_environmentSection, key));
        }
    }
    for (const char* key : {"Rmks1_cfg_len", "Rmks2_cfg_len"}) {
        m_options.set(key, normaliseWidths(profile.read(m_optionSection, key)));
    }
}

void SettingsFiles::writeOptionKeys()
{
    for (const char* key : {"Rmks1_cfg_len", "Rmks2_cfg_len"}) {
        m_options.set(key, normaliseWidths(m_options.value(key)));
    }
    ProfileFile profile(file(m_currentFile));
    auto put = [&](std::string_view section, std::string_view key, std::string_view value) {
        profile.write(section, key, text::trim(value));
    };
    for (const OptionKey& key : optionKeys()) {
        const std::string_view name = key.name;
        std::string value = m_options.value(name);
        if (name == "version") {
            value = std::string(kProgramVersion);
        } else if (name == "restart") {
            value = "restart";
        } else if (isIntegerValue(name)) {
            value = asIntegerText(value);
        }
        switch (key.place) {
        case Place::Own:
            put(m_optionSection, name, value);
            break;
        case Place::SetKnName:
            put("sSetKnName", name, value);
            break;
        case Place::ColWidth:
            put("ColWidth_Grid", name, value);
            break;
        case Place::Main:
            put("Main", name, value);
            break;
        }
    }
    for (int row = 1; row <= 10; ++row) {
        for (const char* suffix : kModeSuffixes) {
            const std::string key = modeKey(row, suffix);
            put(m_optionSection, key, m_options.value(key));
        }
    }
    for (const char* key : {"Rmks1_cfg_len", "Rmks2_cfg_len"}) {
        put(m_optionSection, key, m_options.value(key));
    }
    saveProfile(profile);
}

// ---- environment ----

void SettingsFiles::ini_read_cfg()
{
    selectFile(kCfgIni);
    if (!exists(kCfgIni)) {
        return;
    }
    m_environmentSection = std::string(kCfgIni);
    const ProfileFile profile(file(kCfgIni));
    for (const char* key : kEnvironmentKeys) {
        const std::string_view name = key;
        // The search label is only written here; the value in force comes from the options.
        // The mark's mode is read after the bureau mark; the order has no other effect.
        if (name == "mng_search_url") {
            continue;
        }
        std::string value = profile.read(m_environmentSection, name);
        if (name == "version") {
            m_lastVersion = std::move(value);
            continue;
        }
        m_options.set(name, std::move(value));
    }
    m_nameLookupOn = m_options.value("name_mas_dir") != kNotUsed;
    m_qthLookupOn = m_options.value("qth_mas_dir") != kNotUsed;
}

void SettingsFiles::ini_write_cfg()
{
    selectFile(kCfgIni);
    m_environmentSection = std::string(kCfgIni);
    ProfileFile profile(file(kCfgIni));
    for (const char* key : kEnvironmentKeys) {
        const std::string_view name = key;
        const std::string value =
            name == "version" ? std::string(kProgramVersion) : m_options.value(name);
        profile.write(m_environmentSection, name, text::trim(value));
    }
    saveProfile(profile);
}

// ---- file dates and the zone mark ----

void SettingsFiles::ini_read_fdt()
{
    selectFile(kFdtIni);
    const ProfileFile profile(file(kFdtIni));
    m_lastVersion = profile.read(kFdtIni, "version");
    for (const auto& [section, key] : kFdtKeys) {
        m_options.set(key, profile.read(section, key));
    }
}

void SettingsFiles::ini_write_fdt()
{
    selectFile(kFdtIni);
    ProfileFile profile(file(kFdtIni));
    profile.write(kFdtIni, "version", kProgramVersion);
    for (const auto& [section, key] : kFdtKeys) {
        profile.write(section, key, text::trim(m_options.value(key)));
    }
    saveProfile(profile);
}

void SettingsFiles::ini_read_zone_moji()
{
    selectFile(kZoneMojiIni);
    m_environmentSection = std::string(kZoneMojiIni);
    const ProfileFile profile(file(kZoneMojiIni));
    m_options.set("Zone_moji_save", profile.read("Zone_moji", "Zone_moji_save"));
}

void SettingsFiles::ini_write_zone_moji()
{
    selectFile(kZoneMojiIni);
    m_environmentSection = std::string(kZoneMojiIni);
    ProfileFile profile(file(kZoneMojiIni));
    profile.write("Zone_moji", "Zone_moji_save", text::trim(m_options.value("Zone_moji_save")));
    saveProfile(profile);
}

// ---- defaults ----

void SettingsFiles::make_Vornhale_cfg_ini()
{
    const fs::path root = m_driveRoot.empty() ? m_strPath.root_path() : m_driveRoot;
    const std::string programFolder = withSeparator(m_strPath);

    // The later test wins, so the folder directly under the root beats "Program Files".
    auto firstOf = [&](const char* inProgramFiles, const char* atRoot, const char* probe) {
        std::string found;
        if (isFile(root / inProgramFiles / probe)) {
            found = withSeparator(root / inProgramFiles);
        }
        if (isFile(root / atRoot / probe)) {
            found = withSeparator(root / atRoot);
        }
        return found;
    };
    std::string zlog = firstOf("Program Files/zLog", "zLog", "acag.dat");
    if (zlog.empty()) {
        // No zLog here: the data files that come with the program are in its own folder.
        zlog = programFolder;
    }
    std::string hamlog;
    if (isFile(root / "Program Files/Hamlog/Hamlog.hdb")) {
        hamlog = (root / "Program Files/Hamlog/Hamlog.hdb").string();
    }
    if (isFile(root / "Hamlog/Hamlog.hdb")) {
        hamlog = (root / "Hamlog/Hamlog.hdb").string();
    }

    Options& o = m_options;
    o.set("version", std::string(kProgramVersion));
    o.set("zlog_dat_dir", zlog);
    o.set("name_mas_dir", isFile(m_strPath / "name_mas.txt") ? programFolder : std::string());
    o.set("qth_mas_dir", isFile(m_strPath / "qth_mas.txt") ? programFolder : std::string());
    o.set("mng_z_full_txt_dir", programFolder + "MNG_Vornhale_full.txt");
    o.set("hamlog_hdb_dir", hamlog);
    o.set("hamlog_hdb_2_dir", hamlog);
    o.set("zlo_dir", zlog);
    o.set("all_dir", zlog);
    o.set("log_dir", std::string(kNotUsed));
    o.set("Prov_mas_dat_dir", zlog);
    o.set("No_QSL_moji", "_");
    o.set("No_QSL_moji_set_flag", "1");
    o.set("buro_QSL_moji", "");
    o.set("inet_flag", "NO");
    o.set("mng_search_url", "Dalmuir");
    o.set("DXCC_mas_txt_55_use", "");

    if (isFile(m_strPath / "Prov" / "EA_prov.mas")) {
        m_provFolder = m_strPath / "Prov" / "";
    }
    if (isFile(m_strPath / "dxcc_mas.txt")) {
        m_dxccPath = m_strPath / "dxcc_mas.txt";
    }
}

std::vector<std::pair<std::string, std::string>>
SettingsFiles::optionDefaults(std::string_view today)
{
    const std::string now(today);
    const std::pair<const char*, std::string> defaults[] = {
        {"Option2", "0"},
        {"QSL_Q", "J"},
        {"QSL_S", "*"},
        {"YYYY", now.substr(0, 4)},
        {"Check06", "0"},
        {"Option04", "0"},
        {"Check04", "1"},
        {"Check05", "1"},
        {"Check10", "0"},
        {"Check17", "0"},
        {"Check18", "0"},
        {"Option08", "0"},
        {"Option02", "0"},
        {"Check02", "0"},
        {"Check09", "0"},
        {"No_qsl_cty", ""},
        {"Check15", "0"},
        {"Option05", "0"},
        {"Option5", "0"},
        {"Option7", "0"},
        {"Check1", "1"},
        {"Option1", "0"},
        {"Rmks1_cfg", "ｺﾝﾃｽﾄ,,,,,,,,,,,,"},
        {"Rmks2_cfg", "MNG,$DX,,,,,,,,,,,"},
        {"Start_date", "19600101"},
        {"End_date", now},
        {"use_system_date_flag", "1"},
        {"Check2", "1"},
        {"Check3", "0"},
        {"Check4", "0"},
        {"Check5", "0"},
        {"Check12", "0"},
        {"Check14", "1"},
        {"Check19", "0"},
        {"Check20", "0"},
        {"Check21", "0"},
        {"Check22", "0"},
        {"Check23", "0"},
        {"Check25", "0"},
        {"Check26", "0"},
        {"Check27", "0"},
        {"Check28", "0"},
        {"Check29", "0"},
        {"Option3", "0"},
        {"Option4", "2"},
        {"Option6", "0"},
        {"Zone_moji", ""},
        {"Check6", "1"},
        {"disp_top_SSTab", "0"},
        {"Prov_moji", ""},
        {"Option10", "0"},
        {"Make_a2t", "0"},
        {"Make_t2a", "0"},
        {"GetMng_Interval", "2"},
        {"mng_search_url", "Dalmuir"},
        {"exe_rec", "0"},
        {"Rmks1_cfg_len", kZeroWidths},
        {"Rmks2_cfg_len", kZeroWidths},
        {"get_ColWidth_Grid1", kGridWidths12},
        {"get_ColWidth_Grid2", kGridWidths12},
        {"get_ColWidth_Grid4", kGridWidths45},
        {"get_ColWidth_Grid5", kGridWidths45},
        {"Grid1_Check1", "0"},
        {"Grid2_Check1", "0"},
        {"Grid4_Check1", "0"},
        {"Grid5_Check1", "0"},
        // No key: the tick lives until the program ends.
        {"Check13", "1"},
        // Environment values that win over the environment defaults on a first start.
        {"No_QSL_moji", "N"},
        {"No_QSL_moji_set_flag", "2"},
        {"inet_flag", "NO"},
    };
    return {std::begin(defaults), std::end(defaults)};
}

void SettingsFiles::make_Vornhale_new_ini()
{
    for (auto& [key, value] : optionDefaults(today())) {
        m_options.set(key, std::move(value));
    }
    ini_write_new();
}

} // namespace vornhale::settings
