#pragma once
// Styled text as a rich-text (RTF) document that word processors read with
// its colours and bold, and as plain text.

#include <string>
#include <string_view>

#include "core/StyledText.h"

namespace vantorel {

// An RTF document of the runs, in the given font (points).
std::string toRtf(const StyledText& text, std::string_view fontName = "Arial", int fontPoints = 10);

// The runs' text alone.
std::string toPlainText(const StyledText& text);

// Whether a file chosen in a save dialog gets rich text: when the last three
// characters of its name are "rtf", compared with regard to case, as the
// program has always done ("a.rtf" yes; "a.RTF" and "a.txt" no).
bool savesAsRichText(std::string_view path);

// What a file chosen in a save dialog gets: an RTF document in the font
// (at least 1 point) when savesAsRichText(path), otherwise the plain text.
std::string bytesToSave(std::string_view path, const StyledText& text, std::string_view fontName, int fontPoints);

}  // namespace vantorel
