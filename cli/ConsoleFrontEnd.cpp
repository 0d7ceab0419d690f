#include "ConsoleFrontEnd.h"

#include <cstdio>
#include <iostream>
#include <string>
#include <unistd.h>

namespace vornhale::cli {

void ConsoleDialogs::message(std::string_view title, std::string_view text, Icon)
{
    std::cerr << title << "\n" << text << "\n\n";
}

base::Dialogs::Answer ConsoleDialogs::question(std::string_view title, std::string_view text,
                                              Buttons buttons, Icon icon)
{
    // Nobody is there to answer: the first button, the one that goes on, is taken, unless
    // the command was told to cancel.
    Answer answer = base::Dialogs::question(title, text, buttons, icon);
    if (m_cancel) {
        answer = buttons == Buttons::YesNo ? Answer::No : Answer::Cancel;
    }
    const char* shown = answer == Answer::Retry    ? "再試行"
                        : answer == Answer::Yes    ? "はい"
                        : answer == Answer::No     ? "いいえ"
                        : answer == Answer::Cancel ? "キャンセル"
                                                   : "OK";
    std::cerr << title << "\n" << text << "\n→ " << shown << "\n\n";
    return answer;
}

ConsoleObserver::ConsoleObserver() : m_terminal(isatty(STDERR_FILENO) != 0) {}

ConsoleObserver::~ConsoleObserver()
{
    if (m_terminal && m_lastPercent >= 0) {
        std::fputs("\r\033[K", stderr);
    }
}

void ConsoleObserver::status(std::string_view text, base::Colour)
{
    m_status = std::string(text);
    m_lastPercent = -2;
    draw();
}

void ConsoleObserver::progressRange(long maximum)
{
    m_maximum = maximum;
    m_value = 0;
    draw();
}

void ConsoleObserver::progress(long value)
{
    m_value = value;
    draw();
}

void ConsoleObserver::draw()
{
    if (!m_terminal || m_maximum <= 0) {
        return;
    }
    const int percent = static_cast<int>(100 * std::min(m_value, m_maximum) / m_maximum);
    if (percent == m_lastPercent) {
        return;
    }
    m_lastPercent = percent;
    const int width = 30;
    const int filled = percent * width / 100;
    std::string bar(static_cast<std::size_t>(filled), '#');
    bar.append(static_cast<std::size_t>(width - filled), '.');
    std::fprintf(stderr, "\r\033[K[%s] %3d%% %s", bar.c_str(), percent, m_status.c_str());
    std::fflush(stderr);
}

} // namespace vornhale::cli
