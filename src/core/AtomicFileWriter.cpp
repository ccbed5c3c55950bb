#include "core/AtomicFileWriter.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <system_error>


namespace vantorel {
namespace {

constexpr std::size_t kBufferSize = 1 << 20;

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

[[noreturn]] void throwSystemError(int error, const std::string& what) {
    throw std::system_error(error, std::generic_category(), what);
}

}  // namespace

AtomicFileWriter::AtomicFileWriter(const std::string& target) : target_(target) {
    struct stat st {};
    if (::stat(target.c_str(), &st) == 0) {
        const Attributes keep{st.st_mode, st.st_uid, st.st_gid};
        create(&keep);
    } else {
        create(nullptr);
    }
}

AtomicFileWriter::AtomicFileWriter(const std::string& target, const Attributes& keep) : target_(target) {
    create(&keep);
}

void AtomicFileWriter::create(const Attributes* keep) {
    static const Process process;
    const mode_t mode = keep ? (keep->mode & 07777) : (0666 & ~process.umask);
    const std::size_t slash = target_.rfind('/');
    const std::size_t nameStart = slash == std::string::npos ? 0 : slash + 1;
    const std::string stem = target_.substr(0, nameStart) + "." + target_.substr(nameStart) + ".vantorel-";
    static std::atomic<unsigned> counter{0};
    for (int attempt = 0; fd_ < 0; ++attempt) {
        tempPath_ = stem + std::to_string(process.id) + "-" + std::to_string(counter++);
        fd_ = ::open(tempPath_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (fd_ < 0 && (errno != EEXIST || attempt > 100)) {
            const int error = errno;
            tempPath_.clear();
            throwSystemError(error, stem);
        }
    }
    // The system's file-creation mask may have taken bits away.
    if ((mode & ~process.umask) != mode) ::fchmod(fd_, mode);
    if (keep) {
        // Keep the owner and group where the system lets us; failing is harmless.
        const uid_t owner = process.euid == 0 && keep->owner != process.euid ? keep->owner : static_cast<uid_t>(-1);
        const gid_t group = keep->group != process.egid ? keep->group : static_cast<gid_t>(-1);
        if ((owner != static_cast<uid_t>(-1) || group != static_cast<gid_t>(-1)) && ::fchown(fd_, owner, group) != 0) {
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
