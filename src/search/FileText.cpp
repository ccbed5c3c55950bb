#include "search/FileText.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <new>

#include "files/FileFunctions.h"

namespace vantorel {
namespace {

struct FileHandle {
    int fd;
    ~FileHandle() {
        if (fd >= 0) ::close(fd);
    }
};

constexpr std::size_t kHugePage = std::size_t{2} << 20;
constexpr std::size_t kMapFrom = std::size_t{8} << 20;

}  // namespace

void FileBufferRelease::operator()(char* data) const noexcept {
    if (mappedBytes > 0) ::munmap(data, mappedBytes);
    else delete[] data;
}

std::string tooLargeMessage(const std::string& path) {
    return path + " is too large to process.";
}

std::string readErrorMessage(const std::string& path, const std::string& error) {
    return "Error reading " + path + "\r\n" + error;
}

FileText::Result FileText::read(const std::string& path) {
    Result result;
    auto fail = [&result](int error) {
        result.status = error == ENOENT ? Status::Vanished : Status::Error;
        result.error = systemErrorText(error);
        return std::move(result);
    };
    // Non-blocking, so that a file replaced by a pipe cannot hang the run.
    FileHandle file{::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)};
    if (file.fd < 0) return fail(errno);
    struct stat st {};
    if (::fstat(file.fd, &st) != 0) return fail(errno);
    if (!S_ISREG(st.st_mode)) return fail(S_ISDIR(st.st_mode) ? EISDIR : EINVAL);
    FileText& text = result.text;
    text.modified_ = st.st_mtime;
    const auto size = static_cast<std::size_t>(st.st_size);
    if (size >= kMapFrom) {
        const std::size_t bytes = (size + kHugePage - 1) / kHugePage * kHugePage;
        void* memory = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (memory != MAP_FAILED) {
            ::madvise(memory, bytes, MADV_HUGEPAGE);
            text.data_ = std::unique_ptr<char, FileBufferRelease>(static_cast<char*>(memory), FileBufferRelease{bytes});
        }
    } else {
        text.data_.reset(new (std::nothrow) char[size == 0 ? 1 : size]);
    }
    if (!text.data_) {
        result.status = Status::TooLarge;
        return result;
    }
    ::posix_fadvise(file.fd, 0, 0, POSIX_FADV_SEQUENTIAL);
    // The file may shrink while we read: keep what is there.
    std::size_t done = 0;
    while (done < size) {
        const ssize_t n = ::read(file.fd, text.data_.get() + done, size - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            return fail(errno);
        }
        if (n == 0) break;
        done += static_cast<std::size_t>(n);
    }
    text.size_ = done;
    const EncodingScan scan = scanEncoding(text.bytes());
    text.encoding_ = scan.encoding;
    text.characters_ = scan.characters;
    return result;
}

}  // namespace vantorel
