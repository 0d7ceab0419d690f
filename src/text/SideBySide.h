#pragma once

#include "text/LineFile.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <future>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace vornhale::text {

/// What a worker carries from record to record (see `turnRecords`); nothing for most.
template <typename Worker, bool carries> struct CarriedOf
{
    using type = int;
};
template <typename Worker> struct CarriedOf<Worker, true>
{
    using type = std::decay_t<decltype(std::declval<const Worker&>().carried())>;
};

/// Turns the records of `in`, from where it stands, one by one into lines of `out`:
/// `makeWorker()` gives a worker, and `worker(reader, lines)` reads one record from `reader`
/// and writes what it makes of it to `lines`; `in.again()` gives another reader of the same
/// bytes, sharing them. The first record is read before the end is tested, as every stage
/// reads.
/// `afterEach` follows each record, in the file's order, given what the worker returned for
/// it (nothing when it returns nothing).
///
/// A long file is worked on in two parts side by side: the part from the first line (or, for
/// a reader with `boundaryFrom(at)`, the first record it names) after some 60 % of the bytes
/// is turned on a second thread into memory while this one turns the part before it. (The
/// second thread gets the smaller part: it shares its processor with the writer thread, which
/// writes what this one turns.) The parts join when the first ends right where the second
/// began, as it does whenever every record is one line; otherwise, or when the second part
/// failed, this thread goes on alone from where it is, so the lines, the calls of `afterEach`
/// and any failure are those of one pass through the file. Each worker must touch nothing but
/// its own state, the reader and the lines it is given.
///
/// A worker whose records' lines depend on what the records before them left tells it by
/// `carried()`, a value that holds all of it and compares with `==`. The second part's worker
/// then first reads the records of some 64 KB before its part, dropping their lines, and the
/// parts join only when this thread's worker leaves the first part with what the second's took
/// over: the second part's lines are then those that one pass makes.
///
/// `out` is a `LineWriter` or anything with its `inMemory`, `takeLines` and `writeLines` (such
/// as `LineWriterPair`). When the parts join, `join(worker, second)` gives this thread's worker
/// what the second part's holds beside its lines, as `turnItems` does. Returns this thread's
/// worker, held where it was made: a worker need not move.
template <typename Reader, typename Out, typename MakeWorker, typename AfterEach, typename Join>
auto turnRecords(Reader& in, Out& out, const MakeWorker& makeWorker, const AfterEach& afterEach,
                 const Join& join)
{
    using Worker = decltype(makeWorker());
    using Result = decltype(std::declval<Worker&>()(in, out));
    // Whether a record's lines depend on what the records before it left.
    constexpr bool kCarries = requires(const Worker& w)
    {
        w.carried();
    };
    using Seam = typename CarriedOf<Worker, kCarries>::type;
    // What the second part's records gave, for `afterEach` once the parts join.
    using Results = std::conditional_t<std::is_void_v<Result>, long, std::vector<Result>>;
    struct Part
    {
        Results results{};
        decltype(std::declval<Out&>().takeLines()) lines;
        Seam seam{};
        std::unique_ptr<Worker> worker;
    };
    auto turnOne = [&afterEach](Worker& worker, Reader& reader, Out& lines) {
        if constexpr (std::is_void_v<Result>) {
            worker(reader, lines);
            afterEach();
        } else {
            afterEach(worker(reader, lines));
        }
    };

    constexpr std::size_t kSplitFrom = 1 << 20;
    // The bytes before the second part that its worker reads first, to learn what they leave.
    constexpr std::size_t kLeadIn = 1 << 16;
    std::size_t stop = std::string_view::npos;
    std::future<Part> second;
    if (in.bytes().size() >= kSplitFrom) {
        const std::string_view bytes = in.bytes();
        const std::size_t from = std::max(in.position(), bytes.size() / 5 * 3);
        const std::size_t leadFrom = std::max(in.position(), from > kLeadIn ? from - kLeadIn : 0);
        std::size_t lead = 0;
        if constexpr (requires { in.boundaryFrom(from); }) {
            // Records of a binary file are cut where the reader says.
            stop = in.boundaryFrom(from);
            lead = in.boundaryFrom(leadFrom);
        } else {
            const std::size_t lf = bytes.find('\n', from);
            stop = lf == std::string_view::npos ? bytes.size() : lf + 1;
            const std::size_t leadLf = bytes.find('\n', leadFrom);
            lead = leadLf == std::string_view::npos ? bytes.size() : leadLf + 1;
        }
        second = std::async(std::launch::async, [&in, stop, lead, &makeWorker] {
            // Taken while this thread reads on: `again` reads nothing that a read changes.
            Reader rest = in.again();
            Part part;
            part.worker.reset(new Worker(makeWorker()));
            Worker& worker = *part.worker;
            if constexpr (kCarries) {
                // The lead-in's lines are dropped; it must end where the part begins.
                rest.skipTo(lead);
                Out dropped = Out::inMemory(0);
                while (!rest.atEnd() && rest.position() < stop) {
                    worker(rest, dropped);
                }
                if (rest.position() != stop) {
                    throw std::runtime_error("the lead-in ran past the part");
                }
                part.seam = worker.carried();
            } else {
                rest.skipTo(stop);
            }
            // Lines made from records are seldom more than twice as long as the records.
            Out lines = Out::inMemory((rest.bytes().size() - stop) * 2);
            while (!rest.atEnd()) {
                if constexpr (std::is_void_v<Result>) {
                    worker(rest, lines);
                    ++part.results;
                } else {
                    part.results.push_back(worker(rest, lines));
                }
            }
            part.lines = lines.takeLines();
            return part;
        });
    }
    std::unique_ptr<Worker> held(new Worker(makeWorker()));
    Worker& worker = *held;
    auto turn = [&](std::size_t until) {
        do {
            turnOne(worker, in, out);
        } while (!in.atEnd() && in.position() < until);
    };
    turn(stop);
    if (!second.valid()) {
        return held;
    }
    Part part;
    bool joined = false;
    try {
        part = second.get();
        joined = in.position() == stop;
        if constexpr (kCarries) {
            // The second part took over what the lead-in left: it is right when that is what
            // this part leaves.
            joined = joined && worker.carried() == part.seam;
        }
    } catch (...) {
        // Read again below, failing where one pass fails.
    }
    if (joined) {
        join(worker, *part.worker);
        out.writeLines(std::move(part.lines));
        if constexpr (std::is_void_v<Result>) {
            for (long i = 0; i < part.results; ++i) {
                afterEach();
            }
        } else {
            for (auto&& result : part.results) {
                afterEach(result);
            }
        }
    } else if (!in.atEnd()) {
        turn(std::string_view::npos);
    }
    return held;
}

