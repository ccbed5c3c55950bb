#include "history/KeptContents.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "core/AtomicFileWriter.h"
#include "core/ContentHash.h"
#include "core/FileDescriptor.h"
#include "files/FileFunctions.h"
#include "files/FileListBuilder.h"

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

// Makes a private folder, or takes one that is ours alone already.
bool privateFolder(const std::string& path) {
    if (::mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) return false;
    struct stat st {};
    return ::lstat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode) && st.st_uid == ::geteuid() &&
           (st.st_mode & 077) == 0;
}

}  // namespace

KeptContents::KeptContents(std::string folder, std::string runName)
    : folder_(withTrailingSeparator(std::move(folder))), runName_(std::move(runName)) {
    folderFd_.reset(::open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat st {};
    if (!folderFd_ || ::fstat(folderFd_.get(), &st) != 0) fail(folder_);
    device_ = st.st_dev;
}

KeptContents::Kept KeptContents::keep(int file, dev_t device, const std::string& path, const std::string& name) {
    std::optional<std::string> folder = device == device_ ? std::optional(folder_) : folderOn(device, path);
    if (folder) {
        const FileDescriptor there(*folder == folder_ ? ::fcntl(folderFd_.get(), F_DUPFD_CLOEXEC, 0)
                                                      : ::open(folder->c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        const int error = there ? linkOpenFile(file, there.get(), name) : errno;
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
    const std::string run = hidden + "/" + runName_;
    struct stat st {};
    if (!privateFolder(hidden) || !privateFolder(run) || ::stat(run.c_str(), &st) != 0 || st.st_dev != device)
        return found;
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
