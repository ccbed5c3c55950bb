#include "search/WriteBack.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <system_error>

#include "core/AtomicFileWriter.h"
#include "core/FolderSync.h"
#include "files/FileFunctions.h"
#include "search/FileProcessor.h"
#include "search/ReplaceRecorder.h"

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

constexpr const char* kChangedBeforeWriting =
    " was changed by another program while it was being processed; it was left as it is.";
constexpr const char* kLinkLeadsOutside = " is a link to a file outside the start folder; it was not changed.";
constexpr const char* kOutside = " is outside the start folder; it was not changed.";
constexpr const char* kNotExactText =
    " is UTF-16 text with code units that are not characters; it was not changed.";

Message fileMessage(std::string text, MessageIcon icon) {
    return Message{std::move(text), kProgramTitle, icon, MessageKind::FileError};
}

struct Target {
    std::string path;  // the file to replace: a link is written through, not replaced
    bool link = false;
    bool outside = false;
};

Target targetOf(const std::string& path, const WriteSettings& settings) {
    struct stat st {};
    Target target{path};
    target.link = ::lstat(path.c_str(), &st) == 0 && S_ISLNK(st.st_mode);
    const bool walked = !settings.walkedFolder.empty() && path.rfind(settings.walkedFolder, 0) == 0;
    if ((walked || settings.realStartFolder.empty()) && !target.link) return target;
    std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    if (!real) return target;  // the file went away: writing it will say so
    if (target.link) target.path = real.get();
    target.outside = !settings.realStartFolder.empty() &&
                     std::string_view(real.get()).substr(0, settings.realStartFolder.size()) != settings.realStartFolder;
    return target;
}

// Copies a file's contents and attributes to `copy`, replacing it whole.
void copyFile(const std::string& from, const std::string& copy, FolderSync& folders) {
    const int fd = ::open(from.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) throw std::system_error(errno, std::generic_category(), from);
    struct Closer {
        int fd;
        ~Closer() { ::close(fd); }
    } closer{fd};
    struct stat st {};
    if (::fstat(fd, &st) != 0) throw std::system_error(errno, std::generic_category(), from);
    AtomicFileWriter writer(copy, AtomicFileWriter::Attributes{st.st_mode, st.st_uid, st.st_gid, from});
    std::string buffer(1 << 20, '\0');
    while (true) {
        const ssize_t n = ::read(fd, buffer.data(), buffer.size());
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) throw std::system_error(errno, std::generic_category(), from);
        if (n == 0) break;
        writer.write(std::string_view(buffer.data(), static_cast<std::size_t>(n)));
    }
    writer.commit(&folders);
}

// Keeps the old contents under the backup name, beside the listed file, and
// returns that name. The file keeps its name throughout: the backup is a
// second name of the old file or, where the file system has no such thing,
// a copy. Nothing after a message when no backup could be made; the file
// must then be left as it is.
std::optional<std::string> keepBackup(const std::string& path, const std::string& target, FolderSync& folders,
                                      std::vector<Message>& messages) {
    const std::string backup = backupNameFor(path);
    const std::string failed = "Error creating .bak file: " + backup;
    struct stat fileStat {}, backupStat {};
    if (::lstat(backup.c_str(), &backupStat) == 0) {
        // On a file system that ignores case, "OLD.BAK" gets "OLD.bak": itself.
        if (::stat(target.c_str(), &fileStat) == 0 && ::stat(backup.c_str(), &backupStat) == 0 &&
            fileStat.st_dev == backupStat.st_dev && fileStat.st_ino == backupStat.st_ino) {
            messages.push_back(fileMessage(failed, MessageIcon::None));
            return std::nullopt;
        }
        if (!deleteFile(backup)) {
            messages.push_back(fileMessage("Error deleting file " + backup, MessageIcon::Warning));
            messages.push_back(fileMessage(failed, MessageIcon::None));
            return std::nullopt;
        }
    }
    if (::linkat(AT_FDCWD, target.c_str(), AT_FDCWD, backup.c_str(), 0) == 0) {
        folders.add(FolderOf(backup));
        return backup;
    }
    if (errno != EEXIST) {
        try {
            copyFile(target, backup, folders);
            return backup;
        } catch (const std::system_error&) {
        }
    }
    messages.push_back(fileMessage(failed, MessageIcon::None));
    return std::nullopt;
}

WriteOutcome refusal(WriteStatus status, const std::string& path) {
    WriteOutcome outcome;
    outcome.status = status;
    outcome.path = path;
    return outcome;
}

WriteOutcome failure(const std::string& path, const std::system_error& error, std::vector<Message>& messages) {
    WriteOutcome outcome = refusal(WriteStatus::Failed, path);
    outcome.error = systemErrorText(error.code().value());
    messages.push_back(fileMessage(writeErrorMessage(path, outcome.error), MessageIcon::Warning));
    return outcome;
}

}  // namespace

