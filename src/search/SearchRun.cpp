#include "search/SearchRun.h"

#include <sys/statvfs.h>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <thread>
#include <unordered_map>
#include <unordered_set>

#include "core/FolderSync.h"
#include "core/TreeRoot.h"
#include "files/FileFunctions.h"
#include "files/FileListBuilder.h"
#include "search/FileProcessor.h"
#include "search/OrderedWork.h"
#include "regex/PatternConstruction.h"
#include "core/ReplaceRecorder.h"

namespace vantorel {
namespace {

constexpr const char* kInvalidPattern = "Regular Expression is invalid - please check syntax.";
constexpr const char* kReplaceWithNothing = "You have chosen to replace this with nothing. Sure?";
constexpr const char* kInvalidFilter = "Please enter a valid file type filter (eg. *.txt)";
constexpr const char* kInvalidFolder = "Missing or invalid start location";
constexpr const char* kSearchStopped = "Search operation stopped.";
constexpr const char* kReplaceStopped =
    "Replace operation stopped. Any replacements already made will not be undone.";
constexpr const char* kSearchComplete = "Search Complete";
constexpr const char* kNoFiles = "No files found in search path matching filter.";
constexpr const char* kNoMatches = "No matches found in files.";
constexpr const char* kReplaceComplete = "Replace Operation Complete";
constexpr const char* kRunError = "Error in Find/Replace process!";

Message runFailure(const char* what) {
    return Message{std::string(kRunError) + "\r\n" + what, kProgramTitle, MessageIcon::Warning, MessageKind::Failure};
}

// The system reads a name only up to its first NUL.
bool holdsNul(std::string_view text) { return text.find('\0') != std::string_view::npos; }

Message information(std::string text, MessageKind kind, std::string title = kProgramTitle) {
    return Message{std::move(text), std::move(title), MessageIcon::Information, kind};
}

// New texts that wait on disk for their turn, beyond the one the writes
// wait for: enough to keep every thread busy on small files.
constexpr std::uint64_t kWaitingBytes = std::uint64_t{16} << 20;
// The texts that the counting pass keeps in memory for the writing pass.
constexpr std::uint64_t kKeptTextBytes = std::uint64_t{64} << 20;
// New files flushed to disk together, at most, before they replace theirs
// (and no more than half the bytes that may wait on disk).
constexpr std::size_t kFilesFlushedTogether = 256;

struct FileKeyHash {
    std::size_t operator()(const FileKey& key) const noexcept {
        return std::hash<std::uint64_t>()(key.inode * 0x9E3779B97F4A7C15ULL ^ key.device);
    }
};

unsigned threadCount(unsigned requested) {
    if (requested > 0) return requested;
    return std::max(1u, std::thread::hardware_concurrency());
}

// The position of a file as a percentage of the list, rounded half to even.
int percentOf(std::size_t position, std::size_t count) {
    if (count <= 1) return 100;
    return static_cast<int>(std::nearbyint(100.0 * static_cast<double>(position) /
                                           static_cast<double>(count - 1)));
}

class Driver {
public:
    Driver(const RunRequest& request, SearchState& state, RunHost& host)
        : request_(request), state_(state), host_(host) {}

