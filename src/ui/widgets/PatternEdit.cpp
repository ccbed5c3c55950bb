#include "ui/widgets/PatternEdit.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

namespace vantorel::ui {

int utf16Position(const QString& text, std::size_t characters) {
    int position = 0;
    for (std::size_t seen = 0; seen < characters && position < text.size(); ++seen)
        position += text.at(position).isHighSurrogate() && position + 1 < text.size() ? 2 : 1;
    return position;
}

PatternEdit::PatternEdit(QWidget* parent) : QLineEdit(parent) {}

void PatternEdit::setErrorMark(int position) {
    position = position < 0 ? -1 : std::min<int>(position, static_cast<int>(text().size()));
    if (position == mark_) return;
    mark_ = position;
    update();
}

void PatternEdit::paintEvent(QPaintEvent* event) {
    QLineEdit::paintEvent(event);
    if (mark_ < 0 || mark_ > text().size()) return;
    // The caret's place is known to the box; the mark is measured from it.
    const QFontMetricsF metrics(font());
    const QString shown = text();
    const qreal caretX = cursorRect().x() + 5;
    const qreal left = caretX + metrics.horizontalAdvance(shown.left(mark_)) -
                       metrics.horizontalAdvance(shown.left(cursorPosition()));
    const int length = mark_ < shown.size() && shown.at(mark_).isHighSurrogate() ? 2 : 1;
    const qreal width = mark_ < shown.size() ? std::max<qreal>(metrics.horizontalAdvance(shown.mid(mark_, length)), 3)
                                             : metrics.averageCharWidth();
    const QRect caret = cursorRect();
    const qreal top = caret.top() + 1;
    const qreal bottom = std::min<qreal>(caret.bottom() + 2, height() - 3);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(QRectF(left, top, width, caret.bottom() - top), QColor(255, 0, 0, 60));
    // A wavy underline.
    QPainterPath wave;
    wave.moveTo(left, bottom);
    for (qreal x = left; x < left + width; x += 2) wave.lineTo(x + 2, bottom + ((static_cast<int>((x - left) / 2) % 2) ? 0 : -2));
    painter.setPen(QPen(QColor(220, 0, 0), 1.2));
    painter.drawPath(wave);
}

}  // namespace vantorel::ui
