// The main window's widgets and menus, made once when it opens.
#include "ui/windows/RepForm.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QShortcut>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>

#include "core/FrontEndMessages.h"
#include "ui/models/ResultsModel.h"
#include "ui/models/ResultsView.h"
#include "ui/platform/FileDialog.h"
#include "ui/platform/Twips.h"
#include "ui/run/ResultExport.h"
#include "ui/widgets/ColourProgressBar.h"
#include "ui/widgets/CommandButton.h"
#include "ui/widgets/DragLine.h"
#include "ui/widgets/FolderDrop.h"
#include "ui/widgets/HistoryCombo.h"
#include "ui/widgets/InputFrame.h"
#include "ui/widgets/Logo.h"
#include "ui/widgets/PreviewFrame.h"
#include "ui/widgets/WholeTextLabel.h"
#include "ui/windows/BatchBar.h"
#include "ui/windows/PopUpForm.h"
#include "ui/windows/UndoReplace.h"

namespace vantorel::ui {

void RepForm::buildWidgets() {
    auto* central = new QWidget(this);
    central->setObjectName(QStringLiteral("CentralArea"));
    setCentralWidget(central);
    central->installEventFilter(this);

    inputs_ = new InputFrame(central);
    inputs_->setOptionColumnWidth(twipsToPixelsX(2235, this));

    mid_ = new QWidget(central);
    mid_->setObjectName(QStringLiteral("MidFrame"));
    auto button = [this](const char* name, const QString& text, bool isDefault = false) {
        QAbstractButton* b = makeCommandButton(name, text, mid_, isDefault);
        b->setMinimumWidth(std::max(b->sizeHint().width(), twipsToPixelsX(1200, this)));
        return b;
    };
    // Access keys that no menu, label or box of the window uses.
    findButton_ = button("FindBtn", QStringLiteral("F&ind"), true);
    replaceButton_ = button("RepBtn", QStringLiteral("Re&place"));
    previewButton_ = button("PreviewBtn", QStringLiteral("Preview"));
    previewButton_->setToolTip(QStringLiteral("Preview Replace: every change it would make, nothing written"));
    extractButton_ = button("ExtrBtn", QStringLiteral("&Extract"));
    stopButton_ = button("StopBtn", QStringLiteral("Stop"));
    optionsButton_ = button("OptBtn", QStringLiteral("Optio&ns"));
    stopButton_->setEnabled(false);
    stopButton_->setShortcut(QKeySequence(Qt::Key_Escape));
    extractButton_->setToolTip(QStringLiteral("Gather the text of every match (regular expressions only)"));
    progress_ = new ColourProgressBar(mid_);
    // In a narrow window the version gives way first, then the logo; the
    // progress bar shrinks last, and never below room for "100%".
    progress_->setMinimumWidth(std::max(twipsToPixelsX(720, this),
                                        progress_->fontMetrics().horizontalAdvance(QStringLiteral("100%")) + 12));
    versionLabel_ = new WholeTextLabel(mid_);
    versionLabel_->setObjectName(QStringLiteral("VLabel"));
    logo_ = new QLabel(mid_);
    logo_->setObjectName(QStringLiteral("Picture2"));
    logo_->setPixmap(makerLogo(28));
    logo_->setCursor(Qt::PointingHandCursor);
    logo_->setToolTip(QString::fromUtf8(kMakerPage));
    logo_->installEventFilter(this);
    auto* buttons = new QHBoxLayout(mid_);
    buttons->setContentsMargins(8, 4, 8, 6);
    for (QAbstractButton* b : {findButton_, replaceButton_, previewButton_, extractButton_, stopButton_})
        buttons->addWidget(b);
    buttons->addSpacing(12);
    buttons->addWidget(progress_, 1);
    buttons->addSpacing(12);
    buttons->addWidget(optionsButton_);
    buttons->addSpacing(12);
    buttons->addWidget(versionLabel_);
    buttons->addWidget(logo_);

    lower_ = new QWidget(central);
    lower_->setObjectName(QStringLiteral("LowerFrame"));
    view_ = new ResultsView(lower_);
    model_ = new ResultsModel(this);
    view_->setModel(model_);
    // Batch mode: a bar above the list says what is queued and leads back to the typed pair.
    batchBar_ = new BatchBar(lower_);
    showBatchMode(false);
    auto* list = new QVBoxLayout(lower_);
    list->setContentsMargins(4, 0, 4, 0);
    list->setSpacing(2);
    list->addWidget(batchBar_);
    list->addWidget(view_);

    dragLine_ = new DragLine(central);
    preview_ = new PreviewFrame(central);

    statusBar()->setObjectName(QStringLiteral("StatusBar1"));
    statusPanel_ = new QLabel(statusBar());
    statusPanel_->setObjectName(QStringLiteral("StatusPanel"));
    statusBar()->addWidget(statusPanel_, 1);

    splashTimer_ = new QTimer(this);
    splashTimer_->setObjectName(QStringLiteral("SplashTimer"));
    splashTimer_->setSingleShot(true);
    splashTimer_->setInterval(400);
    connect(splashTimer_, &QTimer::timeout, this, [this] {
        splashTimer_->stop();
        showAbout();
    });

    connect(findButton_, &QAbstractButton::clicked, this, &RepForm::startFind);
    connect(replaceButton_, &QAbstractButton::clicked, this, &RepForm::startReplace);
    connect(previewButton_, &QAbstractButton::clicked, this, &RepForm::startPreview);
    connect(extractButton_, &QAbstractButton::clicked, this, &RepForm::startExtract);
    connect(stopButton_, &QAbstractButton::clicked, this, &RepForm::stopRun);
    connect(optionsButton_, &QAbstractButton::clicked, this, &RepForm::showOptions);
    connect(batchBar_, &BatchBar::cancelRequested, this, &RepForm::cancelQueue);
    connect(inputs_->libraryButton(), &QAbstractButton::clicked, this, &RepForm::showLibrary);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, &RepForm::focusFindBox);
    // A folder dropped on the window, or on the folder box, is the start folder; a file gives its folder.
    auto* drop = new FolderDrop(this);
    drop->watch(inputs_->box(HistoryBox::Folder)->lineEdit());
    connect(drop, &FolderDrop::folderDropped, this,
            [this](const QString& folder) { inputs_->box(HistoryBox::Folder)->setEditText(folder); });
    for (HistoryBox box : {HistoryBox::Find, HistoryBox::Folder, HistoryBox::Filter})
        connect(inputs_->box(box)->lineEdit(), &QLineEdit::returnPressed, this, [this] {
            if (findButton_->isEnabled()) startFind();
        });
    connect(inputs_, &InputFrame::regularExpressionModeChanged, this, [this](bool on) {
        if (!isRunning()) extractButton_->setEnabled(on);
    });
    extractButton_->setEnabled(inputs_->option(OptionBox::RegularExpression)->isChecked());
    connect(inputs_->folderButton(), &QAbstractButton::clicked, this, &RepForm::chooseFolder);
    connect(dragLine_, &DragLine::dragged, this, &RepForm::moveDivider);
    connect(model_, &ResultsModel::checkChanged, this, &RepForm::onRowCheckChanged);
    connect(model_, &QAbstractItemModel::modelReset, this, [this] { view_->header()->setSortIndicatorShown(false); });
    connect(view_, &ResultsView::leftReleased, this, &RepForm::onListLeftReleased);
    connect(view_, &ResultsView::keyReleased, this, &RepForm::onListKeyReleased);
    connect(view_, &QTreeView::doubleClicked, this, [this](const QModelIndex& index) { openRow(index.row()); });
    popUp_ = new PopUpForm(this, *view_, *model_, *inputs_, *desktop_, *messages_, settings_);
    connect(view_, &ResultsView::rightReleased, popUp_, &PopUpForm::popUp);
    connect(popUp_, &PopUpForm::runRequested, this, [this] { openRow(view_->selectedRow()); });
    connect(view_->header(), &QHeaderView::sectionClicked, this, &RepForm::onHeaderClicked);
    connect(preview_, &PreviewFrame::pageRequested, this, &RepForm::onPageRequested);
    connect(preview_, &PreviewFrame::shown, this, &RepForm::previewShown);
    connect(preview_, &PreviewFrame::unableToShow, this, [this] { messages_->showMessage(unableToShowFile()); });
}

