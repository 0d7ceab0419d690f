#pragma once

#include "text/FileBytes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace vornhale::readers {

/// One record of a zLog binary log. Record 1 is the header, the others are QSOs.
inline constexpr std::size_t kZloRecordSize = 256;
using ZloRecord = std::array<std::uint8_t, kZloRecordSize>;

/// The number of records of a `.ZLO` file of `bytes` length: the length divided by 256,
/// rounded to the nearest whole number, half to even (640 bytes: 2; 1,000 bytes: 4).
long zloRecordCount(std::uintmax_t bytes);

/// The mode tables of zLog's generations. Up to version 2.8.5.0 index 5 is "Other"; from
/// 2.8.5.1 on, the version that writes `.ZLOX` logs, 5 is "FT4", 6 "FT8" and 7 "Other".
enum class ZloModes { Classic, Current };

/// A whole `.ZLO` file cut into 256-byte records. Nothing checks that it is a zLog file.
class ZloFile
{
public:
    /// Reads the file, or shares its bytes when it is the kept input. Throws Failure 53 when it
    /// cannot be opened.
    explicit ZloFile(const std::filesystem::path& path);
    /// A file of these bytes (for tests and fuzzing).
    static ZloFile fromBytes(std::string bytes);
    /// The bytes of a `.ZLOX` log, each of its records read as the `.ZLO` record that zLog
    /// would have written for it (see `zloRecordOfZlox`), with current zLog's modes.
    static ZloFile ofZlox(std::shared_ptr<const text::FileBytes> bytes);

    /// The mode table of the zLog that wrote the records.
    ZloModes modes() const { return m_zlox ? ZloModes::Current : ZloModes::Classic; }

    /// The record count: by `zloRecordCount`, or the whole records of a `.ZLOX` log.
    long count() const;
    /// Record `n`, counted from 1. Bytes that lie past the end of the file read as 0, so the
    /// short last record of a rounded-up count is zero-filled.
    ZloRecord record(long n) const;
    /// Record `n` as `record` gives it, read in place where the file holds it as it is, else
    /// made in `spare`.
    const std::uint8_t* recordAt(long n, ZloRecord& spare) const;
    /// The call of record `n` as `decodeZloQso` gives it, and its length byte.
    std::string callAt(long n, std::uint8_t& length) const;

    /// The bytes of the whole file, and the size of one of its records in them.
    std::string_view bytes() const { return m_bytes->view(); }
    std::size_t recordSize() const;

private:
    ZloFile();
    std::shared_ptr<const text::FileBytes> m_bytes;
    bool m_zlox = false;
};

/// What the header record gives.
struct ZloHeader
{
    std::string first_name;            ///< the station name by its length byte; kept, never used
    std::string cont_name;             ///< the contest name up to its first NUL
    std::uint8_t cont_name_length = 0; ///< only its being 0 is looked at
};

ZloHeader decodeZloHeader(const ZloRecord& record);

/// The fields of a QSO record as the readers take them. Texts are decoded from Shift-JIS.
struct ZloQso
{
    double when = 0;  ///< days since 1899-12-30, the time as the fraction of a day
    std::string call; ///< as many characters of the field as its length byte says
    std::uint8_t call_length = 0;
    std::string sent_nr; ///< of the first 9 bytes, by the length byte
    std::string rcvd_nr; ///< the same
    std::uint8_t rst_sent_low = 0, rst_sent_high = 0, rst_rcvd_low = 0, rst_rcvd_high = 0;
    std::uint8_t mode_index = 0, band_index = 0, power_index = 0;
    std::string multi1, multi2;                  ///< by their length bytes
    bool multi1_new = false, multi2_new = false; ///< the new flag is exactly 1
    std::uint8_t points = 0;
    std::string op; ///< as many characters as the length byte says, NUL and all
    std::uint8_t op_length = 0;
    std::string memo; ///< the same for the memo
    std::uint8_t memo_length = 0;
};

ZloQso decodeZloQso(const ZloRecord& record);
ZloQso decodeZloQso(const std::uint8_t* record);
/// The same into `into`, whose texts keep their room from record to record.
void decodeZloQso(const std::uint8_t* record, ZloQso& into);

/// Date and time texts of a record's time stamp: "yyyy/mm/dd" and "hh:mm", seconds
/// dropped. Throws Failure 6 for a value that is no date from the year 100 to 9999.
void zloDateTime(double when, std::string& date, std::string& time);

/// The decimal text of a 16-bit report, low byte plus 256 times high byte. Throws Failure 6
/// when the high byte is 128 or above.
std::string zloRst(std::uint8_t low, std::uint8_t high);

/// Mode, band and power by their tables. An index outside its table assigns nothing, so the
/// text keeps what the record before left in it.
void zloMode(std::uint8_t index, std::string& mode, ZloModes modes = ZloModes::Classic);
void zloBand(std::uint8_t index, std::string& band);
void zloPower(std::uint8_t index, std::string& power);

/// Operator or memo as the conversion takes it: as many characters as the length byte says,
/// then as many Shift-JIS bytes, then cut at the first NUL.
std::string zloCutField(std::string_view chars, std::uint8_t length);

/// What a `.ZLO` open leaves for the run, besides `cont_name` and the run's own values.
struct ZloOpenState
{
    /// Set when the operator answered the empty-contest-name question with retry; an open
    /// clears it, so the question comes once for each open.
    bool zlo_name_missing = false;
    std::string station_name;               ///< the header's first name; kept, never used
    long record_count = 0;                  ///< records of the file, the header included
    std::string last_in_name, prev_in_name; ///< the two most recent input paths
};

} // namespace vornhale::readers
