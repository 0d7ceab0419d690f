#pragma once

#include "failure/Failure.h"
#include "reference/CtyTables.h"
#include "reference/EntityLookup.h"
#include "text/Chars.h"
#include "text/Record.h"

#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::test {

/// The entity lookups as plain walks from the top of each master, first equal entry wins,
/// with no index: the yardstick that the indexed lookup must equal. With `rereadEachCall`
/// the long master is opened and read for every call; otherwise its records are read once
/// and walked in file order for every call (the same answers, faster for big masters).
class LiteralEntityLookup
{
public:
    LiteralEntityLookup(const reference::CtyTables& tables, std::filesystem::path mastL,
                        bool rereadEachCall)
        : m_t(tables), m_mastL(std::move(mastL)), m_reread(rereadEachCall)
    {
        if (!m_reread) {
            readLong(m_records, m_truncated);
        }
    }

    std::string get_entity(std::string_view call) const
    {
        const std::string Call_in(text::trim(call));
        const auto slash = Call_in.find('/');
        std::string Left_part, Right_part;
        if (slash != std::string::npos) {
            Left_part = Call_in.substr(0, slash);
            Right_part = Call_in.substr(slash + 1);
        }

        const std::string key = slash != std::string::npos
                                    ? std::string(text::trim(Left_part)) + "/" +
                                          std::string(text::trim(Right_part))
                                    : Call_in;
        std::vector<Record> reread;
        bool truncated = m_truncated;
        if (m_reread) {
            readLong(reread, truncated);
        }
        // Plain pointer walks keep unoptimised builds quick enough.
        const std::vector<Record>& records = m_reread ? reread : m_records;
        const Record* const begin = records.data();
        const Record* const end = begin + records.size();
        for (const Record* p = begin; p != end; ++p) {
            const Record& r = *p;
            if (same(r.compared, key)) {
                std::string entity = r.primary;
                while (text::charCount(entity) < 9) {
                    entity += ' ';
                }
                return entity;
            }
        }
        if (truncated) {
            throw failure::Failure(failure::InputPastEnd, "past end");
        }

        if (slash == std::string::npos) {
            std::string found;
            bool full = false;
            walk(Call_in, text::charCount(Call_in), found, full);
            return found;
        }

        const long Left_len = static_cast<long>(text::charCount(Left_part));
        long Right_len = static_cast<long>(text::charCount(Right_part));
        std::string Left_prefix, Right_prefix;
        bool Left_full = false, Left_partly = false, Right_full = false, Right_partly = false;
        int Right_special = 0;

        bool full = false;
        if (walk(Left_part, static_cast<std::size_t>(Left_len), Left_prefix, full)) {
            (full ? Left_full : Left_partly) = true;
        }
        if (Right_part == "mm" || Right_part == "MM") {
            ++Right_special;
            Left_prefix = "";
            Right_prefix = "";
        }
        if (Right_part == "m" || Right_part == "M") {
            ++Right_special;
            Left_prefix = "";
            Right_prefix = "";
        }
        if (Right_part == "p" || Right_part == "P") {
            ++Right_special;
        }
        if (Right_part == "r" || Right_part == "R") {
            ++Right_special;
        }
        if (!Right_part.empty() && Right_part[0] >= '0' && Right_part[0] <= '9') {
            ++Right_special;
        }
        if (Right_special == 0) {
            if (Right_len > 6) {
                Right_len = 6;
            }
            if (walk(Right_part, static_cast<std::size_t>(Right_len), Right_prefix, full)) {
                (full ? Right_full : Right_partly) = true;
            }
        }

        std::string Entity;
        if (Right_partly && Left_len > Right_len) Entity = Right_prefix;
        if (Left_partly && Left_len < Right_len) Entity = Left_prefix;
        if (Right_full) Entity = Right_prefix;
        if (Left_full) Entity = Left_prefix;
        if (Right_special > 0) Entity = Left_prefix;
        if (text::trim(Left_prefix) == "3D2" && Right_part == "R") Entity = "3D2/r";
        return Entity;
    }

    std::string cty_conv_apply(const std::string& entity) const
    {
        for (const auto& row : m_t.cty_conv) {
            if (row.from == entity) {
                return row.to;
            }
        }
        return entity;
    }

    reference::DxccEntry dxcc_lookup(std::string_view prefix) const
    {
        const std::string want(text::trim(prefix));
        for (long i = 0; i < m_t.dxcc_kazu; ++i) {
            if (std::string(text::trim(m_t.dxcc_prefix[i])) == want) {
                return {std::string(text::trim(m_t.dxcc_code[i])),
                        std::string(text::trim(m_t.dxcc_name[i])),
                        std::string(text::trim(m_t.dxcc_buro[i]))};
            }
        }
        return {};
    }

    std::string dxcc_buro_by_code(std::string_view code) const
    {
        const std::string want(text::trim(code));
        for (long i = 0; i < m_t.dxcc_kazu; ++i) {
            if (std::string(text::trim(m_t.dxcc_code[i])) == want) {
                return std::string(text::trim(m_t.dxcc_buro[i]));
            }
        }
        return {};
    }

    std::string dxcc_name_check(std::string_view name, int& valid) const
    {
        const std::string want = text::upper(text::trim(name));
        for (long i = 0; i < m_t.dxcc_kazu; ++i) {
            if (text::upper(text::trim(m_t.dxcc_prefix[i])) == want) {
                ++valid;
                return {};
            }
        }
        return want;
    }

private:
    // Exact equality, spelled out so that the walks stay quick in unoptimised builds.
    static bool same(const std::string& a, const std::string& b)
    {
        const std::size_t n = a.size();
        if (n != b.size()) {
            return false;
        }
        const char* const x = a.data();
        const char* const y = b.data();
        return n == 0 || (x[0] == y[0] && std::memcmp(x, y, n) == 0);
    }

    struct Record
    {
        std::string compared; // the first field with "=" removed, trimmed
        std::string primary;
    };

    void readLong(std::vector<Record>& out, bool& truncated) const
    {
        text::RecordReader in(m_mastL);
        truncated = false;
        while (!in.atEnd()) {
            std::vector<std::string> f;
            try {
                f = in.fields(4);
            } catch (const failure::Failure&) {
                truncated = true;
                return;
            }
            out.push_back({std::string(text::trim(text::replaceAll(f[0], "=", ""))), f[2]});
        }
    }

    // From n characters down to 1: the first n characters, trimmed, against every short
    // prefix from index 1; the first equal entry of the longest key wins.
    bool walk(const std::string& part, std::size_t length, std::string& primary,
              bool& full) const
    {
        for (std::size_t n = length; n >= 1; --n) {
            const std::string key(text::trim(text::left(part, n)));
            const std::string* const prefixes = m_t.cty_s_prefix.data();
            for (long i = 1; i <= m_t.cty_s_kazu; ++i) {
                if (same(prefixes[i], key)) {
                    primary = text::upper(m_t.cty_s_primary[static_cast<std::size_t>(i)]);
                    full = text::charCount(key) == length;
                    return true;
                }
            }
        }
        return false;
    }

    reference::CtyTables m_t;
    std::filesystem::path m_mastL;
    bool m_reread;
    std::vector<Record> m_records;
    bool m_truncated = false;
};

} // namespace vornhale::test
