#include "reference/ArdxMaster.h"

#include "text/ByteKeySort.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/SjisText.h"

#include <initializer_list>

namespace vornhale::reference {

namespace fs = std::filesystem;

namespace {

constexpr int kMaxCodeLines = 11;
constexpr long kMaxCodePositions = 100;

/// Writes one `ardx_dat.001` line per code of one zLog state file.
void separate(const fs::path& dat, std::initializer_list<std::string_view> endLines,
              text::LineWriter& out)
{
    text::LineReader in(dat);
    in.next(); // the file's title line
    while (!in.atEnd()) {
        const std::string line = in.next();
        bool end = false;
        for (std::string_view e : endLines) {
            end = end || line == e;
        }
        if (end) {
            break;
        }
        const std::string name = text::left(line, 30);
        bool groupDone = false;
        for (int n = 0; n < kMaxCodeLines && !groupDone; ++n) {
            const std::string codes(text::trim(in.next()));
            std::string code;
            for (long k = 1; k <= kMaxCodePositions; ++k) {
                const std::string c = text::Mid_sjis(codes, k, 1);
                if (c == "," || c == ";") {
                    out.write("'" + text::padRight(code, 24) + text::padRight(name, 30));
                    code.clear();
                    if (c == ";") {
                        groupDone = true;
                        break;
                    }
                } else {
                    code += c;
                }
            }
        }
    }
}

} // namespace

void ArdxMaster::ardx_sep(const fs::path& zlog_dat_dir, const fs::path& drive_path,
                          base::Trace& trace)
{
    const fs::path work1 = drive_path / "ardx_dat.001";
    const fs::path work2 = drive_path / "ardx_dat.002";
    const fs::path mas = zlog_dat_dir / "ardx_dat.mas";

    trace.line("Private sub ardx_sep()_1");
    {
        text::LineWriter out(work1);
        separate(zlog_dat_dir / "ARDX.DAT", {"end of file ardx.dat"}, out);
        out.close();
    }
    trace.line("Private sub ardx_sep()_2");
    {
        text::LineWriter out(work1, text::LineWriter::Mode::Append);
        separate(zlog_dat_dir / "ARRL10.DAT", {"end of file arrl10.dat", "end of file ardx.dat"},
                 out);
        out.close();
    }
    trace.line("Private sub ardx_sep()_3_sort");
    trace.line("Public Sub sort_()");
    text::sortLinesByKey(work1, work2, 1, 10, false);

    trace.line("Private sub ardx_sep()_4");
    {
        text::LineWriter out(mas);
        out.write(kArdxMasHeading);
        const std::vector<std::string> sorted = text::readRawLines(work2);
        for (std::size_t i = 0; i < sorted.size(); ++i) {
            if (i == 0 || sorted[i] != sorted[i - 1]) {
                out.writeRaw(sorted[i]);
            }
        }
        out.close();
    }

    std::vector<std::string> code, name;
    text::LineReader in(mas);
    const long lines = text::Count_lines(mas);
    code.reserve(lines > 0 ? static_cast<std::size_t>(lines) : 0);
    name.reserve(code.capacity());
    in.next(); // heading
    in.next(); // the first data line, which the load has always passed over
    while (!in.atEnd()) {
        const std::string line = in.next();
        code.emplace_back(text::trim(text::Mid_sjis(line, 2, 6)));
        name.emplace_back(text::trim(text::Mid_sjis(line, 26, 28)));
    }

    m_code = std::move(code);
    m_name = std::move(name);
    m_first.clear();
    m_first.reserve(m_code.size());
    for (std::size_t i = 0; i < m_code.size(); ++i) {
        m_first.emplace(text::upper(m_code[i]), i);
    }
}

std::string ArdxMaster::get_ardx(std::string_view q_rcvd) const
{
    const auto hit = m_first.find(text::upper(text::padRight(q_rcvd, 6)));
    return hit == m_first.end() ? std::string() : m_name[hit->second];
}

} // namespace vornhale::reference
