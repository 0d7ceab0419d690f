#include "readers/ZlogTextReader.h"

#include "failure/Failure.h"
#include "base/QsoLine.h"
#include "base/WorkingFiles.h"
#include "readers/MemoNotes.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"
#include "text/SideBySide.h"
#include "readers/ExchangeAnalysis.h"
#include "text/SjisCodec.h"
#include "text/SjisText.h"
#include "text/Utf8.h"

#include <array>
#include <cstdio>

namespace vornhale::readers {
namespace {

namespace fs = std::filesystem;
using base::QsoLine;
using text::Mid_sjis;
using text::trim;

enum class Form { All, Txt };

std::string trimmed(std::string_view s) { return std::string(trim(s)); }

// The received exchange: trimmed, then cut before its first blank.
std::string firstWord(std::string_view s)
{
    std::string_view t = trim(s);
    return std::string(t.substr(0, t.find(' ')));
}

} // namespace

// The operator between "%%" marks. Without a second "%" the operator keeps what the
// previous line left in it.
void operatorRule(std::string_view line, std::string& q_op)
{
    const std::string_view l = text::Cut_nul(line);
    const std::size_t p = text::instr(l, "%");
    if (p == 0) {
        q_op.clear();
        return;
    }
    const std::string rest = trimmed(text::mid(l, p + 2));
    const std::size_t p2 = text::instr(rest, "%");
    if (p2 == 0) {
        return;
    }
    q_op = trimmed(text::left(rest, p2 - 1));
}

namespace {

// The memo column: the text behind the fixed part of the line, behind the last "%%", with
// the parenthesised frequency taken out.
std::string memoRule(std::string_view paddedLine, Form form)
{
    const std::string line = text::replaceAll(paddedLine, "-DUPE-", "");
    const std::size_t fixed = form == Form::All ? 79 : 72;
    const std::size_t n = text::charCount(line);
    if (n <= fixed) {
        // Exactly the fixed width has no memo; a shorter line (never written by zLog) has
        // none either.
        return {};
    }
    std::string memo = text::right(line, n - fixed);
    if (const std::size_t p = text::instrRev(memo, "%%"); p != 0) {
        memo = trimmed(text::mid(memo, p + 2));
    }
    const std::size_t open = text::instr(memo, "(");
    if (open == 0) {
        return memo;
    }
    const std::size_t close = text::instr(memo, ")");
    return text::left(memo, open - 1) + " " + text::mid(memo, close + 1);
}

// The fixed columns of one line, as `Mid_sjis` cuts them. A line of plain ASCII, which is
// nearly every line zLog writes, is cut by bytes without looking at each column's width.
class Columns
{
public:
    explicit Columns(std::string_view line) : m_line(line), m_ascii(text::isAsciiText(line)) {}

    std::string operator()(long start, long length) const
    {
        if (!m_ascii) {
            return Mid_sjis(m_line, start, length);
        }
        const auto at = static_cast<std::size_t>(start - 1);
        return at >= m_line.size() ? std::string()
                                   : std::string(m_line.substr(at, static_cast<std::size_t>(length)));
    }
    std::string trimmed(long start, long length) const
    {
        if (!m_ascii) {
            return std::string(trim(Mid_sjis(m_line, start, length)));
        }
        const auto at = static_cast<std::size_t>(start - 1);
        return at >= m_line.size()
                   ? std::string()
                   : std::string(trim(m_line.substr(at, static_cast<std::size_t>(length))));
    }

private:
    std::string_view m_line;
    bool m_ascii;
};

// The IOTA form of the exchange: the two continent letters, "-", three digits.
void iotaRule(std::string& q_rcvd, std::string& q_memo)
{
    std::size_t start = 0;
    for (const char* code : {"AF", "EU", "AS", "OC", "NA", "SA", "AN"}) {
        start += text::instr(q_rcvd, code);
    }
    if (start > 0) {
        const long s = static_cast<long>(start);
        q_rcvd = Mid_sjis(q_rcvd, s, 2) + "-" + Mid_sjis(q_rcvd, s + 2, 3);
    } else {
        q_rcvd.clear();
    }
    q_memo = q_rcvd + " " + q_memo;
}

// Turns one line of a zLog text log into a line of zlog_1; returns whether it was written. A line
// whose operator has no closing "%", or whose parentheses hold no frequency, keeps the operator
// or the frequency of the line before.
class ZlogTextTurner
{
public:
    ZlogTextTurner(const InputState& run, Form form, bool operatorFilter, bool frequencies,
                   const std::string& year)
        : m_run(run), m_form(form), m_operatorFilter(operatorFilter), m_frequencies(frequencies),
          m_year(year)
    {
    }

