#pragma once
// Keeps a top-level window on the screen it opens on: a window larger than
// the screen's free area (a small screen, or a scale factor of 2) is shrunk
// to it, down to the window's minimum size, and a window that sticks out is
// moved in, title bar first. A window whose body cannot shrink that far
// holds it in a scrolling body, so that every control can still be reached.

#include <QScrollArea>

class QWidget;

namespace vantorel::ui {

void fitToScreen(QWidget* window);

// fitToScreen each time the window is shown by the program.
void keepOnScreen(QWidget* window);

// A frameless scroll area around a window's body: it asks for the body's
// whole size, so that the window opens as designed where the screen has
// room, and scrolls only when the window is smaller than the body can be.
class ScrollingBody : public QScrollArea {
public:
    ScrollingBody(QWidget* body, QWidget* parent);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
};

}  // namespace vantorel::ui
