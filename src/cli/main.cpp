// vantorel-cli: Find, Replace and Extract over a folder tree from the terminal.

#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "cli/CliOptions.h"
#include "cli/ConsoleHost.h"
#include "core/SearchState.h"
#include "search/EngineSelfTest.h"
#include "search/SearchRun.h"

namespace {

vantorel::SearchState gState;

// Ctrl+C is the Stop button; a second Ctrl+C ends the program at once (files
// are never half-written either way).
void onInterrupt(int) {
    gState.stopRequested.store(true);
    ::signal(SIGINT, SIG_DFL);
}

void installInterruptHandler() {
    struct sigaction action {};
    action.sa_handler = onInterrupt;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;  // output in progress is not cut; questions poll the flag
    ::sigaction(SIGINT, &action, nullptr);
}

std::string absolute(const std::string& path) {
    std::error_code ec;
    const auto full = std::filesystem::absolute(path.empty() ? "." : path, ec);
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

int exitCode(const vantorel::RunOutcome& outcome) {
    if (outcome.result != vantorel::RunResult::Completed) return 2;
    return outcome.totalMatches > 0 ? 0 : 1;
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
    if (const auto failure = EngineSelfTest()) {
        std::fprintf(stderr, "%s\n", cli::terminalText(failure->text).c_str());
        return 2;
    }

    RunRequest request;
    request.kind = options.kind;
    request.jobs.push_back({options.findText, options.replaceText});
    request.startFolder = absolute(options.folder);
    request.filter = options.filter;
    request.regularExpression = options.regularExpression;
    request.ignoreCase = options.ignoreCase;
    request.wholeWords = options.wholeWords;
    request.scanSubfolders = options.subfolders;
    request.skipVersionControl = !options.includeVersionControl;
    request.makeBackups = options.backups;
    request.showAll = options.showAll;
    request.threads = options.threads;
    if (!options.markedFile.empty()) {
        request.markedOnly = true;
        if (!readMarkedFiles(options.markedFile, request.markedFiles)) {
            std::fprintf(stderr, "vantorel-cli: cannot read the list of files '%s'\n", options.markedFile.c_str());
            return 2;
        }
    }

    installInterruptHandler();
    cli::ConsoleHost host(options, ::isatty(STDIN_FILENO) != 0, gState.stopRequested);
    const RunOutcome outcome = RunSearch(request, gState, host);
    host.finish(outcome);
    std::fflush(stdout);

    if (!options.csvFile.empty() && outcome.result == RunResult::Completed) {
        std::ofstream csv(options.csvFile, std::ios::binary | std::ios::trunc);
        csv << matchListLog(host.rows());
        csv.close();
        if (!csv) {
            std::fprintf(stderr, "Error exporting log file!\n");
            return 2;
        }
    }
    return exitCode(outcome);
}
