#pragma once

#include "base/Trace.h"
#include "readers/InputKinds.h"
#include "readers/ReaderContext.h"

#include <filesystem>
#include <string>

namespace vornhale::readers {

/// The input path as the window shows it: whole when it has at most 40 Shift-JIS bytes,
/// otherwise leading bytes, ".../" and the file name, 40 bytes in all.
std::string shortenedPath(std::string_view path);

/// The count label of an input: the count less one, right-aligned in four columns,
/// then "　件".
std::string countLabel(long count);

/// What the open actions share once a file is chosen: `in_name`, the trace line, the open
/// action of the kind whose `--type` word is `typeWord` (empty: the kind a name alone opens
/// as, else the zLog text open, which decides by the name's letter), and, for a usable input,
/// `Disp_in_name` (output names, shown name, count). A path holding "REF" in any case ticks
/// `Check13`. An unknown `typeWord` is a rejection whose message lists the words.
OpenResult openInput(const ReaderContext& ctx, const std::filesystem::path& path,
                     std::string_view typeWord);

/// Derives the output names and the shown name and count of `run.in_name`: the count the
/// reader of its kind gives (records of a binary log, lines of a text log).
void Disp_in_name(InputState& run, base::Trace& trace);

} // namespace vornhale::readers
