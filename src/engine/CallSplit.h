#pragma once

#include "engine/RunContext.h"

#include <string>
#include <string_view>

namespace vornhale::engine {

/// The parts of a logged call sign.
struct CallParts
{
    std::string base_call;  ///< the home part, trimmed
    std::string call_ext;   ///< the other "/" part, trimmed
    std::string lookupCall; ///< what the entity lookup is asked, trimmed
};

/// Splits a call: without "/", all of it is the home part. With "/", the lookup call is the
/// text before the last "/" when there are several, else the whole call; of the first two
/// "/" parts the longer (by trimmed length) is the home part, the first one on a tie.
CallParts splitCall(std::string_view call);

/// Reads `zlog_1.txt`, splits each call and finds its entity, and writes `zlog_2.txt`.
/// Throws Failure 62 when `zlog_1.txt` holds no record or ends inside one.
void bak_sep1(RunContext& ctx);

} // namespace vornhale::engine
