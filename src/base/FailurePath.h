#pragma once

#include "base/Dialogs.h"
#include "failure/Failure.h"
#include "base/Trace.h"

namespace vornhale::base {

/// The one common ending of a failure: "エラー発生 ：　" with the number and
/// "エラー内容 ：　" with the description go to the trace, the operator is shown the error
/// dialog and the closing thanks. The caller then ends the program at once, without the
/// orderly end.
void error_exit(const failure::Failure& failure, Trace& trace, Dialogs& dialogs);

/// The text of the error dialog for a failure, as shown to the operator.
std::string errorDialogText(const failure::Failure& failure, const Trace& trace);

} // namespace vornhale::base
