#include "reference/CtyImport.h"

#include "failure/Failure.h"
#include "text/ByteKeySort.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"
#include "text/SjisCodec.h"
#include "text/SjisText.h"
#include "text/Utf8.h"

#include <cstdio>
#include <system_error>

namespace vornhale::reference {
namespace fs = std::filesystem;

namespace {

// An entity ends after this many prefix lines even without ";".
constexpr int kMaxPrefixLines = 801;
// Characters of one prefix line that are read.
constexpr std::size_t kMaxLineChars = 500;
// Rows of the alias table.
constexpr std::size_t kMaxConvRows = 51;

// The folder as the operator sees it in a message: ending in a separator.
std::string folderText(const fs::path& folder)
{
    std::string s = folder.string();
    if (s.empty() || (s.back() != '/' && s.back() != '\\')) {
        s += '/';
    }
    return s;
}


// The text before the first ":" of a header column, trimmed; the whole column when it has
// none.
std::string beforeColon(std::string_view column)
{
    const auto at = column.find(':');
    return std::string(text::trim(at == std::string_view::npos ? column : column.substr(0, at)));
}

void writeBytesTo(const fs::path& path, std::string_view bytes)
{
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (f == nullptr) {
        throw failure::Failure(failure::PathFileAccess,
                           "パス名が無効です。 " + path.string());
    }
    const bool ok = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
    if (std::fclose(f) != 0 || !ok) {
        throw failure::Failure(failure::DeviceIo, "デバイス I/O エラーです。 " + path.string());
    }
}

struct Header
{
    std::string name;
    std::string primary;
    std::string continent;
};

Header readHeader(std::string_view line)
{
    Header h;
    h.name = beforeColon(text::left(line, 30));
    h.continent = CtyImport::continentText(text::mid(line, 37, 2));
    h.primary = beforeColon(text::mid(line, 70, 7));
    return h;
}

// `s` left-aligned in `width` characters into `out`: blank-padded, never cut.
void appendPadded(std::string& out, std::string_view s, std::size_t width)
{
    out.append(s);
    const std::size_t n = text::isAsciiText(s) ? s.size() : text::charCount(s);
    if (n < width) {
        out.append(width - n, ' ');
    }
}

// The upper-case text of a prefix line that is read: trimmed, its first 500 characters.
// Prefix lines are ASCII, which is upper-cased in place; other text takes the full rule.
std::string_view prefixChars(std::string_view line, std::string& buffer)
{
    const std::string_view t = text::trim(line);
    if (!text::isAsciiText(t)) {
        buffer = text::upper(text::left(t, kMaxLineChars));
        return buffer;
    }
    buffer.assign(t.substr(0, kMaxLineChars));
    for (char& c : buffer) {
        if (c >= 'a' && c <= 'z') {
            c = static_cast<char>(c - 0x20);
        }
    }
    return buffer;
}

// Reads one prefix line and writes a cty_dat1.txt line for each prefix that a "," or ";"
// ends. A prefix left open at the end of the line is not written. Returns true at ";".
bool readPrefixLine(std::string_view line, const Header& h, text::LineWriter& out)
{
    std::string buffer, padded;
    const std::string_view chars = prefixChars(line, buffer);
    std::size_t start = 0;
    for (std::size_t i = 0; i < chars.size(); ++i) {
        const char c = chars[i];
        if (c != ',' && c != ';') {
            continue;
        }
        std::string_view prefix = chars.substr(start, i - start);
        // Zone overrides "(..)" and "[..]" are not part of the prefix.
        prefix = prefix.substr(0, prefix.find('('));
        prefix = prefix.substr(0, prefix.find('['));
        // Cut to ten characters as the column takes it, then padded.
        padded = text::padRight(prefix, 10);
        out.writeRecord({std::string_view(padded), std::string_view(h.name),
                         std::string_view(h.primary), std::string_view(h.continent)});
        start = i + 1;
        if (c == ';') {
            return true;
        }
    }
    return false;
}

} // namespace

CtyImport::CtyImport(CtyPlaces places, base::Trace& trace, base::Dialogs& dialogs)
    : m_places(std::move(places)), m_trace(trace), m_dialogs(dialogs)
{
}

std::string CtyImport::continentText(std::string_view two)
{
    static constexpr std::pair<std::string_view, std::string_view> kNumbers[] = {
        {"AF", " 1"}, {"AS", " 2"}, {"EU", " 3"}, {"NA", " 4"}, {"OC", " 5"}, {"SA", " 6"}};
    for (const auto& [letters, number] : kNumbers) {
        if (two == letters) {
            return std::string(two) + std::string(number);
        }
    }
    return std::string(two);
}

void CtyImport::missing(const fs::path& folder, std::string_view name)
{
    m_dialogs.message("Vornhale", folderText(folder) + std::string(name) + "　がありません。",
                      base::Dialogs::Icon::Exclamation);
}

bool CtyImport::importAll(const fs::path& dxccMasPath)
{
    m_trace.line("Private sub cmdStart_cty_dat_sep");
    if (!cty_dat_sep()) {
        return false;
    }
    m_trace.line("Private sub cmdStart_make_dx_mas2_new");
    make_dx_mas2_new();
    m_trace.line("Private sub cmdStart_cty_mas_read");
    cty_mas_read();
    m_trace.line("Private sub cmdStart_make_dxcc_mas");
    make_dxcc_mas(dxccMasPath);
    return true;
}

bool CtyImport::cty_dat_sep()
{
    writeLineEndsDoubled();
    splitEntities();
    if (!fs::is_regular_file(m_places.program("cty_conv.txt"))) {
        missing(m_places.strPath, "cty_conv.txt");
        return false;
    }
    loadConv();
    return true;
}

void CtyImport::writeLineEndsDoubled()
{
    const fs::path cty = m_places.program("cty.dat");
    if (!fs::is_regular_file(cty)) {
        missing(m_places.strPath, "cty.dat");
    }
    const std::string in = text::readFileBytes(cty);
    // Every CR and every LF becomes CR LF, so a CR LF pair becomes two line ends: the empty
    // lines that follow add no prefixes.
    std::string out;
    out.reserve(in.size() + in.size() / 16);
    for (const char c : in) {
        if (c == '\r' || c == '\n') {
            out += "\r\n";
        } else {
            out.push_back(c);
        }
    }
    writeBytesTo(m_places.work("cty_dat0.txt"), out);
}

void CtyImport::splitEntities()
{
    const std::string bytes = text::readFileBytes(m_places.work("cty_dat0.txt"));
    const auto lines = text::splitLines(bytes);
    text::LineWriter out(m_places.work("cty_dat1.txt"));
    std::size_t i = 0;
    while (i < lines.size()) {
        const std::string header = text::decodeSjis(lines[i++]);
        if (text::trim(header).empty()) {
            continue;
        }
        const Header h = readHeader(header);
        bool ended = false;
        for (int n = 0; n < kMaxPrefixLines && !ended && i < lines.size(); ++n) {
            ended = readPrefixLine(text::decodeSjis(lines[i++]), h, out);
        }
    }
    out.close();
}

void CtyImport::loadConv()
{
    m_tables.cty_conv.clear();
    for (const std::string& line : text::readLines(m_places.program("cty_conv.txt"))) {
        if (m_tables.cty_conv.size() >= kMaxConvRows) {
            break;
        }
        if (text::startsWith(line, ";") || text::trim(line).empty() ||
            line.find(',') == std::string::npos) {
            continue;
        }
        // The two texts follow the record rule: a quoted text keeps its blanks, so a row can
        // be padded like an entity from the long master.
        text::RecordReader fields = text::RecordReader::fromText(line);
        CtyConvRow row;
        row.from = fields.field();
        row.to = fields.atEnd() ? std::string() : fields.field();
        m_tables.cty_conv.push_back(std::move(row));
    }
}

void CtyImport::make_dx_mas2_new()
{
    const fs::path dat1 = m_places.work("cty_dat1.txt");
    const fs::path dat3 = m_places.work("cty_dat3.txt");
    if (!fs::is_regular_file(dat1)) {
        missing(m_places.drive_path, "cty_dat1.txt");
    }
    try {
        text::sortLinesByKey(dat1, dat3, 1, 10, true);
    } catch (const failure::Failure&) {
        // A failed sort leaves no output; the test below reports it.
        std::error_code ec;
        fs::remove(dat3, ec);
    }
    if (!fs::is_regular_file(dat3)) {
        missing(m_places.drive_path, "cty_dat3.txt");
    }
    text::RecordReader in(dat3);
    text::LineWriter shortMaster(m_places.program("cty_mastS.txt"),
                                 text::LineWriter::Mode::ReplaceWhenDone);
    text::LineWriter longMaster(m_places.program("cty_mastL.txt"),
                                text::LineWriter::Mode::ReplaceWhenDone);
    std::vector<std::string_view> f;
    std::string line, paddedPrefix, paddedName, paddedPrimary;
    while (!in.atEnd()) {
        in.fieldViews(4, f);
        const std::string_view prefix = f[0], name = f[1], primary = f[2], continent = f[3];
        // "*" entities are not DXCC entities.
        if (text::startsWith(primary, "*")) {
            continue;
        }
        const bool exact = text::contains(prefix, "=");
        const std::string_view bare = text::trim(prefix);
        const std::size_t length = text::isAsciiText(bare) ? bare.size() : text::charCount(bare);
        auto writeLong = [&] {
            paddedPrefix.clear();
            appendPadded(paddedPrefix, prefix, 10);
            paddedName.clear();
            appendPadded(paddedName, name, 26);
            paddedPrimary.clear();
            appendPadded(paddedPrimary, primary, 7);
            longMaster.writeRecord({std::string_view(paddedPrefix), std::string_view(paddedName),
                                    std::string_view(paddedPrimary), continent});
        };
        if (!exact && length < 7) {
            line.assign("'");
            line += text::padRight(bare, 7);
            line += text::padRight(primary, 11);
            line += text::padRight(continent, 6);
            line += text::padRight(name, 28);
            shortMaster.write(line);
        } else if (!exact) {
            // The long prefixes of IG9 are left out on purpose.
            if (text::trim(primary) != "IG9") {
                writeLong();
            }
        } else {
            writeLong();
        }
    }
    shortMaster.close();
    longMaster.close();
}

void CtyImport::cty_mas_read()
{
    const fs::path path = m_places.program("cty_mastS.txt");
    m_tables.cty_s_kazu = text::Count_lines(path);
    const auto slots = static_cast<std::size_t>(m_tables.cty_s_kazu) + 1;
    m_tables.cty_s_prefix.assign(slots, std::string());
    m_tables.cty_s_primary.assign(slots, std::string());
    std::vector<std::string> lines;
    try {
        lines = text::readLines(path);
    } catch (const failure::Failure&) {
        // This stage passes over its failures: the arrays stay empty.
        return;
    }
    for (std::size_t i = 1; i < slots && i <= lines.size(); ++i) {
        const std::string& line = lines[i - 1];
        m_tables.cty_s_prefix[i] = std::string(text::trim(text::mid(line, 2, 7)));
        m_tables.cty_s_primary[i] =
            std::string(text::trim(text::left(text::mid(line, 9, 11), 9)));
    }
}

void CtyImport::make_dxcc_mas(const fs::path& dxccMasPath)
{
    m_trace.line("Public Sub make_dxcc_mas()");
    const long count = text::Count_lines(dxccMasPath);
    const std::vector<std::string> lines = text::readLines(dxccMasPath);
    if (lines.size() < 2) {
        throw failure::Failure(failure::InputPastEnd,
                           "ファイルの終わりを越えて入力しようとしました。 " +
                               dxccMasPath.string());
    }
    CtyTables& t = m_tables;
    for (auto* column : {&t.dxcc_prefix, &t.dxcc_code, &t.dxcc_name, &t.dxcc_buro}) {
        column->clear();
        column->reserve(static_cast<std::size_t>(count));
    }
    for (std::size_t i = 2; i < lines.size(); ++i) {
        const std::string& line = lines[i];
        t.dxcc_prefix.push_back(text::Mid_sjis(line, 2, 7));
        t.dxcc_code.push_back(text::Mid_sjis(line, 20, 6));
        t.dxcc_name.push_back(text::Mid_sjis(line, 26, 28));
        t.dxcc_buro.push_back(text::Mid_sjis(line, 55, 1));
    }
    t.dxcc_kazu = static_cast<long>(t.dxcc_prefix.size());
}

} // namespace vornhale::reference
