#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::settings {

/// The options of the program: named text values, as the settings files hold them.
/// Names compare without regard to case. A tick is "1" when on; an option group holds the
/// index of its member that is on, an empty value counting as member 0. Text boxes that show
/// a stored key (`txtYYYY` shows `YYYY`) are the same value under either name.
///
/// Every change of a value goes through `set`, which tells the subscribers. A run works on a
/// copy taken at its start (`forRun`): the window's later changes do not reach it, and the
/// changes the run itself makes (an open's REF tick, the history dates) reach the copy and,
/// through the copy's forward, the store it was taken from.
class Options
{
public:
    /// Told of each change: the stored name and the new value.
    using Listener = std::function<void(std::string_view name, const std::string& value)>;

    Options() = default;
    /// Copies the values only: subscribers and the forward stay with the original.
    Options(const Options& other);
    Options& operator=(const Options& other);

    /// The values of a first start: the defaults of the settings files with no zLog or HAMLOG
    /// folder found, and the empty band tick turned on as the window's load does. The load's
    /// other rules are not applied (`Option7` stays as the defaults set it).
    static Options defaults();

    /// The value of `name`; empty when it was never set.
    const std::string& value(std::string_view name) const;
    /// Stores a value; when it differs from the one held, tells every subscriber and passes
    /// the change on to the forward.
    void set(std::string_view name, std::string value);
    /// Replaces a value in this copy only, telling nobody: a value given for one run.
    void replaceForRun(std::string_view name, std::string value);

    /// Registers `listener`; returns the id that `unsubscribe` takes.
    int subscribe(Listener listener);
    void unsubscribe(int id);

    /// A copy for one run whose own changes are passed to `forward` as well.
    Options forRun(Listener forward) const;

    /// Whether the tick `name` is on ("1").
    bool tick(std::string_view name) const;
    /// The member index of the group `name` (an empty or unreadable value is member 0).
    int member(std::string_view name) const;
    /// Whether member `index` of the group `name` is on.
    bool isOn(std::string_view name, int index) const { return member(name) == index; }

    /// Every value by its stored name, in name order.
    const auto& all() const { return m_values; }

private:
    struct NoCase
    {
        using is_transparent = void;
        bool operator()(std::string_view a, std::string_view b) const;
    };
    static std::string_view canonical(std::string_view name);

    std::map<std::string, std::string, NoCase> m_values;
    std::vector<std::pair<int, Listener>> m_listeners;
    int m_nextListener = 1;
    Listener m_forward;
};

} // namespace vornhale::settings
