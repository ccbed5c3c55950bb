#pragma once
// The temporary files that writes leave beside their targets until the
// rename: how they are named, how they are recognised, and how those of
// processes that died before renaming them are cleared away.

#include <sys/types.h>

#include <string>
#include <string_view>

namespace vantorel {

class TemporaryFiles {
public:
    // ".vantorel-<pid>-<number>-<name>", or without "-<name>" when the whole
    // would pass the file system's limit for a name.
    static std::string nameFor(std::string_view fileName, pid_t pid, unsigned long number);
    static std::string shortNameFor(pid_t pid, unsigned long number);
    static bool isTemporaryName(std::string_view name) noexcept;

    struct FolderFacts {
        bool hasDefaultAcl = false;  // new files there get an ACL of their own
    };
    // Called before this process first writes in `folder` (a path ending in
    // the separator, or empty for the current folder): removes the temporary
    // files there whose process is gone, once per folder and process, and
    // says what new files there inherit.
    static FolderFacts prepareFolder(const std::string& folder);
};

}  // namespace vantorel
