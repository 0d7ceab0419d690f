#pragma once

#include <string>
#include <string_view>

namespace vornhale::app {

/// The questions and messages that the core must put to the operator. The window shows them
/// as message boxes; the command line prints them; tests record them.
class Dialogs
{
public:
    enum class Icon { Stop, Exclamation, Information, Question };

    virtual ~Dialogs() = default;

    /// A message with an OK button.
    virtual void message(std::string_view title, std::string_view text, Icon icon) = 0;
};

} // namespace vornhale::app
