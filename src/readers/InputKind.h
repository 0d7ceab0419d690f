#pragma once

#include <string_view>

namespace vornhale::readers {

/// The kinds of input log, one per open menu of the window.
enum class InputKind {
    None, ///< no usable input is open
    Zlo,
    Zlox,
    All,
    Txt,
    LogOld, ///< RTCL text log before version 3.00
    LogNew, ///< RTCL text log from version 3.00
    LogV4,
    LogV430,
    Cbr,
    Adi,
    Mdb,
    Lg8,
};

/// The text the trace and the settings know a kind by ("zlo", "all", "log", "log_v4", …).
/// Both RTCL text generations are "log"; `.ZLOX` logs run as "zlo".
std::string_view legacyText(InputKind kind);

} // namespace vornhale::readers
