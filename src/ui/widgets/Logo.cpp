#include "ui/widgets/Logo.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace vantorel::ui {

QPixmap makerLogo(int size) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    // A lark's wing over a horizon.
    painter.setBrush(QColor(0x1f, 0x4e, 0x79));
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(QRectF(0, 0, size, size));
    QPainterPath wing;
    wing.moveTo(size * 0.18, size * 0.62);
    wing.cubicTo(size * 0.35, size * 0.25, size * 0.65, size * 0.20, size * 0.84, size * 0.30);
    wing.cubicTo(size * 0.62, size * 0.36, size * 0.48, size * 0.48, size * 0.42, size * 0.62);
    wing.closeSubpath();
    painter.setBrush(QColor(0xf2, 0xc1, 0x4e));
    painter.drawPath(wing);
    painter.setBrush(Qt::white);
    painter.drawRect(QRectF(size * 0.18, size * 0.68, size * 0.64, size * 0.05));
    return pixmap;
}

QPixmap productLogo(int size) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient fill(0, 0, 0, size);
    fill.setColorAt(0, QColor(0x35, 0x7a, 0xd6));
    fill.setColorAt(1, QColor(0x17, 0x3f, 0x8a));
    painter.setBrush(fill);
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(QRectF(0, 0, size, size), size * 0.18, size * 0.18);
    // A magnifier over two lines of text.
    painter.setPen(QPen(QColor(255, 255, 255, 150), size * 0.06, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(size * 0.18, size * 0.78), QPointF(size * 0.50, size * 0.78));
    painter.drawLine(QPointF(size * 0.18, size * 0.88), QPointF(size * 0.70, size * 0.88));
    painter.setPen(QPen(Qt::white, size * 0.08));
    painter.setBrush(QColor(255, 255, 255, 40));
    painter.drawEllipse(QRectF(size * 0.22, size * 0.14, size * 0.42, size * 0.42));
    painter.setPen(QPen(QColor(0xf2, 0xc1, 0x4e), size * 0.11, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(size * 0.58, size * 0.50), QPointF(size * 0.80, size * 0.70));
    return pixmap;
}

}  // namespace vantorel::ui
