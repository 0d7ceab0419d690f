#pragma once

#include "text/LineFile.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <future>
#include <string>
#include <string_view>
#include <utility>

namespace vornhale::engine {

/// Turns the records of a working file one by one into lines of `out`: `makeWorker()` gives a
/// worker, and `worker(reader, lines)` reads one record from `reader` and writes what it makes
/// of it to `lines`. The first record is read before the end is tested, as every stage reads.
/// `afterEach` follows each record, in the file's order.
///
/// A long file is worked on in two parts side by side: the part from the first line after
/// some 60 % of the bytes is turned on a second thread into memory while this one turns the
/// part before it. (The second thread gets the smaller part: it shares its processor with the
/// writer thread, which writes what this one turns.) The parts join when the first ends right
/// where the second began, as it does whenever every record is one line; otherwise, or when
/// the second part failed, this thread goes on alone from where it is, so the lines and any
/// failure are those of one pass through the file. Each worker must touch nothing but its
/// own state, the reader and the lines it is given.
template <typename Reader, typename MakeWorker>
void turnRecords(const std::filesystem::path& path, text::LineWriter& out,
                 const MakeWorker& makeWorker, const std::function<void()>& afterEach = {})
{
    constexpr std::size_t kSplitFrom = 1 << 20;
    Reader in(path);
    std::size_t stop = std::string_view::npos;
    std::future<std::pair<long, std::string>> second;
    if (in.bytes().size() >= kSplitFrom) {
        const std::string_view bytes = in.bytes();
        const std::size_t lf = bytes.find('\n', bytes.size() / 5 * 3);
        stop = lf == std::string_view::npos ? bytes.size() : lf + 1;
        second = std::async(std::launch::async, [&path, stop, &makeWorker] {
            Reader rest(path);
            rest.skipTo(stop);
            // Lines made from records are seldom more than twice as long as the records.
            text::LineWriter lines = text::LineWriter::inMemory((rest.bytes().size() - stop) * 2);
            auto worker = makeWorker();
            long count = 0;
            while (!rest.atEnd()) {
                worker(rest, lines);
                ++count;
            }
            return std::pair<long, std::string>(count, lines.takeLines());
        });
    }
    auto worker = makeWorker();
    auto turn = [&](std::size_t until) {
        do {
            worker(in, out);
            if (afterEach) {
                afterEach();
            }
        } while (!in.atEnd() && in.position() < until);
    };
    turn(stop);
    if (!second.valid()) {
        return;
    }
    std::pair<long, std::string> part;
    bool joined = false;
    try {
        part = second.get();
        joined = in.position() == stop;
    } catch (...) {
        // Read again below, failing where one pass fails.
    }
    if (joined) {
        out.writeLines(std::move(part.second));
        for (long i = 0; afterEach && i < part.first; ++i) {
            afterEach();
        }
    } else if (!in.atEnd()) {
        turn(std::string_view::npos);
    }
}

} // namespace vornhale::engine
