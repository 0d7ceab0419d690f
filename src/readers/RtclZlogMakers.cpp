#include "readers/RtclZlogMakers.h"

#include "base/WorkingFiles.h"
#include "failure/Failure.h"
#include "readers/RtclBinaryReader.h"
#include "readers/RtclTextReader.h"
#include "readers/ZlogTranslators.h"
#include "settings/SettingsFiles.h"
#include "text/Chars.h"
#include "text/FileBytes.h"
#include "text/LineFile.h"
#include "text/Record.h"
#include "text/RecordBytes.h"
#include "text/SideBySide.h"
#include "text/SjisText.h"

#include <span>

namespace vornhale::readers {
namespace {

namespace fs = std::filesystem;
using text::left;
using text::mid;
using text::right;
using text::sjisColumn;

constexpr const char* kRtclTmp = "rtcl_tmp.txt";

std::string trimmed(std::string_view s)
{
    return std::string(text::trim(s));
}

using ZlogParts = BasicZlogParts<std::string>;

// The `.TXT` form as the `.TXT` reader takes its columns: month 1, day 5, time 8, call 13,
// sent report 24, received report 37, received number 40, band 58, mode 64, points 68,
// memo 73.
template <typename Text> std::string txtLine(const BasicZlogParts<Text>& p)
{
    std::string out = right("0" + trimmed(mid(p.date, 6, 2)), 2) + "  ";
    out += right("0" + trimmed(mid(p.date, 9, 2)), 2) + " ";
    out += sjisColumn(text::replaceAll(p.time, ":", ""), 4) + " ";
    out += sjisColumn(p.call, 11);
    out += sjisColumn(p.sentRst, 3) + " " + sjisColumn(p.sentNr, 9);
    out += sjisColumn(p.rcvdRst, 3) + " " + sjisColumn(p.rcvdNr, 9);
    out += sjisColumn(p.multi1, 8);
    out += sjisColumn(p.band, 6);
    // The mode takes three places, as zLog writes it in this form (RTTY as RTT).
    out += sjisColumn(p.mode, 3) + " ";
    out += sjisColumn(p.points, 4) + " ";
    out += p.memo;
    return out;
}

// The mode column of a binary record's mode text; a text outside the rule keeps `mode`.
void binaryMode(std::string_view text, std::string& mode, bool& wide)
{
    const std::string_view m = text::trim(text);
    if (m == "RTTY") {
        mode = "RTTY";
    } else if (m == "PSK3" || m == "PSK31") {
        mode = "PSK31";
    } else if (m == "PSK6" || m == "PSK63") {
        mode = "PSK63";
    } else if (m == "USB" || m == "LSB") {
        mode = "SSB ";
    } else if (m == "CW") {
        mode = "CW  ";
    } else if (m == "FM") {
        mode = "FM  ";
    }
    wide = mode == "PSK31" || mode == "PSK63";
}

// "-" stands for a blank multiplier.
std::string_view multiplier(std::string_view m)
{
    const std::string_view t = text::trim(m);
    return t.empty() ? std::string_view("-") : t;
}

// The parts of a line of the decoder's working text, into `p`.
void binaryPartsInto(RtclRecordParts& p, std::span<const std::string_view> r, std::string& mode)
{
    namespace f = rtcl_tmp;
    if (r.size() < f::kFields) {
        throw failure::Failure(failure::SubscriptOutOfRange,
                               "インデックスが有効範囲にありません。");
    }
    BasicZlogParts<std::string_view>& v = p.view;
    v.date = r[f::date];
    const std::string_view time = r[f::time];
    if (text::isAsciiText(time)) {
        p.time.assign(time.substr(0, 2));
        p.time += ':';
        p.time.append(time.size() > 2 ? time.substr(2, 2) : std::string_view());
    } else {
        p.time = left(time, 2) + ":" + mid(time, 3, 2);
    }
    v.time = p.time;
    v.call = text::trim(r[f::call]);
    v.sentRst = text::trim(r[f::sent_rst]);
    p.sentNr.assign(text::trim(r[f::sent1]));
    p.sentNr.append(text::trim(r[f::sent2]));
    v.sentNr = p.sentNr;
    v.rcvdRst = text::trim(r[f::rcvd_rst]);
    p.rcvdNr.assign(text::trim(r[f::rcvd1]));
    p.rcvdNr.append(text::trim(r[f::rcvd2]));
    v.rcvdNr = p.rcvdNr;
    v.multi1 = multiplier(r[f::multi1]);
    v.multi2 = multiplier(r[f::multi2]);
    v.band = text::trim(r[f::band]);
    binaryMode(r[f::mode], mode, v.wideMode);
    v.mode = mode;
    const bool dupe = !r[f::note].empty();
    v.points = dupe ? std::string_view("0") : text::trim(r[f::points]);

    p.memo.clear();
    const std::string_view op = text::trim(r[f::op]);
    if (!op.empty()) {
        p.memo += "%%";
        p.memo += op;
        p.memo += "%% ";
    }
    p.memo += r[f::note];
    const std::string_view khz = text::trim(r[f::khz]);
    if (!khz.empty()) {
        p.memo += '(';
        p.memo += khz;
        p.memo += ')';
    }
    const std::string_view memo = text::trim(r[f::memo]);
    if (!memo.empty()) {
        p.memo += ' ';
        p.memo += memo;
    }
    v.memo = p.memo;
}

// The parts of a record given as texts of its own, into `p`.
void binaryPartsInto(RtclRecordParts& p, const std::vector<std::string>& r, std::string& mode)
{
    const std::vector<std::string_view> views(r.begin(), r.end());
    binaryPartsInto(p, views, mode);
}

// The `.ALL` line of a binary record's parts, into `out`.
void binaryAllLineInto(std::string& out, const BasicZlogParts<std::string_view>& p)
{
    using text::appendSjisColumn;
    out.assign(p.date);
    out += ' ';
    out += p.time;
    out += ' ';
    appendSjisColumn(out, p.call, 13);
    appendSjisColumn(out, p.sentRst, 4);
    appendSjisColumn(out, p.sentNr, 8);
    appendSjisColumn(out, p.rcvdRst, 4);
    appendSjisColumn(out, p.rcvdNr, 7);
    out += ' ';
    appendSjisColumn(out, p.multi1, 5);
    out += ' ';
    appendSjisColumn(out, p.multi2, 5);
    out += ' ';
    appendSjisColumn(out, p.band, 5);
    appendSjisColumn(out, p.mode, p.wideMode ? 6 : 5);
    appendSjisColumn(out, p.points, 4);
    out += p.memo;
}

// The record of a text log, for its makers.
enum class Gen { Old, New };

// "599-013" as "013": the first 8 characters without "599-" and "-".
std::string textNumber(const std::string& field)
{
    return left(text::replaceAll(text::replaceAll(field, "599-", ""), "-", ""), 8);
}

// The rig's kHz without its point, as the memo: "14085", or "7025" for 07025.
std::string frequencyMemo(const std::string& digits)
{
    std::string d = left(digits, 2) + right(digits, 3);
    if (left(d, 1) == "0") {
        d = mid(d, 2);
    }
    return "(" + d + ")";
}

ZlogParts textParts(const std::vector<std::string>& f, Gen gen)
{
    ZlogParts p;
    p.sentRst = "599";
    p.rcvdRst = "599";
    if (gen == Gen::Old) {
        p.date = text::replaceAll(f[1], "-", "/");
        p.time = f[2];
        p.call = f[3];
        p.sentNr = textNumber(f[4]);
        p.rcvdNr = textNumber(f[5]);
        p.band = f[6];
        p.points = f[7];
        p.mode = "RTY";
        if (text::contains(f[11], "[FRQ")) {
            p.memo = frequencyMemo(rtclNoteFrequency(f[11]));
        }
    } else {
        p.date = text::replaceAll(left(f[1], 10), "-", "/");
        p.time = mid(f[1], 12, 5);
        p.call = f[2];
        p.sentNr = textNumber(f[3]);
        p.rcvdNr = textNumber(f[4]);
        p.band = f[5];
        p.points = f[6];
        p.mode = trimmed(f[11]) == "RTTY" ? std::string("RTY") : trimmed(f[11]);
        p.wideMode = p.mode == "PSK31" || p.mode == "PSK63";
        if (!text::trim(f[12]).empty()) {
            p.memo = frequencyMemo(rtclFieldFrequency(f[12]));
        }
    }
    return p;
}

std::string textAllLine(const ZlogParts& p)
{
    std::string out = p.date + " " + p.time + " ";
    out += sjisColumn(p.call, 13) + sjisColumn(p.sentRst, 4) + sjisColumn(p.sentNr, 8);
    out += sjisColumn(p.rcvdRst, 4) + sjisColumn(p.rcvdNr, 20);
    out += sjisColumn(p.band, 5) + sjisColumn(p.mode, p.wideMode ? 6 : 5);
    out += sjisColumn(p.points + "   ", 3) + p.memo;
    return out;
}

std::string textMaker(const ReaderContext& ctx, Gen gen, ZlogForm form, const char* traceLine)
{
    ctx.trace.line(traceLine);
    const std::string path =
        rtclOutputName(ctx.run.in_name, form == ZlogForm::All ? "_l2z.all" : "_l2z.txt");
    text::RecordReader in(ctx.run.in_name);
    text::LineWriter out(path, text::LineWriter::Mode::ReplaceWhenDone);
    out.write(form == ZlogForm::All ? rtclAllHeader() : std::string(kZa2tTitle));
    const std::size_t count = gen == Gen::Old ? 12 : 13;
    while (!in.atEnd()) {
        const std::vector<std::string> f = in.fields(count);
        if (f[0] == "QTC") {
            continue; // no contact
        }
        const ZlogParts p = textParts(f, gen);
        out.write(form == ZlogForm::All ? textAllLine(p) : txtLine(p));
    }
    out.close();
    return path;
}

} // namespace

std::string rtclAllHeader()
{
    return "zLog for Windows   (rtcl.log to zlog.all)    by Vornhale " +
           std::string(settings::kProgramVersion);
}

std::string rtclOutputName(std::string_view in_name, std::string_view suffix)
{
    std::string out = text::replaceAll(in_name, ".log", suffix);
    if (out == in_name) {
        out = text::replaceAllNoCase(in_name, ".log", suffix);
    }
    if (out == in_name) {
        throw failure::Failure(failure::InvalidCall,
                               "出力ファイル名が入力ファイルと同じになります。 " +
                                   std::string(in_name));
    }
    return out;
}

std::string l2zCaption(std::string_view in_name, std::string_view suffix)
{
    const std::string file = fs::path(std::string(in_name)).filename().string();
    if (!text::contains(text::lower(file), ".log")) {
        return {};
    }
    return rtclOutputName(file, suffix);
}

std::string rtclAllLine(const std::vector<std::string>& record, std::string& mode)
{
    RtclRecordParts parts;
    binaryPartsInto(parts, record, mode);
    std::string out;
    binaryAllLineInto(out, parts.view);
    return out;
}

std::string rtclTxtLine(const std::vector<std::string>& record, std::string& mode)
{
    RtclRecordParts parts;
    binaryPartsInto(parts, record, mode);
    if (parts.view.multi1 == "-") {
        parts.view.multi1 = {}; // the .TXT form leaves an old multiplier blank
    }
    return txtLine(parts.view);
}

const std::string& RtclAllLines::of(std::span<const std::string_view> record)
{
    binaryPartsInto(m_parts, record, m_mode);
    binaryAllLineInto(m_line, m_parts.view);
    return m_line;
}

namespace {

// Turns one record of the decoder's text into a line of the `.ALL` text.
struct RtclAllTurner
{
    std::vector<std::string_view> fields;
    RtclAllLines lines;

