#include "settings/RegistryTree.h"

#include <stdexcept>

namespace vantorel {

RegistryTree::RegistryTree() {
    for (const auto& root : kRootKeys) roots_.emplace_back(std::string(root.name));
}

RegistryKey& RegistryTree::root(std::uint32_t rootKey) {
    for (std::size_t i = 0; i < std::size(kRootKeys); ++i)
        if (kRootKeys[i].key == rootKey) return roots_[i];
    throw std::invalid_argument("unknown registry root key");
}

const RegistryKey& RegistryTree::root(std::uint32_t rootKey) const {
    return const_cast<RegistryTree*>(this)->root(rootKey);
}

RegistryKey* RegistryTree::find(const KeyPath& path) noexcept {
    if (rootKeyName(path.root).empty()) return nullptr;
    RegistryKey* key = &root(path.root);
    for (const auto& part : path.parts) {
        key = key->findSubkey(part);
        if (key == nullptr) return nullptr;
    }
    return key;
}

const RegistryKey* RegistryTree::find(const KeyPath& path) const noexcept {
    return const_cast<RegistryTree*>(this)->find(path);
}

RegistryTree::CreateResult RegistryTree::createKey(const KeyPath& path) {
    RegistryKey* key = &root(path.root);
    bool created = false;
    for (const auto& part : path.parts) key = &key->obtainSubkey(part, created);
    return created ? CreateResult::Created : CreateResult::Existed;
}

bool RegistryTree::deleteKey(const KeyPath& path) {
    if (path.parts.empty()) return false;
    KeyPath parentPath{path.root, {path.parts.begin(), path.parts.end() - 1}};
    RegistryKey* parent = find(parentPath);
    return parent != nullptr && parent->removeSubkey(path.parts.back());
}

bool RegistryTree::setValue(const KeyPath& path, std::string_view name, std::uint32_t type, std::string data) {
    RegistryKey* key = find(path);
    if (key == nullptr) return false;
    key->setValue(name, type, std::move(data));
    return true;
}

bool RegistryTree::deleteValue(const KeyPath& path, std::string_view name) {
    RegistryKey* key = find(path);
    return key != nullptr && key->removeValue(name);
}

void RegistryTree::apply(const RegistryChange& change) {
    switch (change.kind) {
        case RegistryChange::Kind::CreateKey:
            createKey(change.key);
            break;
        case RegistryChange::Kind::DeleteKey:
            deleteKey(change.key);
            break;
        case RegistryChange::Kind::SetValue:
            createKey(change.key);
            setValue(change.key, change.name, change.type, change.data);
            break;
        case RegistryChange::Kind::DeleteValue:
            deleteValue(change.key, change.name);
            break;
    }
}

}  // namespace vantorel
