#pragma once
// The main window: the inputs of a run, the results list above a movable
// divider and the match preview below it, the status bar, and the menus.
// Runs go to a worker thread through the run controller; the window shows
// what they report and stays responsive.

#include <QDeadlineTimer>
#include <QMainWindow>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>

#include "settings/AppSettings.h"
#include "core/MessageHost.h"
#include "core/SearchState.h"
#include "library/BatchQueue.h"
#include "library/LibraryState.h"
#include "results/ResultSort.h"
#include "search/JobSource.h"

class QAbstractButton;
class QAction;
class QLabel;
class QMenu;
class QTimer;

namespace vantorel {
class RegistryStore;
class SettingsStore;
struct RunRequest;
namespace history {
class UndoJournal;
}
}  // namespace vantorel

namespace vantorel::ui {

class BatchBar;
class ColourProgressBar;
class DesktopServices;
class DragLine;
class ExtractForm;
class GuiMessageHost;
class InputFrame;
class PopUpForm;
class PreviewFrame;
class RegExTestFrm;
class ReplacePreviewForm;
class UndoReplace;
class RepFormState;
class ResultsModel;
class ResultsView;
class RunController;
class RunDisplay;
class RunRequestBuilder;

struct RepFormOptions {
    // Where messages and questions go; by default the desktop's message boxes.
    MessageHost* messages = nullptr;
    // How pages, documents and dialogs are opened; by default the desktop's own.
    DesktopServices* desktop = nullptr;
    // The settings file; by default the user's (RegistryStore::defaultFile()).
    std::filesystem::path settingsFile;
    // The folder of the program's data files; by default the executable's.
    std::filesystem::path programFolder;
    // The most characters the combined preview holds; the sections of later
    // files are built when their rows are clicked.
    long long previewCharacters = 3'000'000;
};

class RepForm : public QMainWindow {
    Q_OBJECT
public:
    // The divider keeps the list at least this tall and the preview band at
    // least this tall (twips); when both cannot hold, see dividerRange().
    static constexpr long kListMinimum = 2000;
    static constexpr long kPreviewMinimum = 5000;

    explicit RepForm(RepFormOptions options = {}, QWidget* parent = nullptr);
    ~RepForm() override;

    // The command line's folder.
    void setStartFolder(const QString& folder);
    AppSettings& settings() noexcept { return settings_; }
    // What the extraction window holds (lines ended by CR LF).
    std::string extractedText() const;
    // The extraction window, made on first use.
    ExtractForm* extractWindow();
    const std::string& previewPattern() const;
    bool isRunning() const;
    ResultsModel* results() const noexcept { return model_; }
    // The height of the band below the buttons, holding list, divider and preview (twips).
    long bandHeight() const;
    // The height of the list above the divider (twips).
    long dividerPosition() const noexcept { return divider_; }
    void setDividerPosition(long position);
    // After the window has closed: waits for a run that is still stopping;
    // false when it has not ended by the deadline.
    bool waitForRunToEnd(QDeadlineTimer deadline);
    // The preview of the last Preview Replace, while it is open.
    ReplacePreviewForm* previewWindow() const noexcept { return previewForm_; }

public slots:
    void startFind();
    void startReplace();
    void startExtract();
    // PreviewBtn and File > Preview Replace: the counting pass of a Replace,
    // then the files it would change and their changes, nothing written.
    void startPreview();
    // File > Undo Last Replace...
    void undoLastReplace();
    void stopRun();
    // ShowLibBtn: the library with the find and replace texts; a chosen pair
    // takes their place.
    void showLibrary();
    // Tools > Regular Expression Tester, made on first use.
    void showTester();
    // Tools > Batch Commands: the batch jobs window; a job used there is queued.
    void showBatchJobs();
    // BatchCancelBtn: the typed pair is used again.
    void cancelQueue();
    // OptBtn and File > Options...
    void showOptions();
    // Ends the program as closing the window does, also while a message box
    // or dialog is open (a request to end from outside).
    void endProgram();
    // Dragging the divider by a number of pixels.
    void moveDivider(int offsetPixels);

signals:
    // A run has ended and the window is idle again.
    void runEnded();
    // Undo Last Replace has ended and the window is idle again.
    void undoEnded();
    // The preview shows what was asked of it (a page, a section, a message).
    void previewShown();

protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildWidgets();
    void buildMenus();
    void loadIntroduction();
    void startRun(RunKind kind);
    void startRequest(RunRequest request);
    void openPreview(const RunRequest& request);
    void removeOldRuns();
    // The pair typed in the window (the batch queue's steps while one is queued).
    JobSource jobSource() const;
    // Batch mode: runs take the queue's steps while BatchLbl is shown.
    bool inBatchMode() const;
    void queueBatch(BatchQueue queue);
    // Locks or frees the find and replace boxes, hides or shows the library button.
    void showBatchMode(bool on);
    void setBusy(bool busy);
    void onRunFinished(const RunOutcome& outcome);
    void showExtractWindow();
    void focusFindBox();