/// As above, for workers that hold nothing to join.
template <typename Reader, typename MakeWorker, typename AfterEach>
void turnRecords(Reader& in, LineWriter& out, const MakeWorker& makeWorker,
                 const AfterEach& afterEach)
{
    turnRecords(in, out, makeWorker, afterEach, [](auto&, auto&) {});
}

/// Two files written line for line from the same records, as one output of `turnRecords`.
class LineWriterPair
{
public:
    LineWriterPair(LineWriter& first, LineWriter& second) : m_first(&first), m_second(&second) {}
    /// A pair that keeps its lines in memory, each file reserving `expectedSize` bytes (memory
    /// that is reserved and never written costs nothing).
    static LineWriterPair inMemory(std::size_t expectedSize)
    {
        auto own = std::make_unique<Own>(expectedSize);
        LineWriterPair pair(own->first, own->second);
        pair.m_own = std::move(own);
        return pair;
    }

    LineWriter& first() { return *m_first; }
    LineWriter& second() { return *m_second; }
    std::pair<std::string, std::string> takeLines()
    {
        return {m_first->takeLines(), m_second->takeLines()};
    }
    void writeLines(std::pair<std::string, std::string>&& lines)
    {
        m_first->writeLines(std::move(lines.first));
        m_second->writeLines(std::move(lines.second));
    }

private:
    // The writers of an in-memory pair; they never move, so the pointers stay good.
    struct Own
    {
        explicit Own(std::size_t expectedSize)
            : first(LineWriter::inMemory(expectedSize)), second(LineWriter::inMemory(expectedSize))
        {
        }
        LineWriter first, second;
    };

    LineWriter* m_first;
    LineWriter* m_second;
    std::unique_ptr<Own> m_own;
};

/// Lists of this many items or more are turned in two parts by `turnItems`.
inline constexpr std::size_t kSideBySideItems = 4096;

