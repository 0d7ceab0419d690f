#pragma once

#include <string>
#include <string_view>

namespace vornhale::base {

/// Colours of the status texts and captions.
enum class Colour { Black, Green, Red, Blue, BrightBlue, DarkRed };

/// What a front end sees of a running conversion. Every call has an empty default, so an
/// observer implements only what it shows.
class RunObserver
{
public:
    virtual ~RunObserver() = default;

    /// The status line (`lblShori`): a text and its colour. An empty text clears it.
    virtual void status(std::string_view /*text*/, Colour /*colour*/) {}
    /// The progress bar runs from 0 to `maximum`.
    virtual void progressRange(long /*maximum*/) {}
    virtual void progress(long /*value*/) {}
    /// A named label of the window takes a text (`Label35`, `Text2`, …).
    virtual void label(std::string_view /*name*/, std::string_view /*text*/) {}
    /// Row `row` (0 to 6) of the result grid shows `value`.
    virtual void counter(int /*row*/, long /*value*/) {}
};

} // namespace vornhale::base
