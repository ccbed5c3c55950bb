#pragma once
// Taking back one recorded Replace, below the folder it ran in (reached as
// the Replace reached it: from that folder down, never through a link, and
// only when it is still the same folder). A file is restored only when it
// still holds exactly what the Replace wrote (its size and ContentHash,
// read under the file's lock); one changed since is left as it is, and so
// is one deleted since, one made read-only, one whose folder can no longer
// be reached without a link, or one whose old contents are no longer kept.
//
// Restoring moves the kept old file back into its place (it is already on
// that file system, so this needs no space and gives back every attribute
// it had); a copy kept on another file system is written back through a
// new file as a Replace writes. The backup a Replace made goes with it, and
// an older backup that it replaced comes back.
//
// Each file's result is recorded in the journal as soon as it is settled:
// an Undo cut short, or one that could not restore a file (a full disk, a
// refusal), restores the rest when run again and knows which files are done.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "history/JournalFile.h"

namespace vantorel {
class TreeRoot;
}

namespace vantorel::history {

struct UndoFile {
    using Result = UndoResult;
    std::string path;
    Result result = Result::Restored;
    std::string error;  // the system's description, for Failed
};

struct UndoOutcome {
    // The files written by the run (their backups too), last written first,
    // that this Undo settled or could not.
    std::vector<UndoFile> files;
    // The journal's damaged lines: the files they recorded are not known.
    std::vector<std::uint64_t> damagedLines;

    std::uint64_t restored() const noexcept;
    std::uint64_t left() const noexcept;
    // Whether every file is settled: restored, or named as the user's since.
    bool complete() const noexcept;
};

// Called as each file of the run is settled, with its number in the journal.
using SettledFile = std::function<void(std::uint64_t number, UndoResult result)>;

UndoOutcome takeBack(const Journal& journal, const TreeRoot& root, const SettledFile& settled);

// "changed since the replace: left as it is" and the like.
std::string undoReason(const UndoFile& file);
// "N file(s) restored.", and " M file(s) left as they were." when some were.
std::string undoSummary(const UndoOutcome& outcome);
// The summary then, one a line, "path: reason" for each file left; past
// `listed` of them, "... and N more"; then one line for each damaged record.
std::string undoReport(const UndoOutcome& outcome, std::size_t listed = SIZE_MAX);

}  // namespace vantorel::history
