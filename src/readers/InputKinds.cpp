#include "readers/InputKinds.h"

#include "failure/Failure.h"
#include "readers/AdifReader.h"
#include "readers/CabrilloReader.h"
#include "readers/CtestwinReader.h"
#include "readers/N1mmReader.h"
#include "readers/RtclBinaryReader.h"
#include "readers/RtclTextReader.h"
#include "readers/ZloReader.h"
#include "readers/ZloxReader.h"
#include "readers/ZlogTextReader.h"
#include "text/Chars.h"
#include "text/LineFile.h"

#include <array>
#include <stdexcept>

namespace vornhale::readers {
namespace {

template <class Reader>
std::unique_ptr<LogReader> make()
{
    return std::make_unique<Reader>();
}

// The open menus of the window, in their order. A kind whose reader is not built has no row.
const std::array kRows{
    InputKindRow{InputKind::Zlo, "zlo", "zLog .ZLO", ".ZLO", true, &make<ZloReader>},
    InputKindRow{InputKind::Zlox, "zlox", "zLog .ZLOX", ".ZLOX", true, &make<ZloxReader>},
    InputKindRow{InputKind::All, "all", "zLog .ALL", ".ALL", true, &make<ZlogTextReader>},
    InputKindRow{InputKind::Txt, "txt", "zLog .TXT", ".TXT", true, &make<ZlogTextReader>},
    // RTCL logs of every generation are named .LOG; only the menu tells them apart.
    InputKindRow{InputKind::LogOld, "log_old", "RTCL .log (ver 3.00 より前)", ".LOG", false,
                 &RtclTextReader::makeOld},
    InputKindRow{InputKind::LogNew, "log_new", "RTCL .log (ver 3.00 以降)", ".LOG", false,
                 &RtclTextReader::makeNew},
    InputKindRow{InputKind::LogV4, "log_v4", "RTCL .log (ver 4.00 以降)", ".LOG", false,
                 &RtclBinaryReader::makeV4},
    InputKindRow{InputKind::LogV430, "log_v430", "RTCL .log (ver 4.30 以降)", ".LOG", false,
                 &RtclBinaryReader::makeV430},
    InputKindRow{InputKind::Cbr, "cbr", "Cabrillo", ".CBR;.LOG;.CQWW", false,
                 &make<CabrilloReader>},
    InputKindRow{InputKind::Adi, "adi", "ADIF", ".ADI;.ADIF;.ADIS", false, &make<AdifReader>},
    InputKindRow{InputKind::Mdb, "mdb", "N1MM Logger .mdb", ".MDB", true, &make<N1mmReader>},
    InputKindRow{InputKind::Lg8, "lg8", "CTESTWIN .lg8", ".LG8", true, &make<CtestwinReader>},
};

bool listsExtension(const InputKindRow& row, const std::string& ext)
{
    if (ext.empty()) {
        return false;
    }
    for (const std::string& e : text::split(row.extensions, ";")) {
        if (e == ext) {
            return true;
        }
    }
    return false;
}

std::string upperExtension(const std::filesystem::path& path)
{
    return text::upper(path.extension().string());
}

} // namespace

std::string_view legacyText(InputKind kind)
{
    switch (kind) {
    case InputKind::None:
        return "";
    case InputKind::Zlo:
    case InputKind::Zlox:
        return "zlo";
    case InputKind::All:
        return "all";
    case InputKind::Txt:
        return "txt";
    case InputKind::LogOld:
    case InputKind::LogNew:
        return "log";
    case InputKind::LogV4:
        return "log_v4";
    case InputKind::LogV430:
        return "log_v430";
    case InputKind::Cbr:
        return "cbr";
    case InputKind::Adi:
        return "adi";
    case InputKind::Mdb:
        return "mdb";
    case InputKind::Lg8:
        return "lg8";
    }
    return "";
}

long LogReader::countForLabel(const std::filesystem::path& path) const
{
    return text::Count_lines(path);
}

std::span<const InputKindRow> inputKinds()
{
    return kRows;
}

const InputKindRow& rowOf(InputKind kind)
{
    for (const InputKindRow& row : kRows) {
        if (row.kind == kind) {
            return row;
        }
    }
    throw std::out_of_range("no reader for this input kind");
}

const InputKindRow* rowOfTypeWord(std::string_view word)
{
    const std::string lower = text::lower(word);
    for (const InputKindRow& row : kRows) {
        if (row.typeWord == lower) {
            return &row;
        }
    }
    return nullptr;
}

const InputKindRow* rowOfFileName(const std::filesystem::path& path)
{
    const std::string ext = upperExtension(path);
    for (const InputKindRow& row : kRows) {
        if (row.byExtension && listsExtension(row, ext)) {
            return &row;
        }
    }
    return nullptr;
}

std::vector<const InputKindRow*> rowsListingExtension(const std::filesystem::path& path)
{
    const std::string ext = upperExtension(path);
    std::vector<const InputKindRow*> rows;
    for (const InputKindRow& row : kRows) {
        if (listsExtension(row, ext)) {
            rows.push_back(&row);
        }
    }
    return rows;
}

std::string typeWords()
{
    std::string words;
    for (const InputKindRow& row : kRows) {
        if (!words.empty()) {
            words += ", ";
        }
        words += row.typeWord;
    }
    return words;
}

std::string typeHint(const std::filesystem::path& path)
{
    std::string hint = "--type は次のどれかです: " + typeWords();
    const std::vector<const InputKindRow*> rows = rowsListingExtension(path);
    if (!rows.empty()) {
        hint += "\n" + path.extension().string() + " のファイルは次の --type で開けます: ";
        for (std::size_t i = 0; i < rows.size(); ++i) {
            hint += (i == 0 ? "" : ", ") + std::string(rows[i]->typeWord) + " (" +
                    std::string(rows[i]->name) + ")";
        }
    }
    return hint;
}

std::unique_ptr<LogReader> makeReader(InputKind kind)
{
    for (const InputKindRow& row : kRows) {
        if (row.kind == kind) {
            return row.make();
        }
    }
    throw failure::Failure(failure::InvalidCall,
                           "この形式の入力はまだ変換できません: " + std::string(legacyText(kind)));
}

} // namespace vornhale::readers
