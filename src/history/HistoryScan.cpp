#include "history/HistoryScan.h"

#include "base/Clock.h"

#include "failure/Failure.h"
#include "base/RunObserver.h"
#include "base/Trace.h"
#include "history/HistoryMaster.h"
#include "settings/Options.h"
#include "settings/SettingsFiles.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/SjisText.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <ctime>

namespace vornhale::history {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kCallColumns = 13;

std::string todayText()
{
    return base::nowText("%Y%m%d");
}

// The call right-padded with blanks, or cut, to exactly 13 columns (Shift-JIS bytes).
std::string padCall(const std::string& call)
{
    const bool ascii = std::all_of(call.begin(), call.end(),
                                   [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    std::string padded;
    if (ascii) {
        padded = call.substr(0, kCallColumns);
    } else {
        padded = text::Mid_sjis(call, 1, static_cast<long>(kCallColumns));
    }
    const std::size_t width = ascii ? padded.size() : text::Len_sjis(padded);
    if (width < kCallColumns) {
        padded.append(kCallColumns - width, ' ');
    }
    return padded;
}

std::string doubledQuotes(const std::string& s)
{
    return s.find('"') == std::string::npos ? s : text::replaceAll(s, "\"", "\"\"");
}

std::string_view trimmedBytes(std::string_view s)
{
    while (!s.empty() && s.front() == ' ') {
        s.remove_prefix(1);
    }
    while (!s.empty() && s.back() == ' ') {
        s.remove_suffix(1);
    }
    return s;
}

// Reads the items of one line as records are read: a quoted item runs to the next quote
// (what follows up to the comma is dropped), a bare one to the next comma, blanks around it
// dropped.
std::vector<std::string_view> lineItems(std::string_view line)
{
    std::vector<std::string_view> items;
    std::size_t pos = 0;
    while (pos <= line.size()) {
        while (pos < line.size() && line[pos] == ' ') {
            ++pos;
        }
        if (pos < line.size() && line[pos] == '"') {
            const std::size_t close = line.find('"', pos + 1);
            const std::size_t end = close == std::string_view::npos ? line.size() : close;
            items.push_back(line.substr(pos + 1, end - pos - 1));
            const std::size_t comma = line.find(',', end);
            pos = comma == std::string_view::npos ? line.size() + 1 : comma + 1;
        } else {
            const std::size_t comma = line.find(',', pos);
            const std::size_t end = comma == std::string_view::npos ? line.size() : comma;
            items.push_back(trimmedBytes(line.substr(pos, end - pos)));
            pos = end + 1;
        }
    }
    return items;
}

// The sort of `bak_1.txt` on its columns 1 to 16: stable, by the unsigned bytes, a shorter
// key before a longer one that it begins. The key is held as two numbers (padded with zero
// bytes) and its length, which orders exactly as the bytes do.
void sortOnSixteenColumns(const fs::path& in, const fs::path& out)
{
    const std::string bytes = text::readFileBytes(in);
    const std::vector<std::string_view> lines = text::splitLines(bytes);
    struct Key
    {
        std::uint64_t high, low;
        std::uint32_t length, index;
    };
    std::vector<Key> keys(lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string_view key = lines[i].substr(0, 16);
        unsigned char b[16] = {};
        std::memcpy(b, key.data(), key.size());
        std::uint64_t high = 0, low = 0;
        for (int k = 0; k < 8; ++k) {
            high = high << 8 | b[k];
            low = low << 8 | b[8 + k];
        }
        keys[i] = {high, low, static_cast<std::uint32_t>(key.size()),
                   static_cast<std::uint32_t>(i)};
    }
    std::sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) {
        if (a.high != b.high) {
            return a.high < b.high;
        }
        if (a.low != b.low) {
            return a.low < b.low;
        }
        if (a.length != b.length) {
            return a.length < b.length;
        }
        return a.index < b.index;
    });
    text::LineWriter writer(out);
    for (const Key& k : keys) {
        writer.writeRaw(lines[k.index]);
    }
    writer.close();
}

// Progress is shown in at most about a thousand steps.
long progressStep(long count) { return count > 1000 ? count / 1000 : 1; }

} // namespace

std::string fileDateTime(const fs::path& path)
{
    std::error_code ec;
    const auto written = fs::last_write_time(path, ec);
    if (ec) {
        return {};
    }
    const auto sys = std::chrono::file_clock::to_sys(written);
    const std::time_t t = std::chrono::system_clock::to_time_t(
        std::chrono::time_point_cast<std::chrono::system_clock::duration>(sys));
    std::tm local{};
    localtime_r(&t, &local);
    char buf[32];
    std::strftime(buf, sizeof buf, "%Y/%m/%d %H:%M:%S", &local);
    return buf;
}

fs::path bak_qso_mas_file(const fs::path& Temp_Files, int kind)
{
    return Temp_Files / ("bak_qso.mas" + std::to_string(kind) + "_");
}

