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

/// What the open actions share once a file is chosen: `in_name`, the trace line, the test
/// of the file for `kind` (empty: by the name, as the open of zLog text logs does), and,
/// for a usable input, `Disp_in_name` (output names, shown name, count).
/// Returns false when the file was rejected; `run.in_name` then holds the message.
bool openInput(engine::RunState& run, app::Trace& trace, const std::filesystem::path& path,
               const std::string& kind);

/// Derives the output names and the shown name and count of `run.in_name`.
void Disp_in_name(engine::RunState& run, app::Trace& trace);

} // namespace vornhale::readers
