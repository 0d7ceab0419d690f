#include "readers/ZloReader.h"

#include "base/QsoLine.h"
#include "base/Version.h"
#include "base/WorkingFiles.h"
#include "failure/Failure.h"
#include "readers/InputSelection.h"
#include "readers/MemoNotes.h"
#include "readers/ZloxRecord.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"
#include "text/SideBySide.h"
#include "text/SjisText.h"

#include <tuple>

namespace vornhale::readers {
namespace {

using text::Mid_sjis;

std::string trimmed(std::string_view s)
{
    return std::string(text::trim(s));
}

// The received exchange: the received number, cut before its first blank and trimmed, when
// it holds a blank.
std::string exchangeOf(const std::string& rcvd)
{
    const std::size_t p = text::instr(rcvd, " ");
    return p == 0 ? rcvd : trimmed(text::left(rcvd, p - 1));
}

// The parenthesised note of a memo: from the first "(" through the first ")". A memo whose
// first ")" does not stand behind its "(" has the note run to its end.
std::string bracketOf(const std::string& memo)
{
    const std::size_t open = text::instr(memo, "(");
    if (open == 0) {
        return {};
    }
    const std::size_t close = text::instr(memo, ")");
    if (close < open) {
        return text::mid(memo, open);
    }
    return text::mid(memo, open, close - open + 1);
}

// Takes the parenthesised note out of a memo and makes every "()" left a blank.
void takeBracketOut(std::string& memo, const std::string& bracket)
{
    // Both begin with "(": a memo without one has nothing to take out.
    if (memo.find('(') == std::string::npos) {
        return;
    }
    if (!bracket.empty()) {
        memo = text::replaceAll(memo, bracket, "");
    }
    memo = text::replaceAll(memo, "()", " ");
}


std::string multiColumn(const std::string& multi, bool isNew)
{
    return isNew ? text::sjisColumn(multi, 6) : std::string("-     ");
}

// The fields of a record that the `.ALL` text of a binary log takes, with the values that
// carry over from the record before.
struct Decoded
{
    std::string date, time, rst_sent, rst_rcvd, mode, band, power;

    void from(const ZloQso& z, ZloModes modes)
    {
        zloDateTime(z.when, date, time);
        rst_sent = zloRst(z.rst_sent_low, z.rst_sent_high);
        rst_rcvd = zloRst(z.rst_rcvd_low, z.rst_rcvd_high);
        zloMode(z.mode_index, mode, modes);
        zloBand(z.band_index, band);
        zloPower(z.power_index, power);
    }
};

// The QSO records of a binary log one by one, as `text::turnRecords` reads them: positions
// are byte offsets, and a part may start at any record.
class ZloRecords
{
public:
    explicit ZloRecords(ZloFile file)
        : m_file(std::move(file)), m_count(m_file.count()), m_size(m_file.recordSize())
    {
    }
    /// Another reader of the same log from its first QSO record, sharing its bytes.
    ZloRecords again() const { return ZloRecords(m_file); }

    bool atEnd() const { return m_next > m_count; }
    const std::uint8_t* next() { return m_file.recordAt(m_next++, m_spare); }
    ZloModes modes() const { return m_file.modes(); }

    std::string_view bytes() const { return m_file.bytes(); }
    std::size_t position() const { return static_cast<std::size_t>(m_next - 1) * m_size; }
    void skipTo(std::size_t at) { m_next = static_cast<long>(at / m_size) + 1; }
    std::size_t boundaryFrom(std::size_t at) const { return (at + m_size - 1) / m_size * m_size; }

private:
    ZloFile m_file;
    long m_count;
    std::size_t m_size;
    long m_next = 2; // record 1 is the header
    ZloRecord m_spare{};
};

// Turns one QSO record into a line of zlog_1; returns whether it was written. Mode, band and
// frequency carry over from the record before where a record gives none.
class ZloTurner
{
public:
    ZloTurner(const InputState& run, bool operatorFilter, bool frequencies)
        : m_run(run), m_operatorFilter(operatorFilter), m_frequencies(frequencies)
    {
    }

