#pragma once
// The desktop's style with check and radio marks that can be seen on a dark
// page. Fusion outlines a check box in a shade of the window colour: on a
// light page a grey frame, on a dark one a frame darker than the box itself,
// so the results list's check boxes and the window's options all but vanish.
// This style draws the style's own mark and, where its frame would not stand
// out from the page, a frame in a mix of the text and page colours.

#include <QProxyStyle>

namespace vantorel::ui {

class ReadableIndicatorStyle : public QProxyStyle {
public:
    using QProxyStyle::QProxyStyle;  // no style given: the desktop's own
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget = nullptr) const override;
};

}  // namespace vantorel::ui
