#include "ui/windows/ReplacePreviewForm.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QListView>
#include <QSplitter>
#include <QTableView>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>

#include "results/ChangeListing.h"
#include "ui/platform/AccessibleName.h"
#include "ui/widgets/ChangeLineDelegate.h"
#include "ui/widgets/CommandButton.h"
#include "ui/models/ChangedLinesModel.h"
#include "ui/platform/ReadableText.h"
#include "ui/models/ResultsModel.h"
#include "ui/platform/ScreenFit.h"

namespace vantorel::ui {
namespace {

// A line that never widens its window: a text too long for it gives up its
// middle; the whole text is its tooltip and what screen readers read.
class MiddleElidedLabel : public QLabel {
public:
    using QLabel::QLabel;
    void setFullText(const QString& text) {
        full_ = text;
        setToolTip(text);
        setAccessibleName(text);
        refit();
    }
    QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

protected:
    void resizeEvent(QResizeEvent* event) override {
        QLabel::resizeEvent(event);
        refit();
    }

private:
    void refit() { setText(fontMetrics().elidedText(full_, Qt::ElideMiddle, contentsRect().width())); }
    QString full_;
};

}  // namespace

ReplacePreviewForm::ReplacePreviewForm(const RunRequest& request, std::vector<TickedFilesModel::File> files,
                                       QWidget* parent)
    : QDialog(parent), request_(request), previewer_(std::make_shared<ChangePreviewer>(request)) {
    setObjectName(QStringLiteral("PreviewFrm"));
    setWindowTitle(QStringLiteral("Preview Replace"));
    pool_.setMaxThreadCount(1);  // the file shown; a file no longer wanted is dropped before it starts

    files_ = new TickedFilesModel(std::move(files), request.startFolder, this);
    fileView_ = new QTableView(this);
    fileView_->setObjectName(QStringLiteral("PreviewFiles"));
    fileView_->setModel(files_);
    fileView_->setSelectionBehavior(QAbstractItemView::SelectRows);
    fileView_->setSelectionMode(QAbstractItemView::SingleSelection);
    fileView_->verticalHeader()->hide();
    fileView_->verticalHeader()->setDefaultSectionSize(fontMetrics().lineSpacing() + 4);
    fileView_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    fileView_->horizontalHeader()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    fileView_->setWordWrap(false);
    setAccessibleNames(fileView_, QStringLiteral("Files to change"),
                       QStringLiteral("Space ticks or unticks the chosen file; its changes are shown beside"));
    // A path too long for its column gives up its first folders: the file's
    // name and the folders nearest it stay in view, so that two files of
    // the same name in different folders stay apart.
    fileView_->setTextElideMode(Qt::ElideLeft);
    fileView_->setMinimumWidth(fontMetrics().averageCharWidth() * 28);

    changes_ = new ChangedLinesModel(this);
    changeView_ = new QListView(this);
    changeView_->setObjectName(QStringLiteral("PreviewChanges"));
    changeView_->setModel(changes_);
    changeView_->setItemDelegate(new ChangeLineDelegate(changeView_));
    changeView_->setUniformItemSizes(true);
    setAccessibleNames(changeView_, QStringLiteral("Changes in the chosen file"));
    changeView_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);

    summary_ = new QLabel(this);
    summary_->setObjectName(QStringLiteral("PreviewSummary"));
    fileLabel_ = new MiddleElidedLabel(this);
    fileLabel_->setObjectName(QStringLiteral("PreviewFileLbl"));
    fileLabel_->setTextFormat(Qt::PlainText);
    fileLabel_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

    QAbstractButton* tickAll = makeCommandButton("TickAllBtn", QStringLiteral("Tick All"), this);
    QAbstractButton* untickAll = makeCommandButton("UntickAllBtn", QStringLiteral("Untick All"), this);
    replaceButton_ = makeCommandButton("RepTickedBtn", QStringLiteral("Replace Ticked Files"), this, true);
    QAbstractButton* close = makeCommandButton("CloseBtn", QStringLiteral("Close"), this);

