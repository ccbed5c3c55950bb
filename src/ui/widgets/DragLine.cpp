#include "ui/widgets/DragLine.h"

#include <QMouseEvent>
#include <QPainter>

namespace vantorel::ui {

DragLine::DragLine(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("DragLine"));
    setCursor(Qt::SplitVCursor);
}

void DragLine::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    dragging_ = true;
    grabY_ = static_cast<int>(event->position().y());
}

void DragLine::mouseMoveEvent(QMouseEvent* event) {
    if (!dragging_) return;
    const int offset = static_cast<int>(event->position().y()) - grabY_;
    if (offset != 0) emit dragged(offset);  // the bar moves under the mouse: offsets stay relative
}

void DragLine::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) dragging_ = false;
}

void DragLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const int middle = height() / 2;
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawLine(0, middle, width(), middle);
    painter.setPen(palette().color(QPalette::Light));
    painter.drawLine(0, middle + 1, width(), middle + 1);
}

}  // namespace vantorel::ui
