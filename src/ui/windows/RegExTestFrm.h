#pragma once
// The regular expression tester: a sample text, an expression and a
// replacement; the matches listed with their count, marked in the sample,
// with the groups of the chosen one in a table; and the sample after
// replacement. The work runs off the window's thread, the newest edit
// superseding older ones, so the window stays usable whatever is typed.

#include <QWidget>
#include <filesystem>
#include <memory>
#include <vector>

#include "library/LibraryState.h"
#include "library/RegexTester.h"
#include "ui/windows/TesterRunner.h"

class QAbstractButton;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QTableWidget;
class QTimer;

namespace vantorel {
class MessageHost;
}

namespace vantorel::ui {

class DesktopServices;
class GuiMessageHost;
class PatternEdit;
class PreviewPane;

class RegExTestFrm : public QWidget {
    Q_OBJECT
public:
    // `messages` and `desktop` null: the window's own message boxes and the
    // desktop's own dialogs.
    RegExTestFrm(LibraryState& library, const std::filesystem::path& programFolder, MessageHost* messages = nullptr,
                 DesktopServices* desktop = nullptr, QWidget* parent = nullptr);
    ~RegExTestFrm() override;

    // Replaces the sample (its lines taken as ending in LF).
    void setSample(const QString& text);
    // The match whose groups are shown (0 for the first), or -1.
    int selectedMatch() const noexcept { return selected_; }
    void selectMatch(int index);
    // True while an update is being worked on.
    bool isWorking() const noexcept { return runner_->busy(); }

    // Characters of sample above which edits wait for a pause in typing
    // before the work starts again.
    static constexpr int kLargeSample = 1'000'000;

public slots:
    void refresh();      // UpdateBtn: list the matches, then preview the replacement
    void loadSample();   // LoadTxt
    void showLibrary();  // ShowLibBtn

protected:
    void changeEvent(QEvent* event) override;

signals:
    // The results of an update are on show.
    void updated();

private:
    void buildWidgets();
    void onEdited(TesterSteps steps);
    void schedule(TesterSteps steps, bool pause);
    void startWork();
    void showResult(std::shared_ptr<TesterRunner::Result> result);
    void showMatches(const MatchList& list);
    void showProblem(const TesterProblem& problem);
    void clearMatchDetails();
    void markMatches();
    void showGroups();
    void onListingCaretMoved();
    void onSampleCaretMoved();
    QString groupText(const SampleSpan& span) const;

    LibraryState& library_;
    std::filesystem::path programFolder_;
    MessageHost* injectedMessages_ = nullptr;
    std::unique_ptr<GuiMessageHost> ownMessages_;
    std::unique_ptr<DesktopServices> ownDesktop_;
    MessageHost* messages_ = nullptr;
    DesktopServices* desktop_ = nullptr;

    QPlainTextEdit* sample_ = nullptr;      // InText
    PatternEdit* pattern_ = nullptr;        // FText
    QLineEdit* replacement_ = nullptr;      // RText
    QCheckBox* caseSensitive_ = nullptr;    // CaseChk
    QCheckBox* dynamic_ = nullptr;          // DynUpdChk
    PreviewPane* matchList_ = nullptr;      // FRes
    PreviewPane* replaced_ = nullptr;       // RRes
    QLabel* count_ = nullptr;               // foundlbl
    QLabel* time_ = nullptr;
    QLabel* reason_ = nullptr;
    QLabel* matchCaption_ = nullptr;
    QTableWidget* groups_ = nullptr;
    QAbstractButton* loadButton_ = nullptr;  // LoadTxt

    TesterRunner* runner_ = nullptr;
    QTimer* updateTimer_ = nullptr;
    QTimer* busyTimer_ = nullptr;
    TesterSteps pending_;
    // The sample as the work sees it, made again only after the sample changes.
    std::shared_ptr<const TesterSample> sampleText_;
    bool crlf_ = false;  // the loaded sample's lines end in CR LF

    // What is on show.
    std::shared_ptr<const TesterRunner::Result> shown_;
    std::vector<int> listingStarts_;  // where each listed match starts in the match list
    int selected_ = -1;
    bool showing_ = false;
};

}  // namespace vantorel::ui
