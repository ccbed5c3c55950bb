#pragma once
// The whole registry tree of one store: the six predefined root keys, always
// present, and everything below them. Also the record of one change, so that
// changes made in memory can be replayed over a newer copy read from disk.

#include <cstdint>
#include <string>
#include <vector>

#include "settings/RegistryKey.h"
#include "settings/RegistryTypes.h"

namespace vantorel {

struct RegistryChange {
    enum class Kind { CreateKey, DeleteKey, SetValue, DeleteValue };
    Kind kind = Kind::CreateKey;
    KeyPath key;
    std::string name;  // value name, for SetValue and DeleteValue
    std::uint32_t type = REG_NONE;
    std::string data;
};

class RegistryTree {
public:
    enum class CreateResult { Created, Existed };

    RegistryTree();

    RegistryKey* find(const KeyPath& path) noexcept;
    const RegistryKey* find(const KeyPath& path) const noexcept;
    RegistryKey& root(std::uint32_t rootKey);
    const RegistryKey& root(std::uint32_t rootKey) const;
    // The roots in the order of the root-name table; each is named after its root.
    const std::vector<RegistryKey>& roots() const noexcept { return roots_; }

    // Creates the key and any missing keys above it.
    CreateResult createKey(const KeyPath& path);
    // Deletes a key with everything below it. A root cannot be deleted.
    bool deleteKey(const KeyPath& path);
    // Sets a value under an existing key.
    bool setValue(const KeyPath& path, std::string_view name, std::uint32_t type, std::string data);
    bool deleteValue(const KeyPath& path, std::string_view name);

    // Replays a change. A value is set even when its key has gone meanwhile
    // (the key is made again), so that no setting written is lost.
    void apply(const RegistryChange& change);

private:
    std::vector<RegistryKey> roots_;
};

}  // namespace vantorel
