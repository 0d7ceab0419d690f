#include "settings/RirekiSelModel.h"

#include "settings/LayoutModel.h"
#include "text/Chars.h"
#include "text/LineFile.h"

#include <system_error>

namespace vornhale::settings {
namespace {

constexpr const char* kMarker = "Vornhale.001";

// Fields `first` to `first + 11` of a row, each followed by a comma: one layout key.
std::string keyOf(const LayoutHistory::Row& row, std::size_t first)
{
    std::string key;
    for (std::size_t i = 0; i < LayoutModel::kCells; ++i) {
        key += row[first + i] + ",";
    }
    return key;
}

} // namespace

RirekiSelModel::RirekiSelModel(std::filesystem::path folder, LayoutModel& layout, base::Trace* trace)
    : m_folder(std::move(folder)), m_layout(layout), m_trace(trace)
{
}

void RirekiSelModel::Form_Load()
{
    text::writeFileSjis(m_folder / kMarker, "");
    m_open = true;
    auto table = LayoutHistory::read(m_folder / LayoutHistory::kFileName, m_trace);
    m_rows = std::move(table.rows);
    m_error = std::move(table.error);
    fillLists();
}

void RirekiSelModel::fillLists()
{
    m_list1.clear();
    m_list2.clear();
    m_list3.clear();
    for (const auto& row : m_rows) {
        m_list1.push_back(row[0]);
        std::string r1, r2;
        for (std::size_t i = 0; i < LayoutModel::kCells; ++i) {
            r1 += text::padRight(text::trim(row[1 + i]), kItemWidth);
            r2 += text::padRight(text::trim(row[13 + i]), kItemWidth);
        }
        m_list2.push_back(std::move(r1));
        m_list3.push_back(std::move(r2));
    }
}

void RirekiSelModel::click(std::size_t index)
{
    if (index >= m_rows.size()) {
        return;
    }
    m_selected = index;
    const auto& row = m_rows[index];
    m_labels = {keyOf(row, 1), keyOf(row, 13), keyOf(row, 25), keyOf(row, 37)};
    m_name = row[0];
}

bool RirekiSelModel::cmdOK()
{
    if (!m_selected) {
        return false;
    }
    const auto& row = m_rows[*m_selected];
    Options& options = m_layout.options();
    options.set("Rmks1_cfg", keyOf(row, 1));
    options.set("Rmks2_cfg", keyOf(row, 13));
    options.set("Rmks1_cfg_len", keyOf(row, 25));
    options.set("Rmks2_cfg_len", keyOf(row, 37));
    for (std::size_t r = 0; r < 2; ++r) {
        for (std::size_t i = 0; i < LayoutModel::kCells; ++i) {
            const int s = LayoutModel::slotOfCaption(text::trim(row[1 + 12 * r + i]));
            if (s >= 0) {
                m_layout.setSlot(static_cast<std::size_t>(s),
                                 std::string(text::trim(row[25 + 12 * r + i])));
            }
        }
    }
    m_layout.Disp_Rmks_cfg_bas();
    close();
    return true;
}

void RirekiSelModel::cmdDel()
{
    if (!m_selected || *m_selected >= m_rows.size()) {
        return;
    }
    m_rows.erase(m_rows.begin() + static_cast<std::ptrdiff_t>(*m_selected));
    m_selected.reset();
    m_labels = {};
    m_name.clear();
    LayoutHistory::save_rireki(m_folder / LayoutHistory::kFileName, m_rows);
    fillLists();
}

void RirekiSelModel::cmdCan()
{
    m_selected.reset();
    m_labels = {};
    m_name.clear();
}

void RirekiSelModel::cmdBack()
{
    close();
}

void RirekiSelModel::close()
{
    std::error_code ec;
    std::filesystem::remove(m_folder / kMarker, ec);
    m_open = false;
}

} // namespace vornhale::settings
