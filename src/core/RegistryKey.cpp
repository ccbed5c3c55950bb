#include "core/RegistryKey.h"

#include <algorithm>

namespace vantorel {
namespace {

char foldAscii(char c) noexcept { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

RegistryKey::RegistryKey(std::string name) : name_(std::move(name)) {}

RegistryKey::RegistryKey(const RegistryKey& other) : name_(other.name_), values_(other.values_) {
    subkeys_.reserve(other.subkeys_.size());
    for (const auto& sub : other.subkeys_) subkeys_.push_back(std::make_unique<RegistryKey>(*sub));
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
    for (auto& sub : subkeys_)
        if (sameName(sub->name_, name)) return sub.get();
    return nullptr;
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
    subkeys_.push_back(std::make_unique<RegistryKey>(std::string(name)));
    return *subkeys_.back();
}

bool RegistryKey::removeSubkey(std::string_view name) {
    const auto it = std::find_if(subkeys_.begin(), subkeys_.end(),
                                 [&](const auto& sub) { return sameName(sub->name_, name); });
    if (it == subkeys_.end()) return false;
    subkeys_.erase(it);
    return true;
}

const RegistryValue* RegistryKey::findValue(std::string_view name) const noexcept {
    for (const auto& value : values_)
        if (sameName(value.name, name)) return &value;
    return nullptr;
}

void RegistryKey::setValue(std::string_view name, std::uint32_t type, std::string data) {
    for (auto& value : values_) {
        if (sameName(value.name, name)) {
            value.type = type;
            value.data = std::move(data);
            return;
        }
    }
    values_.push_back(RegistryValue{std::string(name), type, std::move(data)});
}

bool RegistryKey::removeValue(std::string_view name) {
    const auto it =
        std::find_if(values_.begin(), values_.end(), [&](const auto& value) { return sameName(value.name, name); });
    if (it == values_.end()) return false;
    values_.erase(it);
    return true;
}

}  // namespace vantorel
