#include "readers/CabrilloReader.h"

#include "base/FileStamp.h"
#include "base/WorkingFiles.h"
#include "failure/Failure.h"
#include "text/Chars.h"
#include "text/FileBytes.h"
#include "text/LineFile.h"
#include "text/Record.h"
#include "text/SideBySide.h"
#include "text/SjisCodec.h"
#include "text/SjisText.h"
#include "text/Utf8.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>
#include <mutex>
#include <system_error>

namespace vornhale::readers {
namespace {

constexpr std::string_view kIdeographicBlank = "\u3000";

// The bytes that may begin a blank-like character: the blank, the tab and the first byte of
// the ideographic blank (which also begins other characters).
constexpr std::array<bool, 256> kMayStartBlank = [] {
    std::array<bool, 256> may{};
    may[static_cast<unsigned char>(' ')] = true;
    may[static_cast<unsigned char>('\t')] = true;
    may[static_cast<unsigned char>(kIdeographicBlank[0])] = true;
    return may;
}();

struct BandRange
{
    double from, to;
    const char* band;
};

// Frequency in kHz to band, both ends included.
constexpr std::array kBandRanges{
    BandRange{1000, 2000, "1.9"},        BandRange{3000, 4000, "3.5"},
    BandRange{7000, 8000, "7"},          BandRange{9000, 11000, "10"},
    BandRange{13000, 15000, "14"},       BandRange{17000, 19000, "18"},
    BandRange{20000, 22000, "21"},       BandRange{23000, 25000, "24"},
    BandRange{27000, 30000, "28"},       BandRange{49000, 54000, "50"},
    BandRange{143000, 146000, "144"},    BandRange{429000, 440000, "430"},
    BandRange{1119000, 1300000, "1200"}, BandRange{2399000, 2450000, "2400"},
    BandRange{5399000, 5850000, "5600"},
};

[[noreturn]] void subscriptOutOfRange()
{
    throw failure::Failure(failure::SubscriptOutOfRange, "インデックスが有効範囲にありません。");
}

// The failure of a line, with where it stands, so that the trace shows the line to mend.
failure::Failure atLine(const failure::Failure& f, long number, std::string_view line)
{
    return failure::Failure(f.number(), f.description() + " (" + std::to_string(number) +
                                            " 行目: " + std::string(line) + ")");
}

// The last read of a Cabrillo log, kept so that the passes of one action share it, with what
// tells whether the file is still the one read.
struct SharedRead
{
    std::string path;
    base::FileStamp stamp;
    std::shared_ptr<CabrilloLines> lines;
};

std::mutex g_sharedMutex;
SharedRead g_shared;

std::shared_ptr<CabrilloLines> readCabrilloLines(const std::filesystem::path& path,
                                                 std::shared_ptr<const text::FileBytes> kept)
{
    auto log = std::make_shared<CabrilloLines>();
    log->source = kept ? std::move(kept) : text::readShared(path);
    log->bytes = log->source->view();
    log->lines = text::splitLines(log->bytes);
    // A file of ASCII alone decodes to itself line by line; any other is looked at by line.
    log->ascii = text::isAsciiText(log->bytes);
    if (!log->ascii) {
        for (std::string_view& line : log->lines) {
            if (!text::isAsciiText(line)) {
                line = log->decoded.emplace_back(text::decodeSjis(line));
            }
        }
    }
    for (std::size_t i = 0; i < log->lines.size(); ++i) {
        // A QSO line opens with it; any other is searched whole.
        const std::string_view line = log->lines[i];
        if (line.starts_with("QSO:") || line.find("QSO:") != std::string_view::npos) {
            log->qsoLines.push_back(static_cast<std::uint32_t>(i));
        }
    }
    return log;
}

// The continent codes of an IOTA reference: "NS-" where South America's "SA-" might be
// looked for, as the reference is tested.
constexpr std::array<std::string_view, 7> kContinents{"EU-", "AS-", "OC-", "AF-",
                                                      "NA-", "NS-", "AN-"};

// Whether `text` holds any of `codes`, each two characters and a "-": looked for at each "-",
// the two characters before it compared at once.
bool holdsAny(std::string_view text, const std::array<std::string_view, 7>& codes)
{
    const auto pair = [](char a, char b) {
        return static_cast<unsigned>(static_cast<unsigned char>(a)) << 8 |
               static_cast<unsigned char>(b);
    };
    for (std::size_t dash = text.find('-'); dash != std::string_view::npos;
         dash = text.find('-', dash + 1)) {
        if (dash < 2) {
            continue;
        }
        const unsigned before = pair(text[dash - 2], text[dash - 1]);
        for (const std::string_view c : codes) {
            if (before == pair(c[0], c[1])) {
                return true;
            }
        }
    }
    return false;
}

// The number of blanks from `at` on; runs of a column's width are passed eight bytes at a time.
std::size_t blankRun(std::string_view line, std::size_t at)
{
    std::size_t i = at;
    if constexpr (std::endian::native == std::endian::little) {
        constexpr std::uint64_t kBlanks = 0x2020202020202020ull;
        for (; i + 8 <= line.size(); i += 8) {
            std::uint64_t word = 0;
            std::memcpy(&word, line.data() + i, 8);
            if (const std::uint64_t other = word ^ kBlanks; other != 0) {
                return i + static_cast<std::size_t>(std::countr_zero(other)) / 8 - at;
            }
        }
    }
    while (i < line.size() && line[i] == ' ') {
        ++i;
    }
    return i - at;
}

// The blanks the first folding pass leaves of the run of blanks, tabs and ideographic blanks
// at `i` (each run of blanks halved, rounding up; each tab and ideographic blank one blank),
// with `i` moved past the run; 0, with `i` unmoved, where no run starts.
std::size_t firstPassRun(std::string_view line, std::size_t& i)
{
    std::size_t run = 0;
    while (i < line.size()) {
        if (line[i] == ' ') {
            const std::size_t blanks = blankRun(line, i);
            i += blanks;
            run += (blanks + 1) / 2;
        } else if (line[i] == '\t') {
            ++run;
            ++i;
        } else if (line.substr(i, kIdeographicBlank.size()) == kIdeographicBlank) {
            ++run;
            i += kIdeographicBlank.size();
        } else {
            break;
        }
    }
    return run;
}

// The tokens of a line in which every run of blanks and tabs is one boundary between two
// tokens, as it is when the run holds no more characters than `divisor` (it cannot fold to
// more blanks than that) and no ideographic blank. False, with `tokens` partly filled, at the
// first run that is longer or at the first byte that may begin an ideographic blank.
bool simpleTokenViews(std::string_view line, std::size_t divisor,
                      std::vector<std::string_view>& tokens, std::size_t limit)
{
    const std::size_t n = line.size();
    std::size_t i = 0;
    for (;;) {
        const std::size_t start = i;
        while (i < n && !kMayStartBlank[static_cast<unsigned char>(line[i])]) {
            ++i;
        }
        if (i < n && line[i] == kIdeographicBlank[0]) {
            return false;
        }
        tokens.push_back(line.substr(start, i - start));
        if (i == n || tokens.size() == limit) {
            return true;
        }
        const std::size_t runStart = i;
        while (i < n && (line[i] == ' ' || line[i] == '\t')) {
            ++i;
        }
        if (i - runStart > divisor || (i < n && line[i] == kIdeographicBlank[0])) {
            return false;
        }
    }
}

// The record line of `fields` as `text::LineWriter::writeRecord` writes it (each field in
// double quotes, separated by commas) into `line`, as the fields' bytes stand: the line
// `writeRecord` writes when every field is ASCII, which Shift-JIS holds as it stands.
template <std::size_t N>
void recordLine(const std::array<std::string_view, N>& fields, std::string& line)
{
    std::size_t size = N * 3 - 1;
    for (const std::string_view f : fields) {
        size += f.size();
    }
    line.resize(size);
    char* p = line.data();
    for (std::size_t i = 0; i < N; ++i) {
        const std::string_view f = fields[i];
        if (i != 0) {
            *p++ = ',';
        }
        *p++ = '"';
        // Fields are short: copied in place rather than through a call.
        for (const char c : f) {
            *p++ = c;
        }
        *p++ = '"';
    }
}

// The first `limit` tokens of an ASCII line into `tokens`, as `cabrilloTokenViews` gives them
// with six passes or more, and the start and end offsets of every run of blanks and tabs of
// the line appended to `edges`; false, with both partly filled, when the line is too long for
// the offsets or a run is longer than 32 characters (more than one boundary after six passes).
bool plainTokensAndRuns(std::string_view line, std::vector<std::string_view>& tokens,
                        std::size_t limit, std::vector<std::uint16_t>& edges)
{
    tokens.clear();
    const std::size_t n = line.size();
    if (n == 0 || n > 0xFFFF) {
        return n == 0;
    }
    const char* const s = line.data();
    std::size_t i = 0;
    for (;;) {
        const std::size_t start = i;
        while (i < n && s[i] != ' ' && s[i] != '\t') {
            ++i;
        }
        if (tokens.size() < limit) {
            tokens.emplace_back(s + start, i - start);
        }
        if (i == n) {
            return true;
        }
        const std::size_t runStart = i;
        while (i < n && (s[i] == ' ' || s[i] == '\t')) {
            ++i;
        }
        if (i - runStart > 32) {
            return false;
        }
        edges.push_back(static_cast<std::uint16_t>(runStart));
        edges.push_back(static_cast<std::uint16_t>(i));
    }
}

// The band of a frequency in kHz, as `cabrilloBandOfKhz` gives it.
std::string_view bandOfKhz(std::string_view token)
{
    // Plain digits, the usual frequency, are their number as they stand.
    bool digits = !token.empty() && token.size() <= 9;
    long plain = 0;
    for (std::size_t i = 0; digits && i < token.size(); ++i) {
        digits = token[i] >= '0' && token[i] <= '9';
        plain = plain * 10 + (token[i] - '0');
    }
    const double khz = digits ? static_cast<double>(plain) : text::val(token);
    for (const BandRange& r : kBandRanges) {
        if (khz >= r.from && khz <= r.to) {
            return r.band;
        }
    }
    return {};
}

std::string_view cabrilloMode(std::string_view mode)
{
    if (mode == "PH") {
        return "SSB";
    }
    if (mode == "RY") {
        return "RTY";
    }
    return mode;
}

} // namespace

std::string normaliseCabrilloBlanks(std::string_view line, int passes)
{
    if (passes <= 0) {
        return std::string(line);
    }
    // One walk does what the passes do: the first pass halves each run of blanks (rounding
    // up) and then makes each tab and ideographic blank one blank; every further pass halves
    // the runs of blanks that result.
    const std::size_t divisor = std::size_t{1} << std::min(passes - 1, 40);
    std::string out;
    out.reserve(line.size());
    std::size_t i = 0;
    while (i < line.size()) {
        const std::size_t run = firstPassRun(line, i);
        if (run > 0) {
            out.append((run + divisor - 1) / divisor, ' ');
        } else {
            out.push_back(line[i]);
            ++i;
        }
    }
    return out;
}

void cabrilloTokenViews(std::string_view line, int passes, std::vector<std::string_view>& tokens)
{
    cabrilloTokenViews(line, passes, tokens, std::numeric_limits<std::size_t>::max());
}

void cabrilloTokenViews(std::string_view line, int passes, std::vector<std::string_view>& tokens,
                        std::size_t limit)
{
    tokens.clear();
    if (limit == 0) {
        return;
    }
    if (line.empty()) {
        return;
    }
    if (passes <= 0) {
        for (std::size_t start = 0;;) {
            const std::size_t blank = line.find(' ', start);
            if (blank == std::string_view::npos) {
                tokens.push_back(line.substr(start));
                return;
            }
            tokens.push_back(line.substr(start, blank - start));
            if (tokens.size() == limit) {
                return;
            }
            start = blank + 1;
        }
    }
    // The normalisation copies every other character as it stands and turns each run of
    // blank-like characters into one blank or more, so the tokens are the stretches between
    // the runs, with one empty token more for each blank beyond the first of a run.
    const std::size_t divisor = std::size_t{1} << std::min(passes - 1, 40);
    if (simpleTokenViews(line, divisor, tokens, limit)) {
        return;
    }
    tokens.clear();
    // The first byte decides for all but the lead byte of the ideographic blank.
    const auto ideographicAt = [line](std::size_t i) {
        return line[i] == kIdeographicBlank[0] &&
               line.substr(i, kIdeographicBlank.size()) == kIdeographicBlank;
    };
    const std::size_t n = line.size();
    std::size_t i = 0;
    for (;;) {
        const std::size_t start = i;
        for (;;) {
            while (i < n && !kMayStartBlank[static_cast<unsigned char>(line[i])]) {
                ++i;
            }
            if (i < n && line[i] == kIdeographicBlank[0] && !ideographicAt(i)) {
                ++i; // the lead byte of another character
                continue;
            }
            break;
        }
        tokens.push_back(line.substr(start, i - start));
        if (i == n || tokens.size() == limit) {
            return;
        }
        const std::size_t run = firstPassRun(line, i);
        for (std::size_t extra = (run + divisor - 1) / divisor; extra > 1; --extra) {
            tokens.emplace_back();
            if (tokens.size() == limit) {
                return;
            }
        }
    }
}

void cabrilloTokensFromRuns(std::string_view line, const std::uint16_t* edges, std::size_t count,
                            std::size_t from, std::size_t to, std::vector<std::string_view>& tokens,
                            std::size_t limit)
{
    tokens.clear();
    if (from >= to || limit == 0) {
        return; // an empty text has no token
    }
    // Each run, cut to the range, is one boundary: a run at either end of the range leaves an
    // empty token there.
    std::size_t start = from;
    for (std::size_t k = 0; k < count; ++k) {
        const std::size_t runStart = edges[2 * k];
        const std::size_t runEnd = edges[2 * k + 1];
        if (runEnd <= from) {
            continue;
        }
        if (runStart >= to) {
            break;
        }
        tokens.push_back(line.substr(start, std::max(runStart, from) - start));
        if (tokens.size() == limit) {
            return;
        }
        start = std::min(runEnd, to);
    }
    tokens.push_back(line.substr(start, to - start));
}

std::vector<std::string> cabrilloTokens(std::string_view line, int passes)
{
    std::vector<std::string_view> views;
    views.reserve(16);
    cabrilloTokenViews(line, passes, views);
    return std::vector<std::string>(views.begin(), views.end());
}

std::string cabrilloBandOfKhz(std::string_view token)
{
    return std::string(bandOfKhz(token));
}

std::string cabrilloFrequencyMhz(std::string_view token)
{
    const std::size_t n = text::charCount(token);
    const std::string mhz =
        (n > 3 ? text::left(token, n - 3) : std::string()) + "." + text::right(token, 3);
    const std::size_t width = text::Len_sjis(mhz);
    return width < 6 ? std::string(6 - width, ' ') + mhz : mhz;
}

std::shared_ptr<CabrilloLines> cabrilloLines(const std::filesystem::path& path, bool fresh)
{
    const std::optional<base::FileStamp> stamp = base::FileStamp::of(path);
    // The kept input is read again only when it changed.
    std::shared_ptr<const text::FileBytes> kept = text::keptBytesOf(path);
    {
        const std::lock_guard lock(g_sharedMutex);
        const bool sameRead = kept ? g_shared.lines && g_shared.lines->source == kept
                                   : !fresh && stamp && g_shared.lines &&
                                         g_shared.path == path.string() && g_shared.stamp == *stamp;
        if (sameRead) {
            return g_shared.lines;
        }
    }
    std::shared_ptr<CabrilloLines> log = readCabrilloLines(path, std::move(kept));
    const std::lock_guard lock(g_sharedMutex);
    if (stamp && log->bytes.size() == stamp->size) {
        g_shared = SharedRead{path.string(), *stamp, log};
    } else {
        g_shared = SharedRead{}; // changing while read: never shared
    }
    return log;
}

void forgetCabrilloLines()
{
    const std::lock_guard lock(g_sharedMutex);
    g_shared = SharedRead{};
}

bool FileOpen_cbr(InputState& run, const std::filesystem::path& path)
{
    const std::shared_ptr<CabrilloLines> log = cabrilloLines(path, true);
    const std::string_view first = log->lines.empty() ? std::string_view() : log->lines.front();
    if (!text::contains(first, "START-OF-LOG:")) {
        run.lblIn_name = kNotCabrillo;
        run.in_name = kNotCabrillo;
        return false;
    }
    run.setKind(InputKind::Cbr);
    run.opened_as_cbr = true;
    run.cbr_has_iota = check_cbr_iota(*log, 1);
    return true;
}

bool check_cbr_iota(const CabrilloLines& log, std::size_t from)
{
    std::vector<std::string_view> t;
    t.reserve(16);
    // Only the lines holding "QSO:" are looked at.
    for (auto it = std::lower_bound(log.qsoLines.begin(), log.qsoLines.end(), from);
         it != log.qsoLines.end(); ++it) {
        const std::string_view line = log.lines[*it];
        // Token 8 is a part of the line: a line without any of the codes cannot hold one there.
        if (!holdsAny(line, kContinents)) {
            continue;
        }
        cabrilloTokenViews(line, 10, t, 9);
        if (t.size() < 9) {
            continue;
        }
        if (holdsAny(t[8], kContinents)) {
            return true;
        }
    }
    return false;
}

long count_in_name_cbr(const ReaderContext& ctx)
{
    InputState& run = ctx.run;
    if (run.f_type != "cbr") {
        return run.line_count;
    }
    // The read of the same file by the pass before, when it has not changed since.
    const long count = static_cast<long>(cabrilloLines(run.in_name, false)->qsoLines.size());
    run.line_count = count;
    run.Label39 = std::to_string(count) + " 件";
    ctx.observer.label("Label39", run.Label39);
    return count;
}

void henkan_cbr_2_t(const ReaderContext& ctx)
{
    InputState& run = ctx.run;
    ctx.trace.line("Private sub henkan_cbr_2_t()");
    // A run reads the log anew; its count and its .TXT form share this read.
    const std::shared_ptr<CabrilloLines> log = cabrilloLines(run.in_name, true);
    const long count = count_in_name_cbr(ctx);
    const bool operatorFilter = ctx.options.tick("Check02");
    const bool frequencies = ctx.options.tick("Check17");

    text::LineWriter out(ctx.work(base::working::zlog_1));
    ctx.observer.progressRange(count + 1);
    if (log->lines.empty()) {
        throw failure::Failure(failure::InputPastEnd,
                               "ファイルの終わりを越えて入力しようとしました。");
    }
    // The first line is the START-OF-LOG line; header lines and the closing line hold no
    // "QSO:" and are passed over.

    // Operator, memo, frequency and received exchange are never assigned from a Cabrillo
    // line, so the operator rule, which would look at a line buffer this reader never fills,
    // drops every line or none.
    const bool dropped = operatorFilter && !run.op_filter_name.empty();
    // The runs of an ASCII file are kept while their offsets fit.
    const bool keepRuns = log->ascii && log->bytes.size() < CabrilloLines::kNoRuns;
    const std::size_t first = static_cast<std::size_t>(
        std::upper_bound(log->qsoLines.begin(), log->qsoLines.end(), 0u) - log->qsoLines.begin());

    // Turns QSO line `k` into `lines`, keeping its runs. The band keeps what the line before
    // left when a frequency is between the ranges.
    struct Turner
    {
        struct Runs
        {
            std::size_t k;
            std::uint32_t from, to; // in `edges`
        };
        const CabrilloLines& log;
        bool frequencies, keepRuns, dropped;
        std::string band;
        std::vector<std::uint16_t> edges;
        std::vector<Runs> runs;
        std::size_t last = 0; // the last line turned
        std::string record;
        std::vector<std::string_view> t;

        void operator()(std::size_t k, text::LineWriter& lines)
        {
            last = k;
            const std::string_view line = log.lines[log.qsoLines[k]];
            const long number = static_cast<long>(log.qsoLines[k]) + 1;
            // Tokens beyond the eleventh are never read. The runs between them are kept for the
            // .TXT form, which splits the same line.
            const auto edgesFrom = static_cast<std::uint32_t>(edges.size());
            if (keepRuns && plainTokensAndRuns(line, t, 11, edges)) {
                runs.push_back({k, edgesFrom, static_cast<std::uint32_t>(edges.size())});
            } else {
                edges.resize(edgesFrom);
                cabrilloTokenViews(line, 6, t, 11);
            }
            // The date's first three pieces between "-"; fewer than three is out of range.
            std::size_t firstDash = std::string_view::npos;
            std::size_t secondDash = std::string_view::npos;
            try {
                if (t.size() < 11) {
                    subscriptOutOfRange();
                }
                firstDash = t[3].find('-');
                if (firstDash != std::string_view::npos) {
                    secondDash = t[3].find('-', firstDash + 1);
                }
                if (secondDash == std::string_view::npos) {
                    subscriptOutOfRange();
                }
            } catch (const failure::Failure& f) {
                throw atLine(f, number, line);
            }
            const std::string_view date = t[3];
            const std::size_t thirdDash = date.find('-', secondDash + 1);
            const std::string_view year = date.substr(0, firstDash);
            const std::string_view month = date.substr(firstDash + 1, secondDash - firstDash - 1);
            const std::string_view day = date.substr(
                secondDash + 1, thirdDash == std::string_view::npos ? std::string_view::npos
                                                                    : thirdDash - secondDash - 1);
            if (frequencies) {
                band = cabrilloFrequencyMhz(t[1]);
            } else if (const std::string_view b = bandOfKhz(t[1]); !b.empty()) {
                band.assign(b);
            }
            if (dropped) {
                return;
            }
            // Written from views of the line: year, month, day, time, call, the two reports,
            // band, mode, then the operator, memo, frequency and received exchange, all empty.
            const std::array<std::string_view, 13> fields{
                year, month, day, t[4], t[8], t[6], t[9], band, cabrilloMode(t[2]), {}, {}, {}, {}};
            // Every field of an ASCII log is ASCII: cut from the line or taken from tables.
            if (log.ascii) {
                recordLine(fields, record);
                lines.writeRaw(record);
            } else {
                lines.writeRecord(fields);
            }
        }

        const std::string& carried() const { return band; }
    };
    long done = 0;
    Turner turner = text::turnItems(
        first, log->qsoLines.size(), out, 96,
        [&] { return Turner{*log, frequencies, keepRuns, dropped, {}, {}, {}, 0, {}, {}}; },
        [&] {
            if (!dropped) {
                ++run.written_count;
            }
            ctx.observer.progress(++done);
        },
        // The second part's runs follow the first part's; those of the lines it read before
        // its part are the first part's already.
        [](Turner& firstPart, Turner& secondPart) {
            const auto shift = static_cast<std::uint32_t>(firstPart.edges.size());
            firstPart.edges.insert(firstPart.edges.end(), secondPart.edges.begin(),
                                   secondPart.edges.end());
            for (const Turner::Runs& r : secondPart.runs) {
                if (r.k > firstPart.last) {
                    firstPart.runs.push_back({r.k, r.from + shift, r.to + shift});
                }
            }
        });
    // The runs are left for the .TXT form.
    log->runsFrom.assign(keepRuns ? log->qsoLines.size() : 0, CabrilloLines::kNoRuns);
    log->runsTo.assign(log->runsFrom.size(), 0);
    for (const Turner::Runs& r : turner.runs) {
        log->runsFrom[r.k] = r.from;
        log->runsTo[r.k] = r.to;
    }
    log->runEdges = std::move(turner.edges);
    ctx.observer.progress(0);
    out.close();
}

OpenResult CabrilloReader::open(const ReaderContext& ctx, const std::filesystem::path& path)
{
    if (!FileOpen_cbr(ctx.run, path)) {
        return OpenResult::Rejected;
    }
    count_in_name_cbr(ctx);
    return OpenResult::Opened;
}

void CabrilloReader::read(const ReaderContext& ctx)
{
    // Whether the exchanges hold IOTA references decides nothing here: both forms of the
    // reader do the same.
    henkan_cbr_2_t(ctx);
}

} // namespace vornhale::readers
