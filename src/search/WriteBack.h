#pragma once
// The writing pass of one file, in two steps. prepareWriteBack applies every
// job in turn (each sees the text as the one before left it) and writes the
// new text to a temporary file beside the file; it may run on any thread and
// changes nothing the user can see. PendingWrite::commit then keeps the old
// contents as a ".bak" file when asked and renames the new text over the
// file; the driver calls it in file order. A pending write that is never
// committed removes its temporary file.
//
// A file is left as it is, and the outcome says why, when it is read-only,
// when it lies outside the start folder (a link leading out of it), when it
// is UTF-16 text that would not read back as it was, when no backup can be
// made, when another program changed it since it was read, or when the
// system refuses the new file. Only an engine failure ends the run.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/MessageHost.h"
#include "search/FileText.h"
#include "search/RunTypes.h"
#include "search/TextEdits.h"
#include "search/WriteBudget.h"

namespace vantorel {

class AtomicFileWriter;
class CompiledJob;
class FolderSync;
class ReplaceRecorder;
class TextSink;

struct WriteSettings {
    bool makeBackups = false;
    // Files are written only inside this folder (links resolved, ending in
    // the separator); empty: anywhere.
    std::string realStartFolder;
    // Listed files under this folder (as typed, ending in the separator) are
    // known to be inside it unless they are links; empty: every file is
    // resolved.
    std::string walkedFolder;
    // New texts on this device are left in the system's cache: the driver
    // flushes the whole file system before it commits them. Nothing: each
    // is flushed as it is finished.
    std::optional<dev_t> syncedLater;
};

// Lets the driver hold a file back until it may write its temporary file.
class WriteTurn {
public:
    virtual ~WriteTurn() = default;
    // Before a temporary file of about `bytes` is written; nothing when the
    // run stops meanwhile.
    virtual std::optional<WriteBudget::Share> waitForRoom(std::uint64_t bytes) = 0;
};

class PendingWrite {
public:
    PendingWrite(std::string path, std::unique_ptr<AtomicFileWriter> writer, bool makeBackups,
                 const FileIdentity& readFrom, WriteBudget::Share share);
    ~PendingWrite();
    PendingWrite(const PendingWrite&) = delete;
    PendingWrite& operator=(const PendingWrite&) = delete;

    // Makes the backup and replaces the file, unless another program changed
    // it since it was read; appends the messages to show. Folders changed
    // are flushed through `folders`; `recorder` hears of the file first.
    WriteOutcome commit(std::vector<Message>& messages, FolderSync& folders, ReplaceRecorder* recorder = nullptr);
    // Gives up the new text, which could not be flushed to disk (`error`).
    WriteOutcome abandon(int error, std::vector<Message>& messages);

private:
    WriteOutcome replace(std::vector<Message>& messages, FolderSync& folders);

    std::string path_;
    std::unique_ptr<AtomicFileWriter> writer_;
    bool makeBackups_;
    FileIdentity readFrom_;
    WriteBudget::Share share_;
};

struct PreparedWrite {
    std::uint64_t matches = 0;
    std::unique_ptr<PendingWrite> pending;  // the new text, when it is to be written
    std::optional<WriteOutcome> refused;    // why not, when it is not
    std::vector<Message> messages;
    bool stopped = false;                   // the run stopped while the file waited
};

// Applies the jobs to `text`, writing the new text to `out`; returns the
// number of replacements. Given `edits`, sets them to where the text changed.
std::uint64_t applyJobs(const FileText& text, const std::vector<CompiledJob>& jobs, TextSink& out,
                        TextEdits* edits = nullptr);

// The new contents of a file, as a write writes them: the jobs applied in
// turn and a UTF-16 file's text encoded back. `textOut` receives the text
// before it is encoded; `edits` are in the text's terms.
std::uint64_t writeNewText(const FileText& text, const std::vector<CompiledJob>& jobs, TextSink& out,
                           TextEdits* edits = nullptr, TextSink* textOut = nullptr);

// Why a file with matches would be left as it is; nothing when it would be written.
std::optional<WriteStatus> writeRefusal(const std::string& path, const FileText& text, const WriteSettings& settings);

// Throws MatchError for an engine failure.
PreparedWrite prepareWriteBack(const std::string& path, const FileText& text,
                               const std::vector<CompiledJob>& jobs, const WriteSettings& settings,
                               WriteTurn* turn);

// The message of a write that failed: "Error writing " + path, CR LF, why.
std::string writeErrorMessage(const std::string& path, const std::string& error);

}  // namespace vantorel