    bool operator()(text::LineReader& in, text::LineWriter& out)
    {
        text::decodeSjisInto(m_line, in.nextRaw());
        if (m_form == Form::Txt) {
            std::string t = trimmed(m_line);
            if (t.empty()) {
                // A blank line has no first piece to look at.
                throw failure::Failure(failure::SubscriptOutOfRange,
                                       "インデックスが有効範囲にありません。");
            }
            if (text::charCount(t.substr(0, t.find(' '))) == 1) {
                t = "0" + t;
            }
            m_line = trimmed(t);
        }
        m_line.append(20, ' ');
        const Columns column(m_line);

        if (m_form == Form::All) {
            m_q.q_year = column(1, 4);
            m_q.q_month = column.trimmed(6, 2);
            m_q.q_day = column.trimmed(9, 2);
            m_q.q_time = column(12, 2) + column(15, 2);
            m_q.q_call = column(18, 13);
            m_q.q_rst_sent = column(31, 3);
            m_q.q_rst_rcvd = column(43, 3);
            m_q.q_rcvd = firstWord(column(47, 9));
            m_q.q_band = column.trimmed(67, 4);
            m_q.q_mode = column.trimmed(72, 3);
            if (text::contains(m_q.q_mode, "PSK")) {
                const std::string five = column.trimmed(72, 5);
                if (text::contains(five, "PSK3")) {
                    m_q.q_mode = "PSK31";
                } else if (text::contains(five, "PSK6")) {
                    m_q.q_mode = "PSK63";
                }
            }
            takeOperator(m_run.use.op);
            takeFrequency();
            m_q.q_memo =
                (m_run.use.memo || m_run.use.memoEquals) ? memoRule(m_line, m_form) : std::string();
        } else {
            m_q.q_year = m_year;
            m_q.q_month = text::right("0" + column.trimmed(1, 2), 2);
            m_q.q_day = text::right("0" + column.trimmed(5, 2), 2);
            m_q.q_time = column.trimmed(8, 4);
            m_q.q_call = column(13, 11);
            m_q.q_rst_sent = column.trimmed(24, 3);
            m_q.q_rst_rcvd = column.trimmed(37, 3);
            m_q.q_rcvd = firstWord(column(40, 9));
            m_q.q_band = column(58, 3);
            m_q.q_mode = column(64, 3);
            takeFrequency();
            takeOperator(m_run.use.opPercent || m_run.use.op);
            m_q.q_memo =
                (m_run.use.memo || m_run.use.memoEquals) ? memoRule(m_line, m_form) : std::string();
            if (m_run.use.iota) {
                iotaRule(m_q.q_rcvd, m_q.q_memo);
            }
        }
        m_q.q_memo = trimmed(m_q.q_memo);
        m_q.q_freq = trimmed(m_q.q_freq);

        const bool dropped =
            m_operatorFilter && !m_run.op_filter_name.empty() && m_q.q_op != m_run.op_filter_name;
        if (!dropped) {
            out.writeRecord(m_q.fields());
        }
        return !dropped;
    }

    // What the next line may take over.
    std::pair<std::string, std::string> carried() const { return {m_q.q_op, m_q.q_freq}; }

private:
    // The operator rule where the filter or the layout asks for it, else no operator.
    void takeOperator(bool wanted)
    {
        if ((m_operatorFilter && text::contains(m_line, "%")) || wanted) {
            operatorRule(m_line, m_q.q_op);
        } else {
            m_q.q_op.clear();
        }
    }

    void takeFrequency()
    {
        if (m_frequencies && text::contains(m_line, "(")) {
            frequencyInParentheses(m_line, m_q.q_band, m_q.q_freq);
        } else {
            m_q.q_freq.clear();
        }
    }

