#include "base/FileMask.h"

#include "text/Chars.h"
#include "text/Utf8.h"
#include "text/WriteBehind.h"

#include <system_error>
#include <vector>

namespace vornhale::base {

bool matchesMask(std::string_view name, std::string_view mask)
{
    // Compare by characters so that "?" stands for one whole character.
    std::vector<char32_t> n, m;
    const std::string un = text::upper(name), um = text::upper(mask);
    for (std::size_t p = 0; p < un.size();) {
        n.push_back(text::nextCodePoint(un, p));
    }
    for (std::size_t p = 0; p < um.size();) {
        m.push_back(text::nextCodePoint(um, p));
    }
    std::size_t i = 0, j = 0, star = std::string::npos, mark = 0;
    while (i < n.size()) {
        if (j < m.size() && (m[j] == U'?' || m[j] == n[i])) {
            ++i;
            ++j;
        } else if (j < m.size() && m[j] == U'*') {
            star = j++;
            mark = i;
        } else if (star != std::string::npos) {
            j = star + 1;
            i = ++mark;
        } else {
            return false;
        }
    }
    while (j < m.size() && m[j] == U'*') {
        ++j;
    }
    return j == m.size();
}

int deleteByMask(const std::filesystem::path& folder, std::string_view mask,
                 const std::function<void(const std::filesystem::path&)>& before)
{
    std::error_code ec;
    std::vector<std::filesystem::path> doomed;
    for (const auto& entry : std::filesystem::directory_iterator(folder, ec)) {
        if (entry.is_regular_file(ec) && matchesMask(entry.path().filename().string(), mask)) {
            doomed.push_back(entry.path());
        }
    }
    int deleted = 0;
    for (const auto& path : doomed) {
        if (before) {
            before(path);
        }
        if (text::removeBehind(path, ec)) {
            ++deleted;
        }
    }
    return deleted;
}

std::filesystem::path findFileNoCase(const std::filesystem::path& folder, std::string_view name)
{
    std::error_code ec;
    const std::filesystem::path exact = folder / std::filesystem::path(name);
    if (std::filesystem::is_regular_file(exact, ec)) {
        return exact;
    }
    std::filesystem::directory_iterator it(folder, ec);
    if (ec) {
        return {};
    }
    for (const auto& entry : it) {
        const std::string candidate = entry.path().filename().string();
        if (text::equalsNoCase(candidate, name) &&
            entry.is_regular_file(ec)) {
            return entry.path();
        }
    }
    return {};
}

} // namespace vornhale::base