    void onRowCheckChanged(int row, bool checked);
    void onListLeftReleased();
    void onListKeyReleased();
    void previewSelectedRow();
    void onHeaderClicked(int column);
    void onPageRequested(int direction);
    void onPreviewAllTriggered(bool on);
    void onShowAllTriggered(bool checked);
    void openRow(int row);
    void chooseFolder();
    void showAbout();
    void showHelp();
    void openPage(const QString& target);
    void pointAtPatternError(std::size_t offset, const std::string& what);

    void layoutFrames();
    // The version and the logo beside the buttons are shown only where the
    // progress bar keeps its preferred width.
    void arrangeButtonRow(int width);
    void clampDividerOnResize();
    // The divider's least and greatest positions in the band as it is (twips).
    std::pair<long, long> dividerRange() const;

    RepFormOptions options_;
    std::unique_ptr<GuiMessageHost> ownMessages_;
    std::unique_ptr<DesktopServices> ownDesktop_;
    MessageHost* messages_ = nullptr;
    DesktopServices* desktop_ = nullptr;
    std::unique_ptr<RegistryStore> store_;
    std::unique_ptr<SettingsStore> settingsStore_;
    std::unique_ptr<RepFormState> windowState_;
    std::unique_ptr<RunRequestBuilder> requests_;
    AppSettings settings_;
    SearchState state_;
    // The library's hand-over and change flag, lent to the library and tester windows.
    LibraryState library_;
    RunDisplay* display_ = nullptr;
    RunController* runs_ = nullptr;
    // Every Replace is recorded there; Undo takes the last one back.
    std::unique_ptr<history::UndoJournal> journal_;
    UndoReplace* undo_ = nullptr;
    // The preview run going on, and the window showing the last one.
    std::unique_ptr<RunRequest> previewing_;
    ReplacePreviewForm* previewForm_ = nullptr;

    InputFrame* inputs_ = nullptr;
    QWidget* mid_ = nullptr;
    QWidget* lower_ = nullptr;
    DragLine* dragLine_ = nullptr;
    PreviewFrame* preview_ = nullptr;
    ResultsView* view_ = nullptr;
    ResultsModel* model_ = nullptr;
    QAbstractButton* findButton_ = nullptr;
    QAbstractButton* replaceButton_ = nullptr;
    QAbstractButton* previewButton_ = nullptr;
    QAbstractButton* extractButton_ = nullptr;
    QAbstractButton* stopButton_ = nullptr;
    QAbstractButton* optionsButton_ = nullptr;
    BatchBar* batchBar_ = nullptr;  // BatchLbl, BatchCancelBtn and the queue
    bool batchRun_ = false;  // the run going on, or the last one, took the queue's steps
    ColourProgressBar* progress_ = nullptr;
    QLabel* versionLabel_ = nullptr;
    QLabel* logo_ = nullptr;
    QLabel* statusPanel_ = nullptr;
    int buttonRowLeast_ = 0;  // the buttons' row without the version and the logo, the bar at its minimum
    ExtractForm* extractForm_ = nullptr;
    RegExTestFrm* tester_ = nullptr;
    PopUpForm* popUp_ = nullptr;
    QMenu* fileMenu_ = nullptr;
    QMenu* viewMenu_ = nullptr;
    QAction* showAllAction_ = nullptr;
    QAction* previewAllAction_ = nullptr;
    QAction* optionsAction_ = nullptr;
    QAction* previewAction_ = nullptr;
    QAction* undoAction_ = nullptr;
    QAction* aboutAction_ = nullptr;
    QTimer* splashTimer_ = nullptr;
    bool firstRun_ = false;

    long divider_ = 3000;  // the list's height, in twips
    SortDirections sortDirections_;
};

}  // namespace vantorel::ui
