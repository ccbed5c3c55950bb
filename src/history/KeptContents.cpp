#include "history/KeptContents.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <system_error>
#include <vector>

#include "core/AtomicFileWriter.h"
#include "core/ContentHash.h"
#include "core/FileDescriptor.h"
#include "files/FileFunctions.h"
#include "files/FileListBuilder.h"
#include "history/JournalTrust.h"

namespace vantorel::history {
namespace {

[[noreturn]] void fail(const std::string& path) { throw std::system_error(errno, std::generic_category(), path); }

FileIdentity identityOf(const std::string& path) {
    struct stat st {};
    if (::lstat(path.c_str(), &st) != 0) fail(path);
    return FileIdentity::of(st);
}

std::string parentOf(const std::string& folder) {
    const std::size_t slash = folder.rfind('/');
    if (slash == std::string::npos || slash == 0) return "/";
    return folder.substr(0, slash);
}

bool missing(const std::string& path) {
    struct stat st {};
    return ::lstat(path.c_str(), &st) != 0 && (errno == ENOENT || errno == ENOTDIR);
}

// Whether the journal's run folder is gone, under its own name and set aside.
bool runGone(const std::string& run) {
    const std::string name = FileNameOf(run);
    return !name.empty() && missing(run) && missing(FolderOf(run) + "old-" + name);
}

std::optional<std::string> readRecord(int run) {
    const FileDescriptor fd(::openat(run, KeptContents::kJournalRunFile, O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    if (!fd) return std::nullopt;
    std::string text(4096, '\0');
    const ssize_t n = ::read(fd.get(), text.data(), text.size());
    if (n <= 0) return std::nullopt;
    text.resize(static_cast<std::size_t>(n));
    if (const std::size_t end = text.find('\n'); end != std::string::npos) text.resize(end);
    if (text.empty() || text.front() != '/') return std::nullopt;
    return text;
}

bool writeRecord(int run, const std::string& journalRun) {
    const FileDescriptor fd(
        ::openat(run, KeptContents::kJournalRunFile, O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0600));
    const std::string line = journalRun + "\n";
    return fd && ::write(fd.get(), line.data(), line.size()) == static_cast<ssize_t>(line.size());
}

// Removes `name` in the folder `parent`, never through a link (a link is
// removed itself). A folder that is not ours stays, with what is in it; the
// files in ours go whoever owns them, as they are names that we made.
void removeTree(int parent, const std::string& name) {
    const int fd = ::openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (fd < 0) {
        if (errno == ENOTDIR || errno == ELOOP) ::unlinkat(parent, name.c_str(), 0);
        return;
    }
    struct stat st {};
    DIR* dir = ::fdopendir(fd);
    if (!dir) {
        ::close(fd);
        return;
    }
    if (::fstat(fd, &st) == 0 && st.st_uid == ::geteuid()) {
        std::vector<std::string> names;
        while (const dirent* entry = ::readdir(dir))
            if (std::string_view(entry->d_name) != "." && std::string_view(entry->d_name) != "..")
                names.emplace_back(entry->d_name);
        for (const std::string& entry : names) {
            if (::fstatat(fd, entry.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(st.st_mode))
                removeTree(fd, entry);
            else
                ::unlinkat(fd, entry.c_str(), 0);
        }
    }
    ::closedir(dir);
    ::unlinkat(parent, name.c_str(), AT_REMOVEDIR);  // fails, as it should, when something stayed
}

// Clears the run folders in `hidden` (a journal's folder, ours) that are
// ours and whose journal run is gone. A folder made before runs recorded
// their journal names none: it is taken for the current journal's when that
// journal holds a run of its name (the names hold the time to the
// nanosecond and the process), and recorded so; otherwise it is left, as it
// may belong to another journal of the same user, which cannot be told,
// unless it is empty (rmdir takes nothing else), as the runs taken back
// leave theirs.
void clearOrphans(int hidden, const std::string& ownRun, const std::string& journalRun) {
    const int listed = ::dup(hidden);
    DIR* dir = listed < 0 ? nullptr : ::fdopendir(listed);
    if (!dir) {
        if (listed >= 0) ::close(listed);
        return;
    }
    ::rewinddir(dir);
    std::vector<std::string> names;
    while (const dirent* entry = ::readdir(dir)) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != ".." && name != kUndoJournalMarker && name != ownRun) names.emplace_back(name);
    }
    ::closedir(dir);
    const std::string journal = FolderOf(journalRun);
    for (const std::string& name : names) {
        const FileDescriptor run(::openat(hidden, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        struct stat st {};
        if (!run || ::fstat(run.get(), &st) != 0 || st.st_uid != ::geteuid()) continue;
        if (const std::optional<std::string> owner = readRecord(run.get())) {
            if (runGone(*owner)) removeTree(hidden, name);
        } else if (!runGone(journal + name)) {
            writeRecord(run.get(), journal + name);
        } else {
            ::unlinkat(hidden, name.c_str(), AT_REMOVEDIR);
        }
    }
}

}  // namespace

KeptContents::KeptContents(std::string folder, std::string runName)
    : folder_(withTrailingSeparator(std::move(folder))),
      runName_(std::move(runName)),
      journalRun_(parentOf(folder_.substr(0, folder_.size() - 1))) {
    folderFd_.reset(::open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat st {};
    if (!folderFd_ || ::fstat(folderFd_.get(), &st) != 0) fail(folder_);
    device_ = st.st_dev;
}

KeptContents::Kept KeptContents::keep(int file, dev_t device, const std::string& path, const std::string& name) {
    std::optional<std::string> folder = device == device_ ? std::optional(folder_) : folderOn(device, path);
    if (folder) {
        FileDescriptor elsewhere;
        if (*folder != folder_)
            elsewhere.reset(::open(folder->c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        const int there = *folder == folder_ ? folderFd_.get() : elsewhere.get();
        const int error = there >= 0 ? linkOpenFile(file, there, name) : errno;
        if (error == 0) {
            unsynced_.insert(*folder);
            struct stat st {};
            if (::fstat(file, &st) != 0) fail(path);
            return Kept{*folder + name, FileIdentity::of(st), 0};  // a second name of the same file
        }
        if (error == ENOSPC || error == EDQUOT) {
            errno = error;
            fail(path);
        }
    }
    return copy(file, path, name);  // no second name to be had there
}

KeptContents::Kept KeptContents::copy(int file, const std::string& path, const std::string& name) {
    struct stat st {};
    if (::fstat(file, &st) != 0) fail(path);
    // The copy keeps the file's attributes, to give them back with it; the
    // run's folder keeps it private.
    const std::string kept = folder_ + name;
    const AtomicFileWriter::Attributes keepAttributes{st.st_mode, st.st_uid, st.st_gid, file};
    AtomicFileWriter writer(folderFd_.get(), name, kept, &keepAttributes);
    ContentHash hash;
    std::string buffer(1 << 20, '\0');
    for (off_t at = 0;;) {
        const ssize_t n = ::pread(file, buffer.data(), buffer.size(), at);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) fail(path);
        if (n == 0) break;
        const std::string_view piece(buffer.data(), static_cast<std::size_t>(n));
        writer.write(piece);
        hash.add(piece);
        at += n;
    }
    writer.commit(folderFd_.get(), &copies_);
    return Kept{kept, identityOf(kept), hash.value()};
}

std::optional<std::string> KeptContents::folderOn(dev_t device, const std::string& file) {
    if (const auto known = elsewhereByDevice_.find(device); known != elsewhereByDevice_.end()) return known->second;
    std::optional<std::string>& found = elsewhereByDevice_[device];
    // The top of the file system: the last folder up the tree on the same device.
    std::string top = realFolderOf(FolderOf(file).empty() ? "." : FolderOf(file));
    if (top.size() > 1) top.pop_back();
    for (struct stat st {}; top != "/";) {
        const std::string parent = parentOf(top);
        if (::stat(parent.c_str(), &st) != 0 || st.st_dev != device) break;
        top = parent;
    }
    const std::string hidden =
        withTrailingSeparator(top) + std::string(kUndoFolderPrefix) + std::to_string(::geteuid());
    // A journal's folder like the journal's own: ours, trusted, marked.
    if (makeJournalFolder(hidden)) return found;
    const FileDescriptor held(::open(hidden.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat st {};
    if (!held || ::fstat(held.get(), &st) != 0 || st.st_uid != ::geteuid() || st.st_dev != device) return found;
    clearOrphans(held.get(), runName_, journalRun_);
    const std::string run = hidden + "/" + runName_;
    if (::mkdirat(held.get(), runName_.c_str(), 0700) != 0) return found;
    const FileDescriptor made(
        ::openat(held.get(), runName_.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!made || ::fstat(made.get(), &st) != 0 || st.st_dev != device || !writeRecord(made.get(), journalRun_)) {
        removeTree(held.get(), runName_);  // no folder that names no run is left by this version
        return found;
    }
    found = run + "/";
    elsewhere_.push_back(run);
    FolderSync::syncNow(withTrailingSeparator(top));
    FolderSync::syncNow(withTrailingSeparator(hidden));
    return found;
}

void KeptContents::sync() {
    copies_.flush();
    for (const std::string& folder : unsynced_) FolderSync::syncNow(folder);
    unsynced_.clear();
}

}  // namespace vantorel::history
