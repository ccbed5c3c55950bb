#pragma once
// The bar above the results list in batch mode: BatchLbl says which job is
// queued, BatchCancelBtn leads back to the typed pair. It holds the queue;
// hidden, nothing is queued.

#include <QWidget>

#include "library/BatchQueue.h"

class QAbstractButton;
class QLabel;

namespace vantorel::ui {

class BatchBar : public QWidget {
    Q_OBJECT
public:
    explicit BatchBar(QWidget* parent = nullptr);

    bool queued() const;
    const BatchQueue& queue() const noexcept { return queue_; }
    void showQueue(BatchQueue queue);
    void clear();

signals:
    void cancelRequested();  // BatchCancelBtn

private:
    void showBar(bool on);

    QLabel* label_ = nullptr;           // BatchLbl
    QAbstractButton* cancel_ = nullptr;  // BatchCancelBtn
    BatchQueue queue_;
};

}  // namespace vantorel::ui
