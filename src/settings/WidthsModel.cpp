#include "settings/WidthsModel.h"

#include "base/Trace.h"
#include "settings/LayoutHistory.h"
#include "settings/SettingsFiles.h"
#include "text/Chars.h"

#include <cmath>

namespace vornhale::settings {
namespace {

constexpr std::string_view kLabels[LayoutModel::kItems] = {
    "MNG",    "$DX",   "Calls", "ｺﾝﾃｽﾄ", "memo", "mome=", "o p",
    "o p % ", "I OTA", "Zone",  "州名",  "Rcvd", "Rmks1", "Rmks2"};

} // namespace

WidthsModel::WidthsModel(LayoutModel& layout, SettingsFiles* files, base::Trace* trace)
    : m_layout(layout), m_files(files), m_trace(trace)
{
}

std::string_view WidthsModel::label(std::size_t item)
{
    return kLabels[item];
}

void WidthsModel::Form_Load(std::string contestName)
{
    m_open = true;
    m_contestName = std::move(contestName);
    if (m_files != nullptr) {
        m_files->ini_read_old();
    }
    m_layout.Disp_Rmks_cfg_bas();
    Set_len();
    Disp_len();
}

void WidthsModel::Set_len()
{
    for (std::size_t item = 0; item < LayoutModel::kItems; ++item) {
        const double value = text::val(m_layout.slot(item));
        const double position = kMaxWidth - std::nearbyint(value);
        if (position < 0 || position > kMaxWidth) {
            if (m_trace != nullptr) {
                m_trace->line("エラー発生 ：　380");
                m_trace->line("エラー内容 ：　プロパティの値が不正です。 " +
                              std::string(kLabels[item]) + " = " + m_layout.slot(item));
            }
            continue;
        }
        m_index[item] = static_cast<std::size_t>(position);
    }
}

void WidthsModel::Disp_len()
{
    for (std::size_t item = 0; item < LayoutModel::kItems; ++item) {
        m_lblLen[item] = m_index[item] ? std::to_string(valueAt(*m_index[item])) : std::string();
    }
}

bool WidthsModel::clickList(std::size_t item, std::size_t position)
{
    if (item >= LayoutModel::kItems || position >= kPositions) {
        return false;
    }
    m_index[item] = position;
    m_layout.setSlot(item, std::to_string(valueAt(position)));
    Disp_len();
    return true;
}

void WidthsModel::cmdAll_Zero()
{
    for (std::size_t item = 0; item < LayoutModel::kItems; ++item) {
        m_layout.setSlot(item, "0");
    }
    Set_len();
    Disp_len();
    cmdSet_Len_Main();
}

void WidthsModel::cmdSet_Len_Main()
{
    Options& options = m_layout.options();
    options.set("Rmks1_cfg_len", m_layout.widthsFromCells(1, LayoutModel::kCells));
    options.set("Rmks2_cfg_len", m_layout.widthsFromCells(2, LayoutModel::kCells));
    // Cell by cell, the width goes back with its item; "memo=" has no slot to take it.
    for (int row = 1; row <= 2; ++row) {
        const auto widths =
            text::split(options.value(row == 1 ? "Rmks1_cfg_len" : "Rmks2_cfg_len"), ",");
        for (std::size_t c = 0; c < LayoutModel::kCells; ++c) {
            const int s = LayoutModel::slotOfCaption(m_layout.cell(row, c));
            if (s >= 0) {
                m_layout.setSlot(static_cast<std::size_t>(s), widths[c]);
            }
        }
    }
    if (m_files != nullptr) {
        m_files->ini_write_old();
    }
    m_open = false;
}

std::string WidthsModel::cmdSave2(const std::filesystem::path& folder)
{
    const std::string name = text::trim(m_txtName).empty() ? std::string() : m_txtName;
    Options& options = m_layout.options();
    options.set("Rmks1_cfg_len", m_layout.widthsFromCells(1, LayoutModel::kCells));
    std::string widths2 = m_layout.widthsFromCells(2, LayoutModel::kCells);
    widths2.pop_back();
    options.set("Rmks2_cfg_len", std::move(widths2));

    const std::string line = name + "," + options.value("Rmks1_cfg") + options.value("Rmks2_cfg") +
                             options.value("Rmks1_cfg_len") + options.value("Rmks2_cfg_len");
    LayoutHistory::addLayout(folder / LayoutHistory::kFileName, line);
    return line;
}

} // namespace vornhale::settings
