#include "ui/ResultsView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>

namespace vantorel::ui {

ResultsView::ResultsView(QWidget* parent) : QTreeView(parent) {
    setObjectName(QStringLiteral("ListView1"));
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);  // keeps 100,000 rows fast
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSortingEnabled(false);  // the window sorts on header clicks itself
    header()->setSectionsClickable(true);
    header()->setSortIndicatorShown(false);
    header()->setStretchLastSection(true);
}

int ResultsView::selectedRow() const {
    const QModelIndex current = currentIndex();
    return current.isValid() ? current.row() : -1;
}


void ResultsView::keyReleaseEvent(QKeyEvent* event) {
    QTreeView::keyReleaseEvent(event);
    if (event->isAutoRepeat()) return;
    switch (event->key()) {
        case Qt::Key_Control: case Qt::Key_Shift: case Qt::Key_Alt: case Qt::Key_Meta: return;  // modifiers alone
        default: break;
    }
    const bool selectAll = event->key() == Qt::Key_A && event->modifiers() == Qt::ControlModifier;
    if (!selectAll && event->modifiers() == Qt::NoModifier && model() && model()->rowCount() > 0)
        emit keyReleased();
}

void ResultsView::mouseReleaseEvent(QMouseEvent* event) {
    QTreeView::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton && event->modifiers() == Qt::NoModifier && model() &&
        model()->rowCount() > 0)
        emit leftReleased();
    if (event->button() == Qt::RightButton && model() && model()->rowCount() > 0) {
        // The menu is for the file under the pointer: a row outside the
        // selection becomes the selection; within it, it becomes current.
        const QModelIndex under = indexAt(event->position().toPoint());
        if (under.isValid()) {
            if (selectionModel()->isRowSelected(under.row(), under.parent()))
                selectionModel()->setCurrentIndex(under, QItemSelectionModel::NoUpdate);
            else
                selectionModel()->setCurrentIndex(under, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        }
        emit rightReleased(event->globalPosition().toPoint());
    }
}

}  // namespace vantorel::ui
