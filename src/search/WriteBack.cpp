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
#include "core/TreeRoot.h"
#include "files/FileFunctions.h"
#include "search/FileProcessor.h"
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

}  // namespace

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
        folder = openWriteFolder(settings.root, target.relative);
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
