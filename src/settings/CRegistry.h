#pragma once
// CRegistry wraps one open key of the registry and reads and writes named
// values under it. Paths are "<root name>\<subkey>\<subkey>...", the root name
// spelled out in full ("HKEY_CURRENT_USER", never "HKCU").
//
// Nothing here shows a message or throws: every failure comes back as false,
// an empty string or zero. Two quirks are kept on purpose because the
// settings code relies on them: writing "" stores a single NUL character, so
// the value exists; and reading a value whose data is only a NUL (or that was
// written as "") gives one NUL character back, while a missing value reads as "".
//
// The values live in a RegistryStore. Closing the key (and destroying the
// object) writes the changes made so far to the store's file; `Flush` does
// so explicitly and reports whether it worked.
//
// The program's settings use only the first group of methods below; the
// second group is kept for compatibility with the program's published
// interface and lives apart, in CRegistryCompat.cpp.

#include <cstdint>
#include <string>
#include <vector>

#include "settings/RegistryStore.h"
#include "settings/RegistryTypes.h"

namespace vantorel {

class CRegistry {
public:
    // The class's own value-type codes, as returned by GetValueInfo.
    enum ValueKind : long { Unknown = 0, String = 1, ExpandString = 2, Integer = 3, BigEndian = 4, Binary = 5 };

    explicit CRegistry(RegistryStore& store);
    ~CRegistry();
    CRegistry(const CRegistry&) = delete;
    CRegistry& operator=(const CRegistry&) = delete;

    // Opens an existing key, closing the one open before. An unknown root
    // name fails at once and leaves no key open.
    bool OpenKey(const std::string& path);
    void CloseKey();
    // Creates a key; an unknown root name makes the whole path a subkey of
    // the open key. True only when the key did not exist before. The new key
    // is not left open.
    bool CreateKey(const std::string& path);
    // Type code (ValueKind) and size of a value; strings are counted without
    // their terminator, except that data of only a terminator counts as 1.
    bool GetValueInfo(const std::string& name, long& type, long& size);
    std::string ReadString(const std::string& name);
    // Note the order: data first, then the value name. "" is stored as one NUL.
    bool WriteString(std::string data, const std::string& name);

    // ---- Kept for compatibility with the program's published interface ----
    // The program itself does not use what follows (CRegistryCompat.cpp).
    static constexpr std::uint32_t kFullAccess = 0xF003F;
    static constexpr long kCreatedNewKey = 1;
    const std::string& CurrentPath() const noexcept { return currentPath_; }
    const std::string& CurrentKey() const noexcept { return currentKey_; }
    RegistryStore& Store() noexcept { return store_; }
    std::vector<std::string> EnumerateKeys();
    bool HasSubKeys();
    bool DeleteKey(const std::string& path);
    bool KeyExists(const std::string& path);
    // Gives the key at `path` the name `newName` under the same parent.
    bool RenameKey(const std::string& path, const std::string& newName);
    // Value names and their ValueKind codes, in the order they were added.
    bool EnumerateValues(std::vector<std::string>& names, std::vector<long>& types);
    bool DeleteValue(const std::string& name);
    bool ValueExists(const std::string& name);
    long ReadInteger(const std::string& name);
    std::vector<unsigned char> ReadBinary(const std::string& name);
    // Reads an expandable string and replaces each %NAME% by that environment
    // variable; unknown names stay as written and "%%" gives one "%".
    std::string ReadEnviromentString(const std::string& name);
    long ReadBigEndian(const std::string& name);
    // Writes the text unchanged as REG_EXPAND_SZ; write "%%" for a "%" that
    // must not start a variable name.
    bool WriteEnvironmentString(const std::string& data, const std::string& name);
    bool WriteInteger(long value, const std::string& name);
    bool WriteBigEndian(long value, const std::string& name);
    bool WriteBinary(const std::vector<unsigned char>& data, const std::string& name);
    bool RenameValue(const std::string& oldName, const std::string& newName);
    // Writes the changes made so far to the store's file.
    bool Flush();
    // Placeholders: hive files do not exist here, so these do nothing and
    // give false or "".
    bool SaveKey(const std::string& path, const std::string& file);
    bool LoadKey(const std::string& path, const std::string& file);
    bool UnLoadKey(const std::string& path);
    bool RestoreKey(const std::string& path, const std::string& file);
    bool ReplaceKey(const std::string& path, const std::string& newFile, const std::string& oldFile);
    std::string FindKey(const std::string& text);
    std::string FindValue(const std::string& text);

private:
    // Root key and subkey path of a full path; nullopt for an unknown root.
    static std::optional<KeyPath> parsePath(const std::string& path);
    static long kindOf(std::uint32_t type);
    bool writeRaw(const std::string& name, std::uint32_t type, std::string data);
    std::optional<RegistryValue> readRaw(const std::string& name);
    bool copyKey(const KeyPath& from, const KeyPath& to);

    RegistryStore& store_;
    std::optional<KeyPath> openKey_;
    std::string currentPath_;
    std::string currentKey_;
    std::uint32_t stringWriteType_ = REG_SZ;
    std::uint32_t integerWriteType_ = REG_DWORD;
};

}  // namespace vantorel
