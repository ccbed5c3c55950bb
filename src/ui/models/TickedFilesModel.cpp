#include "ui/models/TickedFilesModel.h"

#include "files/FileFunctions.h"
#include "ui/models/ResultsModel.h"

namespace vantorel::ui {

TickedFilesModel::TickedFilesModel(std::vector<File> files, std::string folder, QObject* parent)
    : QAbstractTableModel(parent), files_(std::move(files)), folder_(withTrailingSeparator(std::move(folder))) {
    for (const File& file : files_) ticked_ += file.ticked ? 1 : 0;
}

int TickedFilesModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(files_.size());
}

int TickedFilesModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : 2; }

QVariant TickedFilesModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    const File& f = file(index.row());
    if (role == Qt::DisplayRole) {
        if (index.column() == 1) return QString::number(f.matches);
        const std::string_view path = f.path;
        return displayText(std::string(path.starts_with(folder_) ? path.substr(folder_.size()) : path));
    }
    if (role == Qt::ToolTipRole) return displayText(f.path);
    if (role == Qt::CheckStateRole && index.column() == 0) return f.ticked ? Qt::Checked : Qt::Unchecked;
    if (role == Qt::TextAlignmentRole && index.column() == 1) return int(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QVariant TickedFilesModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    return section == 0 ? QStringLiteral("File") : QStringLiteral("Matches");
}

Qt::ItemFlags TickedFilesModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags result = QAbstractTableModel::flags(index);
    if (index.isValid() && index.column() == 0) result |= Qt::ItemIsUserCheckable;
    return result;
}

bool TickedFilesModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || !index.isValid() || index.column() != 0) return false;
    File& f = files_.at(static_cast<std::size_t>(index.row()));
    const bool ticked = value.toInt() == Qt::Checked;
    if (f.ticked == ticked) return true;
    f.ticked = ticked;
    ticked_ += ticked ? 1 : -1;
    emit dataChanged(index, index, {Qt::CheckStateRole});
    emit tickedChanged();
    return true;
}

void TickedFilesModel::tickAll(bool ticked) {
    for (File& f : files_) f.ticked = ticked;
    ticked_ = ticked ? files_.size() : 0;
    if (!files_.empty()) emit dataChanged(index(0, 0), index(rowCount() - 1, 0), {Qt::CheckStateRole});
    emit tickedChanged();
}

void TickedFilesModel::setMatches(int row, std::uint64_t matches) {
    File& f = files_.at(static_cast<std::size_t>(row));
    if (f.matches == matches) return;
    f.matches = matches;
    emit dataChanged(index(row, 1), index(row, 1), {Qt::DisplayRole});
}

std::vector<std::string> TickedFilesModel::tickedPaths() const {
    std::vector<std::string> paths;
    for (const File& f : files_)
        if (f.ticked) paths.push_back(f.path);
    return paths;
}

}  // namespace vantorel::ui
