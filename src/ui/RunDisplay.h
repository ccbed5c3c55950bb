#pragma once
// What the window does with the events of a run, on its own thread. The run
// controller calls these in the order the run reported them.

#include <string>

#include "search/RunTypes.h"

namespace vantorel::ui {

class RunDisplay {
public:
    virtual ~RunDisplay() = default;
    virtual void runStarted() = 0;
    virtual void passStarted(PassKind pass) = 0;
    virtual void clearRows() = 0;
    // A file's section of the combined preview; returns where it starts (its
    // anchor for the row that follows), or -1 when it is not shown.
    virtual int appendPreview(const StyledText& section) = 0;
    virtual void addRow(const FileReport& row, int previewAnchor) = 0;
    virtual void appendExtracted(const std::string& text) = 0;
    virtual void setStatus(const std::string& text) = 0;
    virtual void setProgress(int percent, PassKind pass) = 0;
    // The end of a batch of events: show what was gathered.
    virtual void flush() = 0;
    virtual void runFinished(const RunOutcome& outcome, const std::string& previewPattern) = 0;
};

}  // namespace vantorel::ui
