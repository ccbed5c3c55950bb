#pragma once
// The program's own button: a push button, a check button or an option
// button, flat and rectangular by default, drawn in colours taken from the
// desktop's palette (or set per button) that change while the mouse is over
// it. Its properties and stored settings follow ButtonDesign; setting a
// property in a way that cannot apply emits designNotice with the text to
// show, and the property keeps what it can.
//
// Option-mode buttons with the same parent form a group: when one member's
// Value becomes true, the others' become false. Check and option buttons
// toggle on a click, on Space and on Enter; push buttons click on all three.
// The check and option modes are kept for compatibility with the program's
// published interface; the program's windows use push buttons only
// (lvButtons_HModes.cpp).
// Screen readers see a button, check box or radio button named by its caption.

#include <QPixmap>
#include <QPushButton>
#include <cstdint>

#include "appearance/ButtonDesign.h"

namespace vantorel::ui {

class lvButtons_H : public QPushButton {
    Q_OBJECT
    Q_PROPERTY(int ButtonStyle READ buttonStyle WRITE setButtonStyle)
    Q_PROPERTY(int Mode READ mode WRITE setMode)
    Q_PROPERTY(QString Caption READ caption WRITE setCaption)
    Q_PROPERTY(int CaptionAlign READ captionAlign WRITE setCaptionAlign)
    Q_PROPERTY(int CaptionStyle READ captionStyle WRITE setCaptionStyle)
    Q_PROPERTY(int CustomClick READ customClick WRITE setCustomClick)
    Q_PROPERTY(int ButtonShape READ buttonShape WRITE setButtonShape)
    Q_PROPERTY(QString Picture READ picture WRITE setPicture)
    Q_PROPERTY(int PictureAlign READ pictureAlign WRITE setPictureAlign)
    Q_PROPERTY(bool Enabled READ isEnabled WRITE setEnabled)
    Q_PROPERTY(bool ShowFocusRect READ showFocusRect WRITE setShowFocusRect)
    Q_PROPERTY(bool Value READ value WRITE setValue)
    Q_PROPERTY(int PictureSize READ pictureSize WRITE setPictureSize)
    Q_PROPERTY(int MousePointer READ mousePointer WRITE setMousePointer)
    Q_PROPERTY(QString MouseIcon READ mouseIcon WRITE setMouseIcon)
    Q_PROPERTY(QFont Font READ font WRITE setButtonFont)
    Q_PROPERTY(int FontStyle READ fontStyle WRITE setFontStyle)
    Q_PROPERTY(uint ForeColor READ foreColor WRITE setForeColor)
    Q_PROPERTY(uint BackColor READ backColor WRITE setBackColor)
    Q_PROPERTY(uint GradientColor READ gradientColor WRITE setGradientColor)
    Q_PROPERTY(int GradientMode READ gradientMode WRITE setGradientMode)
    Q_PROPERTY(bool ResetDefaultColors READ resetDefaultColors WRITE setResetDefaultColors)
    Q_PROPERTY(int HoverColorLocks READ hoverColorLocks WRITE setHoverColorLocks)
    Q_PROPERTY(uint HoverForeColor READ hoverForeColor WRITE setHoverForeColor)
    Q_PROPERTY(uint HoverBackColor READ hoverBackColor WRITE setHoverBackColor)
    Q_PROPERTY(quintptr hDC READ hDC)
    Q_PROPERTY(quintptr hwnd READ hwnd)

public:
    // FontStyle's bits.
    enum FontStyleBits { Bold = 1, Italic = 2, Underline = 4, Strikeout = 8 };

    explicit lvButtons_H(QWidget* parent = nullptr);

    // How every window makes its buttons: named, captioned ("&" marks the
    // access key) and in the given mode.
    static lvButtons_H* create(QWidget* parent, const QString& objectName, const QString& caption,
                               std::int16_t mode = button::Push);

    // The stored settings, and putting them on the button as they are.
    ButtonSettings settings() const;
    void applySettings(const ButtonSettings& settings);

    int buttonStyle() const { return s().ButtonStyle; }
    void setButtonStyle(int style);
    int mode() const { return s().Mode; }
    void setMode(int mode);
    QString caption() const { return text(); }
    void setCaption(const QString& caption);
    int captionAlign() const { return s().CaptionAlign; }
    void setCaptionAlign(int align);
    int captionStyle() const { return s().CaptionStyle; }
    void setCaptionStyle(int style);
    int customClick() const { return s().CustomClick; }
    void setCustomClick(int value);
    int buttonShape() const { return s().ButtonShape; }
    void setButtonShape(int shape);
    QString picture() const { return QString::fromStdString(s().Picture); }
    void setPicture(const QString& file);
    int pictureAlign() const { return s().PictureAlign; }
    void setPictureAlign(int align);
    bool showFocusRect() const { return s().ShowFocusRect; }
    void setShowFocusRect(bool on);
    // Check and option modes only (lvButtons_HModes.cpp).
    bool value() const { return isCheckable() && isChecked(); }
    void setValue(bool on);
    int pictureSize() const { return s().PictureSize; }
    void setPictureSize(int size);
    int mousePointer() const { return s().MousePointer; }
    void setMousePointer(int pointer);
    QString mouseIcon() const { return QString::fromStdString(s().MouseIcon); }
    void setMouseIcon(const QString& file);
    void setButtonFont(const QFont& font);
    int fontStyle() const;
    void setFontStyle(int bits);
    uint foreColor() const { return s().ForeColor; }
    void setForeColor(uint colour);
    uint backColor() const { return s().BackColor; }
    void setBackColor(uint colour);
    uint gradientColor() const { return s().GradientColor; }
    void setGradientColor(uint colour);
    int gradientMode() const { return s().GradientMode; }
    void setGradientMode(int mode);
    bool resetDefaultColors() const { return false; }
    void setResetDefaultColors(bool reset);
    int hoverColorLocks() const { return s().HoverColorLocks; }
    void setHoverColorLocks(int locks);
    uint hoverForeColor() const { return s().HoverForeColor; }
    void setHoverForeColor(uint colour);
    uint hoverBackColor() const { return s().HoverBackColor; }
    void setHoverBackColor(uint colour);
    // The native window, when the button has one; there are no device contexts here (0).
    quintptr hDC() const { return 0; }
    quintptr hwnd() const;

    Q_INVOKABLE void Refresh();
    // While on, the button is not redrawn; turning it off draws it once.
    Q_INVOKABLE void DelayDrawing(bool delay);

    // A colour of the stored settings as this button's palette shows it.
    QColor resolve(ButtonColour colour) const;
    // The colours the button is drawn with now (caption, background).
    QColor shownForeColour() const;
    QColor shownBackColour() const;
    bool isHovering() const noexcept { return hovering_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void designNotice(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void nextCheckState() override;  // lvButtons_HModes.cpp
    bool hitButton(const QPoint& pos) const override;

private:
    const ButtonSettings& s() const noexcept { return design_.settings(); }
    void notice(const ButtonDesign::Notice& text);
    void syncMode();
    void syncCursor();
    void syncFontSetting();
    void loadPicture();
    void changed();
    QPixmap scaledPicture() const;
    QRect pictureRect(const QRect& area, QRect* captionArea) const;

    ButtonDesign design_;
    QPixmap picture_;
    bool hovering_ = false;
    bool delayed_ = false;
};

}  // namespace vantorel::ui
