#include "core/LockedFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <thread>

namespace vantorel {
namespace {

// Another run holds a file's lock for the moment of one rename; anything
// longer is another program's lock, which is not waited for past this.
constexpr auto kLongestWait = std::chrono::seconds(5);

}  // namespace

LockedFile LockedFile::open(int folder, const std::string& name, int& error) {
    LockedFile file;
    error = 0;
    // Non-blocking: a pipe put in the file's place must not hang the run.
    file.fd_.reset(::openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (!file.fd_) {
        error = errno;
        return file;
    }
    const auto deadline = std::chrono::steady_clock::now() + kLongestWait;
    auto pause = std::chrono::microseconds(50);
    while (::flock(file.fd_.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno == EINTR) continue;
        if (errno != EWOULDBLOCK || std::chrono::steady_clock::now() >= deadline) {
            error = errno;
            file.fd_.reset();
            return file;
        }
        std::this_thread::sleep_for(pause);
        pause = std::min<std::chrono::microseconds>(pause * 2, std::chrono::milliseconds(2));
    }
    struct stat st {};
    if (::fstat(file.fd_.get(), &st) != 0) {
        error = errno;
        file.fd_.reset();
        return file;
    }
    file.identity_ = FileIdentity::of(st);
    file.regular_ = S_ISREG(st.st_mode);
    return file;
}

bool LockedFile::stillAt(int folder, const std::string& name) const {
    struct stat st {};
    return fd_ && ::fstatat(folder, name.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0 && st.st_dev == identity_.device &&
           st.st_ino == identity_.inode;
}

}  // namespace vantorel
