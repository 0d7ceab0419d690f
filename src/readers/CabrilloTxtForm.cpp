#include "readers/CabrilloTxtForm.h"

#include "failure/Failure.h"
#include "readers/CabrilloReader.h"
#include "readers/OutputNames.h"
#include "readers/ZlogTranslators.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/SjisCodec.h"
#include "text/SjisText.h"
#include "text/Utf8.h"

#include <algorithm>
#include <vector>

namespace vornhale::readers {
namespace {

constexpr int kPasses = 10;

[[noreturn]] void outOfRange()
{
    throw failure::Failure(failure::SubscriptOutOfRange, "インデックスが有効範囲にありません。");
}

std::string_view token(const std::vector<std::string_view>& tokens, std::size_t i)
{
    if (i >= tokens.size()) {
        outOfRange();
    }
    return tokens[i];
}

// Whether `s` is ASCII alone; the short columns nearly always are, and a walk over a few
// bytes is quicker than a call.
bool isAsciiShort(std::string_view s)
{
    for (const char c : s) {
        if (static_cast<unsigned char>(c) >= 0x80) {
            return false;
        }
    }
    return true;
}

// The Shift-JIS width of `s`: its length when it is ASCII.
std::size_t sjisWidth(std::string_view s)
{
    return isAsciiShort(s) ? s.size() : text::Len_sjis(s);
}

// Blanks in front up to `width` bytes; a longer text is not cut.
void appendRightAligned(std::string& out, std::string_view s, std::size_t width)
{
    const std::size_t bytes = sjisWidth(s);
    if (bytes < width) {
        out.append(width - bytes, ' ');
    }
    out.append(s);
}

// Blanks behind up to `width` bytes; a longer text is not cut.
void appendPadded(std::string& out, std::string_view s, std::size_t width)
{
    const std::size_t bytes = sjisWidth(s);
    out.append(s);
    if (bytes < width) {
        out.append(width - bytes, ' ');
    }
}

// `s` cut or padded to `width` bytes. ASCII text has a byte for each character, so it is cut
// where it stands; other text goes by its Shift-JIS widths, never splitting a character.
void appendColumn(std::string& out, std::string_view s, std::size_t width)
{
    if (!isAsciiShort(s)) {
        out += text::sjisColumn(s, static_cast<long>(width));
        return;
    }
    const std::size_t taken = std::min(s.size(), width);
    out.append(s.substr(0, taken));
    out.append(width - taken, ' ');
}

// Whether `s` holds `a` followed by `b`; a band text is a few bytes long, looked through in
// place.
bool holdsPair(std::string_view s, char a, char b)
{
    for (std::size_t i = 0; i + 1 < s.size(); ++i) {
        if (s[i] == a && s[i + 1] == b) {
            return true;
        }
    }
    return false;
}

// The tokens of `line.substr(from, to - from)` from the runs of blanks and tabs of the line,
// as `cabrilloTokensFromRuns` gives them, the runs looked at from the run `next` on; `next`
// is left at the first run that may reach a range behind `to`, so that the ranges of a line
// taken in order walk its runs once.
void rangeTokens(std::string_view line, const std::uint16_t* edges, std::size_t count,
                 std::size_t from, std::size_t to, std::vector<std::string_view>& tokens,
                 std::size_t& next)
{
    tokens.clear();
    if (from >= to) {
        return;
    }
    const char* const text = line.data();
    std::size_t start = from;
    for (; next < count; ++next) {
        const std::size_t runStart = edges[2 * next];
        const std::size_t runEnd = edges[2 * next + 1];
        if (runEnd <= from) {
            continue;
        }
        if (runStart >= to) {
            break;
        }
        const std::size_t cut = std::max(runStart, from);
        tokens.emplace_back(text + start, cut - start);
        if (runEnd > to) {
            start = to; // the run goes on into the next range
            tokens.emplace_back(text + start, 0);
            return;
        }
        start = runEnd;
    }
    tokens.emplace_back(text + start, to - start);
}

// The band text of `khz` into `band`, which is reused from line to line.
void txtBandInto(std::string_view khz, std::string& band)
{
    band.clear();
    if (isAsciiShort(khz)) {
        const std::size_t n = khz.size();
        const std::string_view last3 = n > 3 ? khz.substr(n - 3) : khz;
        if (n > 3) {
            band.append(khz.substr(0, n - 3));
        }
        if (last3 != "000") {
            band.push_back('.');
            band.append(last3.substr(0, 1));
        }
    } else {
        const std::size_t n = text::charCount(khz);
        const std::string last3 = text::right(khz, 3);
        if (n > 3) {
            band = text::left(khz, n - 3);
        }
        if (last3 != "000") {
            band += "." + text::left(last3, 1);
        }
    }
    if (holdsPair(band, '1', '.')) {
        band = "1.9";
    } else if (holdsPair(band, '3', '.')) {
        band = "3.5";
    } else if (const std::size_t point = band.find('.'); point != std::string::npos) {
        band.resize(point); // the characters before the point are the bytes before it
    }
}

} // namespace

std::string cabrilloTxtBand(std::string_view khz)
{
    std::string band;
    txtBandInto(khz, band);
    return band;
}

std::string CabrilloTxtForm::line(std::string_view qsoLine)
{
    std::string out;
    appendLine(qsoLine, out);
    return out;
}

void CabrilloTxtForm::appendLine(std::string_view qsoLine, std::string& out)
{
    // Characters 1 to 30, 31 to 55 and 56 to the end; in ASCII text a byte is a character.
    std::string_view first, second, third;
    if (text::isAsciiText(qsoLine)) {
        first = qsoLine.substr(0, 30);
        second = qsoLine.size() > 30 ? qsoLine.substr(30, 25) : std::string_view();
        third = qsoLine.size() > 55 ? qsoLine.substr(55) : std::string_view();
    } else {
        const std::size_t at31 = text::byteOffsetOfChar(qsoLine, 30);
        const std::size_t at56 = at31 + text::byteOffsetOfChar(qsoLine.substr(at31), 25);
        first = qsoLine.substr(0, at31);
        second = qsoLine.substr(at31, at56 - at31);
        third = qsoLine.substr(at56);
    }
    cabrilloTokenViews(first, kPasses, m_first);
    cabrilloTokenViews(second, kPasses, m_second);
    cabrilloTokenViews(third, kPasses, m_third);
    m_ascii = false;
    appendFromTokens(out);
}

void CabrilloTxtForm::appendLine(std::string_view qsoLine, std::string& out,
                                 const std::uint16_t* edges, std::size_t count)
{
    // In ASCII text a byte is a character: the ranges end at bytes 30 and 55.
    const std::size_t n = qsoLine.size();
    std::size_t next = 0;
    rangeTokens(qsoLine, edges, count, 0, std::min<std::size_t>(n, 30), m_first, next);
    rangeTokens(qsoLine, edges, count, 30, std::min<std::size_t>(n, 55), m_second, next);
    rangeTokens(qsoLine, edges, count, 55, n, m_third, next);
    m_ascii = true;
    appendFromTokens(out);
}

void CabrilloTxtForm::appendFromTokens(std::string& out)
{

    // The date's second and third pieces between "-"; fewer than three is out of range.
    const std::string_view date = token(m_first, 3);
    const std::size_t firstDash = date.find('-');
    const std::size_t secondDash =
        firstDash == std::string_view::npos ? firstDash : date.find('-', firstDash + 1);
    if (secondDash == std::string_view::npos) {
        outOfRange();
    }
    const std::size_t thirdDash = date.find('-', secondDash + 1);
    const std::string_view month = date.substr(firstDash + 1, secondDash - firstDash - 1);
    const std::string_view day = date.substr(secondDash + 1, thirdDash == std::string_view::npos
                                                                 ? std::string_view::npos
                                                                 : thirdDash - secondDash - 1);
    const std::string_view time = token(m_first, 4);
    const std::string_view khz = token(m_first, 1);
    std::string_view mode = token(m_first, 2);

    const std::string_view sentRst = token(m_second, 1);
    // With a highest index of 4 the sent exchange is taken from index 2 once more: the same.
    const std::string_view sentExchange = token(m_second, 2);

    const std::string_view call = token(m_third, 0);
    const std::string_view rcvdRst = token(m_third, 1);
    const std::string_view rcvdExchange = token(m_third, 2);
    switch (m_third.size()) {
    case 4:
        m_extra1.clear();
        m_extra2.clear();
        break;
    case 5:
        m_extra1.assign(m_third[2]);
        m_extra2.clear();
        break;
    case 6:
        m_extra1.assign(m_third[3]);
        m_extra2.assign(m_third[4]);
        break;
    default:
        break; // the extra columns keep what the line before left
    }

    if (mode == "PH") {
        mode = "SSB";
    } else if (mode == "RY") {
        mode = "RTY";
    }

    txtBandInto(khz, m_band);
    if (m_ascii) {
        appendAsciiColumns(out, month, day, time, call, sentRst, sentExchange, rcvdRst,
                           rcvdExchange, mode);
        return;
    }
    out.push_back(' ');
    out.append(month);
    out.append("  ");
    out.append(day);
    out.push_back(' ');
    out.append(time);
    out.push_back(' ');
    appendColumn(out, call, 11);
    appendRightAligned(out, sentRst, 3);
    appendColumn(out, sentExchange, 10);
    appendRightAligned(out, rcvdRst, 3);
    appendRightAligned(out, rcvdExchange, 8);
    out.append(m_extra1);
    out.append(m_extra2);
    out.append("  ");
    appendRightAligned(out, m_band, 6);
    appendPadded(out, mode, 4);
    out.append(4, ' '); // points: none in a Cabrillo log, and no memo
}

void CabrilloTxtForm::appendAsciiColumns(std::string& out, std::string_view month,
                                         std::string_view day, std::string_view time,
                                         std::string_view call, std::string_view sentRst,
                                         std::string_view sentExchange, std::string_view rcvdRst,
                                         std::string_view rcvdExchange, std::string_view mode)
{
    // The columns as the general way writes them, where a byte is a column: the whole line
    // measured first and written in place.
    const auto atLeast = [](std::string_view s, std::size_t width) {
        return std::max(s.size(), width);
    };
    const std::size_t length = 1 + month.size() + 2 + day.size() + 1 + time.size() + 1 + 11 +
                               atLeast(sentRst, 3) + 10 + atLeast(rcvdRst, 3) +
                               atLeast(rcvdExchange, 8) + m_extra1.size() + m_extra2.size() + 2 +
                               atLeast(m_band, 6) + atLeast(mode, 4) + 4;
    const std::size_t at = out.size();
    out.resize(at + length);
    char* p = out.data() + at;
    const auto put = [&p](std::string_view s) {
        for (const char c : s) {
            *p++ = c;
        }
    };
    const auto blanks = [&p](std::size_t n) {
        for (; n > 0; --n) {
            *p++ = ' ';
        }
    };
    const auto column = [&](std::string_view s, std::size_t width) {
        const std::size_t taken = std::min(s.size(), width);
        put(s.substr(0, taken));
        blanks(width - taken);
    };
    const auto right = [&](std::string_view s, std::size_t width) {
        if (s.size() < width) {
            blanks(width - s.size());
        }
        put(s);
    };
    *p++ = ' ';
    put(month);
    blanks(2);
    put(day);
    *p++ = ' ';
    put(time);
    *p++ = ' ';
    column(call, 11);
    right(sentRst, 3);
    column(sentExchange, 10);
    right(rcvdRst, 3);
    right(rcvdExchange, 8);
    put(m_extra1);
    put(m_extra2);
    blanks(2);
    right(m_band, 6);
    put(mode);
    if (mode.size() < 4) {
        blanks(4 - mode.size());
    }
    blanks(4); // points: none in a Cabrillo log, and no memo
}

std::string cabrillo_2_zlog_txt(const ReaderContext& ctx)
{
    ctx.trace.line("Private sub cabrillo_2_zlog_txt()");
    const std::string path = replaceExtension(ctx.run.in_name, "_cbr2zlogt.txt");
    // The read of the run's reader, when the log has not changed since; the last pass over it.
    const std::shared_ptr<CabrilloLines> log = cabrilloLines(ctx.run.in_name, false);
    forgetCabrilloLines();
    text::LineWriter out(path, text::LineWriter::Mode::ReplaceWhenDone);
    // zLog's own column title of the .TXT form.
    out.write(kZa2tTitle);
    CabrilloTxtForm form;
    std::string formed;
    for (std::size_t k = 0; k < log->qsoLines.size(); ++k) {
        const std::uint32_t index = log->qsoLines[k];
        const std::string_view line = log->lines[index];
        const long number = static_cast<long>(index) + 1;
        formed.clear();
        // The reader's runs of the line, where it left them.
        const bool runs = log->runsFrom.size() == log->qsoLines.size() &&
                          log->runsFrom[k] != CabrilloLines::kNoRuns;
        try {
            if (runs) {
                form.appendLine(line, formed, log->runEdges.data() + log->runsFrom[k],
                                (log->runsTo[k] - log->runsFrom[k]) / 2);
            } else {
                form.appendLine(line, formed);
            }
        } catch (const failure::Failure& f) {
            // Where it stands, so that the trace shows the line that does not fit the ranges.
            throw failure::Failure(f.number(), f.description() + " (" + std::to_string(number) +
                                                   " 行目: " + std::string(line) + ")");
        }
        // A line of an ASCII file is formed of ASCII alone, which Shift-JIS holds as it stands.
        if (log->ascii) {
            out.writeRaw(formed);
        } else {
            out.write(formed);
        }
    }
    out.close();
    return path;
}

} // namespace vornhale::readers
