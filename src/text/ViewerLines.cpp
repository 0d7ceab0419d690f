#include "text/ViewerLines.h"

#include "text/LineFile.h"
#include "text/SjisText.h"

#include <exception>

namespace vornhale::text {

std::string expandTabs(std::string_view line, std::size_t tabStop)
{
    if (line.find('\t') == std::string_view::npos) {
        return std::string(line);
    }
    std::string out;
    std::size_t column = 0;
    std::size_t start = 0;
    while (start <= line.size()) {
        const std::size_t tab = line.find('\t', start);
        const std::string_view part = line.substr(
            start, tab == std::string_view::npos ? std::string_view::npos : tab - start);
        out.append(part);
        column += Len_sjis(part);
        if (tab == std::string_view::npos) {
            break;
        }
        const std::size_t blanks = tabStop - column % tabStop;
        out.append(blanks, ' ');
        column += blanks;
        start = tab + 1;
    }
    return out;
}

std::vector<std::string> viewerLines(const std::filesystem::path& file)
{
    std::vector<std::string> lines;
    try {
        for (std::string& line : readLines(file)) {
            lines.push_back(expandTabs(line));
        }
    } catch (const std::exception&) {
        // What was read stays in the list.
    }
    return lines;
}

} // namespace vornhale::text
