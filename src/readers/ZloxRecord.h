#pragma once

#include "readers/ZloRecord.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace vornhale::readers {

/// The records of zLog's extended binary log, `.ZLOX`. Bytes 0 to 255 of each record are the
/// record of a `.ZLO` log; the rest holds the frequency and marks that `.ZLO` keeps in the
/// memo. The header begins with "ZLOX" and the count of contacts.
inline constexpr std::size_t kZloxRecordSize = 384;

/// The number of whole 384-byte records in a `.ZLOX` file of `bytes` length, the header
/// included. A cut-off last record is not counted.
long zloxRecordCount(std::uintmax_t bytes);

/// The memo as zLog writes it into a `.ZLO` record for a `.ZLOX` record `record` (384 bytes):
/// "-DUPE-" when the dupe flag is set, the frequency field's whole kHz in parentheses
/// ("7123.0" gives "(7123)"), the memo, and "*QSY Violation*" when that flag is set, joined by
/// single blanks. Shift-JIS bytes, cut to the 64 bytes of the `.ZLO` memo without splitting a
/// double-byte character.
std::string zloMemoOfZlox(std::string_view record);

/// Record `record` (384 bytes) of a `.ZLOX` log as the 256-byte `.ZLO` record that zLog would
/// have written for it, into `out`: the header (`header`) with its "ZLOX" mark and count
/// cleared, a contact with the memo rebuilt by `zloMemoOfZlox`.
void zloRecordOfZlox(std::string_view record, bool header, std::uint8_t* out);

/// The `.ZLO` log that zLog would have written for the contacts of the `.ZLOX` bytes `bytes`,
/// each record made by `zloRecordOfZlox` as it is read. Its modes follow current zLog's table.
ZloFile zloOfZlox(std::string_view bytes);

/// Reads a `.ZLOX` file, or shares its bytes when it is the kept input, as `zloOfZlox` does.
/// Throws Failure 53 when it cannot be read.
ZloFile readZloxFile(const std::filesystem::path& path);

} // namespace vornhale::readers