/// Turns the items `first` to `count` − 1 of a list held in memory into lines of `out`, in
/// order: `makeWorker()` gives a worker, `worker(i, lines)` writes the lines of item `i` to
/// `lines`, and `afterEach()` follows each item in the list's order. Returns this thread's
/// worker, with all it holds beside the lines.
///
/// A long list is turned in two parts side by side as `turnRecords` turns a long file: the
/// last 40 % on a second thread into memory (`lineSize`: about the bytes of an item's lines).
/// A worker that carries something from item to item says what by `carried()`, as for
/// `turnRecords`; the second part's worker then first turns the 512 items before its part,
/// dropping their lines, and the parts join only where this thread's worker leaves the first
/// part with what the second's took over. When they join, `join(worker, second)` gives this
/// thread's worker what the second part's holds beside its lines; otherwise, or when the
/// second part failed, this thread turns that part again, so the lines, the calls of
/// `afterEach` and any failure are those of one pass. Each worker must touch nothing but its
/// own state, its items and the lines it is given.
template <typename MakeWorker, typename AfterEach, typename Join>
auto turnItems(std::size_t first, std::size_t count, LineWriter& out, std::size_t lineSize,
               const MakeWorker& makeWorker, const AfterEach& afterEach, const Join& join)
{
    using Worker = decltype(makeWorker());
    constexpr bool kCarries = requires(const Worker& w)
    {
        w.carried();
    };
    static constexpr std::size_t kLeadIn = 512;
    struct Part
    {
        std::string lines;
        typename CarriedOf<Worker, kCarries>::type seam{};
        std::optional<Worker> worker;
    };
    const std::size_t split =
        count - first >= kSideBySideItems ? first + (count - first) / 5 * 3 : count;
    std::future<Part> second;
    if (split < count) {
        second = std::async(std::launch::async, [&makeWorker, first, split, count, lineSize] {
            Part part;
            Worker& worker = part.worker.emplace(makeWorker());
            if constexpr (kCarries) {
                LineWriter dropped = LineWriter::inMemory(0);
                for (std::size_t i = split - std::min(split - first, kLeadIn); i < split; ++i) {
                    worker(i, dropped);
                }
                part.seam = worker.carried();
            }
            LineWriter lines = LineWriter::inMemory((count - split) * lineSize);
            for (std::size_t i = split; i < count; ++i) {
                worker(i, lines);
            }
            part.lines = lines.takeLines();
            return part;
        });
    }
    Worker worker = makeWorker();
    auto turn = [&](std::size_t from, std::size_t to) {
        for (std::size_t i = from; i < to; ++i) {
            worker(i, out);
            afterEach();
        }
    };
    turn(first, split);
    if (second.valid()) {
        std::optional<Part> part;
        try {
            part.emplace(second.get());
        } catch (...) {
            // Turned again below, failing where one pass fails.
        }
        bool joined = part.has_value();
        if constexpr (kCarries) {
            joined = joined && worker.carried() == part->seam;
        }
        if (joined) {
            join(worker, *part->worker);
            out.writeLines(std::move(part->lines));
            for (std::size_t i = split; i < count; ++i) {
                afterEach();
            }
        } else {
            turn(split, count);
        }
    }
    return worker;
}

/// As above for the items 0 to `count` − 1 of a list that `turn(i, lines)` turns one by one,
/// carrying nothing and with nothing to do after each.
template <typename Turn>
void turnItems(std::size_t count, LineWriter& out, std::size_t lineSize, const Turn& turn)
{
    const auto makeWorker = [&turn] {
        return [&turn](std::size_t i, LineWriter& lines) { turn(i, lines); };
    };
    turnItems(
        0, count, out, lineSize, makeWorker, [] {}, [](auto&, auto&) {});
}

/// As above, for the records of a whole working file, with nothing to do after each.
template <typename Reader, typename MakeWorker>
void turnRecords(const std::filesystem::path& path, LineWriter& out, const MakeWorker& makeWorker)
{
    Reader in(path);
    turnRecords(in, out, makeWorker, [](auto&&...) {});
}

/// As above, with `afterEach` after each record.
template <typename Reader, typename MakeWorker, typename AfterEach>
void turnRecords(const std::filesystem::path& path, LineWriter& out, const MakeWorker& makeWorker,
                 const AfterEach& afterEach)
{
    Reader in(path);
    turnRecords(in, out, makeWorker, afterEach);
}

} // namespace vornhale::text
