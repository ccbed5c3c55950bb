#include "ui/widgets/lvButtons_H.h"

#include <QEnterEvent>
#include <QKeyEvent>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QWindow>

#include "ui/platform/ColourValues.h"

namespace vantorel::ui {
namespace {

constexpr int kPadding = 12;  // around the caption, left and right
constexpr int kGap = 6;       // between picture and caption

// The palette role that stands for a system colour index.
QPalette::ColorRole systemRole(unsigned index) {
    switch (index) {
        case 4: return QPalette::Window;            // menu
        case 5: return QPalette::Base;              // window background
        case 7: return QPalette::WindowText;        // menu text
        case 8: return QPalette::Text;              // window text
        case 13: return QPalette::Highlight;
        case 14: return QPalette::HighlightedText;
        case 15: return QPalette::Button;           // button face
        case 16: return QPalette::Dark;             // button shadow
        case 18: return QPalette::ButtonText;
        case 20: return QPalette::Light;            // button highlight
        case 21: return QPalette::Shadow;           // dark shadow
        case 22: return QPalette::Midlight;         // light
        case 23: return QPalette::ToolTipText;
        case 24: return QPalette::ToolTipBase;
        case 26: return QPalette::Link;             // hot-tracked item
        case 9: case 19: return QPalette::WindowText;  // caption and inactive caption text
        default: return QPalette::Window;
    }
}

Qt::CursorShape cursorShape(int pointer) {
    switch (pointer) {
        case button::Cross: return Qt::CrossCursor;
        case button::IBeam: return Qt::IBeamCursor;
        case button::SizeAll: case button::SizeAllArrows: return Qt::SizeAllCursor;
        case button::SizeNESW: return Qt::SizeBDiagCursor;
        case button::SizeNS: return Qt::SizeVerCursor;
        case button::SizeNWSE: return Qt::SizeFDiagCursor;
        case button::SizeWE: return Qt::SizeHorCursor;
        case button::UpArrow: return Qt::UpArrowCursor;
        case button::Hourglass: return Qt::WaitCursor;
        case button::NoDrop: return Qt::ForbiddenCursor;
        case button::ArrowHourglass: return Qt::BusyCursor;
        case button::ArrowQuestion: return Qt::WhatsThisCursor;
        default: return Qt::ArrowCursor;
    }
}

}  // namespace

lvButtons_H::lvButtons_H(QWidget* parent) : QPushButton(parent) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setAutoDefault(false);
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::toggled, this, [this](bool on) {
        design_.settings().Value = on;
        update();
    });
}

lvButtons_H* lvButtons_H::create(QWidget* parent, const QString& objectName, const QString& caption,
                                 std::int16_t mode) {
    auto* made = new lvButtons_H(parent);
    made->setObjectName(objectName);
    made->setCaption(caption);
    made->setMode(mode);
    return made;
}

ButtonSettings lvButtons_H::settings() const {
    ButtonSettings out = s();
    out.Caption = text().toStdString();
    out.Value = value();
    out.Enabled = !testAttribute(Qt::WA_ForceDisabled);
    return out;
}

void lvButtons_H::applySettings(const ButtonSettings& settings) {
    design_ = ButtonDesign(settings);
    design_.setDefault(isDefault());
    setText(QString::fromStdString(settings.Caption));
    syncMode();
    if (isCheckable()) setValue(settings.Value);
    setEnabled(settings.Enabled);
    if (settings.Font) {
        QFont chosen(QString::fromStdString(settings.Font->name));
        if (settings.Font->size > 0) chosen.setPointSizeF(settings.Font->size);
        chosen.setBold(settings.Font->bold);
        chosen.setItalic(settings.Font->italic);
        chosen.setUnderline(settings.Font->underline);
        chosen.setStrikeOut(settings.Font->strikeout);
        setFont(chosen);
    } else {
        setFont(QFont());  // the surrounding window's
    }
    syncCursor();
    loadPicture();
    changed();
}

void lvButtons_H::notice(const ButtonDesign::Notice& text) {
    if (text) emit designNotice(QString::fromStdString(*text));
}

void lvButtons_H::changed() {
    updateGeometry();
    update();
}

// ---- Properties ----------------------------------------------------------------

void lvButtons_H::setButtonStyle(int style) {
    design_.settings().ButtonStyle = static_cast<std::int16_t>(style);
    update();
}

void lvButtons_H::setMode(int mode) {
    design_.setMode(static_cast<std::int16_t>(mode));
    syncMode();
    update();
}

