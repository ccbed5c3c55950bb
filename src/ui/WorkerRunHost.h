#pragma once
// The run host on the worker thread: everything the run reports becomes an
// event in the queue; messages and questions wait for the window's answer.

#include "core/SearchState.h"
#include "search/RunHost.h"
#include "ui/RunEventQueue.h"

namespace vantorel::ui {

class WorkerRunHost : public RunHost {
public:
    WorkerRunHost(RunEventQueue& queue, const SearchState& state) : queue_(queue), state_(state) {}

    void showMessage(const Message& message) override;
    bool askYesNo(const Message& question) override;
    void setStatus(const std::string& text) override;
    void setProgress(int percent, PassKind pass) override;
    void runStarted(const RunRequest& request) override;
    void passStarted(PassKind pass) override;
    void clearRows() override;
    void appendPreview(const StyledText& section) override;
    void addRow(const FileReport& row) override;
    void appendExtracted(std::string_view text) override;
    void runFinished(const RunOutcome& outcome) override;

private:
    RunEventQueue& queue_;
    const SearchState& state_;
};

}  // namespace vantorel::ui
