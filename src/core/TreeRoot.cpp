#include "core/TreeRoot.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>
#include <system_error>

namespace vantorel {
namespace {

[[noreturn]] void fail(int error, const std::string& what) {
    throw std::system_error(error, std::generic_category(), what);
}

constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

// Whether the kernel has openat2; learnt at the first call.
std::atomic<bool> noOpenat2{false};

// One folder at a time, for kernels without openat2.
int openStepByStep(int from, std::string_view relative) {
    FileDescriptor current(::fcntl(from, F_DUPFD_CLOEXEC, 0));
    if (!current) return -1;
    std::size_t at = 0;
    while (at < relative.size()) {
        std::size_t slash = relative.find('/', at);
        if (slash == std::string_view::npos) slash = relative.size();
        const std::string part(relative.substr(at, slash - at));
        at = slash + 1;
        if (part.empty() || part == ".") continue;
        if (part == "..") {
            errno = EXDEV;
            return -1;
        }
        const int next = ::openat(current.get(), part.c_str(), kFolderFlags | O_NOFOLLOW);
        if (next < 0) return -1;
        current.reset(next);
    }
    return current.release();
}

}  // namespace

FileDescriptor openFolderBeneath(int from, std::string_view relative) {
    const std::string path = relative.empty() ? std::string(".") : std::string(relative);
    if (!noOpenat2.load(std::memory_order_relaxed)) {
        open_how how{};
        how.flags = kFolderFlags;
        how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS;
        while (true) {
            const long fd = ::syscall(SYS_openat2, from, path.c_str(), &how, sizeof how);
            if (fd >= 0) return FileDescriptor(static_cast<int>(fd));
            if (errno == EAGAIN || errno == EINTR) continue;  // a rename raced with the walk: try again
            break;
        }
        if (errno != ENOSYS && errno != EPERM) fail(errno, path);  // EPERM: a filter that forbids the call
        noOpenat2 = true;
    }
    const int fd = openStepByStep(from, path);
    if (fd < 0) fail(errno, path);
    return FileDescriptor(fd);
}

TreeRoot TreeRoot::open(const std::string& folder) {
    TreeRoot root;
    root.fd_.reset(::open(folder.empty() ? "." : folder.c_str(), kFolderFlags));
    if (!root.fd_) fail(errno, folder);
    struct stat st {};
    if (::fstat(root.fd_.get(), &st) != 0) fail(errno, folder);
    root.device_ = st.st_dev;
    root.inode_ = st.st_ino;
    root.typed_ = folder.empty() || folder.back() == '/' ? folder : folder + '/';
    // Where the descriptor really leads, not where the name leads by now.
    char real[PATH_MAX];
    const std::string self = "/proc/self/fd/" + std::to_string(root.fd_.get());
    const ssize_t n = ::readlink(self.c_str(), real, sizeof real - 1);
    if (n > 0 && real[0] == '/') {
        root.realPath_.assign(real, static_cast<std::size_t>(n));
    } else {
        std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(folder.c_str(), nullptr), &std::free);
        if (!resolved) fail(errno, folder);
        root.realPath_ = resolved.get();
    }
    if (root.realPath_.back() != '/') root.realPath_ += '/';
    return root;
}

TreeRoot TreeRoot::reopen(const std::string& realPath, dev_t device, ino_t inode) {
    if (realPath.empty() || realPath[0] != '/') fail(EINVAL, realPath);
    const FileDescriptor top(::open("/", kFolderFlags));
    if (!top) fail(errno, "/");
    TreeRoot root;
    root.fd_ = openFolderBeneath(top.get(), std::string_view(realPath).substr(1));
    struct stat st {};
    if (::fstat(root.fd_.get(), &st) != 0) fail(errno, realPath);
    if (st.st_dev != device || st.st_ino != inode) fail(ESTALE, realPath);
    root.device_ = device;
    root.inode_ = inode;
    root.realPath_ = realPath.back() == '/' ? realPath : realPath + '/';
    root.typed_ = root.realPath_;
    return root;
}

std::optional<std::string> TreeRoot::relativeOf(const std::string& path, bool walked, bool link) const {
    if (walked && !link && path.size() > typed_.size() && path.compare(0, typed_.size(), typed_) == 0)
        return path.substr(typed_.size());
    std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    if (!real) return std::nullopt;
    const std::string_view resolved(real.get());
    if (resolved.size() <= realPath_.size() || resolved.compare(0, realPath_.size(), realPath_) != 0)
        return std::nullopt;
    return std::string(resolved.substr(realPath_.size()));
}

FileDescriptor TreeRoot::openFolder(std::string_view relative) const { return openFolderBeneath(fd_.get(), relative); }

std::string_view TreeRoot::folderOf(std::string_view relative) noexcept {
    const std::size_t slash = relative.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : relative.substr(0, slash + 1);
}

std::string_view TreeRoot::nameOf(std::string_view relative) noexcept {
    const std::size_t slash = relative.rfind('/');
    return slash == std::string_view::npos ? relative : relative.substr(slash + 1);
}

}  // namespace vantorel
