#pragma once
// The preview band (PrevFrame): its heading line PreviewLbl, the paging
// buttons LineBackButton and LineFwdButton, and the pane RTB1. Pages are
// built by the engine on a pool thread; only the newest request is shown.

#include <QWidget>
#include <cstdint>
#include <optional>
#include <string>

#include "core/StyledText.h"
#include "results/MatchPreview.h"

class QLabel;
class QToolButton;

namespace vantorel::ui {

class PreviewPane;

class PreviewFrame : public QWidget {
    Q_OBJECT
public:
    explicit PreviewFrame(QWidget* parent = nullptr);

    // What the pane shows: one of these at a time.
    enum class Content { Introduction, Nothing, Combined, StaleNotice, FilePage };

    PreviewPane* pane() const noexcept { return pane_; }
    QLabel* label() const noexcept { return label_; }
    Content content() const noexcept { return content_; }

    // The start-up text.
    void showIntroduction(const StyledText& text);
    // A run begins: the pane is emptied; with `combined` the run's sections
    // follow, one per file, and rows scroll to them.
    void startRun(bool combined);
    // Combined mode switched on: the sections shown are gone until the next run.
    void showStaleNotice();
    // Nothing to show: the pane and its heading are emptied.
    void clearAll();

    // Single-file mode: shows hits `first` to first + HitsPerPage - 1 of the file.
    void showFilePage(const std::string& path, const std::string& pattern, bool ignoreCase,
                      const PreviewSettings& settings, std::uint64_t first);
    // Pages the file shown last forward (+1) or back (-1).
    void turnPage(int direction);
    // Combined mode: a file whose section the run left out is built now and
    // shown at the end of the pane, in place of the one shown before.
    void showSectionOnDemand(const std::string& path, const std::string& pattern, bool ignoreCase,
                             const PreviewSettings& settings);
    std::uint64_t pageFirst() const noexcept { return request_ ? request_->first : 1; }

signals:
    // A paging button was pressed; the window decides whether paging applies.
    void pageRequested(int direction);
    // A page or a section is on screen.
    void shown();
    // The file could not be read or shown; the pane was left as it was.
    void unableToShow();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    // Empties the heading, disables paging and forgets pending pages.
    void reset();

    struct Request {
        std::string path;
        std::string pattern;
        bool ignoreCase = true;
        PreviewSettings settings;
        std::uint64_t first = 1;
    };
    void build(const Request& request);
    void updateCaption();

    QLabel* label_;
    QToolButton* back_;
    QToolButton* forward_;
    PreviewPane* pane_;
    Content content_ = Content::Nothing;
    std::optional<Request> request_;
    std::uint64_t generation_ = 0;
    int onDemandBlock_ = -1;
    // The heading: " Results " first "-" last ": " path, the path shortened to fit.
    bool hasCaption_ = false;
    std::uint64_t captionFirst_ = 0;
    std::uint64_t captionLast_ = 0;
    std::string captionPath_;
};

}  // namespace vantorel::ui
