#pragma once
// The files a previewed Replace would change, each with its match count and
// a check box: ticked files are the ones "Replace Ticked Files" writes.

#include <QAbstractTableModel>
#include <cstdint>
#include <string>
#include <vector>

namespace vantorel::ui {

class TickedFilesModel : public QAbstractTableModel {
    Q_OBJECT
public:
    struct File {
        std::string path;
        std::uint64_t matches = 0;
        bool ticked = true;
    };

    // Paths are shown from `folder` on when they lie in it.
    TickedFilesModel(std::vector<File> files, std::string folder, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    const File& file(int row) const { return files_.at(static_cast<std::size_t>(row)); }
    void tickAll(bool ticked);
    // The count found when the file's changes were worked out again.
    void setMatches(int row, std::uint64_t matches);
    std::vector<std::string> tickedPaths() const;
    std::uint64_t tickedCount() const noexcept { return ticked_; }

signals:
    void tickedChanged();

private:
    std::vector<File> files_;
    std::string folder_;
    std::uint64_t ticked_ = 0;
};

}  // namespace vantorel::ui
