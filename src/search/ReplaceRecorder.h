#pragma once
// What the writing pass of a Replace tells a journal that can take the run
// back. The calls come at commit time, on the driver's thread, in file
// order: replacing() just before a file is replaced (its backup made and the
// new text renamed over it), replaced() once that is done or refused, and
// finished() at the end of the pass.

#include <memory>
#include <string>
#include <vector>

#include "core/AtomicFileWriter.h"
#include "core/MessageHost.h"
#include "search/FileText.h"
#include "search/RunTypes.h"

namespace vantorel {

struct ReplacingFile {
    const std::string& path;      // as listed
    const std::string& target;    // the file replaced: the listed one, or where its link leads
    const FileIdentity& readFrom; // what it held when its text was read
    const AtomicFileWriter::Written& written;  // what replaces it
    // The backup name when a backup is made, which may hold an older backup; empty without.
    const std::string& backup;
};

class ReplaceRecorder {
public:
    virtual ~ReplaceRecorder() = default;
    // Keeps what the file (and its backup name) holds now. A journal that
    // cannot do so says why in `messages` and records nothing more.
    virtual void replacing(const ReplacingFile& file, std::vector<Message>& messages) = 0;
    virtual void replaced(const WriteOutcome& outcome) = 0;
    virtual void finished() = 0;
};

class ReplaceJournal {
public:
    virtual ~ReplaceJournal() = default;
    // The recorder of one run's writing pass; nothing when runs are not recorded.
    virtual std::unique_ptr<ReplaceRecorder> startRun(const RunRequest& request) = 0;
    // Where the journal keeps its things: no run enters it.
    virtual std::string folder() const = 0;
};

}  // namespace vantorel
