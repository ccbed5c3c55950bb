#pragma once
// "Preview Replace": the files a Replace would change, each with a check
// box, and the changes of the one chosen (old and new lines, the replaced
// text marked), worked out from the files as they are when the file is
// chosen, on a thread of their own. "Replace Ticked Files" hands the
// previewed run back, limited to the ticked files, for the main window to
// run as any Replace (its question and its messages).

#include <QDialog>
#include <QFutureWatcher>
#include <QThreadPool>
#include <memory>
#include <vector>

#include "search/ChangePreviewer.h"
#include "core/RunTypes.h"
#include "ui/models/TickedFilesModel.h"

class QAbstractButton;
class QLabel;
class QListView;
class QTableView;

namespace vantorel::ui {

class ChangedLinesModel;

class ReplacePreviewForm : public QDialog {
    Q_OBJECT
public:
    // `files`: those the counting pass found matches in, in its order. Throws
    // PatternError for a pattern the run would refuse.
    ReplacePreviewForm(const RunRequest& request, std::vector<TickedFilesModel::File> files,
                       QWidget* parent = nullptr);
    ~ReplacePreviewForm() override;

    TickedFilesModel& files() const noexcept { return *files_; }
    ChangedLinesModel& changes() const noexcept { return *changes_; }
    // Shows the changes of the file in that row.
    void showFile(int row);

signals:
    // The preview's run, limited to the ticked files.
    void replaceRequested(const vantorel::RunRequest& request);
    // The changes of the chosen file are shown.
    void changesShown();

private:
    void showChanges(const ChangePreviewer::Result& result);
    void updateSummary();

    RunRequest request_;
    std::shared_ptr<const ChangePreviewer> previewer_;
    TickedFilesModel* files_ = nullptr;
    ChangedLinesModel* changes_ = nullptr;
    QTableView* fileView_ = nullptr;
    QListView* changeView_ = nullptr;
    QLabel* summary_ = nullptr;
    QLabel* fileLabel_ = nullptr;
    QAbstractButton* replaceButton_ = nullptr;
    QThreadPool pool_;
    QFutureWatcher<ChangePreviewer::Result> watcher_;
    int pendingRow_ = -1;
};

}  // namespace vantorel::ui