    auto* right = new QWidget(this);
    auto* rightLayout = new QVBoxLayout(right);
    rightLayout->setContentsMargins(0, 0, 0, 0);
    rightLayout->addWidget(fileLabel_);
    rightLayout->addWidget(changeView_);
    auto* splitter = new QSplitter(Qt::Horizontal, this);
    splitter->addWidget(fileView_);
    splitter->addWidget(right);
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 3);
    splitter->setChildrenCollapsible(false);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(tickAll);
    buttons->addWidget(untickAll);
    buttons->addStretch();
    buttons->addWidget(replaceButton_);
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(summary_);
    layout->addWidget(splitter, 1);
    layout->addLayout(buttons);
    resize(1100, 680);
    splitter->setSizes({350, 750});
    keepOnScreen(this);
    keepPaletteReadable();

    connect(fileView_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& current) { showFile(current.row()); });
    connect(&watcher_, &QFutureWatcher<ChangePreviewer::Result>::finished, this,
            [this] { showChanges(watcher_.result()); });
    connect(files_, &TickedFilesModel::tickedChanged, this, &ReplacePreviewForm::updateSummary);
    connect(tickAll, &QAbstractButton::clicked, this, [this] { files_->tickAll(true); });
    connect(untickAll, &QAbstractButton::clicked, this, [this] { files_->tickAll(false); });
    connect(close, &QAbstractButton::clicked, this, &QDialog::close);
    connect(replaceButton_, &QAbstractButton::clicked, this, [this] {
        RunRequest limited = request_;
        limited.dryRun = false;  // written this time
        limited.markedOnly = true;
        limited.markedFiles = files_->tickedPaths();
        emit replaceRequested(limited);
    });
    updateSummary();
    if (files_->rowCount() > 0) fileView_->setCurrentIndex(files_->index(0, 0));
}

ReplacePreviewForm::~ReplacePreviewForm() {
    pool_.clear();
    watcher_.waitForFinished();
}

void ReplacePreviewForm::updateSummary() {
    std::uint64_t matches = 0;
    for (int row = 0; row < files_->rowCount(); ++row) matches += files_->file(row).matches;
    summary_->setText(QStringLiteral("%1 occurences in %2 file(s); %3 file(s) ticked")
                          .arg(matches)
                          .arg(files_->rowCount())
                          .arg(files_->tickedCount()));
    replaceButton_->setEnabled(files_->tickedCount() > 0);
}

void ReplacePreviewForm::showFile(int row) {
    if (row < 0 || row >= files_->rowCount()) return;
    pendingRow_ = row;
    pool_.clear();  // a file paged past is not worked out
    const std::string path = files_->file(row).path;
    static_cast<MiddleElidedLabel*>(fileLabel_)->setFullText(displayText(path));
    changes_->setRows({});
    watcher_.setFuture(QtConcurrent::run(&pool_, [previewer = previewer_, path] { return previewer->preview(path); }));
}

void ReplacePreviewForm::showChanges(const ChangePreviewer::Result& result) {
    const TickedFilesModel::File& file = files_->file(pendingRow_);
    QString label = displayText(file.path);
    if (!result.read) {
        label += result.error.empty() ? QStringLiteral(": no longer there")
                                      : QStringLiteral(": ") + displayText(result.error);
    } else if (result.changes.refused) {
        label += QStringLiteral(": %1, it would be left as it is")
                     .arg(QString::fromUtf8(writeStatusName(*result.changes.refused)));
    } else if (result.changes.hunks.empty()) {
        label += QStringLiteral(": the replacements give the same text");
    } else {
        label += QStringLiteral(": %1 occurences").arg(result.changes.matches);
    }
    static_cast<MiddleElidedLabel*>(fileLabel_)->setFullText(label);
    // The list counts the file as the pane shows it.
    files_->setMatches(pendingRow_, result.read ? result.changes.matches : 0);
    updateSummary();
    changes_->setRows(changeRows(result.changes.hunks));
    emit changesShown();
}

}  // namespace vantorel::ui
