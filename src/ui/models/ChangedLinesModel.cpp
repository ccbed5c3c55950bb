#include "ui/models/ChangedLinesModel.h"

namespace vantorel::ui {

void ChangedLinesModel::setRows(std::vector<ChangeRow> rows) {
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
}

int ChangedLinesModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant ChangedLinesModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    const ChangeRow& row = rows_[static_cast<std::size_t>(index.row())];
    if (role == Qt::DisplayRole) {
        const char sign = row.kind == ChangeRow::Kind::Removed ? '-' : row.kind == ChangeRow::Kind::Added ? '+' : ' ';
        return row.kind == ChangeRow::Kind::Hunk ? QString::fromStdString(row.text)
                                                 : QLatin1Char(sign) + QString::fromStdString(row.text);
    }
    if (role == kRowRole) return QVariant::fromValue(static_cast<const void*>(&row));
    return {};
}

}  // namespace vantorel::ui
