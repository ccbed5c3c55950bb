#include "ui/models/ResultsModel.h"

#include <QFont>
#include <QGuiApplication>
#include <QPalette>

#include "core/StyledText.h"
#include "ui/platform/ColourValues.h"

#include "files/FileFunctions.h"
#include "results/ResultSort.h"
#include "core/TextEncoding.h"

namespace vantorel::ui {

QString displayText(const std::string& text) {
    return QString::fromStdString(isValidUtf8(text) ? text : windows1252ToUtf8(text));
}

ResultsModel::ResultsModel(QObject* parent) : QAbstractTableModel(parent) {}

int ResultsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(order_.size());
}

int ResultsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(resultColumnHeaders().size());
}

QVariant ResultsModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    const ResultRow& row = rowAt(index.row());
    const int column = index.column();
    switch (role) {
        case Qt::DisplayRole:
        case Qt::ToolTipRole:
            switch (column) {
                case 0: return displayText(row.name);
                case 1: return displayText(row.folder);
                case 2: return QString::number(row.matches);
                case 3: return QString::number(row.size);
                case 4: return QString::fromStdString(formatDateTime(row.modified));
                default: return {};
            }
        case Qt::CheckStateRole:
            if (column == 0) return row.checked ? Qt::Checked : Qt::Unchecked;
            return {};
        case Qt::FontRole:
            if (column == 0) {
                QFont bold;
                bold.setBold(true);
                return bold;
            }
            return {};
        case Qt::ForegroundRole:
            // Blue, made readable on a dark list.
            if (column == 2) return readableOn(kBlue, QGuiApplication::palette().color(QPalette::Base));
            return {};
        default:
            return {};
    }
}

QVariant ResultsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    const auto& headers = resultColumnHeaders();
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 &&
        section < static_cast<int>(headers.size()))
        return QString::fromStdString(headers[static_cast<std::size_t>(section)]);
    return {};
}

Qt::ItemFlags ResultsModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags result = QAbstractTableModel::flags(index);
    if (index.isValid() && index.column() == 0) result |= Qt::ItemIsUserCheckable;
    return result;
}

bool ResultsModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || !index.isValid() || index.column() != 0) return false;
    const bool checked = value.toInt() == Qt::Checked;
    if (rowAt(index.row()).checked == checked) return true;
    setChecked(index.row(), checked);
    emit checkChanged(index.row(), checked);
    return true;
}

void ResultsModel::clear() {
    beginResetModel();
    rows_.clear();
    rows_.shrink_to_fit();
    anchors_.clear();
    anchors_.shrink_to_fit();
    order_.clear();
    order_.shrink_to_fit();
    checkedCount_ = 0;
    endResetModel();
}

void ResultsModel::append(std::vector<Entry>&& entries) {
    if (entries.empty()) return;
    const int first = rowCount();
    beginInsertRows({}, first, first + static_cast<int>(entries.size()) - 1);
    for (Entry& entry : entries) {
        if (entry.row.checked) ++checkedCount_;
        order_.push_back(rows_.size());
        rows_.push_back(std::move(entry.row));
        anchors_.push_back(entry.previewAnchor);
    }
    endInsertRows();
}

const ResultRow& ResultsModel::rowAt(int row) const { return rows_[order_.at(static_cast<std::size_t>(row))]; }

int ResultsModel::previewAnchorAt(int row) const {
    return anchors_[order_.at(static_cast<std::size_t>(row))];
}

std::string ResultsModel::pathAt(int row) const { return rowAt(row).path(); }

void ResultsModel::setChecked(int row, bool checked) {
    ResultRow& target = rows_[order_.at(static_cast<std::size_t>(row))];
    if (target.checked == checked) return;
    target.checked = checked;
    checked ? ++checkedCount_ : --checkedCount_;
    const QModelIndex cell = index(row, 0);
    emit dataChanged(cell, cell, {Qt::CheckStateRole});
}

std::vector<std::string> ResultsModel::checkedPaths() const {
    std::vector<std::string> paths;
    for (std::size_t i : order_)
        if (rows_[i].checked) paths.push_back(rows_[i].path());
    return paths;
}

void ResultsModel::sortByColumn(int column, bool descending) {
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<std::size_t> entryOf;
    entryOf.reserve(static_cast<std::size_t>(before.size()));
    for (const QModelIndex& index : before) entryOf.push_back(order_[static_cast<std::size_t>(index.row())]);

    sortRowOrder(order_, rows_, static_cast<std::size_t>(column), descending);

    std::vector<int> rowOfEntry(rows_.size());
    for (std::size_t r = 0; r < order_.size(); ++r) rowOfEntry[order_[r]] = static_cast<int>(r);
    QModelIndexList after;
    after.reserve(before.size());
    for (qsizetype i = 0; i < before.size(); ++i)
        after.push_back(index(rowOfEntry[entryOf[static_cast<std::size_t>(i)]], before[i].column()));
    changePersistentIndexList(before, after);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

}  // namespace vantorel::ui
