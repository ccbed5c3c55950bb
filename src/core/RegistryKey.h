#pragma once
// One key of the registry tree: its name, its subkeys and its values, each kept
// in the order in which they were first added. Names are matched without
// regard to ASCII case, as the registry does, and keep the case they were
// created with.

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/RegistryTypes.h"

namespace vantorel {

class RegistryKey {
public:
    explicit RegistryKey(std::string name);
    RegistryKey(const RegistryKey& other);
    RegistryKey& operator=(const RegistryKey& other);
    RegistryKey(RegistryKey&&) noexcept = default;
    RegistryKey& operator=(RegistryKey&&) noexcept = default;

    const std::string& name() const noexcept { return name_; }

    RegistryKey* findSubkey(std::string_view name) noexcept;
    const RegistryKey* findSubkey(std::string_view name) const noexcept;
    // The existing subkey of that name, or a new one. `created` tells which.
    RegistryKey& obtainSubkey(std::string_view name, bool& created);
    bool removeSubkey(std::string_view name);
    const std::vector<std::unique_ptr<RegistryKey>>& subkeys() const noexcept { return subkeys_; }

    const RegistryValue* findValue(std::string_view name) const noexcept;
    // Replaces the data and type of an existing value (keeping its name's
    // case) or appends a new value.
    void setValue(std::string_view name, std::uint32_t type, std::string data);
    bool removeValue(std::string_view name);
    const std::vector<RegistryValue>& values() const noexcept { return values_; }

    static bool sameName(std::string_view a, std::string_view b) noexcept;

private:
    std::string name_;
    std::vector<std::unique_ptr<RegistryKey>> subkeys_;
    std::vector<RegistryValue> values_;
};

}  // namespace vantorel
