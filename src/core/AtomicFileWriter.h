#pragma once
// Writes a file's new contents without ever leaving it half-written: the text
// goes to a temporary file beside the target, which is flushed to disk and
// then renamed over the target. Until commit() the target is untouched; a
// writer destroyed without commit() removes its temporary file.

#include <sys/types.h>

#include <string>
#include <string_view>

namespace vantorel {

class AtomicFileWriter {
public:
    // The permission bits, owner and group that the new file is to keep.
    struct Attributes {
        mode_t mode;
        uid_t owner;
        gid_t group;
    };

    // Creates the temporary file beside `target` with the target's permission
    // bits (and owner, where allowed). Throws std::system_error on failure.
    explicit AtomicFileWriter(const std::string& target);
    // The same, with the target's attributes already known.
    AtomicFileWriter(const std::string& target, const Attributes& keep);
    ~AtomicFileWriter();
    AtomicFileWriter(const AtomicFileWriter&) = delete;
    AtomicFileWriter& operator=(const AtomicFileWriter&) = delete;

    // Buffered; throws std::system_error on failure.
    void write(std::string_view bytes);
    // Flushes, syncs and closes the temporary file. Throws on failure.
    void finish();
    // Renames the finished temporary file over the target. Throws on failure.
    void commit();
    // Removes the temporary file; the target stays as it was.
    void discard() noexcept;

    const std::string& target() const noexcept { return target_; }

private:
    void create(const Attributes* keep);
    void flushBuffer();

    std::string target_;
    std::string tempPath_;
    int fd_ = -1;
    std::string buffer_;
    bool committed_ = false;
};

}  // namespace vantorel
