#include "core/AtomicFileWriter.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <mutex>
#include <optional>
#include <system_error>
#include <vector>

#include "core/FolderSync.h"
#include "core/FrontEndMessages.h"
#include "core/TemporaryFiles.h"

namespace vantorel {
namespace {

constexpr std::size_t kBufferSize = 1 << 20;
constexpr const char* kAccessAcl = "system.posix_acl_access";

// What the process is: its mask read once, its identity each time (a
// process may take another, as a forked test does).
struct Process {
    uid_t euid = ::geteuid();
    gid_t egid = ::getegid();
    mode_t umask = umaskOnce();

    static mode_t umaskOnce() {
        static const mode_t mask = currentUmask();
        return mask;
    }

    static mode_t currentUmask() {
        // The system tells the mask without changing it here; elsewhere
        // reading it means setting it for a moment.
        if (std::FILE* status = std::fopen("/proc/self/status", "r")) {
            char line[256];
            unsigned mask = 0;
            bool found = false;
            while (!found && std::fgets(line, sizeof line, status)) found = std::sscanf(line, "Umask: %o", &mask) == 1;
            std::fclose(status);
            if (found) return static_cast<mode_t>(mask);
        }
        const mode_t mask = ::umask(022);
        ::umask(mask);
        return mask;
    }
};

Process process() { return Process{}; }

// A new file without a name holds its descriptor until it is committed:
// a Replace with many files waiting for their turn needs more descriptors
// than the usual soft limit of 1024. The hard limit is the system's word.
void allowManyOpenFiles() {
    static std::once_flag once;
    std::call_once(once, [] {
        rlimit limit{};
        if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= limit.rlim_max) return;
        limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, rlim_t{1} << 16);
        ::setrlimit(RLIMIT_NOFILE, &limit);
    });
}

// Reads an attribute list or value whose size may change meanwhile.
template <class Get>
std::optional<std::vector<char>> readSized(Get get) {
    std::vector<char> bytes;
    for (int attempt = 0; attempt < 3; ++attempt) {
        const ssize_t size = get(nullptr, 0);
        if (size < 0) return std::nullopt;
        bytes.resize(static_cast<std::size_t>(size));
        if (size == 0) return bytes;
        const ssize_t got = get(bytes.data(), bytes.size());
        if (got < 0 && errno == ERANGE) continue;  // it grew meanwhile
        if (got < 0) return std::nullopt;
        bytes.resize(static_cast<std::size_t>(got));
        return bytes;
    }
    errno = ERANGE;
    return std::nullopt;
}

// Where extended attributes are read from: an open file, or a path.
struct AttributeSource {
    int fd = -1;
    std::string path;

    // The names of its attributes; empty when it has none or the file
    // system keeps none.
    std::vector<std::string> names() const {
        const auto list = readSized([this](char* out, std::size_t size) {
            return fd >= 0 ? ::flistxattr(fd, out, size) : ::listxattr(path.c_str(), out, size);
        });
        std::vector<std::string> names;
        if (!list) return names;
        for (std::size_t at = 0; at < list->size();) {
            names.emplace_back(list->data() + at);
            at += names.back().size() + 1;
        }
        return names;
    }

    // Copies one attribute to `to`; false with errno set when that fails.
    bool copy(const std::string& name, int to) const {
        const auto value = readSized([&](char* out, std::size_t size) {
            return fd >= 0 ? ::fgetxattr(fd, name.c_str(), out, size) : ::getxattr(path.c_str(), name.c_str(), out, size);
        });
        if (!value) return errno == ENODATA;  // removed meanwhile
        return ::fsetxattr(to, name.c_str(), value->data(), value->size(), 0) == 0;
    }
};

// Attributes that only a privileged process (or a security module) may set
// are kept where allowed; the new file then has what the system gives it.
bool mayBeLost(const std::string& name) {
    return name.rfind("security.", 0) == 0 || name.rfind("trusted.", 0) == 0;
}

// Unnamed files are not to be had here (an older kernel, a file system
// without them): the new file is named from the start.
bool noUnnamedFiles(int error) {
    return error == EOPNOTSUPP || error == EISDIR || error == EINVAL || error == ENOENT;
}

}  // namespace

int linkOpenFile(int fd, int folder, const std::string& name) {
    // A process allowed to reach any file links the descriptor itself;
    // others go through the descriptor's entry in /proc.
    if (::linkat(fd, "", folder, name.c_str(), AT_EMPTY_PATH) == 0) return 0;
    if (errno != ENOENT) return errno;
    const std::string self = "/proc/self/fd/" + std::to_string(fd);
    return ::linkat(AT_FDCWD, self.c_str(), folder, name.c_str(), AT_SYMLINK_FOLLOW) == 0 ? 0 : errno;
}

int exchangeNames(int fromFolder, const std::string& from, int toFolder, const std::string& to) {
    return ::renameat2(fromFolder, from.c_str(), toFolder, to.c_str(), RENAME_EXCHANGE) == 0 ? 0 : errno;
}

