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

namespace {

void appendLine(std::string& out, const std::vector<std::string>& fields) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (i > 0) out += ',';
        out += fields[i];
    }
    out += "\r\n";
}

}  // namespace

std::string matchListLog(const std::vector<ResultRow>& rows) {
    std::string out;
    appendLine(out, resultColumnHeaders());
    for (const ResultRow& row : rows) appendLine(out, row.cells());
    return out;
}

}  // namespace vantorel
