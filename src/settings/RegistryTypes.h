#pragma once
// Shared vocabulary of the per-user registry store: the predefined root keys,
// the registry's value types, one stored value, and a key's address.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantorel {

// Registry value types, with the registry's own numbers.
inline constexpr std::uint32_t REG_NONE = 0;
inline constexpr std::uint32_t REG_SZ = 1;
inline constexpr std::uint32_t REG_EXPAND_SZ = 2;
inline constexpr std::uint32_t REG_BINARY = 3;
inline constexpr std::uint32_t REG_DWORD = 4;
inline constexpr std::uint32_t REG_DWORD_BIG_ENDIAN = 5;
inline constexpr std::uint32_t REG_LINK = 6;
inline constexpr std::uint32_t REG_MULTI_SZ = 7;
inline constexpr std::uint32_t REG_RESOURCE_LIST = 8;

// Predefined root keys.
inline constexpr std::uint32_t HKEY_CLASSES_ROOT = 0x80000000u;
inline constexpr std::uint32_t HKEY_CURRENT_USER = 0x80000001u;
inline constexpr std::uint32_t HKEY_LOCAL_MACHINE = 0x80000002u;
inline constexpr std::uint32_t HKEY_USERS = 0x80000003u;
inline constexpr std::uint32_t HKEY_CURRENT_CONFIG = 0x80000005u;
inline constexpr std::uint32_t HKEY_DYN_DATA = 0x80000006u;

struct RootKeyName {
    std::string_view name;
    std::uint32_t key;
};

// The root names accepted in a key path, matched exactly and case-sensitively.
inline constexpr RootKeyName kRootKeys[] = {
    {"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},   {"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
    {"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE}, {"HKEY_USERS", HKEY_USERS},
    {"HKEY_CURRENT_CONFIG", HKEY_CURRENT_CONFIG}, {"HKEY_DYN_DATA", HKEY_DYN_DATA},
};

inline std::optional<std::uint32_t> rootKeyFromName(std::string_view name) {
    for (const auto& root : kRootKeys)
        if (root.name == name) return root.key;
    return std::nullopt;
}

inline std::string_view rootKeyName(std::uint32_t key) {
    for (const auto& root : kRootKeys)
        if (root.key == key) return root.name;
    return {};
}

// One named value. `data` holds the raw bytes as the registry keeps them: a
// string value includes its terminating NUL, a REG_DWORD is four bytes, least
// significant first.
struct RegistryValue {
    std::string name;
    std::uint32_t type = REG_NONE;
    std::string data;

    bool operator==(const RegistryValue&) const = default;
};

// How deep keys may nest below a root, as in the registry.
inline constexpr std::size_t kMaxKeyDepth = 512;

// The address of a key: a root key and the names of the keys below it.
struct KeyPath {
    std::uint32_t root = HKEY_CURRENT_USER;
    std::vector<std::string> parts;

    bool operator==(const KeyPath&) const = default;
};

// Splits a subkey path at "\" into key names. An empty text is the root
// itself; a single trailing "\" is allowed. Empty or control-character names
// are refused.
inline std::optional<std::vector<std::string>> splitSubkeyPath(std::string_view subkey) {
    std::vector<std::string> parts;
    if (subkey.empty()) return parts;
    if (subkey.back() == '\\') subkey.remove_suffix(1);
    std::size_t start = 0;
    while (true) {
        const std::size_t end = subkey.find('\\', start);
        const std::string_view part =
            subkey.substr(start, end == std::string_view::npos ? std::string_view::npos : end - start);
        if (part.empty()) return std::nullopt;
        for (const char c : part)
            if (static_cast<unsigned char>(c) < 0x20) return std::nullopt;
        parts.emplace_back(part);
        if (end == std::string_view::npos) break;
        start = end + 1;
    }
    return parts;
}

}  // namespace vantorel
