#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace vornhale::net {

/// Limits of one request, in seconds.
struct Timeouts
{
    long connectSeconds = 5;
    long totalSeconds = 20;
};

/// How one download ended.
struct FetchResult
{
    bool ok = false;     ///< the whole body was received with a 2xx status and is in place
    long httpStatus = 0; ///< 0 when no answer came (refused, timed out, bad address)
    std::string error;   ///< a plain description when not ok
};

/// Downloads `url` into `target`: the body goes to a temporary name in the same folder and is
/// renamed onto `target` only when complete, so a failed download leaves an older `target`
/// as it was. Never throws.
FetchResult fetchToFile(const std::string& url, const std::filesystem::path& target,
                        const Timeouts& timeouts);

/// `text` with every byte but the unreserved ones (A-Z a-z 0-9 - _ . ~) as %XX.
std::string urlEncode(std::string_view text);

/// The endpoints and download homes of `Vornhale_web.ini`, section `[web]`, in the program
/// folder: each value is a scheme, host and port ("http://127.0.0.1:8080") to which a path is
/// added; an empty value means not configured. Also `connect_timeout_s`, `total_timeout_s`.
class WebConfig
{
public:
    /// Reads `<strPath>/Vornhale_web.ini`; a missing file leaves every endpoint empty and the
    /// default timeouts.
    static WebConfig load(const std::filesystem::path& strPath);

    /// The value of `key` (`qsl2_search`, `call_directory`, `nfdxa_page`, `nfdxa_probe`,
    /// `hamlog_home`, `archiver_home`, `archiver_home2`, `cty_home`, `zlog_data_home`) without
    /// a trailing "/"; empty when not configured.
    std::string endpoint(std::string_view key) const;
    const Timeouts& timeouts() const { return m_timeouts; }

    /// The trimmed value of any key of the section (case-blind), empty when absent.
    std::string value(std::string_view key) const;
    /// Replaces an endpoint in memory (nothing is written), as a test or a front end sets it.
    void setEndpoint(std::string_view key, std::string_view value);
    void setTimeouts(const Timeouts& timeouts) { m_timeouts = timeouts; }

private:
    std::filesystem::path m_file;
    Timeouts m_timeouts;
    std::map<std::string, std::string> m_values; ///< lower-case key to trimmed value
};

} // namespace vornhale::net
