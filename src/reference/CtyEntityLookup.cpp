#include "reference/CtyEntityLookup.h"

#include "failure/Failure.h"
#include "text/Chars.h"
#include "text/Record.h"
#include "text/Utf8.h"

#include <algorithm>
#include <vector>

namespace vornhale::reference {
namespace {

// The place of a byte in the trie's alphabet: digits, capitals, "/"; -1 for any other.
int trieLetter(char c)
{
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'A' && c <= 'Z') {
        return 10 + (c - 'A');
    }
    return c == '/' ? 36 : -1;
}

// The right part of a call caps its search at this many characters.
constexpr std::size_t kRightSearchChars = 6;

} // namespace

void CtyEntityLookup::load(const CtyTables& tables, const std::filesystem::path& mastL)
{
    m_long.clear();
    m_longPresent = false;
    m_longTruncated = false;
    try {
        text::RecordReader in(mastL);
        m_longPresent = true;
        std::vector<std::string_view> f;
        std::string call;
        while (!in.atEnd()) {
            try {
                in.fieldViews(4, f);
            } catch (const failure::Failure&) {
                // Only a call that no whole record holds reads on into the broken end.
                m_longTruncated = true;
                break;
            }
            // The "=" marks of exact calls go wherever they stand, then the blanks around.
            call.assign(f[0]);
            if (call.find('=') != std::string::npos) {
                std::erase(call, '=');
            }
            m_long.emplace(std::string(text::trim(call)), padTo(f[2], 9));
        }
    } catch (const failure::Failure&) {
        // A missing long master fails at each lookup, as its open would.
    }
    // Sixteen bits or more a key: a call not there finds its bit clear fifteen times in
    // sixteen.
    std::size_t words = 1;
    while (words * 64 < 16 * m_long.size()) {
        words *= 2;
    }
    m_longFilter.assign(words, 0);
    const std::size_t mask = words * 64 - 1;
    for (const auto& entry : m_long) {
        const std::size_t bit = Hash{}(entry.first) & mask;
        m_longFilter[bit / 64] |= std::uint64_t{1} << (bit % 64);
    }

    m_short.clear();
    m_shortMaxChars = 0;
    m_shortHasChars.clear();
    const std::size_t last =
        std::min(static_cast<std::size_t>(std::max(tables.cty_s_kazu, 0L)),
                 tables.cty_s_prefix.size() == 0 ? 0 : tables.cty_s_prefix.size() - 1);
    for (std::size_t i = 1; i <= last; ++i) {
        const std::string& prefix = tables.cty_s_prefix[i];
        if (m_short.emplace(prefix, text::upper(tables.cty_s_primary[i])).second) {
            const std::size_t chars = text::charCount(prefix);
            m_shortMaxChars = std::max(m_shortMaxChars, chars);
            if (m_shortHasChars.size() <= chars) {
                m_shortHasChars.resize(chars + 1, 0);
            }
            m_shortHasChars[chars] = 1;
        }
    }
    m_trie.assign(1, TrieNode{});
    for (const auto& [prefix, primary] : m_short) {
        if (prefix.empty() ||
            !std::all_of(prefix.begin(), prefix.end(), [](char c) { return trieLetter(c) >= 0; })) {
            continue;
        }
        std::size_t node = 0;
        for (const char c : prefix) {
            const auto letter = static_cast<std::size_t>(trieLetter(c));
            if (m_trie[node].child[letter] == 0) {
                m_trie[node].child[letter] = static_cast<std::int32_t>(m_trie.size());
                m_trie.emplace_back();
            }
            node = static_cast<std::size_t>(m_trie[node].child[letter]);
        }
        m_trie[node].primary = &primary;
    }

    m_conv.clear();
    for (const CtyConvRow& row : tables.cty_conv) {
        m_conv.emplace(row.from, row.to);
    }

    m_dxccByPrefix.clear();
    m_buroByCode.clear();
    m_dxccUpperPrefix.clear();
    const auto records = std::min(
        {static_cast<std::size_t>(std::max(tables.dxcc_kazu, 0L)), tables.dxcc_prefix.size(),
         tables.dxcc_code.size(), tables.dxcc_name.size(), tables.dxcc_buro.size()});
    for (std::size_t i = 0; i < records; ++i) {
        const std::string prefix(text::trim(tables.dxcc_prefix[i]));
        const std::string code(text::trim(tables.dxcc_code[i]));
        const std::string buro(text::trim(tables.dxcc_buro[i]));
        m_dxccByPrefix.emplace(prefix,
                               DxccEntry{code, std::string(text::trim(tables.dxcc_name[i])), buro});
        m_buroByCode.emplace(code, buro);
        m_dxccUpperPrefix.emplace(text::upper(prefix), true);
    }
}

