#pragma once
// The results list (ListView1): reports the key and mouse releases that keep
// the preview in step with the selection.

#include <QTreeView>

namespace vantorel::ui {

class ResultsView : public QTreeView {
    Q_OBJECT
public:
    explicit ResultsView(QWidget* parent = nullptr);
    // The row the preview follows: the current row, or -1.
    int selectedRow() const;

signals:
    // A key other than Ctrl+A was released without modifiers.
    void keyReleased();
    // The left button was released over the list without modifiers.
    void leftReleased();
    // The right button was released over the list (at a screen position), or
    // the context menu was asked for from the keyboard (the Menu key or
    // Shift+F10: at the current row).
    void rightReleased(const QPoint& globalPosition);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void menuFromKeyboard();
};

}  // namespace vantorel::ui
