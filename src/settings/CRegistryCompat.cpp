// The parts of CRegistry that are kept for compatibility with the program's
// published interface. The program itself does not use them: its settings go
// through OpenKey, CreateKey, ReadString, WriteString and CloseKey alone.
// The seven placeholders at the end stand for operations on hive files, which
// this store does not have: they do nothing and report failure.

#include "settings/CRegistry.h"

#include <cstdlib>

namespace vantorel {
namespace {

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