void RepForm::buildMenus() {
    fileMenu_ = menuBar()->addMenu(QStringLiteral("&File"));
    fileMenu_->setObjectName(QStringLiteral("mnuFile"));
    QAction* exportList = fileMenu_->addAction(QStringLiteral("Export Match List..."));
    exportList->setObjectName(QStringLiteral("mExportMatch"));
    connect(exportList, &QAction::triggered, this, [this] { exportMatchList(this, *desktop_, *messages_, *model_); });
    QAction* exportDetails = fileMenu_->addAction(QStringLiteral("Export Match Details..."));
    exportDetails->setObjectName(QStringLiteral("mExportDetail"));
    connect(exportDetails, &QAction::triggered, this,
            [this] { exportMatchDetails(this, *desktop_, *messages_, *preview_->pane()); });
    fileMenu_->addSeparator();
    previewAction_ = fileMenu_->addAction(QStringLiteral("Pre&view Replace"));
    previewAction_->setObjectName(QStringLiteral("mPreviewReplace"));
    connect(previewAction_, &QAction::triggered, this, &RepForm::startPreview);
    undoAction_ = fileMenu_->addAction(QStringLiteral("&Undo Last Replace..."));
    undoAction_->setObjectName(QStringLiteral("mUndoReplace"));
    connect(undoAction_, &QAction::triggered, this, &RepForm::undoLastReplace);
    connect(fileMenu_, &QMenu::aboutToShow, this, [this] { undoAction_->setEnabled(undo_->available()); });
    fileMenu_->addSeparator();
    optionsAction_ = fileMenu_->addAction(QStringLiteral("Options..."));
    optionsAction_->setObjectName(QStringLiteral("mOpts"));
    QList<QKeySequence> preferences{QKeySequence(Qt::CTRL | Qt::Key_Comma)};
    for (const QKeySequence& keys : QKeySequence::keyBindings(QKeySequence::Preferences))
        if (!preferences.contains(keys)) preferences << keys;
    optionsAction_->setShortcuts(preferences);
    connect(optionsAction_, &QAction::triggered, this, &RepForm::showOptions);
    fileMenu_->addSeparator()->setObjectName(QStringLiteral("mDiv2"));
    QAction* exit = fileMenu_->addAction(QStringLiteral("Exit"));
    exit->setObjectName(QStringLiteral("mExit"));
    exit->setShortcut(QKeySequence::Quit);
    connect(exit, &QAction::triggered, this, &QWidget::close);

    viewMenu_ = menuBar()->addMenu(QStringLiteral("&View"));
    viewMenu_->setObjectName(QStringLiteral("mView"));
    QAction* extractWindow = viewMenu_->addAction(QStringLiteral("Extract Window"));
    extractWindow->setObjectName(QStringLiteral("mViewExtrWin"));
    connect(extractWindow, &QAction::triggered, this, &RepForm::showExtractWindow);
    viewMenu_->addSeparator()->setObjectName(QStringLiteral("mDiv3"));
    showAllAction_ = viewMenu_->addAction(QStringLiteral("Only List Files with Matches"));
    showAllAction_->setObjectName(QStringLiteral("mShowAll"));
    showAllAction_->setCheckable(true);
    connect(showAllAction_, &QAction::triggered, this, &RepForm::onShowAllTriggered);
    previewAllAction_ = viewMenu_->addAction(QStringLiteral("Preview all matches together"));
    previewAllAction_->setObjectName(QStringLiteral("mAllFound"));
    previewAllAction_->setCheckable(true);
    connect(previewAllAction_, &QAction::triggered, this, &RepForm::onPreviewAllTriggered);
    // What the mouse does on the list's headings and the divider, from the keyboard.
    viewMenu_->addSeparator();
    QMenu* sortBy = viewMenu_->addMenu(QStringLiteral("&Sort List By"));
    sortBy->setObjectName(QStringLiteral("mSortBy"));
    const std::vector<std::string>& headings = resultColumnHeaders();
    for (int column = 0; column < static_cast<int>(headings.size()); ++column) {
        QAction* sort = sortBy->addAction(QString::fromStdString(headings[static_cast<std::size_t>(column)]));
        sort->setObjectName(QStringLiteral("mSortBy%1").arg(column));
        connect(sort, &QAction::triggered, this, [this, column] { onHeaderClicked(column); });
    }
    struct DividerStep {
        const char* name;
        const char* caption;
        QKeyCombination keys;
        int lines;
    };
    for (const DividerStep& step : {DividerStep{"mDividerUp", "Move Divider &Up", Qt::CTRL | Qt::SHIFT | Qt::Key_Up, -2},
                                    DividerStep{"mDividerDown", "Move Divider &Down", Qt::CTRL | Qt::SHIFT | Qt::Key_Down, 2}}) {
        QAction* move = viewMenu_->addAction(QString::fromLatin1(step.caption));
        move->setObjectName(QString::fromLatin1(step.name));
        move->setShortcut(QKeySequence(step.keys));
        connect(move, &QAction::triggered, this,
                [this, lines = step.lines] { moveDivider(lines * fontMetrics().lineSpacing()); });
    }

    QMenu* tools = menuBar()->addMenu(QStringLiteral("&Tools"));
    tools->setObjectName(QStringLiteral("mTools"));
    QAction* tester = tools->addAction(QStringLiteral("Regular Expression Tester"));
    tester->setObjectName(QStringLiteral("mRETest"));
    connect(tester, &QAction::triggered, this, &RepForm::showTester);
    QAction* batch = tools->addAction(QStringLiteral("Batch Commands"));
    batch->setObjectName(QStringLiteral("mBatch"));
    connect(batch, &QAction::triggered, this, &RepForm::showBatchJobs);

    QMenu* help = menuBar()->addMenu(QStringLiteral("&Help"));
    help->setObjectName(QStringLiteral("mnuHelp"));
    QAction* instructions = help->addAction(QStringLiteral("Show Help"));
    instructions->setObjectName(QStringLiteral("mInstructions"));
    instructions->setShortcut(QKeySequence::HelpContents);
    connect(instructions, &QAction::triggered, this, &RepForm::showHelp);
    help->addSeparator()->setObjectName(QStringLiteral("mdiv0"));
    QAction* web = help->addAction(QStringLiteral("Visit Brimlark on the web"));
    web->setObjectName(QStringLiteral("mweb"));
    connect(web, &QAction::triggered, this, [this] { openPage(QString::fromUtf8(kMakerPage)); });
    QAction* home = help->addAction(QStringLiteral("Vantorel Home"));
    home->setObjectName(QStringLiteral("mweb2"));
    connect(home, &QAction::triggered, this, [this] { openPage(QString::fromUtf8(kProductPage)); });
    help->addSeparator()->setObjectName(QStringLiteral("mDiv1"));
    aboutAction_ = help->addAction(QStringLiteral("About..."));
    aboutAction_->setObjectName(QStringLiteral("mAbout"));
    connect(aboutAction_, &QAction::triggered, this, &RepForm::showAbout);
}

}  // namespace vantorel::ui
