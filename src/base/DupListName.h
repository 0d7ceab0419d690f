#pragma once

#include <string>
#include <string_view>

namespace vornhale::base {

/// The file the duplicate list writes beside a log: the path cut at its first point, not at
/// the extension's, with "dup" behind it; so a point in a folder name cuts the name there. A
/// path without a point gets ".dup".
inline std::string dupListName(std::string_view in_name)
{
    const auto point = in_name.find('.');
    if (point == std::string_view::npos) {
        return std::string(in_name) + ".dup";
    }
    return std::string(in_name.substr(0, point + 1)) + "dup";
}

} // namespace vornhale::base
