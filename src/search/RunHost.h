#pragma once
// What a run reports to the front end that started it. Every call comes from
// the thread that runs the driver, in the order the user is to see it. A
// front end receives every report through report(); messages and questions
// are round trips through MessageHost.

#include <string>
#include <string_view>
#include <utility>

#include "core/MessageHost.h"
#include "search/RunReport.h"

namespace vantorel {

class RunHost : public MessageHost {
public:
    virtual void report(RunReport report) = 0;

    // The driver's words for each report.
    void runStarted(const RunRequest& request) { report(reports::Started{request.kind}); }
    void passStarted(PassKind pass) { report(reports::PassStarted{pass}); }
    void setStatus(std::string text) { report(reports::Status{std::move(text)}); }
    void setProgress(int percent, PassKind pass) { report(reports::Progress{percent, pass}); }
    void clearRows() { report(reports::RowsCleared{}); }
    void appendPreview(StyledText section) { report(reports::PreviewSection{std::move(section)}); }
    void addRow(FileReport row) { report(reports::Row{std::move(row)}); }
    void appendExtracted(std::string_view text) { report(reports::Extracted{std::string(text)}); }
    void runFinished(const RunOutcome& outcome) { report(reports::Finished{outcome}); }
};

}  // namespace vantorel
