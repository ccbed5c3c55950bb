#include "settings/RegistryStore.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

#include "core/AtomicFileWriter.h"
#include "core/FileDescriptor.h"
#include "settings/RegistryFile.h"

namespace vantorel {
namespace {

namespace fs = std::filesystem;

// A store file larger than this is not a settings file.
constexpr off_t kMaxFileSize = 64 * 1024 * 1024;

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string systemError(int error) { return std::error_code(error, std::system_category()).message(); }

std::string inQuotes(const fs::path& path) { return "\"" + path.string() + "\""; }

bool validName(std::string_view name) {
    return name.find_first_of(std::string_view("\0\r\n", 3)) == std::string_view::npos;
}

bool validKeyPath(const KeyPath& key) {
    if (rootKeyName(key.root).empty() || key.parts.size() > kMaxKeyDepth) return false;
    for (const auto& part : key.parts) {
        if (part.empty() || part.find('\\') != std::string::npos) return false;
        for (const char c : part)
            if (static_cast<unsigned char>(c) < 0x20) return false;
    }
    return true;
}

}  // namespace

bool RegistryStore::Identity::operator==(const Identity& other) const noexcept {
    return device == other.device && inode == other.inode && size == other.size &&
           modified.tv_sec == other.modified.tv_sec && modified.tv_nsec == other.modified.tv_nsec;
}

fs::path RegistryStore::defaultFile() {
    if (const std::string own = environment("VANTOREL_CONFIG_HOME"); !own.empty()) return fs::path(own) / kFileName;
    if (const std::string xdg = environment("XDG_CONFIG_HOME"); !xdg.empty() && fs::path(xdg).is_absolute())
        return fs::path(xdg) / "vantorel" / kFileName;
    std::string home = environment("HOME");
    if (home.empty()) {
        passwd entry{};
        passwd* found = nullptr;
        std::vector<char> buffer(16384);
        if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr &&
            found->pw_dir != nullptr)
            home = found->pw_dir;
    }
    if (home.empty()) return {};
    return fs::path(home) / ".config" / "vantorel" / kFileName;
}

RegistryStore::RegistryStore(fs::path file, MessageHost* host, Options options)
    : file_(std::move(file)), host_(host), options_(options) {}

RegistryStore::~RegistryStore() {
    try {
        if (!pending_.empty()) flush();
    } catch (...) {
        // Nothing can be reported from here; the changes are lost as on a crash.
    }
}

std::optional<RegistryStore::Identity> RegistryStore::currentIdentity() const {
    struct stat info {};
    if (file_.empty() || ::stat(file_.c_str(), &info) != 0) return std::nullopt;
    return Identity{info.st_dev, info.st_ino, info.st_size, info.st_mtim};
}

void RegistryStore::ensureLoaded() {
    if (loaded_) return;
    loaded_ = true;
    RegistryTree fresh;
    readFile(fresh);
    tree_ = std::move(fresh);
    for (const auto& change : pending_) tree_.apply(change);
}

void RegistryStore::refresh() {
    if (!loaded_) {
        ensureLoaded();
        return;
    }
    if (currentIdentity() == loadedIdentity_) return;
    RegistryTree fresh;
    readFile(fresh);
    tree_ = std::move(fresh);
    for (const auto& change : pending_) tree_.apply(change);
}

