#include "history/RunRecorder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "core/FolderSync.h"
#include "files/FileFunctions.h"
#include "history/UndoJournal.h"
#include "history/UndoTexts.h"

namespace vantorel::history {
namespace {

// Records reach the disk at least this often while files are written.
constexpr auto kSyncInterval = std::chrono::milliseconds(50);

[[noreturn]] void fail(const std::string& path) { throw std::system_error(errno, std::generic_category(), path); }

std::int64_t nowNs() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

bool outOfSpace(int error) { return error == ENOSPC || error == EDQUOT; }

Message spaceMessage(const std::string& text) {
    return Message{text, kProgramTitle, MessageIcon::Warning, MessageKind::FileError};
}

}  // namespace

RunRecorder::RunRecorder(UndoJournal& journal, RunHeader header, std::vector<JournalStep> steps, int root)
    : journal_(journal),
      header_(std::move(header)),
      steps_(std::move(steps)),
      root_(::fcntl(root, F_DUPFD_CLOEXEC, 0)) {}

RunRecorder::~RunRecorder() {
    try {
        finished();
    } catch (...) {
        // The journal stays as the last record left it, which reads back whole.
    }
}

void RunRecorder::start() {
    if (!lock_) lock_.reset(journal_.lock(false));
    header_.startedNs = nowNs();
    name_ = UndoJournal::runName(header_.startedNs, ::getpid());
    folder_ = withTrailingSeparator(journal_.folder()) + name_ + "/";
    if (::mkdir(folder_.c_str(), 0700) != 0 || ::mkdir((folder_ + UndoJournal::kKeptFolder).c_str(), 0700) != 0)
        fail(folder_);
    kept_.emplace(folder_ + UndoJournal::kKeptFolder, name_);
    const std::string journal = folder_ + UndoJournal::kJournalFile;
    fd_.reset(::open(journal.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!fd_) fail(folder_ + UndoJournal::kJournalFile);
    std::string head = runLine(header_);
    for (const JournalStep& step : steps_) head += stepLine(step);
    append(head);
    sync();
    FolderSync::syncNow(folder_);
    FolderSync::syncNow(withTrailingSeparator(journal_.folder()));
}

void RunRecorder::append(const std::string& line) {
    std::string_view rest = line;
    while (!rest.empty()) {
        const ssize_t n = ::write(fd_.get(), rest.data(), rest.size());
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) fail(folder_ + UndoJournal::kJournalFile);
        rest.remove_prefix(static_cast<std::size_t>(n));
    }
}

// The kept names first, then the records that name them.
void RunRecorder::sync() {
    if (!outcomes_.empty()) append(outcomes_);
    outcomes_.clear();
    kept_->sync();
    if (::fdatasync(fd_.get()) != 0) fail(folder_ + UndoJournal::kJournalFile);
    lastSync_ = std::chrono::steady_clock::now();
}

// The run's folders elsewhere are listed for the day the run is removed.
void RunRecorder::noteElsewhere() {
    const std::vector<std::string>& elsewhere = kept_->elsewhere();
    if (elsewhere.size() == elsewhereNoted_) return;
    const std::string list = folder_ + UndoJournal::kElsewhereFile;
    const FileDescriptor fd(::open(list.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!fd) fail(list);
    std::string lines;
    for (; elsewhereNoted_ < elsewhere.size(); ++elsewhereNoted_) lines += elsewhere[elsewhereNoted_] + "\n";
    if (::write(fd.get(), lines.data(), lines.size()) != static_cast<ssize_t>(lines.size()) || ::fsync(fd.get()) != 0)
        fail(list);
}

void RunRecorder::replacing(const ReplacingFile& file, std::vector<Message>& messages) {
    const std::lock_guard guard(mutex_);
    if (failed_ || dropped_ || finished_) return;
    try {
        if (!fd_) start();
        JournalFileRecord record;
        record.number = files_ + 1;
        record.path = file.path;
        record.target = file.target;
        record.relative = file.relative;
        record.old = file.readFrom;
        // The locked file itself is kept, whatever its name leads to by now.
        const KeptContents::Kept old =
            kept_->keep(file.file, file.readFrom.device, file.target, std::to_string(record.number));
        record.kept = old.path;
        record.keptIdentity = old.identity;
        record.keptHash = old.hash;
        const AtomicFileWriter::Written& written = file.written;
        record.written = FileIdentity{written.device, written.inode, static_cast<std::int64_t>(written.size),
                                      written.modifiedNs, 0};
        record.writtenHash = written.hash;
        record.backup = file.backup;
        record.backupRelative = file.backupRelative;
        // An older backup that this one replaces (not the file itself on a file system that ignores case).
        if (file.backupFolder >= 0) {
            const FileDescriptor older(::openat(file.backupFolder, file.backupName.c_str(),
                                                O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
            struct stat backup {};
            if (older && ::fstat(older.get(), &backup) == 0 && S_ISREG(backup.st_mode) &&
                !(file.readFrom.device == backup.st_dev && file.readFrom.inode == backup.st_ino)) {
                const KeptContents::Kept kept =
                    kept_->keep(older.get(), backup.st_dev, file.backup, std::to_string(record.number) + ".bak");
                record.keptBackup = kept.path;
                record.keptBackupIdentity = kept.identity;
            }
        }
        noteElsewhere();
        append(outcomes_ + fileLine(record));  // the outcome before it comes along: one write a file
        outcomes_.clear();
        ++files_;
        pending_ = std::move(record);
        if (std::chrono::steady_clock::now() - lastSync_ >= kSyncInterval) sync();
    } catch (const UntrustedJournal& refused) {
        failed_ = true;  // nothing of this run is recorded
        messages.push_back(replaceNotRecorded(journal_.folder(), refused.distrust()));
    } catch (const std::system_error& error) {
        if (outOfSpace(error.code().value())) {
            // Keeping would cost the Replace its files: keep nothing.
            drop();
            messages.push_back(spaceMessage(notEnoughSpaceToKeep()));
            return;
        }
        giveUp(file.path, error.code().value(), messages);
    }
}

void RunRecorder::replaced(const WriteOutcome& outcome) {
    const std::lock_guard guard(mutex_);
    if (!pending_ || failed_ || dropped_) return;
    const JournalFileRecord record = std::move(*pending_);
    pending_.reset();
    FileIdentity backupMade;
    struct stat st {};
    if (outcome.written() && !outcome.backup.empty() && ::lstat(outcome.backup.c_str(), &st) == 0)
        backupMade = FileIdentity::of(st);
    // Written with the next record, or at the next flush: without its
    // outcome, the file's contents tell whether it was written.
    outcomes_ += outcomeLine(record.number, outcome.status, backupMade);
    if (outcome.written()) ++written_;
    else ::unlink(record.kept.c_str());  // the file keeps them itself
}

void RunRecorder::giveUp(const std::string& path, int error, std::vector<Message>& messages) {
    failed_ = true;
    const std::string why = systemErrorText(error);
    messages.push_back(Message{"Undo will not be able to take back this Replace from " + path + " on:\r\n" + why,
                               kProgramTitle, MessageIcon::Warning, MessageKind::FileError});
    if (!fd_) return;
    try {
        append(gaveUpLine(path + ": " + why));
    } catch (const std::system_error&) {
    }
}

void RunRecorder::drop() {
    dropped_ = true;
    pending_.reset();
    outcomes_.clear();
    if (!fd_) return;
    fd_.reset();
    std::error_code ignored;
    if (kept_)
        for (const std::string& elsewhere : kept_->elsewhere()) std::filesystem::remove_all(elsewhere, ignored);
    std::filesystem::remove_all(folder_, ignored);
    kept_.reset();
}

std::optional<std::uint64_t> RunRecorder::freeSpace() const {
    struct statvfs fs {};
    if (!root_ || ::fstatvfs(root_.get(), &fs) != 0) return std::nullopt;
    return static_cast<std::uint64_t>(fs.f_bavail) * fs.f_frsize;
}

void RunRecorder::plan(std::uint64_t keepBytes, std::uint64_t writeBytes, std::vector<Message>& messages) {
    const std::lock_guard guard(mutex_);
    if (keepBytes == 0 || failed_ || dropped_) return;
    std::optional<std::uint64_t> free = freeSpace();
    if (!free || *free >= keepBytes + writeBytes) return;
    try {
        if (!lock_) lock_.reset(journal_.lock(false));
        while (*free < keepBytes + writeBytes && journal_.giveBackOldest(name_)) {
            free = freeSpace();
            if (!free) return;
        }
    } catch (const std::system_error&) {
        // No journal to give back from: this run keeps nothing either way.
    }
    if (*free >= keepBytes + writeBytes) return;
    drop();
    messages.push_back(spaceMessage(notEnoughSpaceToKeep(keepBytes)));
}

bool RunRecorder::giveBackSpace(std::vector<Message>& messages) {
    const std::lock_guard guard(mutex_);
    if (finished_) return false;
    try {
        if (!lock_) lock_.reset(journal_.lock(false));
        if (journal_.giveBackOldest(name_)) return true;
    } catch (const std::system_error&) {
    }
    if (dropped_ || !fd_) return false;  // nothing kept: the disk is full without us
    drop();
    messages.push_back(spaceMessage(notEnoughSpaceToKeep()));
    return true;
}

void RunRecorder::finished() {
    const std::lock_guard guard(mutex_);
    if (finished_) return;
    finished_ = true;
    if (fd_) {
        if (written_ == 0) {
            std::error_code ignored;  // a run that wrote nothing is not kept
            std::filesystem::remove_all(folder_, ignored);
            for (const std::string& elsewhere : kept_->elsewhere()) std::filesystem::remove_all(elsewhere, ignored);
        } else {
            try {
                append(std::exchange(outcomes_, {}) + endLine(nowNs()));
                sync();
            } catch (const std::system_error&) {
            }
        }
        fd_.reset();
    }
    if (lock_) {
        lock_.reset();  // lets the journal's older runs go
        journal_.prune();
    }
}

}  // namespace vantorel::history
