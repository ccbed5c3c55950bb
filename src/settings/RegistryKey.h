#pragma once
// One key of the registry tree: its name, its subkeys and its values, each kept
// in the order in which they were first added. Names are matched without
// regard to ASCII case, as the registry does, and keep the case they were
// created with. Finding, adding and removing a subkey or a value by name
// takes the same time however many the key holds.

#include <list>
#include <string>
#include <string_view>
#include <unordered_map>

#include "settings/RegistryTypes.h"

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
    const std::list<RegistryKey>& subkeys() const noexcept { return subkeys_; }

    const RegistryValue* findValue(std::string_view name) const noexcept;
    // Replaces the data and type of an existing value (keeping its name's
    // case) or appends a new value.
    void setValue(std::string_view name, std::uint32_t type, std::string data);
    bool removeValue(std::string_view name);
    const std::list<RegistryValue>& values() const noexcept { return values_; }

    static bool sameName(std::string_view a, std::string_view b) noexcept;

private:
    struct NameHash {
        std::size_t operator()(std::string_view name) const noexcept;
    };
    struct NameEqual {
        bool operator()(std::string_view a, std::string_view b) const noexcept { return sameName(a, b); }
    };
    // Each index maps a name (a view of the name held in the list's node,
    // which never moves) to its place in the list.
    template <class T>
    using NameIndex = std::unordered_map<std::string_view, typename std::list<T>::iterator, NameHash, NameEqual>;

    std::string name_;
    std::list<RegistryKey> subkeys_;
    NameIndex<RegistryKey> subkeyIndex_;
    std::list<RegistryValue> values_;
    NameIndex<RegistryValue> valueIndex_;
};

}  // namespace vantorel
