#pragma once
// Writes a file's new contents without ever leaving it half-written: the
// text goes to a new file in the target's folder, unnamed where the file
// system allows it (see TemporaryFiles), which is flushed to disk and only
// then renamed over the target; the folder is flushed after the rename.
// Until commit() the target is untouched; a writer destroyed without
// commit() leaves nothing behind. The new file keeps the old one's owner,
// group, mode (set-user-ID and set-group-ID bits included), ACL and other
// extended attributes.
//
// Two ways to say where: by path, for the program's own files and files the
// user names in a dialog; or by an open folder and a name in it, for the
// files of a run, whose folders are resolved without following links (see
// TreeRoot) and passed again when the file is committed.

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "core/ContentHash.h"
#include "core/FileDescriptor.h"

namespace vantorel {

class FolderSync;
class MessageHost;

class AtomicFileWriter {
public:
    // What the new file is to keep of the file it replaces.
    struct Attributes {
        mode_t mode;
        uid_t owner;
        gid_t group;
        // An open descriptor of the file whose extended attributes (its ACL
        // among them) are kept; -1 for none, or, writing by path, for the
        // target's own.
        int source = -1;
    };

    // What was written, known once the file is finished.
    struct Written {
        std::uint64_t size = 0;
        std::uint64_t hash = 0;  // ContentHash of the bytes
        std::int64_t modifiedNs = 0;
        dev_t device = 0;
        ino_t inode = 0;
    };

    // A new file for `target`, keeping the target's attributes when it
    // exists. Throws std::system_error naming the target.
    explicit AtomicFileWriter(const std::string& target);
    // The same, with the attributes given.
    AtomicFileWriter(const std::string& target, const Attributes& keep);
    // A new file to be named `name` in the open folder `folder`, which the
    // caller holds and passes again to commit(); `path` names the file in
    // errors. Nothing to keep: it takes what the folder gives new files.
    AtomicFileWriter(int folder, std::string name, std::string path, const Attributes* keep);
    ~AtomicFileWriter();
    AtomicFileWriter(const AtomicFileWriter&) = delete;
    AtomicFileWriter& operator=(const AtomicFileWriter&) = delete;

    // Buffered; throws std::system_error on failure.
    void write(std::string_view bytes);
    // Flushes and syncs the new file. Throws on failure.
    void finish();
    // The same, but leaves the new contents in the system's cache when the
    // file lies on `device`: the caller then syncs that whole file system
    // (FileSystemSync) before commit(), once for many files.
    void finishUnsynced(dev_t device);

    // Renames the finished file over the target (by path), then flushes the
    // folder at once or, given `folders`, when the batch moves on. Throws.
    void commit(FolderSync* folders = nullptr);
    // The same in the open folder given at the start (or the same folder
    // opened again).
    void commit(int folder, FolderSync* folders);

    // The finished file's temporary name in `folder`, linking it there first
    // when it has none yet; the caller then renames it. Throws.
    const std::string& link(int folder);
    // After the caller renamed it into place.
    void placed() noexcept;

    // Gives up the new file; the target stays as it was.
    void discard() noexcept;

    // The folder the new file was made in: a folder opened again for
    // commit() must be this one.
    dev_t folderDevice() const noexcept { return folderDevice_; }
    ino_t folderInode() const noexcept { return folderInode_; }
    const std::string& name() const noexcept { return name_; }
    const std::string& target() const noexcept { return path_; }
    const Written& written() const noexcept { return written_; }

private:
    void create(int folder, const Attributes* keep, const std::string& keepFrom);
    void keepAttributes(const Attributes& keep, mode_t mode, bool folderHasDefaultAcl, const std::string& keepFrom);
    void writeAll(std::string_view bytes);
    void flushBuffer();
    void close(bool sync, dev_t unsyncedDevice);
    void nameCopy(int folder);
    [[noreturn]] void fail(int error) const;

    FileDescriptor ownFolder_;  // writing by path
    std::string name_;
    std::string path_;
    dev_t folderDevice_ = 0;
    ino_t folderInode_ = 0;
    FileDescriptor fd_;
    bool unnamed_ = false;      // made with O_TMPFILE, no name until link()
    std::string tempName_;      // its name in the folder, once it has one
    bool finished_ = false;
    std::string buffer_;
    ContentHash hash_;
    Written written_;
    bool committed_ = false;
    int tempFolder_ = -1;       // where tempName_ is, for discard()
};

// Links the open file `fd` into `folder` as `name` (the file it is, not a
// name that may lead elsewhere by now). 0 or the system's error.
int linkOpenFile(int fd, int folder, const std::string& name);

// Exchanges two names of one file system at once; 0, or the system's error
// (EINVAL where the file system cannot).
int exchangeNames(int fromFolder, const std::string& from, int toFolder, const std::string& to);

// Writes `bytes` as the whole of the file the user named in a save dialog,
// through an AtomicFileWriter; on failure says "<path> could not be saved."
// with the reason, and returns false.
bool saveBytes(MessageHost& messages, const std::string& path, std::string_view bytes);

}  // namespace vantorel
