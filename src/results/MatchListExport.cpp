#include "results/MatchListExport.h"

#include "core/AtomicFileWriter.h"

namespace vantorel {
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

ExportResult exportMatchList(const std::vector<ResultRow>& rows, const std::function<std::string()>& choosePath,
                             MessageHost& messages) {
    if (rows.empty()) {
        messages.showMessage(Message{"No Results to Export.", kProgramTitle, MessageIcon::None, MessageKind::Notice});
        return ExportResult::NothingToExport;
    }
    try {
        const std::string path = choosePath();
        if (path.empty()) return ExportResult::Cancelled;
        AtomicFileWriter writer(path);
        writer.write(matchListLog(rows));
        writer.commit();
        messages.showMessage(
            Message{path + " log file created.", kProgramTitle, MessageIcon::Information, MessageKind::Notice});
        return ExportResult::Written;
    } catch (const std::exception&) {
        messages.showMessage(
            Message{"Error exporting log file!", kProgramTitle, MessageIcon::None, MessageKind::FileError});
        return ExportResult::Failed;
    }
}

}  // namespace vantorel
