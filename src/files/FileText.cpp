#include "files/FileText.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <utility>

#include "files/FileFunctions.h"
#include "files/MappedFileGuard.h"

namespace vantorel {
namespace {

struct FileHandle {
    int fd;
    ~FileHandle() {
        if (fd >= 0) ::close(fd);
    }
};

// Files from this size on are mapped rather than read.
constexpr std::size_t kMapFrom = std::size_t{4} << 20;

}  // namespace

const char* const kChangedWhileRead = "The file changed while it was being read.";

std::string tooLargeMessage(const std::string& path) {
    return path + " is too large to process.";
}

std::string readErrorMessage(const std::string& path, const std::string& error) {
    return "Error reading " + path + "\r\n" + error;
}

FileText::FileText() = default;

FileText::FileText(FileText&& other) noexcept { *this = std::move(other); }

FileText& FileText::operator=(FileText&& other) noexcept {
    if (this == &other) return *this;
    release();
    data_ = std::exchange(other.data_, "");
    size_ = std::exchange(other.size_, 0);
    buffer_ = std::move(other.buffer_);
    mapping_ = std::exchange(other.mapping_, nullptr);
    mappedBytes_ = std::exchange(other.mappedBytes_, 0);
    guard_ = std::move(other.guard_);
    decoded_ = std::move(other.decoded_);
    utf16_ = other.utf16_;
    roundTrips_ = other.roundTrips_;
    changedWhileDecoding_ = other.changedWhileDecoding_;
    path_ = std::move(other.path_);
    scanned_ = other.scanned_;
    encoding_ = other.encoding_;
    characters_ = other.characters_;
    modified_ = other.modified_;
    identity_ = other.identity_;
    mode_ = other.mode_;
    owner_ = other.owner_;
    group_ = other.group_;
    return *this;
}

FileText::~FileText() { release(); }

void FileText::releaseBytes() noexcept {
    guard_.reset();
    if (mapping_) ::munmap(mapping_, mappedBytes_);
    mapping_ = nullptr;
    buffer_.reset();
}

void FileText::release() noexcept {
    releaseBytes();
    decoded_.reset();
    data_ = "";
    size_ = 0;
    scanned_ = false;
}

void FileText::decode(Utf16Order order) {
    Utf16Text text = decodeUtf16(bytes(), order);
    changedWhileDecoding_ = changedWhileRead();
    releaseBytes();
    decoded_ = std::make_unique<std::string>(std::move(text.utf8));
    data_ = decoded_->data();
    size_ = decoded_->size();
    encoding_ = TextEncoding::Utf8;
    characters_ = text.characters;
    scanned_ = true;
    utf16_ = order;
    roundTrips_ = text.exact;
}

bool FileText::changedWhileRead() const {
    if (changedWhileDecoding_) return true;
    if (guard_ && guard_->faulted()) return true;
    if (!mapping_) return false;  // a copy in memory cannot change under us
    return FileIdentity::of(path_) != identity_;
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
    text.path_ = path;
    text.modified_ = st.st_mtime;
    text.identity_ = FileIdentity::of(st);
    text.mode_ = st.st_mode;
    text.owner_ = st.st_uid;
    text.group_ = st.st_gid;
    const auto size = static_cast<std::size_t>(st.st_size);
    if (size >= kMapFrom) {
        void* mapping = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, file.fd, 0);
        if (mapping != MAP_FAILED) {
            auto guard = std::make_unique<MappedFileGuard>(mapping, size);
            if (guard->active()) {
                ::madvise(mapping, size, MADV_SEQUENTIAL);
                text.mapping_ = mapping;
                text.mappedBytes_ = size;
                text.guard_ = std::move(guard);
                text.data_ = static_cast<const char*>(mapping);
                text.size_ = size;
            } else {
                ::munmap(mapping, size);
            }
        }
    }
    if (!text.mapping_) {
        text.buffer_.reset(new (std::nothrow) char[size == 0 ? 1 : size]);
        if (!text.buffer_) {
            result.status = Status::TooLarge;
            return result;
        }
        // The file may shrink while we read: keep what is there.
        std::size_t done = 0;
        while (done < size) {
            const ssize_t n = ::read(file.fd, text.buffer_.get() + done, size - done);
            if (n < 0) {
                if (errno == EINTR) continue;
                return fail(errno);
            }
            if (n == 0) break;
            done += static_cast<std::size_t>(n);
        }
        text.data_ = text.buffer_.get();
        text.size_ = done;
    }
    if (const auto order = utf16MarkOf(text.bytes())) {
        try {
            text.decode(*order);
        } catch (const std::bad_alloc&) {
            result.status = Status::TooLarge;
        }
    }
    return result;
}

void FileText::scan() const {
    if (scanned_) return;
    const EncodingScan found = scanEncoding(bytes());
    encoding_ = found.encoding;
    characters_ = found.characters;
    scanned_ = true;
}

TextEncoding FileText::encoding() const {
    scan();
    return encoding_;
}

std::uint64_t FileText::characters() const {
    scan();
    return characters_;
}

}  // namespace vantorel
