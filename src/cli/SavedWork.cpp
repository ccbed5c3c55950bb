#include "cli/SavedWork.h"

#include <cstdio>

#include "cli/ConsoleHost.h"
#include "core/ProgramFolder.h"
#include "library/BatchJobFile.h"
#include "library/BatchQueue.h"
#include "library/LibraryFile.h"
#include "library/SavedWorkLoad.h"

namespace vantorel::cli {
namespace {

// The file `name` in --data-dir, or where the window finds it.
RecordFile savedFile(const CliOptions& options, const char* name) {
    if (options.dataFolder) return RecordFile::inFolder(*options.dataFolder, name);
    return RecordFile(executableFolder(), name);
}

std::string shownPath(const RecordFile& file) {
    const std::filesystem::path read = file.readPath();
    return (read.empty() ? file.writePath() : read).string();
}

void fail(const std::string& text) { std::fprintf(stderr, "vantorel-cli: %s\n", text.c_str()); }

// Saved work that cannot be read is said as the program's own complaint,
// with the file and the system's reason.
class Complaints : public MessageHost {
public:
    void showMessage(const Message& message) override { fail(terminalText(message.text)); }
    bool askYesNo(const Message&) override { return false; }
};

std::optional<std::vector<LibraryEntry>> readLibrary(const CliOptions& options) {
    Complaints complaints;
    return loadLibrary(LibraryFile(savedFile(options, kLibraryFileName)), complaints, LoadDetail::FileNamed);
}

std::optional<std::vector<std::string>> readJobLines(const CliOptions& options) {
    Complaints complaints;
    return loadJobLines(BatchJobFile(savedFile(options, kBatchJobsFileName)), complaints, LoadDetail::FileNamed);
}

bool dataFolderExists(const CliOptions& options) {
    std::error_code ec;
    if (!options.dataFolder || std::filesystem::is_directory(*options.dataFolder, ec)) return true;
    fail("--data-dir: no folder '" + *options.dataFolder + "'");
    return false;
}

}  // namespace

int listSavedWork(const CliOptions& options) {
    if (!dataFolderExists(options)) return 2;
    // Records are written whole: a field may hold any character, NUL included.
    auto print = [](const std::string& record) { std::fwrite(record.data(), 1, record.size(), stdout); };
    if (options.command == CliCommand::ListLibrary) {
        const auto library = readLibrary(options);
        if (!library) return 2;
        for (const LibraryEntry& entry : *library)
            print(entry.name + '\t' + entry.pattern + '\t' + entry.replacement + '\n');
        return 0;
    }
    const auto lines = readJobLines(options);
    if (!lines) return 2;
    for (const std::string& line : *lines) print(jobRecord(parseJob(line)) + '\n');
    return 0;
}

std::optional<std::vector<FindReplaceJob>> runSteps(const CliOptions& options, MessageHost& messages) {
    if (!options.job && !options.entry)
        return std::vector<FindReplaceJob>{{options.findText, options.replaceText}};
    if (!dataFolderExists(options)) return std::nullopt;
    const auto library = readLibrary(options);
    if (!library) return std::nullopt;
    if (options.entry) {
        const LibraryEntry* entry = findEntry(*library, *options.entry);
        if (!entry) {
            messages.showMessage(missingEntry(*options.entry));
            return std::nullopt;
        }
        return std::vector<FindReplaceJob>{{entry->pattern, entry->replacement}};
    }
    const auto lines = readJobLines(options);
    if (!lines) return std::nullopt;
    const std::optional<BatchJob> job = findJob(*lines, *options.job);
    if (!job) {
        fail("there is no batch job named '" + *options.job + "' in " +
             shownPath(savedFile(options, kBatchJobsFileName)) + " ('vantorel-cli jobs' lists them)");
        return std::nullopt;
    }
    if (job->entries.empty()) {
        fail("the batch job '" + job->name + "' has no steps");
        return std::nullopt;
    }
    std::optional<BatchQueue> queue = queueJob(job->name, job->entries, *library, messages);
    if (!queue) return std::nullopt;
    return std::move(queue->steps);
}

}  // namespace vantorel::cli
