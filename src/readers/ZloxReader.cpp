#include "readers/ZloxReader.h"

#include "failure/Failure.h"
#include "readers/ZloReader.h"
#include "readers/ZloxRecord.h"

namespace vornhale::readers {

OpenResult ZloxReader::open(const ReaderContext& ctx, const std::filesystem::path&)
{
    switch (openZloFile(ctx, ctx.run.zlo, ctx.run.exchange, false, InputKind::Zlox)) {
    case ZloHead::ProgramEnds:
        return OpenResult::ProgramEnds;
    case ZloHead::NoInput:
        return OpenResult::Rejected;
    case ZloHead::Read:
        break;
    }
    return OpenResult::Opened;
}

long ZloxReader::countForLabel(const std::filesystem::path& path) const
{
    std::error_code ec;
    const auto bytes = std::filesystem::file_size(path, ec);
    return zloxRecordCount(ec ? 0 : bytes);
}

void ZloxReader::beforeConversion(const ReaderContext& ctx)
{
    if (read_zlo_head(ctx, ctx.run.zlo, ctx.run.exchange) == ZloHead::ProgramEnds) {
        throw failure::ProgramEnd{"read_zlo_head"};
    }
}

void ZloxReader::read(const ReaderContext& ctx)
{
    read_zlo(ctx);
}

} // namespace vornhale::readers
