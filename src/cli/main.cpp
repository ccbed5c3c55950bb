// vantorel-cli: Find, Replace and Extract over a folder tree from the terminal.

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "cli/CliOptions.h"
#include "cli/ConsoleHost.h"
#include "cli/SavedWork.h"
#include "cli/UndoCommand.h"
#include "settings/RegistryStore.h"
#include "core/SearchState.h"
#include "settings/SettingsStore.h"
#include "results/MatchListExport.h"
#include "regex/EngineSelfTest.h"
#include "search/RequestFrom.h"
#include "search/RefusedPattern.h"
#include "search/SearchRun.h"

namespace {

vantorel::SearchState gState;

// Ctrl+C is the Stop button, and so are a request to end (SIGTERM) and the
// terminal going away (SIGHUP): the run stops, and files waiting to be
// written are cleared away. A second signal ends the program at once (files
// are never half-written either way; a later run clears what is left).
constexpr int kStopSignals[] = {SIGINT, SIGTERM, SIGHUP};

void onStopSignal(int signal) {
    gState.stopRequested.store(true);
    ::signal(signal, SIG_DFL);
}

void installStopHandlers() {
    struct sigaction action {};
    action.sa_handler = onStopSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;  // output in progress is not cut; questions poll the flag
    for (const int signal : kStopSignals) ::sigaction(signal, &action, nullptr);
}

std::string absolute(const std::string& path) {
    if (path.empty()) return path;  // refused by the run as a missing start location
    std::error_code ec;
    const auto full = std::filesystem::absolute(path, ec);
    if (ec) return path;
    std::string text = full.lexically_normal().string();
    if (text.size() > 1 && text.back() == '/') text.pop_back();
    return text;
}

bool readMarkedFiles(const std::string& listFile, std::vector<std::string>& paths) {
    std::ifstream in(listFile, std::ios::binary);
    if (!in) return false;
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty()) paths.push_back(absolute(line));
    }
    return !in.bad();
}

// Old runs that the undo journal set aside are removed by a process of
// their own, which the terminal need not wait for.
void removeOldRunsInBackground(const vantorel::history::UndoJournal& journal) {
    if (!journal.hasSetAside()) return;
    std::fflush(nullptr);
    if (::fork() != 0) return;
    ::setsid();
    const int nothing = ::open("/dev/null", O_RDWR);
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::dup2(nothing, fd);
    journal.removeSetAside();
    ::_exit(0);
}

int exitCode(const vantorel::RunOutcome& outcome) {
    if (outcome.result != vantorel::RunResult::Completed) return 2;
    if (outcome.writesRefused > 0) return 2;  // a file that was to be replaced was not
    return outcome.totalMatches > 0 ? 0 : 1;
}

// The undo journal, keeping as many Replaces as the UndoRuns setting says
// (none recorded when `record` is false).
vantorel::history::UndoJournal undoJournal(bool record) {
    using namespace vantorel;
    RegistryStore store(RegistryStore::defaultFile());
    const long runs = record ? SettingsStore::readUndoRuns(store) : 0;
    return history::UndoJournal(history::UndoJournal::defaultFolder(), static_cast<unsigned>(std::min(runs, 1000000L)));
}

}  // namespace

int main(int argc, char** argv) {
    using namespace vantorel;
    const cli::ParseResult parsed = cli::parseCommandLine(std::vector<std::string>(argv + 1, argv + argc));
    if (!parsed.options) {
        std::fprintf(stderr, "vantorel-cli: %s\nTry 'vantorel-cli --help'.\n", parsed.error.c_str());
        return 2;
    }
    const cli::CliOptions& options = *parsed.options;
    if (options.help) {
        std::fputs(cli::kUsage, stdout);
        return 0;
    }
    if (options.version) {
        std::puts("vantorel-cli (Vantorel) " VANTOREL_VERSION);
        return 0;
    }
    if (options.command == cli::CliCommand::ListLibrary || options.command == cli::CliCommand::ListJobs)
        return cli::listSavedWork(options);
    installStopHandlers();
    history::UndoJournal journal = undoJournal(options.record);
    if (options.command == cli::CliCommand::Undo) {
        if (options.listRuns) return cli::listRuns(journal);
        cli::ConsoleHost asker(options, ::isatty(STDIN_FILENO) != 0, gState.stopRequested);
        return cli::undoLastRun(journal, asker);
    }
    if (const auto failure = EngineSelfTest()) {
        std::fprintf(stderr, "%s\n", cli::terminalText(failure->text).c_str());
        return 2;
    }

    cli::ConsoleHost host(options, ::isatty(STDIN_FILENO) != 0, gState.stopRequested);
    auto steps = cli::runSteps(options, host);
    if (!steps) return 2;
    RunRequest typed;
    typed.kind = options.kind;
    typed.startFolder = absolute(options.folder.value_or("."));
    typed.filter = options.filter;
    typed.regularExpression = options.regularExpression;
    typed.ignoreCase = options.ignoreCase;
    typed.wholeWords = options.wholeWords;
    typed.scanSubfolders = options.subfolders;
    typed.skipVersionControl = !options.includeVersionControl;
    typed.makeBackups = options.backups;
    typed.showAll = options.showAll;
    typed.threads = options.threads;
    typed.dryRun = options.dryRun;
    if (options.dryRun) typed.changes = options.fileBytes ? ChangeLines::FileBytes : ChangeLines::Decoded;
    std::optional<std::vector<std::string>> marked;
    if (!options.markedFile.empty()) {
        marked.emplace();
        if (!readMarkedFiles(options.markedFile, *marked)) {
            std::fprintf(stderr, "vantorel-cli: cannot read the list of files '%s'\n", options.markedFile.c_str());
            return 2;
        }
    }
    RunRequest request =
        requestFrom(std::move(typed), JobSource{std::move(*steps), options.job.has_value()}, std::move(marked));
    request.journal = &journal;

    host.setStartFolder(request.startFolder);
    const RunOutcome outcome = RunSearch(request, gState, host);
    if (outcome.patternError)  // the line after "Regular Expression is invalid..."
        std::fprintf(stderr, "%s\n",
                     invalidPatternLine(*outcome.patternError, outcome.invalidJob, request.batch,
                                        request.regularExpression)
                         .c_str());
    host.finish(outcome);
    std::fflush(stdout);

    const bool exported = options.csvFile.empty() || outcome.result != RunResult::Completed ||
                          exportMatchList(host.rows(), [&] { return options.csvFile; }, host) != ExportResult::Failed;
    removeOldRunsInBackground(journal);
    // A file left out of a dry run's diff: patch would not give what the Replace writes.
    return exported && host.leftOutOfDiff() == 0 ? exitCode(outcome) : 2;
}
