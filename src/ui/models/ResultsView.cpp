#include "ui/models/ResultsView.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>

#include "ui/platform/AccessibleName.h"

namespace vantorel::ui {

ResultsView::ResultsView(QWidget* parent) : QTreeView(parent) {
    setObjectName(QStringLiteral("ListView1"));
    setAccessibleNames(this, QStringLiteral("Files found"),
                       QStringLiteral("Each file with its matches. Space ticks the chosen file; the Menu key or "
                                      "Shift+F10 opens its menu, which opens the file"));
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

void ResultsView::menuFromKeyboard() {
    if (!model() || model()->rowCount() == 0) return;
    QModelIndex row = currentIndex();
    if (!row.isValid()) {
        row = model()->index(0, 0);
        selectionModel()->setCurrentIndex(row, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
    scrollTo(row);
    const QRect cell = visualRect(row);
    emit rightReleased(viewport()->mapToGlobal(QPoint(cell.left() + 16, cell.bottom())));
}

void ResultsView::keyPressEvent(QKeyEvent* event) {
    const bool menuKey = event->key() == Qt::Key_Menu && event->modifiers() == Qt::NoModifier;
    const bool shiftF10 = event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier;
    if (menuKey || shiftF10) {
        menuFromKeyboard();
        event->accept();
        return;
    }
    QTreeView::keyPressEvent(event);
}

void ResultsView::contextMenuEvent(QContextMenuEvent* event) {
    // The mouse's menu comes with the button's release; the keyboard's is here.
    if (event->reason() == QContextMenuEvent::Keyboard) menuFromKeyboard();
    event->accept();
}

void ResultsView::keyReleaseEvent(QKeyEvent* event) {
    QTreeView::keyReleaseEvent(event);
    if (event->isAutoRepeat()) return;
    switch (event->key()) {
        case Qt::Key_Control: case Qt::Key_Shift: case Qt::Key_Alt: case Qt::Key_Meta: return;  // modifiers alone
        case Qt::Key_Menu: return;  // opens the context menu
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
