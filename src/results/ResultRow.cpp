#include "results/ResultRow.h"

#include "files/FileFunctions.h"

namespace vantorel {

ResultRow ResultRow::fromReport(const FileReport& report) {
    return ResultRow{FileNameOf(report.path), FolderOf(report.path), report.matches,
                     report.characters, report.modified, report.marked};
}

std::vector<std::string> ResultRow::cells() const {
    return {name, folder, std::to_string(matches), std::to_string(size), formatDateTime(modified)};
}

const std::vector<std::string>& resultColumnHeaders() {
    static const std::vector<std::string> headers = {"File Name", "Path", "Matches", "File Size", "Modified"};
    return headers;
}

}  // namespace vantorel
