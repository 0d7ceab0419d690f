#include "session/InputDisplay.h"

#include "readers/ZloReader.h"
#include "text/LineFile.h"

#include <filesystem>
#include <system_error>

namespace vornhale::session {
namespace {

namespace fs = std::filesystem;

bool hasSeparator(std::string_view path)
{
    return path.find('/') != std::string_view::npos || path.find('\\') != std::string_view::npos;
}

std::string fileName(const std::string& path)
{
    return fs::path(path).filename().string();
}

bool isFile(const std::string& path)
{
    std::error_code ec;
    return !path.empty() && fs::is_regular_file(path, ec);
}

} // namespace

InputDisplay inputDisplay(const readers::InputState& input, bool afterRun)
{
    InputDisplay d;
    const bool opened = input.kind != readers::InputKind::None && hasSeparator(input.in_name);
    d.lblIn_name = input.lblIn_name.empty() ? input.in_name : input.lblIn_name;
    d.lblIn_nameColour = opened ? base::Colour::BrightBlue : base::Colour::Red;
    if (opened) {
        d.lblIn_nameTip = input.f_type == "lg8" && !input.ctestwin.ctestwin_all_name.empty()
                              ? input.ctestwin.ctestwin_all_name
                              : input.in_name;
    }
    d.Label37 = input.Label37;
    d.Label39 = input.Label39;
    d.yearBox = input.f_type.empty() || input.f_type == "txt";
    if (!opened) {
        d.Label33 = kNotSearched;
        return d;
    }

    const readers::OutputNames& n = input.names;
    d.control18 = fileName(n.out_name_con_n);
    d.control20 = fileName(n.out_name_ham_n);
    d.control19 = n.out_name_con_n;
    d.control21 = n.out_name_ham_n;
    d.Frame04 = d.control18 + " の Ｓｏｒｔ 順の指定";
    d.mnuDisp_dup = n.dup_name;

    d.makeZ2a = input.f_type == "zlo";
    d.showZ2a = d.makeZ2a && isFile(readers::z2aName(input.in_name));

    // The result list of the web search counts when it is there with a content; after a run
    // only when it belongs to this input.
    bool searched = false;
    std::error_code ec;
    if (isFile(n.Get_Mng_result_name) && fs::file_size(n.Get_Mng_result_name, ec) > 0) {
        searched = true;
        if (afterRun) {
            const auto lines = text::readLines(n.Get_Mng_result_name);
            searched = !lines.empty() && lines.front() == input.in_name;
        }
    }
    d.Label33 = searched ? kSearched : kNotSearched;
    d.Label33Colour = searched ? base::Colour::Black : base::Colour::Red;
    d.showMngResult = searched;
    return d;
}

} // namespace vornhale::session
