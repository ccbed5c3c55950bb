#pragma once
// The rows of the results list: one per listed file, with its mark (check
// box) and where its section of the combined preview starts. Sorting changes
// the order in which rows are shown, never their texts.

#include <QAbstractTableModel>
#include <string>
#include <vector>

#include "results/ResultRow.h"

namespace vantorel::ui {

class ResultsModel : public QAbstractTableModel {
    Q_OBJECT
public:
    struct Entry {
        ResultRow row;
        int previewAnchor = -1;  // first block of the file's combined-preview section, or -1
    };

    explicit ResultsModel(QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    void clear();
    void append(std::vector<Entry>&& entries);
    // Rows in the order shown.
    const ResultRow& rowAt(int row) const;
    int previewAnchorAt(int row) const;
    std::string pathAt(int row) const;
    void setChecked(int row, bool checked);
    bool anyChecked() const noexcept { return checkedCount_ > 0; }
    // The marked rows' files, in the order shown.
    std::vector<std::string> checkedPaths() const;
    // Shows the rows ordered by a column.
    void sortByColumn(int column, bool descending);

signals:
    // The user ticked or cleared a row's check box.
    void checkChanged(int row, bool checked);

private:
    std::vector<ResultRow> rows_;       // in the order the run added them
    std::vector<int> anchors_;          // the preview anchor of each of rows_
    std::vector<std::size_t> order_;    // the order shown
    std::size_t checkedCount_ = 0;
};

// Text of the engine (UTF-8, or other bytes as Windows-1252) for the window.
QString displayText(const std::string& text);

}  // namespace vantorel::ui
