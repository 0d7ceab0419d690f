#include "manager/ManagerResultLog.h"

#include "text/SjisCodec.h"

#include <cstdio>
#include <system_error>

namespace vornhale::manager {

void ManagerResultLog::open(const std::filesystem::path& path, std::string_view in_name,
                            std::string_view now)
{
    close();
    m_out = std::make_unique<text::LineWriter>(path, text::LineWriter::Mode::Truncate);
    m_out->write(in_name);
    m_out->write(now);
    m_out->write("");
}

void ManagerResultLog::add(const WebSearchResult& r, std::string_view Label29)
{
    if (!m_out) {
        return;
    }
    m_out->write("Searching for : " + r.Search_call);
    m_out->write("MNG           : " + r.mng_web);
    m_out->write("Date          : " + r.Web_date);
    m_out->write("Source        : " + r.Web_source);
    m_out->write("Mng ﾃ ｷ ｽ ﾄ   : " + r.mng_file);
    m_out->write(Label29);
    m_out->write("Set MNG       : " + r.Set_mng);
    m_out->write("");
}

void ManagerResultLog::close()
{
    if (!m_out) {
        return;
    }
    // Release the writer before closing, so that a failed write does not leave it open.
    std::unique_ptr<text::LineWriter> out = std::move(m_out);
    out->close();
}

bool ManagerResultLog::belongsTo(const std::filesystem::path& path, std::string_view in_name)
{
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec) || std::filesystem::file_size(path, ec) == 0 ||
        ec) {
        return false;
    }
    const std::vector<std::string> lines = text::readLines(path);
    return !lines.empty() && lines.front() == in_name;
}

std::string ManagerResultLog::dateTimeText(std::time_t when)
{
    std::tm local{};
    localtime_r(&when, &local);
    char buffer[80];
    std::snprintf(buffer, sizeof buffer, "%04d/%02d/%02d %02d:%02d:%02d", local.tm_year + 1900,
                  local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
    return buffer;
}

} // namespace vornhale::manager