CtyEntityLookup::PartHit CtyEntityLookup::prefixSearchPlain(std::string_view part,
                                                            std::size_t length) const
{
    // Each character is one byte and none is a blank: the key of n is the first n bytes, and
    // the longest key that the walk meets is the one the search from the longest finds first.
    const std::string* primary = nullptr;
    std::size_t matched = 0;
    std::size_t node = 0;
    for (std::size_t i = 0; i < length; ++i) {
        const std::int32_t next = m_trie[node].child[static_cast<std::size_t>(trieLetter(part[i]))];
        if (next == 0) {
            break;
        }
        node = static_cast<std::size_t>(next);
        if (m_trie[node].primary != nullptr) {
            primary = m_trie[node].primary;
            matched = i + 1;
        }
    }
    PartHit result;
    if (primary != nullptr) {
        result.hit = true;
        result.whole = matched == length;
        result.primary = *primary;
    }
    return result;
}

CtyEntityLookup::PartHit CtyEntityLookup::prefixSearch(std::string_view part,
                                                       std::size_t length) const
{
    if (length <= part.size()) {
        const std::string_view searched = part.substr(0, length);
        if (!m_trie.empty() && std::all_of(searched.begin(), searched.end(),
                                           [](char c) { return trieLetter(c) >= 0; })) {
            return prefixSearchPlain(part, length);
        }
    }
    // The key of n is the first n characters of `part`, trimmed. Offsets and the last
    // non-blank character are measured once, so a long part costs one pass.
    std::vector<std::size_t> offset(length + 1);
    std::vector<long> lastSolid(length + 1, -1);
    std::size_t pos = 0;
    for (std::size_t k = 0; k < length; ++k) {
        offset[k] = pos;
        const bool blank = pos < part.size() && part[pos] == ' ';
        text::nextCodePoint(part, pos);
        lastSolid[k + 1] = blank ? lastSolid[k] : static_cast<long>(k);
    }
    offset[length] = pos;
    std::size_t first = 0;
    while (first < length && part[offset[first]] == ' ') {
        ++first;
    }

    PartHit result;
    for (std::size_t n = length; n >= 1; --n) {
        const long end = lastSolid[n];
        std::string_view key;
        std::size_t keyChars = 0;
        if (end >= static_cast<long>(first)) {
            const auto e = static_cast<std::size_t>(end);
            key = part.substr(offset[first], offset[e + 1] - offset[first]);
            keyChars = e - first + 1;
        }
        // No short prefix has as many characters as the key: none can equal it.
        if (!shortHasChars(keyChars)) {
            continue;
        }
        const auto it = m_short.find(key);
        if (it != m_short.end()) {
            result.hit = true;
            result.whole = keyChars == length;
            result.primary = it->second;
            return result;
        }
    }
    return result;
}

