#pragma once
// Taking back one recorded Replace. A file is restored only when it still
// holds exactly what the Replace wrote (its size and ContentHash); one
// changed since is left as it is, and so is one deleted since or one whose
// old contents are no longer kept. Restoring goes through AtomicFileWriter,
// as a Replace does: never a half-written file, its permissions and other
// attributes kept. The backup a Replace made is removed with it, and an older
// backup that it replaced comes back.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "history/JournalFile.h"

namespace vantorel::history {

struct UndoFile {
    enum class Result { Restored, ChangedSince, DeletedSince, ReadOnly, NotKept, Failed };
    std::string path;
    Result result = Result::Restored;
    std::string error;  // the system's description, for Failed
};

struct UndoOutcome {
    // The files written by the run (their backups too), last written first.
    std::vector<UndoFile> files;

    std::uint64_t restored() const noexcept;
    std::uint64_t left() const noexcept;
};

UndoOutcome takeBack(const Journal& journal);

// "changed since the replace: left as it is" and the like.
std::string undoReason(const UndoFile& file);
// "N file(s) restored.", and " M file(s) left as they were." when some were.
std::string undoSummary(const UndoOutcome& outcome);
// The summary then, one a line, "path: reason" for each file left; past
// `listed` of them, "... and N more".
std::string undoReport(const UndoOutcome& outcome, std::size_t listed = SIZE_MAX);

}  // namespace vantorel::history