    bool operator()(ZloRecords& in, text::LineWriter& out)
    {
        decodeZloQso(in.next(), m_z);
        const ZloQso& z = m_z;
        zloDateTime(z.when, m_date, m_time);
        zloMode(z.mode_index, m_mode, in.modes());
        zloBand(z.band_index, m_band);
        // The date is ASCII, "yyyy/mm/dd" (or "10000/01/01" for a last moment rounded up).
        m_q.q_year.assign(m_date, 0, 4);
        m_q.q_month.assign(m_date, 5, 2);
        m_q.q_day.assign(m_date, m_date.size() - 2, 2);
        m_q.q_time = m_time;
        m_q.q_call = z.call;
        m_q.q_rst_sent = zloRst(z.rst_sent_low, z.rst_sent_high);
        m_q.q_rst_rcvd = zloRst(z.rst_rcvd_low, z.rst_rcvd_high);
        m_q.q_band = m_band;
        m_q.q_mode = m_mode;
        m_q.q_rcvd = exchangeOf(z.rcvd_nr);

        std::string op = zloCutField(z.op, z.op_length);
        std::string memo = zloCutField(z.memo, z.memo_length);
        const std::string bracket = bracketOf(memo);
        if (!m_operatorFilter && !m_run.use.op) {
            op.clear();
        }
        if (m_frequencies && text::contains(memo, "(")) {
            if (text::contains(memo, "(0)")) {
                m_freq = m_band;
            } else {
                frequencyInParentheses(memo, m_band, m_freq);
                takeBracketOut(memo, bracket);
            }
        } else {
            m_freq = m_band;
        }
        if (m_run.use.memo || m_run.use.memoEquals) {
            takeBracketOut(memo, bracket);
        }
        m_freq = trimmed(m_freq);

        if (m_operatorFilter && !m_run.op_filter_name.empty() && op != m_run.op_filter_name) {
            return false;
        }
        m_q.q_op = std::move(op);
        m_q.q_memo = std::move(memo);
        m_q.q_freq = m_freq;
        out.writeRecord(m_q.fields());
        return true;
    }

