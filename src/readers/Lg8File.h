#pragma once

#include "text/FileBytes.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::readers {

/// One contact of a CTESTWIN log. Texts are decoded from Shift-JIS up to their first NUL.
struct Lg8Qso
{
    std::string call;
    std::string sent;            ///< the sent report and number as one text ("599100110")
    std::string rcvd;            ///< the received report and number as one text
    std::uint8_t mode = 0;       ///< index into CTESTWIN's mode table
    std::uint8_t band = 0;       ///< index into CTESTWIN's band table
    std::int64_t utcSeconds = 0; ///< the time of the contact, seconds since 1970 in UTC
    std::string op;
    std::string remarks;
};

/// A CTESTWIN log (`.lg8`): the serialized list of its contacts, one 168-byte record each,
/// after the list's count and the class name "CQsoData"; every record after the first is
/// preceded by the class tag 01 80, and the program's settings follow the last. The count of
/// contacts is taken from the records themselves: the 16-bit count ahead of them only tells
/// it modulo 65,536.
class Lg8File
{
public:
    /// Reads `path`, sharing the kept input's bytes. Throws Failure 53 when it cannot be read;
    /// see `fromBytes`.
    static Lg8File read(const std::filesystem::path& path);
    /// Reads a log from its bytes. Throws Failure 13 when the bytes do not begin as a CTESTWIN
    /// log does, and Failure 62 when a record is cut off by the end of the file.
    static Lg8File fromBytes(std::string_view bytes);

    /// The number of contacts.
    std::size_t size() const { return m_starts.size(); }
    /// Contact `i`, counted from 0, decoded from its record.
    Lg8Qso qso(std::size_t i) const;

private:
    static Lg8File of(std::shared_ptr<const text::FileBytes> bytes);

    std::shared_ptr<const text::FileBytes> m_bytes;
    std::vector<std::size_t> m_starts; ///< where each record starts in `m_bytes`
};

/// The name of a mode index ("CW", "RTTY", "SSB", … "FT4"); empty outside the table.
std::string_view lg8ModeName(std::uint8_t index);
/// The name of a band index as zLog's text writes bands ("1.9", "3.5", "7", … "10G", "24G",
/// … "136k"); empty outside the table.
std::string_view lg8BandName(std::uint8_t index);

/// Splits a CTESTWIN exchange into its report and its number: the first two characters are
/// the report in the voice modes (SSB, FM, AM, ATV, D-STAR, C4FM), the first three in every
/// other mode, when they are digits; otherwise the report is empty and the number is the text.
void splitLg8Exchange(std::string_view exchange, std::string_view mode, std::string& rst,
                      std::string& number);

/// The contact as a line of zLog's `.ALL` form, in the station's time (Japan, UTC + 9 hours),
/// as CTESTWIN shows its contacts. Throws Failure 6 for a time outside the years 1 to 9999.
std::string zlogAllLine(const Lg8Qso& qso);

/// Writes the log as zLog's `.ALL` text: its first line, then one line a contact. Replaces
/// `path` only when the text is complete. Throws Failure 75 when it cannot be written.
void writeZlogAll(const Lg8File& log, const std::filesystem::path& path);

} // namespace vornhale::readers
