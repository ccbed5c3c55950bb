#pragma once
// Draws one row of a file's changes: the old and the new line number, the
// sign, and the line with the replaced (removed lines) or inserted (added
// lines) text marked; removed lines on red, added lines on green, hunk heads
// on blue, all tints of the palette's page so that the text reads on them.

#include <QColor>
#include <QStyledItemDelegate>
#include <utility>
#include <vector>

#include "results/ChangeListing.h"

namespace vantorel::ui {

class ChangeLineDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    // The line as drawn (a tab as spaces to the next multiple of 4) and
    // where its marks fall in that text.
    struct Shown {
        QString text;
        std::vector<std::pair<int, int>> marks;
    };
    static Shown shown(const ChangeRow& row);

    // The colours a row of that kind is drawn in on a palette's page: the
    // row's background, the line numbers, the text (the hunk head's own on
    // hunk rows) and the marks behind replaced text.
    struct Colours {
        QColor page, numbers, text, mark;
    };
    static Colours colours(ChangeRow::Kind kind, const QPalette& palette);
};

}  // namespace vantorel::ui
