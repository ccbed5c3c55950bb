#pragma once
// The rules of the program's own button (lvButtons_H) over its settings: the
// notices given when a property is set in a way that cannot apply (and what
// the property then holds), which colours the button shows, and when its
// focus rectangle is drawn. The button widget holds one and draws from it.

#include <optional>
#include <string>
#include <string_view>

#include "appearance/ButtonSettings.h"

namespace vantorel {

struct ButtonColours {
    ButtonColour fore;
    ButtonColour back;
    bool operator==(const ButtonColours&) const = default;
};

class ButtonDesign {
public:
    using Notice = std::optional<std::string>;

    ButtonDesign() = default;
    explicit ButtonDesign(ButtonSettings settings) : settings_(std::move(settings)) {}

    const ButtonSettings& settings() const noexcept { return settings_; }
    ButtonSettings& settings() noexcept { return settings_; }

    // A default button (the one Enter presses) never shows a focus rectangle.
    bool isDefault() const noexcept { return default_; }
    void setDefault(bool on) noexcept { default_ = on; }

    // Each setter returns the notice to show, if any. A refused value leaves
    // the property as it was.
    Notice setCaptionAlign(std::int16_t align);     // refused unless centred when the picture is top/bottom centre
    Notice setCustomClick(std::int16_t value);      // kept; a notice unless custom-shaped
    Notice setButtonShape(std::int16_t shape);      // Custom needs a picture that is not an icon
    Notice setPicture(const std::string& picture);  // an icon turns a custom shape rectangular
    Notice setShowFocusRect(bool on);               // kept; a notice on a default button
    Notice setValue(bool on);                       // refused on a push button
    Notice setPictureSize(std::int16_t size);       // refused on a shaped button
    // A push button has no value.
    void setMode(std::int16_t mode);
    // Puts the colours back to their defaults.
    void resetDefaultColors();

    // The colours to draw with, in or out of the hover state.
    ButtonColours colours(bool hovering) const;
    bool showsFocusRect(bool hasFocus) const noexcept { return hasFocus && settings_.ShowFocusRect && !default_; }
    // The picture aligned above or below the caption forces a centred caption.
    std::int16_t effectiveCaptionAlign() const noexcept;

    // Icons (.ico, .cur) cannot give a button its shape.
    static bool isIcon(std::string_view picture);

private:
    ButtonSettings settings_;
    bool default_ = false;
};

extern const char* const kCaptionAlignNotice;
extern const char* const kCustomClickNotice;
extern const char* const kPictureFirstNotice;
extern const char* const kIconShapeNotice;
extern const char* const kFocusRectNotice;
extern const char* const kValueNotice;
extern const char* const kPictureSizeNotice;

}  // namespace vantorel