    RunOutcome run() {
        if (!validate()) {
            host_.runFinished(outcome_);
            return outcome_;
        }
        try {
            execute();
            outcome_.result = RunResult::Completed;
        } catch (const std::exception& error) {
            outcome_.result = RunResult::Failed;
            host_.showMessage(runFailure(error.what()));
        }
        host_.setProgress(-1, PassKind::Searching);
        host_.runFinished(outcome_);
        return outcome_;
    }

private:
    // Every job's pattern first, then the filter, then the folder.
    bool validate() {
        const PatternOptions options{request_.regularExpression, request_.wholeWords};
        for (std::size_t i = 0; i < request_.jobs.size(); ++i) {
            const FindReplaceJob& typed = request_.jobs[i];
            JobPattern job = buildJobPattern(typed.findText, typed.replaceText, options);
            try {
                jobs_.emplace_back(job.findPattern, job.replaceText, request_.ignoreCase);
            } catch (const PatternError& error) {
                outcome_.patternError = error;
                outcome_.invalidJob = i;
                host_.showMessage(information(kInvalidPattern, MessageKind::Validation));
                return false;
            }
            if (request_.kind == RunKind::Replace && !request_.dryRun && job.replaceText.empty()) {
                const Message question{job.findPattern + "\r\n\r\n" + kReplaceWithNothing,
                                       kProgramTitle, MessageIcon::Question, MessageKind::Validation};
                if (!host_.askYesNo(question)) return false;
            }
        }
        // A filter or folder holding a NUL is refused.
        if (request_.filter.empty() || holdsNul(request_.filter)) {
            host_.showMessage(information(kInvalidFilter, MessageKind::Validation));
            return false;
        }
        if (request_.startFolder.empty() || holdsNul(request_.startFolder) || !FolderExists(request_.startFolder)) {
            host_.showMessage(information(kInvalidFolder, MessageKind::Validation));
            return false;
        }
        return true;
    }

    void buildList() {
        if (!request_.markedOnly) {
            FileListCallbacks callbacks;
            callbacks.status = [this](const std::string& text) { host_.setStatus(text); };
            callbacks.information = [this](const std::string& text) {
                host_.showMessage(information(text, MessageKind::Validation));
            };
            std::vector<std::string> ownFolders;
            if (request_.journal) ownFolders.push_back(request_.journal->folder());
            files_ = BuildFileList(request_.startFolder, request_.filter, request_.scanSubfolders,
                                   state_.stopRequested, callbacks, request_.skipVersionControl, ownFolders);
        } else {
            // Marked files are taken as they are, but none in an undo journal's folder.
            UndoFolders undoFolders;
            for (const std::string& path : request_.markedFiles)
                if (!holdsNul(path) && !undoFolders.holds(path)) files_.addPath(path);
            host_.clearRows();
        }
    }

    void execute() {
        host_.runStarted(request_);
        if (!request_.markedOnly) host_.clearRows();
        host_.setProgress(-1, PassKind::Searching);
        // A Replace writes below the start folder as it is now, whatever
        // becomes of its name while the run goes on.
        if (request_.kind == RunKind::Replace) root_.emplace(TreeRoot::open(request_.startFolder));
        host_.setStatus("Building file list...");
        buildList();

        const bool isReplace = request_.kind == RunKind::Replace;
        bool replace = isReplace;
        int passes = isReplace ? 2 : 1;
        skipped_.assign(files_.size(), false);
        duplicate_.assign(files_.size(), false);
        after_.assign(files_.size(), kNone);
        while (passes > 0) {
            if (state_.stopRequested) {
                replace = false;  // stopped during the counting pass of a Replace
                break;
            }
            --passes;
            const bool writing = isReplace && passes == 0;
            runPass(writing ? PassKind::Writing : isReplace ? PassKind::Counting : PassKind::Searching);
            if (isReplace && passes == 1 && request_.dryRun) {
                passes = 0;  // shown, not written
                replace = false;
            } else if (isReplace && passes == 1 && totalMatches_ >= 1 && !state_.stopRequested) {
                host_.setStatus("Replace Files?");
                const Message question{"Replace " + std::to_string(totalMatches_) + " occurences in " +
                                           std::to_string(filesWithMatches_) + " file(s) ?",
                                       kProgramTitle, MessageIcon::Question, MessageKind::Notice};
                if (host_.askYesNo(question)) {
                    confirmed_ = true;
                    host_.clearRows();
                } else {
                    passes = 0;
                    replace = false;
                }
            }
        }
        summarise(replace);
    }

