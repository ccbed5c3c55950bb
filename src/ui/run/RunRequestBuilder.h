#pragma once
// What a run takes from the main window: its jobs from a source (the pair
// typed in the window, or a batch queue), the start folder, the filter and
// the option boxes from the inputs, the rest from the settings and, for a
// run over the marked files, from the results list.

#include "settings/AppSettings.h"
#include "results/MatchPreview.h"
#include "search/JobSource.h"
#include "core/RunTypes.h"

namespace vantorel::ui {

class InputFrame;
class ResultsModel;

class RunRequestBuilder {
public:
    RunRequestBuilder(const InputFrame& inputs, const AppSettings& settings, const ResultsModel& rows)
        : inputs_(inputs), settings_(settings), rows_(rows) {}

    RunRequest build(RunKind kind, JobSource jobs) const;
    // The pair in FindText and RepText.
    JobSource typedPair() const;
    PreviewSettings previewSettings() const;
    bool ignoreCase() const;

private:
    const InputFrame& inputs_;
    const AppSettings& settings_;
    const ResultsModel& rows_;
};

}  // namespace vantorel::ui
