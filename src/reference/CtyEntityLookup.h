#pragma once

#include "reference/CtyTables.h"
#include "reference/EntityLookup.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vornhale::reference {

/// The entity lookups over the masters of the cty.dat import.
///
/// Every answer is the one of a walk from the top of each master where the first equal entry
/// wins: the long master (`cty_mastL.txt`) from its first line for every call, the short
/// master from index 1, the DXCC master from index 0. The walks are made once, at `load`, into
/// hash indexes that keep the first position of each compared text, so a lookup costs the
/// same whatever the size of the masters. The long master is read from its file at `load`;
/// only an import replaces that file, and the import is followed by a new `load`.
class CtyEntityLookup : public EntityLookup
{
public:
    /// Indexes `tables` (copied) and the long master at `mastL`. A missing long master makes
    /// every later `get_entity` throw Failure 53, as its open would; a long master that ends
    /// inside a record makes a call that is not in it throw Failure 62.
    void load(const CtyTables& tables, const std::filesystem::path& mastL);

    /// The entity of a call: its primary prefix. A call listed in the long master gives that
    /// line's primary prefix padded with blanks to 9 characters; otherwise the prefix search
    /// and, for a call with "/", the decision between its two parts give the primary prefix in
    /// upper case. Empty when nothing was found. Comparisons are exact.
    std::string get_entity(std::string_view call) const;

    /// The alias of `entity`: the replacement of the first alias row equal to it, exactly;
    /// `entity` itself when no row is equal.
    std::string cty_conv_apply(std::string_view entity) const;

    /// `get_entity`, then `cty_conv_apply`.
    std::string entityOf(std::string_view call) override;

    /// The first DXCC record whose prefix, trimmed, equals `prefix`, trimmed; code, name and
    /// bureau flag trimmed. All empty with no such record.
    DxccEntry dxcc_lookup(std::string_view prefix) override;

    /// The bureau flag, trimmed, of the first DXCC record whose code, trimmed, equals
    /// `dx_code`, trimmed; empty with no such record.
    std::string dxcc_buro_by_code(std::string_view dx_code) override;

    /// Checks a name of the no-QSL entity list: trimmed and in upper case, it is compared
    /// with each DXCC prefix, trimmed and in upper case. A known name gives an empty text and
    /// adds one to `validNameCount`; an unknown one gives the name, trimmed and in upper case.
    std::string dxcc_name_check(std::string_view name);

    /// The count of valid names that `dxcc_name_check` found since the last reset.
    int validNameCount() const { return m_validNames; }
    void resetValidNameCount() { m_validNames = 0; }

private:
    struct Hash
    {
        using is_transparent = void;
        // FNV-1a: the keys are calls and prefixes of a few bytes, for which it costs a few
        // instructions a byte and spreads well enough.
        std::size_t operator()(std::string_view s) const
        {
            std::uint64_t h = 14695981039346656037ull;
            for (const char c : s) {
                h = (h ^ static_cast<unsigned char>(c)) * 1099511628211ull;
            }
            return static_cast<std::size_t>(h);
        }
    };
    template <typename T>
    using Index = std::unordered_map<std::string, T, Hash, std::equal_to<>>;

    struct PartHit
    {
        bool hit = false;
        bool whole = false;   // the key had the length the search was measured against
        std::string primary;  // upper case
    };
    PartHit prefixSearch(std::string_view part, std::size_t length) const;
    // The search along the trie, for a part whose first `length` bytes are all capitals,
    // digits or "/".
    PartHit prefixSearchPlain(std::string_view part, std::size_t length) const;
    bool shortHasChars(std::size_t n) const
    {
        return n < m_shortHasChars.size() && m_shortHasChars[n];
    }

    bool m_longPresent = false;
    bool m_longTruncated = false;
    Index<std::string> m_long;          // call or long prefix -> primary padded to 9
    // A bit for each hash of an m_long key, in a table small enough to stay in the cache: most
    // calls are not there, and the bit tells so without a walk through m_long.
    std::vector<std::uint64_t> m_longFilter;
    bool mayBeLong(std::size_t hash) const
    {
        const std::size_t bit = hash & (m_longFilter.size() * 64 - 1);
        return (m_longFilter[bit / 64] >> (bit % 64) & 1) != 0;
    }
    Index<std::string> m_short;         // short prefix -> primary of its first entry, upper
    std::size_t m_shortMaxChars = 0;    // longest short prefix, in characters
    std::vector<char> m_shortHasChars;  // [n]: some short prefix has n characters
    // The short prefixes made only of capitals, digits and "/", as a trie: a walk along a
    // call meets every one of them that the call starts with, the longest last.
    static constexpr std::size_t kTrieLetters = 37;
    struct TrieNode
    {
        std::int32_t child[kTrieLetters] = {};
        const std::string* primary = nullptr; // the value in m_short of the prefix ending here
    };
    std::vector<TrieNode> m_trie;
    Index<std::string> m_conv;          // entity -> alias, first row
    Index<DxccEntry> m_dxccByPrefix;    // trimmed prefix -> first record, trimmed
    Index<std::string> m_buroByCode;    // trimmed code -> flag of the first record, trimmed
    Index<bool> m_dxccUpperPrefix;      // prefixes in upper case
    int m_validNames = 0;
};

} // namespace vornhale::reference
