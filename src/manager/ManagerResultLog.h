#pragma once

#include "manager/WebManagerSearch.h"
#include "text/LineFile.h"

#include <ctime>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace vornhale::manager {

/// The result list of the web search of one conversion (`Get_Mng_result_name`, the input's
/// folder and stem followed by "mng_rslt"): Shift-JIS lines, written while the conversion
/// runs. Its head is the input's path, the date and time, and an empty line; then each search
/// adds its record.
class ManagerResultLog
{
public:
    /// Opens `path` for writing, replacing it, and writes the head: `in_name`, `now` and an
    /// empty line. Closes a list that was still open first. Throws failure::Failure 75 when
    /// the file cannot be opened.
    void open(const std::filesystem::path& path, std::string_view in_name, std::string_view now);
    bool isOpen() const { return m_out != nullptr; }

    /// Adds the record of one search: "Searching for : " and the call, "MNG           : " and
    /// the web's manager, "Date          : ", "Source        : ", "Mng ﾃ ｷ ｽ ﾄ   : " and
    /// the file's answer, the line `Label29` (the mode of the search), "Set MNG       : " and
    /// the manager set, and an empty line. Nothing when the list is not open.
    void add(const WebSearchResult& result, std::string_view Label29);

    /// Closes the list (nothing when it is not open).
    void close();

    /// Whether `path` may be shown as the result list of `in_name`: it exists, is not empty
    /// and its first line equals `in_name`.
    static bool belongsTo(const std::filesystem::path& path, std::string_view in_name);

    /// `when` as local time in the form "yyyy/mm/dd hh:mm:ss".
    static std::string dateTimeText(std::time_t when);

private:
    std::unique_ptr<text::LineWriter> m_out;
};

} // namespace vornhale::manager
