#include "ui/ColourProgressBar.h"

#include <QPainter>
#include <algorithm>

#include "ui/ColourValues.h"

namespace vantorel::ui {

ColourProgressBar::ColourProgressBar(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("ProgressBar"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ColourProgressBar::setProgress(int percent, PassKind pass) {
    const int clamped = percent < 0 ? -1 : std::min(percent, 100);
    if (clamped == percent_ && pass == pass_) return;
    percent_ = clamped;
    pass_ = pass;
    update();
}

QColor ColourProgressBar::fillColour() const {
    return pass_ == PassKind::Writing ? QColor(0, 255, 0) : QColor(255, 255, 0);
}

QColor ColourProgressBar::backColour() const {
    return pass_ == PassKind::Writing ? QColor(255, 0, 0) : QColor(0, 0, 255);
}

QSize ColourProgressBar::sizeHint() const { return {160, fontMetrics().height() + 6}; }

void ColourProgressBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect area = rect().adjusted(0, 0, -1, -1);
    if (percent_ < 0) {
        // An empty bar: its edge stands out from light and dark windows alike.
        const QColor window = palette().color(QPalette::Window);
        painter.fillRect(area, window);
        painter.setPen(mix(window, palette().color(QPalette::WindowText), 0.3));
        painter.drawRect(area);
        return;
    }
    painter.fillRect(area, backColour());
    QRect done = area;
    done.setWidth(area.width() * percent_ / 100);
    painter.fillRect(done, fillColour());
    painter.setPen(palette().color(QPalette::Dark));
    painter.drawRect(area);
    // The figure stays readable on both colours.
    const QString text = QString::number(percent_) + QLatin1Char('%');
    painter.setPen(Qt::black);
    painter.drawText(area.translated(1, 1), Qt::AlignCenter, text);
    painter.setPen(Qt::white);
    painter.drawText(area, Qt::AlignCenter, text);
}

}  // namespace vantorel::ui
