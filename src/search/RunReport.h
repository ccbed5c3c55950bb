#pragma once
// What a run shows besides its messages and questions: one small struct per
// kind of report, gathered in one variant. The driver reports them in the
// order the user is to see them; a front end visits them.

#include <string>
#include <variant>

#include "core/StyledText.h"
#include "search/FileChanges.h"
#include "core/RunTypes.h"

namespace vantorel::reports {

// Validation passed: the window enters its busy state.
struct Started {
    RunKind kind = RunKind::Find;
};
struct PassStarted {
    PassKind pass = PassKind::Searching;
};
// The first panel of the status bar.
struct Status {
    std::string text;
};
// The progress bar, in the colours of the pass (writing: green on red,
// otherwise yellow on blue); percent -1 resets it.
struct Progress {
    int percent = -1;
    PassKind pass = PassKind::Searching;
};
struct RowsCleared {};
// A file's section of the combined preview, just before its row.
struct PreviewSection {
    StyledText section;
};
struct Row {
    FileReport row;
};
// A dry run: what the Replace would make of a file, just before its row.
struct Changes {
    std::string path;
    FileChanges changes;
};
// Extract: the values of one file's matches, each followed by CR LF.
struct Extracted {
    std::string text;
};
// The run is over (also after a refusal or a failure): the window goes idle.
struct Finished {
    RunOutcome outcome;
};

}  // namespace vantorel::reports

namespace vantorel {

using RunReport = std::variant<reports::Started, reports::PassStarted, reports::Status, reports::Progress,
                               reports::RowsCleared, reports::PreviewSection, reports::Row, reports::Changes,
                               reports::Extracted, reports::Finished>;

// A visitor made of lambdas: std::visit(Overloaded{[](const A&) {...}, ...}, report).
template <class... Handlers>
struct Overloaded : Handlers... {
    using Handlers::operator()...;
};

}  // namespace vantorel
