#include "history/KeptContents.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "core/AtomicFileWriter.h"
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
    struct stat st {};
    if (::stat(folder_.c_str(), &st) != 0) fail(folder_);
    device_ = st.st_dev;
}

KeptContents::Kept KeptContents::keep(const std::string& file, const FileIdentity& identity, const std::string& name) {
    std::optional<std::string> folder =
        identity.device == device_ ? std::optional(folder_) : folderOn(identity.device, file);
    if (folder) {
        const std::string kept = *folder + name;
        if (::linkat(AT_FDCWD, file.c_str(), AT_FDCWD, kept.c_str(), 0) == 0) {
            unsynced_.insert(*folder);
            return Kept{kept, identity};  // a second name of the same file
        }
        if (errno == ENOENT) fail(file);
    }
    return copy(file, name);  // no second name to be had there
}

KeptContents::Kept KeptContents::copy(const std::string& file, const std::string& name) {
    const FileDescriptor fd(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    if (!fd) fail(file);
    struct stat st {};
    if (::fstat(fd.get(), &st) != 0) fail(file);
    // The copy keeps the file's attributes, to give them back with it; the
    // run's folder keeps it private.
    const std::string kept = folder_ + name;
    AtomicFileWriter writer(kept, AtomicFileWriter::Attributes{st.st_mode, st.st_uid, st.st_gid, file});
    std::string buffer(1 << 20, '\0');
    while (true) {
        const ssize_t n = ::read(fd.get(), buffer.data(), buffer.size());
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) fail(file);
        if (n == 0) break;
        writer.write(std::string_view(buffer.data(), static_cast<std::size_t>(n)));
    }
    writer.commit(&copies_);
    return Kept{kept, identityOf(kept)};
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
