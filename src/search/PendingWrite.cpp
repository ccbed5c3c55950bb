#include "search/PendingWrite.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "core/AtomicFileWriter.h"
#include "core/FolderSync.h"
#include "core/LockedFile.h"
#include "core/TemporaryFiles.h"
#include "core/TreeRoot.h"
#include "files/FileFunctions.h"
#include "core/ReplaceRecorder.h"
#include "search/WriteMessages.h"

namespace vantorel {
namespace {

// Copies the open file `from` into a new file named `name` in `folder`,
// with its attributes.
void copyOpenFile(int from, int folder, const std::string& name, const std::string& path, FolderSync& folders) {
    struct stat st {};
    if (::fstat(from, &st) != 0) throw std::system_error(errno, std::generic_category(), path);
    const AtomicFileWriter::Attributes keep{st.st_mode, st.st_uid, st.st_gid, from};
    AtomicFileWriter writer(folder, name, path, &keep);
    std::string buffer(1 << 20, '\0');
    for (off_t at = 0;;) {
        const ssize_t n = ::pread(from, buffer.data(), buffer.size(), at);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) throw std::system_error(errno, std::generic_category(), path);
        if (n == 0) break;
        writer.write(std::string_view(buffer.data(), static_cast<std::size_t>(n)));
        at += n;
    }
    writer.commit(folder, &folders);
}

// Keeps the old contents under the backup name, beside the listed file:
// a second name of the file (given under a temporary name, then renamed
// over an older backup at once) or, where the file system has no such
// thing, a copy. The file keeps its name throughout. False after a message
// when no backup could be made; the file must then be left as it is.
bool keepBackup(const LockedFile& file, int folder, const std::string& name, const std::string& path,
                FolderSync& folders, std::vector<Message>& messages) {
    const std::string failed = kBackupFailed + path;
    struct stat st {};
    // On a file system that ignores case, "OLD.BAK" gets "OLD.bak": itself.
    if (::fstatat(folder, name.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0 && st.st_dev == file.identity().device &&
        st.st_ino == file.identity().inode) {
        messages.push_back(fileMessage(failed, MessageIcon::None));
        return false;
    }
    int error = EEXIST;
    std::string temp;
    for (int attempt = 0; error == EEXIST && attempt < 100; ++attempt) {
        temp = TemporaryFiles::newName();
        error = linkOpenFile(file.fd(), folder, temp);
    }
    if (error == 0) {
        if (::renameat(folder, temp.c_str(), folder, name.c_str()) == 0) {
            folders.add(folder);
            return true;
        }
        ::unlinkat(folder, temp.c_str(), 0);
        // Something of that name stays, that an older backup would have made way for.
        if (::fstatat(folder, name.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0)
            messages.push_back(fileMessage("Error deleting file " + path, MessageIcon::Warning));
    } else if (error == EPERM || error == EOPNOTSUPP || error == EMLINK || error == EXDEV) {
        try {
            copyOpenFile(file.fd(), folder, name, path, folders);
            return true;
        } catch (const std::system_error&) {
        }
    }
    messages.push_back(fileMessage(failed, MessageIcon::None));
    return false;
}

}  // namespace

PendingWrite::PendingWrite(std::string path, WriteTarget target, const TreeRoot* root,
                           std::unique_ptr<AtomicFileWriter> writer, bool makeBackups, const FileIdentity& readFrom,
                           WriteBudget::Share share)
    : path_(std::move(path)),
      target_(std::move(target)),
      root_(root),
      writer_(std::move(writer)),
      makeBackups_(makeBackups),
      readFrom_(readFrom),
      share_(std::move(share)) {}

PendingWrite::~PendingWrite() = default;

WriteOutcome PendingWrite::commit(std::vector<Message>& messages, FolderSync& folders, ReplaceRecorder* recorder) {
    // The folder again, from the start folder down: a folder swapped for a
    // link since the new file was made is not entered.
    FileDescriptor folder;
    try {
        folder = openWriteFolder(root_, target_.relative);
    } catch (const std::system_error& error) {
        return changedRefusal(path_, target_, error.code().value(), messages);
    }
    struct stat st {};
    if (::fstat(folder.get(), &st) != 0 || st.st_dev != writer_->folderDevice() ||
        st.st_ino != writer_->folderInode())
        return changedRefusal(path_, target_, 0, messages);  // another folder of that name
    const std::string name(TreeRoot::nameOf(target_.relative));
    int error = 0;
    const LockedFile file = LockedFile::open(folder.get(), name, error);
    if (!file) {
        if (error == EWOULDBLOCK) return failure(path_, std::system_error(error, std::generic_category()), messages);
        return changedRefusal(path_, target_, error, messages);
    }
    // With the lock held: the file is still the one that was read, and
    // still under its name. Another run that replaced it first has left
    // a new file there; one that waits for us will find ours.
    if (!file.regular() || file.identity() != readFrom_ || !file.stillAt(folder.get(), name))
        return changedRefusal(path_, target_, 0, messages);
    FileDescriptor backupFolder;
    const std::string backupName = FileNameOf(target_.backupPath);
    if (makeBackups_) {
        try {
            if (target_.backupOutside) throw std::system_error(EXDEV, std::generic_category());
            backupFolder = openWriteFolder(root_, target_.backupRelative);
        } catch (const std::system_error&) {
            messages.push_back(fileMessage(kBackupFailed + target_.backupPath, MessageIcon::None));
            return refusal(WriteStatus::BackupFailed, target_.path);
        }
    }
    if (recorder) {
        const std::string noBackup;
        recorder->replacing(ReplacingFile{path_, target_.path, target_.relative, folder.get(), name, file.fd(),
                                          readFrom_, writer_->written(), backupFolder ? backupFolder.get() : -1,
                                          makeBackups_ ? backupName : noBackup,
                                          makeBackups_ ? target_.backupPath : noBackup,
                                          makeBackups_ ? target_.backupRelative : noBackup},
                            messages);
    }
    WriteOutcome outcome = replace(folder.get(), name, file, backupFolder ? backupFolder.get() : -1, messages, folders);
    if (recorder) recorder->replaced(outcome);
    return outcome;
}

WriteOutcome PendingWrite::abandon(int error, std::vector<Message>& messages) {
    writer_->discard();
    return failure(path_, std::system_error(error, std::generic_category(), path_), messages);
}

WriteOutcome PendingWrite::replace(int folder, const std::string& name, const LockedFile& file, int backupFolder,
                                   std::vector<Message>& messages, FolderSync& folders) {
    WriteOutcome outcome = refusal(WriteStatus::Written, target_.path);
    if (makeBackups_) {
        if (!keepBackup(file, backupFolder, FileNameOf(target_.backupPath), target_.backupPath, folders, messages))
            return refusal(WriteStatus::BackupFailed, target_.path);
        outcome.backup = target_.backupPath;
    }
    try {
        const std::string temp = writer_->link(folder);
        // The new file and the old one change places at once; the old one
        // must be the file checked (a program that does not take the lock
        // may have put another there meanwhile: that one goes back).
        const int exchanged = exchangeNames(folder, temp, folder, name);
        if (exchanged == 0) {
            struct stat st {};
            if (::fstatat(folder, temp.c_str(), &st, AT_SYMLINK_NOFOLLOW) != 0 ||
                st.st_dev != file.identity().device || st.st_ino != file.identity().inode) {
                exchangeNames(folder, temp, folder, name);
                return changedRefusal(path_, target_, 0, messages);
            }
            ::unlinkat(folder, temp.c_str(), 0);  // the old file lives on under its backup's or the journal's name
        } else if (exchanged == EINVAL || exchanged == ENOSYS || exchanged == EOPNOTSUPP) {
            if (::renameat(folder, temp.c_str(), folder, name.c_str()) != 0)
                throw std::system_error(errno, std::generic_category(), path_);
        } else {
            throw std::system_error(exchanged, std::generic_category(), path_);
        }
        writer_->placed();
        folders.add(folder, writer_->folderDevice(), writer_->folderInode());
    } catch (const std::system_error& error) {
        return failure(path_, error, messages);
    }
    share_.release();
    const AtomicFileWriter::Written& written = writer_->written();
    outcome.size = written.size;
    outcome.modifiedNs = written.modifiedNs;
    outcome.device = written.device;
    outcome.inode = written.inode;
    outcome.hash = written.hash;
    return outcome;
}

}  // namespace vantorel
