#include "base/Trace.h"

#include "failure/Failure.h"
#include "text/SjisCodec.h"

#include <ctime>
#include <system_error>

namespace vornhale::base {

std::string Trace::stampOf(std::time_t when)
{
    std::tm local{};
    localtime_r(&when, &local);
    char buf[32];
    std::strftime(buf, sizeof buf, "%Y%m%d_%H%M%S", &local);
    return buf;
}

Trace::Trace(const std::filesystem::path& errorLogDir)
{
    std::error_code ec;
    std::filesystem::create_directories(errorLogDir, ec);
    if (!std::filesystem::is_directory(errorLogDir, ec)) {
        throw failure::Failure(failure::PathFileAccess,
                      "パス名が無効です。 " + errorLogDir.string());
    }
    const std::string stamp = stampOf(std::time(nullptr));
    m_path = errorLogDir / (stamp + ".txt");
    for (int n = 2; std::filesystem::exists(m_path, ec); ++n) {
        m_path = errorLogDir / (stamp + "_" + std::to_string(n) + ".txt");
    }
    m_file = std::fopen(m_path.c_str(), "wb");
    if (m_file == nullptr) {
        throw failure::Failure(failure::PathFileAccess, "パス名が無効です。 " + m_path.string());
    }
}

Trace::~Trace()
{
    if (m_file != nullptr) {
        std::fclose(m_file);
    }
}

void Trace::line(std::string_view text)
{
    if (m_file == nullptr) {
        return;
    }
    const std::lock_guard lock(m_mutex);
    if (m_held && *m_held == std::this_thread::get_id()) {
        m_heldLines.emplace_back(text);
        return;
    }
    write(text);
}

void Trace::write(std::string_view text)
{
    const std::string bytes = text::encodeSjis(text);
    std::fwrite(bytes.data(), 1, bytes.size(), m_file);
    std::fwrite("\r\n", 1, 2, m_file);
    std::fflush(m_file);
}

void Trace::holdThisThread()
{
    const std::lock_guard lock(m_mutex);
    m_held = std::this_thread::get_id();
}

void Trace::endHold(bool keep)
{
    const std::lock_guard lock(m_mutex);
    if (keep) {
        for (const std::string& held : m_heldLines) {
            write(held);
        }
    }
    m_heldLines.clear();
    m_held.reset();
}

} // namespace vornhale::base