void lvButtons_H::syncMode() {
    const bool checkable = s().Mode == button::Check || s().Mode == button::Option;
    if (!checkable && isChecked()) setChecked(false);
    setCheckable(checkable);
    // Qt keeps option-mode siblings exclusive, and lets the arrow keys move between them.
    setAutoExclusive(s().Mode == button::Option);
}

void lvButtons_H::setCaption(const QString& caption) {
    design_.settings().Caption = caption.toStdString();
    setText(caption);  // also the access key and the name screen readers read
    changed();
}

void lvButtons_H::setCaptionAlign(int align) {
    notice(design_.setCaptionAlign(static_cast<std::int16_t>(align)));
    update();
}

void lvButtons_H::setCaptionStyle(int style) {
    design_.settings().CaptionStyle = static_cast<std::int16_t>(style);
    update();
}

void lvButtons_H::setCustomClick(int value) { notice(design_.setCustomClick(static_cast<std::int16_t>(value))); }

void lvButtons_H::setButtonShape(int shape) {
    notice(design_.setButtonShape(static_cast<std::int16_t>(shape)));
    changed();
}

void lvButtons_H::setPicture(const QString& file) {
    notice(design_.setPicture(file.toStdString()));
    loadPicture();
    changed();
}

void lvButtons_H::loadPicture() {
    picture_ = s().Picture.empty() ? QPixmap() : QPixmap(QString::fromStdString(s().Picture));
}

void lvButtons_H::setPictureAlign(int align) {
    design_.settings().PictureAlign = static_cast<std::int16_t>(align);
    changed();
}

void lvButtons_H::setShowFocusRect(bool on) {
    design_.setDefault(isDefault());
    notice(design_.setShowFocusRect(on));
    update();
}

void lvButtons_H::setPictureSize(int size) {
    notice(design_.setPictureSize(static_cast<std::int16_t>(size)));
    changed();
}

void lvButtons_H::setMousePointer(int pointer) {
    design_.settings().MousePointer = static_cast<std::int16_t>(pointer);
    syncCursor();
}

void lvButtons_H::setMouseIcon(const QString& file) {
    design_.settings().MouseIcon = file.toStdString();
    syncCursor();
}

void lvButtons_H::syncCursor() {
    const int pointer = s().MousePointer;
    if (pointer == button::DefaultPointer) {
        unsetCursor();
    } else if (pointer == button::CustomPointer) {
        const QPixmap icon(QString::fromStdString(s().MouseIcon));
        if (icon.isNull()) unsetCursor();
        else setCursor(QCursor(icon));
    } else {
        setCursor(cursorShape(pointer));
    }
}

void lvButtons_H::setButtonFont(const QFont& chosen) {
    setFont(chosen);
    syncFontSetting();
    changed();
}

void lvButtons_H::syncFontSetting() {
    const QFont shown = font();
    design_.settings().Font = ButtonFont{shown.family().toStdString(), shown.pointSizeF(), shown.bold(),
                                         shown.italic(), shown.underline(), shown.strikeOut()};
}

int lvButtons_H::fontStyle() const {
    const QFont shown = font();
    return (shown.bold() ? Bold : 0) | (shown.italic() ? Italic : 0) | (shown.underline() ? Underline : 0) |
           (shown.strikeOut() ? Strikeout : 0);
}

void lvButtons_H::setFontStyle(int bits) {
    QFont styled = font();
    styled.setBold((bits & Bold) != 0);
    styled.setItalic((bits & Italic) != 0);
    styled.setUnderline((bits & Underline) != 0);
    styled.setStrikeOut((bits & Strikeout) != 0);
    setButtonFont(styled);
}

void lvButtons_H::setForeColor(uint colour) {
    design_.settings().ForeColor = colour;
    update();
}

void lvButtons_H::setBackColor(uint colour) {
    design_.settings().BackColor = colour;
    update();
}

void lvButtons_H::setGradientColor(uint colour) {
    design_.settings().GradientColor = colour;
    update();
}

void lvButtons_H::setGradientMode(int mode) {
    design_.settings().GradientMode = static_cast<std::int16_t>(mode);
    update();
}

void lvButtons_H::setResetDefaultColors(bool reset) {
    if (!reset) return;
    design_.resetDefaultColors();
    update();
}

void lvButtons_H::setHoverColorLocks(int locks) {
    design_.settings().HoverColorLocks = static_cast<std::int16_t>(locks);
    update();
}

void lvButtons_H::setHoverForeColor(uint colour) {
    design_.settings().HoverForeColor = colour;
    update();
}

void lvButtons_H::setHoverBackColor(uint colour) {
    design_.settings().HoverBackColor = colour;
    update();
}

quintptr lvButtons_H::hwnd() const {
    const QWidget* window = this->window();
    return window->windowHandle() ? static_cast<quintptr>(window->winId()) : 0;
}

