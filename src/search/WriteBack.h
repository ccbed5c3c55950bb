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
// is UTF-16 text that would not read back as it was, when a new file would
// not keep its owner, when no backup can be made, when another program (or
// another run) changed it since it was read, when a folder on its way was
// replaced by a link, or when the system refuses the new file. Only an
// engine failure ends the run.
//
// Below a run's start folder, every folder is reached from the start
// folder's descriptor without following links (TreeRoot), when the new file
// is made and again when it is committed; the file is committed under its
// lock (LockedFile), after checking that it is still the one that was read.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/MessageHost.h"
#include "files/FileText.h"
#include "core/RunTypes.h"
#include "regex/TextEdits.h"
#include "search/PendingWrite.h"
#include "search/WriteBudget.h"
#include "search/WriteTarget.h"

namespace vantorel {

class AtomicFileWriter;
class CompiledJob;
class FolderSync;
class LockedFile;
class ReplaceRecorder;
class TextSink;
class TreeRoot;

// Gives back disk space that only protects (the undo journal's) when a new
// file does not fit. May be called from any thread.
class SpaceRelief {
public:
    virtual ~SpaceRelief() = default;
    // False when there is nothing more to give back; what it gave up is
    // told in `messages`.
    virtual bool relieve(std::vector<Message>& messages) = 0;
};

struct WriteSettings {
    bool makeBackups = false;
    // Files are written only below this folder, reached from it without
    // following links. None: each file in its own folder, by path.
    const TreeRoot* root = nullptr;
    // The files come from the walk of the root folder (rather than a list
    // of marked files): a file's path then says where it is, unless it is a
    // link.
    bool walked = false;
    // New texts on this device are left in the system's cache: the driver
    // flushes the whole file system before it commits them. Nothing: each
    // is flushed as it is finished.
    std::optional<dev_t> syncedLater;
    // Asked when a new file does not fit on its disk; the file is then
    // written again.
    SpaceRelief* space = nullptr;
};


// Lets the driver hold a file back until it may write its temporary file.
class WriteTurn {
public:
    virtual ~WriteTurn() = default;
    // Before a temporary file of about `bytes` is written; nothing when the
    // run stops meanwhile.
    virtual std::optional<WriteBudget::Share> waitForRoom(std::uint64_t bytes) = 0;
};

struct PreparedWrite {
    std::uint64_t matches = 0;
    std::unique_ptr<PendingWrite> pending;  // the new text, when it is to be written
    std::optional<WriteOutcome> refused;    // why not, when it is not
    std::vector<Message> messages;
    bool stopped = false;                   // the run stopped while the file waited
    // The disk is full, with new files of earlier files still waiting on it:
    // the driver writes those first, then this one again.
    bool noSpace = false;
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
// Where the file would be written.
WriteTarget writeTargetOf(const std::string& path, const WriteSettings& settings);

// Throws MatchError for an engine failure.
PreparedWrite prepareWriteBack(const std::string& path, const FileText& text,
                               const std::vector<CompiledJob>& jobs, const WriteSettings& settings,
                               WriteTurn* turn);

}  // namespace vantorel
