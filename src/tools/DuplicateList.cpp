#include "tools/DuplicateList.h"

#include "base/DupListName.h"
#include "failure/Failure.h"
#include "text/ByteKeySort.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"

#include <array>
#include <memory>

namespace vornhale::tools {
namespace {

namespace fs = std::filesystem;

constexpr const char* kZlog2 = "zlog_2.txt";
constexpr const char* kZlog3 = "zlog_3.txt";
constexpr const char* kZlog4 = "zlog_4.txt";

constexpr std::size_t kEnrichedFields = 19;
constexpr std::size_t kBaseCall = 6;    // field 7
constexpr std::size_t kBandOrFreq = 8;  // field 9
constexpr std::size_t kListedCall = 15; // field 16, `q_call`

constexpr std::size_t kRowFields = 3;
constexpr std::size_t kCallWidth = 12;
constexpr int kCallsPerLine = 6;

constexpr std::string_view kHeadText = "                     ---  Check List  Band: ";
constexpr std::string_view kFootText = "                            ---  Stations: ";

void removeIfExists(const fs::path& path)
{
    std::error_code ec;
    fs::remove(path, ec);
}

bool isFile(const fs::path& path)
{
    std::error_code ec;
    return fs::is_regular_file(path, ec);
}

// A rows-file row whose key carries "ZZZZZ" at bytes 3 to 7 is a band's sentinel.
bool isSentinelKey(std::string_view key)
{
    return key.size() >= 7 && key.substr(2, 5) == "ZZZZZ";
}

std::string paddedCall(std::string_view call)
{
    return text::padRight(call, kCallWidth);
}

// Reads the rows of `file` into `rows`; a failure on the way leaves the rows read before it.
void readRows(const fs::path& file, std::vector<std::vector<std::string>>& rows)
{
    text::RecordReader in(file);
    while (!in.atEnd()) {
        rows.push_back(in.fields(kRowFields));
    }
}

} // namespace

const std::vector<DupBand>& dupBands()
{
    static const std::vector<DupBand> bands = {
        {"1.", "zlog_19.txt", "zlog_o19.txt", "19ZZZZZ", "1.9"},
        {"3.", "zlog_35.txt", "zlog_o35.txt", "35ZZZZZ", "3.5"},
        {"7.", "zlog_70.txt", "zlog_o70.txt", "7 ZZZZZ", "7 "},
        {"14", "zlog_14.txt", "zlog_o14.txt", "14ZZZZZ", "14"},
        {"21", "zlog_21.txt", "zlog_o21.txt", "21ZZZZZ", "21"},
        {"28", "zlog_28.txt", "zlog_o28.txt", "28ZZZZZ", "28"},
    };
    return bands;
}

DuplicateList::DuplicateList(fs::path drive_path, base::Trace& trace)
    : m_drive_path(std::move(drive_path)), m_trace(trace)
{
}

fs::path DuplicateList::work(std::string_view name) const
{
    return m_drive_path / name;
}

// The procedure's own line stands above in the trace; the number follows it.
void DuplicateList::failed(int number)
{
    m_trace.line("エラー発生 ：　" + std::to_string(number));
}

std::string DuplicateList::dupName(std::string_view in_name)
{
    return base::dupListName(in_name);
}

void DuplicateList::wpx_dupe_chk()
{
    m_trace.line("Private Sub wpx_dupe_chk()");
    try {
        text::RecordReader in(work(kZlog2));
        text::LineWriter out(work(kZlog3));
        while (!in.atEnd()) {
            const std::vector<std::string> f = in.fields(kEnrichedFields);
            const std::string tag = text::left(f[kBandOrFreq] + "  ", 2);
            const std::string group = text::right(f[kBaseCall], 1);
            const std::string& call = f[kListedCall];
            const std::string key = tag + group + text::left(call + std::string(10, ' '), 12);
            out.write(text::formatRecord({key, group, call}));
        }
        out.close();
    } catch (const failure::Failure& f) {
        failed(f.number());
    }
    // The sort command "/k(1:15)  'zlog_3.txt'  'zlog_4.txt'": raw columns 1 to 15, the
    // opening quote included.
    try {
        text::sortLinesByKey(work(kZlog3), work(kZlog4), 1, 15, false);
    } catch (const failure::Failure& f) {
        failed(f.number());
    }
}

void DuplicateList::wpx_dupe_chk_2()
{
    m_trace.line("Private Sub wpx_dupe_chk_2()");
    const std::vector<DupBand>& bands = dupBands();
    std::vector<std::unique_ptr<text::LineWriter>> outs;
    try {
        for (const DupBand& band : bands) {
            outs.push_back(std::make_unique<text::LineWriter>(work(band.rowsFile)));
        }
    } catch (const failure::Failure& f) {
        failed(f.number());
        return;
    }
    try {
        text::RecordReader in(work(kZlog4));
        while (!in.atEnd()) {
            const std::vector<std::string> row = in.fields(kRowFields);
            const std::string_view tag = std::string_view(row[0]).substr(0, 2);
            for (std::size_t i = 0; i < bands.size(); ++i) {
                if (tag == bands[i].tag) {
                    outs[i]->write(text::formatRecord(row));
                    break;
                }
            }
        }
    } catch (const failure::Failure& f) {
        failed(f.number());
    }
    for (std::size_t i = 0; i < bands.size(); ++i) {
        try {
            const std::string_view s = bands[i].sentinel;
            outs[i]->write(text::formatRecord({s, s, s}));
            outs[i]->close();
        } catch (const failure::Failure& f) {
            failed(f.number());
        }
    }
}

bool DuplicateList::wpx_dupe_chk_5(const DupBand& band)
{
    m_trace.line("Private Sub wpx_dupe_chk_5()");
    try {
        text::RecordReader in(work(band.rowsFile));
        if (in.atEnd()) {
            return true;
        }
        return isSentinelKey(in.field());
    } catch (const failure::Failure& f) {
        failed(f.number());
        return true;
    }
}

std::vector<std::string> DuplicateList::section(const std::vector<std::vector<std::string>>& rows)
{
    std::vector<std::string> lines;
    if (rows.empty()) {
        return lines;
    }
    std::string_view bandText;
    const std::string_view firstTag = std::string_view(rows.front()[0]).substr(0, 2);
    for (const DupBand& band : dupBands()) {
        if (band.tag == firstTag) {
            bandText = band.headText;
        }
    }
    lines.push_back(std::string(kHeadText) + std::string(bandText) + " MHz  ---");
    lines.emplace_back();

    std::string buffer = "[" + rows.front()[1] + "] " + paddedCall(rows.front()[2]);
    int cells = 1;
    std::string previousGroup = rows.front()[1];
    // The group of the row before the last one: a cut file prints its last buffer only when
    // that last row began a group of its own.
    std::string groupBeforeLast;
    for (std::size_t i = 1; i < rows.size(); ++i) {
        const std::vector<std::string>& row = rows[i];
        groupBeforeLast = previousGroup;
        if (row[1] != previousGroup) {
            lines.push_back(buffer);
            lines.emplace_back();
            buffer = "[" + row[1] + "] " + paddedCall(row[2]);
            cells = 1;
        } else if (cells == kCallsPerLine) {
            lines.push_back(buffer);
            buffer = "    " + paddedCall(row[2]);
            cells = 1;
        } else {
            buffer += paddedCall(row[2]);
            ++cells;
        }
        previousGroup = row[1];
    }
    // The sentinel row begins a group of its own, so the last real group is printed above and
    // the sentinel's buffer stays unprinted.
    const std::vector<std::string>& last = rows.back();
    if (!isSentinelKey(last[0]) && last[1] != groupBeforeLast) {
        lines.push_back(buffer);
    }
    lines.push_back(std::string(kFootText) + std::to_string(rows.size() - 1) + " ---");
    lines.emplace_back(6, ' ');
    lines.emplace_back(6, ' ');
    return lines;
}

void DuplicateList::wpx_dupe_chk_6(const DupBand& band)
{
    m_trace.line("Private Sub wpx_dupe_chk_6()");
    std::vector<std::vector<std::string>> rows;
    try {
        readRows(work(band.rowsFile), rows);
    } catch (const failure::Failure& f) {
        // A row that breaks off at the end still counts; what was read is printed.
        failed(f.number());
    }
    try {
        text::LineWriter out(work(band.sectionFile));
        for (const std::string& line : section(rows)) {
            out.write(line);
        }
        out.close();
    } catch (const failure::Failure& f) {
        failed(f.number());
    }
}

void DuplicateList::wpx_dupe_chk_4()
{
    m_trace.line("Private Sub wpx_dupe_chk_4()");
    for (const DupBand& band : dupBands()) {
        if (wpx_dupe_chk_5(band)) {
            removeIfExists(work(band.sectionFile));
            continue;
        }
        wpx_dupe_chk_6(band);
    }
}

DupListOutcome DuplicateList::wpx_dupe_chk_7(std::string_view in_name)
{
    m_trace.line("Private Sub wpx_dupe_chk_7()");
    DupListOutcome outcome;
    outcome.dupFile = dupName(in_name);
    removeIfExists(outcome.dupFile);

    // The sections are gathered first and the list is written whole, so that it replaces the
    // former one only when complete.
    std::vector<std::string> lines;
    for (const DupBand& band : dupBands()) {
        const fs::path file = work(band.sectionFile);
        if (!isFile(file)) {
            continue;
        }
        try {
            std::vector<std::string> sectionLines = text::readRawLines(file);
            m_trace.line(outcome.written ? "Private Sub wpx_dupe_chk_apd()"
                                         : "Private Sub wpx_dupe_chk_out()");
            lines.insert(lines.end(), sectionLines.begin(), sectionLines.end());
            outcome.written = true;
        } catch (const failure::Failure& f) {
            failed(f.number());
        }
    }
    if (outcome.written) {
        try {
            text::LineWriter out(outcome.dupFile, text::LineWriter::Mode::ReplaceWhenDone);
            for (const std::string& line : lines) {
                out.writeRaw(line);
            }
            out.close();
        } catch (const failure::Failure& f) {
            failed(f.number());
            outcome.written = false;
        }
    }
    outcome.mnuDisp_dup = true;
    return outcome;
}

DupListOutcome DuplicateList::run(std::string_view in_name)
{
    wpx_dupe_chk();
    wpx_dupe_chk_2();
    wpx_dupe_chk_4();
    return wpx_dupe_chk_7(in_name);
}

} // namespace vornhale::tools
