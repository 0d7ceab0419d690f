#include "settings/RmksSelModel.h"

#include "settings/Options.h"
#include "settings/RemarkHistory.h"
#include "text/LineFile.h"

#include <stdexcept>
#include <system_error>

namespace vornhale::settings {
namespace {
constexpr const char* kMarker = "Vornhale.001";
} // namespace

RmksSelModel::RmksSelModel(std::filesystem::path folder, Options& options)
    : m_folder(std::move(folder)), m_options(options)
{
}

std::size_t RmksSelModel::at(int column)
{
    if (column != 1 && column != 2) {
        throw std::out_of_range("comment column must be 1 or 2");
    }
    return static_cast<std::size_t>(column - 1);
}

void RmksSelModel::Form_Load()
{
    for (int column = 1; column <= 2; ++column) {
        m_lists[at(column)] = RemarkHistory::read(m_folder / RemarkHistory::fileName(column));
        m_selected[at(column)].reset();
    }
    m_guidance = {std::string(kGuideKeep), std::string(kGuideSelect)};
    text::writeFileSjis(m_folder / kMarker, "");
    m_open = true;
}

void RmksSelModel::setTxtRmks(int column, std::string text)
{
    m_text[at(column)] = std::move(text);
    m_highlight[at(column)] = false;
}

void RmksSelModel::clickList(int column, std::size_t index)
{
    const std::size_t c = at(column);
    if (index >= m_lists[c].size()) {
        return;
    }
    m_selected[c] = index;
    m_text[c] = m_lists[c][index];
    m_highlight[c] = true;
    m_taken[c] = true;
}

void RmksSelModel::cmd1to2()
{
    if (m_text[0].empty()) {
        return;
    }
    m_selected[1].reset();
    m_lists[1].push_back(m_text[0]);
}

void RmksSelModel::cmd2to1()
{
    if (m_text[1].empty()) {
        return;
    }
    m_selected[0].reset();
    m_lists[0].push_back(m_text[1]);
}

void RmksSelModel::cmdIns(int column)
{
    const std::size_t c = at(column);
    if (!m_selected[c] && !m_text[c].empty()) {
        m_lists[c].push_back(m_text[c]);
    }
}

void RmksSelModel::cmdDel(int column)
{
    const std::size_t c = at(column);
    if (m_selected[c] && *m_selected[c] < m_lists[c].size()) {
        m_lists[c].erase(m_lists[c].begin() + static_cast<std::ptrdiff_t>(*m_selected[c]));
    }
    m_selected[c].reset();
    m_text[c].clear();
    m_highlight[c] = false;
}

void RmksSelModel::cmdCan(int column)
{
    const std::size_t c = at(column);
    m_selected[c].reset();
    m_text[c].clear();
    m_highlight[c] = false;
}

void RmksSelModel::cmdOK()
{
    close();
    m_options.set("txtRmks1", m_text[0]);
    m_options.set("txtRmks2", m_text[1]);
    RemarkHistory::save_rmks(m_folder, m_lists[0], m_lists[1]);
}

void RmksSelModel::cmdBack()
{
    close();
    for (int column = 1; column <= 2; ++column) {
        const std::size_t c = at(column);
        m_options.set(column == 1 ? "txtRmks1" : "txtRmks2", m_taken[c] ? m_text[c] : "");
    }
}

void RmksSelModel::close()
{
    std::error_code ec;
    std::filesystem::remove(m_folder / kMarker, ec);
    m_open = false;
}

} // namespace vornhale::settings