void lvButtons_H::Refresh() { repaint(); }

void lvButtons_H::DelayDrawing(bool delay) {
    if (delay == delayed_) return;
    delayed_ = delay;
    setUpdatesEnabled(!delay);
    if (!delay) repaint();
}

// ---- Colours -------------------------------------------------------------------

QColor lvButtons_H::resolve(ButtonColour colour) const {
    if (isSystemColour(colour)) return palette().color(systemRole(colour & 0xFFu));
    return toQColor(colour);
}

QColor lvButtons_H::shownForeColour() const {
    if (!isEnabled()) return palette().color(QPalette::Disabled, QPalette::ButtonText);
    return resolve(design_.colours(hovering_).fore);
}

QColor lvButtons_H::shownBackColour() const {
    const ButtonColours normal = design_.colours(false);
    const ButtonColours now = design_.colours(hovering_);
    QColor back = isEnabled() ? resolve(now.back) : palette().color(QPalette::Disabled, QPalette::Button);
    const QColor highlight = palette().color(QPalette::Highlight);
    // A hover back colour that is the normal one still shows the hover, as a
    // tint, unless the normal colour is locked.
    if (hovering_ && now.back == normal.back && !(s().HoverColorLocks & button::KeepBackColour))
        back = mix(back, highlight, 0.15);
    if (value()) back = mix(back, highlight, 0.35);
    if (isDown()) back = mix(back, resolve(now.fore), 0.12);
    return back;
}

// ---- Events --------------------------------------------------------------------

void lvButtons_H::enterEvent(QEnterEvent* event) {
    hovering_ = isEnabled();
    update();
    QPushButton::enterEvent(event);
}

void lvButtons_H::leaveEvent(QEvent* event) {
    hovering_ = false;
    update();
    QPushButton::leaveEvent(event);
}

void lvButtons_H::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange) {
        hovering_ = isEnabled() && underMouse();
        update();
    } else if (event->type() == QEvent::FontChange) {
        updateGeometry();
    }
    QPushButton::changeEvent(event);
}

void lvButtons_H::keyPressEvent(QKeyEvent* event) {
    // Enter acts on the focused button, as Space does.
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && event->modifiers() == Qt::NoModifier &&
        isEnabled()) {
        animateClick();
        event->accept();
        return;
    }
    QPushButton::keyPressEvent(event);
}

bool lvButtons_H::hitButton(const QPoint& pos) const {
    if (s().ButtonShape != button::Custom || s().CustomClick != button::ShapeOnly || picture_.isNull())
        return rect().contains(pos);
    const QImage shape = picture_.scaled(size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation).toImage();
    return shape.valid(pos) && qAlpha(shape.pixel(pos)) > 0;
}

// ---- Size and drawing ----------------------------------------------------------

