#pragma once
// A text shown in a colour of its own (an error in red, a remark in grey)
// that stays readable in any palette: the colour is worked out from the
// palette the widget inherits and moved just far enough from its page,
// again each time the palette changes (a dark desktop, a switch of theme).

#include <QColor>
#include <QPalette>
#include <functional>

#include "appearance/ReadableColour.h"

class QWidget;

namespace vantorel::ui {

// `widget` draws its text (its foreground role) in `colour(palette)`, made
// readable on the page (its background role) by `least`.
void keepReadable(QWidget* widget, std::function<QColor(const QPalette&)> colour,
                  double least = kLeastTextContrast);

// The desktop's palette with each text colour moved, where it must be,
// just far enough from its page (a selection's page from its text).
QPalette readablePalette(QPalette palette);
// Keeps the program's palette readable (once per program; each window asks).
void keepPaletteReadable();

// The palette's text colour, muted towards its page but still readable:
// for remarks beside the main text (timings, unset values).
QColor mutedText(const QPalette& palette, QPalette::ColorRole text, QPalette::ColorRole page);

}  // namespace vantorel::ui
