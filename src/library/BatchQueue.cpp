#include "library/BatchQueue.h"

namespace vantorel {

std::string batchLabel(const std::string& jobName) {
    std::string label = "Batch Commands Queued";
    if (!jobName.empty()) label += " (" + jobName + ")";
    return label;
}

const LibraryEntry* findEntry(const std::vector<LibraryEntry>& library, const std::string& name) {
    for (const LibraryEntry& entry : library)
        if (entry.name == name) return &entry;
    return nullptr;
}

Message missingEntry(const std::string& name) {
    return Message{"Saved expression '" + name + "' does not exist in library", kProgramTitle, MessageIcon::None,
                   MessageKind::Validation};
}

std::optional<BatchQueue> queueJob(const std::string& jobName, const std::vector<std::string>& entryNames,
                                   const std::vector<LibraryEntry>& library, MessageHost& messages) {
    BatchQueue queue;
    for (const std::string& name : entryNames) {
        const LibraryEntry* entry = findEntry(library, name);
        if (!entry) {
            messages.showMessage(missingEntry(name));
            return std::nullopt;
        }
        queue.steps.push_back(FindReplaceJob{entry->pattern, entry->replacement});
    }
    queue.label = batchLabel(jobName);
    return queue;
}

}  // namespace vantorel
