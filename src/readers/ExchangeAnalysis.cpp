#include "readers/ExchangeAnalysis.h"

#include "failure/Failure.h"
#include "readers/ZloRecord.h"
#include "readers/ContestTags.h"
#include "settings/Options.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"
#include "text/SjisCodec.h"
#include "text/SjisText.h"
#include "text/Utf8.h"

#include <algorithm>
#include <limits>

namespace vornhale::readers {
namespace {

constexpr std::size_t kNumeric = 10, kNotNumeric = 11, kFirstNotNumeric = 12, kLong = 13,
                      kTwoDigits = 14, kDoubleZero = 15, kPortable = 16;

struct MissingItem
{
    const char* item;
    const char* text;
};

struct ContestRow
{
    const char* cont_name;
    const char* lblCon_No;
    const char* highlight;              ///< null: the row sets no flag and marks nothing
    std::array<MissingItem, 3> missing; ///< in order; an entry without item ends the list
};

constexpr MissingItem kIotaNr{"IOTA", " IOTA 番号 , "};
constexpr MissingItem kZoneNr{"Zone", " zone 番号 , "};
constexpr MissingItem kZone{"Zone", " zone , "};
constexpr MissingItem kState{"州名", " 州名 , "};
constexpr MissingItem kNone{nullptr, nullptr};

const ContestRow kContests[] = {
    {"IOTA Contest", "RST + 001 + IOTA", "IOTA", {kZoneNr, kState, kNone}},
    {"IARU HF World Championship", "RST + ITU zone", "Zone", {kIotaNr, kState, kNone}},
    {"JIDX Contest (JA)", "RST + CQ zone", "Zone", {kIotaNr, kState, kNone}},
    {"CQWW DX Contest", "RST + CQ zone", "Zone", {kIotaNr, kState, kNone}},
    {"ARRL 10m Contest", "RST + State/Province", "州名", {kIotaNr, kZone, kNone}},
    {"ARRL International DX Contest (DX)", "RST + State/Province", "州名", {kIotaNr, kZone, kNone}},
    {"CQ WPX Contest", "RST + 001", nullptr, {kIotaNr, kZone, kState}},
    {"WAEDC Contest", "RST + 001", nullptr, {kIotaNr, kZone, kState}},
    {"All Asian DX Contest (Asia)", "RST + 年齢", nullptr, {kIotaNr, kZone, kState}},
};

// The flag of each row, by its highlighted item.
bool ExchangeAnalysis::*flagOf(const char* highlight)
{
    if (highlight == nullptr) {
        return nullptr;
    }
    const std::string_view h = highlight;
    if (h == "IOTA") {
        return &ExchangeAnalysis::rcvd_has_iota;
    }
    if (h == "Zone") {
        return &ExchangeAnalysis::rcvd_has_zone;
    }
    return &ExchangeAnalysis::rcvd_has_state;
}


} // namespace

RemarkCells RemarkCells::fromOptions(const settings::Options& options)
{
    RemarkCells r;
    r.Rmks1_cfg = options.value("Rmks1_cfg");
    r.Rmks2_cfg = options.value("Rmks2_cfg");
    const std::string* keys[] = {&r.Rmks1_cfg, &r.Rmks2_cfg};
    for (std::size_t row = 0; row < 2; ++row) {
        const auto entries = text::split(*keys[row], ",");
        for (std::size_t i = 0; i < entries.size() && i < kCells; ++i) {
            r.cells[row][i] = std::string(text::trim(entries[i]));
        }
    }
    return r;
}

bool RemarkCells::inKeys(std::string_view item) const
{
    return text::contains(Rmks1_cfg, item) || text::contains(Rmks2_cfg, item);
}

bool isNumericText(std::string_view s)
{
    // A few plain digits, the usual exchange, are a number without converting them.
    if (!s.empty() && s.size() <= 15 &&
        std::all_of(s.begin(), s.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        return true;
    }
    return text::toNumber(s).has_value();
}

void ExchangeAnalysis::change_color_9(const RemarkCells& layout)
{
    for (std::size_t row = 0; row < 2; ++row) {
        for (std::size_t i = 0; i < RemarkCells::kCells; ++i) {
            if (layout.cells[row][i] == highlight_item) {
                cellHighlighted[row][i] = true;
            }
        }
    }
}

bool ExchangeAnalysis::hasMissingItems() const
{
    return !text::trim(missing_items).empty();
}

void ExchangeAnalysis::showMissing()
{
    if (hasMissingItems()) {
        lblMsg1 = {std::string(kMissingWarning), base::Colour::Red};
        lblMsg2 = {missing_items, base::Colour::Red};
    }
}

void ExchangeAnalysis::Check_Use_Item(std::string_view cont_name, const RemarkCells& layout)
{
    rcvd_has_iota = rcvd_has_zone = rcvd_has_state = false;
    change_color_0();
    missing_items.clear();
    lblMsg1 = {};
    lblMsg2 = {};

    for (const ContestRow& row : kContests) {
        if (cont_name != row.cont_name) {
            continue;
        }
        for (const MissingItem& m : row.missing) {
            if (m.item != nullptr && layout.inKeys(m.item)) {
                missing_items += m.text;
            }
        }
        lblCon_No = row.lblCon_No;
        if (bool ExchangeAnalysis::*flag = flagOf(row.highlight)) {
            this->*flag = true;
            highlight_item = row.highlight;
            change_color_9(layout);
        }
        break;
    }
    showMissing();
}

void ExchangeAnalysis::bump(std::size_t index)
{
    if (index >= kCounters) {
        throw failure::Failure(failure::SubscriptOutOfRange,
                           "インデックスが有効範囲にありません。");
    }
    ++counters[index];
}

void ExchangeAnalysis::countCallParts(std::string_view call, bool zlo, std::size_t lengthByte)
{
    const std::size_t p = text::instr(call, "/");
    if (p == 0) {
        const std::size_t length = zlo ? lengthByte : text::charCount(call);
        if (length > 6) {
            ++long_call_count;
        }
        return;
    }
    const std::string before = text::left(call, p - 1);
    const std::string after = text::mid(call, p + 1);
    if (before < after) {
        if (zlo) {
            ++portable_count;
        } else {
            bump(kPortable);
        }
    }
    if (text::charCount(before) >= 7) {
        ++long_call_count;
    }
    if (text::charCount(after) >= 7) {
        ++long_call_count;
    }
    if (text::instrRev(call, "/") != p) {
        ++long_call_count;
    }
}

void ExchangeAnalysis::tail(const RemarkCells& layout, bool zlo)
{
    dx_item_count = 0;
    calls_item_count = 0;
    for (const auto& row : layout.cells) {
        for (const std::string& cell : row) {
            if (cell == "$DX") {
                ++dx_item_count;
            }
            if (text::trim(cell) == "Calls") {
                ++calls_item_count;
            }
        }
    }
    // For a text log the test is whether "$DX", the item at place 1 of the palette, is used
    // at all, which is the same as no cell holding it.
    bool warn = false;
    if (!zlo && dx_item_count == 0) {
        warn = true;
    }
    if (zlo && portable_count >= 1 && dx_item_count == 0) {
        warn = true;
    }
    if (long_call_count >= 1 && calls_item_count == 0) {
        warn = true;
    }
    if (portable_count >= 1 && dx_item_count == 0 && long_call_count > dx_item_count &&
        calls_item_count == 0) {
        warn = true;
    }
    if (warn) {
        dxLabelsRed = true;
    }
    if (zlo) {
        return;
    }

    missing_items.clear();
    lblMsg1 = {};
    lblMsg2 = {};
    const struct
    {
        bool ExchangeAnalysis::*flag;
        const char* item;
        const char* text;
    } checks[] = {{&ExchangeAnalysis::rcvd_has_zone, "Zone", " zone 番号 , "},
                  {&ExchangeAnalysis::rcvd_has_state, "州名", " 州名 , "},
                  {&ExchangeAnalysis::rcvd_has_iota, "IOTA", " IOTA 番号 , "}};
    for (const auto& c : checks) {
        if (!(this->*c.flag) && layout.inKeys(c.item)) {
            missing_items += c.text;
            highlight_item = c.item;
            change_color_9(layout);
        }
    }
    showMissing();
}

void ExchangeAnalysis::check_rcvd_zlo(const ZloFile& file, const RemarkCells& layout)
{
    dxLabelsRed = false;
    portable_count = 0;
    long_call_count = 0;
    const long count = file.count();
    for (long n = 2; n <= count; ++n) {
        std::uint8_t length = 0;
        const std::string call = file.callAt(n, length);
        countCallParts(call, true, length);
    }
    tail(layout, true);
}

void ExchangeAnalysis::startPass()
{
    dxLabelsRed = false;
    lblCon_No.clear();
    rcvd_has_iota = rcvd_has_zone = rcvd_has_state = false;
    qso_lines = 0;
    long_call_count = 0;
    portable_count = 0;
    counters = {};
}

void ExchangeAnalysis::countExchange(std::string_view exchange)
{
    const std::size_t length = text::isAsciiText(exchange) ? exchange.size() : text::charCount(exchange);
    bump(length);
    const bool numeric = isNumericText(exchange);
    if (numeric) {
        bump(kNumeric);
        if (exchange == "00") {
            bump(kDoubleZero);
        }
    } else {
        bump(kNotNumeric);
    }
    if (!isNumericText(text::left(exchange, 1))) {
        bump(kFirstNotNumeric);
    }
    if (length > 7) {
        bump(kLong);
    }
    if (numeric && length == 2) {
        bump(kTwoDigits);
    }
}

void ExchangeAnalysis::linePass(const std::filesystem::path& path, std::string_view in_name,
                                bool zonesKept, const RemarkCells& layout, Form form)
{
    startPass();

    text::LineReader in(path);
    in.next(); // the first line names the logger or titles the columns
    const long exchangeStart = form == Form::All ? 47 : 41;
    const long exchangeLength = form == Form::All ? 8 : 9;
    const long callStart = form == Form::All ? 18 : 13;
    // The pass reads before it tests for the end: a file with only its first line fails.
    do {
        const std::string_view raw = in.nextRaw();
        ++qso_lines;
        if (text::isAsciiText(raw)) {
            // Bytes are characters: the columns are byte slices.
            auto column = [&](long start, long length) {
                const auto at = static_cast<std::size_t>(start - 1);
                return at >= raw.size() ? std::string_view()
                                        : text::trim(raw.substr(at, static_cast<std::size_t>(length)));
            };
            countExchange(column(exchangeStart, exchangeLength));
            countCallParts(column(callStart, 11), false, 0);
            continue;
        }
        const std::string line = text::decodeSjis(raw);
        countExchange(text::trim(text::Mid_sjis(line, exchangeStart, exchangeLength)));
        countCallParts(std::string(text::trim(text::Mid_sjis(line, callStart, 11))), false, 0);
    } while (!in.atEnd());

    if (counters[kNotNumeric] > 0) {
        rcvd_has_state = true;
    }
    if (counters[kNumeric] == qso_lines && counters[3] == 0) {
        rcvd_has_zone = true;
    }
    if (text::contains(text::upper(in_name), "IARU") || zonesKept) {
        rcvd_has_zone = true;
    }
    if (counters[kLong] > 0 && counters[kNotNumeric] > 0) {
        rcvd_has_iota = true;
    }
    if (counters[kDoubleZero] == 1 && counters[kNotNumeric] == 0) {
        rcvd_has_iota = rcvd_has_zone = rcvd_has_state = false;
        lblCon_No = kAgeExchange;
    }
    tail(layout, false);
}

void ExchangeAnalysis::logPass(const std::filesystem::path& path, const RemarkCells& layout,
                               std::size_t fieldsPerRecord, std::size_t rcvdField,
                               std::size_t callField)
{
    startPass();

    // An RTCL text log has no title line; a record short of fields takes the next line's.
    text::RecordReader in(path);
    while (!in.atEnd()) {
        const std::vector<std::string> f = in.fields(fieldsPerRecord);
        ++qso_lines;
        const std::string rcvd =
            text::replaceAll(text::replaceAll(f[rcvdField], "599-", ""), "-", "");
        countExchange(text::left(rcvd, 8));
        countCallParts(std::string(text::trim(f[callField])), false, 0);
    }

    if (counters[kNotNumeric] > 0) {
        rcvd_has_state = true;
    }
    // One numeric exchange and one of three characters, whatever the length of the log.
    if (counters[kNumeric] == 1 && counters[3] == 1) {
        rcvd_has_zone = true;
    }
    if (counters[kLong] > 0 && counters[kNotNumeric] > 0) {
        rcvd_has_iota = true;
    }
    if (counters[kDoubleZero] == 1 && counters[kNotNumeric] == 0) {
        rcvd_has_iota = rcvd_has_zone = rcvd_has_state = false;
        lblCon_No = kAgeExchange;
    }
    tail(layout, false);
}

void ExchangeAnalysis::check_rcvd_log_old(const std::filesystem::path& path,
                                          const RemarkCells& layout)
{
    logPass(path, layout, 12, 5, 3);
}

void ExchangeAnalysis::check_rcvd_log_new(const std::filesystem::path& path,
                                          const RemarkCells& layout)
{
    logPass(path, layout, 13, 4, 2);
}

void ExchangeAnalysis::check_rcvd_all(const std::filesystem::path& path, std::string_view in_name,
                                      bool zonesKept, const RemarkCells& layout)
{
    linePass(path, in_name, zonesKept, layout, Form::All);
}

void ExchangeAnalysis::check_rcvd_txt(const std::filesystem::path& path, std::string_view in_name,
                                      bool zonesKept, const RemarkCells& layout)
{
    linePass(path, in_name, zonesKept, layout, Form::Txt);
}

std::optional<ContestFromName> contestFromFileName(std::string_view path)
{
    const std::string_view contest = contestOfFileName(path);
    if (contest.empty()) {
        return std::nullopt;
    }
    ContestFromName c{std::string(contest), std::nullopt};
    if (contest == "IOTA Contest") {
        c.lblMas_dat_zlo = ColouredText{"Prov , Oblast 取得は不可能です｡", base::Colour::Red};
    }
    return c;
}

} // namespace vornhale::readers
