#include "ui/run/RunDisplay.h"

#include <QLabel>

#include "results/MatchPreview.h"
#include "ui/widgets/ColourProgressBar.h"
#include "ui/widgets/PreviewFrame.h"
#include "ui/widgets/PreviewPane.h"
#include "ui/models/ResultsModel.h"

namespace vantorel::ui {

RunDisplay::RunDisplay(Parts parts, const AppSettings& settings, const SearchState& state,
                       long long previewCharacters, QObject* parent)
    : QObject(parent),
      parts_(std::move(parts)),
      settings_(settings),
      state_(state),
      previewCharacters_(previewCharacters) {}

void RunDisplay::show(RunReport report) {
    std::visit(Overloaded{
                   [this](const reports::Started& started) { start(started.kind); },
                   [this](const reports::PassStarted& started) { pass_ = started.pass; },
                   // Status and progress change with every file: only the latest is shown.
                   [this](reports::Status& status) { pendingStatus_ = std::move(status.text); },
                   [this](const reports::Progress& progress) {
                       pendingProgress_ = std::make_pair(progress.percent, progress.pass);
                   },
                   [this](const reports::RowsCleared&) {
                       pendingRows_.clear();
                       pendingAnchor_ = -1;
                       parts_.rows.clear();
                   },
                   [this](const reports::PreviewSection& preview) {
                       const int anchor = appendPreview(preview.section);
                       if (pendingAnchor_ < 0) pendingAnchor_ = anchor;
                   },
                   [this](reports::Row& row) { addRow(std::move(row.row)); },
                   [](const reports::Changes&) {},
                   [this](const reports::Extracted& extracted) { pendingExtracted_ += extracted.text; },
                   [this](const reports::Finished& finished) { finish(finished.outcome); },
               },
               report);
}

void RunDisplay::start(RunKind kind) {
    kind_ = kind;
    parts_.progress.setProgress(-1, PassKind::Searching);
    parts_.preview.startRun(settings_.PreviewAll);
    parts_.preview.pane()->setPreviewFont(QString::fromStdString(settings_.PreviewFontName),
                                          static_cast<int>(settings_.PreviewFontSize));
    anchorsByPath_.clear();
    pendingAnchor_ = -1;
    previewFull_ = false;
    emit started();
}

int RunDisplay::appendPreview(const StyledText& section) {
    // After Stop the rows still due are listed at once; their sections are
    // built when the rows are clicked.
    if (section.empty() || previewFull_ || state_.stopRequested) return -1;
    PreviewPane* pane = parts_.preview.pane();
    if (pane->characterCount() >= previewCharacters_) {
        previewFull_ = true;
        pane->appendStyled(MatchPreview::fullNotice());
        return -1;
    }
    return pane->appendStyled(section);
}

void RunDisplay::addRow(FileReport row) {
    int anchor = std::exchange(pendingAnchor_, -1);
    if (anchor >= 0) {
        if (pass_ != PassKind::Writing) anchorsByPath_[row.path] = anchor;
    } else if (pass_ == PassKind::Writing) {
        // The writing pass builds no sections: its rows lead to the counting pass's.
        const auto found = anchorsByPath_.find(row.path);
        if (found != anchorsByPath_.end()) anchor = found->second;
    }
    pendingRows_.emplace_back(std::move(row), anchor);
}

void RunDisplay::flush() {
    if (pendingStatus_) parts_.status.setText(displayText(*pendingStatus_));
    if (pendingProgress_) parts_.progress.setProgress(pendingProgress_->first, pendingProgress_->second);
    pendingStatus_.reset();
    pendingProgress_.reset();
    if (!pendingExtracted_.empty()) {
        parts_.extracted(pendingExtracted_);
        pendingExtracted_.clear();
    }
    if (pendingRows_.empty()) return;
    std::vector<ResultsModel::Entry> entries;
    entries.reserve(pendingRows_.size());
    for (auto& [report, anchor] : pendingRows_) entries.push_back({ResultRow::fromReport(report), anchor});
    pendingRows_.clear();
    parts_.rows.append(std::move(entries));
}

void RunDisplay::finish(const RunOutcome& outcome) {
    flush();
    if (outcome.result != RunResult::Refused) {
        // A run that failed leaves the highlighting as it was.
        if (outcome.result == RunResult::Completed) previewPattern_ = outcome.previewPattern;
        parts_.progress.setProgress(-1, PassKind::Searching);
    }
    emit finished(outcome);
}

}  // namespace vantorel::ui
