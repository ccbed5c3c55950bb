#include "search/WriteBack.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>
#include <system_error>

#include "core/AtomicFileWriter.h"
#include "files/FileFunctions.h"
#include "search/FileProcessor.h"
#include "search/FileText.h"

namespace vantorel {
namespace {

class WriterSink : public TextSink {
public:
    explicit WriterSink(AtomicFileWriter& writer) : writer_(writer) {}
    void write(std::string_view piece) override { writer_.write(piece); }

private:
    AtomicFileWriter& writer_;
};

class DiscardSink : public TextSink {
public:
    void write(std::string_view) override {}
};

constexpr const char* kChangedBeforeWriting =
    "was changed by another program while it was being processed; it was left as it is.";

Message fileMessage(std::string text, MessageIcon icon) {
    return Message{std::move(text), kProgramTitle, icon, MessageKind::FileError};
}

// The file that a path finally names: a link is written through, not replaced.
std::string resolvedTarget(const std::string& path) {
    struct stat st {};
    if (::lstat(path.c_str(), &st) != 0 || !S_ISLNK(st.st_mode)) return path;
    std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    return real ? std::string(real.get()) : path;
}

// Keeps the old contents under the backup name. The old file stays in place
// (as a second name) until the new text is renamed over it, so nothing is
// lost whatever happens next. False after a message when no backup could be
// made; the file must then be left as it is.
bool keepBackup(const std::string& path, const std::string& target, std::vector<Message>& messages) {
    const std::string backup = backupNameFor(path);
    const std::string failed = "Error creating .bak file: " + backup;
    struct stat fileStat {}, backupStat {};
    if (::lstat(backup.c_str(), &backupStat) == 0) {
        // On a file system that ignores case, "OLD.BAK" gets "OLD.bak": itself.
        if (::stat(target.c_str(), &fileStat) == 0 && ::stat(backup.c_str(), &backupStat) == 0 &&
            fileStat.st_dev == backupStat.st_dev && fileStat.st_ino == backupStat.st_ino) {
            messages.push_back(fileMessage(failed, MessageIcon::None));
            return false;
        }
        if (!deleteFile(backup)) {
            messages.push_back(fileMessage("Error deleting file " + backup, MessageIcon::Warning));
            messages.push_back(fileMessage(failed, MessageIcon::None));
            return false;
        }
    }
    if (::linkat(AT_FDCWD, target.c_str(), AT_FDCWD, backup.c_str(), AT_SYMLINK_FOLLOW) == 0)
        return true;
    if (::rename(target.c_str(), backup.c_str()) == 0) return true;
    messages.push_back(fileMessage(failed, MessageIcon::None));
    return false;
}

}  // namespace

std::uint64_t applyJobs(const FileText& text, const std::vector<CompiledJob>& jobs, TextSink& out) {
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
    for (std::size_t i = 0; i < last; ++i) {
        if (!applies(jobs[i])) continue;
        next.clear();
        StringSink sink(next);
        total += replaceAll(jobs[i].pattern(encoding), current, *jobs[i].replacement(encoding), sink);
        held.swap(next);
        current = held;
    }
    // The last job streams straight to the output.
    total += replaceAll(jobs[last].pattern(encoding), current, *jobs[last].replacement(encoding), out);
    return total;
}

PendingWrite::PendingWrite(std::string path, std::string target,
                           std::unique_ptr<AtomicFileWriter> writer, bool makeBackups,
                           const FileIdentity& readFrom)
    : path_(std::move(path)),
      target_(std::move(target)),
      writer_(std::move(writer)),
      makeBackups_(makeBackups),
      readFrom_(readFrom) {}

PendingWrite::~PendingWrite() = default;

bool PendingWrite::commit(std::vector<Message>& messages) {
    if (FileIdentity::of(target_) != readFrom_) {
        messages.push_back(fileMessage(path_ + " " + kChangedBeforeWriting, MessageIcon::Warning));
        return false;
    }
    if (makeBackups_ && !keepBackup(path_, target_, messages)) return false;
    writer_->commit();
    return true;
}

PreparedWrite prepareWriteBack(const std::string& path, const FileText& text,
                               const std::vector<CompiledJob>& jobs, bool makeBackups) {
    PreparedWrite result;
    if ((text.mode() & S_IWUSR) == 0) {  // read-only: the owner-write bit is clear
        DiscardSink discard;
        result.matches = applyJobs(text, jobs, discard);
        result.readOnlySkipped = result.matches > 0;
        return result;
    }
    const std::string target = resolvedTarget(path);
    // A file we may not write is not replaced behind its owner's back, even
    // where its folder would let us rename over it.
    static const uid_t euid = ::geteuid();
    const bool ownWritable = euid == 0 || text.owner() == euid;  // the write bit is set
    if (!ownWritable && ::access(target.c_str(), W_OK) != 0)
        throw std::system_error(errno, std::generic_category(), target);
    auto writer = std::make_unique<AtomicFileWriter>(
        target, AtomicFileWriter::Attributes{text.mode(), text.owner(), text.group()});
    WriterSink sink(*writer);
    result.matches = applyJobs(text, jobs, sink);
    if (result.matches == 0) return result;  // nothing changed: the writer removes its file
    writer->finish();
    result.pending = std::make_unique<PendingWrite>(path, target, std::move(writer), makeBackups, text.identity());
    return result;
}

}  // namespace vantorel
