#pragma once

#include "base/Trace.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace vornhale::readers {

/// The file through which the program and the converter of CTESTWIN logs talk, in the program
/// folder; its one section bears the same name.
inline constexpr std::string_view kCtestwinExchangeFile = "ctestwin2zlog.ini";
/// The key that holds the path of the `.lg8` log.
inline constexpr std::string_view kCtestwinInNameKey = "ctestwin2zlog_in_name";
/// The key that holds the count of contacts, as text.
inline constexpr std::string_view kCtestwinCountKey = "qso_su_str";
/// The suffix that replaces "." and the extension of the `.lg8` path in the converted text.
inline constexpr std::string_view kCtestwinAllSuffix = "_ctestwin2zlog.all";

/// Where a user names an outside converter: the section `[ctestwin2zlog]` of `Vornhale.ini`,
/// the key `command` (a command line run by the shell in the program folder, for example
/// `wine "C:\\CTESTWIN\\ctestwin2zlog.exe"`) and the key `timeout_s` (seconds to wait for its
/// end, 60 when empty).
inline constexpr std::string_view kConverterSettingsFile = "Vornhale.ini";
inline constexpr std::string_view kConverterSection = "ctestwin2zlog";
inline constexpr std::chrono::seconds kDefaultConverterLimit{60};

/// The converter of CTESTWIN logs. It takes no command line: it reads the `.lg8` path from
/// `ctestwin2zlog_in_name` of `ctestwin2zlog.ini` in the program folder, writes the log in
/// zLog's `.ALL` form beside it, under the path with "." and the extension replaced by
/// "_ctestwin2zlog.all", and stores the count of contacts in `qso_su_str`.
class CtestwinConverter
{
public:
    virtual ~CtestwinConverter() = default;

    /// Converts the log that the exchange file in `strPath` names and returns once the
    /// converter has finished. Throws Failure when it cannot do its work.
    virtual void convert(const std::filesystem::path& strPath, base::Trace& trace) = 0;
};

/// The converter built into the program: it reads the `.lg8` itself (Lg8File). Throws as
/// Lg8File does for a file that is no CTESTWIN log, Failure 53 for a missing one.
class BuiltInCtestwinConverter : public CtestwinConverter
{
public:
    void convert(const std::filesystem::path& strPath, base::Trace& trace) override;
};

/// An outside converter: a command line run through the shell in the program folder and
/// waited for, at most `limit`. Throws Failure 53 when the shell cannot find or start it, and
/// Failure 5 when it is still running at the limit (it is then ended).
class CommandCtestwinConverter : public CtestwinConverter
{
public:
    CommandCtestwinConverter(std::string commandLine, std::chrono::milliseconds limit);
    void convert(const std::filesystem::path& strPath, base::Trace& trace) override;

private:
    std::string m_commandLine;
    std::chrono::milliseconds m_limit;
};

/// The converter that the settings of the program folder `strPath` name: the outside command
/// of `[ctestwin2zlog] command` in `Vornhale.ini`, else the built-in one.
std::unique_ptr<CtestwinConverter>
configuredCtestwinConverter(const std::filesystem::path& strPath);

} // namespace vornhale::readers
