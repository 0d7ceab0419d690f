#include "tools/QsoBankExport.h"

#include "failure/Failure.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"

#include <array>
#include <memory>

namespace vornhale::tools {
namespace {

std::string trimmed(std::string_view s)
{
    return std::string(text::trim(s));
}

// Two digits with a leading zero: "3" gives "03"; a longer text stays as it is.
std::string twoDigits(std::string_view s)
{
    std::string t = trimmed(s);
    return t.size() == 1 ? "0" + t : t;
}

void traceFailure(base::Trace& trace, const failure::Failure& f)
{
    trace.line("エラー発生 ：　" + std::to_string(f.number()));
}

} // namespace

std::string QsoBankExport::fileName(std::string_view stemWithPoint)
{
    return std::string(stemWithPoint) + "QSOBank.xml";
}

std::string QsoBankExport::mode(std::string_view q_mode)
{
    struct Rename
    {
        std::string_view from, to;
    };
    static constexpr std::array kRenames{
        Rename{"RTY", "RTTY"},   Rename{"TTY", "RTTY"},   Rename{"STV", "SSTV"},
        Rename{"SST", "SSTV"},   Rename{"PSK", "PSK31"},  Rename{"PS3", "PSK31"},
        Rename{"PS31", "PSK31"}, Rename{"PSK3", "PSK31"}, Rename{"PS6", "PSK63"},
        Rename{"PS63", "PSK63"}, Rename{"PSK6", "PSK63"},
    };
    for (const Rename& r : kRenames) {
        if (q_mode == r.from) {
            return std::string(r.to);
        }
    }
    return std::string(q_mode);
}

std::string QsoBankExport::daytime(const base::QsoLine& q)
{
    const std::string time = trimmed(q.q_time);
    return trimmed(q.q_year) + "/" + twoDigits(q.q_month) + "/" + twoDigits(q.q_day) + " " +
           text::left(time, 2) + ":" + text::right(time, 2) + ":00 UTC";
}

std::vector<std::string> QsoBankExport::record(const base::QsoLine& q)
{
    const std::string freq = text::trim(q.q_freq).empty() ? trimmed(q.q_band) : trimmed(q.q_freq);
    return {
        "<qso_record>",
        "<daytime>" + daytime(q) + "</daytime>",
        "<callsign>" + trimmed(q.q_call) + "</callsign>",
        "<frequency>" + freq + "</frequency>",
        "<mode>" + mode(trimmed(q.q_mode)) + "</mode>",
        "<his_rpt>" + trimmed(q.q_rst_sent) + "</his_rpt>",
        "<my_rpt>" + trimmed(q.q_rst_rcvd) + "</my_rpt>",
        "</qso_record>",
    };
}

void QsoBankExport::write(const std::filesystem::path& zlog_1, const std::filesystem::path& out,
                          base::Trace& trace)
{
    trace.line("Private Sub mnuQSOBank_Click()");
    std::unique_ptr<text::RecordReader> in;
    try {
        in = std::make_unique<text::RecordReader>(zlog_1);
    } catch (const failure::Failure& f) {
        traceFailure(trace, f);
    }
    try {
        text::LineWriter xml(out, text::LineWriter::Mode::ReplaceWhenDone);
        xml.write("<?xml version=\"1\"?>");
        xml.write("<putqsodata_body>");
        // The fields keep what the record before left when a read fails part way, and a
        // block is written before the end is tested.
        std::vector<std::string> fields(base::QsoLine::kFields);
        do {
            try {
                if (!in) {
                    throw failure::Failure(failure::FileNotFound, zlog_1.string());
                }
                for (std::string& field : fields) {
                    field = in->field();
                }
            } catch (const failure::Failure& f) {
                traceFailure(trace, f);
            }
            for (const std::string& line : record(base::QsoLine::from(fields))) {
                xml.write(line);
            }
        } while (in && !in->atEnd());
        xml.write("</putqsodata_body>");
        xml.close();
    } catch (const failure::Failure& f) {
        traceFailure(trace, f);
    }
}

} // namespace vornhale::tools
