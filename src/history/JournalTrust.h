#pragma once
// Which folders and files of the undo journal may be trusted. Undo writes
// the journal's kept contents over the files a Replace changed, and the
// program is run as root over other users' trees: a journal that another
// user could have written would let him choose what is written over files
// that are not his. So a journal's folder, a recorded run's folder and its
// files must belong to the user who runs the program and be writable by no
// one else, and no symbolic link is followed to any of them. What is not
// trusted is not used, with a message naming it and saying why.
//
// The folders above a journal's folder are trusted when each of them, links
// resolved one at a time as the system resolves them, belongs to that user
// or to root and can be written by no one else, unless it has the sticky
// bit (as /tmp has): whoever may write a folder, or owns it and may make it
// writable, can rename what is in it and put his own folder, or a link,
// there between the check and the use; in a sticky folder only the owner of
// an entry may rename or remove it. Each link passed on the way must belong
// to that user or root, for the same reason.

#include <sys/types.h>

#include <optional>
#include <string>
#include <system_error>

namespace vantorel::history {

struct Distrust {
    enum class Reason {
        Unreadable,        // cannot be examined (`error` says why)
        Link,              // a symbolic link where a real folder or file is wanted
        NotFolder,
        NotFile,
        Owner,             // belongs to another user (`owner`)
        WritableByOthers,  // `mode` lets the group or others write
    };
    std::string path;
    Reason reason = Reason::Unreadable;
    bool above = false;  // a folder (or link) above a journal's folder, which root may own too
    uid_t owner = 0;
    mode_t mode = 0;
    int error = 0;
};

// "/x belongs to user 1000, not to user 0" and the like.
std::string describe(const Distrust& distrust);

// Thrown where a journal that is not trusted was to be used.
class UntrustedJournal : public std::system_error {
public:
    explicit UntrustedJournal(Distrust distrust);
    const Distrust& distrust() const noexcept { return distrust_; }

private:
    Distrust distrust_;
};

// A journal's folder and those above it (see above). Nothing when they are
// trusted, or when the folder does not exist; with `make`, the folders
// missing are made on the way, each with mkdir and mode 0700, never through
// a link at the folder's own name.
std::optional<Distrust> checkJournalFolder(const std::string& folder, bool make = false);

// Makes the journal's folder when it is missing, checks it, keeps it private
// (0700) and marks it as a journal's folder (kUndoJournalMarker), which no
// run enters; an unmarked one, made by an earlier version, is marked now.
std::optional<Distrust> makeJournalFolder(const std::string& folder);

// A real folder, or a regular file, that belongs to the user and that no one
// else may write; never through a link. A missing one is Unreadable
// (ENOENT) unless `mayBeMissing`.
std::optional<Distrust> checkOwnFolder(const std::string& path, bool mayBeMissing = false);
std::optional<Distrust> checkOwnFile(const std::string& path, bool mayBeMissing = false);

}  // namespace vantorel::history
