#pragma once

#include "history/HamlogReader.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace vornhale::history {

/// The HAMLOG database (`.hdb`) read natively: a dBASE-III-style table.
///
/// Layout: a 32-byte header (type 0x03 or 0x1A; last update; record count, uint32 LE;
/// header length and record length, uint16 LE), then 32-byte field descriptors (name in the
/// first 11 bytes, width in byte 16) up to a 0x0D byte or the end of the header. Each record
/// is a flag byte and the fields, in the order and with the widths of the descriptors, so
/// widths that a user widened are read as they are. Fields are found by name: CALLS, IGN,
/// DATE, TIME, CODE, GL, QSL, FLAG, HIS, MY, FREQ, MODE, NAME, QTH, RMK1, RMK2; CALLS, DATE,
/// TIME, QSL, FREQ and MODE must be there, a missing other one reads as empty.
///
/// The call is rebuilt from CALLS (the base call), the head of IGN (what of a long call did
/// not fit in CALLS) and the tail of IGN (the portable or prefix part); when FLAG has both
/// the foreign-station bit (0x08) and the reversed-order bit (0x02), the part before the
/// first "/" of the tail goes in front ("KH6/JE3HHT/P"), otherwise the tail goes behind
/// ("JE3HHT/KH6"). DATE is binary [century, year, month, day] and becomes "yy/mm/dd"; TIME is
/// [hour, minute with 0x80 for UTC] and becomes "hh:mm" with "U" or "J" behind. Text fields
/// are Shift-JIS, cut at the first NUL, blanks at their end removed; QSL keeps its blanks.
/// Records marked deleted are served like the others.
///
/// An open fails (nothing is given back) for a missing or unreadable file, another type byte,
/// a header or record length that does not hold its descriptors, or a missing needed field.
/// A record count that promises more than the file holds is seen when such a record is read:
/// the read throws Failure 62. No byte beyond the file is read.
class HamlogHdbReader : public HamlogReader
{
public:
    HamlogHdbReader() = default;
    ~HamlogHdbReader() override;
    HamlogHdbReader(const HamlogHdbReader&) = delete;
    HamlogHdbReader& operator=(const HamlogHdbReader&) = delete;

    std::optional<long> open(const std::filesystem::path& path) override;
    const HamlogFields& read(long number) override;
    void close() override;

    /// A field of the table as its header describes it.
    struct Field
    {
        std::string name;
        std::size_t offset = 0; ///< from the start of the record, the flag byte being 0
        std::size_t width = 0;
    };
    const std::vector<Field>& layout() const { return m_layout; }

    /// The call of a record from its CALLS, IGN and FLAG bytes (Shift-JIS in, bytes out).
    static std::string joinCall(std::string_view calls, std::string_view ign, std::uint16_t flag);

private:
    const Field* find(std::string_view name) const;
    std::string_view fieldBytes(const unsigned char* record, const Field* field) const;
    const unsigned char* recordBytes(long number);

    std::FILE* m_file = nullptr;
    std::uint64_t m_fileSize = 0;
    long m_count = 0;
    std::size_t m_headerLength = 0;
    std::size_t m_recordLength = 0;
    std::vector<Field> m_layout;
    // Where each of the sixteen named fields stands in m_layout, or null.
    const Field* m_calls = nullptr;
    const Field* m_ign = nullptr;
    const Field* m_date = nullptr;
    const Field* m_time = nullptr;
    const Field* m_flag = nullptr;
    // The text fields by field number less one (null for call, date and time).
    const Field* m_text[14] = {};
    // A window of whole records read at once.
    std::vector<unsigned char> m_buffer;
    long m_bufferFirst = 0;
    long m_bufferCount = 0;
    HamlogFields m_fields;
};

} // namespace vornhale::history
