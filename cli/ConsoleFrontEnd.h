#pragma once

#include "base/Dialogs.h"
#include "base/RunObserver.h"

namespace vornhale::cli {

/// Messages of the core, printed to stderr.
class ConsoleDialogs : public base::Dialogs
{
public:
    void message(std::string_view title, std::string_view text, Icon icon) override;
    /// Prints the question and answers with its first button, the one that goes on, or with
    /// its second (cancel, no) after `cancelQuestions`.
    Answer question(std::string_view title, std::string_view text, Buttons buttons,
                    Icon icon) override;
    void cancelQuestions() { m_cancel = true; }

private:
    bool m_cancel = false;
};

/// Progress of a run as a bar on stderr, shown only when stderr is a terminal.
class ConsoleObserver : public base::RunObserver
{
public:
    ConsoleObserver();
    ~ConsoleObserver() override;
    void status(std::string_view text, base::Colour colour) override;
    void progressRange(long maximum) override;
    void progress(long value) override;

private:
    void draw();
    bool m_terminal = false;
    long m_maximum = 0;
    long m_value = 0;
    int m_lastPercent = -1;
    std::string m_status;
};

} // namespace vornhale::cli