AtomicFileWriter::AtomicFileWriter(const std::string& target) : path_(target) {
    const std::size_t slash = target.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : slash == 0 ? "/" : target.substr(0, slash);
    name_ = slash == std::string::npos ? target : target.substr(slash + 1);
    ownFolder_.reset(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!ownFolder_) fail(errno);
    struct stat st {};
    if (::fstatat(ownFolder_.get(), name_.c_str(), &st, 0) == 0) {
        const Attributes keep{st.st_mode, st.st_uid, st.st_gid, -1};
        create(ownFolder_.get(), &keep, target);
    } else {
        create(ownFolder_.get(), nullptr, {});
    }
}

AtomicFileWriter::AtomicFileWriter(const std::string& target, const Attributes& keep) : path_(target) {
    const std::size_t slash = target.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : slash == 0 ? "/" : target.substr(0, slash);
    name_ = slash == std::string::npos ? target : target.substr(slash + 1);
    ownFolder_.reset(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!ownFolder_) fail(errno);
    create(ownFolder_.get(), &keep, {});
}

AtomicFileWriter::AtomicFileWriter(int folder, std::string name, std::string path, const Attributes* keep)
    : name_(std::move(name)), path_(std::move(path)) {
    create(folder, keep, {});
}

void AtomicFileWriter::fail(int error) const {
    throw std::system_error(error, std::generic_category(), path_);
}

void AtomicFileWriter::create(int folder, const Attributes* keep, const std::string& keepFrom) {
    const Process self = process();
    allowManyOpenFiles();
    const mode_t mode = keep ? (keep->mode & 07777) : (0666 & ~self.umask);
    TemporaryFiles::FolderFacts facts;
    try {
        facts = TemporaryFiles::prepareFolder(folder);
    } catch (const std::system_error& error) {
        fail(error.code().value());
    }
    folderDevice_ = facts.device;
    folderInode_ = facts.inode;
    fd_.reset(::openat(folder, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, mode & 0777));
    if (fd_) {
        unnamed_ = true;
    } else if (!noUnnamedFiles(errno)) {
        fail(errno);
    } else {
        for (int attempt = 0; !fd_; ++attempt) {
            std::string name = TemporaryFiles::newName();
            fd_.reset(::openat(folder, name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode & 0777));
            if (fd_) {
                tempName_ = std::move(name);
                tempFolder_ = ::fcntl(folder, F_DUPFD_CLOEXEC, 0);
                break;
            }
            if (errno != EEXIST || attempt > 100) fail(errno);
        }
    }
    // A new file (nothing to keep) takes what the folder gives new files.
    if (!keep) return;
    try {
        keepAttributes(*keep, mode, facts.hasDefaultAcl, keepFrom);
    } catch (...) {
        discard();
        throw;
    }
}

void AtomicFileWriter::keepAttributes(const Attributes& keep, mode_t mode, bool folderHasDefaultAcl,
                                      const std::string& keepFrom) {
    const Process self = process();
    const int fd = fd_.get();
    // The owner and group first: changing them clears the set-user-ID and
    // set-group-ID bits, which the mode then sets again. Only a privileged
    // process may give a file away; failing that the file is ours.
    const uid_t owner = self.euid == 0 && keep.owner != self.euid ? keep.owner : static_cast<uid_t>(-1);
    const gid_t group = keep.group != self.egid ? keep.group : static_cast<gid_t>(-1);
    bool ownerChanged = false;
    if (owner != static_cast<uid_t>(-1) || group != static_cast<gid_t>(-1)) ownerChanged = ::fchown(fd, owner, group) == 0;
    AttributeSource source;
    if (keep.source >= 0) source.fd = keep.source;
    else source.path = keepFrom;
    const std::vector<std::string> names =
        source.fd >= 0 || !source.path.empty() ? source.names() : std::vector<std::string>();
    bool sourceHasAcl = false;
    for (const std::string& n : names) sourceHasAcl = sourceHasAcl || n == kAccessAcl;
    // A folder's default ACL gave the new file an ACL the old one did not have.
    if (folderHasDefaultAcl && !sourceHasAcl && ::fremovexattr(fd, kAccessAcl) != 0 && errno != ENODATA) fail(errno);
    const bool maskedAtCreation = (mode & ~self.umask) != mode || folderHasDefaultAcl;
    if ((maskedAtCreation || ownerChanged || (mode & 07000) != 0) && ::fchmod(fd, mode) != 0) fail(errno);
    // The ACL last: it sets the group bits of the mode to its mask, as on the old file.
    for (const std::string& n : names)
        if (!source.copy(n, fd) && !mayBeLost(n)) fail(errno);
}

AtomicFileWriter::~AtomicFileWriter() {
    if (!committed_) discard();
    if (tempFolder_ >= 0) ::close(tempFolder_);
}

void AtomicFileWriter::writeAll(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t n = ::write(fd_.get(), bytes.data(), bytes.size());
        if (n < 0) {
            if (errno == EINTR) continue;
            fail(errno);
        }
        bytes.remove_prefix(static_cast<std::size_t>(n));
    }
}

void AtomicFileWriter::flushBuffer() {
    writeAll(buffer_);
    buffer_.clear();
}