std::string dateTimeKey(int kind)
{
    switch (kind) {
    case 1:
        return "hamlog_hdb_dir_FileDateTime_QSO";
    case 2:
        return "hamlog_hdb_dir_FileDateTime_QSL_sent";
    case 3:
        return "hamlog_hdb_dir_FileDateTime_QSL_rcvd";
    default:
        return {};
    }
}

HistoryScan::HistoryScan(fs::path drive_path, fs::path Temp_Files, settings::Options& options,
                         base::Trace& trace, base::RunObserver& observer,
                         settings::SettingsFiles* settings)
    : m_drivePath(std::move(drive_path)), m_tempFiles(std::move(Temp_Files)),
      m_options(options), m_trace(trace), m_observer(observer), m_settings(settings),
      m_factory(makeHamlogReader)
{
}

settings::Options& HistoryScan::stored() const
{
    return m_settings ? m_settings->options() : m_options;
}

fs::path HistoryScan::master(int kind) const
{
    return bak_qso_mas_file(m_tempFiles, kind).string() + "p";
}

HistoryStep HistoryScan::run()
{
    const int kind = m_options.member("Option04");
    if (m_settings) {
        m_settings->ini_read_fdt();
    }
    if (kind < 1 || kind > 3) {
        return HistoryStep::Off;
    }
    if (m_options.member("Option01") != 0) {
        return HistoryStep::Kept;
    }
    if (!scanNeeded(kind)) {
        return HistoryStep::Kept;
    }
    const fs::path source{m_options.value("hamlog_hdb_dir")};
    std::unique_ptr<HamlogReader> reader = m_factory(source);
    if (!readDatabase(kind, *reader)) {
        return HistoryStep::OpenFailed;
    }
    sum_bak_2();
    sum_bak_3(kind);
    return HistoryStep::Scanned;
}

bool HistoryScan::scanNeeded(int kind) const
{
    if (m_options.tick("Check19")) {
        return true;
    }
    std::error_code ec;
    if (!fs::exists(master(kind), ec)) {
        return true;
    }
    const fs::path source{m_options.value("hamlog_hdb_dir")};
    return fileDateTime(source) != stored().value(dateTimeKey(kind));
}

bool HistoryScan::readDatabase(int kind, HamlogReader& reader)
{
    m_trace.line("Private sub read_hl_hdb_" + std::to_string(kind) + "()");
    const std::string& hdb = m_options.value("hamlog_hdb_dir");
    const fs::path source{hdb};
    std::string shown = source.filename().string();
    const std::size_t dot = shown.rfind('.');
    if (dot != std::string::npos) {
        shown.resize(dot + 1);
    }
    m_observer.status(shown + (kind == 3 ? "．ｈｄｂ の 読込 for No QSL"
                                         : "．ｈｄｂ の読込 for No QSL"),
                      base::Colour::Green);

    // The date-time is stored before the scan, so it stands even when the scan fails.
    const std::string stamp = fileDateTime(source);
    m_options.set(dateTimeKey(kind), stamp);
    if (m_settings) {
        m_settings->options().set(dateTimeKey(kind), stamp);
    }
    if (m_options.value("End_date").empty()) {
        m_options.set("End_date", m_today.empty() ? todayText() : m_today);
    }
    if (m_settings) {
        m_settings->ini_write_fdt();
    }

    struct Closer
    {
        HamlogReader& reader;
        ~Closer() { reader.close(); }
    } closer{reader};

    const std::optional<long> opened = reader.open(source);
    if (!opened) {
        return false;
    }
    const long count = *opened;
    const double start = text::val(m_options.value("Start_date"));
    const double end = text::val(m_options.value("End_date"));

    m_observer.progressRange(count + 2);
    text::LineWriter out(bak_1());
    const long step = progressStep(count);
    std::string line, date, stamped, quoted;
    for (long n = 1; n <= count; ++n) {
        if (n % step == 0) {
            m_observer.progress(n);
        }
        const HamlogFields& f = reader.read(n);

        std::string_view dateField = f[1];
        if (dateField.find('"') != std::string_view::npos) {
            quoted = doubledQuotes(f[1]);
            dateField = quoted;
        }
        date.clear();
        for (char c : dateField) {
            if (c != '/') {
                date.push_back(c);
            }
        }
        const double yy = text::val(std::string_view(date).substr(0, 2));
        stamped.assign(yy > 50 ? "19" : "20").append(date);
        const double when = text::val(text::trim(stamped));
        if (when < start || when > end) {
            continue;
        }
        if (kind == 2 || kind == 3) {
            const std::string mark = text::mid(doubledQuotes(f[9]), kind == 2 ? 2 : 3, 1);
            if (text::trim(mark).empty()) {
                continue;
            }
        }
        const std::string call = padCall(doubledQuotes(f[0]));
        const BandModeCode bm = band_mode_code(f[5], f[6]);
        line.clear();
        line.append("\"").append(call).append(bm.Band_code).append(bm.Mode_code);
        line.append("\",\"").append(call).append("\",\"");
        line.append(bm.Band_code).append(bm.Mode_code).append("\"");
        out.write(line);
    }
    // The closing records; their keys are formed unlike all others.
    out.write("\"YYYYYYE2       \",\"YYYYYY       \",\"E2\"");
    out.write("\"ZZZZZYE2       \",\"ZZZZZZ       \",\"E2\"");
    out.close();
    m_observer.progress(0);
    return true;
}

