#include "net/Http.h"

#include "settings/ProfileFile.h"
#include "text/Chars.h"

#include <charconv>
#include <cstdio>
#include <curl/curl.h>
#include <dlfcn.h>
#include <optional>
#include <system_error>

namespace vornhale::net {
namespace {

namespace fs = std::filesystem;

constexpr const char* kWebFile = "Vornhale_web.ini";
constexpr const char* kWebSection = "web";

// libcurl, opened at the first transfer rather than linked: it and the many libraries it
// brings would cost every start of the program some milliseconds, and most runs fetch nothing.
struct Curl
{
    decltype(&curl_global_init) global_init = nullptr;
    decltype(&curl_easy_init) easy_init = nullptr;
    decltype(&curl_easy_setopt) easy_setopt = nullptr;
    decltype(&curl_easy_perform) easy_perform = nullptr;
    decltype(&curl_easy_getinfo) easy_getinfo = nullptr;
    decltype(&curl_easy_strerror) easy_strerror = nullptr;
    decltype(&curl_easy_cleanup) easy_cleanup = nullptr;
    std::string problem; ///< why it could not be opened; empty when it was
};

template <typename Function> bool resolve(void* library, const char* name, Function& into)
{
    into = reinterpret_cast<Function>(::dlsym(library, name));
    return into != nullptr;
}

// The library, opened and initialised once for the program's life.
const Curl& curl()
{
    static const Curl opened = [] {
        Curl c;
        void* const library = ::dlopen("libcurl.so.4", RTLD_NOW | RTLD_LOCAL);
        if (library == nullptr) {
            const char* const why = ::dlerror();
            c.problem = "libcurl could not be opened: " + std::string(why != nullptr ? why : "");
            return c;
        }
        if (!resolve(library, "curl_global_init", c.global_init) ||
            !resolve(library, "curl_easy_init", c.easy_init) ||
            !resolve(library, "curl_easy_setopt", c.easy_setopt) ||
            !resolve(library, "curl_easy_perform", c.easy_perform) ||
            !resolve(library, "curl_easy_getinfo", c.easy_getinfo) ||
            !resolve(library, "curl_easy_strerror", c.easy_strerror) ||
            !resolve(library, "curl_easy_cleanup", c.easy_cleanup)) {
            c.problem = "libcurl lacks a function the program calls";
            return c;
        }
        c.global_init(CURL_GLOBAL_DEFAULT);
        return c;
    }();
    return opened;
}

std::size_t writeToFile(char* data, std::size_t size, std::size_t count, void* file)
{
    return std::fwrite(data, size, count, static_cast<std::FILE*>(file)) * size;
}

// The temporary name sits beside the target, so the rename never crosses file systems.
fs::path temporaryName(const fs::path& target)
{
    fs::path temp = target;
    temp += "_~";
    return temp;
}

// A whole number of seconds above zero, or nothing.
std::optional<long> seconds(std::string_view text)
{
    const std::string_view t = text::trim(text);
    long value = 0;
    const auto [end, ec] = std::from_chars(t.data(), t.data() + t.size(), value);
    if (ec != std::errc() || end != t.data() + t.size() || value <= 0) {
        return std::nullopt;
    }
    return value;
}

class CurlHandle
{
public:
    CurlHandle() : m_handle(curl().easy_init()) {}
    ~CurlHandle()
    {
        if (m_handle != nullptr) {
            curl().easy_cleanup(m_handle);
        }
    }
    CurlHandle(const CurlHandle&) = delete;
    CurlHandle& operator=(const CurlHandle&) = delete;
    CURL* get() const { return m_handle; }

private:
    CURL* m_handle;
};

} // namespace

FetchResult fetchToFile(const std::string& url, const fs::path& target, const Timeouts& timeouts)
{
    FetchResult result;
    if (url.empty()) {
        result.error = "no address configured";
        return result;
    }
    const Curl& lib = curl();
    if (!lib.problem.empty()) {
        result.error = lib.problem;
        return result;
    }
    CurlHandle transfer;
    if (transfer.get() == nullptr) {
        result.error = "libcurl could not start a transfer";
        return result;
    }

    const fs::path temp = temporaryName(target);
    std::FILE* file = std::fopen(temp.c_str(), "wb");
    if (file == nullptr) {
        result.error = "cannot write " + temp.string();
        return result;
    }

    char message[CURL_ERROR_SIZE] = {};
    CURL* h = transfer.get();
    lib.easy_setopt(h, CURLOPT_URL, url.c_str());
    lib.easy_setopt(h, CURLOPT_WRITEFUNCTION, &writeToFile);
    lib.easy_setopt(h, CURLOPT_WRITEDATA, file);
    lib.easy_setopt(h, CURLOPT_ERRORBUFFER, message);
    lib.easy_setopt(h, CURLOPT_CONNECTTIMEOUT, timeouts.connectSeconds);
    lib.easy_setopt(h, CURLOPT_TIMEOUT, timeouts.totalSeconds);
    lib.easy_setopt(h, CURLOPT_FOLLOWLOCATION, 1L);
    lib.easy_setopt(h, CURLOPT_MAXREDIRS, 10L);
    // Only the web: a configured value can never make the program read or write local files.
#if LIBCURL_VERSION_NUM >= 0x075500
    lib.easy_setopt(h, CURLOPT_PROTOCOLS_STR, "http,https");
    lib.easy_setopt(h, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
#else
    lib.easy_setopt(h, CURLOPT_PROTOCOLS, CURLPROTO_HTTP | CURLPROTO_HTTPS);
    lib.easy_setopt(h, CURLOPT_REDIR_PROTOCOLS, CURLPROTO_HTTP | CURLPROTO_HTTPS);
#endif
    // Timeouts without signals: the program may run the transfer off its main thread.
    lib.easy_setopt(h, CURLOPT_NOSIGNAL, 1L);
    lib.easy_setopt(h, CURLOPT_USERAGENT, "Vornhale");

    const CURLcode code = lib.easy_perform(h);
    long status = 0;
    lib.easy_getinfo(h, CURLINFO_RESPONSE_CODE, &status);
    result.httpStatus = status;
    const bool closed = std::fclose(file) == 0;

    std::error_code ec;
    if (code != CURLE_OK) {
        result.error = message[0] != '\0' ? message : lib.easy_strerror(code);
    } else if (status < 200 || status > 299) {
        result.error = "HTTP status " + std::to_string(status);
    } else if (!closed) {
        result.error = "cannot write " + temp.string();
    } else {
        fs::rename(temp, target, ec);
        if (!ec) {
            result.ok = true;
            return result;
        }
        result.error = "cannot rename onto " + target.string() + ": " + ec.message();
    }
    fs::remove(temp, ec);
    return result;
}

std::string urlEncode(std::string_view text)
{
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string out;
    out.reserve(text.size() * 3);
    for (const char c : text) {
        const auto b = static_cast<unsigned char>(c);
        if ((b >= 'A' && b <= 'Z') || (b >= 'a' && b <= 'z') || (b >= '0' && b <= '9') ||
            b == '-' || b == '_' || b == '.' || b == '~') {
            out += c;
        } else {
            out += '%';
            out += kHex[b >> 4];
            out += kHex[b & 0x0F];
        }
    }
    return out;
}

WebConfig WebConfig::load(const fs::path& strPath)
{
    WebConfig config;
    config.m_file = strPath / kWebFile;
    const settings::ProfileFile file(config.m_file);
    for (const auto& entry : file.entries(kWebSection)) {
        const std::string key = text::lower(text::trim(entry.first));
        if (config.m_values.count(key) == 0) {
            config.m_values[key] = file.read(kWebSection, key);
        }
    }
    if (const auto s = seconds(config.value("connect_timeout_s"))) {
        config.m_timeouts.connectSeconds = *s;
    }
    if (const auto s = seconds(config.value("total_timeout_s"))) {
        config.m_timeouts.totalSeconds = *s;
    }
    return config;
}

std::string WebConfig::value(std::string_view key) const
{
    const auto it = m_values.find(text::lower(key));
    return it == m_values.end() ? std::string() : it->second;
}

std::string WebConfig::endpoint(std::string_view key) const
{
    std::string v = value(key);
    while (!v.empty() && v.back() == '/') {
        v.pop_back();
    }
    return v;
}

void WebConfig::setEndpoint(std::string_view key, std::string_view value)
{
    m_values[text::lower(key)] = std::string(text::trim(value));
}

} // namespace vornhale::net
