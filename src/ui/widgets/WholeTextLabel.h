#pragma once
// A label that shows its text whole or not at all: in a window too narrow
// for it, it gives up its room first and shows nothing rather than a
// clipped word. Its preferred width stays that of the whole text, so it comes
// back as soon as the window is wide enough again.

#include <QLabel>

namespace vantorel::ui {

class WholeTextLabel : public QLabel {
public:
    using QLabel::QLabel;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace vantorel::ui
