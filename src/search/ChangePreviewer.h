#pragma once
// The changes a Replace would make, file by file, for a window that works
// them out only for the files it shows. Made from the run's request: its
// jobs compiled as the run compiles them, files written only inside its
// start folder. preview() may be called from several threads at once.

#include <optional>
#include <string>
#include <vector>

#include "core/TreeRoot.h"
#include "search/FileChanges.h"
#include "search/FileProcessor.h"
#include "search/WriteBack.h"

namespace vantorel {

class ChangePreviewer {
public:
    // Throws PatternError for a pattern the run would refuse.
    explicit ChangePreviewer(const RunRequest& request);

    struct Result {
        bool read = false;  // false: the file is gone or cannot be read
        std::string error;  // why not
        FileChanges changes;
    };
    Result preview(const std::string& path, ChangeLines lines = ChangeLines::Decoded) const;

private:
    std::vector<CompiledJob> jobs_;
    std::optional<TreeRoot> root_;
    WriteSettings settings_;
};

}  // namespace vantorel
