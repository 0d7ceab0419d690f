#include "engine/RecordConversion.h"

#include "engine/DateTimeConv.h"
#include "engine/Records.h"
#include "engine/RecordLookups.h"
#include "engine/RemarkComposer.h"
#include "engine/RemarkLayout.h"
#include "engine/SortSplit.h"
#include "base/WorkingFiles.h"
#include "reference/EntityLookup.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"

#include <algorithm>
#include <filesystem>

namespace vornhale::engine {
namespace {

using text::trim;

std::string trimmed(std::string_view s) { return std::string(trim(s)); }
bool blank(std::string_view s) { return trim(s).empty(); }

std::string rightAligned4(long n)
{
    std::string s = std::to_string(n);
    return s.size() < 4 ? std::string(4 - s.size(), ' ') + s : s;
}

// Removes "[QTC…]" from an upper-case remark: from the mark to the first "]" of the remark.
std::string withoutQtc(const std::string& memo)
{
    const std::size_t open = text::instr(memo, "[QTC");
    if (open == 0) {
        return memo;
    }
    const std::size_t close = text::instr(memo, "]");
    std::string out = text::left(memo, open - 1);
    if (close > open) {
        out += text::mid(memo, close + 1);
    }
    return trimmed(out);
}

// A remark with the "@ " marks taken out; one that is then only "@" is emptied.
std::string withoutAtMarks(const std::string& rmks)
{
    std::string out = text::replaceAll(rmks, "@ ", "");
    if (trim(out) == "@") {
        out.clear();
    }
    return out;
}

bool zoneDroppedForContest(const RunState& run)
{
    const std::string path = text::upper(run.in_name);
    return (run.f_type == "zlo" && run.cont_name == "All Asian DX Contest (Asia)") ||
           text::contains(path, "AA") || text::contains(path, "ASIA") ||
           (run.f_type == "zlo" && run.cont_name == "REFコンテスト(DX)") ||
           text::contains(path, "REF");
}

} // namespace

std::string normaliseMode(std::string_view mode)
{
    if (mode == "RTY" || mode == "TTY" || mode == "RTT") {
        return "RTTY";
    }
    if (mode == "STV" || mode == "SST") {
        return "SSTV";
    }
    if (mode == "PSK" || mode == "PS3" || mode == "PS31" || mode == "PSK3") {
        return "PSK31";
    }
    if (mode == "PS63" || mode == "PSK6") {
        return "PSK63";
    }
    return std::string(mode);
}

std::string zoneText(std::string_view z, std::string_view f_type, int option7,
                     std::string_view zone_moji)
{
    const std::string L(zone_moji);
    const std::string zs(z);
    const std::size_t n = text::charCount(z);
    if (f_type == "zlo") {
        if (n == 0) {
            return {};
        }
        if (option7 == 0) {
            return n == 1 ? L + "0" + zs : n == 2 ? L + zs : zs;
        }
        if (option7 == 1) {
            // The label stands twice here; that is how the zone of a .ZLO log comes out.
            return n == 1 ? L + text::left(L + "0" + zs, 2)
                   : n == 2 ? L + text::left(L + zs, 2)
                            : L + text::left(zs, 2);
        }
        return {};
    }
    if (option7 == 0) {
        const std::size_t d = text::countDigits(z);
        if (d == n && n < 3) {
            return L + text::right("0" + zs, 2);
        }
        if (d == 2) {
            return L + text::left(zs, 2);
        }
        return {};
    }
    if (option7 == 1) {
        return n == 0 ? std::string() : n == 1 ? L + "0" + zs : n == 2 ? L + zs : zs;
    }
    return {};
}

void Henkan_txt(RunContext& ctx, const RemarkLayout& layout)
{
    static RecordLookups none;
    RecordLookups& look = ctx.lookups != nullptr ? *ctx.lookups : none;
    RunState& run = ctx.run;
    const settings::Options& o = ctx.options;

    ctx.trace.line("Private sub Henkan_txt()");
    if (o.tick("Check6")) {
        run.use_log_zone = true;
    }
    const std::string hamName = std::filesystem::path(run.names.out_name_ham_n).filename().string();
    ctx.observer.status(hamName + "  に変換中", base::Colour::Green);

    look.beforeFirstRecord(ctx);
    const long count = text::Count_lines(ctx.work(base::working::zlog_2));
    text::RecordReader in(ctx.work(base::working::zlog_2));
    text::LineWriter sortOut(ctx.work(base::working::sort_in));
    text::LineWriter hamOut(run.names.out_name_ham0);
    ctx.observer.progressRange(count + 2);
    ctx.trace.line("   Private sub Henkan_txt() ___ Do  読み込み");

    const bool check1 = o.tick("Check1"), check5 = o.tick("Check5"), check6 = o.tick("Check6"),
               check9 = o.tick("Check9"), check12 = o.tick("Check12"), check15 = o.tick("Check15"),
               check18 = o.tick("Check18"), check22 = o.tick("Check22"), check29 = o.tick("Check29"),
               check09 = o.tick("Check09"), check10 = o.tick("Check10"), check25 = o.tick("Check25"),
               check26 = o.tick("Check26"), check27 = o.tick("Check27"), check28 = o.tick("Check28");
    const int option3 = o.member("Option3");
    const bool provinceAlone = o.isOn("Option4", 2);
    const bool historyOn = o.member("Option04") != 0;
    const int option7 = o.member("Option7");
    const int option10 = o.member("Option10");
    const std::string& buro_QSL_moji = o.value("buro_QSL_moji");
    const std::string testKeyMode = o.tick("Check04") && o.tick("Check05") ? "both"
                                    : o.tick("Check04")                   ? "band"
                                    : o.tick("Check05")                   ? "mode"
                                                                          : "none";
    const int mngWidth = layout.widthOf("MNG");
    RemarkComposer composer(layout, check1, check5);
    DateTimeConversion timeShift(o.member("Option05"));

    long done = 0;
    while (!in.atEnd()) {
        EnrichedLine e = EnrichedLine::from(in.fields(EnrichedLine::kFields));
        const std::string q_call = trimmed(e.q_call);
        std::string mode = normaliseMode(e.q_mode);

        const std::string rcvd_text_initial = e.q_rcvd;
        std::string q_memo = text::upper(e.q_memo);
        if (text::contains(q_memo, "[QTC")) {
            q_memo = withoutQtc(q_memo);
        }

        const std::string call_key = e.base_call;
        std::string base_call = text::padRight(e.base_call, 6);

        bool historyDone = false;
        if (historyOn) {
            const std::string code = look.band_mode_code(e.band_or_freq, mode);
            const std::string letter = text::left(code, 1), digit = text::mid(code, 2, 1);
            const std::string key = testKeyMode == "both"   ? letter + digit
                                    : testKeyMode == "band" ? letter + "0"
                                    : testKeyMode == "mode" ? "0" + digit
                                                            : "00";
            historyDone = look.historyDone(q_call, key);
        }
        std::string route = historyDone ? "N" : "";
        if (check10 && look.clubStation(base_call)) {
            route = "N";
        }
        if (check09 && look.noQslCountry(e.q_entity)) {
            route = "N";
        }
        base_call = text::padRight(base_call, 6);

        const std::string mng_file = text::replaceAll(look.managerFromFile(q_call), "@", "");
        std::string mng;
        if (!check18) {
            mng = "@" + mng_file;
        } else if (!check22 && route == "N") {
            mng.clear();
        } else {
            ctx.observer.label("Text2", q_call);
            const std::string mng_web = look.managerFromWeb(q_call);
            if (option10 == 0) {
                mng = "@" + mng_web;
            } else if (option10 == 1) {
                mng = "@" + (blank(mng_file) ? mng_web : mng_file);
            } else if (option10 == 2) {
                mng = "@" + (blank(mng_web) ? mng_file : mng_web);
            }
        }

        const std::string upperMng = text::upper(mng);
        if (text::contains(upperMng, "DIRECT") || text::contains(upperMng, "BURO") || blank(mng)) {
            mng = text::replaceAll(mng, "@", "");
        }
        mng = text::replaceAll(mng, "@@", "@");
        if (mng == "@" + base_call) {
            mng.clear();
            route = "J";
        }

        std::string route_base;
        if (!historyDone) {
            if (mng == "@") {
                route_base = "J";
                mng.clear();
            } else if (!blank(mng) && route != "N") {
                route_base = "M";
            } else {
                route_base = run.QSL_Q + " ";
                mng.clear();
            }
        } else {
            route = "N";
        }
        if (route_base == "M") {
            route = check9 ? "N" : "M";
        }
        if (route == "J") {
            route = blank(run.QSL_Q) || blank(route_base) ? " " : run.QSL_Q;
        } else if (route != "N") {
            route = route_base;
        }

        base_call = trimmed(base_call);
        if (route == "N") {
            run.QSL_S = " ";
        }
        std::string qsl3 = route == "N"   ? "N  "
                           : route == "M" ? "M" + run.QSL_S + " "
                                          : run.QSL_Q + run.QSL_S + " ";
        if (trim(qsl3) == "*") {
            qsl3 = " * ";
        }

        std::string q_name, q_gl;
        std::string dx_code = e.dx_code, dx_name = e.dx_name;
        if (check15 && look.nameMasterOn()) {
            q_name = look.nameOf(base_call);
        }
        if (check29 && look.nameMasterOn()) {
            std::string c = text::replaceAll(text::upper(q_call), "/QRPP", "");
            c = text::replaceAll(c, "/QRP", "");
            if (!text::contains(c, "/")) {
                if (QthEntry qth = look.qthOf(base_call); qth.found) {
                    if (check25) {
                        dx_code = qth.code;
                    }
                    if (check27) {
                        q_name = qth.name;
                    }
                    if (check26) {
                        q_gl = qth.gl;
                    }
                    if (check28) {
                        dx_name = qth.qth;
                    }
                }
            }
        }

        // The time letter is always "U" here: the test for Japan time can never hold.
        std::string q_date6 = e.q_date6;
        std::string q_time5 = e.q_time + "U";
        timeShift.date_time_conv(q_date6, q_time5, q_call);

        std::string zone_text;
        if (layout.use().zone && check6 && !(run.f_type == "zlo" && !run.use_log_zone)) {
            zone_text = zoneText(trim(e.q_rcvd), run.f_type, option7, run.Zone_moji);
            if (!check12 && zoneDroppedForContest(run)) {
                zone_text.clear();
            }
        }

        std::string dx_state;
        if (layout.use().state && (dx_code == "784A" || dx_code == "758A" || dx_code == "667A")) {
            dx_state = look.stateOf(e.q_rcvd);
        }

        std::string iota_text, rcvd_text = rcvd_text_initial;
        if (text::contains(text::upper(run.in_name), "IOTA") || run.cont_name == "IOTA Contest") {
            if (layout.use().iota && (run.f_type != "zlo" || run.zlo_iota)) {
                iota_chk(e.q_rcvd, iota_text, rcvd_text, ctx.trace);
            }
        }
        if (run.f_type != "zlo") {
            run.cont_name.clear();
        }

        std::string calls_text;
        const auto slashes = std::count(q_call.begin(), q_call.end(), '/');
        if ((slashes == 0 && text::charCount(q_call) > 6) || slashes >= 2 || e.dx_mark == "$DX") {
            calls_text = q_call;
        }
        if (!blank(calls_text) && text::contains(mng, calls_text)) {
            mng = text::replaceAll(mng, calls_text, "");
            route = run.QSL_Q;
        }

        RemarkValues values;
        values.mng = mng;
        values.dx_mark = e.dx_mark;
        values.calls_text = calls_text;
        values.cont_name = run.cont_name;
        values.q_memo = q_memo;
        values.q_op = e.q_op;
        values.iota_text = iota_text;
        values.zone_text = zone_text;
        values.dx_state = dx_state;
        values.rcvd_text = rcvd_text;
        values.rmk1 = run.Rmks1_text;
        values.rmk2 = run.Rmks2_text;
        std::string rmks1 = composer.compose_rmks(layout.row1(), values);
        std::string rmks2 = composer.compose_rmks(layout.row2(), values);

        const std::string mng_pad = mngWidth > 0 ? text::padRight(mng, static_cast<std::size_t>(mngWidth) + 1)
                                                 : mng + " ";
        values.mng.clear();
        std::string rmks1_nomng = composer.compose_rmks(layout.row1(), values);
        std::string rmks2_nomng = composer.compose_rmks(layout.row2(), values);

        std::string q_rst_rcvd = trimmed(text::left(e.q_rst_rcvd, 3));
        if (text::startsWith(e.call_ext, "M ") || text::startsWith(e.call_ext, "MM")) {
            dx_code.clear();
            dx_name = text::left(e.call_ext, 2);
        }
        if (!blank(e.q_rcvd) && check5) {
            const std::string province = look.provinceOf(e.q_rcvd);
            if (!province.empty()) {
                const std::string add = provinceAlone ? province : run.Prov_moji + province;
                if (option3 == 0) {
                    rmks1 = trimmed(rmks1 + " " + add);
                } else if (option3 == 1) {
                    rmks2 = trimmed(rmks2 + " " + add);
                }
            }
        }

        const std::string date8 = date8Of(q_date6);
        const std::string time6 = text::left(q_time5, 2) + ":" + text::right(q_time5, 3);

        std::string rmks1_c = withoutAtMarks(rmks1);
        std::string rmks2_c = withoutAtMarks(rmks2);
        auto takeManagerOut = [&](const std::string& rmks) {
            const std::string out =
                mngWidth == 0
                    ? text::replaceAll(rmks, trim(mng_pad), "")
                    : text::replaceAll(rmks, mng_pad,
                                       std::string(static_cast<std::size_t>(mngWidth) + 1, ' '));
            return withoutAtMarks(out);
        };
        rmks1_nomng = takeManagerOut(rmks1);
        rmks2_nomng = takeManagerOut(rmks2);

        if (text::startsWith(qsl3, "N") || route == "N") {
            rmks1 = rmks1_nomng;
            rmks2 = rmks2_nomng;
        }
        rmks1 += " " + e.dx_mark;
        if (!layout.anyWidth()) {
            rmks1 = trimmed(rmks1);
            rmks2 = trimmed(rmks2);
            rmks1_nomng = trimmed(rmks1_nomng + " " + e.dx_mark);
            rmks1_c = trimmed(rmks1_c + " " + e.dx_mark);
            rmks2_nomng = trimmed(rmks2_nomng);
            rmks2_c = trimmed(rmks2_c);
        }

        const std::string dx_buro = ctx.entities.dxcc_lookup(e.q_entity).dx_buro;
        if (!text::startsWith(qsl3, "M") && (dx_buro == "-" || dx_buro == "X")) {
            route = buro_QSL_moji;
            qsl3 = buro_QSL_moji;
            rmks1 += "not Buro";
        }

        SortRecord s;
        s.call_key = call_key;
        s.call_ext = e.call_ext;
        s.dx_code = dx_code;
        s.band_or_freq = e.band_or_freq;
        s.mode = mode;
        s.q_name = q_name;
        s.route = route;
        s.q_gl = q_gl;
        s.q_date6 = q_date6;
        s.q_time5 = q_time5;
        s.q_rst_sent = e.q_rst_sent;
        s.q_rst_rcvd = q_rst_rcvd;
        s.dx_name = dx_name;
        s.rmks1 = rmks1;
        s.rmks2 = rmks2;
        s.mng_pad = mng_pad;
        s.rmks1_c = rmks1_c;
        s.rmks2_c = rmks2_c;
        s.rmks1_nomng = rmks1_nomng;
        s.rmks2_nomng = rmks2_nomng;
        s.q_call = q_call;
        sortOut.write(text::formatRecord(s.fields()));

        const ResultRecord r = resultOf(s, date8, time6, qsl3);
        hamOut.write(text::formatRecord(r.fields()));

        ++done;
        ctx.observer.progress(done);
        ctx.observer.label("Label35", rightAligned4(done) + " / " + rightAligned4(count - 1));
    }
    sortOut.close();
    hamOut.close();
    ctx.observer.progress(0);
}

void henkan_conv(RunContext& ctx, const RemarkLayout& layout)
{
    ctx.trace.line("Private sub henkan_conv()");
    Henkan_txt(ctx, layout);
    if (ctx.run.sort_kind == 0) {
        Henkan_out_name_con(ctx);
        sort_(ctx, 1, 8, false, ctx.work(base::working::sort_in), ctx.work(base::working::sort_out));
        count_tan_fuku(ctx);
    } else {
        sort_(ctx, 1, 8, false, ctx.work(base::working::sort_in), ctx.work(base::working::sort_out));
        temp_sep(ctx);
    }
}

} // namespace vornhale::engine
