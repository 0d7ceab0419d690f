#include "base/FailurePath.h"

namespace vornhale::base {

std::string errorDialogText(const failure::Failure& failure, const Trace& trace)
{
    return "エラー内容 ：　" + std::to_string(failure.number()) + "  " + failure.description() +
           "\n\n終了します。不具合レポートの時にはお手数でも\n" +
           trace.path().filename().string() + " をお送り下さい。";
}

void error_exit(const failure::Failure& failure, Trace& trace, Dialogs& dialogs)
{
    const std::string where = failure.handler().empty() ? "エラー発生 ：　"
                                                        : "エラー発生  " + failure.handler() + " ：　";
    trace.line(where + std::to_string(failure.number()));
    trace.line("エラー内容 ：　" + failure.description());
    dialogs.message("　　エラー発生の為、　終了します！", errorDialogText(failure, trace),
                    Dialogs::Icon::Stop);
    // thanks_exit
    dialogs.message("　　　　　　お手数をお掛けしています。",
                    "エラーが多くてご迷惑をお掛けしています。\n"
                    "どうにか動いている時には使用した感想等もお送りいただけると\n"
                    "今後の励みになるんですが．．．．．",
                    Dialogs::Icon::Information);
}

} // namespace vornhale::base
