#include "search/SearchRun.h"

#include <cmath>
#include <system_error>
#include <thread>

#include "files/FileFunctions.h"
#include "files/FileListBuilder.h"
#include "search/FileProcessor.h"
#include "search/OrderedWork.h"
#include "search/PatternConstruction.h"

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

Message information(std::string text, MessageKind kind, std::string title = kProgramTitle) {
    return Message{std::move(text), std::move(title), MessageIcon::Information, kind};
}

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
        state_.stopRequested = false;
        if (!validate()) {
            host_.runFinished(outcome_);
            return outcome_;
        }
        try {
            execute();
            outcome_.result = RunResult::Completed;
        } catch (const std::exception& error) {
            outcome_.result = RunResult::Failed;
            host_.showMessage(Message{std::string(kRunError) + "\r\n" + error.what(), kProgramTitle,
                                      MessageIcon::Warning, MessageKind::Failure});
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
            if (request_.kind == RunKind::Replace && job.replaceText.empty()) {
                const Message question{job.findPattern + "\r\n\r\n" + kReplaceWithNothing,
                                       kProgramTitle, MessageIcon::Question, MessageKind::Validation};
                if (!host_.askYesNo(question)) return false;
            }
        }
        if (request_.filter.empty()) {
            host_.showMessage(information(kInvalidFilter, MessageKind::Validation));
            return false;
        }
        if (request_.startFolder.empty() || !FolderExists(request_.startFolder)) {
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
            files_ = BuildFileList(request_.startFolder, request_.filter, request_.scanSubfolders,
                                   state_.stopRequested, callbacks, request_.skipVersionControl);
        } else {
            for (const std::string& path : request_.markedFiles) files_.addPath(path);
            host_.clearRows();
        }
    }

    void execute() {
        host_.runStarted(request_);
        if (!request_.markedOnly) host_.clearRows();
        host_.setProgress(-1, PassKind::Searching);
        host_.setStatus("Building file list...");
        buildList();

        const bool isReplace = request_.kind == RunKind::Replace;
        bool replace = isReplace;
        int passes = isReplace ? 2 : 1;
        skipped_.assign(files_.size(), false);
        while (passes > 0) {
            if (state_.stopRequested) {
                replace = false;  // stopped during the counting pass of a Replace
                break;
            }
            --passes;
            const bool writing = isReplace && passes == 0;
            runPass(writing ? PassKind::Writing : isReplace ? PassKind::Counting : PassKind::Searching);
            if (isReplace && passes == 1 && totalMatches_ >= 1 && !state_.stopRequested) {
                host_.setStatus("Replace Files?");
                const Message question{"Replace " + std::to_string(totalMatches_) + " occurences in " +
                                           std::to_string(filesWithMatches_) + " file(s) ?",
                                       kProgramTitle, MessageIcon::Question, MessageKind::Notice};
                if (host_.askYesNo(question)) {
                    host_.clearRows();
                } else {
                    passes = 0;
                    replace = false;
                }
            }
        }
        summarise(replace);
    }

    void runPass(PassKind pass) {
        filesDone_ = totalMatches_ = filesWithMatches_ = 0;
        state_.readOnlySkipped = 0;
        host_.passStarted(pass);
        if (files_.empty()) return;
        const PassSettings settings{request_.kind == RunKind::Replace, pass == PassKind::Writing,
                                    request_.kind == RunKind::Extract, request_.makeBackups, &request_,
                                    request_.showAll || request_.markedOnly};
        const unsigned threads = threadCount(request_.threads);
        OrderedWork<FileOutcome> work(
            files_.size(), threads, std::size_t{threads} * 64,
            [this](std::size_t i) { return !skipped_[i]; },
            [this, &settings](std::size_t i) { return processFile(files_.path(i), jobs_, settings); },
            state_.stopRequested);
        std::size_t position = 0;
        std::optional<FileOutcome> outcome;
        while (work.next(position, outcome)) {
            ++filesDone_;
            if (!outcome) continue;  // a file without matches in the counting pass
            const std::string path = files_.path(position);
            host_.setStatus((pass == PassKind::Writing ? "Replacing:" : "Searching:") + files_.names[position]);
            host_.setProgress(percentOf(position, files_.size()), pass);
            deliver(path, *outcome);
            totalMatches_ += outcome->matches;
            if (outcome->matches < 1) skipped_[position] = true;
            else ++filesWithMatches_;
        }
    }

    void deliver(const std::string& path, FileOutcome& file) {
        if (file.readError) host_.showMessage(*file.readError);
        if (!file.extracted.empty()) host_.appendExtracted(file.extracted);
        for (const StyledText& section : file.previewSections) host_.appendPreview(section);
        if (file.read && (file.matches > 0 || request_.markedOnly || request_.showAll))
            host_.addRow(FileReport{path, file.matches, file.characters, file.modified, request_.markedOnly});
        if (file.pendingWrite) {
            std::vector<Message> messages;
            file.pendingWrite->commit(messages);
            for (const Message& message : messages) host_.showMessage(message);
        }
        if (file.readOnlySkipped) ++state_.readOnlySkipped;
    }

    void summarise(bool replace) {
        const bool stopped = state_.stopRequested;
        outcome_.replaced = replace;
        outcome_.stopped = stopped;
        outcome_.noFiles = files_.empty();
        outcome_.filesDone = filesDone_;
        outcome_.totalMatches = totalMatches_;
        outcome_.filesWithMatches = filesWithMatches_;
        outcome_.readOnlySkipped = static_cast<std::uint64_t>(state_.readOnlySkipped.load());
        if (replace) {
            outcome_.statusText = replaceSummary(filesDone_, totalMatches_, filesWithMatches_);
            host_.setStatus(outcome_.statusText);
            state_.previewPattern = jobs_.empty() ? std::string() : EscapePlainText(jobs_.front().replaceText());
            if (stopped) host_.showMessage(Message{kReplaceStopped, kProgramTitle, MessageIcon::None, MessageKind::Summary});
            std::string text = outcome_.statusText;
            if (outcome_.readOnlySkipped > 0)
                text += "\r\nWarning! " + std::to_string(outcome_.readOnlySkipped) +
                        " of the above file(s) were Read-Only and their replacements were not saved.";
            host_.showMessage(information(text, MessageKind::Summary, kReplaceComplete));
        } else {
            outcome_.statusText = searchSummary(filesDone_, totalMatches_, filesWithMatches_);
            host_.setStatus(outcome_.statusText);
            state_.previewPattern = jobs_.empty() ? std::string() : jobs_.front().findPattern();
            if (stopped) host_.showMessage(Message{kSearchStopped, kProgramTitle, MessageIcon::None, MessageKind::Summary});
        }
        if (request_.batch) state_.previewPattern.clear();
        if (files_.empty())
            host_.showMessage(information(kNoFiles, MessageKind::Summary, kSearchComplete));
        else if (totalMatches_ == 0)
            host_.showMessage(information(kNoMatches, MessageKind::Summary, kSearchComplete));
    }

    const RunRequest& request_;
    SearchState& state_;
    RunHost& host_;
    RunOutcome outcome_;
    std::vector<CompiledJob> jobs_;
    FileList files_;
    std::vector<char> skipped_;  // bytes, not bits: workers read while the driver writes
    std::uint64_t filesDone_ = 0;
    std::uint64_t totalMatches_ = 0;
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
    return Driver(request, state, host).run();
}

}  // namespace vantorel
