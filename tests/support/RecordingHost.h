#pragma once
// A run host that records everything a run shows, in order, and answers
// questions from a script.

#include <functional>
#include <string>
#include <vector>

#include "search/RunHost.h"
#include "support/Answering.h"

namespace vantorel::test {

class RecordingHost : public Answering<RunHost> {
public:
    // One line per event, e.g. "message:Search Complete:No matches found in files."
    std::vector<std::string> events;
    std::vector<FileReport> rows;  // the list as it stands
    std::string extracted;
    std::vector<std::string> statuses;
    // Called on every row added (for example to press Stop).
    std::function<void(const FileReport&)> onRow;

    void showMessage(const Message& m) override {
        Answering::showMessage(m);
        events.push_back("message:" + m.title + ":" + m.text);
    }
    bool askYesNo(const Message& q) override {
        const bool yes = Answering::askYesNo(q);
        events.push_back(std::string("ask:") + q.text + (yes ? ":yes" : ":no"));
        return yes;
    }
    void report(RunReport report) override {
        std::visit(Overloaded{
                       [this](const reports::Status& status) { statuses.push_back(status.text); },
                       [this](const reports::Started&) { events.push_back("started"); },
                       [this](const reports::PassStarted& started) {
                           events.push_back(started.pass == PassKind::Writing    ? "pass:writing"
                                            : started.pass == PassKind::Counting ? "pass:counting"
                                                                                 : "pass:searching");
                       },
                       [this](const reports::RowsCleared&) {
                           rows.clear();
                           events.push_back("clear");
                       },
                       [this](const reports::PreviewSection& preview) {
                           std::string text;
                           for (const StyledRun& run : preview.section) text += run.text;
                           events.push_back("preview:" + text);
                       },
                       [this](const reports::Row& added) {
                           rows.push_back(added.row);
                           events.push_back("row:" + added.row.path + ":" + std::to_string(added.row.matches));
                           if (onRow) onRow(added.row);
                       },
                       [this](const reports::Changes& changed) { events.push_back("changes:" + changed.path); },
                       [this](const reports::Extracted& text) {
                           extracted += text.text;
                           events.push_back("extract:" + text.text);
                       },
                       [this](const reports::Finished&) { events.push_back("finished"); },
                       [](const reports::Progress&) {},
                   },
                   report);
    }
};

}  // namespace vantorel::test
