#pragma once
// The request, the reports and the outcome of one Find, Replace or Extract run.

#include <cstdint>
#include <ctime>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/StyledText.h"
#include "core/PatternError.h"
#include "core/TextEncoding.h"

namespace vantorel {

class CompiledPattern;
class ReplaceJournal;

enum class RunKind { Find, Replace, Extract };

// How the lines of a Replace's changes are given.
enum class ChangeLines {
    Decoded,    // as UTF-8, whatever the file's encoding: for reading
    FileBytes   // the file's own bytes, split at its line feed bytes: for a patch
};

// One find/replace pair as the user typed it.
struct FindReplaceJob {
    std::string findText;
    std::string replaceText;
};

struct RunRequest {
    RunKind kind = RunKind::Find;
    // An interactive run has one job; a batch run has the queue's jobs in order.
    std::vector<FindReplaceJob> jobs;
    bool batch = false;
    std::string startFolder;
    std::string filter;
    bool regularExpression = false;
    bool ignoreCase = false;
    bool wholeWords = false;
    bool scanSubfolders = true;
    // Version-control folders (.git, .hg, .svn, .bzr, _darcs, CVS) are not entered.
    bool skipVersionControl = true;
    bool makeBackups = false;
    bool showAll = false;
    // Limited to the marked rows of the results list, given as full paths.
    bool markedOnly = false;
    std::vector<std::string> markedFiles;
    // Worker threads; 0 means one per processor.
    unsigned threads = 0;
    // When set (the combined preview is on), builds a file's preview section
    // from its text, for each job, in a searching pass once the file's total
    // is above 0. Runs on worker threads; sections reach the host in order.
    std::function<StyledText(const std::string& path, std::string_view text, TextEncoding encoding,
                             const CompiledPattern& pattern)>
        previewSection;
    // A Replace that writes nothing: after its counting pass it neither asks
    // nor writes, and ends as a declined Replace does.
    bool dryRun = false;
    // When set, the counting pass of a Replace works out each file's changes
    // and reports them (reports::Changes) just before its row.
    std::optional<ChangeLines> changes;
    // Records what the writing pass replaces so that the run can be taken
    // back; none: nothing is recorded.
    ReplaceJournal* journal = nullptr;
};

// What became of a file with matches in the writing pass of a Replace.
enum class WriteStatus {
    Written,
    ReadOnly,            // the file is read-only
    OutsideStartFolder,  // a link to a file outside the start folder, or a file outside it
    NotExactText,        // UTF-16 text that would not read back as it is
    ForeignOwner,        // a new file would not keep its owner or group (another user's file)
    BackupFailed,        // no backup could be made, so the file was left as it was
    ChangedMeanwhile,    // another program changed the file after it was read
    Failed               // the new file could not be written or renamed into place
};

// A status in a word or two ("written", "read-only", ...), as the command
// line and the undo journal give it.
std::string_view writeStatusName(WriteStatus status) noexcept;
std::optional<WriteStatus> writeStatusNamed(std::string_view name) noexcept;

struct WriteOutcome {
    WriteStatus status = WriteStatus::Written;
    // The file replaced: the listed file, or the file its link leads to.
    std::string path;
    // What it holds now (Written only): size in bytes, modification time,
    // file identity, and a ContentHash of the bytes.
    std::uint64_t size = 0;
    std::int64_t modifiedNs = 0;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t hash = 0;
    // Where the old contents went; empty without a backup.
    std::string backup;
    // The system's description, for Failed.
    std::string error;

    bool written() const noexcept { return status == WriteStatus::Written; }
};

// One file that earns a row in the results list.
struct FileReport {
    std::string path;
    // In the writing pass, the replacements made (read-only files keep their
    // count: the summary warns that they were not saved).
    std::uint64_t matches = 0;
    std::uint64_t characters = 0;  // "File Size"
    std::time_t modified = 0;
    bool marked = false;  // a marked-files run checks its rows again
    std::optional<WriteOutcome> write;  // the writing pass of a Replace
};

enum class PassKind { Counting, Writing, Searching };

enum class RunResult {
    Refused,    // the input was refused (or a question declined) before anything ran
    Completed,  // the run went to its end, or was stopped
    Failed      // an error ended the run
};

struct RunOutcome {
    RunResult result = RunResult::Refused;
    // False when a Replace was declined or stopped during its counting pass.
    bool replaced = false;
    bool stopped = false;
    bool noFiles = false;
    std::uint64_t filesDone = 0;
    std::uint64_t totalMatches = 0;
    std::uint64_t filesWithMatches = 0;
    std::uint64_t readOnlySkipped = 0;
    // Files with matches that the writing pass left as they were, read-only
    // ones aside (each was reported).
    std::uint64_t writesRefused = 0;
    std::string statusText;
    // What the summary's messages add to the status line, in the order they
    // were shown: a stop, the read-only warning, no files or no matches.
    std::vector<std::string> summaryNotes;
    // What the preview highlights once a completed run is over, stopped or
    // not: the find pattern, after a Replace the replacement as plain text;
    // empty means no highlighting (a batch run).
    std::string previewPattern;
    // Set when a pattern was refused: which job and what is wrong where.
    std::optional<PatternError> patternError;
    std::size_t invalidJob = 0;
};

}  // namespace vantorel
