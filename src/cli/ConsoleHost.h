#pragma once
// The terminal as the front end of a run: rows and summaries through the
// printer the options chose, problems on standard error, questions asked at
// the terminal.

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "cli/CliOptions.h"
#include "cli/Printer.h"
#include "files/FileFunctions.h"
#include "results/ResultRow.h"
#include "search/RunHost.h"

namespace vantorel::cli {

class ConsoleHost : public RunHost {
public:
    ConsoleHost(const CliOptions& options, bool interactive, const std::atomic<bool>& stop);

    void showMessage(const Message& message) override;
    bool askYesNo(const Message& question) override;
    void report(RunReport report) override;

    // Prints what is left after the run: held rows, the summary and the
    // messages it ended with.
    void finish(const RunOutcome& outcome);
    // The rows of the results list as the run left it.
    const std::vector<ResultRow>& rows() const { return rows_; }
    // Paths in a dry run's diff are given from here.
    void setStartFolder(const std::string& folder) { realStartFolder_ = realFolderOf(folder); }
    // How many files that would change a dry run's diff could not hold,
    // each named on standard error.
    std::size_t leftOutOfDiff() const { return leftOutOfDiff_; }

private:
    // What the reports the terminal shows do there.
    void passStarted(PassKind pass);
    void clearRows();
    void addRow(const FileReport& row);
    void appendExtracted(std::string_view text);
    void showChanges(const reports::Changes& changes);
    void printHeldRows();

    const CliOptions& options_;
    bool interactive_;
    const std::atomic<bool>& stop_;  // Ctrl+C while a question waits answers No
    std::unique_ptr<Printer> printer_;
    // The counting pass's rows are held back: the writing pass replaces
    // them, unless it never runs.
    bool holdRows_ = false;
    std::vector<FileReport> heldRows_;
    std::vector<ResultRow> rows_;
    std::string realStartFolder_;
    std::size_t leftOutOfDiff_ = 0;
};

}  // namespace vantorel::cli
