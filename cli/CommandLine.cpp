#include "CommandLine.h"

namespace vornhale::cli {

void HomeOption::addTo(CLI::App* command)
{
    command->add_option("--home", m_text,
                        "Program folder (default: $VORNHALE_HOME or XDG data home)");
}

std::optional<std::filesystem::path> HomeOption::value() const
{
    if (m_text.empty()) {
        return std::nullopt;
    }
    return std::filesystem::path(m_text);
}

} // namespace vornhale::cli
