#include "ui/windows/RepForm.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QDialog>
#include <QDir>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QScreen>
#include <QShortcut>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>
#include <fstream>
#include <sstream>

#include "core/FrontEndMessages.h"
#include "core/ProgramFolder.h"
#include "settings/RegistryStore.h"
#include "settings/SettingsStore.h"
#include "history/UndoJournal.h"
#include "results/ResultRow.h"
#include "results/RtfReader.h"
#include "search/RefusedPattern.h"
#include "ui/windows/BatchBar.h"
#include "ui/windows/BatchFrm.h"
#include "ui/widgets/ColourProgressBar.h"
#include "ui/widgets/CommandButton.h"
#include "ui/platform/DesktopServices.h"
#include "ui/widgets/DragLine.h"
#include "ui/windows/ExtractForm.h"
#include "ui/platform/FileDialog.h"
#include "ui/widgets/FolderDrop.h"
#include "ui/platform/GuiMessageHost.h"
#include "ui/widgets/HistoryCombo.h"
#include "ui/widgets/InputFrame.h"
#include "ui/widgets/Logo.h"
#include "ui/widgets/PatternEdit.h"
#include "ui/windows/PopUpForm.h"
#include "ui/widgets/PreviewFrame.h"
#include "ui/widgets/PreviewPane.h"
#include "ui/platform/ReadableText.h"
#include "ui/windows/RegExLibFrm.h"
#include "ui/windows/RegExTestFrm.h"
#include "ui/windows/RepFormState.h"
#include "ui/windows/ReplacePreviewForm.h"
#include "ui/run/ResultExport.h"
#include "ui/models/ResultsModel.h"
#include "ui/models/ResultsView.h"
#include "ui/run/RunController.h"
#include "ui/run/RunDisplay.h"
#include "ui/run/RunRequestBuilder.h"
#include "ui/platform/ScreenFit.h"
#include "ui/platform/Twips.h"
#include "ui/windows/UndoReplace.h"
#include "ui/widgets/WholeTextLabel.h"
#include "ui/windows/frmAbout.h"
#include "ui/windows/frmOptions.h"

