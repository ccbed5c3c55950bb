#pragma once
// "BatchJobs.txt", the file of the batch jobs: one job a line, its name
// followed by a tab and each entry's name, lines ended by CR LF, kept as the
// library file is (UTF-8, read as Windows-1252 when it is not UTF-8, rewritten
// whole through a temporary file).

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library/BatchJob.h"
#include "library/RecordFile.h"

namespace vantorel {

inline constexpr const char* kBatchJobsFileName = "BatchJobs.txt";

// True when a line holds a job: it is not empty once its leading and
// trailing spaces are removed.
bool isJobLine(std::string_view line);
// A job line's job: the name is the text before the first tab (the whole line
// when there is none), each further field an entry.
BatchJob parseJob(std::string_view line);
// The name alone, as parseJob gives it.
std::string_view jobName(std::string_view line);
// A job's line, without its end: the name, then a tab and each entry.
std::string jobRecord(const BatchJob& job);

class BatchJobFile {
public:
    explicit BatchJobFile(std::filesystem::path programFolder);
    explicit BatchJobFile(RecordFile file);

    const RecordFile& file() const noexcept { return file_; }

    // The jobs' lines in file order: every line that is not empty once its
    // leading and trailing spaces are removed. None when there is no file.
    // Throws std::runtime_error with the system's description.
    std::vector<std::string> jobLines() const;
    // Every line that is not empty (lines of spaces too), or nothing when
    // there is no file. Throws std::runtime_error.
    std::optional<std::vector<std::string>> lines() const;
    // Replaces the file with the lines that are not empty, each ended by
    // CR LF. Throws std::runtime_error.
    void rewrite(const std::vector<std::string>& lines) const;

private:
    RecordFile file_;
};

// The first job whose name equals `name` without regard to case.
std::optional<BatchJob> findJob(const std::vector<std::string>& jobLines, const std::string& name);

}  // namespace vantorel