    // What the next record may take over.
    std::tuple<std::string, std::string, std::string> carried() const
    {
        return {m_mode, m_band, m_freq};
    }

private:
    const InputState& m_run;
    bool m_operatorFilter, m_frequencies;
    std::string m_date, m_time, m_mode, m_band, m_freq;
    base::QsoLine m_q;
    ZloQso m_z;
};

} // namespace

ZloFile openZloInput(const InputState& run)
{
    if (run.kind == InputKind::Zlox) {
        return readZloxFile(run.in_name);
    }
    return ZloFile(run.in_name);
}

std::string noNameDialogText(std::string_view in_name)
{
    const std::string lines[] = {
        "ＴＸＴ形式のファイルを zListw に読み込みしてから",
        "ZLO に変換した ファイルでは コンテスト名の取得が出来ません。",
        "ｚＬｏｇ for Windows にて直接作成したファイル、 ",
        "または　zLog for windows にて　[ " + std::string(in_name) + " ]",
        "起動画面の　[ User Defined Contest ]  [ Select ]  にて",
        "コンテストに対応した CFG ファイルを指定した後、",
        "* ．ZLO を作成し直して下さい。",
        "［ 再 試 行 ］　再度入力ファイルの指定を行います。",
        "［キャンセル］　プログラムを終了します。 ",
    };
    std::string text;
    for (const std::string& line : lines) {
        if (!text.empty()) {
            text += text::startsWith(line, "［ 再 試 行 ］") ? "\n\n\n" : "\n\n";
        }
        text += line;
    }
    return text;
}

bool no_name_in_header(base::Dialogs& dialogs, std::string_view in_name, ZloOpenState& zlo)
{
    const auto answer =
        dialogs.question(kZloNoNameTitle, noNameDialogText(in_name),
                         base::Dialogs::Buttons::RetryCancel, base::Dialogs::Icon::Stop);
    if (answer == base::Dialogs::Answer::Retry) {
        zlo.zlo_name_missing = true;
        return true;
    }
    return false;
}

ZloHead read_zlo_head(const ReaderContext& ctx, ZloOpenState& zlo, ExchangeAnalysis& analysis)
{
    InputState& run = ctx.run;
    ctx.trace.line("Private sub read_zlo_head()");
    if (run.in_name.empty()) {
        run.lblIn_name = kZloNoInput;
        ctx.observer.label("lblIn_name", kZloNoInput);
        return ZloHead::NoInput;
    }

    const ZloFile file = openZloInput(run);
    zlo.record_count = file.count();
    run.Label37 = countLabel(zlo.record_count);

    const ZloHeader header = decodeZloHeader(file.record(1));
    zlo.station_name = header.first_name;
    run.cont_name = header.cont_name;
    if (text::contains(run.cont_name, "CQWW160")) {
        run.cont_name = "CQWW160 Contest";
    }
    if (run.f_type == "zlo") {
        ctx.observer.status(run.cont_name, base::Colour::Green);
    }
    if (header.cont_name_length == 0 && !zlo.zlo_name_missing) {
        ctx.observer.status(kZloNoContestName, base::Colour::Red);
        if (!no_name_in_header(ctx.dialogs, run.in_name, zlo)) {
            return ZloHead::ProgramEnds;
        }
    }

    const RemarkCells layout = RemarkCells::fromOptions(ctx.options);
    analysis.Check_Use_Item(run.cont_name, layout);
    analysis.check_rcvd_zlo(file, layout);
    // The conversion reads the contest's zone and IOTA flags under these names.
    run.use_log_zone = analysis.rcvd_has_zone;
    run.logIotaFlag = analysis.rcvd_has_iota;
    return ZloHead::Read;
}

ZloHead openZloFile(const ReaderContext& ctx, ZloOpenState& zlo, ExchangeAnalysis& analysis,
                    bool folderDialog, InputKind kind)
{
    InputState& run = ctx.run;
    run.setKind(kind);
    run.file_letter = "Z";
    zlo.prev_in_name = zlo.last_in_name;
    zlo.last_in_name = run.in_name;
    zlo.zlo_name_missing = false;

    ZloHead head = read_zlo_head(ctx, zlo, analysis);
    if (head != ZloHead::Read) {
        return head;
    }
    if (folderDialog) {
        analysis.check_rcvd_zlo(openZloInput(run), RemarkCells::fromOptions(ctx.options));
        if (ctx.options.isOn("Option02", 2) && run.in_name != zlo.prev_in_name) {
            head = read_zlo_head(ctx, zlo, analysis);
        }
    }
    if (run.cont_name == "REFコンテスト(DX)") {
        ctx.options.set("Check13", "1");
    }
    return head;
}

void read_zlo(const ReaderContext& ctx)
{
    InputState& run = ctx.run;
    const bool operatorFilter = ctx.options.tick("Check02");
    const bool frequencies = ctx.options.tick("Check17");

    ctx.trace.line("Private sub read_zlo()");
    ctx.observer.status("  入力ファイルを読み込み中", base::Colour::Green);
    const ZloFile file = openZloInput(run);
    text::LineWriter out(ctx.work(base::working::zlog_1));

    ZloRecords in(file);
    if (!in.atEnd()) {
        const auto makeWorker = [&run, operatorFilter, frequencies] {
            return ZloTurner(run, operatorFilter, frequencies);
        };
        text::turnRecords(in, out, makeWorker,
                          [&run](bool written) { run.written_count += written ? 1 : 0; });
    }
    out.close();
}

std::string z2aName(std::string_view in_name)
{
    std::string stem = trimmed(Mid_sjis(in_name, 1, 120));
    if (const std::size_t p = text::instr(stem, "."); p != 0) {
        stem = text::left(stem, p - 1);
    }
    return stem + "_z2a.all";
}

Z2aResult mnuMake_z2a_Click(const ReaderContext& ctx)
{
    InputState& run = ctx.run;
    ctx.trace.line("Private sub mnuMake_z2a_Click()");
    ctx.observer.status("", base::Colour::Black);

    Z2aResult result;
    result.path = z2aName(run.in_name);
    const ZloFile file = openZloInput(run);
    text::LineWriter out(result.path, text::LineWriter::Mode::ReplaceWhenDone);
    out.write("zLog for Windows       by Vornhale " + std::string(base::kProgramVersion));

    Decoded d;
    const long count = file.count();
    ZloRecord spare;
    for (long n = 2; n <= count; ++n) {
        const ZloQso z = decodeZloQso(file.recordAt(n, spare));
        d.from(z, file.modes());
        std::string line = text::sjisColumn(d.date, 11) + text::sjisColumn(d.time, 6) + text::sjisColumn(z.call, 13) +
                           text::sjisColumn(d.rst_sent, 4) + text::sjisColumn(z.sent_nr, 8) + text::sjisColumn(d.rst_rcvd, 4);
        // A received number of nine characters stands in full and moves the rest along.
        line += text::charCount(text::trim(z.rcvd_nr)) >= 9 ? z.rcvd_nr : text::sjisColumn(z.rcvd_nr, 8);
        line += multiColumn(z.multi1, z.multi1_new) + multiColumn(z.multi2, z.multi2_new);
        line += text::sjisColumn(d.band, 5) + text::sjisColumn(d.mode, 5) + text::sjisColumn(std::to_string(z.points), 3);
        if (!z.op.empty()) {
            line += "%%" + z.op + "%%";
        }
        line += z.memo;
        out.write(line);
    }
    out.close();

    result.showZ2a = run.f_type == "zlo";
    ctx.observer.status(kZ2aDone, base::Colour::Black);
    return result;
}

OpenResult ZloReader::open(const ReaderContext& ctx, const std::filesystem::path&)
{
    switch (openZloFile(ctx, ctx.run.zlo, ctx.run.exchange, false)) {
    case ZloHead::ProgramEnds:
        return OpenResult::ProgramEnds;
    case ZloHead::NoInput:
        return OpenResult::Rejected;
    case ZloHead::Read:
        break;
    }
    return OpenResult::Opened;
}

long ZloReader::countForLabel(const std::filesystem::path& path) const
{
    std::error_code ec;
    const auto bytes = std::filesystem::file_size(path, ec);
    return zloRecordCount(ec ? 0 : bytes);
}

void ZloReader::beforeConversion(const ReaderContext& ctx)
{
    if (read_zlo_head(ctx, ctx.run.zlo, ctx.run.exchange) == ZloHead::ProgramEnds) {
        throw failure::ProgramEnd{"read_zlo_head"};
    }
}

} // namespace vornhale::readers
