#pragma once
// A file's whole contents, read once, with its encoding and character count.

#include <cstdint>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "search/TextEncoding.h"

namespace vantorel {

// Large buffers come straight from the kernel, backed by huge pages where it
// allows, which makes filling them several times cheaper.
struct FileBufferRelease {
    std::size_t mappedBytes = 0;
    void operator()(char* data) const noexcept;
};

class FileText {
public:
    std::string_view bytes() const noexcept { return {data_.get(), size_}; }
    TextEncoding encoding() const noexcept { return encoding_; }
    // "File Size": the length of the text in characters.
    std::uint64_t characters() const noexcept { return characters_; }
    std::time_t modified() const noexcept { return modified_; }

    enum class Status { Ok, Vanished, TooLarge, Error };
    struct Result;

    // Reads the file whole. A file that no longer exists gives Vanished; a
    // file that does not fit in memory gives TooLarge; any other failure
    // gives Error with the system's description.
    static Result read(const std::string& path);

private:
    std::unique_ptr<char, FileBufferRelease> data_;
    std::size_t size_ = 0;
    TextEncoding encoding_ = TextEncoding::Utf8;
    std::uint64_t characters_ = 0;
    std::time_t modified_ = 0;
};

struct FileText::Result {
    Status status = Status::Ok;
    std::string error;  // the system's description, for Status::Error
    FileText text;
};

// The messages of a failed read.
std::string tooLargeMessage(const std::string& path);                            // path + " is too large to process."
std::string readErrorMessage(const std::string& path, const std::string& error);  // "Error reading " + path + CR LF + error

}  // namespace vantorel
