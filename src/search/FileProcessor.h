#pragma once
// One file of a run: read it whole, apply every job in turn, count or collect
// the matches and, in the writing pass of a Replace, save the new text.

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include "core/MessageHost.h"
#include "search/FileChanges.h"
#include "regex/Regex.h"
#include "regex/ReplaceTemplate.h"
#include "core/RunTypes.h"
#include "search/WriteBack.h"

namespace vantorel {

// A job ready to run: its final pattern compiled, its replacement parsed.
class CompiledJob {
public:
    CompiledJob(std::string findPattern, std::string replaceText, bool ignoreCase);

    const std::string& findPattern() const noexcept { return findPattern_; }
    const std::string& replaceText() const noexcept { return replaceText_; }
    bool empty() const noexcept { return findPattern_.empty(); }
    // True when the job finds the same bytes whatever the file's encoding
    // (a pattern of ASCII characters taken literally).
    bool encodingIndependent() const noexcept { return encodingIndependent_; }
    const CompiledPattern& pattern(TextEncoding encoding) const { return regex_.forEncoding(encoding); }
    // The replacement for text of this encoding; nothing when the encoding
    // cannot hold it (the job then finds nothing in such a file).
    const ReplaceTemplate* replacement(TextEncoding encoding) const;

private:
    std::string findPattern_;
    std::string replaceText_;
    Regex regex_;
    ReplaceTemplate utf8Template_;
    std::optional<ReplaceTemplate> singleByteTemplate_;
    bool encodingIndependent_;
};

// The text of a file that the counting pass of a Replace found matches in,
// kept for the writing pass within a budget of memory.
struct KeptText {
    FileText text;
    WriteBudget::Share share;
};

struct PassSettings {
    bool replacing = false;  // a pass of a Replace run
    bool write = false;      // the writing pass
    bool extract = false;
    bool makeBackups = false;
    const RunRequest* request = nullptr;  // its preview builder, when set
    bool listsEveryFile = false;          // files without matches are listed too
    const WriteSettings* writing = nullptr;  // the writing pass or a preview of it; none: defaults
    WriteBudget* keepTexts = nullptr;        // the counting pass keeps the texts with matches that fit
};

// Where a name leads: the file system's device and file number.
struct FileKey {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    bool operator==(const FileKey&) const = default;
};

struct FileOutcome {
    bool read = false;            // false: vanished, unreadable or empty, no row
    std::optional<Message> readError;
    std::uint64_t matches = 0;
    std::uint64_t characters = 0;
    std::uint64_t bytes = 0;      // the file's size
    std::time_t modified = 0;
    std::string extracted;        // UTF-8 values, each followed by CR LF
    std::vector<StyledText> previewSections;
    std::optional<FileChanges> changes;  // what a Replace would make of the file, when asked
    bool interrupted = false;     // a stop came while the file was processed
    // The file that was read: another name for it later in the list is
    // passed over.
    std::optional<FileKey> file;
    // The counting pass of a Replace with backups: the file that its backup
    // will replace, if one exists.
    std::optional<FileKey> backupEntry;
    // The counting pass of a Replace: the text, when it is kept.
    std::unique_ptr<KeptText> keptText;
    // The writing pass: the new text, ready to replace the file, or why the
    // file is left as it is, and what to tell about it.
    std::unique_ptr<PendingWrite> pendingWrite;
    std::optional<WriteOutcome> refused;
    std::vector<Message> writeMessages;
    bool noSpace = false;  // to be written again once the files before it are (see PreparedWrite)
};

// Nothing the user can see changes here: in the writing pass the new text
// waits in `pendingWrite` until the driver commits it. The writing pass
// takes `kept` as the file's text when the file is still as it was when it
// was read, and reads it again when not. Throws MatchError for an engine
// failure, which ends the run, and MatchStopped for a stop.
FileOutcome processFile(const std::string& path, const std::vector<CompiledJob>& jobs,
                        const PassSettings& pass, WriteTurn* turn = nullptr,
                        std::unique_ptr<KeptText> kept = nullptr);

}  // namespace vantorel
