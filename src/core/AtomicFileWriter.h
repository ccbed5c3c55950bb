#pragma once
// Writes a file's new contents without ever leaving it half-written: the text
// goes to a temporary file beside the target, which is flushed to disk and
// then renamed over the target; the folder is flushed after the rename. Until
// commit() the target is untouched; a writer destroyed without commit()
// removes its temporary file. The new file keeps the old one's owner, group,
// mode (set-user-ID and set-group-ID bits included), ACL and other extended
// attributes.
// The temporary files are named as TemporaryFiles says.

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "core/ContentHash.h"

namespace vantorel {

class FolderSync;

class AtomicFileWriter {
public:
    // What the new file is to keep of the file it replaces.
    struct Attributes {
        mode_t mode;
        uid_t owner;
        gid_t group;
        // The file whose extended attributes (its ACL among them) are kept;
        // empty for the target itself.
        std::string source;
    };

    // What was written, known once the file is finished.
    struct Written {
        std::uint64_t size = 0;
        std::uint64_t hash = 0;  // ContentHash of the bytes
        std::int64_t modifiedNs = 0;
        dev_t device = 0;
        ino_t inode = 0;
    };

    // Creates the temporary file beside `target`, keeping the target's
    // attributes when it exists. Throws std::system_error naming the target.
    explicit AtomicFileWriter(const std::string& target);
    // The same, with the attributes already known.
    AtomicFileWriter(const std::string& target, const Attributes& keep);
    ~AtomicFileWriter();
    AtomicFileWriter(const AtomicFileWriter&) = delete;
    AtomicFileWriter& operator=(const AtomicFileWriter&) = delete;

    // Buffered; throws std::system_error on failure.
    void write(std::string_view bytes);
    // Flushes, syncs and closes the temporary file. Throws on failure.
    void finish();
    // The same, but leaves the new contents in the system's cache when the
    // file lies on `device`: the caller then syncs that whole file system
    // (FileSystemSync) before commit(), once for many files.
    void finishUnsynced(dev_t device);
    // Renames the finished temporary file over the target, then flushes the
    // folder at once or, given `folders`, when the batch moves on. Throws on
    // failure.
    void commit(FolderSync* folders = nullptr);
    // Removes the temporary file; the target stays as it was.
    void discard() noexcept;

    const std::string& target() const noexcept { return target_; }
    const Written& written() const noexcept { return written_; }

private:
    void create(const Attributes* keep);
    void keepAttributes(const Attributes& keep, mode_t mode, bool folderHasDefaultAcl);
    void writeAll(std::string_view bytes);
    void flushBuffer();
    void close(bool sync, dev_t unsyncedDevice);
    [[noreturn]] void fail(int error) const;

    std::string target_;
    std::string tempPath_;
    int fd_ = -1;
    std::string buffer_;
    ContentHash hash_;
    Written written_;
    bool committed_ = false;
};

}  // namespace vantorel
