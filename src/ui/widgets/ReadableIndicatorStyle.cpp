#include "ui/widgets/ReadableIndicatorStyle.h"

#include <QPainter>
#include <QStyleOption>

#include "ui/platform/ColourValues.h"

namespace vantorel::ui {

void ReadableIndicatorStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                           const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    const bool check = element == PE_IndicatorCheckBox || element == PE_IndicatorItemViewItemCheck;
    if (!check && element != PE_IndicatorRadioButton) return;
    const QColor page = option->palette.color(QPalette::Base);
    const QColor text = option->palette.color(QPalette::Text);
    if (page.lightnessF() >= text.lightnessF()) return;  // a light page: the style's frame shows
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, !check);
    painter->setBrush(Qt::NoBrush);
    const bool enabled = option->state & State_Enabled;
    painter->setPen(QPen(mix(page, text, enabled ? 0.55 : 0.3), 1));
    const QRectF frame = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
    if (check) painter->drawRect(frame);
    else painter->drawEllipse(frame);
    painter->restore();
}

}  // namespace vantorel::ui
