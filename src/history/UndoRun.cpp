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
#include "files/FileFunctions.h"

namespace vantorel::history {
namespace {

using Result = UndoFile::Result;

std::optional<FileIdentity> identityAt(const std::string& path) {
    struct stat st {};
    if (::lstat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) return std::nullopt;
    return FileIdentity::of(st);
}

// Reads a whole file in pieces; false when it cannot be read.
template <class Piece>
bool readPieces(const std::string& path, Piece piece) {
    const FileDescriptor fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    if (!fd) return false;
    std::string buffer(1 << 20, '\0');
    while (true) {
        const ssize_t n = ::read(fd.get(), buffer.data(), buffer.size());
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return n == 0;
        piece(std::string_view(buffer.data(), static_cast<std::size_t>(n)));
    }
}

std::optional<std::uint64_t> hashOf(const std::string& path) {
    ContentHash hash;
    if (!readPieces(path, [&](std::string_view piece) { hash.add(piece); })) return std::nullopt;
    return hash.value();
}

// Writes `from`'s contents over `target` through a temporary file, unless
// `target` is no longer `expected`. Attributes as given.
Result restore(const std::string& from, const std::string& target, const FileIdentity& expected,
               const AtomicFileWriter::Attributes& keep, FolderSync& folders, std::string& error) {
    try {
        AtomicFileWriter writer(target, keep);
        bool read = readPieces(from, [&](std::string_view piece) { writer.write(piece); });
        if (!read) return Result::NotKept;
        writer.finish();
        const std::optional<FileIdentity> now = identityAt(target);
        if (!now || *now != expected) return Result::ChangedSince;
        writer.commit(&folders);
        return Result::Restored;
    } catch (const std::system_error& failure) {
        error = systemErrorText(failure.code().value());
        return Result::Failed;
    }
}

AtomicFileWriter::Attributes attributesOf(const struct stat& st, std::string source) {
    return AtomicFileWriter::Attributes{st.st_mode, st.st_uid, st.st_gid, std::move(source)};
}

// The backup the run made goes; an older one it replaced comes back.
void takeBackBackup(const JournalFileRecord& file, FolderSync& folders, std::vector<UndoFile>& out) {
    if (file.backup.empty() || file.backupMade.inode == 0) return;
    const std::optional<FileIdentity> now = identityAt(file.backup);
    if (!now) return;  // deleted since: nothing to take back
    if (*now != file.backupMade) {
        out.push_back({file.backup, Result::ChangedSince, {}});
        return;
    }
    if (file.keptBackup.empty()) {
        if (::unlink(file.backup.c_str()) != 0) out.push_back({file.backup, Result::Failed, systemErrorText(errno)});
        return;
    }
    struct stat kept {};
    if (::lstat(file.keptBackup.c_str(), &kept) != 0 || FileIdentity::of(kept) != file.keptBackupIdentity) {
        out.push_back({file.backup, Result::NotKept, {}});
        return;
    }
    std::string error;
    const Result result =
        restore(file.keptBackup, file.backup, *now, attributesOf(kept, file.keptBackup), folders, error);
    if (result == Result::Restored) ::unlink(file.keptBackup.c_str());
    else out.push_back({file.backup, result, error});
}

// Takes one file back; nothing when the run never wrote it.
std::optional<UndoFile> takeBackFile(const JournalFileRecord& file, FolderSync& folders) {
    if (file.status && *file.status != WriteStatus::Written) return std::nullopt;
    UndoFile out{file.target, Result::Restored, {}};
    struct stat st {};
    if (::lstat(file.target.c_str(), &st) != 0) {
        out.result = errno == ENOENT ? Result::DeletedSince : Result::Failed;
        out.error = systemErrorText(errno);
        return out;
    }
    const FileIdentity now = FileIdentity::of(st);
    const bool holdsWritten = S_ISREG(st.st_mode) && now.size == file.written.size &&
                              hashOf(file.target) == std::optional(file.writtenHash);
    if (!holdsWritten) {
        // A journal cut short between a file's record and its replacement.
        if (!file.status && now == file.old) return std::nullopt;
        out.result = Result::ChangedSince;
        return out;
    }
    if ((st.st_mode & S_IWUSR) == 0) {
        out.result = Result::ReadOnly;
        return out;
    }
    const std::optional<FileIdentity> kept = identityAt(file.kept);
    if (!kept || *kept != file.keptIdentity) {
        out.result = Result::NotKept;
        return out;
    }
    out.result = restore(file.kept, file.target, now, attributesOf(st, {}), folders, out.error);
    if (out.result == Result::Restored) ::unlink(file.kept.c_str());
    return out;
}

}  // namespace

std::uint64_t UndoOutcome::restored() const noexcept {
    return static_cast<std::uint64_t>(
        std::count_if(files.begin(), files.end(), [](const UndoFile& f) { return f.result == Result::Restored; }));
}

std::uint64_t UndoOutcome::left() const noexcept { return files.size() - restored(); }

UndoOutcome takeBack(const Journal& journal) {
    UndoOutcome outcome;
    FolderSync folders;
    for (auto file = journal.files.rbegin(); file != journal.files.rend(); ++file) {
        std::optional<UndoFile> taken = takeBackFile(*file, folders);
        if (!taken) continue;
        const bool restored = taken->result == Result::Restored;
        outcome.files.push_back(std::move(*taken));
        if (restored) takeBackBackup(*file, folders, outcome.files);
    }
    return outcome;
}

std::string undoReason(const UndoFile& file) {
    switch (file.result) {
        case Result::Restored: return "restored";
        case Result::ChangedSince: return "changed since the replace: left as it is";
        case Result::DeletedSince: return "deleted since the replace";
        case Result::ReadOnly: return "read-only: left as it is";
        case Result::NotKept: return "its old contents are no longer kept: left as it is";
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
    return text;
}

}  // namespace vantorel::history
