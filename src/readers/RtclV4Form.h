#pragma once

#include "base/Trace.h"
#include "readers/InputKind.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace vornhale::readers {

/// `lblIn_name` of the RTCL v4 window when the chosen file is not of the version asked for.
inline constexpr std::string_view kNotBefore430Label =
    "RTCL ver 4.30 より前のｌｏｇファイルではありません";
inline constexpr std::string_view kNotFrom430Label =
    "RTCL ver 4.30 以降のｌｏｇファイルではありません";

/// What the RTCL v4 window (`frmRTCL_v4`) does, without the window: it picks a binary log of
/// one generation and writes it as a zLog `.TXT` or `.ALL` text beside the log.
class RtclV4Form
{
public:
    /// `mnuVer_430mae`: picks `path` as a log of version 4.00 to before 4.30, by the version
    /// check of the open menus. Accepted, `f_type` is "log_430mae" and `lblIn_name` the path;
    /// refused, `lblIn_name` holds `kNotBefore430Label`, `in_name` is cleared and false is
    /// returned. Throws Failure 53 when the file cannot be read.
    bool mnuVer_430mae(const std::filesystem::path& path);
    /// `mnuVer_430ato`: the same for version 4.30 and later ("log_430ato",
    /// `kNotFrom430Label`).
    bool mnuVer_430ato(const std::filesystem::path& path);

    /// `cmdMake_txt`: the chosen log as a `.TXT` text in its name with ".log" replaced by
    /// "_log2z.txt"; returns the path. Throws Failure 5 when no log is chosen, and what
    /// `makeZlogFromBinary` throws.
    std::string cmdMake_txt(base::Trace& trace) const;
    /// `cmdMake_all`: the same as a `.ALL` text in "_log2z.all".
    std::string cmdMake_all(base::Trace& trace) const;

    const std::string& in_name() const { return m_in_name; }
    const std::string& f_type() const { return m_f_type; }
    const std::string& lblIn_name() const { return m_lblIn_name; }

private:
    bool choose(const std::filesystem::path& path, InputKind kind);
    std::string make(bool all, base::Trace& trace) const;

    std::string m_in_name;
    std::string m_f_type;
    std::string m_lblIn_name;
    InputKind m_kind = InputKind::None;
};

} // namespace vornhale::readers
