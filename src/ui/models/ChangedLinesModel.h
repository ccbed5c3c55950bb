#pragma once
// The changed lines of one file, one row a line (ChangeRow), for a list view
// that draws them with ChangeLineDelegate.

#include <QAbstractListModel>
#include <vector>

#include "results/ChangeListing.h"

namespace vantorel::ui {

class ChangedLinesModel : public QAbstractListModel {
    Q_OBJECT
public:
    // The row itself, for the delegate.
    static constexpr int kRowRole = Qt::UserRole + 1;

    using QAbstractListModel::QAbstractListModel;

    void setRows(std::vector<ChangeRow> rows);
    const std::vector<ChangeRow>& rows() const noexcept { return rows_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    std::vector<ChangeRow> rows_;
};

}  // namespace vantorel::ui
