#include "ui/WorkerRunHost.h"

namespace vantorel::ui {
namespace {

RunEvent event(RunEvent::Kind kind) {
    RunEvent e;
    e.kind = kind;
    return e;
}

}  // namespace

void WorkerRunHost::showMessage(const Message& message) {
    RunEvent e = event(RunEvent::Kind::Message);
    e.message = message;
    queue_.roundTrip(std::move(e));
}

bool WorkerRunHost::askYesNo(const Message& question) {
    RunEvent e = event(RunEvent::Kind::Question);
    e.message = question;
    return queue_.roundTrip(std::move(e));
}

void WorkerRunHost::setStatus(const std::string& text) {
    RunEvent e = event(RunEvent::Kind::Status);
    e.text = text;
    queue_.post(std::move(e));
}

void WorkerRunHost::setProgress(int percent, PassKind pass) {
    RunEvent e = event(RunEvent::Kind::Progress);
    e.percent = percent;
    e.pass = pass;
    queue_.post(std::move(e));
}

void WorkerRunHost::runStarted(const RunRequest&) { queue_.post(event(RunEvent::Kind::Started)); }

void WorkerRunHost::passStarted(PassKind pass) {
    RunEvent e = event(RunEvent::Kind::PassStarted);
    e.pass = pass;
    queue_.post(std::move(e));
}

void WorkerRunHost::clearRows() { queue_.post(event(RunEvent::Kind::ClearRows)); }

void WorkerRunHost::appendPreview(const StyledText& section) {
    RunEvent e = event(RunEvent::Kind::Preview);
    e.section = section;
    queue_.post(std::move(e));
}

void WorkerRunHost::addRow(const FileReport& row) {
    RunEvent e = event(RunEvent::Kind::Row);
    e.row = row;
    queue_.post(std::move(e));
}

void WorkerRunHost::appendExtracted(std::string_view text) {
    RunEvent e = event(RunEvent::Kind::Extracted);
    e.text = std::string(text);
    queue_.post(std::move(e));
}

void WorkerRunHost::runFinished(const RunOutcome& outcome) {
    RunEvent e = event(RunEvent::Kind::Finished);
    e.outcome = outcome;
    e.previewPattern = state_.previewPattern;  // written by this thread
    queue_.post(std::move(e));
}

}  // namespace vantorel::ui
