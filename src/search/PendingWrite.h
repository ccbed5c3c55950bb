#pragma once
// A file's new text, finished and waiting for its turn, and the committing
// of it: the file's folder is reached again from the start folder without
// following links, the file is locked and checked to be the one that was
// read, the old contents are kept (as a backup, and by the journal), and the
// new file and the old one change places at once. The driver commits in
// file order; a pending write that is never committed leaves nothing.

#include <memory>
#include <string>
#include <vector>

#include "core/FileIdentity.h"
#include "core/MessageHost.h"
#include "core/RunTypes.h"
#include "search/WriteBudget.h"
#include "search/WriteTarget.h"

namespace vantorel {

class AtomicFileWriter;
class FolderSync;
class LockedFile;
class ReplaceRecorder;
class TreeRoot;

class PendingWrite {
public:
    PendingWrite(std::string path, WriteTarget target, const TreeRoot* root,
                 std::unique_ptr<AtomicFileWriter> writer, bool makeBackups, const FileIdentity& readFrom,
                 WriteBudget::Share share);
    ~PendingWrite();
    PendingWrite(const PendingWrite&) = delete;
    PendingWrite& operator=(const PendingWrite&) = delete;

    // Makes the backup and replaces the file, unless another program (or
    // run) changed it since it was read; appends the messages to show.
    // Folders changed are flushed through `folders`; `recorder` hears of
    // the file first.
    WriteOutcome commit(std::vector<Message>& messages, FolderSync& folders, ReplaceRecorder* recorder = nullptr);
    // Gives up the new text, which could not be flushed to disk (`error`).
    WriteOutcome abandon(int error, std::vector<Message>& messages);

private:
    WriteOutcome replace(int folder, const std::string& name, const LockedFile& file, int backupFolder,
                         std::vector<Message>& messages, FolderSync& folders);

    std::string path_;
    WriteTarget target_;
    const TreeRoot* root_;
    std::unique_ptr<AtomicFileWriter> writer_;
    bool makeBackups_;
    FileIdentity readFrom_;
    WriteBudget::Share share_;
};

}  // namespace vantorel
