#pragma once

#include "app/Trace.h"
#include "engine/RunContext.h"

#include <filesystem>
#include <string>

namespace vornhale::readers {

/// The input path as the window shows it: whole when it has at most 40 Shift-JIS bytes,
/// otherwise leading bytes, ".../" and the file name, 40 bytes in all.
std::string shortenedPath(std::string_view path);

/// The count label of an input: the count less one, right-aligned in four columns,
/// then "　件".
std::string countLabel(long count);

/// What an open ends in.
enum class OpenResult {
    Opened,     ///< a usable input: `f_type`, the names and the counts are set
    Rejected,   ///< the file's test refused it: `run.in_name` and `lblIn_name` hold the message
    ProgramEnds ///< the operator cancelled a question that ends the program
};

/// What the open actions share once a file is chosen: `in_name`, the trace line, the test
/// of the file for `kind` ("zlo", "all", "txt", ...; empty: by the extension, `.ZLO` as the
/// binary log and anything else as a zLog text log), and, for a usable input,
/// `Disp_in_name` (output names, shown name, count). A path holding "REF" in any case ticks
/// `Check13`.
OpenResult openInput(engine::RunContext& ctx, const std::filesystem::path& path,
                     const std::string& kind);

/// Derives the output names and the shown name and count of `run.in_name`: for `.ZLO` the
/// records of the file, for text logs its lines.
void Disp_in_name(engine::RunState& run, app::Trace& trace);

} // namespace vornhale::readers
