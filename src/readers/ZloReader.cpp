#include "readers/ZloReader.h"

#include "base/QsoLine.h"
#include "base/Version.h"
#include "failure/Failure.h"
#include "base/WorkingFiles.h"
#include "readers/InputSelection.h"
#include "readers/MemoNotes.h"
#include "readers/ZloxRecord.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"
#include "text/SjisText.h"

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

std::string withoutBracket(const std::string& memo, const std::string& bracket)
{
    const std::string cut = bracket.empty() ? memo : text::replaceAll(memo, bracket, "");
    return text::replaceAll(cut, "()", " ");
}


std::string multiColumn(const std::string& multi, bool isNew)
{
    return isNew ? text::sjisColumn(multi, 6) : std::string("-     ");
}

// The fields of a record that both the conversion and the text take, with the values that
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

    Decoded d;
    std::string freq;
    base::QsoLine q;
    const long count = file.count();
    for (long n = 2; n <= count; ++n) {
        const ZloQso z = decodeZloQso(file.record(n));
        d.from(z, file.modes());
        q.q_year = text::left(d.date, 4);
        q.q_month = Mid_sjis(d.date, 6, 2);
        q.q_day = text::right(d.date, 2);
        q.q_time = d.time;
        q.q_call = z.call;
        q.q_rst_sent = d.rst_sent;
        q.q_rst_rcvd = d.rst_rcvd;
        q.q_band = d.band;
        q.q_mode = d.mode;
        q.q_rcvd = exchangeOf(z.rcvd_nr);

        std::string op = zloCutField(z.op, z.op_length);
        std::string memo = zloCutField(z.memo, z.memo_length);
        const std::string bracket = bracketOf(memo);
        if (!operatorFilter && !run.use.op) {
            op.clear();
        }
        if (frequencies && text::contains(memo, "(")) {
            if (text::contains(memo, "(0)")) {
                freq = d.band;
            } else {
                frequencyInParentheses(memo, d.band, freq);
                memo = withoutBracket(memo, bracket);
            }
        } else {
            freq = d.band;
        }
        if (run.use.memo || run.use.memoEquals) {
            memo = withoutBracket(memo, bracket);
        }
        freq = trimmed(freq);

        if (operatorFilter && !run.op_filter_name.empty() && op != run.op_filter_name) {
            continue;
        }
        q.q_op = op;
        q.q_memo = memo;
        q.q_freq = freq;
        out.writeRecord(q.fields());
        ++run.written_count;
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
    for (long n = 2; n <= count; ++n) {
        const ZloQso z = decodeZloQso(file.record(n));
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
