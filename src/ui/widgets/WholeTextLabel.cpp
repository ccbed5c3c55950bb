#include "ui/widgets/WholeTextLabel.h"

namespace vantorel::ui {

QSize WholeTextLabel::minimumSizeHint() const { return {0, QLabel::minimumSizeHint().height()}; }

void WholeTextLabel::paintEvent(QPaintEvent* event) {
    const int margins = contentsMargins().left() + contentsMargins().right() + 2 * margin();
    if (fontMetrics().horizontalAdvance(text()) + margins > width()) return;
    QLabel::paintEvent(event);
}

}  // namespace vantorel::ui
