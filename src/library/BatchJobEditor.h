#pragma once
// The batch jobs as their window works with them: the jobs of the file, the
// job being edited (its entries, in order, and whether they changed), the
// library's entries to choose from, which buttons can be used, and saving,
// updating and deleting a job with the questions and messages that go with
// each.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "library/BatchJobFile.h"
#include "library/BatchQueue.h"
#include "library/LibraryEntry.h"
#include "library/LibraryFile.h"
#include "library/LibraryState.h"

namespace vantorel {

class MessageHost;

// Which of the window's buttons can be used.
struct BatchButtons {
    bool use = false;
    bool save = false;
    bool newJob = false;
    bool moveUp = false;
    bool moveDown = false;
    bool removeEntry = false;
    bool addEntry = false;
    bool deleteJob = false;

    bool operator==(const BatchButtons&) const = default;
};

class BatchJobEditor {
public:
    BatchJobEditor(BatchJobFile jobs, LibraryFile library, MessageHost& messages, LibraryState& state);

    // Reads the library and the jobs again; no job is current. Clears the
    // library's changed flag.
    void start();
    // The window became active: starts again when the library has changed
    // since it was last read.
    bool activate();

    const std::vector<LibraryEntry>& library() const noexcept { return library_; }
    std::vector<std::string> jobNames() const;
    // The position of the job being edited; -1 for a new one.
    int currentJob() const noexcept { return current_; }
    // The current job's name; empty for a new one.
    std::string currentName() const;
    // The entries of the job being edited, and the one selected.
    const std::vector<std::string>& entries() const noexcept { return entries_; }
    std::optional<std::size_t> selectedEntry() const noexcept { return selected_; }
    bool changed() const noexcept { return changed_; }
    BatchButtons buttons() const;

    // Makes the job at `position` the current one, unless the user keeps the
    // changed entries; a job without entries leaves the entries as they are.
    void selectJob(int position);
    void selectEntry(std::optional<std::size_t> index);
    void addEntry(const std::string& name);
    void removeEntry();
    void moveUp();
    void moveDown();
    // Starts a new job; false when the user kept the changed entries.
    bool newJob();
    // Saves the entries as the job `name` (the answer of the name question;
    // a name that is empty or only spaces is refused with a message), asking
    // before each job of that name is replaced.
    bool save(const std::string& name);
    // Asks, then deletes every job named as the current one.
    bool deleteJob();
    // The queue of the entries as they stand, or nothing (said) when an
    // entry is not in the library.
    std::optional<BatchQueue> queue();

private:
    enum class Write { Done, Declined };
    void loadLibrary();
    void loadJobs();
    // Writes the entries under `name`, or drops the jobs of that name. Throws
    // std::runtime_error.
    Write writeJob(const std::string& name, bool remove);
    void say(const std::string& text, MessageKind kind, MessageIcon icon = MessageIcon::None);
    bool ask(const std::string& text);

    BatchJobFile jobs_;
    LibraryFile libraryFile_;
    MessageHost& messages_;
    LibraryState& state_;
    std::vector<LibraryEntry> library_;
    std::vector<std::string> jobLines_;
    int current_ = -1;
    std::vector<std::string> entries_;
    std::optional<std::size_t> selected_;
    bool changed_ = false;
};

}  // namespace vantorel
