#include "session/ViewerFiles.h"

#include "readers/OutputNames.h"
#include "readers/RtclZlogMakers.h"
#include "readers/ZloReader.h"
#include "tools/QsoBankExport.h"

#include <exception>
#include <map>

namespace vornhale::session {
namespace {

using Namer = std::string (*)(const readers::InputState&, const base::ProgramFolder&);

bool hasInput(const readers::InputState& input)
{
    // A rejected open leaves its message in `in_name`; only a path names an input.
    return input.in_name.find_first_of("/\\") != std::string::npos;
}

// A name formed from the input's path, or empty where the input gives none.
template <typename F> std::string fromInput(const readers::InputState& input, F form)
{
    if (!hasInput(input)) {
        return {};
    }
    try {
        return form(input.in_name);
    } catch (const std::exception&) {
        return {};
    }
}

std::string programFile(const base::ProgramFolder& folder, std::string_view name)
{
    return (folder.strPath / std::string(name)).string();
}

const std::map<std::string_view, Namer>& namers()
{
    static const std::map<std::string_view, Namer> table = {
        {"mnuDisp_in",
         [](const readers::InputState& in, const base::ProgramFolder&) {
             return fromInput(in, [](const std::string& n) { return n; });
         }},
        {"mnuDisp_ham_n_new",
         [](const readers::InputState& in, const base::ProgramFolder&) {
             return fromInput(in, [&](const std::string&) { return in.names.out_name_ham_n; });
         }},
        {"mnuDisp_con_n_new",
         [](const readers::InputState& in, const base::ProgramFolder&) {
             return fromInput(in, [&](const std::string&) { return in.names.out_name_con_n; });
         }},
        {"mnuDisp_Get_Mng_result",
         [](const readers::InputState& in, const base::ProgramFolder&) {
             return fromInput(in, [&](const std::string&) { return in.names.Get_Mng_result_name; });
         }},
        {"mnuDisp_dup",
         [](const readers::InputState& in, const base::ProgramFolder&) {
             return fromInput(in, [&](const std::string&) { return in.names.dup_name; });
         }},
        {"mnuDisp_z2a",
         [](const readers::InputState& in, const base::ProgramFolder&) {
             return fromInput(in, [](const std::string& n) { return readers::z2aName(n); });
         }},
        {"mnuDisp_l2t",
         [](const readers::InputState& in, const base::ProgramFolder&) {
             return fromInput(
                 in, [](const std::string& n) { return readers::rtclOutputName(n, "_l2z.txt"); });
         }},
        {"mnuDisp_l2a",
         [](const readers::InputState& in, const base::ProgramFolder&) {
             return fromInput(
                 in, [](const std::string& n) { return readers::rtclOutputName(n, "_l2z.all"); });
         }},
        {"mnuDisp_log2a",
         [](const readers::InputState& in, const base::ProgramFolder&) {
             return fromInput(
                 in, [](const std::string& n) { return readers::rtclOutputName(n, "_log2a.all"); });
         }},
        {"mnuDisp_zt2a",
         [](const readers::InputState& in, const base::ProgramFolder&) {
             return fromInput(in, [](const std::string& n) {
                 return readers::replaceExtension(n, "_zt2a.all");
             });
         }},
        {"mnuDisp_za2t",
         [](const readers::InputState& in, const base::ProgramFolder&) {
             return fromInput(in, [](const std::string& n) {
                 return readers::replaceExtension(n, "_za2t.txt");
             });
         }},
        {"mnuDisp_QSOBank",
         [](const readers::InputState& in, const base::ProgramFolder&) {
             return fromInput(in, [](const std::string& n) {
                 return tools::QsoBankExport::fileName(readers::stemWithPoint(n));
             });
         }},
        {"mnuDisp_Vornhale_ini",
         [](const readers::InputState&, const base::ProgramFolder& f) {
             return programFile(f, "Vornhale.ini");
         }},
        {"mnuDisp_Vornhale_new_ini",
         [](const readers::InputState&, const base::ProgramFolder& f) {
             return programFile(f, "Vornhale_new.ini");
         }},
        {"mnuDisp_Vornhale_Rireki_cfg",
         [](const readers::InputState&, const base::ProgramFolder& f) {
             return programFile(f, "Vornhale_Rireki.cfg");
         }},
        {"mnuDisp_Vornhale_rmk1",
         [](const readers::InputState&, const base::ProgramFolder& f) {
             return programFile(f, "Vornhale.rmk1");
         }},
        {"mnuDisp_Vornhale_rmk2",
         [](const readers::InputState&, const base::ProgramFolder& f) {
             return programFile(f, "Vornhale.rmk2");
         }},
        {"mnuDisp_Readme",
         [](const readers::InputState&, const base::ProgramFolder& f) {
             return programFile(f, "README.md");
         }},
    };
    return table;
}

// The buttons that do what a menu entry does, by control name or tool-bar caption.
const std::map<std::string_view, std::string_view>& sameAs()
{
    static const std::map<std::string_view, std::string_view> table = {
        {"cmdDisp_in", "mnuDisp_in"},
        {"入力ﾌｧｲﾙ", "mnuDisp_in"},
        {"cmdDisp_ham_n_new", "mnuDisp_ham_n_new"},
        {"hamlog_n", "mnuDisp_ham_n_new"},
        {"cmdDisp_con_n_new", "mnuDisp_con_n_new"},
        {"contest_n", "mnuDisp_con_n_new"},
        {"cmdDisp_Get_Mng_result", "mnuDisp_Get_Mng_result"},
        {"＊．ｄｕｐ", "mnuDisp_dup"},
        {"z2a表示", "mnuDisp_z2a"},
    };
    return table;
}

} // namespace

std::string_view viewerForm(ViewerWindow window)
{
    switch (window) {
    case ViewerWindow::frmDisp2:
        return "frmDisp2";
    case ViewerWindow::frmDisp3:
        return "frmDisp3";
    case ViewerWindow::frmDisp4:
        return "frmDisp4";
    case ViewerWindow::frmDisp:
        break;
    }
    return "frmDisp";
}

std::string viewerTitle(ViewerWindow window, std::string_view in_name, std::string_view shown)
{
    switch (window) {
    case ViewerWindow::frmDisp2:
        return " 入力 ：　" + std::string(shown);
    case ViewerWindow::frmDisp3:
        return " 出力 TXT：　" + std::string(shown);
    case ViewerWindow::frmDisp4:
        return " 出力 ALL：　" + std::string(shown);
    case ViewerWindow::frmDisp:
        break;
    }
    return "in : " + std::string(in_name) + "        out: " + std::string(shown);
}

std::string viewedFile(std::string_view entry, const readers::InputState& input,
                       const base::ProgramFolder& folder)
{
    if (const auto alias = sameAs().find(entry); alias != sameAs().end()) {
        entry = alias->second;
    }
    const auto namer = namers().find(entry);
    return namer == namers().end() ? std::string() : namer->second(input, folder);
}

} // namespace vornhale::session
