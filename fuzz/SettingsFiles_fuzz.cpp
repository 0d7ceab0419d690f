// Any bytes as the option and environment files: every key reads, the files write back and
// read again, never a crash or hang.
#include "settings/CIniFile.h"
#include "settings/Options.h"
#include "settings/SettingsFiles.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vornhale;
    namespace fs = std::filesystem;
    static const fs::path folder = [] {
        fs::path p = fs::temp_directory_path() / ("vornhale-fuzz-" + std::to_string(::getpid()));
        fs::create_directories(p);
        return p;
    }();
    for (const char* name : {"Vornhale_new.ini", "Vornhale_cfg.ini", "Vornhale_posi.ini"}) {
        std::ofstream(folder / name, std::ios::binary | std::ios::trunc)
            .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
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
