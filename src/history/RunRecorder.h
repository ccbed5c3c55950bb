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
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "core/FileDescriptor.h"
#include "history/JournalFile.h"
#include "history/KeptContents.h"
#include "core/ReplaceRecorder.h"

namespace vantorel::history {

class UndoJournal;

class RunRecorder : public ReplaceRecorder {
public:
    // `root`: the run's start folder, held open.
    RunRecorder(UndoJournal& journal, RunHeader header, std::vector<JournalStep> steps, int root);
    ~RunRecorder() override;

    void replacing(const ReplacingFile& file, std::vector<Message>& messages) override;
    void replaced(const WriteOutcome& outcome) override;
    void finished() override;
    void plan(std::uint64_t keepBytes, std::uint64_t writeBytes, std::vector<Message>& messages) override;
    bool giveBackSpace(std::vector<Message>& messages) override;

private:
    void start();
    void append(const std::string& line);
    void sync();
    void noteElsewhere();
    void giveUp(const std::string& path, int error, std::vector<Message>& messages);
    // Keeps nothing more and gives back what was kept: the run will not be undone.
    void drop();
    std::optional<std::uint64_t> freeSpace() const;

    std::mutex mutex_;  // giveBackSpace() comes from other threads
    UndoJournal& journal_;
    RunHeader header_;
    std::vector<JournalStep> steps_;
    FileDescriptor root_;
    FileDescriptor lock_;
    FileDescriptor fd_;
    std::string folder_;
    std::string name_;
    std::optional<KeptContents> kept_;
    std::size_t elsewhereNoted_ = 0;
    std::optional<JournalFileRecord> pending_;
    std::string outcomes_;  // outcome records not yet written
    std::uint64_t files_ = 0;
    std::uint64_t written_ = 0;
    bool failed_ = false;
    bool dropped_ = false;
    bool finished_ = false;
    std::chrono::steady_clock::time_point lastSync_;
};

}  // namespace vantorel::history