    // The writing pass lets a file wait until the driver has caught up:
    // for its turn to hold a temporary file on disk.
    class DriverWriteTurn : public WriteTurn {
    public:
        DriverWriteTurn(OrderedWork<FileOutcome>::Turn& turn, std::size_t position, WriteBudget& budget)
            : turn_(turn), position_(position), budget_(budget) {}
        std::optional<WriteBudget::Share> waitForRoom(std::uint64_t bytes) override {
            std::optional<WriteBudget::Share> share;
            // The file the driver waits for always goes ahead.
            turn_.waitUntil([&](std::size_t handled) {
                if (handled != position_ && !budget_.fits(bytes)) return false;
                share.emplace(&budget_, bytes);
                return true;
            });
            return share;
        }

    private:
        OrderedWork<FileOutcome>::Turn& turn_;
        std::size_t position_;
        WriteBudget& budget_;
    };

    FileOutcome processAt(std::size_t position, const PassSettings& settings, OrderedWork<FileOutcome>::Turn& turn) {
        MatchStop stop(state_.stopRequested);
        try {
            if (!settings.write) return processFile(files_.path(position), jobs_, settings);
            // A file that an earlier file's backup replaces is read once that backup is made.
            const std::size_t after = after_[position];
            if (after != kNone && !turn.waitUntil([after](std::size_t handled) { return handled > after; }))
                throw MatchStopped();
            DriverWriteTurn writeTurn(turn, position, *budget_);
            return processFile(files_.path(position), jobs_, settings, &writeTurn, std::move(kept_[position]));
        } catch (const MatchStopped&) {
            FileOutcome stopped;
            stopped.interrupted = true;
            return stopped;
        }
    }

    // A file written on the driver's own thread, nothing waiting before it.
    FileOutcome writeAlone(std::size_t position, const PassSettings& settings) {
        MatchStop stop(state_.stopRequested);
        try {
            return processFile(files_.path(position), jobs_, settings);
        } catch (const MatchStopped&) {
            FileOutcome stopped;
            stopped.interrupted = true;
            return stopped;
        }
    }

