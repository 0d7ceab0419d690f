#pragma once

#include "readers/CtestwinConverter.h"
#include "readers/InputKinds.h"
#include "readers/ReaderContext.h"

#include <filesystem>
#include <string_view>

namespace vornhale::readers {

/// The message box when the chosen name does not end in ".lg8".
inline constexpr std::string_view kNotLg8Name = "正しいファイル名を指定して下さい。";

/// `mnuOpen_Ctestwin_Click` once the dialog has put the path into `run.in_name`: a name whose
/// last four characters are not ".lg8" (in any case) gets the message box and changes nothing
/// (false). Otherwise both keys of `ctestwin2zlog.ini` in the program folder are written,
/// `converter` runs and is waited for, both keys are read back into `lg8_name` and
/// `ctestwin_qso_count`, `ctestwin_all_name` is worked out, the kind becomes "lg8", the input
/// time zone `Option2` is set to UTC, and `Label39` shows the count followed by " 件"; then
/// `FileOpen_ctestwin_lg8_sub`. Throws as the converter does.
bool mnuOpen_Ctestwin_Click(const ReaderContext& ctx, CtestwinConverter& converter);

/// `FileOpen_ctestwin_lg8_sub`: the tail of the open, ending in `chk_go`.
void FileOpen_ctestwin_lg8_sub(const ReaderContext& ctx);

/// CTESTWIN logs (`.lg8`): the open runs the converter that the settings name (the built-in
/// one on a fresh install) and the run reads the converted text with `a_2_t`. The window's
/// count is the lines of the converted text.
class CtestwinReader : public LogReader
{
public:
    OpenResult open(const ReaderContext& ctx, const std::filesystem::path& path) override;
    long countOpened(const InputState& run) const override;
    bool countsLines() const override { return false; }
    void read(const ReaderContext& ctx) override;
};

} // namespace vornhale::readers
