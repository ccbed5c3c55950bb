#include "core/AtomicFileWriter.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <vector>

#include "core/FolderSync.h"
#include "core/TemporaryFiles.h"

namespace vantorel {
namespace {

constexpr std::size_t kBufferSize = 1 << 20;
constexpr const char* kAccessAcl = "system.posix_acl_access";

// What the process is, read once.
struct Process {
    pid_t id = ::getpid();
    uid_t euid = ::geteuid();
    gid_t egid = ::getegid();
    mode_t umask = currentUmask();

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

const Process& process() {
    static const Process instance;
    return instance;
}

// The names of a file's extended attributes; empty when it has none or the
// file system keeps none.
std::vector<std::string> attributeNames(const std::string& path) {
    std::vector<std::string> names;
    std::vector<char> list;
    for (int attempt = 0; attempt < 3; ++attempt) {
        const ssize_t size = ::listxattr(path.c_str(), nullptr, 0);
        if (size <= 0) return names;
        list.resize(static_cast<std::size_t>(size));
        const ssize_t got = ::listxattr(path.c_str(), list.data(), list.size());
        if (got < 0 && errno == ERANGE) continue;  // it grew meanwhile
        if (got <= 0) return names;
        for (std::size_t at = 0; at < static_cast<std::size_t>(got);) {
            names.emplace_back(list.data() + at);
            at += names.back().size() + 1;
        }
        break;
    }
    return names;
}

// Copies one attribute; false with errno set when that fails.
bool copyAttribute(const std::string& from, int to, const std::string& name) {
    std::vector<char> value;
    for (int attempt = 0; attempt < 3; ++attempt) {
        const ssize_t size = ::getxattr(from.c_str(), name.c_str(), nullptr, 0);
        if (size < 0) return errno == ENODATA;  // removed meanwhile
        value.resize(static_cast<std::size_t>(size));
        const ssize_t got = ::getxattr(from.c_str(), name.c_str(), value.data(), value.size());
        if (got < 0 && errno == ERANGE) continue;
        if (got < 0) return false;
        return ::fsetxattr(to, name.c_str(), value.data(), static_cast<std::size_t>(got), 0) == 0;
    }
    errno = ERANGE;
    return false;
}

// Attributes that only a privileged process (or a security module) may set
// are kept where allowed; the new file then has what the system gives it.
bool mayBeLost(const std::string& name) {
    return name.rfind("security.", 0) == 0 || name.rfind("trusted.", 0) == 0;
}

}  // namespace

AtomicFileWriter::AtomicFileWriter(const std::string& target) : target_(target) {
    struct stat st {};
    if (::stat(target.c_str(), &st) == 0) {
        const Attributes keep{st.st_mode, st.st_uid, st.st_gid, {}};
        create(&keep);
    } else {
        create(nullptr);
    }
}

AtomicFileWriter::AtomicFileWriter(const std::string& target, const Attributes& keep) : target_(target) {
    create(&keep);
}

void AtomicFileWriter::fail(int error) const {
    throw std::system_error(error, std::generic_category(), target_);
}

void AtomicFileWriter::create(const Attributes* keep) {
    const Process& self = process();
    const mode_t mode = keep ? (keep->mode & 07777) : (0666 & ~self.umask);
    const std::size_t slash = target_.rfind('/');
    const std::size_t nameStart = slash == std::string::npos ? 0 : slash + 1;
    const std::string folder = target_.substr(0, nameStart);
    const std::string_view name = std::string_view(target_).substr(nameStart);
    const TemporaryFiles::FolderFacts facts = TemporaryFiles::prepareFolder(folder);
    static std::atomic<unsigned long> counter{0};
    bool shortName = false;
    for (int attempt = 0; fd_ < 0; ++attempt) {
        const unsigned long number = counter++;
        tempPath_ = folder + (shortName ? TemporaryFiles::shortNameFor(self.id, number)
                                        : TemporaryFiles::nameFor(name, self.id, number));
        fd_ = ::open(tempPath_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode & 0777);
        if (fd_ >= 0) break;
        const int error = errno;
        if (error == ENAMETOOLONG && !shortName) {
            shortName = true;  // a file system whose names are shorter than most
            continue;
        }
        if (error != EEXIST || attempt > 100) {
            tempPath_.clear();
            fail(error);
        }
    }
    // A new file (nothing to keep) takes what the folder gives new files.
    if (!keep) return;
    try {
        keepAttributes(*keep, mode, facts.hasDefaultAcl);
    } catch (...) {
        discard();
        throw;
    }
}

void AtomicFileWriter::keepAttributes(const Attributes& keep, mode_t mode, bool folderHasDefaultAcl) {
    const Process& self = process();
    // The owner and group first: changing them clears the set-user-ID and
    // set-group-ID bits, which the mode then sets again. Only a privileged
    // process may give a file away; failing that the file is ours.
    const uid_t owner = self.euid == 0 && keep.owner != self.euid ? keep.owner : static_cast<uid_t>(-1);
    const gid_t group = keep.group != self.egid ? keep.group : static_cast<gid_t>(-1);
    bool ownerChanged = false;
    if (owner != static_cast<uid_t>(-1) || group != static_cast<gid_t>(-1))
        ownerChanged = ::fchown(fd_, owner, group) == 0;
    const std::string& source = keep.source.empty() ? target_ : keep.source;
    const std::vector<std::string> names = attributeNames(source);
    bool sourceHasAcl = false;
    for (const std::string& n : names) sourceHasAcl = sourceHasAcl || n == kAccessAcl;
    // A folder's default ACL gave the new file an ACL the old one did not have.
    if (folderHasDefaultAcl && !sourceHasAcl && ::fremovexattr(fd_, kAccessAcl) != 0 && errno != ENODATA)
        fail(errno);
    const bool maskedAtCreation = (mode & ~self.umask) != mode || folderHasDefaultAcl;
    if ((maskedAtCreation || ownerChanged || (mode & 07000) != 0) && ::fchmod(fd_, mode) != 0) fail(errno);
    // The ACL last: it sets the group bits of the mode to its mask, as on the old file.
    for (const std::string& n : names)
        if (!copyAttribute(source, fd_, n) && !mayBeLost(n)) fail(errno);
}

AtomicFileWriter::~AtomicFileWriter() {
    if (!committed_) discard();
}

void AtomicFileWriter::writeAll(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t n = ::write(fd_, bytes.data(), bytes.size());
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
    flushBuffer();
    std::string().swap(buffer_);  // a finished file may wait a while for its turn
    struct stat st {};
    if (::fstat(fd_, &st) != 0) fail(errno);
    if ((sync || st.st_dev != unsyncedDevice) && ::fsync(fd_) != 0) fail(errno);
    written_.hash = hash_.value();
    written_.modifiedNs = static_cast<std::int64_t>(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec;
    written_.device = st.st_dev;
    written_.inode = st.st_ino;
    const int fd = fd_;
    fd_ = -1;
    if (::close(fd) != 0) fail(errno);
}

void AtomicFileWriter::commit(FolderSync* folders) {
    if (fd_ >= 0) finish();
    if (::rename(tempPath_.c_str(), target_.c_str()) != 0) fail(errno);
    committed_ = true;
    tempPath_.clear();
    const std::size_t slash = target_.rfind('/');
    const std::string folder = slash == std::string::npos ? std::string() : target_.substr(0, slash + 1);
    if (folders) folders->add(folder, written_.device);
    else FolderSync::syncNow(folder);
}

void AtomicFileWriter::discard() noexcept {
    if (fd_ >= 0) {
        ::close(fd_);
        fd_ = -1;
    }
    if (!tempPath_.empty() && !committed_) ::unlink(tempPath_.c_str());
    tempPath_.clear();
}

}  // namespace vantorel