    void runPass(PassKind pass) {
        filesDone_ = totalMatches_ = filesWithMatches_ = matchesFound_ = writesRefused_ = readOnlySkipped_ = 0;
        host_.passStarted(pass);
        if (files_.empty()) return;
        const bool writing = pass == PassKind::Writing;
        WriteSettings write;
        if (writing || (pass == PassKind::Counting && request_.changes)) {
            write.makeBackups = request_.makeBackups;
            write.root = root_ ? &*root_ : nullptr;
            write.walked = !request_.markedOnly;
        }
        if (writing) {
            // New files waiting for their turn never take more than half the free space.
            std::uint64_t waiting = kWaitingBytes;
            struct statvfs disk {};
            if (root_ && ::fstatvfs(root_->fd(), &disk) == 0)
                waiting = std::min<std::uint64_t>(waiting, std::uint64_t{disk.f_bavail} * disk.f_frsize / 2);
            budget_ = std::make_unique<WriteBudget>(waiting);
            if (request_.journal && root_) {
                recorder_ = request_.journal->startRun(request_, *root_);
                if (recorder_) {
                    std::vector<Message> messages;
                    recorder_->plan(keepBytes_, largestFile_, messages);
                    for (const Message& message : messages) host_.showMessage(message);
                    write.space = &relief_;
                }
            }
            // Backups are made in file order, some files waiting for those of
            // others: their new files are flushed one by one.
            if (!request_.makeBackups && root_ && folders_.coverFileSystemOf(root_->fd()))
                write.syncedLater = folders_.coveredDevice();
        }
        PassSettings settings{request_.kind == RunKind::Replace, writing,
                              request_.kind == RunKind::Extract, request_.makeBackups, &request_,
                              request_.showAll || request_.markedOnly, &write};
        if (pass == PassKind::Counting && !request_.dryRun) {
            keptBudget_ = std::make_unique<WriteBudget>(kKeptTextBytes);
            kept_.resize(files_.size());
            settings.keepTexts = keptBudget_.get();
        }
        const bool batched = write.syncedLater.has_value();
        const unsigned threads = threadCount(request_.threads);
        std::optional<OrderedWork<FileOutcome>> workers;
        OrderedWork<FileOutcome>& work = workers.emplace(
            files_.size(), threads, std::size_t{threads} * 64,
            [this](std::size_t i) { return !skipped_[i]; },
            [this, &settings](std::size_t i, OrderedWork<FileOutcome>::Turn& turn) {
                return processAt(i, settings, turn);
            },
            state_.stopRequested);
        std::size_t position = 0;
        std::optional<FileOutcome> outcome;
        // After a stop, the writing pass still takes the files whose new
        // text is finished, in order, up to the first that is not.
        auto next = [&] { return work.next(position, outcome) || (writing && work.nextFinished(position, outcome)); };
        while (next()) {
            if (duplicate_[position]) continue;  // another name of a file already processed
            if (outcome && outcome->noSpace) {
                // The disk is full: the files before it are written first
                // (without the journal, each gives back its old contents),
                // and from now on only the file waited for is written ahead.
                budget_->setLimit(0);
                commitBatch(pass);
                std::vector<Message> before = std::move(outcome->writeMessages);  // what the first try gave up
                outcome = writeAlone(position, settings);
                outcome->writeMessages.insert(outcome->writeMessages.begin(), before.begin(), before.end());
            }
            if (outcome && outcome->interrupted) break;
            if (outcome && outcome->file && !writing && !seen_.insert(*outcome->file).second) {
                duplicate_[position] = skipped_[position] = true;
                continue;
            }
            const bool newFile = outcome && outcome->pendingWrite;
            if (batched && (newFile || !batch_.empty())) {
                // Its new file is flushed with others before it replaces the
                // file; what comes after it waits its turn.
                if (newFile) ++batchWrites_;
                batch_.emplace_back(position, std::move(outcome));
                if (batchWrites_ >= kFilesFlushedTogether || budget_->pending() >= budget_->limit() / 2)
                    commitBatch(pass);
                continue;
            }
            take(position, outcome, pass);
        }
        commitBatch(pass);
        workers.reset();  // no file is worked on any more: none asks the journal for space
        folders_.flush();
        if (batched) folders_.syncFileSystem();  // the last files' new names
        if (recorder_) recorder_->finished();
        recorder_.reset();
    }

    void take(std::size_t position, std::optional<FileOutcome>& file, PassKind pass) {
        ++filesDone_;
        if (!file) return;  // a file without matches in the counting pass
        FileOutcome& outcome = *file;
        const std::string path = files_.path(position);
        host_.setStatus((pass == PassKind::Writing ? "Replacing:" : "Searching:") + files_.names[position]);
        host_.setProgress(percentOf(position, files_.size()), pass);
        const std::uint64_t counted = deliver(path, outcome);
        totalMatches_ += counted;
        matchesFound_ += outcome.matches;
        if (counted < 1) skipped_[position] = true;
        else ++filesWithMatches_;
        if (pass == PassKind::Counting && counted > 0) {
            if (request_.makeBackups) noteBackup(position, path, outcome);
            if (outcome.keptText) kept_[position] = std::move(outcome.keptText);
            // Undo keeps each old file (unless its backup does) on the start folder's file system.
            if (root_ && outcome.file && outcome.file->device == root_->device() && !request_.makeBackups)
                keepBytes_ += outcome.bytes;
            largestFile_ = std::max(largestFile_, outcome.bytes);
        }
    }

    // Flushes the waiting new files to disk at once, then lets each replace
    // its file in turn, until a stop. A file system that failed to take
    // them gets none.
    void commitBatch(PassKind pass) {
        if (batch_.empty()) return;
        const int error = batchWrites_ > 0 ? folders_.syncFileSystem() : 0;
        for (auto& [position, outcome] : batch_) {
            if (error && outcome && outcome->pendingWrite) {
                outcome->refused = outcome->pendingWrite->abandon(error, outcome->writeMessages);
                outcome->pendingWrite.reset();
            }
            take(position, outcome, pass);
        }
        batch_.clear();
        batchWrites_ = 0;
    }

