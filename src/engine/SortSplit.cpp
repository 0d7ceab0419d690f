#include "engine/SortSplit.h"

#include "failure/Failure.h"
#include "base/WorkingFiles.h"
#include "text/ByteKeySort.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"
#include "text/SjisText.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <initializer_list>

namespace vornhale::engine {
namespace {

namespace fs = std::filesystem;

std::string time6Of(const std::string& q_time5)
{
    return text::left(q_time5, 2) + ":" + text::right(q_time5, 3);
}

// A keyed record: the final key in front, the manager field left out.
std::array<std::string_view, SortRecord::kFields> keyedFields(const SortRecord& r,
                                                             const std::string& key)
{
    const auto all = r.fields();
    std::array<std::string_view, SortRecord::kFields> f;
    f[0] = key;
    std::copy(all.begin(), all.begin() + 17, f.begin() + 1);
    std::copy(all.begin() + 18, all.end(), f.begin() + 18);
    return f;
}

// Keys the records of `in` (read at least once: the sentinel is always there) into `out`.
void keyFile(RunContext& ctx, const fs::path& in, text::LineWriter& out)
{
    text::RecordReader reader(in);
    const bool frequencies = ctx.options.tick("Check17");
    do {
        const SortRecord r = SortRecord::from(reader.fields(SortRecord::kFields));
        const std::string key = sortKey(r, ctx.run.sort_kind, frequencies);
        out.writeRecord(keyedFields(r, key));
    } while (!reader.atEnd());
}

// Turns a sorted keyed file into result records; the sentinel is dropped. `singles` says
// whether a "J" route of the card mark takes the operator's bureau mark.
void writeResults(RunContext& ctx, const fs::path& in, bool singles, text::LineWriter& out)
{
    const std::string& QSL_Q = ctx.run.QSL_Q;
    text::RecordReader reader(in);
    // A keyed record holds the sort record's fields one place later, up to the manager field
    // that it leaves out; `at` finds a sort record field among them.
    std::vector<std::string_view> k;
    auto at = [&k](std::size_t sortField) { return k[sortField < 17 ? sortField + 1 : sortField]; };
    std::string date6, time5, qsl3;
    do {
        reader.fieldViews(SortRecord::kFields, k);
        if (at(0) == "AAAAAA") {
            continue;
        }
        std::string_view route = at(7);
        if (route == QSL_Q || route == "J") {
            route = QSL_Q.empty() ? std::string_view(" ") : std::string_view(QSL_Q);
        }
        qsl3.assign(route);
        qsl3.append("  ");
        if (singles && text::startsWith(qsl3, "J")) {
            qsl3 = QSL_Q + qsl3.substr(1);
        }
        date6.assign(at(10));
        time5.assign(at(11));
        const std::string date8 = date8Of(date6);
        const std::string time6 = time6Of(time5);
        // The fields in the order of a result record.
        out.writeRecord({at(0),  at(1),  date8,  time6,  at(12), at(13), at(4),
                         at(5),  at(2),  at(8),  qsl3,   at(6),  at(14), at(15),
                         at(16), at(18), at(19), at(20), at(21), at(22)});
    } while (!reader.atEnd());
}

// The split of sorted raw lines into runs of equal keys. `single` and `multiple` receive the
// lines of stations worked once and more than once.
template <typename Single, typename Multiple>
void splitRuns(RunContext& ctx, Single single, Multiple multiple)
{
    Counters& c = ctx.run.counters;
    text::LineReader in(ctx.work(base::working::sort_out));
    // The reader holds the whole file, so the previous line is kept as a view into it.
    std::string_view previous, previousKey;
    bool havePrevious = false, inRun = false;
    while (!in.atEnd()) {
        const std::string_view line = in.nextRaw();
        ++c.qso_kazu;
        const std::string_view key = line.substr(0, line.find(','));
        if (havePrevious && key == previousKey) {
            multiple(previous);
            ++c.fuku_kazu;
            inRun = true;
        } else if (inRun) {
            multiple(previous);
            ++c.fuku_kazu;
            inRun = false;
        } else if (havePrevious) {
            single(previous);
            ++c.tan_kazu;
        }
        previous = line;
        previousKey = key;
        havePrevious = true;
    }
    if (havePrevious) {
        if (inRun) {
            multiple(previous);
            ++c.fuku_kazu;
        } else {
            single(previous);
            ++c.tan_kazu;
        }
    }
}

} // namespace

void sort_(RunContext& ctx, int start, int length, bool descending, const fs::path& in,
           const fs::path& out)
{
    ctx.trace.line("Public Sub sort_()");
    try {
        text::sortLinesByKey(in, out, start, length, descending);
    } catch (const failure::Failure&) {
        // The sort's result is not examined: it only leaves no output.
        std::error_code ec;
        fs::remove(out, ec);
    }
}

std::string sortKey(const SortRecord& r, int sort_kind, bool frequencies)
{
    const std::string k_call = text::padRight(r.call_key, 14);
    std::string band = r.band_or_freq;
    if (!frequencies && text::contains(band, ".")) {
        band = text::left(band, 1);
    }
    const std::string k_band = text::right("00000000" + band, 9);
    const std::string k_mode = text::left(r.mode + " ", 3);
    const std::string& k_date = r.q_date6;
    const std::string& k_time = r.q_time5;
    const std::string seven = "       ";
    auto joined = [](std::initializer_list<std::string_view> parts) {
        std::size_t size = 0;
        for (std::string_view p : parts) {
            size += p.size();
        }
        std::string key;
        key.reserve(size);
        for (std::string_view p : parts) {
            key.append(p);
        }
        return key;
    };
    // The manager part is worked out only for the two orders that use it.
    auto managerPart = [&] {
        return !r.mng_pad.empty()
                   ? text::Mid_sjis(std::string(text::trim(text::mid(r.mng_pad, 2))) + seven, 1, 7)
                   : text::Mid_sjis(r.call_key + seven, 1, 7);
    };
    switch (sort_kind) {
    case 1:
        return joined({k_call, k_band, k_mode, k_date, k_time});
    case 2:
        return joined({k_call, k_date, k_time, k_band, k_mode});
    case 3:
        return joined({managerPart(), r.call_key, k_band, k_mode, k_date, k_time});
    case 4:
        return joined({managerPart(), r.call_key, k_date, k_time, k_band, k_mode});
    default:
        return {};
    }
}

void count_tan_fuku(RunContext& ctx)
{
    ctx.trace.line("Private sub count_tan_fuku()");
    ctx.observer.status("　単／複　カウント中", base::Colour::Green);
    splitRuns(ctx, [](std::string_view) {}, [](std::string_view) {});
}

void Henkan_out_name_con(RunContext& ctx)
{
    ctx.trace.line("Private sub Henkan_out_name_con()");
    const RunState& run = ctx.run;
    text::RecordReader in(ctx.work(base::working::sort_in));
    text::LineWriter out(run.names.out_name_con0);
    while (!in.atEnd()) {
        SortRecord r = SortRecord::from(in.fields(SortRecord::kFields));
        std::string qsl3;
        if (r.route != "N") {
            const bool manager = text::contains(r.rmks1, "@") || text::contains(r.rmks2, "@");
            qsl3 = (manager ? std::string("M") : run.QSL_Q) + run.QSL_S + " ";
        } else {
            qsl3 = "N" + run.QSL_S + " ";
            r.rmks1 = text::replaceAll(r.rmks1, r.mng_pad, "");
            r.rmks2 = text::replaceAll(r.rmks2, r.mng_pad, "");
        }
        out.writeRecord(
            resultOf(r, date8Of(r.q_date6), time6Of(r.q_time5), std::move(qsl3)).fields());
    }
    out.close();
}

void temp_sep(RunContext& ctx)
{
    ctx.trace.line("Private sub temp_sep()");
    ctx.observer.status("　単／複　ＱＳＯに分割中", base::Colour::Green);
    {
        text::LineWriter singles(ctx.work(base::working::semp_s));
        text::LineWriter multiples(ctx.work(base::working::semp_d));
        splitRuns(
            ctx, [&](std::string_view line) { singles.writeRaw(line); },
            [&](std::string_view line) { multiples.writeRaw(line); });
        singles.write(kSentinel);
        multiples.write(kSentinel);
        singles.close();
        multiples.close();
    }
    if (ctx.run.sort_wake == 1) {
        sort_wakeru_c(ctx);
    } else {
        sort_wakenai_c(ctx);
    }
}

void sort_wakeru_c(RunContext& ctx)
{
    ctx.trace.line("Private sub sort_wakeru_c()");
    ctx.observer.status("　最　終　処　理　中", base::Colour::Green);
    for (const auto& [semp, temp, uemp] : {std::tuple{base::working::semp_s, base::working::temp_s, base::working::uemp_s},
                                          std::tuple{base::working::semp_d, base::working::temp_d, base::working::uemp_d}}) {
        {
            text::LineWriter out(ctx.work(temp));
            keyFile(ctx, ctx.work(semp), out);
            out.close();
        }
        sort_(ctx, 2, 37, false, ctx.work(temp), ctx.work(uemp));
    }
    temp_marge(ctx);
}

void sort_wakenai_c(RunContext& ctx)
{
    ctx.trace.line("Private sub sort_wakenai_c()");
    ctx.observer.status("　最　終　処　理　中", base::Colour::Green);
    {
        text::LineWriter out(ctx.work(base::working::temp_s));
        keyFile(ctx, ctx.work(base::working::semp_s), out);
        keyFile(ctx, ctx.work(base::working::semp_d), out);
        out.close();
    }
    sort_(ctx, 2, 37, false, ctx.work(base::working::temp_s), ctx.work(base::working::uemp_s));
    text::LineWriter out(ctx.run.names.out_name_con0);
    writeResults(ctx, ctx.work(base::working::uemp_s), true, out);
    out.close();
}

void temp_marge(RunContext& ctx)
{
    ctx.trace.line("Private sub temp_marge()");
    const std::string name = fs::path(ctx.run.names.out_name_con0).filename().string();
    ctx.observer.status(name + "  に変換中", base::Colour::Green);
    text::LineWriter out(ctx.run.names.out_name_con0);
    writeResults(ctx, ctx.work(base::working::uemp_s), true, out);
    writeResults(ctx, ctx.work(base::working::uemp_d), false, out);
    out.close();
}

} // namespace vornhale::engine
