#pragma once

#include "base/Dialogs.h"
#include "base/RunObserver.h"

#include <string>
#include <vector>

namespace vornhale::test {

/// Dialogs that remember what they were asked to show.
class RecordingDialogs : public base::Dialogs
{
public:
    struct Shown
    {
        std::string title, text;
        Icon icon;
    };
    void message(std::string_view title, std::string_view text, Icon icon) override
    {
        shown.push_back({std::string(title), std::string(text), icon});
    }
    std::vector<Shown> shown;
};

/// An observer that remembers the status texts and the counters.
class RecordingObserver : public base::RunObserver
{
public:
    void status(std::string_view text, base::Colour colour) override
    {
        statuses.emplace_back(std::string(text), colour);
    }
    void counter(int row, long value) override
    {
        if (row >= 0 && row < 7) {
            counters[static_cast<std::size_t>(row)] = value;
        }
    }
    void progress(long value) override { progressValues.push_back(value); }
    std::vector<std::pair<std::string, base::Colour>> statuses;
    long counters[7] = {};
    std::vector<long> progressValues;
};

} // namespace vornhale::test
