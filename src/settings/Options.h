#pragma once

#include <map>
#include <string>
#include <string_view>

namespace vornhale::settings {

/// The options of the program: named text values, as the settings files hold them.
/// Names compare without regard to case. A tick is "1" when on; an option group holds the
/// index of its member that is on, an empty value counting as member 0. Text boxes that show
/// a stored key (`txtYYYY` shows `YYYY`) are the same value under either name.
class Options
{
public:
    /// The values of a first start: the defaults of the settings files with no zLog or HAMLOG
    /// folder found, and the empty band tick turned on as the window's load does. The load's
    /// other rules are not applied (`Option7` stays as the defaults set it).
    static Options defaults();

    /// The value of `name`; empty when it was never set.
    const std::string& value(std::string_view name) const;
    void set(std::string_view name, std::string value);

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
};

} // namespace vornhale::settings
