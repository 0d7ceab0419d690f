#include "settings/SettingsFiles.h"

#include "settings/OptionSchema.h"
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

// The keys of one file, in the order of writing.
std::vector<const SchemaKey*> keysOf(SettingsFileId file)
{
    std::vector<const SchemaKey*> keys;
    for (const SchemaKey& k : optionSchema()) {
        if (k.file == file) {
            keys.push_back(&k);
        }
    }
    return keys;
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

// The hold of `setWriteHold` for the life of one write.
class SettingsFiles::WriteHold
{
public:
    explicit WriteHold(SettingsFiles& files) : m_files(files)
    {
        if (m_files.m_takeHold) {
            m_files.m_takeHold();
        }
    }
    ~WriteHold()
    {
        if (m_files.m_takeHold && m_files.m_releaseHold) {
            m_files.m_releaseHold();
        }
    }
    WriteHold(const WriteHold&) = delete;
    WriteHold& operator=(const WriteHold&) = delete;

private:
    SettingsFiles& m_files;
};

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
    for (const SchemaKey* k : keysOf(SettingsFileId::Options)) {
        if (k->kind != ValueKind::Stamp) {
            keys.push_back(k->key);
        }
    }
    return keys;
}

std::vector<std::string> SettingsFiles::environmentKeys()
{
    std::vector<std::string> keys;
    for (const SchemaKey* k : keysOf(SettingsFileId::Environment)) {
        if (k->kind != ValueKind::Stamp) {
            keys.push_back(k->key);
        }
    }
    return keys;
}

std::string SettingsFiles::fileOfKey(std::string_view key)
{
    // The search label is in both files; the one in force is the option file's.
    const SchemaKey* k = findAnySchemaKey(key);
    if (k == nullptr || k->kind == ValueKind::Stamp) {
        return {};
    }
    switch (k->file) {
    case SettingsFileId::Options:
        return std::string(kNewIni);
    case SettingsFileId::Environment:
        return std::string(kCfgIni);
    case SettingsFileId::FileDates:
        return std::string(kFdtIni);
    case SettingsFileId::ZoneMark:
        return std::string(kZoneMojiIni);
    case SettingsFileId::None:
        break;
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
    for (const SchemaKey* key : keysOf(SettingsFileId::Options)) {
        const std::string_view name = key->key;
        std::string value;
        switch (key->section) {
        case KeySection::Own:
        case KeySection::SetKnName:
        case KeySection::Named:
            // The search label is written to its own section but read from the option
            // section, so a file of this program gives it back empty.
            value = profile.read(m_optionSection, name);
            break;
        case KeySection::ColWidth:
            // The grid ticks are read under names that no writer produces.
            value = profile.read("ColWidth_Grid", text::startsWith(name, "Grid")
                                                      ? std::string(name) + "_"
                                                      : std::string(name));
            break;
        case KeySection::Main:
            value = profile.read("Main", name);
            break;
        case KeySection::ModeTable:
            // The mode table is written to the option section and read from the environment
            // one.
            value = profile.read(m_environmentSection, name);
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
        if (key->kind == ValueKind::Number) {
            value = asIntegerText(value);
        } else if (key->kind == ValueKind::Widths) {
            value = normaliseWidths(value);
        }
        m_options.set(name, std::move(value));
    }
}

void SettingsFiles::writeOptionKeys()
{
    const std::vector<const SchemaKey*> keys = keysOf(SettingsFileId::Options);
    for (const SchemaKey* key : keys) {
        if (key->kind == ValueKind::Widths) {
            m_options.set(key->key, normaliseWidths(m_options.value(key->key)));
        }
    }
    const WriteHold hold(*this);
    ProfileFile profile(file(m_currentFile));
    auto put = [&](std::string_view section, std::string_view key, std::string_view value) {
        profile.write(section, key, text::trim(value));
    };
    for (const SchemaKey* key : keys) {
        const std::string_view name = key->key;
        std::string value = m_options.value(name);
        if (name == "version") {
            value = std::string(kProgramVersion);
        } else if (name == "restart") {
            value = "restart";
        } else if (key->kind == ValueKind::Number) {
            value = asIntegerText(value);
        }
        switch (key->section) {
        case KeySection::Own:
        case KeySection::ModeTable:
        case KeySection::Named:
            put(m_optionSection, name, value);
            break;
        case KeySection::SetKnName:
            put("sSetKnName", name, value);
            break;
        case KeySection::ColWidth:
            put("ColWidth_Grid", name, value);
            break;
        case KeySection::Main:
            put("Main", name, value);
            break;
        }
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
    for (const SchemaKey* key : keysOf(SettingsFileId::Environment)) {
        const std::string_view name = key->key;
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
    const WriteHold hold(*this);
    ProfileFile profile(file(kCfgIni));
    for (const SchemaKey* key : keysOf(SettingsFileId::Environment)) {
        const std::string_view name = key->key;
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
    for (const SchemaKey* key : keysOf(SettingsFileId::FileDates)) {
        if (key->kind == ValueKind::Stamp) {
            m_lastVersion = profile.read(kFdtIni, key->key);
        } else {
            m_options.set(key->key, profile.read(key->sectionName, key->key));
        }
    }
}

void SettingsFiles::ini_write_fdt()
{
    selectFile(kFdtIni);
    const WriteHold hold(*this);
    ProfileFile profile(file(kFdtIni));
    for (const SchemaKey* key : keysOf(SettingsFileId::FileDates)) {
        if (key->kind == ValueKind::Stamp) {
            profile.write(kFdtIni, key->key, kProgramVersion);
        } else {
            profile.write(key->sectionName, key->key, text::trim(m_options.value(key->key)));
        }
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
    const WriteHold hold(*this);
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
    o.set("Prov_mas_dat_dir", zlog);
    // The rest has the same value on every disk.
    for (const SchemaKey* key : keysOf(SettingsFileId::Environment)) {
        if (key->rule == DefaultRule::Value) {
            o.set(key->key, defaultValueOf(*key, today()));
        }
    }

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
    std::vector<std::pair<std::string, std::string>> out;
    for (const SettingsFileId file : {SettingsFileId::Options, SettingsFileId::None}) {
        for (const SchemaKey* key : keysOf(file)) {
            if (key->rule != DefaultRule::None && key->rule != DefaultRule::Found) {
                out.emplace_back(key->key, defaultValueOf(*key, today));
            }
        }
    }
    // Environment values that win over the environment defaults on a first start.
    for (const SchemaKey* key : keysOf(SettingsFileId::Environment)) {
        if (!key->firstStartValue.empty()) {
            out.emplace_back(key->key, std::string(key->firstStartValue));
        }
    }
    return out;
}

void SettingsFiles::make_Vornhale_new_ini()
{
    for (auto& [key, value] : optionDefaults(today())) {
        m_options.set(key, std::move(value));
    }
    ini_write_new();
}

} // namespace vornhale::settings