    void operator()(text::RecordBytes& in, text::LineWriter& out)
    {
        in.next(rtcl_tmp::kFields, fields);
        out.write(lines.of(fields));
    }

    // What the next record may take over.
    const std::string& carried() const { return lines.mode(); }
};

} // namespace

std::string make_rtcl_log_to_zlog_all(const ReaderContext& ctx)
{
    ctx.trace.line(kMakeRtclAllTrace);
    const std::string beside = rtclOutputName(ctx.run.in_name, "_log2a.all");
    const fs::path workPath = ctx.work(base::working::zlog_01);
    text::RecordBytes in(ctx.work(kRtclTmp));
    text::LineWriter work(workPath);
    text::LineWriter out(beside, text::LineWriter::Mode::ReplaceWhenDone);
    work.write(rtclAllHeader());
    if (!in.atEnd()) {
        text::turnRecords(
            in, work, [] { return RtclAllTurner(); }, [] {});
    }
    work.close();
    // The text beside the log is the working text as it stands, handed over a piece at a time.
    const text::FileBytes made(workPath);
    constexpr std::size_t kPiece = 1 << 18;
    for (std::size_t at = 0; at < made.size(); at += kPiece) {
        out.writeLines(std::string(made.view().substr(at, kPiece)));
    }
    out.close();
    return beside;
}

std::string mnu_rtcl_log2all(const ReaderContext& ctx)
{
    return textMaker(ctx, Gen::Old, ZlogForm::All, "Private sub mnu_rtcl_log2all()");
}

std::string mnu_rtcl_log2txt(const ReaderContext& ctx)
{
    return textMaker(ctx, Gen::Old, ZlogForm::Txt, "Private sub mnu_rtcl_log2txt()");
}

std::string mnu_rtcl_log2all_new(const ReaderContext& ctx)
{
    return textMaker(ctx, Gen::New, ZlogForm::All, "Private sub mnu_rtcl_log2all_new()");
}

std::string mnu_rtcl_log2txt_new(const ReaderContext& ctx)
{
    return textMaker(ctx, Gen::New, ZlogForm::Txt, "Private sub mnu_rtcl_log2txt_new()");
}

std::string makeZlogFromBinary(const std::filesystem::path& log, InputKind kind, ZlogForm form,
                               base::Trace& trace)
{
    trace.line(form == ZlogForm::All ? "Private sub cmdMake_all_Click()"
                                     : "Private sub cmdMake_txt_Click()");
    const std::string path =
        rtclOutputName(log.string(), form == ZlogForm::All ? "_log2z.all" : "_log2z.txt");
    const fs::path tmp = log.parent_path() / "tmp_log.csv";
    // The working file goes whatever happens: it is no result of the operator's.
    struct RemoveAtEnd
    {
        const fs::path& path;
        ~RemoveAtEnd()
        {
            std::error_code ec;
            fs::remove(path, ec);
        }
    } removeTmp{tmp};

    decodeRtclLog(text::readFileBytes(log), kind, tmp);
    text::RecordReader in(tmp);
    text::LineWriter out(path, text::LineWriter::Mode::ReplaceWhenDone);
    out.write(form == ZlogForm::All ? rtclAllHeader() : std::string(kZa2tTitle));
    std::string mode;
    while (!in.atEnd()) {
        const std::vector<std::string> record = in.fields(rtcl_tmp::kFields);
        out.write(form == ZlogForm::All ? rtclAllLine(record, mode) : rtclTxtLine(record, mode));
    }
    out.close();
    return path;
}

} // namespace vornhale::readers
