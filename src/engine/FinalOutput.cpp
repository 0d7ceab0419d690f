#include "engine/FinalOutput.h"

#include "base/Clock.h"
#include "base/PairedReplace.h"
#include "engine/Records.h"
#include "engine/RemarkLayout.h"
#include "failure/Failure.h"
#include "readers/OutputNames.h"
#include "reference/EntityLookup.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"
#include "text/RecordBytes.h"
#include "text/SjisCodec.h"
#include "text/SjisText.h"
#include "text/Utf8.h"
#include "text/WriteBehind.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <future>
#include <optional>

namespace vornhale::engine {
namespace {

namespace fs = std::filesystem;
using text::trim;

/// The positions of the sixteen fields of a result after `count_No_QSL_MNG`.
namespace reduced {
constexpr std::size_t kFields = 16;
constexpr std::size_t call_key = 0, call_ext = 1, date8 = 2, time6 = 3, q_rst_sent = 4,
                      q_rst_rcvd = 5, band_or_freq = 6, mode = 7, dx_code = 8, q_gl = 9, qsl3 = 10,
                      q_name = 11, dx_name = 12, rmks1 = 13, rmks2 = 14, q_call = 15;
} // namespace reduced

using text::RecordBytes;
using AsciiLine = text::AsciiRecordLine;

// `s` with every `from` replaced by `to`. The new text is built in `scratch` only when `from`
// occurs, so the usual record passes through without a copy.
std::string_view replacedIn(std::string_view s, std::string_view from, std::string_view to,
                            std::string& scratch)
{
    if (from.empty() || s.find(from) == std::string_view::npos) {
        return s;
    }
    scratch = text::replaceAll(s, from, to);
    return scratch;
}

// A remark as the final files want it: no leading blanks, no "@ " marks. A changed remark is
// built in `scratch`.
std::string_view cleanRemark(std::string_view r, std::string& scratch)
{
    if (text::startsWith(r, " ")) {
        r = text::trimLeft(r);
    }
    if (text::contains(r, "@")) {
        std::string spaced;
        spaced.reserve(r.size() + 1);
        spaced.append(r);
        spaced.push_back(' ');
        scratch = text::replaceAll(spaced, "@ ", "");
        return scratch;
    }
    return r;
}

// Reduces the result file at `path` to sixteen fields; returns the card-mark counts of the
// reduced file while each line is written as the record stood (see `count_No_QSL_MNG`).
std::optional<CardMarkCounts> reduceFile(const fs::path& path, bool managerForNoCard, bool anyWidth)
{
    const fs::path copy = path.string() + "_1";
    std::optional<CardMarkCounts> counts(std::in_place);
    {
        RecordBytes in(path);
        text::LineWriter out(copy);
        std::vector<std::string_view> f;
        std::string scratch1, scratch2;
        AsciiLine line;
        while (!in.atEnd()) {
            // The fields in the order of a result record.
            const bool ascii = in.next(ResultRecord::kFields, f);
            const bool noCard = text::startsWith(f[10], "N") && !managerForNoCard;
            std::string_view rmks1 = cleanRemark(noCard ? f[17] : f[15], scratch1);
            std::string_view rmks2 = cleanRemark(noCard ? f[18] : f[16], scratch2);
            if (!anyWidth) {
                rmks1 = trim(rmks1);
                rmks2 = trim(rmks2);
            }
            if (ascii && in.canonical()) {
                // The first thirteen fields stay as the line holds them.
                line.clear();
                line.fields(f[0], f[12]);
                line.field(rmks1);
                line.field(rmks2);
                line.field(f[19]);
                out.writeRaw(line.text());
                if (counts) {
                    counts->noCard += text::startsWith(f[10], "N") ? 1 : 0;
                    counts->manager += text::startsWith(f[10], "M") ? 1 : 0;
                    counts->lastMode.assign(f[7]);
                }
                continue;
            }
            counts.reset();
            out.writeRecord({f[0], f[1], f[2], f[3], f[4], f[5], f[6], f[7], f[8], f[9], f[10],
                             f[11], f[12], rmks1, rmks2, f[19]});
        }
        out.close();
    }
    // The reduced copy takes the place of the file. The file goes first: a rename over a
    // file makes the system write the copy to the disk at once, which a working file never
    // needs.
    std::error_code ec;
    text::removeBehind(path, ec);
    fs::rename(copy, path, ec);
    if (ec) {
        throw failure::Failure(failure::PathFileAccess, "パス名が無効です。 " + path.string());
    }
    return counts;
}

std::string_view modeOfCardPass(std::string_view mode)
{
    if (mode == "RTY" || mode == "TTY") {
        return "RTTY";
    }
    if (mode == "STV" || mode == "SST") {
        return "SSTV";
    }
    if (mode == "PSK" || mode == "PS3" || mode == "PS31") {
        return "PSK31";
    }
    if (mode == "PS6" || mode == "PS63") {
        return "PSK63";
    }
    return mode;
}

// In the log-order pass the test looks at the mode the last stage left behind, not at the
// record's own, so one value rewrites every record of the pass.
std::string_view modeOfLogPass(std::string_view recordMode, const std::string& lastMode)
{
    if (lastMode == "RTY" || lastMode == "TTY" || lastMode == "RTT") {
        return "RTTY";
    }
    if (lastMode == "STV" || lastMode == "SST") {
        return "SSTV";
    }
    if (lastMode == "PSK" || lastMode == "PS3" || lastMode == "PS31") {
        return "PSK31";
    }
    if (lastMode == "PS6" || lastMode == "PS63") {
        return "PSK63";
    }
    return recordMode;
}

std::string pad(std::string_view s, std::size_t width) { return text::padRight(s, width); }

std::string timeStamp(const char* format)
{
    return base::nowText(format);
}

// The report's copy of the two settings files that decided the run.
void writeSettingsFiles(text::LineWriter& out, const fs::path& strPath)
{
    auto copyFile = [&](const fs::path& file) {
        std::error_code ec;
        if (fs::is_regular_file(file, ec)) {
            for (const std::string& line : text::readLines(file)) {
                out.write(line);
            }
        }
    };
    out.write("======= Vornhale_cfg.ini ============");
    copyFile(strPath / "Vornhale_cfg.ini");
    out.write("");
    out.write("======= Vornhale_new.ini ============");
    copyFile(strPath / "Vornhale_new.ini");
    out.write(std::string(32, '='));
    out.write("");
}

// The options of the history test, the no-card rules and the manager search, as the window
// words them.
void writeHistoryAndManagerChoices(text::LineWriter& out, const settings::Options& o)
{
    static const char* const kHistoryMarks[] = {"この機能は無視する", "Q S O   済みの局",
                                                "QSL発行済みの局", "QSL受領済みの局"};
    static const char* const kManagerOrder[] = {"WEB検索のみを使用する", "MNG ﾌｧｲﾙ 優先、WEB補完",
                                                "WEB優先、MNG ﾌｧｲﾙ 補完"};
    const int history = o.member("Option04");
    const int managerOrder = o.member("Option10");
    const std::string& hdb = o.value("hamlog_hdb_dir");
    const std::string source =
        hdb.empty() ? std::string("新 Hamlog.hdb")
                    : text::Mid_sjis(fs::path(hdb).filename().string(), 1, 6) + ".hdb";
    auto tickNumber = [&](const char* key) { return std::to_string(o.tick(key) ? 1 : 0); };
    out.write(std::string("該当する局にはNo QSL 　： ") +
              (history >= 0 && history < 4 ? kHistoryMarks[history] : ""));
    out.write("参照する入力ファイル 　： " + source);
    out.write("同バンド　　　　　　 　： " + tickNumber("Check04"));
    out.write("同モード 　　　　　　　： " + tickNumber("Check05"));
    out.write("QSL MNG がいても　Ｎ　 ： " + tickNumber("Check9"));
    out.write("フル ・ コールで処理　 ： " + tickNumber("Check14"));
    out.write("N --> J  　　　　　　　： " + tickNumber("Check3"));
    out.write("J --> N 　　　　　　 　： " + tickNumber("Check4"));
    out.write("JA のクラブ局はNo QSL　： " + tickNumber("Check10"));
    out.write("指定ctyはNo QSL　　　　： " + tickNumber("Check09"));
    out.write("指定ctyはNo QSL ( cty )： " + o.value("No_qsl_cty"));
    out.write("Web よりMng 取得をする ： " + tickNumber("Check18"));
    out.write(std::string("優先順  　　　　　　　 ： ") +
              (managerOrder >= 0 && managerOrder < 3 ? kManagerOrder[managerOrder] : ""));
    out.write("");
}

void writeCounters(text::LineWriter& out, const Counters& c, const std::string& inputCount)
{
    out.write("今回の処理数は　：　" + inputCount);
    out.write("複数の局の数は　：　" + std::to_string(c.fuku_kazu));
    out.write("単数の局の数は　：　" + std::to_string(c.tan_kazu));
    out.write("複 ・単の合計数 ：　" + std::to_string(c.calls_kazu));
    out.write("No QSL 局の数　 ：　" + std::to_string(c.no_qsl_kazu));
    out.write("転送先 Ｍ の数 ：　" + std::to_string(c.m_kazu));
    out.write("Name 取得の数　 ：　" + std::to_string(c.name_kazu));
    out.write("");
    out.write("");
}

// The records of `_hn.csv`, first as a listing in columns, then as they stand.
void writeListing(text::LineWriter& out, const std::string& out_name_ham_n)
{
    const std::vector<std::string> hamLines = text::readLines(out_name_ham_n);
    out.write(std::string(10, '-') + "  " + out_name_ham_n + "  " + std::string(10, '-'));
    for (const std::string& line : hamLines) {
        // The listing keeps the widths of the old fifteen-field form, so its columns are
        // shifted against the new form.
        auto f = text::split(text::replaceAll(line, "\"", ""), ",");
        f.resize(15);
        out.write(pad(f[0], 14) + pad(text::replaceAll(f[2], "/", ""), 7) +
                  pad(text::replaceAll(f[3], ":", ""), 6) + pad(f[6], 7) + pad(f[7], 4) +
                  pad(f[10], 4) + " " + pad(f[13], 19) + pad(f[14], 19));
    }
    out.write("");
    out.write("");
    out.write(std::string(10, '=') + "  " + out_name_ham_n + "  " + std::string(10, '='));
    for (const std::string& line : hamLines) {
        out.write(line);
    }
    out.write(std::string(32, '='));
}

} // namespace

std::string count_No_QSL_MNG_2(RunContext& ctx, const std::optional<CardMarkCounts>& known)
{
    ctx.trace.line("Private sub count_No_QSL_MNG_2()");
    ctx.observer.status("  No QSL and MNG 件数カウント中", base::Colour::Green);
    ctx.run.counters.no_qsl_kazu = 0;
    ctx.run.counters.m_kazu = 0;
    if (known) {
        ctx.run.counters.no_qsl_kazu = known->noCard;
        ctx.run.counters.m_kazu = known->manager;
        return known->lastMode;
    }
    std::string lastMode;
    RecordBytes in(ctx.run.names.out_name_ham0);
    std::vector<std::string_view> f;
    while (!in.atEnd()) {
        in.next(reduced::kFields, f);
        if (text::startsWith(f[reduced::qsl3], "N")) {
            ++ctx.run.counters.no_qsl_kazu;
        }
        if (text::startsWith(f[reduced::qsl3], "M")) {
            ++ctx.run.counters.m_kazu;
        }
        lastMode.assign(f[reduced::mode]);
    }
    return lastMode;
}

std::optional<CardMarkCounts> count_No_QSL_MNG(RunContext& ctx, const RemarkLayout& layout)
{
    ctx.trace.line("Private sub count_No_QSL_MNG()");
    const bool managerForNoCard = ctx.options.tick("Check23");
    // The two files are reduced side by side; a failure is told as it would be were they
    // reduced one after the other, the card-order file first.
    auto cardOrder = std::async(std::launch::async, [&] {
        reduceFile(ctx.run.names.out_name_con0, managerForNoCard, layout.anyWidth());
    });
    std::exception_ptr logOrderFailure;
    std::optional<CardMarkCounts> counts;
    try {
        counts = reduceFile(ctx.run.names.out_name_ham0, managerForNoCard, layout.anyWidth());
    } catch (...) {
        logOrderFailure = std::current_exception();
    }
    cardOrder.get();
    if (logOrderFailure) {
        std::rethrow_exception(logOrderFailure);
    }
    return counts;
}

void makeFinalFiles(RunContext& ctx, const RemarkLayout& layout, const std::string& lastMode)
{
    RunState& run = ctx.run;
    const settings::Options& o = ctx.options;
    const std::string& No_QSL_moji = o.value("No_QSL_moji");
    const std::string& buro_QSL_moji = o.value("buro_QSL_moji");
    const bool bureauByCode = o.value("DXCC_mas_txt_55_use") == "Yes";
    const bool oneEightForOneNine = o.tick("Check16");
    const int callsInRemark1 = layout.callsInRow1();
    const int callsInRemark2 = layout.callsInRow2();
    run.counters.name_kazu = 0;

    struct Pass
    {
        std::string source, oldForm, final;
        bool cardOrder;
    };
    const Pass passes[] = {
        {run.names.out_name_ham0, readers::replaceExtension(run.in_name, "_h.csv"),
         readers::replaceExtension(run.in_name, "_hn.csv"), false},
        {run.names.out_name_con0, readers::replaceExtension(run.in_name, "_c.csv"),
         readers::replaceExtension(run.in_name, "_cn.csv"), true},
    };
    // Both final files are written whole under temporary names, and only then replace the
    // previous pair, one right after the other: never a new `_hn.csv` beside an old `_cn.csv`.
    base::PairedReplace pair(ctx.folder.drive_path, {passes[0].final, passes[1].final});
    const std::vector<fs::path> temporaries = pair.temporaries();
    const std::string qslFrom = No_QSL_moji + run.QSL_S;
    const std::string qslTo = No_QSL_moji + " ";
    // Texts of the options that can take a record's place: when they are ASCII, an ASCII
    // record gives ASCII lines that go to the writers as they are built.
    const bool asciiOptions =
        text::isAsciiText(qslFrom) && text::isAsciiText(qslTo) && text::isAsciiText(buro_QSL_moji);
    // One pass writes the old form and the final file of one result.
    auto writePass = [&](const Pass& pass, const fs::path& temporary, int& names) {
        RecordBytes in(pass.source);
        text::LineWriter oldOut(pass.oldForm);
        text::LineWriter finalOut(temporary, text::LineWriter::Mode::ForTheDisk);
        std::vector<std::string_view> f;
        std::string qslText, rmks1Text, rmks2Text, callMark;
        AsciiLine line;
        while (!in.atEnd()) {
            using namespace reduced;
            const bool asIs = in.next(kFields, f) && in.canonical() && asciiOptions;
            const std::string_view mode = pass.cardOrder
                                              ? modeOfCardPass(f[reduced::mode])
                                              : modeOfLogPass(f[reduced::mode], lastMode);
            const std::string_view time_flag = text::contains(f[time6], "U") ? "8" : "0";
            if (pass.cardOrder && !trim(f[q_name]).empty()) {
                ++names;
            }
            std::string_view qsl = replacedIn(f[qsl3], qslFrom, qslTo, qslText);
            std::string_view remark1 = f[rmks1];
            std::string_view remark2 = f[rmks2];
            if (bureauByCode) {
                const std::string flag = ctx.entities.dxcc_buro_by_code(f[dx_code]);
                if (!text::startsWith(qsl, "M") && (flag == "-" || flag == "X")) {
                    qsl = buro_QSL_moji;
                    rmks1Text.assign(remark1);
                    rmks1Text += "no_Buro";
                    remark1 = rmks1Text;
                }
            }
            std::string_view band = f[band_or_freq];
            if (oneEightForOneNine && trim(band) == "1.9") {
                band = "1.8";
            }
            if (asIs) {
                line.clear();
                line.fields(f[call_key], f[q_rst_rcvd]);
                line.field(band);
                line.field(mode);
                line.fields(f[dx_code], f[q_gl]);
                line.field(qsl);
                line.fields(f[q_name], f[dx_name]);
                line.field(remark1);
                line.field(remark2);
                oldOut.writeRaw(line.text());
            } else {
                oldOut.writeRecord({f[call_key], f[call_ext], f[date8], f[time6], f[q_rst_sent],
                                    f[q_rst_rcvd], band, mode, f[dx_code], f[q_gl], qsl, f[q_name],
                                    f[dx_name], remark1, remark2});
            }
            // A call mark can only stand in a remark that holds an "@".
            const bool markInRemark1 = callsInRemark1 == 0 && text::contains(remark1, "@");
            const bool markInRemark2 = callsInRemark2 == 0 && text::contains(remark2, "@");
            if (markInRemark1 || markInRemark2) {
                callMark.assign("@");
                callMark.append(f[q_call]);
                callMark.push_back(' ');
            }
            if (markInRemark1) {
                remark1 = replacedIn(remark1, callMark, " ", rmks1Text);
            }
            if (markInRemark2) {
                remark2 = replacedIn(remark2, callMark, " ", rmks2Text);
            }
            remark1 = replacedIn(remark1, "$DX", "", rmks1Text);
            if (asIs) {
                line.clear();
                line.field(f[q_call]);
                line.fields(f[date8], f[q_rst_rcvd]);
                line.field(band);
                line.field(mode);
                line.fields(f[dx_code], f[q_gl]);
                line.field(qsl);
                line.fields(f[q_name], f[dx_name]);
                line.field(remark1);
                line.field(remark2);
                line.field(time_flag);
                finalOut.writeRaw(line.text());
            } else {
                finalOut.writeRecord({f[q_call], f[date8], f[time6], f[q_rst_sent], f[q_rst_rcvd],
                                      band, mode, f[dx_code], f[q_gl], qsl, f[q_name], f[dx_name],
                                      remark1, remark2, time_flag});
            }
        }
        oldOut.close();
        finalOut.close();
    };
    // The two passes run side by side. A failure is told as it would be were they run one
    // after the other, and a failed log-order pass leaves nothing of the card-order one.
    int names = 0;
    auto cardOrder = std::async(std::launch::async,
                                [&] { writePass(passes[1], temporaries[1], names); });
    std::exception_ptr logOrderFailure;
    try {
        int none = 0;
        writePass(passes[0], temporaries[0], none);
    } catch (...) {
        logOrderFailure = std::current_exception();
    }
    try {
        cardOrder.get();
    } catch (...) {
        if (!logOrderFailure) {
            throw;
        }
    }
    if (logOrderFailure) {
        std::error_code ec;
        fs::remove(passes[1].oldForm, ec);
        std::rethrow_exception(logOrderFailure);
    }
    run.counters.name_kazu = names;
    pair.commit();
    run.counters.calls_kazu = run.counters.fuku_kazu + run.counters.tan_kazu;
}

fs::path Out_Henkan_Result(RunContext& ctx)
{
    ctx.trace.line("Private sub Out_Henkan_Result()");
    const RunState& run = ctx.run;
    std::error_code ec;
    fs::create_directories(ctx.folder.Henkan_Result, ec);
    const fs::path path = ctx.folder.Henkan_Result /
                          ("Henkan_" + timeStamp("%Y%m%d") + "_" + timeStamp("%H%M%S") + ".txt");
    text::LineWriter out(path);
    const std::string inputCount = std::string(trim(text::replaceAll(run.Label37, "件", "")));

    out.write("********  変換結果  ********");
    out.write("");
    writeSettingsFiles(out, ctx.folder.strPath);
    out.write("入力ファイル ：" + run.in_name);
    out.write("入 力 件 数　：" + inputCount);
    out.write("");
    writeHistoryAndManagerChoices(out, ctx.options);
    writeCounters(out, run.counters, inputCount);
    writeListing(out, run.names.out_name_ham_n);
    out.close();
    return path;
}

} // namespace vornhale::engine
