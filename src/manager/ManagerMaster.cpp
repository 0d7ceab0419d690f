#include "manager/ManagerMaster.h"

#include "failure/Failure.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/SjisCodec.h"
#include "text/SjisText.h"

namespace vornhale::manager {
namespace {

constexpr long kCallStart = 2, kManagerStart = 22, kColumnWidth = 20;

bool isAscii(std::string_view bytes)
{
    for (const char c : bytes) {
        if (static_cast<unsigned char>(c) >= 0x80) {
            return false;
        }
    }
    return true;
}

// Byte columns of a line of single-byte characters: the bytes themselves.
std::string_view asciiColumn(std::string_view raw, long start, long width)
{
    const auto from = static_cast<std::size_t>(start - 1);
    return from >= raw.size() ? std::string_view()
                              : raw.substr(from, static_cast<std::size_t>(width));
}

// The key of a call: upper case, taken without decoding when the call is plain ASCII.
std::string keyOf(std::string_view call)
{
    if (!isAscii(call)) {
        return text::upper(call);
    }
    std::string key(call);
    for (char& c : key) {
        if (c >= 'a' && c <= 'z') {
            c = static_cast<char>(c - 'a' + 'A');
        }
    }
    return key;
}

} // namespace

void ManagerMaster::read_MNG_z_full_mp(const std::filesystem::path& file, base::Trace& trace,
                                       base::RunObserver* observer)
{
    trace.line("Private sub read_MNG_z_full_mp()");
    if (observer != nullptr) {
        observer->status("　MNG_Vornhale_full.txt を読込中 ．．．", base::Colour::Black);
    }
    const long lines = text::Count_lines(file);
    text::LineReader in(file);
    m_kazu = lines - 2;
    m_calls.assign(m_kazu >= 0 ? static_cast<std::size_t>(m_kazu) + 1 : 0, std::string());
    m_managers.assign(m_calls.size(), std::string());
    m_index.clear();
    m_index.reserve(m_calls.size());

    // The two heading lines are read and dropped; a file without them has ended too early.
    in.nextRaw();
    in.nextRaw();
    std::size_t i = 0;
    while (!in.atEnd()) {
        const std::string_view raw = in.nextRaw();
        if (i >= m_calls.size()) {
            // The line count bounds the entries; a longer file cannot occur, but an entry
            // must never be written past the end.
            m_calls.emplace_back();
            m_managers.emplace_back();
        }
        if (isAscii(raw)) {
            // Most lines are plain ASCII, where a byte is a character.
            m_calls[i] = std::string(text::trim(asciiColumn(raw, kCallStart, kColumnWidth)));
            m_managers[i] = std::string(text::trim(asciiColumn(raw, kManagerStart, kColumnWidth)));
        } else {
            const std::string line = text::decodeSjis(raw);
            m_calls[i] = std::string(text::trim(text::Mid_sjis(line, kCallStart, kColumnWidth)));
            m_managers[i] =
                std::string(text::trim(text::Mid_sjis(line, kManagerStart, kColumnWidth)));
        }
        // The first entry of a call wins, as a walk from the top would find it.
        m_index.try_emplace(keyOf(m_calls[i]), i);
        ++i;
    }
    m_loaded = true;
    if (observer != nullptr) {
        observer->status("", base::Colour::Black);
    }
}

std::string ManagerMaster::MNG_lookup(std::string_view call) const
{
    if (m_kazu < 0) {
        return {};
    }
    const auto it = m_index.find(keyOf(text::trim(call)));
    return it == m_index.end() ? std::string() : m_managers[it->second];
}

} // namespace vornhale::manager
