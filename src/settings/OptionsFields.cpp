#include "settings/OptionsFields.h"

#include <algorithm>

#include "settings/NumericText.h"

namespace vantorel {

OptionsFields OptionsFields::from(const AppSettings& settings) {
    OptionsFields fields;
    fields.hitsPerPage = std::to_string(settings.HitsPerPage);
    fields.charsAround = std::to_string(settings.CharsAround);
    fields.charsBetween = std::to_string(settings.CharsBetween);
    fields.scanSubfolders = settings.ScanSubfolders;
    fields.skipVersionControl = settings.SkipVersionControl;
    fields.makeBackups = settings.MakeBackups;
    fields.clearExtractText = settings.ClearExtractText;
    fields.showLineNumbers = settings.ShowLineNumbers;
    fields.fontName = settings.PreviewFontName;
    fields.fontSize = std::to_string(settings.PreviewFontSize);
    fields.undoRuns = std::to_string(settings.UndoRuns);
    return fields;
}

bool OptionsFields::applyTo(AppSettings& settings) {
    if (fontName.empty()) fontName = "Arial";
    settings.PreviewFontName = fontName;
    if (const long size = numericValue(fontSize); size >= 1) settings.PreviewFontSize = size;
    settings.HitsPerPage = std::max(numericValue(hitsPerPage), kLeastHitsPerPage);
    settings.CharsAround = std::max(numericValue(charsAround), kLeastCharacters);
    settings.CharsBetween = std::max(numericValue(charsBetween), kLeastCharacters);
    settings.ScanSubfolders = scanSubfolders;
    settings.SkipVersionControl = skipVersionControl;
    settings.MakeBackups = makeBackups;
    settings.ClearExtractText = clearExtractText;
    settings.ShowLineNumbers = showLineNumbers;
    settings.UndoRuns = std::max(numericValue(undoRuns), 0L);
    return !settings.PreviewAll;
}

std::string numberBoxText(std::string_view typed, long least) {
    return std::to_string(std::max(numericValue(typed), least));
}

std::vector<std::string> previewFontSizes() {
    std::vector<std::string> sizes;
    for (int size = 10; size <= 40; size += 2) sizes.push_back(std::to_string(size));
    return sizes;
}

}  // namespace vantorel
