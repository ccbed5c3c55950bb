#include "files/AtomicFileWriter.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "files/FileFunctions.h"

namespace vantorel {
namespace {

constexpr std::size_t kBufferSize = 1 << 20;

[[noreturn]] void throwSystemError(int error, const std::string& what) {
    throw std::system_error(error, std::generic_category(), what);
}

}  // namespace

AtomicFileWriter::AtomicFileWriter(const std::string& target) : target_(target) {
    struct stat st {};
    const bool existed = ::stat(target.c_str(), &st) == 0;
    tempPath_ = FolderOf(target) + "." + FileNameOf(target) + ".vantorel-XXXXXX";
    fd_ = ::mkstemp(tempPath_.data());
    if (fd_ < 0) throwSystemError(errno, tempPath_);
    if (existed) {
        ::fchmod(fd_, st.st_mode & 07777);
        // Keep the owner and group where the system lets us; failing is harmless.
        if (::fchown(fd_, geteuid() == 0 ? st.st_uid : static_cast<uid_t>(-1), st.st_gid) != 0) {
        }
    }
    buffer_.reserve(kBufferSize);
}

AtomicFileWriter::~AtomicFileWriter() {
    if (!committed_) discard();
}

void AtomicFileWriter::flushBuffer() {
    std::size_t done = 0;
    while (done < buffer_.size()) {
        const ssize_t n = ::write(fd_, buffer_.data() + done, buffer_.size() - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            throwSystemError(errno, tempPath_);
        }
        done += static_cast<std::size_t>(n);
    }
    buffer_.clear();
}

void AtomicFileWriter::write(std::string_view bytes) {
    if (buffer_.size() + bytes.size() > kBufferSize) {
        flushBuffer();
        if (bytes.size() > kBufferSize) {
            buffer_.assign(bytes);
            flushBuffer();
            return;
        }
    }
    buffer_.append(bytes);
}

void AtomicFileWriter::finish() {
    flushBuffer();
    if (::fsync(fd_) != 0) throwSystemError(errno, tempPath_);
    const int fd = fd_;
    fd_ = -1;
    if (::close(fd) != 0) throwSystemError(errno, tempPath_);
}

void AtomicFileWriter::commit() {
    if (fd_ >= 0) finish();
    if (::rename(tempPath_.c_str(), target_.c_str()) != 0) throwSystemError(errno, target_);
    committed_ = true;
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
