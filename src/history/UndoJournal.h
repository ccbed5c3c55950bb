#pragma once
// The undo journal: every Replace that writes at least one file is recorded
// in a folder of its own under the journal's folder, with the old contents
// of the files it replaced. Undo takes back the most recent run not yet
// taken back, then the one before it, and so on. The newest runs are kept
// (10 unless set otherwise); older ones go, with their kept contents, so
// that the space used stays bounded.
//
// Layout: <folder>/<run>/journal (see JournalFile), <run>/kept/ (the old
// contents), <run>/elsewhere (folders on other file systems holding kept
// contents), <run>/undone (written when the run is taken back); an old run
// is renamed to <folder>/old-<run> before it is removed.
// Processes share the journal: a run being recorded holds a shared lock on
// <folder>/lock; taking a run back and removing old runs hold it alone.
// The folder holds the marker kUndoJournalMarker, which keeps every run out.
//
// A journal is used only when it can be trusted (see JournalTrust): its
// folder, the folders above it, and the run's folder and files.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "history/JournalFile.h"
#include "history/JournalTrust.h"
#include "history/UndoRun.h"
#include "core/ReplaceRecorder.h"

namespace vantorel::history {

struct RecordedRun {
    std::string name;  // its folder's name
    RunHeader header;
    std::vector<JournalStep> steps;
    std::uint64_t filesWritten = 0;
    bool finished = false;  // its end was recorded (else it is being recorded, or was cut short)
    bool undone = false;
    // Why the run is not trusted; nothing else is read of such a run.
    std::optional<Distrust> refused;
    // Its journal cannot be read (recorded by an earlier version, or
    // damaged at its start): it is listed, and Undo passes over it.
    bool unreadable = false;
};

class UndoJournal : public ReplaceJournal {
public:
    static constexpr unsigned kDefaultRuns = 10;
    static constexpr const char* kJournalFile = "journal";
    static constexpr const char* kKeptFolder = "kept";
    static constexpr const char* kElsewhereFile = "elsewhere";
    static constexpr const char* kUndoneFile = "undone";

    // "$VANTOREL_CONFIG_HOME/undo" when that is set, else
    // "$XDG_STATE_HOME/vantorel/undo" (an absolute one only), else
    // "$HOME/.local/state/vantorel/undo".
    static std::string defaultFolder();
    static std::string runName(std::int64_t startedNs, int pid);

    // `keepRuns` of 0 records nothing.
    explicit UndoJournal(std::string folder, unsigned keepRuns = kDefaultRuns);

    std::unique_ptr<ReplaceRecorder> startRun(const RunRequest& request, const TreeRoot& root) override;

    std::string folder() const override { return folder_; }
    unsigned keepRuns() const noexcept { return keepRuns_; }
    void setKeepRuns(unsigned runs) noexcept { keepRuns_ = runs; }

    // Why the journal's folder (or one above it) is not trusted; nothing
    // when it is, or when there is no such folder yet.
    std::optional<Distrust> refused() const;

    // The runs, newest first.
    std::vector<RecordedRun> runs() const;
    // The run that Undo takes back next.
    std::optional<RecordedRun> nextToUndo() const;
    // Whether there is one, without reading the journals.
    bool canUndo() const;

    enum class UndoStatus { Done, Busy, Unreadable, FolderGone };
    struct Undo {
        UndoStatus status = UndoStatus::Done;
        UndoOutcome outcome;
        std::string message;  // what to tell when not Done
    };
    // Takes a run back (Busy while a Replace is being recorded). A run is
    // marked undone once every file is settled; until then Undo takes it
    // again, and does what is left.
    Undo undo(const RecordedRun& run);

    // Removes the oldest run (set-aside ones first) that no process is
    // recording, other than `except`, with its kept contents, to give back
    // disk space; false when there is none. Called with the journal's lock
    // held (shared).
    bool giveBackOldest(const std::string& except);

    // Sets aside the runs beyond the newest `keepRuns` (unless a run is being
    // recorded): at once, they are no longer runs.
    void prune();
    // Removes what was set aside, with its kept contents: this takes a while
    // for a large run, and may be done in the background.
    void removeSetAside() const;
    bool hasSetAside() const;
    // Bytes on disk held by the journal and its kept contents.
    std::uint64_t spaceUsed() const;

    // A descriptor holding the journal's lock, shared or alone; -1 when
    // `alone` and another holds it. Makes the journal's folder when it is
    // missing. Throws std::system_error, UntrustedJournal when the journal
    // is not trusted.
    int lock(bool alone) const;

private:
    std::vector<std::string> runNames() const;
    // Why the run in `folder` is not trusted.
    std::optional<Distrust> refusedRun(const std::string& folder) const;
    // The folders elsewhere of the run in `folder`.
    std::vector<std::string> elsewhereOf(const std::string& folder) const;
    std::vector<std::string> setAside() const;

    std::string folder_;
    unsigned keepRuns_;
};

}  // namespace vantorel::history
