#include "readers/RtclTextReader.h"

#include "base/QsoLine.h"
#include "base/WorkingFiles.h"
#include "readers/ExchangeAnalysis.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"
#include "text/SideBySide.h"
#include "text/SjisText.h"

#include <vector>

namespace vornhale::readers {
namespace {

using text::left;
using text::mid;
using text::right;

enum class Form { Old, New };

std::string trimmed(std::string_view s)
{
    return std::string(text::trim(s));
}

std::string withoutDashes(std::string_view s)
{
    return text::replaceAll(s, "-", "");
}

// Field n of a record, counted from 1 as the layouts count them.
const std::string& at(const std::vector<std::string>& f, std::size_t n)
{
    return f[n - 1];
}

// "14085" as 14.085, "07025" as " 7.025".
std::string oldFrequency(const std::string& digits)
{
    const std::string f = left(digits, 2) + "." + right(digits, 3);
    if (left(f, 1) == "0") {
        return " " + mid(f, 2, 1) + "." + right(f, 3);
    }
    return f;
}

// " 14.085", and " 7.025" with a leading "0" dropped.
std::string newFrequency(const std::string& digits)
{
    const std::string whole = left(digits, 1) == "0" ? mid(digits, 2, 1) : left(digits, 2);
    return " " + whole + "." + right(digits, 3);
}

void readRtclText(const ReaderContext& ctx, Form form)
{
    InputState& run = ctx.run;
    const bool operatorFilter = ctx.options.tick("Check02");
    const bool frequencies = ctx.options.tick("Check17");
    const std::size_t fieldCount = form == Form::Old ? 12 : 13;

    ctx.observer.status("  入力ファイル読み込み中", base::Colour::Green);
    const long count = run.line_count > 0 ? run.line_count : text::Count_lines(run.in_name);
    ctx.observer.progressRange(count + 2);

    text::RecordReader in(run.in_name);
    text::LineWriter out(ctx.work(base::working::zlog_1));
    // Each record is turned on its own, telling whether it was written; a long log is turned
    // in two parts side by side.
    const auto makeWorker = [&run, form, fieldCount, operatorFilter, frequencies] {
        return [&run, form, fieldCount, operatorFilter, frequencies,
                q = base::QsoLine()](text::RecordReader& in, text::LineWriter& out) mutable {
            const std::vector<std::string> f = in.fields(fieldCount);
            if (at(f, 1) == "QTC") {
                return false; // a QTC traffic record, no contact
            }
            const bool isOld = form == Form::Old;
            const std::string& when = at(f, 2);
            const std::string& sent = at(f, isOld ? 5 : 4);
            const std::string& rcvd = at(f, isOld ? 6 : 5);

            q.q_year = mid(when, 1, 4);
            q.q_month = trimmed(mid(when, 6, 2));
            q.q_day = trimmed(mid(when, 9, 2));
            q.q_time = trimmed(text::replaceAll(isOld ? at(f, 3) : mid(when, 12, 5), ":", ""));
            if (isOld) {
                q.q_call = at(f, 4);
            } else {
                q.q_call.clear();
                text::appendSjisColumn(q.q_call, at(f, 3), 12);
            }
            q.q_rst_sent = withoutDashes(left(sent, 3));
            q.q_rst_rcvd = left(rcvd, 3);
            q.q_rcvd = withoutDashes(text::replaceAll(rcvd, "599", ""));
            q.q_band = at(f, isOld ? 7 : 6);
            if (isOld) {
                q.q_mode = "RTY";
            } else {
                q.q_mode = at(f, 12) == "RTTY" ? std::string("RTY") : at(f, 12);
            }
            q.q_op.clear();
            q.q_memo.clear();
            q.q_freq.clear();
            if (isOld) {
                if (frequencies && text::contains(at(f, 12), "[FRQ")) {
                    q.q_freq = oldFrequency(rtclNoteFrequency(at(f, 12)));
                }
            } else if (frequencies && !text::trim(at(f, 13)).empty()) {
                q.q_freq = newFrequency(rtclFieldFrequency(at(f, 13)));
            }

            // The log names no operator: a filter by name keeps nothing.
            if (operatorFilter && !run.op_filter_name.empty() && q.q_op != run.op_filter_name) {
                return false;
            }
            out.writeRecord(q.fields());
            return true;
        };
    };
    if (!in.atEnd()) {
        long done = 0;
        text::turnRecords(in, out, makeWorker, [&ctx, &run, &done](bool written) {
            ctx.observer.progress(++done);
            run.written_count += written ? 1 : 0;
        });
    }
    ctx.observer.progress(0);
    out.close();
}

} // namespace

std::string_view rtcl_gen(InputKind kind)
{
    switch (kind) {
    case InputKind::LogOld:
        return "old";
    case InputKind::LogNew:
    case InputKind::LogV4:
        return "new";
    case InputKind::LogV430:
        return "new430";
    default:
        return "";
    }
}

std::string rtclNoteFrequency(std::string_view note)
{
    if (!text::contains(note, "[FRQ")) {
        return {};
    }
    return trimmed(text::replaceAll(left(note, 10), "[FRQ", ""));
}

std::string rtclFieldFrequency(std::string_view field)
{
    return trimmed(left(field, 5));
}

std::string logTypeText(std::string_view in_name, std::string_view word)
{
    return "[　" + std::string(in_name) + " ] は\n\n" + std::string(word) +
           "　バージョンのｌｏｇ形式ファイルです。\n\nファイルを選択し直して下さい。";
}

void disp_msg_logtype(base::Dialogs& dialogs, std::string_view in_name, std::string_view word)
{
    dialogs.message(kLogTypeTitle, logTypeText(in_name, word), base::Dialogs::Icon::Stop);
}

bool check_rcvd_log(const ReaderContext& ctx, std::string_view gen)
{
    std::string first;
    {
        text::LineReader in(ctx.run.in_name);
        if (!in.atEnd()) {
            first = in.next();
        }
    }
    const std::size_t highest = text::split(first, ",").size() - 1;
    if (highest == 11 && gen == "new") {
        disp_msg_logtype(ctx.dialogs, ctx.run.in_name, "旧");
        return true;
    }
    if (highest == 12 && gen == "old") {
        disp_msg_logtype(ctx.dialogs, ctx.run.in_name, "新");
        return true;
    }
    return false;
}

void henkan_log_2_t_old(const ReaderContext& ctx)
{
    ctx.trace.line("Private sub henkan_log_2_t_old()");
    readRtclText(ctx, Form::Old);
}

void henkan_log_2_t_new(const ReaderContext& ctx)
{
    ctx.trace.line("Private sub henkan_log_2_t_new()");
    readRtclText(ctx, Form::New);
}

RtclTextReader::RtclTextReader(InputKind kind) : m_kind(kind) {}

std::unique_ptr<LogReader> RtclTextReader::makeOld()
{
    return std::make_unique<RtclTextReader>(InputKind::LogOld);
}

std::unique_ptr<LogReader> RtclTextReader::makeNew()
{
    return std::make_unique<RtclTextReader>(InputKind::LogNew);
}

OpenResult RtclTextReader::open(const ReaderContext& ctx, const std::filesystem::path& path)
{
    InputState& run = ctx.run;
    // A refusal leaves the path in `in_name` and opens nothing.
    if (check_rcvd_log(ctx, rtcl_gen(m_kind))) {
        return OpenResult::Rejected;
    }
    run.setKind(m_kind);
    const RemarkCells layout = RemarkCells::fromOptions(ctx.options);
    if (m_kind == InputKind::LogOld) {
        run.exchange.check_rcvd_log_old(path, layout);
    } else {
        run.exchange.check_rcvd_log_new(path, layout);
    }
    return OpenResult::Opened;
}

void RtclTextReader::read(const ReaderContext& ctx)
{
    // Both generations are "log" to the rest of the program; the menu they came through
    // picks the reader.
    if (ctx.run.kind == InputKind::LogOld) {
        henkan_log_2_t_old(ctx);
    } else {
        henkan_log_2_t_new(ctx);
    }
}

} // namespace vornhale::readers
