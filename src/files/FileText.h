#pragma once
// A file's whole contents, read once, with its encoding and character count.
// Small files are read into memory; large ones are mapped, so that a file of
// several gigabytes is held once (in the system's cache) and not copied. A
// file that starts with a UTF-16 byte-order mark is decoded: its text is
// then UTF-8, and utf16() says how to encode it back.

#include <sys/stat.h>
#include <sys/types.h>

#include <cstdint>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/FileIdentity.h"
#include "core/TextEncoding.h"

namespace vantorel {

class MappedFileGuard;

class FileText {
public:
    FileText();
    FileText(FileText&& other) noexcept;
    FileText& operator=(FileText&& other) noexcept;
    ~FileText();

    // The text: the file's bytes, or the UTF-8 of a UTF-16 file.
    std::string_view bytes() const noexcept { return {data_, size_}; }
    // The byte order of a UTF-16 file, nothing for any other.
    std::optional<Utf16Order> utf16() const noexcept { return utf16_; }
    // False for a UTF-16 file with code units that are not characters: its
    // text does not give its bytes back, so it must not be written.
    bool roundTrips() const noexcept { return roundTrips_; }
    // The encoding and the character count take one pass over the text,
    // made the first time either is asked for (a search that cannot depend
    // on the encoding may never need it).
    TextEncoding encoding() const;
    // "File Size": the length of the text in characters.
    std::uint64_t characters() const;
    std::time_t modified() const noexcept { return modified_; }
    const FileIdentity& identity() const noexcept { return identity_; }
    // The permission bits, owner and group as the file was opened.
    mode_t mode() const noexcept { return mode_; }
    uid_t owner() const noexcept { return owner_; }
    gid_t group() const noexcept { return group_; }
    // True when the text is the file mapped into memory, not a copy.
    bool mapped() const noexcept { return mapping_ != nullptr; }
    // True when the file was cut short or rewritten while its text was in
    // use: what was read from it is then not to be trusted.
    bool changedWhileRead() const;

    enum class Status { Ok, Vanished, TooLarge, Error };
    struct Result;

    // Reads the file whole. A file that no longer exists gives Vanished; a
    // file that does not fit in memory gives TooLarge; any other failure
    // gives Error with the system's description.
    static Result read(const std::string& path);

private:
    void release() noexcept;
    void releaseBytes() noexcept;
    void decode(Utf16Order order);

    const char* data_ = "";
    std::size_t size_ = 0;
    std::unique_ptr<char[]> buffer_;
    void* mapping_ = nullptr;
    std::size_t mappedBytes_ = 0;
    std::unique_ptr<MappedFileGuard> guard_;
    std::unique_ptr<std::string> decoded_;  // the UTF-8 of a UTF-16 file
    std::optional<Utf16Order> utf16_;
    bool roundTrips_ = true;
    bool changedWhileDecoding_ = false;
    std::string path_;
    void scan() const;
    mutable bool scanned_ = false;
    mutable TextEncoding encoding_ = TextEncoding::Utf8;
    mutable std::uint64_t characters_ = 0;
    std::time_t modified_ = 0;
    FileIdentity identity_;
    mode_t mode_ = 0;
    uid_t owner_ = 0;
    gid_t group_ = 0;
};

struct FileText::Result {
    Status status = Status::Ok;
    std::string error;  // the system's description, for Status::Error
    FileText text;
};

// The messages of a failed read.
std::string tooLargeMessage(const std::string& path);                            // path + " is too large to process."
std::string readErrorMessage(const std::string& path, const std::string& error);  // "Error reading " + path + CR LF + error
// The description of a file that changed while it was read.
extern const char* const kChangedWhileRead;

}  // namespace vantorel
