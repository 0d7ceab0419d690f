#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::history {

/// The entities whose stations get no card (`Check09`), from the comma-separated list
/// `No_qsl_cty`.
class NoQslCountries
{
public:
    /// The entity master's name check: an empty text when the name is a known entity name,
    /// the name itself when not (as `dxcc_name_check` answers).
    using NameCheck = std::function<std::string(std::string_view)>;

    /// The most names the list takes; names beyond are not looked at.
    static constexpr std::size_t kMaxNames = 51;

    /// `no_qsl_cty_0`: splits `No_qsl_cty` at commas, trims each name and checks it. A known
    /// name takes its place in the table; an unknown one leaves its place empty and goes,
    /// with " , " behind it, into `ngText`.
    static NoQslCountries no_qsl_cty_0(std::string_view No_qsl_cty, const NameCheck& check);

    /// `no_qsl_cty_1`: whether a non-empty entry of the table stands in the trimmed entity
    /// text of a contact, without regard to case.
    bool no_qsl_cty_1(std::string_view entity) const;

    /// The table, one place per name of the list (empty for an unknown name).
    const std::vector<std::string>& names() const { return m_names; }
    /// The unknown names, each followed by " , ", for `cmdNG`.
    const std::string& ngText() const { return m_ngText; }

private:
    std::vector<std::string> m_names;
    std::vector<std::string> m_upperNames;
    std::string m_ngText;
};

} // namespace vornhale::history