    const InputState& m_run;
    Form m_form;
    bool m_operatorFilter, m_frequencies;
    const std::string& m_year;
    QsoLine m_q;
    std::string m_line;
};

void readZlogText(const ReaderContext& ctx, Form form)
{
    InputState& run = ctx.run;
    const bool operatorFilter = ctx.options.tick("Check02");
    const bool frequencies = ctx.options.tick("Check17");
    const std::string year = ctx.options.value("txtYYYY");

    ctx.observer.status("  入力ファイル読み込み中", base::Colour::Green);
    if (form == Form::All && run.f_type == "lg8") {
        // A CTESTWIN log is read from the text its converter wrote.
        run.in_name = run.ctestwin.ctestwin_all_name;
    }
    // The driver has counted this file already; the count is only needed when a reader runs
    // on its own.
    const long count = run.line_count > 0 ? run.line_count : text::Count_lines(run.in_name);
    ctx.observer.progressRange(count + 2);

    text::LineReader in(run.in_name);
    text::LineWriter out(ctx.work(base::working::zlog_1));
    in.next(); // the first line names the logger or titles the columns

    // Each line is turned on its own, telling whether it was written; a long log is turned in
    // two parts side by side.
    const auto makeWorker = [&run, form, operatorFilter, frequencies, &year] {
        return ZlogTextTurner(run, form, operatorFilter, frequencies, year);
    };
    long done = 0;
    text::turnRecords(in, out, makeWorker, [&ctx, &run, form, &done](bool written) {
        if (written && form == Form::All) {
            ++run.written_count;
        }
        ctx.observer.progress(++done);
    });

    ctx.observer.progress(0);
    out.close();
    if (form == Form::All) {
        std::error_code ec;
        fs::remove(ctx.work(base::working::zlog_0), ec);
        fs::remove(ctx.work(base::working::zlog_01), ec);
        if (!run.chosen_name.empty()) {
            run.in_name = run.chosen_name;
        }
    }
}

} // namespace

namespace {

// The start of the file's first line, decoded: enough of it for the heading tests, without
// reading a long log whole. A file that cannot be read fails as a whole read would.
std::string firstLineStart(const std::filesystem::path& path)
{
    constexpr std::size_t kHead = 4096;
    std::error_code ec;
    std::FILE* f = fs::is_directory(path, ec) ? nullptr : std::fopen(path.c_str(), "rb");
    if (f == nullptr) {
        (void)text::readFileBytes(path); // throws the failure of a file that cannot be opened
        return {};
    }
    std::string head(kHead, '\0');
    head.resize(std::fread(head.data(), 1, head.size(), f));
    std::fclose(f);
    const std::vector<std::string_view> lines = text::splitLines(head);
    return lines.empty() ? std::string() : text::decodeSjis(lines.front());
}

} // namespace

bool FileOpen_all_txt_set(InputState& run, const std::filesystem::path& path)
{
    // Only the first 16 or 22 characters of the first line are looked at.
    const std::string first = firstLineStart(path);
    const std::string name = path.filename().string();
    const std::string letter = text::upper(text::left(text::right(name, 3), 1));
    bool accepted;
    if (letter == "A") {
        accepted = text::left(first, 16) == "zLog for Windows";
        if (accepted) {
            run.setKind(InputKind::All);
        }
    } else if (letter == "T") {
        accepted = text::left(first, 22) == "mon day time  callsign";
        if (accepted) {
            run.setKind(InputKind::Txt);
        }
    } else {
        return true;
    }
    if (!accepted) {
        run.lblIn_name = kNotZlogText;
        run.in_name = kNotZlogText;
    }
    return accepted;
}

void a_2_t(const ReaderContext& ctx)
{
    ctx.trace.line("Private sub a_2_t()");
    readZlogText(ctx, Form::All);
}

void t_2_t(const ReaderContext& ctx)
{
    ctx.trace.line("Private sub t_2_t()");
    readZlogText(ctx, Form::Txt);
}

void henkan_at_2_t(const ReaderContext& ctx)
{
    ctx.trace.line("Private sub henkan_at_2_t()");
    if (ctx.run.file_letter == "A") {
        a_2_t(ctx);
    } else {
        t_2_t(ctx);
    }
}

OpenResult ZlogTextReader::open(const ReaderContext& ctx, const std::filesystem::path& path)
{
    InputState& run = ctx.run;
    if (!FileOpen_all_txt_set(run, path)) {
        return OpenResult::Rejected;
    }
    if (run.kind == InputKind::None) {
        // A name of neither form: nothing to analyse; the caller asks for the kind.
        return OpenResult::Opened;
    }
    // What the received exchange of the log holds, for the warnings of the window.
    const RemarkCells layout = RemarkCells::fromOptions(ctx.options);
    const bool zonesKept = ctx.options.tick("Check6");
    if (run.kind == InputKind::All) {
        run.exchange.check_rcvd_all(path, run.in_name, zonesKept, layout);
    } else if (run.kind == InputKind::Txt) {
        run.exchange.check_rcvd_txt(path, run.in_name, zonesKept, layout);
    }
    return OpenResult::Opened;
}

void ZlogTextReader::read(const ReaderContext& ctx)
{
    InputState& run = ctx.run;
    // The letter comes from the first of the last three characters of the shown name.
    const std::string tail = text::right(run.lblIn_name, 3);
    const std::string letter = text::upper(text::left(tail, 1));
    if (letter == "T" || letter == "A") {
        run.file_letter = letter;
    }
    henkan_at_2_t(ctx);
}

} // namespace vornhale::readers
