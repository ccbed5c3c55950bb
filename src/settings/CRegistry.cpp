#include "settings/CRegistry.h"

#include <algorithm>
#include <cstdlib>

namespace vantorel {
namespace {

long kindOf(std::uint32_t type) {
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

std::string fourBytes(std::uint32_t number, bool bigEndian) {
    std::string bytes(4, '\0');
    for (int i = 0; i < 4; ++i) {
        const auto byte = static_cast<char>((number >> (8 * i)) & 0xFF);
        bytes[bigEndian ? 3 - i : i] = byte;
    }
    return bytes;
}

long fromFourBytes(const std::string& bytes, bool bigEndian) {
    std::uint32_t number = 0;
    for (int i = 0; i < 4; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[bigEndian ? 3 - i : i]);
        number |= static_cast<std::uint32_t>(byte) << (8 * i);
    }
    return static_cast<long>(static_cast<std::int32_t>(number));
}

std::string expandEnvironment(const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] != '%') {
            out += text[i++];
            continue;
        }
        if (i + 1 < text.size() && text[i + 1] == '%') {
            out += '%';
            i += 2;
            continue;
        }
        const std::size_t close = text.find('%', i + 1);
        if (close == std::string::npos) {
            out.append(text, i);
            break;
        }
        const std::string name = text.substr(i + 1, close - i - 1);
        const char* value = std::getenv(name.c_str());
        if (value != nullptr)
            out += value;
        else
            out.append(text, i, close - i + 1);
        i = close + 1;
    }
    return out;
}

}  // namespace

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

bool CRegistry::writeRaw(const std::string& name, std::uint32_t type, std::string data) {
    return openKey_ && store_.setValue(*openKey_, name, type, std::move(data));
}

std::optional<RegistryValue> CRegistry::readRaw(const std::string& name) {
    if (!openKey_) return std::nullopt;
    return store_.value(*openKey_, name);
}

std::vector<std::string> CRegistry::EnumerateKeys() {
    if (!openKey_) return {};
    return store_.subkeyNames(*openKey_).value_or(std::vector<std::string>{});
}

bool CRegistry::HasSubKeys() { return !EnumerateKeys().empty(); }

bool CRegistry::DeleteKey(const std::string& path) {
    const auto key = parsePath(path);
    return key && store_.deleteKey(*key);
}

bool CRegistry::KeyExists(const std::string& path) {
    const auto key = parsePath(path);
    if (!key) return false;
    store_.refresh();
    return store_.keyExists(*key);
}

bool CRegistry::copyKey(const KeyPath& from, const KeyPath& to) {
    const auto values = store_.values(from);
    const auto subkeys = store_.subkeyNames(from);
    if (!values || !subkeys || !store_.createKey(to)) return false;
    for (const auto& value : *values)
        if (!store_.setValue(to, value.name, value.type, value.data)) return false;
    for (const auto& sub : *subkeys) {
        KeyPath childFrom = from;
        KeyPath childTo = to;
        childFrom.parts.push_back(sub);
        childTo.parts.push_back(sub);
        if (!copyKey(childFrom, childTo)) return false;
    }
    return true;
}

bool CRegistry::RenameKey(const std::string& path, const std::string& newName) {
    const auto from = parsePath(path);
    const auto newParts = splitSubkeyPath(newName);
    if (!from || from->parts.empty() || !newParts || newParts->size() != 1 || newName.back() == '\\') return false;
    KeyPath to = *from;
    to.parts.back() = newName;
    if (!store_.keyExists(*from) || store_.keyExists(to)) return false;
    return copyKey(*from, to) && store_.deleteKey(*from);
}

bool CRegistry::EnumerateValues(std::vector<std::string>& names, std::vector<long>& types) {
    names.clear();
    types.clear();
    if (!openKey_) return false;
    const auto values = store_.values(*openKey_);
    if (!values) return false;
    for (const auto& value : *values) {
        names.push_back(value.name);
        types.push_back(kindOf(value.type));
    }
    return true;
}

bool CRegistry::DeleteValue(const std::string& name) { return openKey_ && store_.deleteValue(*openKey_, name); }

bool CRegistry::ValueExists(const std::string& name) { return readRaw(name).has_value(); }

long CRegistry::ReadInteger(const std::string& name) {
    const auto value = readRaw(name);
    if (!value || value->type != REG_DWORD || value->data.size() != 4) return 0;
    return fromFourBytes(value->data, false);
}

std::vector<unsigned char> CRegistry::ReadBinary(const std::string& name) {
    const auto value = readRaw(name);
    if (!value) return {};
    return {value->data.begin(), value->data.end()};
}

std::string CRegistry::ReadEnviromentString(const std::string& name) { return expandEnvironment(ReadString(name)); }

long CRegistry::ReadBigEndian(const std::string& name) {
    const auto value = readRaw(name);
    if (!value || value->type != REG_DWORD_BIG_ENDIAN || value->data.size() != 4) return 0;
    return fromFourBytes(value->data, true);
}

bool CRegistry::WriteEnvironmentString(const std::string& data, const std::string& name) {
    stringWriteType_ = REG_EXPAND_SZ;
    return WriteString(data, name);
}

bool CRegistry::WriteInteger(long value, const std::string& name) {
    const std::uint32_t type = integerWriteType_;
    integerWriteType_ = REG_DWORD;
    return writeRaw(name, type, fourBytes(static_cast<std::uint32_t>(value), type == REG_DWORD_BIG_ENDIAN));
}

bool CRegistry::WriteBigEndian(long value, const std::string& name) {
    integerWriteType_ = REG_DWORD_BIG_ENDIAN;
    return WriteInteger(value, name);
}

bool CRegistry::WriteBinary(const std::vector<unsigned char>& data, const std::string& name) {
    return writeRaw(name, REG_BINARY, std::string(data.begin(), data.end()));
}

bool CRegistry::RenameValue(const std::string& oldName, const std::string& newName) {
    const auto value = readRaw(oldName);
    if (!value) return false;
    if (RegistryKey::sameName(oldName, newName)) return true;
    return writeRaw(newName, value->type, value->data) && DeleteValue(oldName);
}

bool CRegistry::SaveKey(const std::string&, const std::string&) { return false; }
bool CRegistry::LoadKey(const std::string&, const std::string&) { return false; }
bool CRegistry::UnLoadKey(const std::string&) { return false; }
bool CRegistry::RestoreKey(const std::string&, const std::string&) { return false; }
bool CRegistry::ReplaceKey(const std::string&, const std::string&, const std::string&) { return false; }
std::string CRegistry::FindKey(const std::string&) { return {}; }
std::string CRegistry::FindValue(const std::string&) { return {}; }

bool CRegistry::Flush() { return store_.flush(); }

}  // namespace vantorel
