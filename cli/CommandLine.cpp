#include "CommandLine.h"

#include "base/ProgramFolder.h"
#include "session/OptionCatalog.h"
#include "settings/OptionSchema.h"
#include "text/Chars.h"
#include "text/Utf8.h"

#include <cstdio>
#include <iconv.h>
#include <iostream>

namespace vornhale::cli {
namespace {

// Whether one character (UTF-8) has a Shift-JIS (CP932) form.
bool encodable(std::string_view character)
{
    static iconv_t cd = iconv_open("CP932", "UTF-8");
    if (cd == reinterpret_cast<iconv_t>(-1)) {
        return true;
    }
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    std::string in(character);
    char out[16];
    char* inPtr = in.data();
    std::size_t inLeft = in.size();
    char* outPtr = out;
    std::size_t outLeft = sizeof out;
    return iconv(cd, &inPtr, &inLeft, &outPtr, &outLeft) != static_cast<std::size_t>(-1) &&
           inLeft == 0;
}

// The first character of `text` that Shift-JIS cannot hold, with its code point; empty
// when every character has a form there.
std::string firstUnencodable(std::string_view text, char32_t& codePoint)
{
    std::size_t pos = 0;
    while (pos < text.size()) {
        const std::size_t start = pos;
        codePoint = text::nextCodePoint(text, pos);
        const std::string_view character = text.substr(start, pos - start);
        if (static_cast<unsigned char>(character.front()) >= 0x80 && !encodable(character)) {
            return std::string(character);
        }
    }
    return {};
}

} // namespace

void HomeOption::addTo(CLI::App* command)
{
    command->add_option("--home", m_text,
                        "Program folder (default: $VORNHALE_HOME or XDG data home)");
}

std::optional<std::filesystem::path> HomeOption::value() const
{
    if (m_text.empty()) {
        return std::nullopt;
    }
    return std::filesystem::path(m_text);
}

std::optional<std::string> settingRefusal(std::string_view key, std::string_view value)
{
    const settings::SchemaKey* schema = settings::findAnySchemaKey(key);
    const session::OptionEntry* entry = session::OptionCatalog::find(key);
    if (schema == nullptr && entry != nullptr) {
        schema = session::OptionCatalog::schemaKey(*entry);
    }
    if (schema == nullptr && entry == nullptr) {
        return "unknown key: " + std::string(key) +
               " (the keys are those of the settings files, see vornhale-cli settings show)";
    }
    if (schema != nullptr) {
        switch (schema->kind) {
        case settings::ValueKind::Stamp:
            return std::string(key) + " is written by the program itself";
        case settings::ValueKind::Tick:
            if (!settings::valueFits(*schema, value)) {
                return std::string(key) + " is a tick: it takes 0 or 1, not \"" +
                       std::string(value) + "\"";
            }
            break;
        case settings::ValueKind::Group:
            if (!settings::valueFits(*schema, value)) {
                return std::string(key) + " is a group of " + std::to_string(schema->members) +
                       ": it takes 0 to " + std::to_string(schema->members - 1) + ", not \"" +
                       std::string(value) + "\"";
            }
            break;
        case settings::ValueKind::Number:
            if (!settings::valueFits(*schema, value)) {
                return std::string(key) + " takes a whole number, not \"" + std::string(value) +
                       "\"";
            }
            break;
        case settings::ValueKind::Text:
        case settings::ValueKind::Widths:
            break;
        }
        return std::nullopt;
    }
    // An option of the window without a settings key of its own.
    if ((entry->kind == session::OptionKind::Tick ||
         entry->kind == session::OptionKind::MenuTick) &&
        value != "0" && value != "1") {
        return std::string(key) + " is a tick: it takes 0 or 1, not \"" + std::string(value) + "\"";
    }
    if (entry->kind == session::OptionKind::Button) {
        return std::string(key) + " is a button and holds no value";
    }
    return std::nullopt;
}

bool parseSets(const std::vector<std::string>& sets, Overrides& overrides)
{
    for (const std::string& set : sets) {
        const auto eq = set.find('=');
        if (eq == std::string::npos || eq == 0) {
            std::cerr << "--set needs KEY=VALUE: " << set << "\n";
            return false;
        }
        std::string key = set.substr(0, eq);
        std::string value = set.substr(eq + 1);
        if (const auto refusal = settingRefusal(key, value)) {
            std::cerr << "--set " << set << ": " << *refusal << "\n";
            return false;
        }
        overrides.emplace_back(std::move(key), std::move(value));
    }
    return true;
}

std::optional<std::string> yearRefusal(std::string_view year)
{
    const bool fourDigits = year.size() == 4 && std::all_of(year.begin(), year.end(), [](char c) {
                                return c >= '0' && c <= '9';
                            });
    if (!fourDigits) {
        return "--year takes four digits (2026), not \"" + std::string(year) + "\"";
    }
    return std::nullopt;
}

std::optional<std::string> logRefusal(const std::filesystem::path& log)
{
    std::error_code ec;
    if (std::filesystem::is_directory(log, ec)) {
        return "the log is a folder, not a file: " + log.string();
    }
    if (!std::filesystem::exists(log, ec)) {
        return "no such log: " + log.string();
    }
    return std::nullopt;
}

std::optional<std::string> pathRefusal(const std::filesystem::path& path, std::string_view what)
{
    const std::string text = std::filesystem::absolute(path).string();
    char32_t codePoint = 0;
    const std::string bad = firstUnencodable(text, codePoint);
    if (bad.empty()) {
        return std::nullopt;
    }
    char number[16];
    std::snprintf(number, sizeof number, "U+%04X", static_cast<unsigned>(codePoint));
    return std::string(what) + " holds a character that Shift-JIS cannot hold (" + number +
           "), and the files that name it are written in Shift-JIS: " + text;
}

bool checkLogArgument(const std::filesystem::path& log)
{
    std::optional<std::string> refusal = logRefusal(log);
    if (!refusal) {
        refusal = pathRefusal(log, "the log's path");
    }
    if (refusal) {
        std::cerr << *refusal << "\n";
        return false;
    }
    return true;
}

bool checkHome(const std::optional<std::filesystem::path>& home)
{
    if (const auto refusal =
            pathRefusal(base::ProgramFolder::resolve(home).strPath, "the program folder")) {
        std::cerr << *refusal << "\n";
        return false;
    }
    return true;
}

} // namespace vornhale::cli
