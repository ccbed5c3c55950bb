#pragma once
// What the options dialog shows and edits, held as the texts of its boxes and
// the ticks of its check boxes, with the rules the dialog follows: the three
// number boxes are rewritten while the user types, and Apply turns the
// fields back into settings.

#include <string>
#include <string_view>
#include <vector>

#include "settings/AppSettings.h"

namespace vantorel {

struct OptionsFields {
    std::string hitsPerPage;   // HppTxt
    std::string charsAround;   // EndPrevTxt
    std::string charsBetween;  // BetPrevTxt
    bool scanSubfolders = true;
    bool skipVersionControl = true;
    bool makeBackups = false;
    bool clearExtractText = true;
    bool showLineNumbers = true;
    std::string fontName;  // Combo1
    std::string fontSize;  // Combo2
    std::string undoRuns;  // UndoRunsTxt

    // What the dialog shows when it opens.
    static OptionsFields from(const AppSettings& settings);

    // Apply, in this order: an empty font box becomes "Arial" (here too, so
    // that the box shows it) and is taken as the font; the size box; the
    // three numbers; the ticks. A size that is not a number of at least 1
    // keeps the size the settings had. True when the preview must be brought
    // up to date because it shows one file at a time (PreviewAll off).
    bool applyTo(AppSettings& settings);

    bool operator==(const OptionsFields&) const = default;
};

// The smallest values the number boxes accept.
inline constexpr long kLeastHitsPerPage = 1;
inline constexpr long kLeastCharacters = 0;

// What a number box shows after each change: the decimal text of the typed
// text's leading numeric value, "0" for text that is not a number, raised
// to `least` when below it. There is no upper limit.
std::string numberBoxText(std::string_view typed, long least);

// The sizes offered for the preview font: 10, 12, ... 40.
std::vector<std::string> previewFontSizes();

}  // namespace vantorel