RegistryStore::ReadOutcome RegistryStore::readFile(RegistryTree& tree) {
    loadedIdentity_.reset();
    if (file_.empty()) return ReadOutcome::Missing;
    FileDescriptor fd(::open(file_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (fd.get() < 0) {
        const int error = errno;
        if (error == ENOENT || error == ENOTDIR) {
            blocked_ = false;
            return ReadOutcome::Missing;
        }
        return setAside("cannot be read: " + systemError(error)) ? ReadOutcome::SetAside : ReadOutcome::Blocked;
    }
    struct stat info {};
    std::string problem;
    std::string text;
    if (::fstat(fd.get(), &info) != 0) {
        problem = "cannot be read: " + systemError(errno);
    } else if (S_ISDIR(info.st_mode)) {
        problem = "is a folder, not a file";
    } else if (!S_ISREG(info.st_mode)) {
        problem = "is not a regular file";
    } else if (info.st_size > kMaxFileSize) {
        problem = "is too large to be a settings file";
    } else {
        text.resize(static_cast<std::size_t>(info.st_size));
        std::size_t done = 0;
        while (problem.empty()) {
            if (done == text.size()) text.resize(text.size() + 4096);
            const ssize_t n = ::read(fd.get(), text.data() + done, text.size() - done);
            if (n < 0 && errno == EINTR) continue;
            if (n < 0) problem = "cannot be read: " + systemError(errno);
            if (n <= 0) break;
            done += static_cast<std::size_t>(n);
            if (done > static_cast<std::size_t>(kMaxFileSize)) problem = "is too large to be a settings file";
        }
        text.resize(done);
    }
    if (problem.empty()) {
        RegistryTree parsed;
        if (const auto error = RegistryFile::parse(text, parsed)) {
            problem = "is damaged (line " + std::to_string(error->line) + ": " + error->reason + ")";
        } else {
            tree = std::move(parsed);
            loadedIdentity_ = Identity{info.st_dev, info.st_ino, info.st_size, info.st_mtim};
            blocked_ = false;
            return ReadOutcome::Read;
        }
    }
    if (setAside(problem)) return ReadOutcome::SetAside;
    // Left in place: remember it as read, so that it is not reported again
    // unless it changes.
    loadedIdentity_ = Identity{info.st_dev, info.st_ino, info.st_size, info.st_mtim};
    return ReadOutcome::Blocked;
}

bool RegistryStore::setAside(const std::string& problem) {
    char stamp[32] = "unknown";
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    if (::localtime_r(&now, &local) != nullptr) std::strftime(stamp, sizeof stamp, "%Y%m%d-%H%M%S", &local);
    fs::path aside = file_;
    aside += std::string(".damaged-") + stamp;
    for (int n = 2; n < 1000; ++n) {
        std::error_code ec;
        if (!fs::exists(fs::symlink_status(aside, ec))) break;
        aside = file_;
        aside += std::string(".damaged-") + stamp + "-" + std::to_string(n);
    }
    std::string detail;
    bool moved = false;
    if (const std::error_code ec = renameFile(file_, aside); !ec) {
        moved = true;
        blocked_ = false;
        detail = "It has been kept as " + inQuotes(aside) + ", and Vantorel goes on with its default settings.";
    } else {
        blocked_ = true;
        detail = "It could not be moved aside (" + ec.message() +
                 "), so it is left as it is, Vantorel goes on with its default settings and will not save them.";
    }
    if (host_ != nullptr) {
        Message message;
        message.text = "The settings file " + inQuotes(file_) + " " + problem + ".\r\n\r\n" + detail;
        message.icon = MessageIcon::Warning;
        message.kind = MessageKind::FileError;
        host_->showMessage(message);
    }
    return moved;
}

void RegistryStore::record(RegistryChange change) { pending_.push_back(std::move(change)); }

bool RegistryStore::keyExists(const KeyPath& key) {
    ensureLoaded();
    return tree_.find(key) != nullptr;
}

std::optional<RegistryTree::CreateResult> RegistryStore::createKey(const KeyPath& key) {
    ensureLoaded();
    if (!validKeyPath(key)) return std::nullopt;
    const auto result = tree_.createKey(key);
    if (result == RegistryTree::CreateResult::Created)
        record(RegistryChange{RegistryChange::Kind::CreateKey, key, {}, REG_NONE, {}});
    return result;
}

bool RegistryStore::deleteKey(const KeyPath& key) {
    ensureLoaded();
    if (!tree_.deleteKey(key)) return false;
    record(RegistryChange{RegistryChange::Kind::DeleteKey, key, {}, REG_NONE, {}});
    return true;
}

std::optional<std::vector<std::string>> RegistryStore::subkeyNames(const KeyPath& key) {
    ensureLoaded();
    const RegistryKey* found = tree_.find(key);
    if (found == nullptr) return std::nullopt;
    std::vector<std::string> names;
    for (const auto& sub : found->subkeys()) names.push_back(sub.name());
    return names;
}

std::optional<std::vector<RegistryValue>> RegistryStore::values(const KeyPath& key) {
    ensureLoaded();
    const RegistryKey* found = tree_.find(key);
    if (found == nullptr) return std::nullopt;
    return std::vector<RegistryValue>(found->values().begin(), found->values().end());
}

std::optional<RegistryValue> RegistryStore::value(const KeyPath& key, std::string_view name) {
    ensureLoaded();
    const RegistryKey* found = tree_.find(key);
    if (found == nullptr) return std::nullopt;
    const RegistryValue* value = found->findValue(name);
    if (value == nullptr) return std::nullopt;
    return *value;
}

bool RegistryStore::setValue(const KeyPath& key, std::string_view name, std::uint32_t type, std::string data) {
    ensureLoaded();
    if (!validName(name) || tree_.find(key) == nullptr) return false;
    record(RegistryChange{RegistryChange::Kind::SetValue, key, std::string(name), type, data});
    return tree_.setValue(key, name, type, std::move(data));
}

bool RegistryStore::deleteValue(const KeyPath& key, std::string_view name) {
    ensureLoaded();
    if (!tree_.deleteValue(key, name)) return false;
    record(RegistryChange{RegistryChange::Kind::DeleteValue, key, std::string(name), REG_NONE, {}});
    return true;
}

bool RegistryStore::flush() {
    ensureLoaded();
    lastError_.clear();
    if (pending_.empty()) return true;
    if (file_.empty()) {
        lastError_ = "No folder for the settings file was found (HOME is not set).";
        return false;
    }
    if (blocked_) {
        lastError_ = "The damaged settings file " + inQuotes(file_) + " was left in place and is not written over.";
        return false;
    }
    const fs::path folder = file_.parent_path();
    std::error_code ec;
    if (!folder.empty()) {
        fs::create_directories(folder, ec);
        if (ec || !fs::is_directory(folder)) {
            lastError_ = "The folder " + inQuotes(folder) + " cannot be created: " +
                         (ec ? ec.message() : std::string("a file of that name is in the way"));
            return false;
        }
    }
    fs::path lockPath = file_;
    lockPath += ".lock";
    FileDescriptor lock(::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (lock.get() < 0) {
        lastError_ = "The lock file " + inQuotes(lockPath) + " cannot be opened: " + systemError(errno);
        return false;
    }
    const auto deadline = std::chrono::steady_clock::now() + options_.lockTimeout;
    while (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
        const int error = errno;
        if (error == EINTR) continue;
        if (error != EWOULDBLOCK) {
            lastError_ = "The lock file " + inQuotes(lockPath) + " cannot be locked: " + systemError(error);
            return false;
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            lastError_ = "The settings file " + inQuotes(file_) + " is being written by another instance of Vantorel.";
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    // Start from what is on disk now, then add our changes.
    RegistryTree merged;
    if (readFile(merged) == ReadOutcome::Blocked) {
        lastError_ = "The damaged settings file " + inQuotes(file_) + " was left in place and is not written over.";
        return false;
    }
    for (const auto& change : pending_) merged.apply(change);
    const bool written = writeFile(RegistryFile::format(merged));
    tree_ = std::move(merged);  // what was just read, with our changes on top
    if (!written) return false;
    pending_.clear();
    loadedIdentity_ = currentIdentity();
    return true;
}

bool RegistryStore::writeFile(const std::string& text) {
    try {
        // A new store file is the user's alone; an existing one keeps its
        // mode, owner and group.
        struct stat info {};
        std::optional<AtomicFileWriter> writer;
        if (::stat(file_.c_str(), &info) == 0)
            writer.emplace(file_.string());
        else
            writer.emplace(file_.string(), AtomicFileWriter::Attributes{0600, ::geteuid(), ::getegid(), {}});
        writer->write(text);
        writer->commit();  // the folder is flushed too, so that the rename survives a power cut
    } catch (const std::system_error& error) {
        lastError_ = "The settings file " + inQuotes(file_) + " cannot be written: " + error.code().message();
        return false;
    }
    return true;
}

std::error_code RegistryStore::renameFile(const fs::path& from, const fs::path& to) {
    if (::rename(from.c_str(), to.c_str()) != 0) return {errno, std::system_category()};
    return {};
}

}  // namespace vantorel