namespace vantorel::ui {
namespace {

constexpr long kColumnWidths[] = {3000, 2500, 1000, 1000, 2000};

QString versionText() { return QStringLiteral("Version ") + QStringLiteral(VANTOREL_VERSION); }

}  // namespace

RepForm::RepForm(RepFormOptions options, QWidget* parent) : QMainWindow(parent), options_(std::move(options)) {
    setObjectName(QStringLiteral("RepForm"));
    keepPaletteReadable();
    if (options_.messages) {
        messages_ = options_.messages;
    } else {
        ownMessages_ = std::make_unique<GuiMessageHost>(this);
        messages_ = ownMessages_.get();
    }
    if (options_.desktop) {
        desktop_ = options_.desktop;
    } else {
        ownDesktop_ = std::make_unique<SystemDesktop>();
        desktop_ = ownDesktop_.get();
    }
    if (options_.programFolder.empty())
        options_.programFolder = QCoreApplication::applicationDirPath().toStdString();
    buildWidgets();
    buildMenus();
    display_ = new RunDisplay(
        RunDisplay::Parts{*model_, *preview_, *progress_, *statusPanel_,
                          [this](const std::string& text) { extractWindow()->appendText(text); }},
        settings_, state_, options_.previewCharacters, this);
    connect(display_, &RunDisplay::started, this, [this] { setBusy(true); });
    connect(display_, &RunDisplay::finished, this, &RepForm::onRunFinished);
    runs_ = new RunController(*display_, *messages_, state_, this);
    requests_ = std::make_unique<RunRequestBuilder>(*inputs_, settings_, *model_);
    setWindowTitle(QString::fromUtf8(kProgramTitle));
    setWindowIcon(productLogo(64));
    versionLabel_->setText(versionText());
    // The designed size; the settings put back the user's own. The smallest
    // size still shows every input, the list's minimum and some preview.
    resize(twipsToPixelsX(13500, this), twipsToPixelsY(10500, this));
    versionLabel_->hide();
    logo_->hide();
    buttonRowLeast_ = mid_->minimumSizeHint().width();
    versionLabel_->show();
    logo_->show();
    setMinimumSize(std::max(inputs_->minimumSizeHint().width(), buttonRowLeast_),
                   menuBar()->sizeHint().height() + inputs_->sizeHint().height() + mid_->sizeHint().height() +
                       twipsToPixelsY(kListMinimum + 750, this) + dragLine_->sizeHint().height() +
                       statusBar()->sizeHint().height());

    const std::filesystem::path file =
        options_.settingsFile.empty() ? RegistryStore::defaultFile() : options_.settingsFile;
    store_ = std::make_unique<RegistryStore>(file, messages_);
    settingsStore_ = std::make_unique<SettingsStore>(*store_, *messages_);
    windowState_ = std::make_unique<RepFormState>(*this, *inputs_, *preview_->pane(), [this] { firstRun_ = true; });
    settingsStore_->LoadSettings(settings_, *windowState_);
    journal_ = std::make_unique<history::UndoJournal>(history::UndoJournal::defaultFolder(),
                                                      static_cast<unsigned>(settings_.UndoRuns));
    undo_ = new UndoReplace(*journal_, *messages_, this);
    connect(undo_, &UndoReplace::finished, this, [this](const QString& summary) {
        setBusy(false);
        undoAction_->setEnabled(undo_->available());
        statusPanel_->setText(summary);
        emit undoEnded();
    });
    undoAction_->setEnabled(undo_->available());

    for (int column = 0; column < 5; ++column)
        view_->header()->resizeSection(column, twipsToPixelsX(kColumnWidths[column], this));
    loadIntroduction();
    layoutFrames();
    previewAllAction_->setChecked(settings_.PreviewAll);
    showAllAction_->setChecked(!settings_.ShowAll);
}

RepForm::~RepForm() {
    // The worker uses the run state: it ends before the state goes.
    runs_->abandon();
    runs_->waitForEnd();
    delete undo_;  // waits for an Undo going on, which uses the journal
    undo_ = nullptr;
}

void RepForm::loadIntroduction() {
    const std::filesystem::path file = findProgramFile(options_.programFolder, "intro.rtf");
    if (file.empty()) return;  // a missing introduction leaves the pane empty
    std::ifstream in(file, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    try {
        preview_->showIntroduction(RtfReader::read(bytes.str()));
    } catch (const std::exception&) {
        // Not readable as RTF: the pane stays empty.
    }
}

void RepForm::setStartFolder(const QString& folder) {
    QString text = folder;
    text.remove(QLatin1Char('"'));
    if (text.isEmpty()) return;
    if (QDir::isRelativePath(text)) text = QDir::cleanPath(QDir::current().absoluteFilePath(text));
    inputs_->box(HistoryBox::Folder)->setEditText(text);
}

bool RepForm::isRunning() const { return runs_->isRunning(); }

void RepForm::setDividerPosition(long position) {
    divider_ = position;
    layoutFrames();
}

// ---- Starting and stopping runs ------------------------------------------

void RepForm::startFind() { startRun(RunKind::Find); }
void RepForm::startReplace() { startRun(RunKind::Replace); }
void RepForm::startExtract() { startRun(RunKind::Extract); }
void RepForm::stopRun() { runs_->stop(); }

JobSource RepForm::jobSource() const {
    return inBatchMode() ? JobSource::batchSteps(batchBar_->queue().steps) : requests_->typedPair();
}

void RepForm::startRun(RunKind kind) {
    if (isRunning() || undo_->busy()) return;
    RunRequest request = requests_->build(kind, jobSource());
    batchRun_ = request.batch;
    if (kind == RunKind::Extract && settings_.ClearExtractText) extractWindow()->clearText();
    startRequest(std::move(request));
}

void RepForm::startRequest(RunRequest request) {
    journal_->setKeepRuns(static_cast<unsigned>(settings_.UndoRuns));
    request.journal = journal_.get();
    statusPanel_->clear();  // the run says what it does
    inputs_->markedBox()->setEnabled(false);
    runs_->start(std::move(request));
}

void RepForm::startPreview() {
    if (isRunning() || undo_->busy()) return;
    RunRequest request = requests_->build(RunKind::Replace, jobSource());
    request.dryRun = true;
    previewing_ = std::make_unique<RunRequest>(request);
    startRequest(std::move(request));
}

void RepForm::openPreview(const RunRequest& request) {
    std::vector<TickedFilesModel::File> files;
    for (int row = 0; row < model_->rowCount(); ++row)
        if (const std::uint64_t matches = model_->rowAt(row).matches; matches > 0)
            files.push_back({model_->pathAt(row), matches, true});
    if (files.empty()) return;
    delete previewForm_;
    previewForm_ = new ReplacePreviewForm(request, std::move(files), this);
    previewForm_->setAttribute(Qt::WA_DeleteOnClose);
    connect(previewForm_, &QObject::destroyed, this, [this] { previewForm_ = nullptr; });
    connect(previewForm_, &ReplacePreviewForm::replaceRequested, this, [this](const RunRequest& ticked) {
        if (isRunning() || undo_->busy()) return;
        previewForm_->close();
        startRequest(ticked);
    });
    previewForm_->show();
}

void RepForm::undoLastReplace() {
    if (isRunning() || undo_->busy()) return;
    if (undo_->start()) {
        statusPanel_->clear();
        setBusy(true);
        stopButton_->setEnabled(false);  // an Undo goes to its end
    } else {
        undoAction_->setEnabled(undo_->available());
    }
}

// The runs the journal no longer keeps go with their kept contents, away from the window's thread.
void RepForm::removeOldRuns() {
    if (!journal_->hasSetAside()) return;
    (void)QtConcurrent::run([folder = journal_->folder()] { history::UndoJournal(folder).removeSetAside(); });
}

void RepForm::setBusy(bool busy) {
    stopButton_->setEnabled(busy);
    findButton_->setEnabled(!busy);
    replaceButton_->setEnabled(!busy);
    previewButton_->setEnabled(!busy);
    optionsButton_->setEnabled(!busy);
    optionsAction_->setEnabled(!busy);  // its shortcut too
    inputs_->libraryButton()->setEnabled(!busy);
    extractButton_->setEnabled(!busy && inputs_->option(OptionBox::RegularExpression)->isChecked());
    fileMenu_->menuAction()->setEnabled(!busy);
    viewMenu_->menuAction()->setEnabled(!busy);
    aboutAction_->setEnabled(!busy);
    preview_->pane()->setEnabled(!busy);
    view_->setEnabled(!busy);
    if (busy) setCursor(Qt::BusyCursor);
    else unsetCursor();
}

// ---- The extraction window and the end of a run ---------------------------

ExtractForm* RepForm::extractWindow() {
    if (!extractForm_) extractForm_ = new ExtractForm(*desktop_, *messages_, this);
    return extractForm_;
}

std::string RepForm::extractedText() const { return extractForm_ ? extractForm_->text() : std::string(); }

void RepForm::showExtractWindow() {
    ExtractForm* window = extractWindow();
    if (!window->isVisible()) {
        // Beside the main window, where the screen has room.
        QPoint place = frameGeometry().topRight() + QPoint(8, 0);
        if (const QScreen* screen = this->screen()) {
            const QRect room = screen->availableGeometry();
            if (place.x() + window->width() > room.right())
                place.setX(std::max(room.left(), room.right() - window->width()));
        }
        window->move(place);
    }
    window->show();
    window->raise();
}

const std::string& RepForm::previewPattern() const { return display_->previewPattern(); }

void RepForm::onRunFinished(const RunOutcome& outcome) {
    setBusy(false);
    undoAction_->setEnabled(undo_->available());
    removeOldRuns();
    // The library button comes back after every run that got going, in batch
    // mode too, while the find and replace boxes stay locked until the queue
    // is cancelled.
    if (outcome.result != RunResult::Refused) inputs_->libraryButton()->show();
    inputs_->applyMarkedBox(markedBoxFor(model_->anyChecked()));
    if (outcome.patternError && batchRun_)  // a step of the queue, not the find box
        statusPanel_->setText(QString::fromStdString(
            invalidPatternLine(*outcome.patternError, outcome.invalidJob, batchRun_,
                               inputs_->option(OptionBox::RegularExpression)->isChecked())));
    else if (outcome.patternError)
        pointAtPatternError(outcome.patternError->offset(), outcome.patternError->what());
    if (outcome.result == RunResult::Completed) {
        const RunKind kind = display_->kind();
        // A batch run's texts are the queue's, not the boxes'.
        for (HistoryBox box : {HistoryBox::Find, HistoryBox::Replace, HistoryBox::Folder, HistoryBox::Filter})
            if ((box != HistoryBox::Replace || kind == RunKind::Replace) &&
                (!batchRun_ || box == HistoryBox::Folder || box == HistoryBox::Filter))
                inputs_->box(box)->rememberText();
        if (kind == RunKind::Extract && outcome.totalMatches > 0) showExtractWindow();
        if (previewing_ && !outcome.stopped) openPreview(*previewing_);
        // One file at a time: show the first file's matches straight away.
        if (!settings_.PreviewAll && model_->rowCount() > 0) {
            view_->setCurrentIndex(model_->index(0, 0));
            previewSelectedRow();
        } else if (settings_.PreviewAll) {
            preview_->pane()->moveCursor(QTextCursor::Start);
        }
    }
    previewing_.reset();
    emit runEnded();
}

void RepForm::pointAtPatternError(std::size_t offset, const std::string& what) {
    QLineEdit* edit = inputs_->box(HistoryBox::Find)->lineEdit();
    const QString text = edit->text();
    const int position = utf16Position(text, offset);
    edit->setFocus();
    edit->setSelection(position, position < text.size() ? 1 : 0);
    statusPanel_->setText(QString::fromStdString(what));
}

// ---- The results list and the preview ------------------------------------

void RepForm::onRowCheckChanged(int, bool checked) {
    inputs_->applyMarkedBox(checked ? markedBoxAfterMarking() : markedBoxFor(model_->anyChecked()));
}

void RepForm::previewSelectedRow() {
    const int row = view_->selectedRow();
    if (row < 0) return;
    preview_->showFilePage(model_->pathAt(row), previewPattern(), requests_->ignoreCase(),
                           requests_->previewSettings(), 1);
}

void RepForm::onListLeftReleased() {
    const int row = view_->selectedRow();
    if (row < 0) return;
    if (!settings_.PreviewAll) {
        previewSelectedRow();
        return;
    }
    // Only the run's own sections lead anywhere; the notice shown after
    // switching combined mode on stays until the next run.
    if (model_->rowAt(row).matches == 0 || preview_->content() != PreviewFrame::Content::Combined) return;
    const int anchor = model_->previewAnchorAt(row);
    if (anchor >= 0) {
        preview_->pane()->scrollToBlock(anchor);
        emit previewShown();
    } else {
        preview_->showSectionOnDemand(model_->pathAt(row), previewPattern(), requests_->ignoreCase(),
                                      requests_->previewSettings());
    }
}

void RepForm::onListKeyReleased() {
    if (!settings_.PreviewAll) previewSelectedRow();
}

void RepForm::onHeaderClicked(int column) {
    try {
        const bool descending = sortDirections_.toggle(static_cast<std::size_t>(column));
        model_->sortByColumn(column, descending);
        view_->header()->setSortIndicator(column, descending ? Qt::DescendingOrder : Qt::AscendingOrder);
        view_->header()->setSortIndicatorShown(true);
    } catch (const std::exception&) {
        messages_->showMessage(errorSortingList());
    }
}

void RepForm::onPageRequested(int direction) {
    if (model_->rowCount() == 0 || settings_.PreviewAll) return;
    preview_->turnPage(direction);
}

void RepForm::onPreviewAllTriggered(bool on) {
    settings_.PreviewAll = on;
    previewAllAction_->setChecked(on);
    if (on) {
        preview_->showStaleNotice();
        preview_->pane()->setPreviewFont(QString::fromStdString(settings_.PreviewFontName),
                                         static_cast<int>(settings_.PreviewFontSize));
        emit previewShown();
    } else if (view_->selectedRow() >= 0) {
        previewSelectedRow();
    } else if (preview_->content() != PreviewFrame::Content::Introduction) {
        preview_->clearAll();  // no file to show
        emit previewShown();
    }
}

void RepForm::onShowAllTriggered(bool checked) {
    // The check mark stands for listing only files with matches.
    settings_.ShowAll = !checked;
}

void RepForm::openRow(int row) {
    if (row < 0 || row >= model_->rowCount()) return;
    // Opened with its default program; a failure is not reported.
    desktop_->openUrl(QUrl::fromLocalFile(QString::fromStdString(model_->pathAt(row))), this, {});
}

void RepForm::chooseFolder() {
    try {
        settings_.LastFolder = beforeNul(QString::fromStdString(settings_.LastFolder)).toStdString();
        if (settings_.LastFolder.empty()) settings_.LastFolder = "/";
        QString start = QString::fromStdString(settings_.LastFolder);
        if (start == QLatin1String("\\")) start = QDir::homePath();  // the first run's folder
        const QString chosen = BrowseForFolder(*desktop_, this, QStringLiteral("Select Folder:"), start);
        if (chosen.isEmpty()) return;
        inputs_->box(HistoryBox::Folder)->setEditText(chosen);
        settings_.LastFolder = chosen.toStdString();
    } catch (const std::exception&) {
        messages_->showMessage(errorSelectingFolder());
    }
}

void RepForm::focusFindBox() {
    QLineEdit* find = inputs_->box(HistoryBox::Find)->lineEdit();
    find->setFocus(Qt::ShortcutFocusReason);
    find->selectAll();
}

// ---- The library, the tester and the options --------------------------------

void RepForm::showLibrary() {
    if (isRunning()) return;
    HistoryCombo* find = inputs_->box(HistoryBox::Find);
    HistoryCombo* replace = inputs_->box(HistoryBox::Replace);
    // Without a message host of the window's own, the library's messages sit over the library.
    if (const auto chosen = openLibrary(this, library_, options_.programFolder, options_.messages,
                                        find->currentText(), replace->currentText())) {
        find->setText(chosen->pattern);
        replace->setText(chosen->replacement);
    }
}

void RepForm::showTester() {
    if (!tester_)
        tester_ = new RegExTestFrm(library_, options_.programFolder, options_.messages, desktop_, this);
    tester_->show();
    tester_->raise();
    tester_->activateWindow();
}

void RepForm::showBatchJobs() {
    // Without a message host of the window's own, the batch window's messages sit over it.
    if (auto queue = openBatchJobs(this, library_, options_.programFolder, options_.messages))
        queueBatch(std::move(*queue));
}

bool RepForm::inBatchMode() const { return batchBar_->queued(); }

void RepForm::queueBatch(BatchQueue queue) {
    statusPanel_->clear();  // what the last run said was about the steps used then
    batchBar_->showQueue(std::move(queue));
    showBatchMode(true);
}

void RepForm::cancelQueue() {
    statusPanel_->clear();
    batchBar_->clear();
    showBatchMode(false);
}

void RepForm::showBatchMode(bool on) {
    inputs_->box(HistoryBox::Find)->setEnabled(!on);
    inputs_->box(HistoryBox::Replace)->setEnabled(!on);
    inputs_->libraryButton()->setHidden(on);
}

void RepForm::showOptions() {
    if (isRunning()) return;
    statusPanel_->clear();
    auto* dialog = new frmOptions(settings_, *messages_, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &frmOptions::previewUpdateRequested, this, [this] {
        // The preview shows one file at a time: that file again, in the font and limits applied.
        preview_->pane()->setPreviewFont(QString::fromStdString(settings_.PreviewFontName),
                                         static_cast<int>(settings_.PreviewFontSize));
        previewSelectedRow();
    });
    connect(dialog, &frmOptions::historyCleared, this, [this](HistoryBox box) { inputs_->box(box)->setItems({}); });
    dialog->open();
}

void RepForm::showAbout() {
    auto* about = new frmAbout(*desktop_, *messages_, this);
    about->setAttribute(Qt::WA_DeleteOnClose);
    about->open();
}

void RepForm::openPage(const QString& target) { OpenPage(*desktop_, *messages_, target, this); }

void RepForm::showHelp() {
    const std::filesystem::path readme = findProgramFile(options_.programFolder, "readme.html");
    const std::filesystem::path shown = readme.empty() ? options_.programFolder / "readme.html" : readme;
    openPage(QString::fromStdString(shown.string()));
}

// ---- Window events and layout --------------------------------------------

void RepForm::closeEvent(QCloseEvent* event) {
    // A run still going on is stopped and shows nothing more; the window does
    // not wait for it (see waitForRunToEnd).
    runs_->abandon();
    settingsStore_->SaveSettings(settings_, *windowState_);
    if (extractForm_) {
        // Exiting: the extraction window closes instead of hiding.
        extractForm_->setExiting(true);
        extractForm_->close();
    }
    if (tester_) tester_->close();
    // Nothing more is shown once the window is gone (a preview still being built, say).
    if (ownMessages_) ownMessages_->silence();
    event->accept();
}

void RepForm::endProgram() {
    // An open message box or dialog is answered No or cancelled first, so
    // that no window is left behind.
    for (int i = 0; i < 16; ++i) {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal) break;
        if (auto* dialog = qobject_cast<QDialog*>(modal)) dialog->reject();
        else modal->close();
    }
    close();
}

bool RepForm::waitForRunToEnd(QDeadlineTimer deadline) { return runs_->waitForEnd(deadline); }

void RepForm::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    // A window saved on a screen that is gone, or larger than the screen it
    // opens on (a small screen, a scale factor of 2), is brought onto it.
    if (!event->spontaneous() && !(windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen))) fitToScreen(this);
    if (firstRun_) {
        firstRun_ = false;
        splashTimer_->start();
    }
}

