#include "appearance/ButtonDesign.h"

#include <algorithm>
#include <cctype>

namespace vantorel {

const char* const kCaptionAlignNotice =
    "When button images are aligned top/bottom center, \r\nbutton captions can only be center aligned";
const char* const kCustomClickNotice = "This property has no effect unless the Button Shape is a custom shape.";
const char* const kPictureFirstNotice = "The Picture Property must be assigned first and must be a bitmap or JPEG.";
const char* const kIconShapeNotice =
    "Icons cannot be used for custom buttons. Only use bitmaps or JPEGs.\r\nButton was changed to Rectangular shaped.";
const char* const kFocusRectNotice =
    "The focus rectangle may appear on default buttons ONLY while in design mode, \r\nbut will not appear when the "
    "form is running.";
const char* const kValueNotice = "This property is not applicable for command button modes.";
const char* const kPictureSizeNotice = "The picture size cannot be changed for Shaped buttons";

namespace {

bool pictureAboveOrBelow(std::int16_t align) { return align == button::TopCentre || align == button::BottomCentre; }

}  // namespace

bool ButtonDesign::isIcon(std::string_view picture) {
    const std::size_t dot = picture.rfind('.');
    if (dot == std::string_view::npos || picture.find('/', dot) != std::string_view::npos) return false;
    std::string extension(picture.substr(dot + 1));
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == "ico" || extension == "cur";
}

ButtonDesign::Notice ButtonDesign::setCaptionAlign(std::int16_t align) {
    if (align != button::AlignCentre && pictureAboveOrBelow(settings_.PictureAlign)) return kCaptionAlignNotice;
    settings_.CaptionAlign = align;
    return std::nullopt;
}

ButtonDesign::Notice ButtonDesign::setCustomClick(std::int16_t value) {
    settings_.CustomClick = value;
    if (value != button::WholeButton && settings_.ButtonShape != button::Custom) return kCustomClickNotice;
    return std::nullopt;
}

ButtonDesign::Notice ButtonDesign::setButtonShape(std::int16_t shape) {
    if (shape == button::Custom) {
        if (settings_.Picture.empty()) return kPictureFirstNotice;
        if (isIcon(settings_.Picture)) {
            settings_.ButtonShape = button::Rectangular;
            return kIconShapeNotice;
        }
    }
    settings_.ButtonShape = shape;
    return std::nullopt;
}

ButtonDesign::Notice ButtonDesign::setPicture(const std::string& picture) {
    settings_.Picture = picture;
    if (settings_.ButtonShape != button::Custom) return std::nullopt;
    if (picture.empty()) {
        settings_.ButtonShape = button::Rectangular;  // nothing left to take the shape from
        return std::nullopt;
    }
    if (isIcon(picture)) {
        settings_.ButtonShape = button::Rectangular;
        return kIconShapeNotice;
    }
    return std::nullopt;
}

ButtonDesign::Notice ButtonDesign::setShowFocusRect(bool on) {
    settings_.ShowFocusRect = on;
    if (on && default_) return kFocusRectNotice;
    return std::nullopt;
}

ButtonDesign::Notice ButtonDesign::setValue(bool on) {
    if (settings_.Mode == button::Push) return kValueNotice;
    settings_.Value = on;
    return std::nullopt;
}

ButtonDesign::Notice ButtonDesign::setPictureSize(std::int16_t size) {
    if (settings_.ButtonShape != button::Rectangular) return kPictureSizeNotice;
    settings_.PictureSize = size;
    return std::nullopt;
}

void ButtonDesign::setMode(std::int16_t mode) {
    settings_.Mode = mode;
    if (mode == button::Push) settings_.Value = false;
}

void ButtonDesign::resetDefaultColors() {
    const ButtonSettings defaults;
    settings_.ForeColor = defaults.ForeColor;
    settings_.BackColor = defaults.BackColor;
    settings_.GradientColor = defaults.GradientColor;
    settings_.HoverForeColor = defaults.HoverForeColor;
    settings_.HoverBackColor = defaults.HoverBackColor;
}

ButtonColours ButtonDesign::colours(bool hovering) const {
    if (!hovering) return {settings_.ForeColor, settings_.BackColor};
    const std::int16_t locks = settings_.HoverColorLocks;
    return {(locks & button::KeepForeColour) ? settings_.ForeColor : settings_.HoverForeColor,
            (locks & button::KeepBackColour) ? settings_.BackColor : settings_.HoverBackColor};
}

std::int16_t ButtonDesign::effectiveCaptionAlign() const noexcept {
    return pictureAboveOrBelow(settings_.PictureAlign) ? std::int16_t{button::AlignCentre} : settings_.CaptionAlign;
}

}  // namespace vantorel
