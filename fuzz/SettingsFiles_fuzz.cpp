// Any bytes as the option and environment files: every key reads, the files write back and
// read again, never a crash or hang.

#include "FuzzSupport.h"
#include "settings/CIniFile.h"
#include "settings/SettingsFiles.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    const std::filesystem::path& folder = fuzz::scratchHome();
    for (const char* name : {"Vornhale_new.ini", "Vornhale_cfg.ini", "Vornhale_posi.ini"}) {
        fuzz::writeInput(folder / name, fuzz::bytesOf(data, size));
    }
    settings::Options options;
    settings::SettingsFiles files(folder, options);
    files.ini_read_cfg();
    files.ini_read_new();
    files.ini_write_new();
    files.ini_read_new();
    if (!files.restartMarker()) {
        __builtin_trap(); // the file just written must carry the marker
    }
    settings::CIniFile positions;
    positions.Load(folder / "Vornhale_posi.ini");
    for (const auto& section : positions.Sections()) {
        positions.NowSection(section);
        (void)positions.InitData("Left", 1, settings::IniValue(std::string("0")));
    }
    return 0;
}
