#include "ui/widgets/ColourProgressBar.h"

#include <QPainter>
#include <algorithm>

#include "ui/platform/ColourValues.h"

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
    // The figure, over each colour in the colour that reads best on it.
    const QString text = QString::number(percent_) + QLatin1Char('%');
    painter.setClipRect(done);
    painter.setPen(figureColourOn(fillColour()));
    painter.drawText(area, Qt::AlignCenter, text);
    painter.setClipRect(QRect(done.right() + 1, area.top(), area.right() - done.right(), area.height()));
    painter.setPen(figureColourOn(backColour()));
    painter.drawText(area, Qt::AlignCenter, text);
}

QColor ColourProgressBar::figureColourOn(const QColor& part) {
    const std::uint32_t page = toBgr(part);
    return contrastRatio(0x000000, page) >= contrastRatio(0xFFFFFF, page) ? QColor(Qt::black) : QColor(Qt::white);
}

}  // namespace vantorel::ui
