#include "settings/ModeTableModel.h"

namespace vornhale::settings {

ModeTableModel::ModeTableModel(SettingsFiles& files) : m_files(files) {}

std::string ModeTableModel::sourceKey(int n)
{
    return "mode_" + std::to_string(n) + "_0_txt";
}
std::string ModeTableModel::targetKey(int n)
{
    return "mode_" + std::to_string(n) + "_1_txt";
}
std::string ModeTableModel::tickKey(int n)
{
    return "mode_" + std::to_string(n) + "_chk";
}

ModeTableModel::Row* ModeTableModel::rowAt(int n)
{
    return n >= 1 && n <= kRows ? &m_rows[static_cast<std::size_t>(n - 1)] : nullptr;
}

const ModeTableModel::Row& ModeTableModel::row(int n) const
{
    static const Row none;
    return n >= 1 && n <= kRows ? m_rows[static_cast<std::size_t>(n - 1)] : none;
}

void ModeTableModel::showTick(Row& r, bool on)
{
    r.on = on;
    r.colour = on ? base::Colour::Blue : base::Colour::Black;
}

void ModeTableModel::Form_Load()
{
    // The inner read, not an entry point: whatever file and sections are current.
    m_files.readOptionKeys();
    const Options& options = m_files.options();
    for (int n = 1; n <= kRows; ++n) {
        Row& r = *rowAt(n);
        showTick(r, options.value(tickKey(n)) == "1");
        r.source = options.value(sourceKey(n));
        r.target = options.value(targetKey(n));
    }
}

void ModeTableModel::setSource(int n, std::string_view text)
{
    if (Row* r = rowAt(n)) {
        r->source = std::string(text);
        m_files.options().set(sourceKey(n), r->source);
    }
}

void ModeTableModel::setTarget(int n, std::string_view text)
{
    if (Row* r = rowAt(n)) {
        r->target = std::string(text);
        m_files.options().set(targetKey(n), r->target);
    }
}

void ModeTableModel::setTick(int n, bool on)
{
    if (Row* r = rowAt(n)) {
        showTick(*r, on);
        m_files.options().set(tickKey(n), on ? "1" : "0");
    }
}

void ModeTableModel::Command2_Click()
{
    Options& options = m_files.options();
    for (int n = 1; n <= kRows; ++n) {
        const Row& r = row(n);
        options.set(sourceKey(n), r.source);
        options.set(targetKey(n), r.target);
        options.set(tickKey(n), r.on ? "1" : "0");
    }
    m_files.writeOptionKeys();
    m_open = false;
}

void ModeTableModel::Command1_Click()
{
    m_open = false;
}

} // namespace vornhale::settings
