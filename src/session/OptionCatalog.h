#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::settings {
struct SchemaKey;
}

namespace vornhale::session {

/// What kind of control an option is.
enum class OptionKind {
    Tick,        ///< a check box, stored "1" / "0"
    GroupMember, ///< one member of an option group, the group stored as the member's index
    Text,        ///< a text box or combo box, stored as its text
    MenuTick,    ///< a menu entry with a tick, stored "1" / "0"
    Button,      ///< a command button the option rules name; holds no value
};

/// One option of the main window, as the window shows it and the settings store it.
struct OptionEntry
{
    std::string_view name; ///< control name: "Check06", "Option04", "txtYYYY", "mnuMake_a2t"
    int member;            ///< member index for a group member, else -1
    OptionKind kind;
    std::string_view caption;
    std::string_view frame; ///< caption of the frame, label or heading that holds it (may be empty)
    std::string_view toolTip; ///< may be empty
    std::string_view key;          ///< settings key; empty when the option is not stored
    std::string_view tab;          ///< caption of the tab it stands on (empty for menus)

    bool stored() const { return !key.empty(); }
    /// "Option04(2)" for a member, else the name.
    std::string controlName() const;
};

/// The static table of every option of the main window.
class OptionCatalog
{
public:
    /// Every entry, tab by tab; group members follow each other in member order.
    static std::span<const OptionEntry> all();

    /// The entry of `name` (case-blind) and `member` (-1 for a tick, text, menu or button);
    /// nullptr when there is none. A control name with its member, "Option04(2)", is accepted
    /// with `member` -1.
    static const OptionEntry* find(std::string_view name, int member = -1);

    /// The members of the group `name`, in member order (empty when it is not a group).
    static std::vector<const OptionEntry*> members(std::string_view name);

    /// The default value of an entry ("1", "0", member index, text) as the settings schema
    /// gives it for its key; `thisYear` fills a default of this year. Empty for an option the
    /// defaults leave unset.
    static std::string defaultOf(const OptionEntry& entry, std::string_view thisYear);
    /// The settings key behind an entry (a value in memory for an option without a key);
    /// nullptr for a button.
    static const settings::SchemaKey* schemaKey(const OptionEntry& entry);

    /// Splits "Option04(2)" into "Option04" and 2; a name without a member gives -1.
    static std::pair<std::string_view, int> splitMember(std::string_view controlName);
};

} // namespace vornhale::session
