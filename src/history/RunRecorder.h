#pragma once
// Records the writing pass of one Replace in the undo journal: the run's
// folder (made when the first file is about to be replaced), its journal,
// and the old contents of every file it replaces. A file's record is
// written before the file is replaced and its outcome after. The journal is
// flushed to disk at the start, at most every few hundredths of a second
// while files are written, and at the end: a kill loses nothing, a power cut
// at most the records of that last moment.
//
// When the journal cannot be written, the Replace goes on: one message says
// from which file on it cannot be undone.

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/FileDescriptor.h"
#include "history/JournalFile.h"
#include "history/KeptContents.h"
#include "search/ReplaceRecorder.h"

namespace vantorel::history {

class UndoJournal;

class RunRecorder : public ReplaceRecorder {
public:
    RunRecorder(UndoJournal& journal, RunHeader header, std::vector<JournalStep> steps);
    ~RunRecorder() override;

    void replacing(const ReplacingFile& file, std::vector<Message>& messages) override;
    void replaced(const WriteOutcome& outcome) override;
    void finished() override;

private:
    void start();
    void append(const std::string& line);
    void sync();
    void noteElsewhere();
    void giveUp(const std::string& path, int error, std::vector<Message>& messages);

    UndoJournal& journal_;
    RunHeader header_;
    std::vector<JournalStep> steps_;
    FileDescriptor lock_;
    FileDescriptor fd_;
    std::string folder_;
    std::optional<KeptContents> kept_;
    std::size_t elsewhereNoted_ = 0;
    std::optional<JournalFileRecord> pending_;
    std::string outcomes_;  // outcome records not yet written
    std::uint64_t files_ = 0;
    std::uint64_t written_ = 0;
    bool failed_ = false;
    bool finished_ = false;
    std::chrono::steady_clock::time_point lastSync_;
};

}  // namespace vantorel::history