    // Remembers whose backup replaces which entry, so that the writing pass
    // reads a file that an earlier file's backup replaces only after it has.
    // A file is known by where its name leads or, for a link that a backup
    // replaces, by its name. The latest earlier owner is the one to wait for.
    void noteBackup(std::size_t position, const std::string& path, const FileOutcome& file) {
        std::size_t after = kNone;
        if (const auto owner = backupNames_.find(path); owner != backupNames_.end()) after = owner->second;
        if (file.file)
            if (const auto owner = backupOwners_.find(*file.file); owner != backupOwners_.end())
                after = after == kNone ? owner->second : std::max(after, owner->second);
        after_[position] = after;
        backupNames_[backupNameFor(path)] = position;
        if (file.backupEntry) backupOwners_[*file.backupEntry] = position;
    }

    // Shows what a file brought and returns the matches it counts for.
    std::uint64_t deliver(const std::string& path, FileOutcome& file) {
        if (file.readError) host_.showMessage(*file.readError);
        if (!file.extracted.empty()) host_.appendExtracted(file.extracted);
        for (const StyledText& section : file.previewSections) host_.appendPreview(section);
        if (file.changes) host_.report(reports::Changes{path, std::move(*file.changes)});
        std::optional<WriteOutcome> write;
        std::vector<Message> messages = std::move(file.writeMessages);
        if (file.pendingWrite) write = file.pendingWrite->commit(messages, folders_, recorder_.get());
        else write = std::move(file.refused);
        file.pendingWrite.reset();  // a temporary file no longer waits
        // Only what was written counts; read-only files count, with a warning.
        const bool readOnly = write && write->status == WriteStatus::ReadOnly;
        const std::uint64_t counted = !write || write->written() || readOnly ? file.matches : 0;
        if (file.read && (file.matches > 0 || write || request_.markedOnly || request_.showAll))
            host_.addRow(FileReport{path, counted, file.characters, file.modified, request_.markedOnly, std::move(write)});
        for (const Message& message : messages) host_.showMessage(message);
        if (readOnly) ++readOnlySkipped_;
        else if (write && !write->written()) ++writesRefused_;
        return counted;
    }

    void summarise(bool replace) {
        const bool stopped = state_.stopRequested;
        outcome_.replaced = replace;
        outcome_.stopped = stopped;
        outcome_.noFiles = files_.empty();
        outcome_.filesDone = filesDone_;
        outcome_.totalMatches = totalMatches_;
        outcome_.writesRefused = writesRefused_;
        outcome_.filesWithMatches = filesWithMatches_;
        outcome_.readOnlySkipped = readOnlySkipped_;
        if (replace) {
            outcome_.statusText = replaceSummary(filesDone_, totalMatches_, filesWithMatches_);
            host_.setStatus(outcome_.statusText);
            outcome_.previewPattern = jobs_.empty() ? std::string() : EscapePlainText(jobs_.front().replaceText());
            if (stopped) note(Message{kReplaceStopped, kProgramTitle, MessageIcon::None, MessageKind::Summary});
            std::string text = outcome_.statusText;
            if (outcome_.readOnlySkipped > 0) {
                const std::string warning = "Warning! " + std::to_string(outcome_.readOnlySkipped) +
                                            " of the above file(s) were Read-Only and their replacements were not saved.";
                text += "\r\n" + warning;
                outcome_.summaryNotes.push_back(warning);
            }
            host_.showMessage(information(text, MessageKind::Summary, kReplaceComplete));
        } else {
            outcome_.statusText = searchSummary(filesDone_, totalMatches_, filesWithMatches_);
            host_.setStatus(outcome_.statusText);
            outcome_.previewPattern = jobs_.empty() ? std::string() : jobs_.front().findPattern();
            if (stopped) note(Message{kSearchStopped, kProgramTitle, MessageIcon::None, MessageKind::Summary});
        }
        if (request_.batch) outcome_.previewPattern.clear();
        if (files_.empty())
            note(information(kNoFiles, MessageKind::Summary, kSearchComplete));
        else if (matchesFound_ == 0 && !confirmed_)  // a confirmed Replace found them in its counting pass
            note(information(kNoMatches, MessageKind::Summary, kSearchComplete));
    }