bool RepForm::eventFilter(QObject* watched, QEvent* event) {
    if (watched == centralWidget() && event->type() == QEvent::Resize) {
        clampDividerOnResize();
        layoutFrames();
    } else if (watched == logo_ && event->type() == QEvent::MouseButtonRelease) {
        openPage(QString::fromUtf8(kMakerPage));
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

long RepForm::bandHeight() const {
    const int top = inputs_->sizeHint().height() + mid_->sizeHint().height();
    return pixelsToTwipsY(std::max(0, centralWidget()->height() - top), this);
}

std::pair<long, long> RepForm::dividerRange() const {
    const long inner = bandHeight();
    // The preview keeps its minimum, or as much of it as the list's minimum
    // leaves; a band too low for both (a small screen, a scale factor of 2)
    // keeps half for the preview all the same, so that it shows more than a
    // line or two.
    const long preview = std::max(std::min(kPreviewMinimum, inner - kListMinimum), inner / 2);
    const long most = inner - preview;
    return {std::min(kListMinimum, most), most};
}

void RepForm::moveDivider(int offsetPixels) {
    const auto [least, most] = dividerRange();
    divider_ = std::clamp(divider_ + pixelsToTwipsY(offsetPixels, this), least, most);
    layoutFrames();
}

void RepForm::clampDividerOnResize() {
    const auto [least, most] = dividerRange();
    divider_ = std::clamp(divider_, least, most);
}

void RepForm::arrangeButtonRow(int width) {
    // What the progress bar, the logo and the version can share once the
    // buttons and the bar's minimum have their room.
    const int room = width - buttonRowLeast_ + progress_->minimumWidth();
    const int spacing = mid_->layout()->spacing();
    const int bar = progress_->sizeHint().width();
    const bool logo = room >= bar + spacing + logo_->sizeHint().width();
    const bool version = logo && room >= bar + 2 * spacing + logo_->sizeHint().width() + versionLabel_->sizeHint().width();
    if (logo_->isHidden() == logo) logo_->setVisible(logo);
    if (versionLabel_->isHidden() == version) versionLabel_->setVisible(version);
}

void RepForm::layoutFrames() {
    QWidget* area = centralWidget();
    const int width = area->width();
    const int height = area->height();
    const int upper = inputs_->sizeHint().height();
    const int mid = mid_->sizeHint().height();
    inputs_->setGeometry(0, 0, width, upper);
    arrangeButtonRow(width);
    mid_->setGeometry(0, upper, width, mid);
    const int top = upper + mid;
    const int list = std::max(0, twipsToPixelsY(divider_, this));
    const int bar = dragLine_->sizeHint().height();
    lower_->setGeometry(0, top, width, list);
    dragLine_->setGeometry(0, top + list, width, bar);
    preview_->setGeometry(0, top + list + bar, width, std::max(0, height - top - list - bar));
}

}  // namespace vantorel::ui
