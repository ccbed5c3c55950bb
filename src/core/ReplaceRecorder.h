#pragma once
// What the writing pass of a Replace tells a journal that can take the run
// back. The calls come at commit time, on the driver's thread, in file
// order: replacing() just before a file is replaced (its backup made and the
// new text renamed over it), replaced() once that is done or refused, and
// finished() at the end of the pass.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/AtomicFileWriter.h"
#include "core/FileIdentity.h"
#include "core/MessageHost.h"
#include "core/RunTypes.h"

namespace vantorel {

class TreeRoot;

struct ReplacingFile {
    const std::string& path;      // as listed
    const std::string& target;    // the file replaced: the listed one, or where its link leads
    const std::string& relative;  // the same below the start folder
    int folder;                   // its folder, open
    const std::string& name;      // its name there
    int file;                     // the file itself, open and locked
    const FileIdentity& readFrom; // what it held when its text was read
    const AtomicFileWriter::Written& written;  // what replaces it
    // Where the backup goes when one is made (it may hold an older backup):
    // its open folder (-1 without backups), its name there, its path and
    // the same below the start folder.
    int backupFolder;
    const std::string& backupName;
    const std::string& backup;
    const std::string& backupRelative;
};

class ReplaceRecorder {
public:
    virtual ~ReplaceRecorder() = default;
    // Keeps what the file (and its backup name) holds now. A journal that
    // cannot do so says why in `messages` and records nothing more.
    virtual void replacing(const ReplacingFile& file, std::vector<Message>& messages) = 0;
    virtual void replaced(const WriteOutcome& outcome) = 0;
    virtual void finished() = 0;
    // Before the writing pass: keeping the old contents would take
    // `keepBytes` on the start folder's file system, where the Replace
    // itself needs `writeBytes`. When its free space holds less than both,
    // older runs are given back, oldest first, and then this run keeps
    // nothing, as `messages` then says: keeping never costs a Replace.
    virtual void plan(std::uint64_t keepBytes, std::uint64_t writeBytes, std::vector<Message>& messages) = 0;
    // A new file did not fit on its disk: gives back older runs, oldest
    // first, then what this run kept (saying so in `messages`). False when
    // nothing is left to give. Called from any thread.
    virtual bool giveBackSpace(std::vector<Message>& messages) = 0;
};

class ReplaceJournal {
public:
    virtual ~ReplaceJournal() = default;
    // The recorder of one run's writing pass below `root` (the run's start
    // folder, held open); nothing when runs are not recorded.
    virtual std::unique_ptr<ReplaceRecorder> startRun(const RunRequest& request, const TreeRoot& root) = 0;
    // Where the journal keeps its things: no run enters it.
    virtual std::string folder() const = 0;
};

}  // namespace vantorel
