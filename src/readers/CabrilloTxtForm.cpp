#include "readers/CabrilloTxtForm.h"

#include "failure/Failure.h"
#include "readers/CabrilloReader.h"
#include "readers/OutputNames.h"
#include "readers/ZlogTranslators.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/SjisText.h"

#include <vector>

namespace vornhale::readers {
namespace {

constexpr int kPasses = 10;

const std::string& token(const std::vector<std::string>& tokens, std::size_t i)
{
    if (i >= tokens.size()) {
        throw failure::Failure(failure::SubscriptOutOfRange,
                               "インデックスが有効範囲にありません。");
    }
    return tokens[i];
}

// Blanks in front up to `width` bytes; a longer text is not cut.
std::string rightAligned(std::string_view s, std::size_t width)
{
    const std::size_t bytes = text::Len_sjis(s);
    return bytes < width ? std::string(width - bytes, ' ') + std::string(s) : std::string(s);
}

// Blanks behind up to `width` bytes; a longer text is not cut.
std::string padded(std::string_view s, std::size_t width)
{
    const std::size_t bytes = text::Len_sjis(s);
    return bytes < width ? std::string(s) + std::string(width - bytes, ' ') : std::string(s);
}

} // namespace

std::string cabrilloTxtBand(std::string_view khz)
{
    const std::size_t n = text::charCount(khz);
    const std::string last3 = text::right(khz, 3);
    std::string band = n > 3 ? text::left(khz, n - 3) : std::string();
    if (last3 != "000") {
        band += "." + text::left(last3, 1);
    }
    if (text::contains(band, "1.")) {
        return "1.9";
    }
    if (text::contains(band, "3.")) {
        return "3.5";
    }
    if (const std::size_t point = text::instr(band, "."); point != 0) {
        return text::left(band, point - 1);
    }
    return band;
}

std::string CabrilloTxtForm::line(std::string_view qsoLine)
{
    const std::vector<std::string> first = cabrilloTokens(text::left(qsoLine, 30), kPasses);
    const std::vector<std::string> second = cabrilloTokens(text::mid(qsoLine, 31, 25), kPasses);
    const std::vector<std::string> third = cabrilloTokens(text::mid(qsoLine, 56), kPasses);

    const std::vector<std::string> date = text::split(token(first, 3), "-");
    const std::string& month = token(date, 1);
    const std::string& day = token(date, 2);
    const std::string& time = token(first, 4);
    const std::string& khz = token(first, 1);
    std::string mode = token(first, 2);

    const std::string& sentRst = token(second, 1);
    // With a highest index of 4 the sent exchange is taken from index 2 once more: the same.
    const std::string& sentExchange = token(second, 2);

    const std::string& call = token(third, 0);
    const std::string& rcvdRst = token(third, 1);
    const std::string& rcvdExchange = token(third, 2);
    switch (third.size()) {
    case 4:
        m_extra1.clear();
        m_extra2.clear();
        break;
    case 5:
        m_extra1 = third[2];
        m_extra2.clear();
        break;
    case 6:
        m_extra1 = third[3];
        m_extra2 = third[4];
        break;
    default:
        break; // the extra columns keep what the line before left
    }

    if (mode == "PH") {
        mode = "SSB";
    } else if (mode == "RY") {
        mode = "RTY";
    }

    std::string out = " " + month + "  " + day + " " + time + " ";
    out += text::sjisColumn(call, 11);
    out += rightAligned(sentRst, 3);
    out += text::sjisColumn(sentExchange, 10);
    out += rightAligned(rcvdRst, 3);
    out += rightAligned(rcvdExchange, 8);
    out += m_extra1 + m_extra2;
    out += "  " + rightAligned(cabrilloTxtBand(khz), 6);
    out += padded(mode, 4);
    out += padded("", 4); // points: none in a Cabrillo log
    return out;           // and no memo
}

std::string cabrillo_2_zlog_txt(const ReaderContext& ctx)
{
    ctx.trace.line("Private sub cabrillo_2_zlog_txt()");
    const std::string path = replaceExtension(ctx.run.in_name, "_cbr2zlogt.txt");
    text::LineReader in(ctx.run.in_name);
    text::LineWriter out(path, text::LineWriter::Mode::ReplaceWhenDone);
    // zLog's own column title of the .TXT form.
    out.write(kZa2tTitle);
    CabrilloTxtForm form;
    long number = 0;
    while (!in.atEnd()) {
        const std::string line = in.next();
        ++number;
        if (!text::contains(line, "QSO:")) {
            continue;
        }
        try {
            out.write(form.line(line));
        } catch (const failure::Failure& f) {
            // Where it stands, so that the trace shows the line that does not fit the ranges.
            throw failure::Failure(f.number(), f.description() + " (" + std::to_string(number) +
                                                   " 行目: " + line + ")");
        }
    }
    out.close();
    return path;
}

} // namespace vornhale::readers
