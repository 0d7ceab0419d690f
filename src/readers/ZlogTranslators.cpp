#include "readers/ZlogTranslators.h"

#include "failure/Failure.h"
#include "readers/OutputNames.h"
#include "settings/SettingsFiles.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/SjisText.h"

#include <vector>

namespace vornhale::readers {
namespace {

using text::Mid_sjis;

std::string cutTrimmed(std::string_view line, long start, long width)
{
    return std::string(text::trim(Mid_sjis(line, start, width)));
}


// Right-aligned: the last `width` characters of blanks and the value.
std::string rightAligned(std::string_view s, std::size_t blanks, std::size_t width)
{
    return text::right(std::string(blanks, ' ') + std::string(s), width);
}

const std::string& token(const std::vector<std::string>& tokens, std::size_t i)
{
    if (i >= tokens.size()) {
        throw failure::Failure(failure::SubscriptOutOfRange,
                           "インデックスが有効範囲にありません。");
    }
    return tokens[i];
}

} // namespace

std::string zt2aHeader()
{
    return "zLog for Windows       by Vornhale " + std::string(settings::kProgramVersion);
}

std::string zt2aLine(std::string_view txtLine, std::string_view year)
{
    const std::string month = cutTrimmed(txtLine, 1, 3);
    const std::string day = cutTrimmed(txtLine, 4, 4);
    const std::string time = cutTrimmed(txtLine, 9, 4);
    const std::string call = cutTrimmed(txtLine, 14, 11);
    const std::string sentRst = cutTrimmed(txtLine, 25, 3);
    const std::string sentNr = cutTrimmed(txtLine, 28, 10);
    const std::string rcvdRst = cutTrimmed(txtLine, 38, 3);
    const std::string rcvdNr = cutTrimmed(txtLine, 41, 8);
    const std::string multi = cutTrimmed(txtLine, 49, 8);
    const std::string band = cutTrimmed(txtLine, 57, 6);
    // Mode and points share position 68, as zLog's own columns do.
    const std::string mode = cutTrimmed(txtLine, 64, 5);
    const std::string points = cutTrimmed(txtLine, 68, 4);
    const std::string memo = cutTrimmed(txtLine, 73, 40);

    std::string out(year);
    out += "/" + text::right("0" + month, 2) + "/" + text::right("0" + day, 2) + " ";
    out += Mid_sjis(time, 1, 2) + ":" + Mid_sjis(time, 3, 2) + " ";
    out += text::sjisColumn(call, 13) + text::sjisColumn(sentRst, 4) + text::sjisColumn(sentNr, 8) + text::sjisColumn(rcvdRst, 4);
    out += text::sjisColumn(rcvdNr, 8);
    out += multi.empty() ? std::string("-     ") : text::sjisColumn(multi, 6);
    out += "-     ";
    out += text::sjisColumn(band, 5) + text::sjisColumn(mode, 5) + text::sjisColumn(points, 3) + memo;
    return out;
}

std::string za2tLine(std::string_view allLine)
{
    std::string line(allLine);
    for (int pass = 0; pass < 5; ++pass) {
        line = text::replaceAll(line, "  ", " ");
    }
    // A blank line splits into fewer pieces than a QSO needs, and fails like a short line.
    const std::vector<std::string> t = text::split(line, " ");

    const std::string& date = token(t, 0);
    const std::string& time = token(t, 1);
    const std::string& call = token(t, 2);
    const std::string& sentRst = token(t, 3);
    std::string sentNr = token(t, 4);
    std::string rcvdRst, rcvdNr, multi, band, mode, points, memo;

    if (!text::contains(sentNr, "AS0")) {
        rcvdRst = token(t, 5);
        rcvdNr = token(t, 6);
        multi = token(t, 7);
        token(t, 8); // the second multiplier, not written
        band = token(t, 9);
        mode = token(t, 10);
        points = token(t, 11);
        memo = t.size() > 12 ? t[12] : std::string();
    } else {
        // An All Asian exchange fills its column, so the received report sticks to it.
        if (text::endsWith(sentNr, "59")) {
            sentNr = text::replaceAll(sentNr, "59", "");
        } else if (text::endsWith(sentNr, "599")) {
            sentNr = text::replaceAll(sentNr, "599", "");
        }
        rcvdRst = text::replaceAll(t[4], sentNr, "");
        rcvdNr = token(t, 5);
        multi = token(t, 6);
        std::size_t next = 7;
        if (token(t, 7) == "-") {
            next = 8; // token 7 is the second multiplier
        }
        band = token(t, next);
        mode = token(t, next + 1);
        points = token(t, next + 2);
        memo = t.size() > next + 3 ? t[next + 3] : std::string();
    }

    std::string out = " " + Mid_sjis(date, 6, 2);
    out += "  " + Mid_sjis(date, 9, 2) + " ";
    out += text::replaceAll(time, ":", "") + " ";
    out += text::sjisColumn(text::trim(call), 11);
    out += rightAligned(sentRst, 1, 3);
    out += text::sjisColumn(sentNr, 10);
    out += rightAligned(rcvdRst, 1, 3);
    out += text::sjisColumn(rcvdNr, 8);
    out += text::replaceAll(rightAligned(multi, 8, 8), "-", " ");
    out += "  " + rightAligned(band, 8, 6);
    out += Mid_sjis(mode + "     ", 1, 4);
    out += Mid_sjis(points + "   ", 1, 4);
    out += memo;
    return out;
}

std::string zlog_txt_2_zlog_all(const ReaderContext& ctx)
{
    ctx.trace.line("Private sub zlog_txt_2_zlog_all()");
    const std::string path = replaceExtension(ctx.run.in_name, "_zt2a.all");
    const std::string year = ctx.options.value("txtYYYY");

    text::LineReader in(ctx.run.in_name);
    text::LineWriter out(path, text::LineWriter::Mode::ReplaceWhenDone);
    out.write(zt2aHeader());
    in.next(); // the column title
    while (!in.atEnd()) {
        out.write(zt2aLine(in.next(), year));
    }
    out.close();
    return path;
}

Za2tResult zlog_all_2_zlog_txt(const ReaderContext& ctx)
{
    ctx.trace.line("Private sub zlog_all_2_zlog_txt()");
    Za2tResult result;
    result.path = replaceExtension(ctx.run.in_name, "_za2t.txt");

    text::LineReader in(ctx.run.in_name);
    text::LineWriter out(result.path, text::LineWriter::Mode::ReplaceWhenDone);
    out.write(kZa2tTitle);
    in.next(); // the line that names the logger
    while (!in.atEnd()) {
        out.write(za2tLine(in.next()));
    }
    out.close();

    ctx.observer.status(kZa2tDone, base::Colour::Black);
    result.mnuDisp_za2t = true;
    return result;
}

} // namespace vornhale::readers