std::string CtyEntityLookup::get_entity(std::string_view call) const
{
    if (!m_longPresent) {
        throw failure::Failure(failure::FileNotFound, "ファイルが見つかりません。 cty_mastL.txt");
    }
    const std::string_view Call_in = text::trim(call);
    const auto slash = Call_in.find('/');
    const bool hasSlash = slash != std::string_view::npos;
    const std::string_view Left_part = hasSlash ? Call_in.substr(0, slash) : Call_in;
    const std::string_view Right_part =
        hasSlash ? Call_in.substr(slash + 1) : std::string_view();

    // Exact calls and prefixes of 7 characters or more match only as a whole.
    std::string slashKey;
    if (hasSlash) {
        const std::string_view left = text::trim(Left_part);
        const std::string_view right = text::trim(Right_part);
        slashKey.reserve(left.size() + 1 + right.size());
        slashKey.append(left).append(1, '/').append(right);
    }
    const std::string_view longKey = hasSlash ? std::string_view(slashKey) : Call_in;
    if (mayBeLong(Hash{}(longKey))) {
        if (const auto it = m_long.find(longKey); it != m_long.end()) {
            return it->second;
        }
    }
    if (m_longTruncated) {
        throw failure::Failure(failure::InputPastEnd,
                           "ファイルの終わりを越えて入力しようとしました。 cty_mastL.txt");
    }

    if (!hasSlash) {
        return prefixSearch(Call_in, text::charCount(Call_in)).primary;
    }

    const std::size_t Left_len = text::charCount(Left_part);
    std::size_t Right_len = text::charCount(Right_part);
    const PartHit left = prefixSearch(Left_part, Left_len);
    std::string Left_prefix = left.primary;
    const bool Left_full = left.hit && left.whole;
    const bool Left_partly = left.hit && !left.whole;

    int Right_special = 0;
    std::string Right_prefix;
    bool Right_full = false;
    bool Right_partly = false;
    if (Right_part == "mm" || Right_part == "MM" || Right_part == "m" || Right_part == "M") {
        // Maritime mobile has no entity.
        ++Right_special;
        Left_prefix.clear();
        Right_prefix.clear();
    }
    if (Right_part == "p" || Right_part == "P") {
        ++Right_special;
    }
    if (Right_part == "r" || Right_part == "R") {
        ++Right_special;
    }
    if (!Right_part.empty() && text::isDigit(Right_part.front())) {
        ++Right_special;
    }
    if (Right_special == 0) {
        Right_len = std::min(Right_len, kRightSearchChars);
        const PartHit right = prefixSearch(Right_part, Right_len);
        if (right.hit) {
            Right_prefix = right.primary;
            Right_full = right.whole;
            Right_partly = !right.whole;
        }
    }

    std::string Entity;
    if (Right_partly && Left_len > Right_len) {
        Entity = Right_prefix;
    }
    if (Left_partly && Left_len < Right_len) {
        Entity = Left_prefix;
    }
    if (Right_full) {
        Entity = Right_prefix;
    }
    if (Left_full) {
        Entity = Left_prefix;
    }
    if (Right_special > 0) {
        Entity = Left_prefix;
    }
    // Rotuma is told from Fiji by its "/R" alone; "3D2/r" is a key of the DXCC master.
    if (text::trim(Left_prefix) == "3D2" && Right_part == "R") {
        Entity = "3D2/r";
    }
    return Entity;
}

std::string CtyEntityLookup::cty_conv_apply(std::string_view entity) const
{
    const auto it = m_conv.find(entity);
    return it != m_conv.end() ? it->second : std::string(entity);
}

std::string CtyEntityLookup::entityOf(std::string_view call)
{
    return cty_conv_apply(get_entity(call));
}

DxccEntry CtyEntityLookup::dxcc_lookup(std::string_view prefix)
{
    const auto it = m_dxccByPrefix.find(text::trim(prefix));
    return it != m_dxccByPrefix.end() ? it->second : DxccEntry{};
}

std::string CtyEntityLookup::dxcc_buro_by_code(std::string_view dx_code)
{
    const auto it = m_buroByCode.find(text::trim(dx_code));
    return it != m_buroByCode.end() ? it->second : std::string();
}

std::string CtyEntityLookup::dxcc_name_check(std::string_view name)
{
    std::string key = text::upper(text::trim(name));
    if (m_dxccUpperPrefix.find(key) != m_dxccUpperPrefix.end()) {
        ++m_validNames;
        return {};
    }
    return key;
}

} // namespace vornhale::reference
