#pragma once
// The writing pass of one file, in two steps. prepareWriteBack applies every
// job in turn (each sees the text as the one before left it) and writes the
// new text to a temporary file beside the file; it may run on any thread and
// changes nothing the user can see. PendingWrite::commit then keeps the old
// contents as a ".bak" file when asked and renames the new text over the
// file; the driver calls it in file order. A pending write that is never
// committed removes its temporary file. Read-only files are not changed.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/MessageHost.h"
#include "search/FileText.h"

namespace vantorel {

class AtomicFileWriter;
class CompiledJob;
class TextSink;

class PendingWrite {
public:
    PendingWrite(std::string path, std::string target, std::unique_ptr<AtomicFileWriter> writer,
                 bool makeBackups, const FileIdentity& readFrom);
    ~PendingWrite();
    PendingWrite(const PendingWrite&) = delete;
    PendingWrite& operator=(const PendingWrite&) = delete;

    // Makes the backup (appending its messages; the file then stays as it
    // was when no backup can be made) and replaces the file, unless another
    // program changed the file since it was read (a message says so, and
    // the other program's change stays). Throws std::system_error when the
    // file cannot be replaced.
    bool commit(std::vector<Message>& messages);

private:
    std::string path_;
    std::string target_;
    std::unique_ptr<AtomicFileWriter> writer_;
    bool makeBackups_;
    FileIdentity readFrom_;
};

struct PreparedWrite {
    std::uint64_t matches = 0;
    bool readOnlySkipped = false;
    std::unique_ptr<PendingWrite> pending;  // none when nothing is to be written
};

// Applies the jobs to `text`, writing the new text to `out`; returns the
// number of replacements.
std::uint64_t applyJobs(const FileText& text, const std::vector<CompiledJob>& jobs, TextSink& out);

// Throws std::system_error when the file may not or cannot be written.
PreparedWrite prepareWriteBack(const std::string& path, const FileText& text,
                               const std::vector<CompiledJob>& jobs, bool makeBackups);

}  // namespace vantorel
