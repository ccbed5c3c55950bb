#pragma once
// The command line of vantorel-cli.

#include <optional>
#include <string>
#include <vector>

#include "core/RunTypes.h"

namespace vantorel::cli {

enum class CliCommand {
    Run,          // find, replace or extract
    ListLibrary,  // library
    ListJobs,     // jobs
    Undo          // undo: take back the last Replace
};

struct CliOptions {
    CliCommand command = CliCommand::Run;
    RunKind kind = RunKind::Find;
    bool listRuns = false;   // undo --list
    std::string findText;
    std::string replaceText;
    std::optional<std::string> folder;  // not given: the current folder; given empty: refused
    std::string filter = "*";
    bool regularExpression = false;
    bool ignoreCase = false;
    bool wholeWords = false;
    bool subfolders = true;
    bool includeVersionControl = false;
    bool backups = false;
    bool assumeYes = false;
    bool showAll = false;
    std::string markedFile;  // empty: walk the folder
    unsigned threads = 0;
    bool quiet = false;
    std::string csvFile;
    bool json = false;
    bool dryRun = false;     // replace: show the changes, write nothing
    bool fileBytes = false;  // --diff: the changes in the files' own bytes
    bool record = true;      // --no-undo clears it
    bool help = false;
    bool version = false;    // --version: print it and end
    // Saved work: the steps of a batch job, or a library entry's pair, in
    // place of FIND and REPLACEMENT; the folder of the files that hold them.
    std::optional<std::string> job;
    std::optional<std::string> entry;
    std::optional<std::string> dataFolder;
};

struct ParseResult {
    std::optional<CliOptions> options;
    std::string error;  // what is wrong, when options is empty
};

ParseResult parseCommandLine(const std::vector<std::string>& arguments);

extern const char* const kUsage;

}  // namespace vantorel::cli
