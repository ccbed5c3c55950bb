#include "cli/ConsoleHost.h"

#include <poll.h>
#include <time.h>
#include <unistd.h>

#include <cstdint>

#include "cli/PatchName.h"
#include "files/FileFunctions.h"
#include "results/ChangeHunks.h"

namespace vantorel::cli {

ConsoleHost::ConsoleHost(const CliOptions& options, bool interactive, const std::atomic<bool>& stop)
    : options_(options),
      interactive_(interactive),
      stop_(stop),
      printer_(printerFor(options)) {}

void ConsoleHost::showMessage(const Message& message) {
    if (message.kind == MessageKind::Summary) return;  // the outcome's notes, after the summary line
    std::fprintf(stderr, "%s\n", terminalText(message.text).c_str());
}

bool ConsoleHost::askYesNo(const Message& question) {
    const std::string text = terminalText(question.text);
    if (options_.assumeYes) {
        std::fprintf(stderr, "%s yes\n", text.c_str());
        return true;
    }
    if (!interactive_) {
        std::fprintf(stderr, "%s no (no terminal to ask; --yes answers Yes)\n", text.c_str());
        return false;
    }
    std::fflush(printer_->out());
    std::fprintf(stderr, "%s [y/N] ", text.c_str());
    std::fflush(stderr);
    std::string answer;
    while (true) {
        pollfd input{STDIN_FILENO, POLLIN, 0};
        const int ready = ::poll(&input, 1, 100);
        if (stop_.load()) {
            std::fprintf(stderr, "\n");
            return false;
        }
        if (ready <= 0) continue;
        char c;
        const ssize_t n = ::read(STDIN_FILENO, &c, 1);
        if (n <= 0) {
            std::fprintf(stderr, "\n");
            break;
        }
        if (c == '\n') break;
        answer += c;
    }
    return answer == "y" || answer == "Y" || answer == "yes" || answer == "Yes" || answer == "YES";
}

void ConsoleHost::report(RunReport report) {
    std::visit(Overloaded{
                   [this](const reports::PassStarted& started) { passStarted(started.pass); },
                   [this](const reports::RowsCleared&) { clearRows(); },
                   [this](const reports::Row& added) { addRow(added.row); },
                   [this](const reports::Extracted& extracted) { appendExtracted(extracted.text); },
                   [this](const reports::Changes& changes) { showChanges(changes); },
                   [](const auto&) {},  // the terminal shows no status, progress or preview
               },
               report);
}

void ConsoleHost::passStarted(PassKind pass) {
    holdRows_ = pass == PassKind::Counting && !options_.dryRun;
}

void ConsoleHost::showChanges(const reports::Changes& changes) {
    if (changes.changes.refused) {
        std::fprintf(stderr, "%s: %s, it would be left as it is\n", changes.path.c_str(),
                     std::string(writeStatusName(*changes.changes.refused)).c_str());
        return;
    }
    if (changes.changes.hunks.empty()) return;  // replaced by the same text
    const PatchName name = patchNameOf(changes.path, realStartFolder_);
    if (name.name.empty()) {
        std::fprintf(stderr, "%s: %s; it is left out of the diff\n", changes.path.c_str(), name.problem.c_str());
        ++leftOutOfDiff_;
        return;
    }
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    const std::string diff = unifiedDiff({name.name, changes.changes.modifiedNs},
                                         {name.name, now.tv_sec * std::int64_t{1000000000} + now.tv_nsec},
                                         changes.changes.hunks);
    printer_->diff(diff);
}

void ConsoleHost::clearRows() {
    heldRows_.clear();
    rows_.clear();
}

void ConsoleHost::addRow(const FileReport& row) {
    rows_.push_back(ResultRow::fromReport(row));
    if (holdRows_) heldRows_.push_back(row);
    else printer_->row(row);
}

void ConsoleHost::printHeldRows() {
    for (const FileReport& row : heldRows_) printer_->row(row);
    heldRows_.clear();
}

void ConsoleHost::appendExtracted(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

void ConsoleHost::finish(const RunOutcome& outcome) {
    printHeldRows();
    if (outcome.result == RunResult::Completed) printer_->summary(outcome);
}

}  // namespace vantorel::cli
