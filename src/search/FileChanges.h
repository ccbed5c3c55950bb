#pragma once
// What the writing pass of a Replace would make of one file, worked out by
// the code that writes it (writeNewText) without writing anything: the
// replacements, whether the file would be left as it is, and the lines that
// would change.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/TextEncoding.h"
#include "results/ChangeHunks.h"
#include "core/RunTypes.h"

namespace vantorel {

class CompiledJob;
class FileText;
struct WriteSettings;

struct FileChanges {
    std::uint64_t matches = 0;
    std::optional<WriteStatus> refused;  // the file would be left as it is
    std::int64_t modifiedNs = 0;         // the time of the text that was read
    TextEncoding encoding = TextEncoding::Utf8;
    bool utf16 = false;
    std::vector<ChangeHunk> hunks;        // none when the bytes would stay the same
};

FileChanges previewChanges(const std::string& path, const FileText& text, const std::vector<CompiledJob>& jobs,
                           const WriteSettings& settings, ChangeLines lines);

}  // namespace vantorel
