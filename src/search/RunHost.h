#pragma once
// What a run reports to the front end that started it. Every call comes from
// the thread that runs the driver, in the order the user is to see it.

#include <string>
#include <string_view>

#include "core/MessageHost.h"
#include "search/RunTypes.h"

namespace vantorel {

class RunHost : public MessageHost {
public:
    // The first panel of the status bar.
    virtual void setStatus(const std::string& text) { (void)text; }
    // The progress bar, in the colours of the pass (writing: green on red,
    // otherwise yellow on blue); percent -1 resets it.
    virtual void setProgress(int percent, PassKind pass) { (void)percent; (void)pass; }
    // Validation passed: the window enters its busy state.
    virtual void runStarted(const RunRequest& request) { (void)request; }
    virtual void passStarted(PassKind pass) { (void)pass; }
    virtual void clearRows() {}
    // A file's section of the combined preview, just before its row.
    virtual void appendPreview(const StyledText& section) { (void)section; }
    virtual void addRow(const FileReport& row) { (void)row; }
    // Extract: the values of one file's matches, each followed by CR LF.
    virtual void appendExtracted(std::string_view text) { (void)text; }
    // The run is over (also after a refusal or a failure): the window goes idle.
    virtual void runFinished(const RunOutcome& outcome) { (void)outcome; }
};

}  // namespace vantorel
