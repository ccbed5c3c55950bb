#pragma once
// The names that new files have for a moment before they replace their
// files, and the clearing of those that a killed process left behind.
//
// A new file is written without a name (O_TMPFILE) where the file system
// allows it, and gets a name only for the instant between being linked into
// its folder and being renamed over its file: a killed run leaves nothing
// half-written, and almost never anything at all. Where unnamed files cannot
// be had, it is named from the start. Either way the name is
// ".vantorel-<process>-<number>", digits only.
//
// Only what this program made is ever deleted: a file whose name has exactly
// that form, that is a regular file with one name, that belongs to the user
// the program runs as, and whose process is gone (or started after the file
// was last written). Files that merely look alike, files of other users and
// files of running processes are left alone.

#include <sys/types.h>

#include <string>
#include <string_view>

namespace vantorel {

class TemporaryFiles {
public:
    static std::string nameFor(pid_t pid, unsigned long number);
    // A name of this process not given before.
    static std::string newName();
    // True for names of exactly the form above.
    static bool isTemporaryName(std::string_view name) noexcept;

    struct FolderFacts {
        bool hasDefaultAcl = false;  // new files there get an ACL of their own
        dev_t device = 0;            // which folder it is
        ino_t inode = 0;
    };
    // Called before this process first writes in the open folder `folder`:
    // clears the temporary files there that a process now gone left (once
    // per folder and process), and says what new files there inherit.
    // Throws std::system_error when the folder cannot be examined.
    static FolderFacts prepareFolder(int folder);
};

}  // namespace vantorel
