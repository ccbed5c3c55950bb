#include "search/WriteBack.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <system_error>
#include <vector>

#include "core/AtomicFileWriter.h"
#include "core/FileDescriptor.h"
#include "core/FolderSync.h"
#include "core/LockedFile.h"
#include "core/TemporaryFiles.h"
#include "core/TreeRoot.h"
#include "files/FileFunctions.h"
#include "search/FileProcessor.h"
#include "search/ReplaceRecorder.h"
#include "search/WriteMessages.h"

namespace vantorel {
namespace {

class WriterSink : public TextSink {
public:
    explicit WriterSink(AtomicFileWriter& writer) : writer_(writer) {}
    void write(std::string_view piece) override { writer_.write(piece); }

private:
    AtomicFileWriter& writer_;
};

// The text of a UTF-16 file goes back to UTF-16, starting with its mark.
class Utf16Sink : public TextSink {
public:
    Utf16Sink(TextSink& out, Utf16Order order) : out_(out), order_(order) {}
    void write(std::string_view piece) override {
        if (piece.empty()) return;
        encoded_.clear();
        if (first_ && piece.substr(0, 3) != "\xef\xbb\xbf") appendUtf16(encoded_, "\xef\xbb\xbf", order_);
        first_ = false;
        appendUtf16(encoded_, piece, order_);
        out_.write(encoded_);
    }

private:
    TextSink& out_;
    Utf16Order order_;
    std::string encoded_;
    bool first_ = true;
};

class DiscardSink : public TextSink {
public:
    void write(std::string_view) override {}
};

class TeeSink : public TextSink {
public:
    TeeSink(TextSink& first, TextSink& second) : first_(first), second_(second) {}
    void write(std::string_view piece) override {
        first_.write(piece);
        second_.write(piece);
    }

private:
    TextSink& first_;
    TextSink& second_;
};

// Whether the process is in `group` (a new file of its own may be given it).
bool inGroup(gid_t group) {
    if (group == ::getegid()) return true;
    std::vector<gid_t> groups(static_cast<std::size_t>(std::max(::getgroups(0, nullptr), 0)));
    groups.resize(static_cast<std::size_t>(std::max(::getgroups(static_cast<int>(groups.size()), groups.data()), 0)));
    return std::find(groups.begin(), groups.end(), group) != groups.end();
}

// Whether a check is about to refuse the file, and how to say it.
struct WriteCheck {
    WriteTarget target;
    std::optional<WriteStatus> refused;
    std::string why;  // the message's ending, for some refusals
    int error = 0;    // the system's error, for Failed
};

WriteCheck checkWrite(const std::string& path, const FileText& text, const WriteSettings& settings) {
    WriteCheck check;
    check.target = writeTargetOf(path, settings);
    const WriteTarget& target = check.target;
    const uid_t euid = ::geteuid();
    if ((text.mode() & S_IWUSR) == 0) {
        check.refused = WriteStatus::ReadOnly;  // the owner-write bit is clear
    } else if (target.outside) {
        check.refused = WriteStatus::OutsideStartFolder;
        check.why = target.link ? kLinkLeadsOutside : kOutside;
    } else if (!text.roundTrips()) {
        check.refused = WriteStatus::NotExactText;
        check.why = kNotExactText;
    } else if (euid != 0 && text.owner() != euid) {
        // A file we may not write is not replaced behind its owner's back,
        // even where its folder would let us rename over it; one we may
        // write is left all the same, as its new file would be ours.
        if (::access(target.path.c_str(), W_OK) != 0) {
            check.refused = WriteStatus::Failed;
            check.error = errno;
        } else {
            check.refused = WriteStatus::ForeignOwner;
            check.why = kForeignOwner;
        }
    } else if (euid != 0 && !inGroup(text.group())) {
        check.refused = WriteStatus::ForeignOwner;
        check.why = kForeignGroup;
    }
    return check;
}

// The open folder where the file is, reached as a write reaches it.
FileDescriptor openFolderOf(const TreeRoot* root, const std::string& relative) {
    if (root) return root->openFolder(TreeRoot::folderOf(relative));
    const std::string folder = FolderOf(relative);
    FileDescriptor fd(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!fd) throw std::system_error(errno, std::generic_category(), folder);
    return fd;
}

// The refusal of a file that is no longer where it was, or no longer the
// file that was read.
WriteOutcome changedRefusal(const std::string& path, const WriteTarget& target, int error,
                            std::vector<Message>& messages) {
    // A link where a folder or the file was: the way has changed under us.
    const bool link = error == ELOOP || error == EXDEV || error == ENOTDIR;
    messages.push_back(fileMessage(path + (link ? kNowThroughLink : kChangedBeforeWriting), MessageIcon::Warning));
    return refusal(WriteStatus::ChangedMeanwhile, target.path);
}

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

namespace {

constexpr std::pair<WriteStatus, std::string_view> kStatusNames[] = {
    {WriteStatus::Written, "written"},
    {WriteStatus::ReadOnly, "read-only"},
    {WriteStatus::OutsideStartFolder, "outside-start-folder"},
    {WriteStatus::NotExactText, "not-exact-text"},
    {WriteStatus::ForeignOwner, "foreign-owner"},
    {WriteStatus::BackupFailed, "backup-failed"},
    {WriteStatus::ChangedMeanwhile, "changed-meanwhile"},
    {WriteStatus::Failed, "failed"},
};

}  // namespace

std::string_view writeStatusName(WriteStatus status) noexcept {
    for (const auto& [known, name] : kStatusNames)
        if (known == status) return name;
    return "failed";
}

std::optional<WriteStatus> writeStatusNamed(std::string_view name) noexcept {
    for (const auto& [status, known] : kStatusNames)
        if (known == name) return status;
    return std::nullopt;
}

std::string writeErrorMessage(const std::string& path, const std::string& error) {
    return "Error writing " + path + "\r\n" + error;
}

std::uint64_t applyJobs(const FileText& text, const std::vector<CompiledJob>& jobs, TextSink& out, TextEdits* edits) {
    const TextEncoding encoding = text.encoding();
    auto applies = [encoding](const CompiledJob& job) {
        return !job.empty() && job.replacement(encoding) != nullptr;
    };
    std::size_t last = jobs.size();
    for (std::size_t i = 0; i < jobs.size(); ++i)
        if (applies(jobs[i])) last = i;
    if (last == jobs.size()) {
        out.write(text.bytes());
        return 0;
    }
    std::uint64_t total = 0;
    std::string_view current = text.bytes();
    std::string held, next;
    TextEdits jobEdits;
    auto replace = [&](const CompiledJob& job, TextSink& sink) {
        jobEdits.clear();
        total += replaceAll(job.pattern(encoding), current, *job.replacement(encoding), sink,
                            edits ? &jobEdits : nullptr);
        if (edits) *edits = composeEdits(*edits, jobEdits);
    };
    for (std::size_t i = 0; i < last; ++i) {
        if (!applies(jobs[i])) continue;
        next.clear();
        StringSink sink(next);
        replace(jobs[i], sink);
        held.swap(next);
        current = held;
    }
    // The last job streams straight to the output.
    replace(jobs[last], out);
    return total;
}

std::uint64_t writeNewText(const FileText& text, const std::vector<CompiledJob>& jobs, TextSink& out, TextEdits* edits,
                           TextSink* textOut) {
    std::optional<Utf16Sink> encoder;
    TextSink* fileSink = &out;
    if (const auto order = text.utf16()) fileSink = &encoder.emplace(out, *order);
    if (!textOut) return applyJobs(text, jobs, *fileSink, edits);
    TeeSink tee(*textOut, *fileSink);
    return applyJobs(text, jobs, tee, edits);
}

WriteTarget writeTargetOf(const std::string& path, const WriteSettings& settings) {
    WriteTarget target;
    target.path = path;
    struct stat st {};
    target.link = ::lstat(path.c_str(), &st) == 0 && S_ISLNK(st.st_mode);
    target.backupPath = backupNameFor(path);
    if (!settings.root) {
        if (target.link) {
            std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
            if (real) target.path = real.get();
        }
        target.relative = target.path;
        target.backupRelative = target.backupPath;
        return target;
    }
    const TreeRoot& root = *settings.root;
    const std::optional<std::string> relative = root.relativeOf(path, settings.walked, target.link);
    target.outside = !relative;
    if (relative) {
        target.relative = *relative;
        if (target.link) target.path = root.realPath() + *relative;
    }
    // The backup's folder is the listed file's own, wherever a link leads.
    if (!target.link && relative) {
        target.backupRelative = std::string(TreeRoot::folderOf(*relative)) + FileNameOf(target.backupPath);
    } else if (const std::optional<std::string> folder = root.relativeOf(FolderOf(path) + ".", false, true)) {
        target.backupRelative = *folder + "/" + FileNameOf(target.backupPath);
    } else if (realFolderOf(FolderOf(path)) == root.realPath()) {
        target.backupRelative = FileNameOf(target.backupPath);
    } else {
        target.backupOutside = true;
    }
    return target;
}

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
        folder = openFolderOf(root_, target_.relative);
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
            backupFolder = openFolderOf(root_, target_.backupRelative);
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

std::optional<WriteStatus> writeRefusal(const std::string& path, const FileText& text, const WriteSettings& settings) {
    return checkWrite(path, text, settings).refused;
}

PreparedWrite prepareWriteBack(const std::string& path, const FileText& text,
                               const std::vector<CompiledJob>& jobs, const WriteSettings& settings,
                               WriteTurn* turn) {
    PreparedWrite result;
    const WriteCheck check = checkWrite(path, text, settings);
    const WriteTarget& target = check.target;
    auto countMatches = [&] {
        DiscardSink discard;
        return applyJobs(text, jobs, discard);
    };
    if (check.refused) {
        result.matches = countMatches();
        if (result.matches == 0) return result;
        if (*check.refused == WriteStatus::Failed) {
            const std::system_error error(check.error, std::generic_category(), path);
            result.refused = failure(path, error, result.messages);
        } else {
            result.refused = refusal(*check.refused, target.path);
            if (!check.why.empty()) result.messages.push_back(fileMessage(path + check.why, MessageIcon::Warning));
        }
        return result;
    }
    WriteBudget::Share share;
    if (turn) {
        std::optional<WriteBudget::Share> room = turn->waitForRoom(text.bytes().size());
        if (!room) {
            result.stopped = true;
            return result;
        }
        share = std::move(*room);
    }
    // The file where a write reaches it must be the one whose text was read.
    FileDescriptor folder, original;
    int error = 0;
    try {
        folder = openFolderOf(settings.root, target.relative);
        const std::string name(settings.root ? TreeRoot::nameOf(target.relative) : FileNameOf(target.relative));
        original.reset(::openat(folder.get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
        if (!original) error = errno;
        else if (FileIdentity::ofOpen(original.get()) != std::optional(text.identity())) error = ESTALE;
    } catch (const std::system_error& failed) {
        error = failed.code().value();
    }
    if (error != 0) {
        result.matches = countMatches();
        if (result.matches > 0) result.refused = changedRefusal(path, target, error, result.messages);
        return result;
    }
    const std::string name(settings.root ? TreeRoot::nameOf(target.relative) : FileNameOf(target.relative));
    const AtomicFileWriter::Attributes keep{text.mode(), text.owner(), text.group(), original.get()};
    std::unique_ptr<AtomicFileWriter> writer;
    while (true) {
        try {
            writer = std::make_unique<AtomicFileWriter>(folder.get(), name, target.path, &keep);
            WriterSink fileSink(*writer);
            result.matches = writeNewText(text, jobs, fileSink);
            if (result.matches == 0) return result;  // nothing changed: the writer leaves nothing
            if (settings.syncedLater) writer->finishUnsynced(*settings.syncedLater);
            else writer->finish();
            break;
        } catch (const std::system_error& failed) {
            writer.reset();
            const int code = failed.code().value();
            // Space that only protects is given back before a file fails for want of it.
            const bool full = code == ENOSPC || code == EDQUOT;
            if (full && settings.space && settings.space->relieve(result.messages)) continue;
            if (result.matches == 0) result.matches = countMatches();  // the failure came first
            if (full && turn) {
                result.noSpace = true;  // again on the driver's thread, once what waits before it is written
                return result;
            }
            result.refused = failure(path, failed, result.messages);
            return result;
        }
    }
    share.resize(writer->written().size);
    result.pending = std::make_unique<PendingWrite>(path, target, settings.root, std::move(writer),
                                                    settings.makeBackups, text.identity(), std::move(share));
    return result;
}

}  // namespace vantorel
