#pragma once
// Reads the part of RTF that the preview pane shows: text, paragraph and line
// breaks, tabs, bold, and colours from the colour table. Character escapes
// (\'hh in Windows-1252, \uN) are decoded; fonts, sizes, pictures and other
// destinations are skipped.

#include <string_view>

#include "core/StyledText.h"

namespace vantorel {

class RtfReader {
public:
    // Throws std::invalid_argument when the text is not RTF ("{\rtf" first)
    // or its groups do not balance.
    static StyledText read(std::string_view rtf);
};

}  // namespace vantorel
