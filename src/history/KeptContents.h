#pragma once
// Where the undo journal keeps what the files of a Replace held. A Replace
// renames a new file over the old one, so the old file lives on under a
// second name: in the run's own folder when that is on the same file system,
// else in a hidden folder ".vantorel-undo-<user id>" at the top of the
// file's file system (as the desktop's trash does there), which no run
// enters. Where neither can be had (a file system without hard links, or one
// whose top we may not write or may not trust as a journal's folder) the
// contents are copied into the run's folder.
//
// A run's folder there records, in kJournalRunFile, the journal's run it
// belongs to. The first run that keeps contents there clears the folders of
// runs whose journal run is gone (the journal deleted, or the run removed
// while that file system was not mounted).

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/FileDescriptor.h"
#include "core/FolderSync.h"
#include "files/FileText.h"

namespace vantorel::history {

class KeptContents {
public:
    static constexpr const char* kJournalRunFile = "journal-run";

    // `folder` (created by the caller) holds the run's kept contents: the
    // `kept` folder in the journal's run folder. `runName` names the run's
    // folder elsewhere too.
    KeptContents(std::string folder, std::string runName);

    struct Kept {
        std::string path;
        FileIdentity identity;
        std::uint64_t hash = 0;  // of a copy's contents; 0 for a second name of the file itself
    };
    // Keeps what the open file `file` holds (a regular file, on `device`;
    // `path` names it and tells where its file system's top is), as `name`:
    // a second name of that very file, whatever its names lead to by now, or
    // a copy of it. Throws std::system_error.
    Kept keep(int file, dev_t device, const std::string& path, const std::string& name);
    // Flushes the folders that got new names since the last call.
    void sync();
    // The run's folders elsewhere, in the order they were made.
    const std::vector<std::string>& elsewhere() const noexcept { return elsewhere_; }

private:
    std::optional<std::string> folderOn(dev_t device, const std::string& file);
    Kept copy(int file, const std::string& path, const std::string& name);

    std::string folder_;  // ends in the separator
    std::string runName_;
    std::string journalRun_;  // the journal's run folder
    dev_t device_ = 0;
    FileDescriptor folderFd_;
    std::map<dev_t, std::optional<std::string>> elsewhereByDevice_;
    std::vector<std::string> elsewhere_;
    std::set<std::string> unsynced_;
    FolderSync copies_;
};

}  // namespace vantorel::history
