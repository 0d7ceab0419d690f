#pragma once

#include <string>
#include <string_view>

namespace vornhale::reference {

/// A row of the DXCC master: HAMLOG's code, the entity name and the bureau flag.
struct DxccEntry
{
    std::string dx_code;
    std::string dx_name;
    std::string dx_buro;
};

/// The entity lookups of a run: the prefix of a call's DX entity (after the alias table) and
/// the DXCC master row of an entity. A lookup that finds nothing answers empty texts.
class EntityLookup
{
public:
    virtual ~EntityLookup() = default;
    /// Prefix of the DX entity of `call`, already replaced through the alias table.
    virtual std::string entityOf(std::string_view call) = 0;
    /// DXCC master row of an entity prefix; all empty when the entity is not in the master.
    virtual DxccEntry dxcc_lookup(std::string_view entity) = 0;
    /// The bureau flag of a HAMLOG code in the DXCC master; empty when the code is not there.
    virtual std::string dxcc_buro_by_code(std::string_view /*dx_code*/) { return {}; }
};

/// The lookup used until masters are loaded: it finds nothing.
class NoEntities : public EntityLookup
{
public:
    std::string entityOf(std::string_view) override { return {}; }
    DxccEntry dxcc_lookup(std::string_view) override { return {}; }
};

} // namespace vornhale::reference