namespace {

constexpr std::pair<WriteStatus, std::string_view> kStatusNames[] = {
    {WriteStatus::Written, "written"},
    {WriteStatus::ReadOnly, "read-only"},
    {WriteStatus::OutsideStartFolder, "outside-start-folder"},
    {WriteStatus::NotExactText, "not-exact-text"},
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

PendingWrite::PendingWrite(std::string path, std::unique_ptr<AtomicFileWriter> writer, bool makeBackups,
                           const FileIdentity& readFrom, WriteBudget::Share share)
    : path_(std::move(path)),
      writer_(std::move(writer)),
      makeBackups_(makeBackups),
      readFrom_(readFrom),
      share_(std::move(share)) {}

PendingWrite::~PendingWrite() = default;

WriteOutcome PendingWrite::commit(std::vector<Message>& messages, FolderSync& folders, ReplaceRecorder* recorder) {
    const std::string& target = writer_->target();
    if (FileIdentity::of(target) != readFrom_) {
        messages.push_back(fileMessage(path_ + kChangedBeforeWriting, MessageIcon::Warning));
        return refusal(WriteStatus::ChangedMeanwhile, target);
    }
    if (recorder) {
        const std::string backupName = makeBackups_ ? backupNameFor(path_) : std::string();
        recorder->replacing(ReplacingFile{path_, target, readFrom_, writer_->written(), backupName}, messages);
    }
    WriteOutcome outcome = replace(messages, folders);
    if (recorder) recorder->replaced(outcome);
    return outcome;
}

WriteOutcome PendingWrite::abandon(int error, std::vector<Message>& messages) {
    writer_->discard();
    return failure(path_, std::system_error(error, std::generic_category(), path_), messages);
}

WriteOutcome PendingWrite::replace(std::vector<Message>& messages, FolderSync& folders) {
    const std::string& target = writer_->target();
    WriteOutcome outcome = refusal(WriteStatus::Written, target);
    if (makeBackups_) {
        std::optional<std::string> backup = keepBackup(path_, target, folders, messages);
        if (!backup) return refusal(WriteStatus::BackupFailed, target);
        outcome.backup = std::move(*backup);
    }
    try {
        writer_->commit(&folders);
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

namespace {

// Whether a file with matches may be written, and if not why.
struct WriteCheck {
    Target target;
    std::optional<WriteStatus> refused;
    const char* why = nullptr;  // the message's ending, for some refusals
    int error = 0;              // the system's error, for Failed
};

WriteCheck checkWrite(const std::string& path, const FileText& text, const WriteSettings& settings) {
    WriteCheck check;
    check.target = targetOf(path, settings);
    const Target& target = check.target;
    if ((text.mode() & S_IWUSR) == 0) {
        check.refused = WriteStatus::ReadOnly;  // the owner-write bit is clear
    } else if (target.outside) {
        check.refused = WriteStatus::OutsideStartFolder;
        check.why = target.link ? kLinkLeadsOutside : kOutside;
    } else if (!text.roundTrips()) {
        check.refused = WriteStatus::NotExactText;
        check.why = kNotExactText;
    } else {
        // A file we may not write is not replaced behind its owner's back,
        // even where its folder would let us rename over it.
        static const uid_t euid = ::geteuid();
        const bool ownWritable = euid == 0 || text.owner() == euid;  // the write bit is set
        if (!ownWritable && ::access(target.path.c_str(), W_OK) != 0) {
            check.refused = WriteStatus::Failed;
            check.error = errno;
        }
    }
    return check;
}

}  // namespace

std::optional<WriteStatus> writeRefusal(const std::string& path, const FileText& text, const WriteSettings& settings) {
    return checkWrite(path, text, settings).refused;
}

PreparedWrite prepareWriteBack(const std::string& path, const FileText& text,
                               const std::vector<CompiledJob>& jobs, const WriteSettings& settings,
                               WriteTurn* turn) {
    PreparedWrite result;
    const WriteCheck check = checkWrite(path, text, settings);
    const Target& target = check.target;
    if (check.refused) {
        DiscardSink discard;
        result.matches = applyJobs(text, jobs, discard);
        if (result.matches == 0) return result;
        if (*check.refused == WriteStatus::Failed) {
            const std::system_error error(check.error, std::generic_category(), path);
            result.refused = failure(path, error, result.messages);
        } else {
            result.refused = refusal(*check.refused, target.path);
            if (check.why) result.messages.push_back(fileMessage(path + check.why, MessageIcon::Warning));
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
    std::unique_ptr<AtomicFileWriter> writer;
    try {
        writer = std::make_unique<AtomicFileWriter>(
            target.path, AtomicFileWriter::Attributes{text.mode(), text.owner(), text.group(), {}});
        WriterSink fileSink(*writer);
        result.matches = writeNewText(text, jobs, fileSink);
        if (result.matches == 0) return result;  // nothing changed: the writer removes its file
        if (settings.syncedLater) writer->finishUnsynced(*settings.syncedLater);
        else writer->finish();
    } catch (const std::system_error& error) {
        if (result.matches == 0) {  // the failure came first: what would have been replaced?
            DiscardSink discard;
            result.matches = applyJobs(text, jobs, discard);
        }
        result.refused = failure(path, error, result.messages);
        return result;
    }
    share.resize(writer->written().size);
    result.pending = std::make_unique<PendingWrite>(path, std::move(writer), settings.makeBackups,
                                                    text.identity(), std::move(share));
    return result;
}

}  // namespace vantorel
