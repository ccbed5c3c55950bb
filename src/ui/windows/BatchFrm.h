#pragma once
// The batch jobs window: the saved jobs, the library's entries to build a job
// from, the entries of the job being edited in their order, and the buttons to
// add, remove and move entries, start a new job, save, delete, use and close.
// It is shown modally by the main window, which gets the queue of the used
// job back.

#include <QDialog>
#include <filesystem>
#include <memory>
#include <optional>

#include "library/BatchJobEditor.h"
#include "library/LibraryState.h"

class QAbstractButton;
class QComboBox;
class QLabel;
class QListWidget;

namespace vantorel {
class MessageHost;
}

namespace vantorel::ui {

class GuiMessageHost;

class BatchFrm : public QDialog {
    Q_OBJECT
public:
    // `programFolder`: where the program's data files are looked for.
    // `messages`: where messages and questions go; null for the window's own
    // message boxes.
    BatchFrm(LibraryState& state, const std::filesystem::path& programFolder, MessageHost* messages = nullptr,
             QWidget* parent = nullptr);
    ~BatchFrm() override;

    // The queue of the job used, once the use button has closed the window.
    const std::optional<BatchQueue>& queue() const noexcept { return queue_; }

protected:
    bool event(QEvent* event) override;

private:
    // The controls as the editor stands: jobs, entries, selection, buttons;
    // the library's names too when `library` is set.
    void showState(bool library = false);
    // The selected step's pattern and replacement, from the library.
    void showDetail();
    void chooseJob(int position);
    void save();
    void use();

    std::unique_ptr<GuiMessageHost> ownMessages_;
    std::unique_ptr<BatchJobEditor> editor_;
    QComboBox* jobs_ = nullptr;     // BatchJobsCombo
    QComboBox* library_ = nullptr;  // LibraryCombo
    QListWidget* entries_ = nullptr;  // RegExList
    QLabel* detail_ = nullptr;        // what the selected step does
    QAbstractButton* add_ = nullptr;
    QAbstractButton* remove_ = nullptr;
    QAbstractButton* up_ = nullptr;
    QAbstractButton* down_ = nullptr;
    QAbstractButton* newJob_ = nullptr;
    QAbstractButton* save_ = nullptr;
    QAbstractButton* delete_ = nullptr;
    QAbstractButton* use_ = nullptr;
    std::optional<BatchQueue> queue_;
    bool showing_ = false;
};

// Shows the batch jobs window modally; the queue of the job used, or nothing
// when the window was closed without using one.
std::optional<BatchQueue> openBatchJobs(QWidget* opener, LibraryState& state,
                                        const std::filesystem::path& programFolder, MessageHost* messages);

}  // namespace vantorel::ui
