#pragma once
// The divider between the results list and the preview (DragLine): dragging
// it reports how far the mouse moved on it; the window decides where it goes.

#include <QWidget>

namespace vantorel::ui {

class DragLine : public QWidget {
    Q_OBJECT
public:
    explicit DragLine(QWidget* parent = nullptr);
    QSize sizeHint() const override { return {10, 6}; }

signals:
    // The vertical offset of the mouse from where the drag began on the bar.
    void dragged(int offset);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool dragging_ = false;
    int grabY_ = 0;
};

}  // namespace vantorel::ui
