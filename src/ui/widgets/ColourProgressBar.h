#pragma once
// The progress bar of a run, drawn in the colours of its pass: yellow on
// blue while searching or counting, green on red while writing.

#include <QColor>
#include <QWidget>

#include "core/RunTypes.h"

namespace vantorel::ui {

class ColourProgressBar : public QWidget {
    Q_OBJECT
public:
    explicit ColourProgressBar(QWidget* parent = nullptr);

    // A percentage from 0 to 100, or -1 to reset the bar.
    void setProgress(int percent, PassKind pass);
    int percent() const noexcept { return percent_; }
    QColor fillColour() const;
    QColor backColour() const;
    // The figure's colour over a part of the bar: black or white, whichever
    // stands out more from it.
    static QColor figureColourOn(const QColor& part);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int percent_ = -1;
    PassKind pass_ = PassKind::Searching;
};

}  // namespace vantorel::ui
