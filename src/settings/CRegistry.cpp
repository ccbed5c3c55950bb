#include "settings/CRegistry.h"

#include <algorithm>

namespace vantorel {

// The ValueKind code of a stored value's type.
long CRegistry::kindOf(std::uint32_t type) {
    switch (type) {
        case REG_SZ:
        case REG_MULTI_SZ:
            return CRegistry::String;
        case REG_EXPAND_SZ:
            return CRegistry::ExpandString;
        case REG_DWORD:
            return CRegistry::Integer;
        case REG_DWORD_BIG_ENDIAN:
            return CRegistry::BigEndian;
        case REG_BINARY:
        case REG_LINK:
        case REG_RESOURCE_LIST:
            return CRegistry::Binary;
        default:
            return CRegistry::Unknown;
    }
}

CRegistry::CRegistry(RegistryStore& store) : store_(store) {}

CRegistry::~CRegistry() { CloseKey(); }

std::optional<KeyPath> CRegistry::parsePath(const std::string& path) {
    const std::size_t slash = path.find('\\');
    const auto root = rootKeyFromName(std::string_view(path).substr(0, slash));
    if (!root) return std::nullopt;
    const auto parts =
        splitSubkeyPath(slash == std::string::npos ? std::string_view{} : std::string_view(path).substr(slash + 1));
    if (!parts) return std::nullopt;
    return KeyPath{*root, *parts};
}

bool CRegistry::OpenKey(const std::string& path) {
    CloseKey();
    const auto key = parsePath(path);
    if (!key) return false;
    store_.refresh();
    if (!store_.keyExists(*key)) return false;
    openKey_ = key;
    currentPath_ = path;
    const std::size_t last = path.rfind('\\');
    currentKey_ = last == std::string::npos ? path : path.substr(last + 1);
    return true;
}

void CRegistry::CloseKey() {
    openKey_.reset();
    if (store_.hasUnsavedChanges()) store_.flush();
}

bool CRegistry::CreateKey(const std::string& path) {
    std::optional<KeyPath> target = parsePath(path);
    if (!target) {
        const std::size_t slash = path.find('\\');
        if (rootKeyFromName(std::string_view(path).substr(0, slash))) return false;  // known root, bad subkey
        if (!openKey_) return false;
        const auto parts = splitSubkeyPath(path);
        if (!parts || parts->empty()) return false;
        target = *openKey_;
        target->parts.insert(target->parts.end(), parts->begin(), parts->end());
    }
    store_.refresh();
    const auto result = store_.createKey(*target);
    if (!result || *result != RegistryTree::CreateResult::Created) return false;
    // Closing the creation's handle: the new key must now be in the file.
    return store_.flush();
}

bool CRegistry::GetValueInfo(const std::string& name, long& type, long& size) {
    type = Unknown;
    size = 0;
    if (!openKey_) return false;
    const auto value = store_.value(*openKey_, name);
    if (!value) return false;
    const long count = static_cast<long>(value->data.size());
    type = kindOf(value->type);
    switch (type) {
        case String:
            size = count == 1 ? 1 : std::max(count - 1, 0L);
            return true;
        case ExpandString:
            size = std::max(count - 1, 0L);
            return true;
        case Integer:
        case BigEndian:
        case Binary:
            size = count;
            return true;
        default:
            size = count;
            return count != 0;
    }
}

std::string CRegistry::ReadString(const std::string& name) {
    if (!openKey_) return {};
    long type = 0;
    long size = 0;
    GetValueInfo(name, type, size);
    if (size <= 0) return {};
    const auto value = store_.value(*openKey_, name);
    // The buffer offered holds size + 1 bytes; larger data does not fit.
    if (!value || value->data.size() > static_cast<std::size_t>(size) + 1) return {};
    std::string buffer(static_cast<std::size_t>(size), '\0');
    std::copy_n(value->data.begin(), std::min(buffer.size(), value->data.size()), buffer.begin());
    return buffer;
}

bool CRegistry::WriteString(std::string data, const std::string& name) {
    if (data.empty()) data.assign(1, '\0');
    const std::uint32_t type = stringWriteType_;
    stringWriteType_ = REG_SZ;
    if (!openKey_) return false;
    data += '\0';
    return store_.setValue(*openKey_, name, type, std::move(data));
}

}  // namespace vantorel
