#include "settings/OptionsFields.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

TEST(OptionsFields, NumberBoxesShowTheLeadingNumberAtLeastTheirLeast) {
    const struct {
        const char* typed;
        long least;
        const char* shown;
    } cases[] = {
        {"abc", kLeastCharacters, "0"}, {"abc", kLeastHitsPerPage, "1"}, {"", kLeastCharacters, "0"},
        {"0", kLeastHitsPerPage, "1"}, {"0", kLeastCharacters, "0"}, {"-5", kLeastCharacters, "0"},
        {"250px", kLeastHitsPerPage, "250"}, {"7.6", kLeastCharacters, "8"}, {"1e6", kLeastHitsPerPage, "1000000"},
        {"99999999999", kLeastCharacters, "2147483647"}};
    for (const auto& c : cases) EXPECT_EQ(numberBoxText(c.typed, c.least), c.shown) << c.typed;
}

TEST(OptionsFields, ApplyTakesEveryFieldAndFillsAnEmptyFontBox) {
    AppSettings settings;
    OptionsFields fields = OptionsFields::from(settings);
    fields.fontName = "";
    fields.fontSize = "14";
    fields.hitsPerPage = "5";
    fields.charsAround = "0";
    fields.charsBetween = "120";
    fields.scanSubfolders = false;
    fields.skipVersionControl = false;
    fields.makeBackups = true;
    fields.clearExtractText = false;
    fields.showLineNumbers = false;
    fields.undoRuns = "3";
    EXPECT_FALSE(fields.applyTo(settings));  // the combined preview is built by the next run
    EXPECT_EQ(fields.fontName, "Arial");
    EXPECT_EQ(OptionsFields::from(settings), fields);

    settings.PreviewAll = false;
    fields.fontSize = "large";  // not a size: the size stays
    EXPECT_TRUE(fields.applyTo(settings));
    EXPECT_EQ(settings.PreviewFontSize, 14);
}

}  // namespace
}  // namespace vantorel
