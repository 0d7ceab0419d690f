#include "history/NoQslMarking.h"

#include "base/RunObserver.h"
#include "base/Trace.h"
#include "failure/Failure.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/RecordBytes.h"
#include "text/Record.h"
#include "text/SjisCodec.h"
#include "text/Utf8.h"
#include "text/WriteBehind.h"

#include <algorithm>
#include <array>
#include <unordered_set>
#include <vector>

namespace vornhale::history {
namespace {

namespace fs = std::filesystem;

using text::RecordBytes;
using AsciiLine = text::AsciiRecordLine;

// Positions of the fields of a twenty-field result record.
enum Field : std::size_t
{
    call_key = 0,
    call_ext = 1,
    qsl3 = 10,
    rmks1 = 13,
    rmks2 = 14,
    rmks1_c = 15,
    rmks2_c = 16,
    rmks1_nomng = 17,
    rmks2_nomng = 18,
    kResultFields = 20
};

// One result record as views of its fields. A field that a rule rewrites is kept in the
// record's own string for that field; a field may also view another field of the record.
class Record
{
public:
    Record() : m_view(kResultFields) {}
    std::string_view operator[](std::size_t i) const { return m_view[i]; }
    void set(std::size_t i, std::string text)
    {
        m_ownAscii = m_ownAscii && text::isAsciiText(text);
        m_own[i] = std::move(text);
        m_view[i] = m_own[i];
    }
    // Whether every text the rules wrote into this record is ASCII; cleared for the next one.
    bool ownAscii() const { return m_ownAscii; }
    void startRecord() { m_ownAscii = true; }
    void setView(std::size_t i, std::string_view view) { m_view[i] = view; }
    std::vector<std::string_view>& views() { return m_view; }

private:
    std::vector<std::string_view> m_view;
    std::array<std::string, kResultFields> m_own;
    bool m_ownAscii = true;
};

// A manager remark whose "@" stands alone loses every "@".
void dropLoneAt(Record& r, std::size_t i)
{
    const std::string_view remark = r[i];
    if (remark.find('@') == std::string_view::npos) {
        return;
    }
    for (const std::string& part : text::split(remark, " ")) {
        if (text::trim(part) == "@") {
            r.set(i, text::replaceAll(remark, "@", ""));
            return;
        }
    }
}

void cleanManagerRemarks(Record& r)
{
    dropLoneAt(r, rmks1_c);
    dropLoneAt(r, rmks2_c);
}

void leftTrimRemarks(Record& r)
{
    for (std::size_t i : {static_cast<std::size_t>(rmks1), static_cast<std::size_t>(rmks2)}) {
        if (text::startsWith(r[i], " ")) {
            r.setView(i, text::trimLeft(r[i]));
        }
    }
}

std::string fullCallOf(const Record& r)
{
    return Full_call_key(r[call_key], r[call_ext], r[rmks1], r[rmks2]);
}

std::string withFirst(std::string_view first, std::string_view s)
{
    return std::string(first) + text::mid(s, 2);
}

void copyLines(const fs::path& from, const fs::path& to)
{
    text::LineReader in(from);
    text::LineWriter out(to);
    while (!in.atEnd()) {
        out.writeRaw(in.nextRaw());
    }
    out.close();
}

void removeFile(const fs::path& path)
{
    std::error_code ec;
    text::removeBehind(path, ec);
}

// Reads `from` as result records and writes them to `to` as `change` leaves them.
template <typename Change>
void rewrite(const fs::path& from, const fs::path& to, Change change)
{
    RecordBytes in(from);
    text::LineWriter out(to);
    Record r;
    AsciiLine line;
    while (!in.atEnd()) {
        r.startRecord();
        const bool ascii = in.next(kResultFields, r.views());
        change(r);
        if (ascii && r.ownAscii()) {
            // Every field is ASCII: the line goes to the writer as it is built.
            line.clear();
            for (std::string_view f : r.views()) {
                line.field(f);
            }
            out.writeRaw(line.text());
        } else {
            out.writeRecord(r.views());
        }
    }
    out.close();
}

} // namespace

bool Check_JA_club(std::string_view base_call)
{
    const std::string padded = text::padRight(base_call, 6);
    const std::string first = text::mid(padded, 1, 1);
    const std::string fourth = text::mid(padded, 4, 1);
    return first == "J" && (fourth == "Y" || fourth == "Z") && text::charCount(padded) != 5;
}

std::string Full_call_key(std::string_view call_key, std::string_view call_ext,
                          std::string_view rmks1, std::string_view rmks2)
{
    if (text::trim(call_ext).empty()) {
        return std::string(text::trim(call_key));
    }
    if (!text::contains(rmks1, "$DX") && !text::contains(rmks2, "$DX")) {
        return std::string(call_key) + "/" + std::string(call_ext);
    }
    return std::string(call_ext) + "/" + std::string(call_key);
}

void all_JN_Chikan_full(const ResultFiles& files, std::string_view QSL_Q, std::string_view QSL_S,
                        base::Trace& trace)
{
    trace.line("Private sub all_JN_Chikan_full()_a_1  'No QSL はフルコールで行うに　レ点有りの時");
    const fs::path contest = files.drive_path / "contest_n_1.csv";
    const fs::path hamlog = files.drive_path / "hamlog_n_1.csv";

    std::unordered_set<std::string> noCard;
    rewrite(files.out_name_con0, contest, [&](Record& r) {
        cleanManagerRemarks(r);
        if (text::startsWith(r[qsl3], "N")) {
            noCard.insert(fullCallOf(r));
        }
    });

    auto mark = [&](Record& r) {
        cleanManagerRemarks(r);
        if (noCard.count(fullCallOf(r))) {
            r.set(qsl3, "N" + std::string(QSL_S) + "  ");
            r.setView(rmks1, r[rmks1_nomng]);
            r.setView(rmks2, r[rmks2_nomng]);
        }
        if (text::startsWith(r[qsl3], "J")) {
            r.set(qsl3, withFirst(QSL_Q, r[qsl3]));
        }
        leftTrimRemarks(r);
    };
    rewrite(contest, files.out_name_con0, mark);
    removeFile(contest);

    // The log-order file is held against the calls of the contest file.
    copyLines(files.out_name_ham0, hamlog);
    rewrite(hamlog, files.out_name_ham0, mark);
    removeFile(hamlog);
}

void all_NJ_Chikan_full(const ResultFiles& files, std::string_view QSL_Q, std::string_view QSL_S,
                        base::Trace& trace)
{
    trace.line("Private sub all_NJ_Chikan_full()_b_1  'No QSL はフルコールで行うに　レ点有りの時");
    const fs::path hamlog = files.drive_path / "Hamlog_n_1.csv";
    const fs::path contest = files.drive_path / "contest_n_1.csv";

    std::unordered_set<std::string> withCard;
    rewrite(files.out_name_ham0, hamlog, [&](Record& r) {
        if (!text::startsWith(r[qsl3], "N")) {
            withCard.insert(fullCallOf(r));
        }
    });

    auto managerRule = [](Record& r) {
        if (text::contains(r[rmks1_c], "@") || text::contains(r[rmks2_c], "@")) {
            r.set(qsl3, withFirst("M", r[qsl3]));
            r.setView(rmks1, r[rmks1_c]);
            r.setView(rmks2, r[rmks2_c]);
        }
    };
    rewrite(hamlog, files.out_name_ham0, [&](Record& r) {
        cleanManagerRemarks(r);
        if (withCard.count(fullCallOf(r))) {
            r.set(qsl3, std::string(QSL_Q) + std::string(QSL_S) + " ");
            managerRule(r);
        }
        leftTrimRemarks(r);
    });
    removeFile(hamlog);

    // The contest file is searched by the main call alone: a portable call there finds
    // nothing, as the set holds full calls.
    copyLines(files.out_name_con0, contest);
    rewrite(contest, files.out_name_con0, [&](Record& r) {
        cleanManagerRemarks(r);
        if (withCard.count(std::string(r[call_key]))) {
            r.set(qsl3, withFirst(QSL_Q, r[qsl3]));
            managerRule(r);
        }
        leftTrimRemarks(r);
    });
    removeFile(contest);
}

void No_QSL_moji_ReWrite(const fs::path& out_name_ham0, const fs::path& out_name_ham,
                         const fs::path& out_name_con0, const fs::path& out_name_con,
                         std::string_view No_QSL_moji, bool reportOn, base::Trace& trace,
                         base::RunObserver& observer)
{
    trace.line("Private Sub No_QSL_moji_ReWrite");
    const std::pair<fs::path, fs::path> passes[] = {{out_name_ham0, out_name_ham},
                                                    {out_name_con0, out_name_con}};
    const char* const opening[] = {"    Open out_name_ham0 For Input As #f_i :",
                                   "    Open out_name_con0 For Input As #f_i :"};
    std::vector<fs::path> copies;
    for (std::size_t p = 0; p < 2; ++p) {
        const auto& [source, final] = passes[p];
        if (reportOn) {
            trace.line(source.string() + opening[p]);
        }
        const fs::path copy = source.string() + "_1";
        observer.progressRange(text::Count_lines(source));
        text::LineReader in(source);
        text::LineWriter out(copy);
        long n = 0;
        // A line's fields as views into the line (or into its decoded text), and the one field
        // that may change.
        std::vector<std::string_view> r;
        std::string decoded, mark;
        AsciiLine line;
        while (!in.atEnd()) {
            std::string_view lineText = in.nextRaw();
            // The separators are ASCII bytes, found in the bytes where they stand in the text.
            const bool ascii = text::isAsciiText(lineText);
            if (!ascii) {
                decoded = text::decodeSjis(lineText);
                lineText = decoded;
            }
            r.clear();
            for (const char *p = lineText.data(), *end = p + lineText.size(); p < end;) {
                r.push_back(RecordBytes::generalField(p, end));
            }
            bool asciiMark = true;
            if (r.size() > qsl3 && text::startsWith(r[qsl3], "N")) {
                mark = std::string(No_QSL_moji) + text::mid(r[qsl3], 2, 1) + " ";
                r[qsl3] = mark;
                asciiMark = text::isAsciiText(mark);
            }
            if (ascii && asciiMark) {
                line.clear();
                for (std::string_view f : r) {
                    line.field(f);
                }
                out.writeRaw(r.empty() ? std::string_view() : line.text());
            } else {
                out.writeRecord(r);
            }
            observer.progress(++n);
        }
        out.close();
        std::error_code ec;
        fs::copy_file(copy, final, fs::copy_options::overwrite_existing, ec);
        if (ec) {
            throw failure::Failure(failure::PathFileAccess, "パス名が無効です。 " + final.string());
        }
        copies.push_back(copy);
    }
    for (const fs::path& copy : copies) {
        removeFile(copy);
    }
    observer.progress(0);
}

} // namespace vornhale::history