QPixmap lvButtons_H::scaledPicture() const {
    if (picture_.isNull()) return {};
    const qreal ratio = devicePixelRatioF();
    const int side = std::max(1, static_cast<int>(s().PictureSize));
    QPixmap scaled = picture_.scaled(QSize(side, side) * ratio, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    scaled.setDevicePixelRatio(ratio);
    return scaled;
}

QSize lvButtons_H::sizeHint() const {
    const QFontMetrics metrics(font());
    QString shown = text();
    shown.remove(QLatin1Char('&'));
    int width = metrics.horizontalAdvance(shown) + 2 * kPadding;
    int height = metrics.height() + 12;
    if (!picture_.isNull()) {
        const int side = s().PictureSize;
        if (s().PictureAlign == button::TopCentre || s().PictureAlign == button::BottomCentre) {
            width = std::max(width, side + 2 * kPadding);
            height += side + kGap;
        } else {
            width += side + kGap;
            height = std::max(height, side + 8);
        }
    }
    return {std::max(width, 72), height};
}

QSize lvButtons_H::minimumSizeHint() const { return sizeHint(); }

QRect lvButtons_H::pictureRect(const QRect& area, QRect* captionArea) const {
    *captionArea = area.adjusted(kPadding / 2, 0, -kPadding / 2, 0);
    if (picture_.isNull()) return {};
    const int side = s().PictureSize;
    QRect place(0, 0, side, side);
    switch (s().PictureAlign) {
        case button::TopCentre:
            place.moveCenter(QPoint(area.center().x(), 0));
            place.moveTop(area.top() + 4);
            captionArea->setTop(place.bottom() + kGap);
            break;
        case button::BottomCentre:
            place.moveCenter(QPoint(area.center().x(), 0));
            place.moveBottom(area.bottom() - 4);
            captionArea->setBottom(place.top() - kGap);
            break;
        case button::RightEdge:
        case button::RightOfCaption:
            place.moveCenter(QPoint(0, area.center().y()));
            place.moveRight(area.right() - kPadding / 2);
            captionArea->setRight(place.left() - kGap);
            break;
        default:  // left edge, left of the caption
            place.moveCenter(QPoint(0, area.center().y()));
            place.moveLeft(area.left() + kPadding / 2);
            captionArea->setLeft(place.right() + kGap);
            break;
    }
    return place;
}

void lvButtons_H::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const QColor fore = shownForeColour();
    const QColor back = shownBackColour();
    const QColor highlight = palette().color(QPalette::Highlight);
    const int shape = s().ButtonShape;

    if (shape == button::Custom && !picture_.isNull()) {
        // The picture is the button; its transparent parts show what lies behind.
        painter.drawPixmap(rect(), picture_);
        if (isDown()) painter.fillRect(rect(), QColor(0, 0, 0, 40));
    } else {
        QPainterPath outline;
        if (shape == button::Rounded) outline.addRoundedRect(frame, 6, 6);
        else if (shape == button::Oval) outline.addEllipse(frame);
        else outline.addRect(frame);

        if (s().ButtonStyle != button::Outline) {
            const int gradient = s().GradientMode;
            if (gradient != button::NoGradient && isEnabled()) {
                QLinearGradient fill;
                const QRectF r = frame;
                if (gradient == button::LeftToRight) fill = QLinearGradient(r.topLeft(), r.topRight());
                else if (gradient == button::RightToLeft) fill = QLinearGradient(r.topRight(), r.topLeft());
                else if (gradient == button::BottomToTop) fill = QLinearGradient(r.bottomLeft(), r.topLeft());
                else fill = QLinearGradient(r.topLeft(), r.bottomLeft());
                fill.setColorAt(0, back);
                fill.setColorAt(1, resolve(s().GradientColor));
                painter.fillPath(outline, fill);
            } else {
                painter.fillPath(outline, back);
            }
        }
        // The edge stands out from the face in light and dark palettes alike.
        QColor edge = mix(back, fore, 0.35);
        // The default button (pressed by Enter) and the one under the mouse show a highlighted edge.
        const bool marked = isEnabled() && (hovering_ || value() || isDefault());
        if (marked) edge = highlight;
        if (s().ButtonStyle == button::Raised && !isDown()) {
            painter.setPen(QPen(palette().color(QPalette::Light), 1));
            painter.drawLine(frame.topLeft(), frame.topRight());
            painter.drawLine(frame.topLeft(), frame.bottomLeft());
            painter.setPen(QPen(palette().color(QPalette::Shadow), 1));
            painter.drawLine(frame.bottomLeft(), frame.bottomRight());
            painter.drawLine(frame.topRight(), frame.bottomRight());
        } else {
            painter.setPen(QPen(edge, isDefault() && isEnabled() ? 2 : 1));
            painter.drawPath(outline);
        }
    }

    QRect area = rect();
    if (isDown()) area.translate(1, 1);
    QRect captionArea;
    const QRect pictureArea = pictureRect(area, &captionArea);
    if (!pictureArea.isNull() && shape != button::Custom) {
        const QPixmap shown = scaledPicture();
        QRect fitted(QPoint(), shown.deviceIndependentSize().toSize());
        fitted.moveCenter(pictureArea.center());
        if (isEnabled()) {
            painter.drawPixmap(fitted, shown);
        } else {
            painter.setOpacity(0.4);
            painter.drawPixmap(fitted, shown);
            painter.setOpacity(1);
        }
    }

    int flags = Qt::AlignVCenter | Qt::TextShowMnemonic;
    const int align = design_.effectiveCaptionAlign();
    flags |= align == button::AlignLeft ? Qt::AlignLeft : align == button::AlignRight ? Qt::AlignRight : Qt::AlignHCenter;
    painter.setFont(font());
    if (s().CaptionStyle != button::Plain && isEnabled()) {
        const bool embossed = s().CaptionStyle == button::Embossed;
        painter.setPen(embossed ? palette().color(QPalette::Light) : palette().color(QPalette::Dark));
        painter.drawText(captionArea.translated(1, 1), flags, text());
    }
    painter.setPen(fore);
    painter.drawText(captionArea, flags, text());

    design_.setDefault(isDefault());
    if (design_.showsFocusRect(hasFocus())) {
        QColor dotted = fore;
        dotted.setAlphaF(0.7f);
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setPen(QPen(dotted, 1, Qt::DotLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(rect().adjusted(3, 3, -4, -4));
    }
}

}  // namespace vantorel::ui
