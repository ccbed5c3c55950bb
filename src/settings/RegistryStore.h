#pragma once
// The per-user registry store: a registry tree kept in one text file
// (RegistryFile's format) in the user's configuration folder.
//
// Changes are made in memory and recorded; `flush` writes them. It takes an
// exclusive lock (flock on "<file>.lock"), reads the file afresh, replays the
// recorded changes over it, so that two instances never undo each other's
// unrelated changes, and writes the result through AtomicFileWriter. A reader
// therefore sees the old file or the new one, never a half-written one.
//
// A store file that cannot be read or parsed is moved aside (to
// "<file>.damaged-<date>-<time>") and the user is told once through the
// MessageHost; the store then starts empty, so the program runs on defaults.
// If the damaged file cannot be moved aside it is left untouched and nothing
// is written over it for the life of this object.

#include <sys/types.h>

#include <chrono>
#include <ctime>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "core/MessageHost.h"
#include "settings/RegistryTree.h"

namespace vantorel {

struct RegistryStoreOptions {
    // How long a write waits for another instance to release the lock.
    std::chrono::milliseconds lockTimeout{5000};
};

class RegistryStore {
public:
    using Options = RegistryStoreOptions;

    static constexpr const char* kFileName = "settings.reg";

    // The store file of this user: "$VANTOREL_CONFIG_HOME/settings.reg" when
    // that variable is set, else "$XDG_CONFIG_HOME/vantorel/settings.reg" (an
    // absolute XDG_CONFIG_HOME only), else "$HOME/.config/vantorel/settings.reg".
    // Empty when no home folder can be found.
    static std::filesystem::path defaultFile();

    // `host` may be null: damage is then handled without telling anyone.
    explicit RegistryStore(std::filesystem::path file, MessageHost* host = nullptr, Options options = {});
    virtual ~RegistryStore();
    RegistryStore(const RegistryStore&) = delete;
    RegistryStore& operator=(const RegistryStore&) = delete;

    const std::filesystem::path& file() const noexcept { return file_; }

    // Reads the file again if it changed on disk since it was last read, and
    // replays this store's unwritten changes over it. Reads it the first time.
    void refresh();

    bool keyExists(const KeyPath& key);
    // nullopt when the key cannot be created (a name that is not allowed).
    std::optional<RegistryTree::CreateResult> createKey(const KeyPath& key);
    bool deleteKey(const KeyPath& key);
    std::optional<std::vector<std::string>> subkeyNames(const KeyPath& key);
    std::optional<std::vector<RegistryValue>> values(const KeyPath& key);
    std::optional<RegistryValue> value(const KeyPath& key, std::string_view name);
    // Fails when the key does not exist or the name holds NUL, CR or LF.
    bool setValue(const KeyPath& key, std::string_view name, std::uint32_t type, std::string data);
    bool deleteValue(const KeyPath& key, std::string_view name);

    bool hasUnsavedChanges() const noexcept { return !pending_.empty(); }
    // Writes the unwritten changes. False (and `lastError`) when they could
    // not be written; they are then kept for the next try.
    bool flush();
    const std::string& lastError() const noexcept { return lastError_; }

protected:
    // Renames a damaged store file to its aside name. A test may replace it
    // to fail at exactly this point.
    virtual std::error_code renameFile(const std::filesystem::path& from, const std::filesystem::path& to);

private:
    struct Identity {
        dev_t device = 0;
        ino_t inode = 0;
        off_t size = 0;
        std::timespec modified{};
        bool operator==(const Identity& other) const noexcept;
    };
    enum class ReadOutcome { Missing, Read, SetAside, Blocked };

    void ensureLoaded();
    // Reads the file into `tree`. A damaged file is moved aside and reported.
    ReadOutcome readFile(RegistryTree& tree);
    bool setAside(const std::string& problem);
    std::optional<Identity> currentIdentity() const;
    bool writeFile(const std::string& text);
    void record(RegistryChange change);

    std::filesystem::path file_;
    MessageHost* host_;
    Options options_;
    RegistryTree tree_;
    std::vector<RegistryChange> pending_;
    std::optional<Identity> loadedIdentity_;
    bool loaded_ = false;
    bool blocked_ = false;  // a damaged file could not be moved aside
    std::string lastError_;
};

}  // namespace vantorel
