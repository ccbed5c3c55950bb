#pragma once
// Shows what a run reports, on the window's thread: the rows of the results
// list, the sections of the combined preview and where each row's starts,
// the extracted text, the status panel and the progress bar. Rows, text,
// status and progress are gathered and shown together at flush().

#include <QObject>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "settings/AppSettings.h"
#include "core/SearchState.h"
#include "search/RunReport.h"

class QLabel;

namespace vantorel::ui {

class ColourProgressBar;
class PreviewFrame;
class ResultsModel;

class RunDisplay : public QObject {
    Q_OBJECT
public:
    struct Parts {
        ResultsModel& rows;
        PreviewFrame& preview;
        ColourProgressBar& progress;
        QLabel& status;
        // Where the extracted text goes.
        std::function<void(const std::string& text)> extracted;
    };

    RunDisplay(Parts parts, const AppSettings& settings, const SearchState& state, long long previewCharacters,
               QObject* parent = nullptr);

    void show(RunReport report);
    // Shows what was gathered.
    void flush();

    // The run going on, or the last one.
    RunKind kind() const noexcept { return kind_; }
    // What the preview highlights: the last completed run's pattern.
    const std::string& previewPattern() const noexcept { return previewPattern_; }

signals:
    // Validation passed: the window goes busy.
    void started();
    // The run is over and everything it reported is shown.
    void finished(const vantorel::RunOutcome& outcome);

private:
    void start(RunKind kind);
    int appendPreview(const StyledText& section);
    void addRow(FileReport row);
    void finish(const RunOutcome& outcome);

    Parts parts_;
    const AppSettings& settings_;
    const SearchState& state_;
    const long long previewCharacters_;

    RunKind kind_ = RunKind::Find;
    PassKind pass_ = PassKind::Searching;
    std::string previewPattern_;
    // The first section shown since the last row: where the next row's starts.
    int pendingAnchor_ = -1;
    // Sections of the counting pass, for the writing pass's rows.
    std::unordered_map<std::string, int> anchorsByPath_;
    bool previewFull_ = false;
    std::vector<std::pair<FileReport, int>> pendingRows_;
    std::string pendingExtracted_;
    std::optional<std::string> pendingStatus_;
    std::optional<std::pair<int, PassKind>> pendingProgress_;
};

}  // namespace vantorel::ui
