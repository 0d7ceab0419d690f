#pragma once

#include <string>
#include <string_view>

namespace vornhale::base {

/// The questions and messages that the core must put to the operator. The window shows them
/// as message boxes; the command line prints them; tests record them.
class Dialogs
{
public:
    enum class Icon { Stop, Exclamation, Information, Question };
    /// The buttons of a question, first button first.
    enum class Buttons { RetryCancel, YesNo, OkCancel };
    enum class Answer { Retry, Cancel, Yes, No, Ok };

    virtual ~Dialogs() = default;

    /// A message with an OK button.
    virtual void message(std::string_view title, std::string_view text, Icon icon) = 0;

    /// A question with the given buttons. A front end that cannot ask answers with the first
    /// button (retry, yes, OK), which is what this default does.
    virtual Answer question(std::string_view /*title*/, std::string_view /*text*/,
                            Buttons buttons, Icon /*icon*/)
    {
        switch (buttons) {
        case Buttons::RetryCancel:
            return Answer::Retry;
        case Buttons::YesNo:
            return Answer::Yes;
        case Buttons::OkCancel:
            break;
        }
        return Answer::Ok;
    }
};

} // namespace vornhale::base