    // A summary message that stands apart from the status line.
    void note(Message message) {
        outcome_.summaryNotes.push_back(message.text);
        host_.showMessage(std::move(message));
    }

    const RunRequest& request_;
    SearchState& state_;
    RunHost& host_;
    RunOutcome outcome_;
    std::vector<CompiledJob> jobs_;
    FileList files_;
    std::vector<char> skipped_;  // bytes, not bits: workers read while the driver writes
    std::vector<char> duplicate_;
    std::unordered_set<FileKey, FileKeyHash> seen_;
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    std::vector<std::size_t> after_;  // the file whose backup must be made first
    std::unordered_map<FileKey, std::size_t, FileKeyHash> backupOwners_;
    std::unordered_map<std::string, std::size_t> backupNames_;
    std::unique_ptr<WriteBudget> budget_;
    std::unique_ptr<WriteBudget> keptBudget_;
    std::vector<std::unique_ptr<KeptText>> kept_;  // the counting pass's texts, by position
    std::vector<std::pair<std::size_t, std::optional<FileOutcome>>> batch_;  // waiting for their new files' flush
    std::size_t batchWrites_ = 0;
    FolderSync folders_;
    std::optional<TreeRoot> root_;  // a Replace's start folder, held open
    std::unique_ptr<ReplaceRecorder> recorder_;  // the writing pass's, when the run is recorded
    // When a new file does not fit, the journal gives back what it keeps.
    class JournalRelief : public SpaceRelief {
    public:
        explicit JournalRelief(std::unique_ptr<ReplaceRecorder>& recorder) : recorder_(recorder) {}
        bool relieve(std::vector<Message>& messages) override {
            return recorder_ && recorder_->giveBackSpace(messages);
        }

    private:
        std::unique_ptr<ReplaceRecorder>& recorder_;
    } relief_{recorder_};
    std::uint64_t keepBytes_ = 0;    // the old files that Undo would keep
    std::uint64_t largestFile_ = 0;
    bool confirmed_ = false;         // the user said Yes to the Replace
    std::uint64_t filesDone_ = 0;
    std::uint64_t totalMatches_ = 0;     // in the writing pass, those written
    std::uint64_t matchesFound_ = 0;     // written or not
    std::uint64_t writesRefused_ = 0;
    std::uint64_t readOnlySkipped_ = 0;
    std::uint64_t filesWithMatches_ = 0;
};

}  // namespace

std::string searchSummary(std::uint64_t filesDone, std::uint64_t matches, std::uint64_t filesWithMatches) {
    return std::to_string(filesDone) + " files processed, " + std::to_string(matches) +
           " occurences found in " + std::to_string(filesWithMatches) + " file(s)";
}

std::string replaceSummary(std::uint64_t filesDone, std::uint64_t matches, std::uint64_t filesWithMatches) {
    return std::to_string(filesDone) + " files processed, " + std::to_string(matches) +
           " occurences changed in " + std::to_string(filesWithMatches) + " file(s)";
}

RunOutcome RunSearch(const RunRequest& request, SearchState& state, RunHost& host) {
    try {
        return Driver(request, state, host).run();
    } catch (const std::exception& error) {
        // Whatever escapes the driver still ends the run visibly.
        host.showMessage(runFailure(error.what()));
        RunOutcome outcome;
        outcome.result = RunResult::Failed;
        host.runFinished(outcome);
        return outcome;
    }
}

}  // namespace vantorel