void AtomicFileWriter::write(std::string_view bytes) {
    hash_.add(bytes);
    written_.size += bytes.size();
    if (buffer_.size() + bytes.size() > kBufferSize) flushBuffer();
    if (bytes.size() >= kBufferSize) writeAll(bytes);
    else buffer_.append(bytes);
}

void AtomicFileWriter::finish() { close(true, 0); }

void AtomicFileWriter::finishUnsynced(dev_t device) { close(false, device); }

void AtomicFileWriter::close(bool sync, dev_t unsyncedDevice) {
    if (finished_) return;
    flushBuffer();
    std::string().swap(buffer_);  // a finished file may wait a while for its turn
    struct stat st {};
    if (::fstat(fd_.get(), &st) != 0) fail(errno);
    if ((sync || st.st_dev != unsyncedDevice) && ::fsync(fd_.get()) != 0) fail(errno);
    written_.hash = hash_.value();
    written_.modifiedNs = static_cast<std::int64_t>(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec;
    written_.device = st.st_dev;
    written_.inode = st.st_ino;
    finished_ = true;
    // A named file needs no descriptor any more; an unnamed one lives by it.
    if (!unnamed_ && ::close(fd_.release()) != 0) fail(errno);
}

// The file system takes no second name for the new file: it is copied
// into a named file of its own, which keeps the same attributes.
void AtomicFileWriter::nameCopy(int folder) {
    struct stat st {};
    if (::fstat(fd_.get(), &st) != 0) fail(errno);
    FileDescriptor copy;
    std::string name;
    for (int attempt = 0; !copy; ++attempt) {
        name = TemporaryFiles::newName();
        copy.reset(::openat(folder, name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, st.st_mode & 0777));
        if (!copy && (errno != EEXIST || attempt > 100)) fail(errno);
    }
    tempName_ = name;
    tempFolder_ = ::fcntl(folder, F_DUPFD_CLOEXEC, 0);
    if (st.st_uid != process().euid || st.st_gid != process().egid) ::fchown(copy.get(), st.st_uid, st.st_gid);
    if (::fchmod(copy.get(), st.st_mode & 07777) != 0) fail(errno);
    const AttributeSource source{fd_.get(), {}};
    for (const std::string& n : source.names())
        if (!source.copy(n, copy.get()) && !mayBeLost(n)) fail(errno);
    std::vector<char> buffer(kBufferSize);
    for (off_t at = 0;;) {
        const ssize_t n = ::pread(fd_.get(), buffer.data(), buffer.size(), at);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) fail(errno);
        if (n == 0) break;
        for (ssize_t done = 0; done < n;) {
            const ssize_t w = ::write(copy.get(), buffer.data() + done, static_cast<std::size_t>(n - done));
            if (w < 0 && errno == EINTR) continue;
            if (w < 0) fail(errno);
            done += w;
        }
        at += n;
    }
    if (::fsync(copy.get()) != 0) fail(errno);
    if (::fstat(copy.get(), &st) != 0) fail(errno);
    written_.device = st.st_dev;
    written_.inode = st.st_ino;
    written_.modifiedNs = static_cast<std::int64_t>(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec;
    fd_.reset();
    unnamed_ = false;
}

const std::string& AtomicFileWriter::link(int folder) {
    if (!finished_) finish();
    if (!unnamed_ || !tempName_.empty()) return tempName_;
    for (int attempt = 0;; ++attempt) {
        std::string name = TemporaryFiles::newName();
        const int error = linkOpenFile(fd_.get(), folder, name);
        if (error == 0) {
            tempName_ = std::move(name);
            tempFolder_ = ::fcntl(folder, F_DUPFD_CLOEXEC, 0);
            return tempName_;
        }
        if (error == EEXIST && attempt < 100) continue;
        if (error == EPERM || error == EOPNOTSUPP || error == EMLINK || error == ENOSYS) {
            nameCopy(folder);
            return tempName_;
        }
        fail(error);
    }
}

void AtomicFileWriter::placed() noexcept {
    committed_ = true;
    tempName_.clear();
    fd_.reset();
}

void AtomicFileWriter::commit(FolderSync* folders) { commit(ownFolder_.get(), folders); }

void AtomicFileWriter::commit(int folder, FolderSync* folders) {
    const std::string& temp = link(folder);
    if (::renameat(folder, temp.c_str(), folder, name_.c_str()) != 0) fail(errno);
    placed();
    if (folders) folders->add(folder, folderDevice_, folderInode_);
    else FolderSync::syncNow(folder);
}

void AtomicFileWriter::discard() noexcept {
    fd_.reset();
    if (!tempName_.empty() && !committed_ && tempFolder_ >= 0) ::unlinkat(tempFolder_, tempName_.c_str(), 0);
    tempName_.clear();
}

bool saveBytes(MessageHost& messages, const std::string& path, std::string_view bytes) {
    try {
        AtomicFileWriter writer(path);
        writer.write(bytes);
        writer.commit();
        return true;
    } catch (const std::exception& error) {
        messages.showMessage(fileNotSaved(path, error.what()));
        return false;
    }
}

}  // namespace vantorel
