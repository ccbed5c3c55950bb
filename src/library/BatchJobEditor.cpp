#include "library/BatchJobEditor.h"

#include <exception>

#include "core/MessageHost.h"
#include "library/ExpressionLibrary.h"
#include "library/SavedWorkLoad.h"

namespace vantorel {

BatchJobEditor::BatchJobEditor(BatchJobFile jobs, LibraryFile library, MessageHost& messages, LibraryState& state)
    : jobs_(std::move(jobs)), libraryFile_(std::move(library)), messages_(messages), state_(state) {}

void BatchJobEditor::say(const std::string& text, MessageKind kind, MessageIcon icon) {
    messages_.showMessage(Message{text, kProgramTitle, icon, kind});
}

bool BatchJobEditor::ask(const std::string& text) {
    return messages_.askYesNo(Message{text, kProgramTitle, MessageIcon::Question});
}

void BatchJobEditor::start() {
    loadLibrary();
    current_ = -1;
    loadJobs();
    state_.changed = false;
}

bool BatchJobEditor::activate() {
    if (!state_.changed) return false;
    start();
    return true;
}

void BatchJobEditor::loadLibrary() {
    library_ = vantorel::loadLibrary(libraryFile_, messages_).value_or(std::vector<LibraryEntry>());
}

void BatchJobEditor::loadJobs() {
    jobLines_ = loadJobLines(jobs_, messages_).value_or(std::vector<std::string>());
}

std::vector<std::string> BatchJobEditor::jobNames() const {
    std::vector<std::string> names;
    for (const std::string& line : jobLines_) names.emplace_back(jobName(line));
    return names;
}

std::string BatchJobEditor::currentName() const {
    if (current_ < 0 || static_cast<std::size_t>(current_) >= jobLines_.size()) return {};
    return std::string(jobName(jobLines_[static_cast<std::size_t>(current_)]));
}

BatchButtons BatchJobEditor::buttons() const {
    BatchButtons b;
    b.use = b.save = b.newJob = !entries_.empty();
    if (selected_) {
        b.moveUp = *selected_ > 0;
        b.moveDown = *selected_ + 1 < entries_.size();
        b.removeEntry = true;
    }
    b.addEntry = !library_.empty();
    b.deleteJob = !currentName().empty();
    return b;
}

void BatchJobEditor::selectJob(int position) {
    if (position == current_) return;
    if (changed_ && !ask("Current batch job has been updated. Selecting another will lose changes. continue?"))
        return;
    if (position < 0) return;
    if (static_cast<std::size_t>(position) >= jobLines_.size()) {
        say("Error showing batch job", MessageKind::Failure);
        return;
    }
    BatchJob job = parseJob(jobLines_[static_cast<std::size_t>(position)]);
    // A job without entries leaves the list showing what it showed.
    if (!job.entries.empty()) {
        entries_ = std::move(job.entries);
        selected_.reset();
    }
    current_ = position;
    changed_ = false;
}

void BatchJobEditor::selectEntry(std::optional<std::size_t> index) {
    selected_ = index && *index < entries_.size() ? index : std::nullopt;
}

void BatchJobEditor::addEntry(const std::string& name) {
    if (name.empty()) return;
    entries_.push_back(name);
    changed_ = true;
}

void BatchJobEditor::removeEntry() {
    if (!selected_) return;
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(*selected_));
    selected_.reset();
    changed_ = true;
}

void BatchJobEditor::moveUp() {
    if (!selected_ || *selected_ == 0) return;
    std::swap(entries_[*selected_], entries_[*selected_ - 1]);
    --*selected_;
    changed_ = true;
}

void BatchJobEditor::moveDown() {
    if (!selected_ || *selected_ + 1 >= entries_.size()) return;
    std::swap(entries_[*selected_], entries_[*selected_ + 1]);
    ++*selected_;
    changed_ = true;
}

bool BatchJobEditor::newJob() {
    if (changed_ && !ask("Current batch job has been updated. Creating a new one will lose changes. Sure?"))
        return false;
    changed_ = false;
    entries_.clear();
    selected_.reset();
    current_ = -1;
    return true;
}

bool BatchJobEditor::save(const std::string& name) {
    if (entries_.empty()) return false;
    // Refused as the library refuses an entry without a name: the list would not show it.
    if (name.find_first_not_of(' ') == std::string::npos) {
        say("Please enter a name for the batch job", MessageKind::Validation);
        return false;
    }
    if (name.find_first_of("\t\r\n") != std::string::npos) {
        say("The name of a batch job cannot hold tabs or line breaks.", MessageKind::Validation);
        return false;
    }
    try {
        if (writeJob(name, false) == Write::Declined) return false;
    } catch (const std::exception& error) {
        say(std::string("Error saving file: ") + error.what(), MessageKind::FileError);
        return false;
    }
    changed_ = false;
    loadJobs();
    say(name + " saved.", MessageKind::Notice, MessageIcon::Information);
    return true;
}

bool BatchJobEditor::deleteJob() {
    const std::string name = currentName();
    if (name.empty()) return false;
    if (!ask("Delete '" + name + "' ?")) return false;
    try {
        writeJob(name, true);
    } catch (const std::exception& error) {
        say(std::string("Error Deleting record: ") + error.what(), MessageKind::FileError);
        return false;
    }
    entries_.clear();
    selected_.reset();
    current_ = -1;
    changed_ = false;
    loadJobs();
    return true;
}

BatchJobEditor::Write BatchJobEditor::writeJob(const std::string& name, bool remove) {
    const std::string record = jobRecord(BatchJob{name, entries_});
    const std::optional<std::vector<std::string>> read = jobs_.lines();
    std::vector<std::string> lines = read.value_or(std::vector<std::string>());
    bool matched = false;
    // Every job of that name, not only the first.
    for (std::string& line : lines) {
        if (!sameNameIgnoringCase(std::string(jobName(line)), name)) continue;
        matched = true;
        if (remove) {
            line.clear();
        } else {
            if (!ask("Update '" + name + "' ?")) return Write::Declined;
            line = record;
        }
    }
    if (matched) {
        jobs_.rewrite(lines);
        return Write::Done;
    }
    if (remove) return Write::Done;  // gone already: nothing to delete
    // A new job goes last and becomes the current one, except the first job
    // of a file that did not exist.
    int position = -1;
    if (read) {
        position = 0;
        for (const std::string& line : lines) position += isJobLine(line) ? 1 : 0;
    }
    lines.push_back(record);
    jobs_.rewrite(lines);
    current_ = position;
    return Write::Done;
}

std::optional<BatchQueue> BatchJobEditor::queue() { return queueJob(currentName(), entries_, library_, messages_); }

}  // namespace vantorel
