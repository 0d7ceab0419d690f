#include "readers/CtestwinConverter.h"

#include "failure/Failure.h"
#include "readers/Lg8File.h"
#include "readers/OutputNames.h"
#include "readers/OutsideProgram.h"
#include "settings/ProfileFile.h"
#include "text/Chars.h"

namespace vornhale::readers {
namespace {

namespace fs = std::filesystem;

// The exit status of a shell that could not find the command, and of one that found it but
// could not run it.
constexpr int kCommandNotFound = 127;
constexpr int kCommandNotExecutable = 126;

} // namespace

void BuiltInCtestwinConverter::convert(const fs::path& strPath, base::Trace& trace)
{
    settings::ProfileFile exchange(strPath / kCtestwinExchangeFile);
    const std::string lg8 = exchange.read(kCtestwinExchangeFile, kCtestwinInNameKey);
    trace.line("   ctestwin2zlog (内蔵) : " + lg8);
    const Lg8File log = Lg8File::read(lg8);
    writeZlogAll(log, replaceExtension(lg8, kCtestwinAllSuffix));
    exchange.write(kCtestwinExchangeFile, kCtestwinCountKey, std::to_string(log.size()));
    if (!exchange.save()) {
        throw failure::Failure(failure::PathFileAccess,
                               "パス名が無効です。 " + exchange.path().string());
    }
}

CommandCtestwinConverter::CommandCtestwinConverter(std::string commandLine,
                                                   std::chrono::milliseconds limit)
    : m_commandLine(std::move(commandLine)), m_limit(limit)
{
}

void CommandCtestwinConverter::convert(const fs::path& strPath, base::Trace& trace)
{
    trace.line("   ctestwin2zlog : " + m_commandLine);
    const OutsideRun run = runOutsideProgram(m_commandLine, strPath, m_limit);
    switch (run.end) {
    case OutsideRun::End::NotStarted:
        throw failure::Failure(failure::FileNotFound,
                               "ファイルが見つかりません。 " + m_commandLine);
    case OutsideRun::End::TimedOut:
        throw failure::Failure(
            failure::InvalidCall,
            "ctestwin2zlog が " +
                std::to_string(std::chrono::duration_cast<std::chrono::seconds>(m_limit).count()) +
                " 秒以内に終わりませんでした: " + m_commandLine);
    case OutsideRun::End::Exited:
        break;
    }
    if (run.status == kCommandNotFound || run.status == kCommandNotExecutable) {
        throw failure::Failure(failure::FileNotFound,
                               "ファイルが見つかりません。 " + m_commandLine);
    }
    // What the converter did is told by the keys it left; its status only goes to the trace.
    trace.line("   ctestwin2zlog 終了コード : " + std::to_string(run.status));
}

std::unique_ptr<CtestwinConverter> configuredCtestwinConverter(const fs::path& strPath)
{
    const settings::ProfileFile settings(strPath / kConverterSettingsFile);
    std::string command;
    std::string timeout;
    // The whole command line, which may be longer than a settings value usually is.
    for (const auto& [key, value] : settings.entries(kConverterSection)) {
        if (text::equalsNoCase(text::trim(key), "command")) {
            command = std::string(text::trim(value));
        } else if (text::equalsNoCase(text::trim(key), "timeout_s")) {
            timeout = std::string(text::trim(value));
        }
    }
    if (command.empty()) {
        return std::make_unique<BuiltInCtestwinConverter>();
    }
    std::chrono::milliseconds limit = kDefaultConverterLimit;
    if (const auto seconds = text::toNumber(timeout); seconds && *seconds > 0) {
        limit = std::chrono::milliseconds(static_cast<long long>(*seconds * 1000));
    }
    return std::make_unique<CommandCtestwinConverter>(std::move(command), limit);
}

} // namespace vornhale::readers