void HistoryScan::sum_bak_2()
{
    m_trace.line("Private sub sum_bak_2()");
    m_observer.status("  ソ ー ト 中 ．．．１", base::Colour::Green);
    m_trace.line("Public Sub sort_()");
    try {
        sortOnSixteenColumns(bak_1(), bak_2());
    } catch (const failure::Failure&) {
        // A sort that fails leaves no output; the read below fails then.
        std::error_code ec;
        fs::remove(bak_2(), ec);
    }
    m_observer.status("  処　理　中 ．．．１", base::Colour::Green);
    const long lines = text::Count_lines(bak_2());
    m_observer.progressRange(lines);
    const long step = progressStep(lines);

    text::LineReader in(bak_2());
    text::LineWriter out(bak_3());
    struct Held
    {
        std::string key, call, code;
    } held;
    bool haveHeld = false;
    std::string line;
    long n = 0;
    while (!in.atEnd()) {
        line.assign(in.nextRaw());
        if (++n % step == 0) {
            m_observer.progress(n);
        }
        line.erase(std::remove(line.begin(), line.end(), '"'), line.end());
        const std::size_t c1 = line.find(',');
        const std::size_t c2 = c1 == std::string::npos ? c1 : line.find(',', c1 + 1);
        if (c2 == std::string::npos) {
            throw failure::Failure(failure::SubscriptOutOfRange,
                               "インデックスが有効範囲にありません。 bak_2.txt");
        }
        const std::size_t c3 = line.find(',', c2 + 1);
        std::string_view view(line);
        const std::string_view key = view.substr(0, c1);
        if (haveHeld && key != held.key) {
            out.writeRaw("\"" + held.call + "\",\"" + held.code + "\"");
        }
        held.key.assign(key);
        held.call.assign(view.substr(c1 + 1, c2 - c1 - 1));
        held.code.assign(view.substr(c2 + 1, c3 == std::string::npos ? c3 : c3 - c2 - 1));
        haveHeld = true;
    }
    if (haveHeld) {
        out.writeRaw("\"" + held.call + "\",\"" + held.code + "\"");
    }
    out.close();
    m_observer.progress(0);
}

void HistoryScan::sum_bak_3(int kind)
{
    m_trace.line("Private sub sum_bak_3()");
    m_observer.status("  処　理　中 ．．．．．．２", base::Colour::Green);
    const long lines = text::Count_lines(bak_3());
    m_observer.progressRange(lines);
    const long step = progressStep(lines);

    const fs::path target = master(kind);
    const fs::path writing = target.string() + ".writing";
    text::LineReader in(bak_3());
    {
        text::LineWriter out(writing);
        std::string call, codes;
        bool haveGroup = false;
        long n = 0;
        auto writeGroup = [&]() {
            out.writeRaw("\"" + std::string(trimmedBytes(call)) + "\",\"" +
                         std::string(trimmedBytes(codes)) + "\"");
        };
        while (!in.atEnd()) {
            const std::vector<std::string_view> items = lineItems(in.nextRaw());
            if (++n % step == 0) {
                m_observer.progress(n);
            }
            const std::string_view itemCall = items.empty() ? std::string_view{} : items[0];
            const std::string_view itemCode = items.size() > 1 ? items[1] : std::string_view{};
            if (haveGroup && itemCall == call) {
                codes.append(itemCode);
                continue;
            }
            if (haveGroup) {
                writeGroup();
            }
            call.assign(itemCall);
            codes.assign(itemCode);
            haveGroup = true;
        }
        if (haveGroup) {
            writeGroup();
        }
        out.writeRaw("ZZZ/ZZZZZZ,E2");
        out.close();
    }
    m_observer.progress(0);

    std::error_code ec;
    const auto size = fs::file_size(writing, ec);
    if (ec || size < 10) {
        fs::remove(writing, ec);
        m_trace.line("エラー発生 ：　ファイル不良" + target.string());
        throw failure::Failure(failure::DeviceIo, "ファイル不良 " + target.string());
    }
    fs::rename(writing, target, ec);
    if (ec) {
        throw failure::Failure(failure::PathFileAccess,
                           "パス名が無効です。 " + target.string());
    }
}

} // namespace vornhale::history
