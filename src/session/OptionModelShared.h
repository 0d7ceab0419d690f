#pragma once

// What the units of the option model share: the texts its rules set and small tests.

#include "base/RunObserver.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace vornhale::session::optionrules {

using base::Colour;

inline constexpr std::string_view kStartButtonTool = "変換";
inline constexpr std::string_view kStateItem = "州名";
inline constexpr std::string_view kStateClash = "州名 又は Province のどちらかにして下さい。";
inline constexpr std::string_view kWebOnlyFile = "MNG ファイルのみ有効";
inline constexpr std::string_view kNotUsed = "使用しない";


inline bool hasSeparator(std::string_view path)
{
    return path.find('/') != std::string_view::npos || path.find('\\') != std::string_view::npos;
}

inline bool isStartTabTick(std::string_view name)
{
    return name == "Check7" || name == "Check8" || name == "Check11";
}

// Folders compare as normal paths, a trailing separator or none.
inline bool sameFolder(const std::filesystem::path& a, const std::filesystem::path& b)
{
    auto norm = [](const std::filesystem::path& p) {
        std::string s = p.lexically_normal().generic_string();
        while (s.size() > 1 && s.back() == '/') {
            s.pop_back();
        }
        return s;
    };
    return norm(a) == norm(b);
}

inline bool fileExists(const std::filesystem::path& p)
{
    std::error_code ec;
    return !p.empty() && std::filesystem::is_regular_file(p, ec);
}

} // namespace vornhale::session::optionrules
