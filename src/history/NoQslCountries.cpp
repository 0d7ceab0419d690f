#include "history/NoQslCountries.h"

#include "text/Chars.h"

namespace vornhale::history {

NoQslCountries NoQslCountries::no_qsl_cty_0(std::string_view No_qsl_cty, const NameCheck& check)
{
    NoQslCountries c;
    for (const std::string& part : text::split(No_qsl_cty, ",")) {
        if (c.m_names.size() == kMaxNames) {
            break;
        }
        const std::string name(text::trim(part));
        const std::string unknown = check ? check(name) : name;
        if (unknown.empty()) {
            c.m_names.push_back(name);
        } else {
            c.m_names.emplace_back();
            c.m_ngText += unknown + " , ";
        }
        c.m_upperNames.push_back(text::upper(c.m_names.back()));
    }
    return c;
}

bool NoQslCountries::no_qsl_cty_1(std::string_view entity) const
{
    const std::string hay = text::upper(text::trim(entity));
    for (const std::string& name : m_upperNames) {
        if (!name.empty() && text::contains(hay, name)) {
            return true;
        }
    }
    return false;
}

} // namespace vornhale::history
