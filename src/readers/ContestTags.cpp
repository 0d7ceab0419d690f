#include "readers/ContestTags.h"

#include "text/Chars.h"

#include <string>
#include <utility>

namespace vornhale::readers {
namespace {

// Tags of contests in an input file name, first hit wins.
constexpr std::pair<std::string_view, std::string_view> kContestTags[] = {
    {"REF", "REFコンテスト(DX)"},
    {"PAC", "PACC (DX)"},
    {"PA", "PACC (DX)"},
    {"RSGB", "RSGB 7MHz (DX)"},
    {"SP", "ＳＰＤＸコンテスト"},
    {"UR", "URDXコンテスト(DX)"},
    {"YO", "YO DX"},
    {"RAC", "RAC"},
    {"HA", "HADXコンテスト(DX)"},
    {"ARR", "ARRL 10m Contest"},
    {"ARD", "ARRL 10m Contest"},
    {"CT", "CT DAY"},
    {"OK", "ＯＫ／ＯＭＤＸコンテスト（ＤＸ）"},
    {"UA", "RussianDXコンテスト"},
    {"RUS", "RussianDXコンテスト"},
    {"HB", "Helvetia DXコンテスト"},
    {"ARI", "ARI Int DXコンテスト"},
    {"UBA", "UBA Contest"},
    {"UK", "Ukrainian DX DIGI Contest"},
    {"EA", "EA Contest"},
    {"XE", "XE Contest"},
    {"IOTA", "IOTA Contest"},
};

} // namespace

std::string_view contestOfFileName(std::string_view in_name)
{
    // Either separator ends a folder, as in the paths the program is given.
    const std::size_t sep = in_name.find_last_of("/\\");
    const std::string name =
        text::upper(sep == std::string_view::npos ? in_name : in_name.substr(sep + 1));
    for (const auto& [tag, contest] : kContestTags) {
        if (name.find(tag) != std::string::npos) {
            return contest;
        }
    }
    return {};
}

} // namespace vornhale::readers
