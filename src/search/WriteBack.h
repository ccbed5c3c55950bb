#pragma once
// The writing pass of one file: apply every job in turn (each sees the text
// as the one before left it) and save the result over the file, optionally
// keeping the old contents as a ".bak" file. Read-only files are not changed.

#include <cstdint>
#include <string>
#include <vector>

#include "core/MessageHost.h"

namespace vantorel {

class CompiledJob;
class FileText;
class TextSink;

struct WriteBackResult {
    std::uint64_t matches = 0;
    bool readOnlySkipped = false;
    bool written = false;
    std::vector<Message> messages;
};

// Applies the jobs to `text`, writing the new text to `out`; returns the
// number of replacements.
std::uint64_t applyJobs(const FileText& text, const std::vector<CompiledJob>& jobs, TextSink& out);

// Throws std::system_error when the new text cannot be written at all.
WriteBackResult writeBack(const std::string& path, const FileText& text,
                          const std::vector<CompiledJob>& jobs, bool makeBackups);

}  // namespace vantorel
