#include "readers/N1mmReader.h"

#include "base/QsoLine.h"
#include "base/WorkingFiles.h"
#include "failure/Failure.h"
#include "readers/CabrilloReader.h"
#include "readers/MdbTableExport.h"
#include "readers/MemoNotes.h"
#include "readers/ZlogTextReader.h"
#include "text/ByteKeySort.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"

namespace vornhale::readers {
namespace {

namespace fs = std::filesystem;

// Fields of an exported row, counted from 0.
constexpr std::size_t kWhen = 0, kCall = 1, kFreq = 2, kMode = 4, kRstSent = 6, kRstRcvd = 7,
                      kExchange = 20, kSkipFlag = 27;
constexpr std::size_t kFieldsNeeded = kSkipFlag + 1;

// Lines of the sort file: padded and cut to this many characters; the key is the year,
// month, day and time fields of the record line.
constexpr std::size_t kSortWidth = 200;
constexpr int kSortKeyLength = 23;

[[noreturn]] void subscriptOutOfRange()
{
    throw failure::Failure(failure::SubscriptOutOfRange, "インデックスが有効範囲にありません。");
}

const std::string& part(const std::vector<std::string>& parts, std::size_t i)
{
    if (i >= parts.size()) {
        subscriptOutOfRange();
    }
    return parts[i];
}

std::vector<std::string> fieldsOf(std::string_view line)
{
    return text::split(text::replaceAll(line, "\"", ""), ",");
}

// The band of the frequency column. With `Check17` the MHz text: a value with a point below 4
// stands as it is, one above 4 has the kHz before its point written as MHz, as has a value
// above 4 without a point. Any other value, and a frequency between the bands of the table,
// assigns nothing.
void bandOf(const std::string& freq, bool frequencies, std::string& q_band)
{
    if (!frequencies) {
        if (std::string band = cabrilloBandOfKhz(freq); !band.empty()) {
            q_band = std::move(band);
        }
        return;
    }
    const double value = text::val(freq);
    const std::size_t point = text::instr(freq, ".");
    if (point != 0 && value < 4) {
        q_band = freq;
    } else if (value > 4) {
        q_band = cabrilloFrequencyMhz(point != 0 ? text::left(freq, point - 1) : freq);
    }
}

std::string modeOf(const std::string& field)
{
    const std::string mode(text::trim(field));
    if (mode == "PH" || mode == "USB" || mode == "LSB") {
        return "SSB";
    }
    if (mode == "RTYY") {
        return "RTY";
    }
    return mode;
}

// Date with "/", a blank, time with ":"; the hour gets its leading zero, the minute stands as
// written.
void dateTimeOf(const std::string& when, base::QsoLine& q)
{
    const std::vector<std::string> halves = text::split(when, " ");
    const std::vector<std::string> date = text::split(part(halves, 0), "/");
    const std::vector<std::string> time = text::split(part(halves, 1), ":");
    q.q_year = part(date, 0);
    q.q_month = part(date, 1);
    q.q_day = part(date, 2);
    q.q_time = text::right("0" + part(time, 0), 2) + part(time, 1);
}

// Puts the lines of `zlog_0.txt` in order of date and time into `zlog_1.txt`, through the
// fixed-width sort file of the byte sort.
void sortByDateAndTime(const ReaderContext& ctx)
{
    const fs::path bak0 = ctx.work("bak_0.txt");
    const fs::path bak1 = ctx.work("bak_1.txt");
    {
        text::LineWriter out(bak0);
        for (const std::string& line : text::readLines(ctx.work(base::working::zlog_0))) {
            out.write(text::padRight(line, kSortWidth));
        }
        out.close();
    }
    text::sortLinesByKey(bak0, bak1, 1, kSortKeyLength, false);
    {
        text::LineWriter out(ctx.work(base::working::zlog_1));
        for (const std::string& line : text::readLines(bak1)) {
            out.write(text::trim(line));
        }
        out.close();
    }
    std::error_code ec;
    for (const fs::path& bak : {bak0, bak1}) {
        fs::remove(bak, ec);
    }
}

} // namespace

std::string exportNameOf(std::string_view table)
{
    if (text::equalsNoCase(table, kDxlogTable)) {
        return "dxlog.csv";
    }
    if (text::equalsNoCase(table, kCurrentContestTable)) {
        return "CurrentContest.csv";
    }
    return {};
}

bool testExportFirstLine(const ReaderContext& ctx)
{
    InputState& run = ctx.run;
    std::string first;
    {
        text::LineReader in(run.mdb.mdb_csv_name);
        if (!in.atEnd()) {
            first = in.next();
        }
    }
    const std::vector<std::string> fields = fieldsOf(first);
    const bool callFirst = fields.size() > 1 && text::upper(fields[1]) == "CALL";
    ctx.trace.line(std::string("   mdb 1行目 CALL : ") + (callFirst ? "一致" : "不一致"));
    if (fields.size() < 3 || text::upper(fields[2]) != "FREQ") {
        run.lblIn_name = kNotN1mm;
        run.in_name = kNotN1mm;
        return false;
    }
    return true;
}

bool FileOpen_mdb(const ReaderContext& ctx)
{
    InputState& run = ctx.run;
    const bool dxlog = text::equalsNoCase(run.mdb.table, kDxlogTable);
    ctx.trace.line(dxlog ? "Private sub FileOpen_mdb_dxlog()"
                         : "Private sub FileOpen_mdb_CurrentContest()");
    const std::string exportName = exportNameOf(run.mdb.table);
    if (exportName.empty()) {
        throw failure::Failure(failure::InvalidCall,
                               "N1MM Logger のテーブルは DXLOG か CurrentContest です: " +
                                   run.mdb.table);
    }
    const fs::path csv = ctx.work(exportName.c_str());
    std::error_code ec;
    fs::remove(csv, ec);

    {
        MdbTableExport database(run.in_name);
        const long rows = database.exportTable(run.mdb.table, csv);
        ctx.trace.line("   mdb " + std::string(dxlog ? kDxlogTable : kCurrentContestTable) + " → " +
                       csv.string() + " : " + std::to_string(rows));
    }
    run.mdb.mdb_csv_name = csv.string();
    if (!testExportFirstLine(ctx)) {
        return false;
    }
    run.setKind(InputKind::Mdb);
    return true;
}

void henkan_mdb_2_t(const ReaderContext& ctx)
{
    InputState& run = ctx.run;
    const bool operatorFilter = ctx.options.tick("Check02");
    const bool frequencies = ctx.options.tick("Check17");
    ctx.trace.line("Private sub henkan_mdb_2_t()");

    const long count = text::Count_lines(run.mdb.mdb_csv_name);
    text::LineReader in(run.mdb.mdb_csv_name);
    text::LineWriter out(ctx.work(base::working::zlog_0));
    ctx.observer.progressRange(count);
    in.next(); // the column names

    base::QsoLine q;
    long done = 0;
    while (!in.atEnd()) {
        const std::string raw = in.next();
        ctx.observer.progress(++done);
        q.q_memo.clear();
        q.q_freq.clear();
        const std::string line = text::replaceAll(raw, "\"", "");
        const std::vector<std::string> f = text::split(line, ",");
        if (f.size() < kFieldsNeeded) {
            subscriptOutOfRange();
        }
        if (f[kSkipFlag] == "-1") {
            continue;
        }
        q.q_call = f[kCall];
        bandOf(f[kFreq], frequencies, q.q_band);
        q.q_mode = modeOf(f[kMode]);
        dateTimeOf(f[kWhen], q);
        q.q_rst_sent = f[kRstSent];
        q.q_rst_rcvd = f[kRstRcvd];
        q.q_rcvd = f[kExchange];

        if ((operatorFilter && text::contains(line, "%")) || run.use.op) {
            operatorRule(line, q.q_op);
        } else {
            q.q_op.clear();
        }
        if (frequencies && text::contains(line, "(")) {
            frequencyInParentheses(line, q.q_band, q.q_freq);
        }
        // No memo rule runs on a database row: with the memo items in the layout the memo
        // keeps what it holds, otherwise it is emptied.
        if (!run.use.memo && !run.use.memoEquals) {
            q.q_memo.clear();
        }

        if (operatorFilter && !run.op_filter_name.empty() && q.q_op != run.op_filter_name) {
            continue;
        }
        out.write(text::formatRecord(q.fields()));
        ++run.written_count;
    }
    out.close();
    ctx.observer.progress(0);
    sortByDateAndTime(ctx);
}

OpenResult N1mmReader::open(const ReaderContext& ctx, const std::filesystem::path&)
{
    return FileOpen_mdb(ctx) ? OpenResult::Opened : OpenResult::Rejected;
}

long N1mmReader::countOpened(const InputState& run) const
{
    return text::Count_lines(run.mdb.mdb_csv_name);
}

} // namespace vornhale::readers
