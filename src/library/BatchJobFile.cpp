#include "library/BatchJobFile.h"

#include "library/ExpressionLibrary.h"

namespace vantorel {

bool isJobLine(std::string_view line) { return line.find_first_not_of(' ') != std::string_view::npos; }

BatchJob parseJob(std::string_view line) {
    const std::vector<std::string_view> fields = recordFields(line);
    BatchJob job{std::string(fields[0]), {}};
    for (std::size_t i = 1; i < fields.size(); ++i) job.entries.emplace_back(fields[i]);
    return job;
}

std::string_view jobName(std::string_view line) { return line.substr(0, line.find('\t')); }

std::string jobRecord(const BatchJob& job) {
    std::string record = job.name;
    for (const std::string& entry : job.entries) record += '\t' + entry;
    return record;
}

BatchJobFile::BatchJobFile(std::filesystem::path programFolder)
    : file_(std::move(programFolder), kBatchJobsFileName) {}

BatchJobFile::BatchJobFile(RecordFile file) : file_(std::move(file)) {}

std::vector<std::string> BatchJobFile::jobLines() const {
    std::vector<std::string> jobs;
    const std::optional<std::string> text = file_.text();
    if (!text) return jobs;
    for (const std::string_view line : recordLines(*text))
        if (isJobLine(line)) jobs.emplace_back(line);
    return jobs;
}

std::optional<std::vector<std::string>> BatchJobFile::lines() const {
    const std::optional<std::string> text = file_.text();
    if (!text) return std::nullopt;
    std::vector<std::string> lines;
    for (const std::string_view line : recordLines(*text))
        if (!line.empty()) lines.emplace_back(line);
    return lines;
}

void BatchJobFile::rewrite(const std::vector<std::string>& lines) const {
    std::string text;
    for (const std::string& line : lines)
        if (!line.empty()) text += line + "\r\n";
    file_.replaceWith(text);
}

std::optional<BatchJob> findJob(const std::vector<std::string>& jobLines, const std::string& name) {
    for (const std::string& line : jobLines)
        if (sameNameIgnoringCase(std::string(jobName(line)), name)) return parseJob(line);
    return std::nullopt;
}

}  // namespace vantorel
