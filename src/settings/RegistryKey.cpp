#include "settings/RegistryKey.h"

#include <algorithm>

namespace vantorel {
namespace {

char foldAscii(char c) noexcept { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

std::size_t RegistryKey::NameHash::operator()(std::string_view name) const noexcept {
    std::size_t hash = 14695981039346656037ull;  // FNV-1a over the folded name
    for (const char c : name) hash = (hash ^ static_cast<unsigned char>(foldAscii(c))) * 1099511628211ull;
    return hash;
}

RegistryKey::RegistryKey(std::string name) : name_(std::move(name)) {}

RegistryKey::RegistryKey(const RegistryKey& other) : name_(other.name_) {
    for (const RegistryKey& sub : other.subkeys_) {
        subkeys_.push_back(sub);
        subkeyIndex_.emplace(subkeys_.back().name_, std::prev(subkeys_.end()));
    }
    for (const RegistryValue& value : other.values_) {
        values_.push_back(value);
        valueIndex_.emplace(values_.back().name, std::prev(values_.end()));
    }
}

RegistryKey& RegistryKey::operator=(const RegistryKey& other) {
    if (this != &other) {
        RegistryKey copy(other);
        *this = std::move(copy);
    }
    return *this;
}

bool RegistryKey::sameName(std::string_view a, std::string_view b) noexcept {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return foldAscii(x) == foldAscii(y); });
}

RegistryKey* RegistryKey::findSubkey(std::string_view name) noexcept {
    const auto found = subkeyIndex_.find(name);
    return found == subkeyIndex_.end() ? nullptr : &*found->second;
}

const RegistryKey* RegistryKey::findSubkey(std::string_view name) const noexcept {
    return const_cast<RegistryKey*>(this)->findSubkey(name);
}

RegistryKey& RegistryKey::obtainSubkey(std::string_view name, bool& created) {
    if (RegistryKey* existing = findSubkey(name)) {
        created = false;
        return *existing;
    }
    created = true;
    subkeys_.emplace_back(std::string(name));
    subkeyIndex_.emplace(subkeys_.back().name_, std::prev(subkeys_.end()));
    return subkeys_.back();
}

bool RegistryKey::removeSubkey(std::string_view name) {
    const auto found = subkeyIndex_.find(name);
    if (found == subkeyIndex_.end()) return false;
    const auto place = found->second;
    subkeyIndex_.erase(found);  // before the name it views goes
    subkeys_.erase(place);
    return true;
}

const RegistryValue* RegistryKey::findValue(std::string_view name) const noexcept {
    const auto found = valueIndex_.find(name);
    return found == valueIndex_.end() ? nullptr : &*found->second;
}

void RegistryKey::setValue(std::string_view name, std::uint32_t type, std::string data) {
    if (const auto found = valueIndex_.find(name); found != valueIndex_.end()) {
        found->second->type = type;
        found->second->data = std::move(data);
        return;
    }
    values_.push_back(RegistryValue{std::string(name), type, std::move(data)});
    valueIndex_.emplace(values_.back().name, std::prev(values_.end()));
}

bool RegistryKey::removeValue(std::string_view name) {
    const auto found = valueIndex_.find(name);
    if (found == valueIndex_.end()) return false;
    const auto place = found->second;
    valueIndex_.erase(found);
    values_.erase(place);
    return true;
}

}  // namespace vantorel
