#include "history/UndoRun.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <system_error>

#include "core/AtomicFileWriter.h"
#include "core/ContentHash.h"
#include "core/FileDescriptor.h"
#include "core/FolderSync.h"
#include "core/LockedFile.h"
#include "core/TreeRoot.h"
#include "files/FileFunctions.h"

namespace vantorel::history {
namespace {

using Result = UndoResult;

// A file's folder below the start folder, open, and its name there; or the
// system's error when the folder cannot be reached as the Replace reached it.
struct Place {
    FileDescriptor folder;
    std::string name;
    int error = 0;
};

Place placeOf(const TreeRoot& root, const std::string& relative) {
    Place place;
    place.name = std::string(TreeRoot::nameOf(relative));
    try {
        place.folder = root.openFolder(TreeRoot::folderOf(relative));
    } catch (const std::system_error& error) {
        place.error = error.code().value();
    }
    return place;
}

Result resultOf(int error) {
    if (error == ENOENT) return Result::DeletedSince;
    if (error == ELOOP || error == EXDEV || error == ENOTDIR) return Result::Unreachable;
    return Result::Failed;
}

UndoFile fileResult(const std::string& path, Result result, int error = 0) {
    return UndoFile{path, result, result == Result::Failed && error ? systemErrorText(error) : std::string()};
}

// Reads an open file whole from its start, in pieces; false when it cannot.
template <class Piece>
bool readPieces(int fd, Piece piece) {
    std::string buffer(1 << 20, '\0');
    for (off_t at = 0;;) {
        const ssize_t n = ::pread(fd, buffer.data(), buffer.size(), at);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return n == 0;
        piece(std::string_view(buffer.data(), static_cast<std::size_t>(n)));
        at += n;
    }
}

std::optional<std::uint64_t> hashOf(int fd) {
    ContentHash hash;
    if (!readPieces(fd, [&](std::string_view piece) { hash.add(piece); })) return std::nullopt;
    return hash.value();
}

// A kept file, in a folder of the journal's that is private to this user.
struct Kept {
    FileDescriptor folder;
    std::string name;
    FileDescriptor fd;
    struct stat st {};
};

std::optional<Kept> openKept(const std::string& path, const FileIdentity& identity) {
    Kept kept;
    kept.name = FileNameOf(path);
    const std::string folder = FolderOf(path);
    kept.folder.reset(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat st {};
    if (!kept.folder || ::fstat(kept.folder.get(), &st) != 0 || st.st_uid != ::geteuid() || (st.st_mode & 022) != 0)
        return std::nullopt;
    kept.fd.reset(::openat(kept.folder.get(), kept.name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!kept.fd || ::fstat(kept.fd.get(), &kept.st) != 0 || !S_ISREG(kept.st.st_mode) ||
        !FileIdentity::of(kept.st).sameVersion(identity))
        return std::nullopt;
    return kept;
}

// Puts the kept file back in place of the locked file `current`: the kept
// file itself when it is on the same file system, else a copy of it. The
// file must not have changed since it was checked; if another program put
// a file in its place meanwhile, that one stays.
Result putBack(Kept& kept, const LockedFile& current, int folder, const std::string& name, const std::string& path,
               FolderSync& folders, std::string& error) {
    auto changedMeanwhile = [&] { return FileIdentity::ofOpen(current.fd()) != std::optional(current.identity()); };
    // After an exchange, `aside` in `asideFolder` must hold the file checked.
    auto exchangedTheCheckedFile = [&](int asideFolder, const std::string& aside) {
        struct stat st {};
        return ::fstatat(asideFolder, aside.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0 &&
               st.st_dev == current.identity().device && st.st_ino == current.identity().inode;
    };
    try {
        if (changedMeanwhile()) return Result::ChangedSince;
        int moved = exchangeNames(kept.folder.get(), kept.name, folder, name);
        if (moved == 0) {
            if (!exchangedTheCheckedFile(kept.folder.get(), kept.name)) {
                exchangeNames(kept.folder.get(), kept.name, folder, name);
                return Result::ChangedSince;
            }
            ::unlinkat(kept.folder.get(), kept.name.c_str(), 0);  // what the Replace wrote
            folders.add(folder);
            return Result::Restored;
        }
        if (moved == EINVAL || moved == ENOSYS || moved == EOPNOTSUPP) {
            moved = ::renameat(kept.folder.get(), kept.name.c_str(), folder, name.c_str()) == 0 ? 0 : errno;
            if (moved == 0) {
                folders.add(folder);
                return Result::Restored;
            }
        }
        if (moved != EXDEV) throw std::system_error(moved, std::generic_category(), path);
        // Kept on another file system: written back as a Replace writes.
        const AtomicFileWriter::Attributes keep{kept.st.st_mode, kept.st.st_uid, kept.st.st_gid, kept.fd.get()};
        AtomicFileWriter writer(folder, name, path, &keep);
        if (!readPieces(kept.fd.get(), [&](std::string_view piece) { writer.write(piece); }))
            throw std::system_error(errno, std::generic_category(), kept.name);
        const std::string temp = writer.link(folder);
        if (changedMeanwhile()) return Result::ChangedSince;
        const int exchanged = exchangeNames(folder, temp, folder, name);
        if (exchanged == 0) {
            if (!exchangedTheCheckedFile(folder, temp)) {
                exchangeNames(folder, temp, folder, name);
                return Result::ChangedSince;
            }
            ::unlinkat(folder, temp.c_str(), 0);
        } else if (exchanged == EINVAL || exchanged == ENOSYS || exchanged == EOPNOTSUPP) {
            if (::renameat(folder, temp.c_str(), folder, name.c_str()) != 0)
                throw std::system_error(errno, std::generic_category(), path);
        } else {
            throw std::system_error(exchanged, std::generic_category(), path);
        }
        writer.placed();
        folders.add(folder);
        ::unlinkat(kept.folder.get(), kept.name.c_str(), 0);
        return Result::Restored;
    } catch (const std::system_error& failure) {
        error = systemErrorText(failure.code().value());
        return Result::Failed;
    }
}

// The backup the run made goes; an older one it replaced comes back.
void takeBackBackup(const JournalFileRecord& file, const TreeRoot& root, FolderSync& folders,
                    std::vector<UndoFile>& out) {
    if (file.backupRelative.empty() || file.backupMade.inode == 0) return;
    Place place = placeOf(root, file.backupRelative);
    if (place.error) {
        if (place.error != ENOENT) out.push_back(fileResult(file.backup, resultOf(place.error), place.error));
        return;
    }
    struct stat st {};
    if (::fstatat(place.folder.get(), place.name.c_str(), &st, AT_SYMLINK_NOFOLLOW) != 0) return;  // deleted since
    if (!S_ISREG(st.st_mode) || !FileIdentity::of(st).sameVersion(file.backupMade)) {
        out.push_back(fileResult(file.backup, Result::ChangedSince));
        return;
    }
    if (file.keptBackup.empty()) {
        if (::unlinkat(place.folder.get(), place.name.c_str(), 0) != 0)
            out.push_back(fileResult(file.backup, Result::Failed, errno));
        return;
    }
    int error = 0;
    const LockedFile current = LockedFile::open(place.folder.get(), place.name, error);
    std::optional<Kept> kept = openKept(file.keptBackup, file.keptBackupIdentity);
    if (!current || !kept) {
        out.push_back(!current ? fileResult(file.backup, resultOf(error), error) : fileResult(file.backup, Result::NotKept));
        return;
    }
    std::string why;
    const Result result = putBack(*kept, current, place.folder.get(), place.name, file.backup, folders, why);
    if (result != Result::Restored) out.push_back(UndoFile{file.backup, result, why});
}

// Takes one file back; nothing when the run never wrote it or an earlier
// Undo settled it.
std::optional<UndoFile> takeBackFile(const JournalFileRecord& file, const TreeRoot& root, FolderSync& folders) {
    if (file.status && *file.status != WriteStatus::Written) return std::nullopt;
    if (file.undone) return std::nullopt;
    Place place = placeOf(root, file.relative);
    if (place.error) return fileResult(file.target, resultOf(place.error), place.error);
    int error = 0;
    const LockedFile current = LockedFile::open(place.folder.get(), place.name, error);
    if (!current) return fileResult(file.target, error == ELOOP ? Result::ChangedSince : resultOf(error), error);
    if (!current.regular()) return fileResult(file.target, Result::ChangedSince);
    const FileIdentity& now = current.identity();
    // A journal cut short between a file's record and its replacement.
    if (!file.status && now.sameVersion(file.old)) return std::nullopt;
    // An Undo cut short that had already put the kept file back.
    if (file.keptHash == 0 && now.sameFile(file.keptIdentity)) return fileResult(file.target, Result::Restored);
    const std::optional<std::uint64_t> hash = hashOf(current.fd());
    if (!hash) return fileResult(file.target, Result::Failed, errno);
    if (now.size != file.written.size || *hash != file.writtenHash) {
        if (file.keptHash != 0 && now.size == file.keptIdentity.size && *hash == file.keptHash)
            return fileResult(file.target, Result::Restored);  // its copy was written back already
        return fileResult(file.target, Result::ChangedSince);
    }
    struct stat st {};
    if (::fstat(current.fd(), &st) != 0) return fileResult(file.target, Result::Failed, errno);
    if ((st.st_mode & S_IWUSR) == 0) return fileResult(file.target, Result::ReadOnly);
    std::optional<Kept> kept = openKept(file.kept, file.keptIdentity);
    if (!kept) return fileResult(file.target, Result::NotKept);
    UndoFile out{file.target, Result::Restored, {}};
    out.result = putBack(*kept, current, place.folder.get(), place.name, file.target, folders, out.error);
    return out;
}

}  // namespace

std::uint64_t UndoOutcome::restored() const noexcept {
    return static_cast<std::uint64_t>(
        std::count_if(files.begin(), files.end(), [](const UndoFile& f) { return f.result == Result::Restored; }));
}

std::uint64_t UndoOutcome::left() const noexcept { return files.size() - restored(); }

bool UndoOutcome::complete() const noexcept {
    return damagedLines.empty() &&
           std::none_of(files.begin(), files.end(), [](const UndoFile& f) { return f.result == Result::Failed; });
}

UndoOutcome takeBack(const Journal& journal, const TreeRoot& root, const SettledFile& settled) {
    UndoOutcome outcome;
    FolderSync folders;
    for (auto file = journal.files.rbegin(); file != journal.files.rend(); ++file) {
        std::optional<UndoFile> taken = takeBackFile(*file, root, folders);
        if (!taken) continue;
        const Result result = taken->result;
        outcome.files.push_back(std::move(*taken));
        const std::size_t before = outcome.files.size();
        if (result == Result::Restored) takeBackBackup(*file, root, folders, outcome.files);
        const bool failed = result == Result::Failed ||
                            std::any_of(outcome.files.begin() + static_cast<std::ptrdiff_t>(before),
                                        outcome.files.end(), [](const UndoFile& f) { return f.result == Result::Failed; });
        if (!failed && settled) settled(file->number, result);
    }
    outcome.damagedLines = journal.damagedLines;
    return outcome;
}

std::string undoReason(const UndoFile& file) {
    switch (file.result) {
        case Result::Restored: return "restored";
        case Result::ChangedSince: return "changed since the replace: left as it is";
        case Result::DeletedSince: return "deleted since the replace";
        case Result::ReadOnly: return "read-only: left as it is";
        case Result::NotKept: return "its old contents are no longer kept: left as it is";
        case Result::Unreachable:
            return "a folder on its way was moved or replaced by a link since the replace: left as it is";
        case Result::Failed: return "could not be restored: " + file.error;
    }
    return {};
}

std::string undoSummary(const UndoOutcome& outcome) {
    std::string text = std::to_string(outcome.restored()) + " file(s) restored.";
    if (outcome.left() > 0) text += " " + std::to_string(outcome.left()) + " file(s) left as they were.";
    return text;
}

std::string undoReport(const UndoOutcome& outcome, std::size_t listed) {
    std::string text = undoSummary(outcome);
    std::size_t shown = 0;
    for (const UndoFile& file : outcome.files) {
        if (file.result == Result::Restored) continue;
        if (shown++ == listed) {
            text += "\r\n... and " + std::to_string(outcome.left() - listed) + " more";
            break;
        }
        text += "\r\n" + file.path + ": " + undoReason(file);
    }
    for (const std::uint64_t line : outcome.damagedLines)
        text += "\r\nRecord " + std::to_string(line) +
                " of this Replace's journal is damaged: the file it recorded was not restored.";
    return text;
}

}  // namespace vantorel::history
