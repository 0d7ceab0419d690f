#include "engine/RecordConversion.h"

#include "base/WorkingFiles.h"
#include "engine/DateTimeConv.h"
#include "engine/RecordLookups.h"
#include "engine/Records.h"
#include "engine/RemarkComposer.h"
#include "engine/RemarkLayout.h"
#include "engine/SortSplit.h"
#include "reference/EntityLookup.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"
#include "text/RecordBytes.h"
#include "text/SideBySide.h"
#include "text/Utf8.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <memory>
#include <tuple>

namespace vornhale::engine {
namespace {

using text::trim;

std::string trimmed(std::string_view s)
{
    return std::string(trim(s));
}
bool blank(std::string_view s)
{
    return trim(s).empty();
}

// A count right-aligned in four places, as the progress label shows it.
std::string alignedInFour(long n)
{
    std::string s = std::to_string(n);
    return s.size() < 4 ? std::string(4 - s.size(), ' ') + s : s;
}

// The mode as the result carries it, as a view of `mode` or of the long form.
std::string_view normalisedModeView(std::string_view mode)
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
    return mode;
}

// Blanks at both ends taken off in place; the text keeps its capacity.
void trimInPlace(std::string& s)
{
    std::size_t end = s.size();
    while (end > 0 && s[end - 1] == ' ') {
        --end;
    }
    std::size_t begin = 0;
    while (begin < end && s[begin] == ' ') {
        ++begin;
    }
    s.resize(end);
    if (begin > 0) {
        s.erase(0, begin);
    }
}

// `text::upper` into `out`. ASCII text is upper-cased byte by byte, as `text::upper` does it.
void upperInto(std::string& out, std::string_view s)
{
    if (!text::isAsciiText(s)) {
        out = text::upper(s);
        return;
    }
    out.assign(s);
    for (char& ch : out) {
        if (ch >= 'a' && ch <= 'z') {
            ch = static_cast<char>(ch - 0x20);
        }
    }
}

// `text::padRight` into `out`: cut to `width` characters, then padded with blanks to them.
void padRightInto(std::string& out, std::string_view s, std::size_t width)
{
    if (!text::isAsciiText(s)) {
        out = text::padRight(s, width);
        return;
    }
    out.assign(s.substr(0, width));
    out.append(width - out.size(), ' ');
}

// The first `n` characters of `s` as a view (`text::left` without the copy).
std::string_view leftView(std::string_view s, std::size_t n)
{
    return s.substr(0, text::isAsciiText(s) ? n : text::byteOffsetOfChar(s, n));
}

// `text::replaceAll` into `out`, copying only when `from` occurs.
void replaceAllInto(std::string& out, std::string_view s, std::string_view from,
                    std::string_view to)
{
    if (from.empty() || s.find(from) == std::string_view::npos) {
        out.assign(s);
    } else {
        out = text::replaceAll(s, from, to);
    }
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

// A remark with the "@ " marks taken out into `out`; one that is then only "@" is emptied.
void withoutAtMarksInto(std::string& out, std::string_view rmks)
{
    if (rmks.find('@') == std::string_view::npos) {
        // Neither a mark nor a lone "@" can stand in it.
        out.assign(rmks);
        return;
    }
    replaceAllInto(out, rmks, "@ ", "");
    if (trim(out) == "@") {
        out.clear();
    }
}

bool zoneDroppedForContest(const RunState& run, std::string_view upperPath)
{
    return (run.f_type == "zlo" && run.cont_name == "All Asian DX Contest (Asia)") ||
           text::contains(upperPath, "AA") || text::contains(upperPath, "ASIA") ||
           (run.f_type == "zlo" && run.cont_name == "REFコンテスト(DX)") ||
           text::contains(upperPath, "REF");
}

// The options that the record steps read, taken once before the first record; they hold
// through all records of the conversion.
struct ConversionOptions
{
    bool itemSeparator = false;      // Check1: one blank between remark items
    bool provinceLookup = false;     // Check5
    bool zoneFromExchange = false;   // Check6
    bool managedGetNoCard = false;   // Check9
    bool keepContestZone = false;    // Check12
    bool nameLookup = false;         // Check15
    bool webSearch = false;          // Check18
    bool webSearchForNoCard = false; // Check22
    bool qthLookup = false;          // Check29
    bool noCardCountries = false;    // Check09
    bool clubStationsNoCard = false; // Check10
    bool qthCode = false;            // Check25: the QTH master's code
    bool qthGl = false;              // Check26: its grid
    bool qthName = false;            // Check27: its name
    bool qthPlace = false;           // Check28: its QTH
    bool historyOn = false;          // Option04 other than "this function is ignored"
    bool historySameBand = false;    // Check04
    bool historySameMode = false;    // Check05
    bool provinceAlone = false;      // Option4(2): the province without its label
    int provinceRemark = 0;          // Option3: 0 adds it to remark 1, 1 to remark 2
    int zoneForm = 0;                // Option7
    int managerOrder = 0;            // Option10
    std::string buro_QSL_moji;
    int mngWidth = 0; // the width of the MNG item

    static ConversionOptions of(const settings::Options& o, const RemarkLayout& layout)
    {
        ConversionOptions c;
        c.itemSeparator = o.tick("Check1");
        c.provinceLookup = o.tick("Check5");
        c.zoneFromExchange = o.tick("Check6");
        c.managedGetNoCard = o.tick("Check9");
        c.keepContestZone = o.tick("Check12");
        c.nameLookup = o.tick("Check15");
        c.webSearch = o.tick("Check18");
        c.webSearchForNoCard = o.tick("Check22");
        c.qthLookup = o.tick("Check29");
        c.noCardCountries = o.tick("Check09");
        c.clubStationsNoCard = o.tick("Check10");
        c.qthCode = o.tick("Check25");
        c.qthGl = o.tick("Check26");
        c.qthName = o.tick("Check27");
        c.qthPlace = o.tick("Check28");
        c.historyOn = o.member("Option04") != 0;
        c.historySameBand = o.tick("Check04");
        c.historySameMode = o.tick("Check05");
        c.provinceAlone = o.isOn("Option4", 2);
        c.provinceRemark = o.member("Option3");
        c.zoneForm = o.member("Option7");
        c.managerOrder = o.member("Option10");
        c.buro_QSL_moji = o.value("buro_QSL_moji");
        c.mngWidth = layout.widthOf("MNG");
        return c;
    }
};

// What the steps of one conversion share: the run with its lookups, the layouts and the
// options read once. Each worker of the record loop has its own, with its own copy of the run:
// a record may leave values to the records after it (see `RecordConverter::carried`).
struct ConversionScope
{
    RunContext& ctx;
    RunState& run;
    RecordLookups& look;
    const RemarkLayout& layout;
    const ConversionOptions opt;
    const RemarkComposer composer;
    DateTimeConversion timeShift;
    // The log's path in upper case: the contest tests on its name hold for every record.
    const std::string upperPath;
    const bool iotaInPath;

    ConversionScope(RunContext& context, RunState& runState, RecordLookups& lookups,
                    const RemarkLayout& layouts)
        : ctx(context), run(runState), look(lookups), layout(layouts),
          opt(ConversionOptions::of(context.options, layouts)),
          composer(layouts, opt.itemSeparator, opt.provinceLookup),
          timeShift(context.options.member("Option05")), upperPath(text::upper(run.in_name)),
          iotaInPath(text::contains(upperPath, "IOTA"))
    {
    }
};

// The nineteen fields of one enriched line of `zlog_2.txt`, as views into the reader's text.
struct LineView
{
    std::string_view q_entity, q_date6, q_time, q_call, q_rst_sent, q_rst_rcvd, base_call, call_ext,
        band_or_freq, q_mode, reserved, dx_mark, dx_code, dx_name, dx_state, q_call2, q_op, q_memo,
        q_rcvd;

    static LineView of(const std::vector<std::string_view>& f)
    {
        return {f[0],  f[1],  f[2],  f[3],  f[4],  f[5],  f[6],  f[7],  f[8], f[9],
                f[10], f[11], f[12], f[13], f[14], f[15], f[16], f[17], f[18]};
    }
};

// One contact on its way through the steps: the enriched line as read and every field that
// the steps set. Each record starts from a cleared one (the texts keep their capacity from
// record to record), so a contact takes nothing over from the one before except the run
// values that are meant to carry over (`QSL_S`, `cont_name`).
struct ContactState
{
    LineView line;
    std::string_view q_call;   ///< the call as logged, trimmed
    std::string_view mode;     ///< the normalised mode
    std::string q_memo;        ///< upper case, without the "[QTC…]" note
    std::string_view call_key; ///< `base_call` as read
    std::string base_call;
    bool historyDone = false;
    std::string route, route_base, mng, mng_file, qsl3;
    std::string q_name, q_gl, dx_code, dx_name;
    std::string q_date6, q_time5, date8, time6;
    std::string zone_text, dx_state, iota_text, rcvd_text, calls_text;
    std::string rmks1, rmks2, mng_pad, rmks1_nomng, rmks2_nomng, rmks1_c, rmks2_c;
    std::string q_rst_rcvd;
    std::string scratch; ///< a working text of one step

    void clear()
    {
        line = {};
        q_call = mode = call_key = {};
        historyDone = false;
        for (std::string* s :
             {&q_memo,      &base_call,  &route,   &route_base, &mng,      &mng_file,
              &qsl3,        &q_name,     &q_gl,    &dx_code,    &dx_name,  &q_date6,
              &q_time5,     &date8,      &time6,   &zone_text,  &dx_state, &iota_text,
              &rcvd_text,   &calls_text, &rmks1,   &rmks2,      &mng_pad,  &rmks1_nomng,
              &rmks2_nomng, &rmks1_c,    &rmks2_c, &q_rst_rcvd, &scratch}) {
            s->clear();
        }
    }
};

// The record as read: the call, the mode, the remark without its QTC note, the call key and
// the home call held in six places.
void startContact(ContactState& c, const std::vector<std::string_view>& fields)
{
    c.clear();
    c.line = LineView::of(fields);
    const LineView& e = c.line;
    c.q_call = trim(e.q_call);
    c.mode = normalisedModeView(e.q_mode);
    c.rcvd_text.assign(e.q_rcvd);
    upperInto(c.q_memo, e.q_memo);
    if (text::contains(c.q_memo, "[QTC")) {
        c.q_memo = withoutQtc(c.q_memo);
    }
    c.call_key = e.base_call;
    padRightInto(c.base_call, e.base_call, 6);
    c.dx_code.assign(e.dx_code);
    c.dx_name.assign(e.dx_name);
}

// The history test, on the band and mode as the test key asks: a contact that counts as done
// gets no card.
void testHistory(ContactState& c, ConversionScope& s)
{
    if (s.opt.historyOn) {
        const std::string code = s.look.band_mode_code(c.line.band_or_freq, c.mode);
        const std::string band = s.opt.historySameBand ? text::left(code, 1) : "0";
        const std::string mode = s.opt.historySameMode ? text::mid(code, 2, 1) : "0";
        c.historyDone = s.look.historyDone(c.q_call, band + mode);
    }
    c.route.assign(c.historyDone ? "N" : "");
}

// Club stations and entities on the no-card list get no card either. The home call stays
// held in six places.
void applyNoCardLists(ContactState& c, ConversionScope& s)
{
    if (s.opt.clubStationsNoCard && s.look.clubStation(c.base_call)) {
        c.route.assign("N");
    }
    if (s.opt.noCardCountries && s.look.noQslCountry(c.line.q_entity)) {
        c.route.assign("N");
    }
}

// The manager from the master file and, when asked for, from the web, merged as `Option10`
// says; with one "@" in front.
void chooseManager(ContactState& c, ConversionScope& s)
{
    c.mng_file = s.look.managerFromFile(c.q_call);
    if (c.mng_file.find('@') != std::string::npos) {
        std::erase(c.mng_file, '@');
    }
    if (!s.opt.webSearch) {
        c.mng.assign(1, '@');
        c.mng += c.mng_file;
        return;
    }
    // Stations that get no card are spared the request unless Check22 asks for it.
    if (!s.opt.webSearchForNoCard && c.route == "N") {
        c.mng.clear();
        return;
    }
    s.ctx.observer.label("Text2", c.q_call);
    // The web search merges its answer with the file's.
    s.look.keepManagerFromFile(c.mng_file);
    const std::string mng_web = s.look.managerFromWeb(c.q_call);
    switch (s.opt.managerOrder) {
    case 0:
        c.mng = "@" + mng_web;
        break;
    case 1:
        c.mng = "@" + (blank(c.mng_file) ? mng_web : c.mng_file);
        break;
    case 2:
        c.mng = "@" + (blank(mng_web) ? c.mng_file : mng_web);
        break;
    default:
        c.mng.clear();
        break;
    }
}

// "DIRECT", "BURO" and an empty manager lose their "@"; a station that is its own manager has
// none and takes the ordinary route.
void cleanManager(ContactState& c)
{
    // Upper-casing keeps the length in bytes, so a manager shorter than "BURO" holds neither.
    bool direct = false;
    if (c.mng.size() >= 4) {
        upperInto(c.scratch, c.mng);
        direct = text::contains(c.scratch, "DIRECT") || text::contains(c.scratch, "BURO");
    }
    if (direct || blank(c.mng)) {
        std::erase(c.mng, '@');
    }
    if (c.mng.find("@@") != std::string::npos) {
        c.mng = text::replaceAll(c.mng, "@@", "@");
    }
    const std::string_view mng = c.mng;
    if (!mng.empty() && mng.front() == '@' && mng.substr(1) == c.base_call) {
        c.mng.clear();
        c.route.assign("J");
    }
}

// The route mark: no card, through the manager, or the ordinary route.
void settleRoute(ContactState& c, const ConversionScope& s)
{
    if (!c.historyDone) {
        if (c.mng == "@") {
            c.route_base.assign("J");
            c.mng.clear();
        } else if (!blank(c.mng) && c.route != "N") {
            c.route_base.assign("M");
        } else {
            c.route_base.assign(s.run.QSL_Q);
            c.route_base += ' ';
            c.mng.clear();
        }
    } else {
        c.route.assign("N");
    }
    if (c.route_base == "M") {
        c.route.assign(s.opt.managedGetNoCard ? "N" : "M");
    }
    if (c.route == "J") {
        if (blank(s.run.QSL_Q) || blank(c.route_base)) {
            c.route.assign(" ");
        } else {
            c.route.assign(s.run.QSL_Q);
        }
    } else if (c.route != "N") {
        c.route.assign(c.route_base);
    }
}

// HAMLOG's QSL column. A no-card record turns the "sent" mark into a blank for every later
// record of the run too.
void formQslColumn(ContactState& c, RunState& run)
{
    trimInPlace(c.base_call);
    if (c.route == "N") {
        run.QSL_S = " ";
    }
    if (c.route == "N") {
        c.qsl3.assign("N  ");
    } else {
        c.qsl3.assign(c.route == "M" ? std::string_view("M") : std::string_view(run.QSL_Q));
        c.qsl3 += run.QSL_S;
        c.qsl3 += ' ';
    }
    if (trim(c.qsl3) == "*") {
        c.qsl3.assign(" * ");
    }
}

// The name from the name master, then what the QTH master gives for a call without a "/"
// part other than QRP. Both ask whether the name master is on, the QTH lookup included.
void lookUpNameAndQth(ContactState& c, ConversionScope& s)
{
    if (s.opt.nameLookup && s.look.nameMasterOn()) {
        c.q_name = s.look.nameOf(c.base_call);
    }
    if (!s.opt.qthLookup || !s.look.nameMasterOn()) {
        return;
    }
    std::string call = text::replaceAll(text::upper(c.q_call), "/QRPP", "");
    call = text::replaceAll(call, "/QRP", "");
    if (text::contains(call, "/")) {
        return;
    }
    const QthEntry qth = s.look.qthOf(c.base_call);
    if (!qth.found) {
        return;
    }
    if (s.opt.qthCode) {
        c.dx_code = qth.code;
    }
    if (s.opt.qthName) {
        c.q_name = qth.name;
    }
    if (s.opt.qthGl) {
        c.q_gl = qth.gl;
    }
    if (s.opt.qthPlace) {
        c.dx_name = qth.qth;
    }
}

// The time letter is always "U" here: the test for Japan time can never hold. Then the time
// shift of `Option05`.
void convertDateTime(ContactState& c, ConversionScope& s)
{
    c.q_date6.assign(c.line.q_date6);
    c.q_time5.assign(c.line.q_time);
    c.q_time5 += 'U';
    s.timeShift.date_time_conv(c.q_date6, c.q_time5, c.q_call);
}

// The zone item, from the received exchange; some contests keep no zone unless `Check12`.
void settleZone(ContactState& c, const ConversionScope& s)
{
    if (!s.layout.use().zone || !s.opt.zoneFromExchange ||
        (s.run.f_type == "zlo" && !s.run.use_log_zone)) {
        return;
    }
    c.zone_text = zoneText(trim(c.line.q_rcvd), s.run.f_type, s.opt.zoneForm, s.run.Zone_moji);
    if (!s.opt.keepContestZone && zoneDroppedForContest(s.run, s.upperPath)) {
        c.zone_text.clear();
    }
}

// The state of a station in the USA, Canada or Alaska, when a layout shows it.
void settleState(ContactState& c, ConversionScope& s)
{
    if (s.layout.use().state &&
        (c.dx_code == "784A" || c.dx_code == "758A" || c.dx_code == "667A")) {
        c.dx_state = s.look.stateOf(c.line.q_rcvd);
    }
}

// The IOTA reference of an IOTA contest; the contest name stays for `.ZLO` logs only.
void settleIota(ContactState& c, ConversionScope& s)
{
    if (s.iotaInPath || s.run.cont_name == "IOTA Contest") {
        if (s.layout.use().iota && (s.run.f_type != "zlo" || s.run.logIotaFlag)) {
            iota_chk(c.line.q_rcvd, c.iota_text, c.rcvd_text, s.ctx.trace);
        }
    }
    if (s.run.f_type != "zlo") {
        s.run.cont_name.clear();
    }
}

// The full call for the `Calls` item, when the home call alone would not tell it; a manager
// text that holds it loses it and the route becomes the ordinary one.
void settleCallsText(ContactState& c, const RunState& run)
{
    const auto slashes = std::count(c.q_call.begin(), c.q_call.end(), '/');
    if ((slashes == 0 && text::charCount(c.q_call) > 6) || slashes >= 2 ||
        c.line.dx_mark == "$DX") {
        c.calls_text = c.q_call;
    }
    if (!blank(c.calls_text) && text::contains(c.mng, c.calls_text)) {
        c.mng = text::replaceAll(c.mng, c.calls_text, "");
        c.route = run.QSL_Q;
    }
}

// Both remarks with the manager, and the manager as it stands padded in them. The forms
// without the manager are cut out of these remarks later, once the province is added.
void composeRemarks(ContactState& c, const ConversionScope& s)
{
    RemarkViews values;
    values.mng = c.mng;
    values.dx_mark = c.line.dx_mark;
    values.calls_text = c.calls_text;
    values.cont_name = s.run.cont_name;
    values.q_memo = c.q_memo;
    values.q_op = c.line.q_op;
    values.iota_text = c.iota_text;
    values.zone_text = c.zone_text;
    values.dx_state = c.dx_state;
    values.rcvd_text = c.rcvd_text;
    values.rmk1 = s.run.fixedRemark1;
    values.rmk2 = s.run.fixedRemark2;
    s.composer.composeInto(1, values, c.rmks1);
    s.composer.composeInto(2, values, c.rmks2);

    const int w = s.opt.mngWidth;
    if (w > 0) {
        padRightInto(c.mng_pad, c.mng, static_cast<std::size_t>(w) + 1);
    } else {
        c.mng_pad.assign(c.mng);
        c.mng_pad += ' ';
    }
    c.mng.clear();
}

// The report received in three characters; a maritime mobile has no code and "MM" as QTH.
void settleReportAndMaritime(ContactState& c)
{
    c.q_rst_rcvd.assign(trim(leftView(c.line.q_rst_rcvd, 3)));
    const std::string_view ext = c.line.call_ext;
    if (text::startsWith(ext, "M ") || text::startsWith(ext, "MM")) {
        c.dx_code.clear();
        c.dx_name.assign(leftView(ext, 2));
    }
}

// The province of the received exchange, behind the remark that `Option3` names.
void addProvince(ContactState& c, ConversionScope& s)
{
    if (!s.opt.provinceLookup || blank(c.line.q_rcvd)) {
        return;
    }
    const std::string province = s.look.provinceOf(c.line.q_rcvd);
    if (province.empty()) {
        return;
    }
    const std::string add = s.opt.provinceAlone ? province : s.run.Prov_moji + province;
    if (s.opt.provinceRemark == 0) {
        c.rmks1 = trimmed(c.rmks1 + " " + add);
    } else if (s.opt.provinceRemark == 1) {
        c.rmks2 = trimmed(c.rmks2 + " " + add);
    }
}

// "YY/MM/DD" from the six-digit date and "hh:mm" with the time letter from the time.
void formDateAndTime(ContactState& c)
{
    const std::string_view d = c.q_date6;
    if (d.size() >= 6) {
        c.date8.resize(8);
        char* p = c.date8.data();
        p[0] = d[0];
        p[1] = d[1];
        p[2] = '/';
        p[3] = d[2];
        p[4] = d[3];
        p[5] = '/';
        p[6] = d[4];
        p[7] = d[5];
    } else {
        c.date8.assign(d.substr(0, 2));
        c.date8 += '/';
        c.date8 += d.substr(std::min<std::size_t>(2, d.size()), 2);
        c.date8 += '/';
        c.date8 += d.substr(std::min<std::size_t>(4, d.size()), 2);
    }

    const std::string_view t = c.q_time5;
    if (text::isAsciiText(t)) {
        c.time6.assign(t.substr(0, 2));
        c.time6 += ':';
        c.time6 += t.size() > 3 ? t.substr(t.size() - 3) : t;
    } else {
        c.time6 = text::left(t, 2) + ":" + text::right(t, 3);
    }
}

// The remarks without "@ " marks, and without the manager; a no-card record keeps only the
// forms without the manager.
void takeManagerOut(ContactState& c, const ConversionScope& s)
{
    withoutAtMarksInto(c.rmks1_c, c.rmks1);
    withoutAtMarksInto(c.rmks2_c, c.rmks2);
    const int w = s.opt.mngWidth;
    const std::string blanks =
        w == 0 ? std::string() : std::string(static_cast<std::size_t>(w) + 1, ' ');
    const std::string_view from = w == 0 ? trim(c.mng_pad) : std::string_view(c.mng_pad);
    auto withoutManager = [&](const std::string& rmks, std::string& out) {
        if (from.empty() || rmks.find(from) == std::string::npos) {
            // No manager stands in the remark: only the marks come out.
            withoutAtMarksInto(out, rmks);
            return;
        }
        c.scratch = text::replaceAll(rmks, from, blanks);
        withoutAtMarksInto(out, c.scratch);
    };
    withoutManager(c.rmks1, c.rmks1_nomng);
    withoutManager(c.rmks2, c.rmks2_nomng);
    if (text::startsWith(c.qsl3, "N") || c.route == "N") {
        c.rmks1 = c.rmks1_nomng;
        c.rmks2 = c.rmks2_nomng;
    }
}

// The "$DX" mark behind remark 1; a layout without any width is trimmed.
void appendDxMark(ContactState& c, const ConversionScope& s)
{
    const std::string_view dx_mark = c.line.dx_mark;
    c.rmks1 += ' ';
    c.rmks1 += dx_mark;
    if (!s.layout.anyWidth()) {
        trimInPlace(c.rmks1);
        trimInPlace(c.rmks2);
        c.rmks1_nomng += ' ';
        c.rmks1_nomng += dx_mark;
        trimInPlace(c.rmks1_nomng);
        c.rmks1_c += ' ';
        c.rmks1_c += dx_mark;
        trimInPlace(c.rmks1_c);
        trimInPlace(c.rmks2_nomng);
        trimInPlace(c.rmks2_c);
    }
}

// An entity without a bureau gets the mark for it, unless the card goes through a manager.
void markNoBureau(ContactState& c, ConversionScope& s)
{
    const std::string dx_buro = s.ctx.entities.dxcc_lookup(c.line.q_entity).dx_buro;
    if (!text::startsWith(c.qsl3, "M") && (dx_buro == "-" || dx_buro == "X")) {
        c.route = s.opt.buro_QSL_moji;
        c.qsl3 = s.opt.buro_QSL_moji;
        c.rmks1 += "not Buro";
    }
}

// Appends one record line, every field in double quotes and separated by one comma, to
// `line`: the text that `text::formatRecord` gives for the same fields.
template <std::size_t N>
void formatRecordInto(std::string& line, const std::array<std::string_view, N>& fields)
{
    // The line's length is known before it is written: two quotes per field and N - 1 commas.
    std::size_t size = 3 * N - 1;
    for (const std::string_view f : fields) {
        size += f.size();
    }
    line.resize(size);
    char* p = line.data();
    for (std::size_t i = 0; i < N; ++i) {
        if (i != 0) {
            *p++ = ',';
        }
        *p++ = '"';
        if (!fields[i].empty()) {
            std::memcpy(p, fields[i].data(), fields[i].size());
            p += fields[i].size();
        }
        *p++ = '"';
    }
}

// The sort record and the result record of the contact, in the field orders of `SortRecord`
// and `ResultRecord`, formatted from the state's texts without building either record and
// written as whole lines.
void writeContact(ContactState& c, text::LineWriter& sortOut, text::LineWriter& hamOut)
{
    const LineView& e = c.line;
    formatRecordInto(c.scratch,
                     std::array<std::string_view, SortRecord::kFields>{
                         c.call_key,    c.line.call_ext, c.dx_code,    {},           e.band_or_freq,
                         c.mode,        c.q_name,        c.route,      c.q_gl,       {},
                         c.q_date6,     c.q_time5,       e.q_rst_sent, c.q_rst_rcvd, c.dx_name,
                         c.rmks1,       c.rmks2,         c.mng_pad,    c.rmks1_c,    c.rmks2_c,
                         c.rmks1_nomng, c.rmks2_nomng,   c.q_call});
    sortOut.write(c.scratch);
    formatRecordInto(c.scratch,
                     std::array<std::string_view, ResultRecord::kFields>{
                         c.call_key,   c.line.call_ext, c.date8,       c.time6,       e.q_rst_sent,
                         c.q_rst_rcvd, e.band_or_freq,  c.mode,        c.dx_code,     c.q_gl,
                         c.qsl3,       c.q_name,        c.dx_name,     c.rmks1,       c.rmks2,
                         c.rmks1_c,    c.rmks2_c,       c.rmks1_nomng, c.rmks2_nomng, c.q_call});
    hamOut.write(c.scratch);
}

// The progress label: the count of records done and of all records, each right-aligned in
// four places as `alignedInFour` writes them.
void formProgressLabel(std::string& out, long done, std::string_view ofAll)
{
    char digits[24];
    char* const end = digits + sizeof digits;
    char* p = end;
    // `done` counts records from 1, so it is never negative.
    unsigned long n = static_cast<unsigned long>(done);
    do {
        *--p = static_cast<char>('0' + n % 10);
        n /= 10;
    } while (n != 0);
    const auto width = static_cast<std::size_t>(end - p);
    out.assign(width < 4 ? 4 - width : 0, ' ');
    out.append(p, width);
    out += " / ";
    out += ofAll;
}

// Converts the records of `zlog_2.txt` one by one into their sort and result lines. Its state
// lies behind a pointer, which the worker of a log's first part takes over from the worker of
// its second part when they join.
class RecordConverter
{
public:
    RecordConverter(RunContext& ctx, RecordLookups& look, const RemarkLayout& layout)
        : m_state(std::make_unique<State>(ctx, look, layout))
    {
    }

    void operator()(text::RecordBytes& in, text::LineWriterPair& out)
    {
        ContactState& c = m_state->c;
        ConversionScope& scope = m_state->scope;
        in.next(EnrichedLine::kFields, m_state->fields);
        startContact(c, m_state->fields);
        testHistory(c, scope);
        applyNoCardLists(c, scope);
        chooseManager(c, scope);
        cleanManager(c);
        settleRoute(c, scope);
        formQslColumn(c, scope.run);
        lookUpNameAndQth(c, scope);
        convertDateTime(c, scope);
        settleZone(c, scope);
        settleState(c, scope);
        settleIota(c, scope);
        settleCallsText(c, scope.run);
        composeRemarks(c, scope);
        settleReportAndMaritime(c);
        addProvince(c, scope);
        formDateAndTime(c);
        takeManagerOut(c, scope);
        appendDxMark(c, scope);
        markNoBureau(c, scope);
        writeContact(c, out.first(), out.second());
        m_state->converted = true;
    }

    // What a record leaves to the records after it: the "sent" mark that a no-card record
    // blanks, the contest name that the first record of a log other than .ZLO clears, and the
    // call core that the call test of the time shift keeps when it cannot tell.
    std::tuple<std::string, std::string, std::string> carried() const
    {
        const ConversionScope& scope = m_state->scope;
        return {scope.run.QSL_S, scope.run.cont_name, scope.timeShift.call_core()};
    }

    // Takes over where `later`, which converted the records after this one's, ended.
    void joinLater(RecordConverter& later) { m_state = std::move(later.m_state); }

    // Leaves to the run what the last record left: the run values that carry over, and the
    // manager file's answer for the last contact.
    void leaveTo(RunState& run, RecordLookups& look) const
    {
        if (!m_state->converted) {
            return;
        }
        run.QSL_S = m_state->run.QSL_S;
        run.cont_name = m_state->run.cont_name;
        look.keepManagerFromFile(m_state->c.mng_file);
    }

private:
    struct State
    {
        State(RunContext& ctx, RecordLookups& look, const RemarkLayout& layout)
            : run(ctx.run), scope(ctx, run, look, layout)
        {
        }
        RunState run;
        ConversionScope scope;
        ContactState c;
        std::vector<std::string_view> fields;
        bool converted = false;
    };
    std::unique_ptr<State> m_state;
};

} // namespace

std::string normaliseMode(std::string_view mode)
{
    return std::string(normalisedModeView(mode));
}

std::string zoneText(std::string_view z, std::string_view f_type, int zoneForm,
                     std::string_view zone_moji)
{
    const std::string L(zone_moji);
    const std::string zs(z);
    const std::size_t n = text::charCount(z);
    if (f_type == "zlo") {
        if (n == 0) {
            return {};
        }
        if (zoneForm == 0) {
            return n == 1 ? L + "0" + zs : n == 2 ? L + zs : zs;
        }
        if (zoneForm == 1) {
            // The label stands twice here; that is how the zone of a .ZLO log comes out.
            return n == 1   ? L + text::left(L + "0" + zs, 2)
                   : n == 2 ? L + text::left(L + zs, 2)
                            : L + text::left(zs, 2);
        }
        return {};
    }
    if (zoneForm == 0) {
        const std::size_t d = text::countDigits(z);
        if (d == n && n < 3) {
            return L + text::right("0" + zs, 2);
        }
        if (d == 2) {
            return L + text::left(zs, 2);
        }
        return {};
    }
    if (zoneForm == 1) {
        return n == 0 ? std::string() : n == 1 ? L + "0" + zs : n == 2 ? L + zs : zs;
    }
    return {};
}

void Henkan_txt(RunContext& ctx, const RemarkLayout& layout)
{
    static RecordLookups none;
    RunState& run = ctx.run;

    ctx.trace.line("Private sub Henkan_txt()");
    if (ctx.options.tick("Check6")) {
        run.use_log_zone = true;
    }
    const std::string hamName = std::filesystem::path(run.names.out_name_ham_n).filename().string();
    ctx.observer.status(hamName + "  に変換中", base::Colour::Green);

    RecordLookups& look = ctx.lookups != nullptr ? *ctx.lookups : none;
    look.beforeFirstRecord(ctx);
    const long count = text::Count_lines(ctx.work(base::working::zlog_2));
    text::RecordBytes in(ctx.work(base::working::zlog_2));
    text::LineWriter sortOut(ctx.work(base::working::sort_in));
    text::LineWriter hamOut(run.names.out_name_ham0);
    ctx.observer.progressRange(count + 2);
    ctx.trace.line("   Private sub Henkan_txt() ___ Do  読み込み");
    const std::string ofAll = alignedInFour(count - 1);
    std::string progressLabel;
    long done = 0;
    const auto afterEach = [&] {
        ++done;
        ctx.observer.progress(done);
        formProgressLabel(progressLabel, done, ofAll);
        ctx.observer.label("Label35", progressLabel);
    };
    const auto makeWorker = [&ctx, &look, &layout] { return RecordConverter(ctx, look, layout); };
    text::LineWriterPair out(sortOut, hamOut);
    // Records are converted in two parts side by side only where nothing of a record reaches
    // beyond its own lines and its worker: no web search (its pauses and its list keep the
    // order of the log), no IOTA contest (whose records write to the trace), and lookups that
    // answer from any thread.
    const bool iotaContest =
        text::contains(text::upper(run.in_name), "IOTA") || run.cont_name == "IOTA Contest";
    const bool sideBySide =
        !ctx.options.tick("Check18") && !iotaContest && look.answersFromAnyThread();
    const std::unique_ptr<RecordConverter> last =
        sideBySide ? text::turnRecords(in, out, makeWorker, afterEach,
                                       [](RecordConverter& first, RecordConverter& second) {
                                           first.joinLater(second);
                                       })
                   : [&] {
                         auto worker = std::make_unique<RecordConverter>(ctx, look, layout);
                         while (!in.atEnd()) {
                             (*worker)(in, out);
                             afterEach();
                         }
                         return worker;
                     }();
    last->leaveTo(run, look);
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
        sort_(ctx, 1, 8, false, ctx.work(base::working::sort_in),
              ctx.work(base::working::sort_out));
        count_tan_fuku(ctx);
    } else {
        sort_(ctx, 1, 8, false, ctx.work(base::working::sort_in),
              ctx.work(base::working::sort_out));
        temp_sep(ctx);
    }
}

} // namespace vornhale::engine
