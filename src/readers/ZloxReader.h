#pragma once

#include "readers/InputKinds.h"
#include "readers/ReaderContext.h"

#include <filesystem>

namespace vornhale::readers {

/// zLog's extended binary logs, `.ZLOX`, the form that current zLog writes by default. A
/// `.ZLOX` log opens as a `.ZLO` log does (the header's contest name, its question and the
/// exchange analysis) and converts, and writes its `_z2a.all` text, as the `.ZLO` that zLog
/// would have written for the same contacts: the memo holds the frequency in parentheses and
/// the dupe mark again, and the modes follow current zLog's table (5 "FT4", 6 "FT8",
/// 7 "Other").
class ZloxReader : public LogReader
{
public:
    OpenResult open(const ReaderContext& ctx, const std::filesystem::path& path) override;
    /// The whole 384-byte records of the file, the header included.
    long countForLabel(const std::filesystem::path& path) const override;
    bool countsLines() const override { return false; }
    void beforeConversion(const ReaderContext& ctx) override;
    void read(const ReaderContext& ctx) override;
};

} // namespace vornhale::readers
