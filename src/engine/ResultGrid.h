#pragma once

#include "engine/RunContext.h"

#include <array>

namespace vornhale::engine {

/// Captions of the seven rows of the result grid, top to bottom.
inline constexpr std::array<const char*, 7> kResultGridCaptions = {
    " 今回の処理数は", " 複数の局の数は", " 単数の局の数は", " 複 ・単の合計数",
    " No QSL 局の数",  " 転送先 Ｍ の数", " Name 取得の数"};

/// The unit shown behind every count of the grid.
inline constexpr const char* kResultGridUnit = "件";

/// The counters in the rows of the result grid.
inline std::array<long, 7> resultGridValues(const Counters& c)
{
    return {c.qso_kazu, c.fuku_kazu, c.tan_kazu, c.calls_kazu, c.no_qsl_kazu, c.m_kazu, c.name_kazu};
}

} // namespace vornhale::engine
