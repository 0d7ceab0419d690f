#include "history/NoQslMarking.h"

#include "failure/Failure.h"
#include "base/RunObserver.h"
#include "base/Trace.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"
#include "text/SjisCodec.h"

#include <unordered_set>
#include <vector>

namespace vornhale::history {
namespace {

namespace fs = std::filesystem;

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

using Record = std::vector<std::string>;

// A manager remark whose "@" stands alone loses every "@".
void dropLoneAt(std::string& remark)
{
    for (const std::string& part : text::split(remark, " ")) {
        if (text::trim(part) == "@") {
            remark = text::replaceAll(remark, "@", "");
            return;
        }
    }
}

void cleanManagerRemarks(Record& r)
{
    dropLoneAt(r[rmks1_c]);
    dropLoneAt(r[rmks2_c]);
}

void leftTrimRemarks(Record& r)
{
    for (std::size_t i : {static_cast<std::size_t>(rmks1), static_cast<std::size_t>(rmks2)}) {
        if (text::startsWith(r[i], " ")) {
            r[i] = std::string(text::trimLeft(r[i]));
        }
    }
}

std::string fullCallOf(const Record& r)
{
    return Full_call_key(r[call_key], r[call_ext], r[rmks1], r[rmks2]);
}

std::string withFirst(std::string_view first, const std::string& s)
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
    fs::remove(path, ec);
}

// Reads `from` as result records and writes them to `to` as `change` leaves them.
template <typename Change>
void rewrite(const fs::path& from, const fs::path& to, Change change)
{
    text::RecordReader in(from);
    text::LineWriter out(to);
    while (!in.atEnd()) {
        Record r = in.fields(kResultFields);
        change(r);
        out.write(text::formatRecord(r));
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
            r[qsl3] = "N" + std::string(QSL_S) + "  ";
            r[rmks1] = r[rmks1_nomng];
            r[rmks2] = r[rmks2_nomng];
        }
        if (text::startsWith(r[qsl3], "J")) {
            r[qsl3] = withFirst(QSL_Q, r[qsl3]);
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
            r[qsl3] = withFirst("M", r[qsl3]);
            r[rmks1] = r[rmks1_c];
            r[rmks2] = r[rmks2_c];
        }
    };
    rewrite(hamlog, files.out_name_ham0, [&](Record& r) {
        cleanManagerRemarks(r);
        if (withCard.count(fullCallOf(r))) {
            r[qsl3] = std::string(QSL_Q) + std::string(QSL_S) + " ";
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
        if (withCard.count(r[call_key])) {
            r[qsl3] = withFirst(QSL_Q, r[qsl3]);
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
        while (!in.atEnd()) {
            text::RecordReader fields = text::RecordReader::fromText(in.next());
            Record r;
            while (!fields.atEnd()) {
                r.push_back(fields.field());
            }
            if (r.size() > qsl3 && text::startsWith(r[qsl3], "N")) {
                r[qsl3] = std::string(No_QSL_moji) + text::mid(r[qsl3], 2, 1) + " ";
            }
            out.write(text::formatRecord(r));
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
