#include "results/RtfReader.h"

#include <gtest/gtest.h>

#include "support/TempTree.h"

namespace vantorel {
namespace {

TEST(RtfReader, ReadsTextBoldColoursAndBreaksAndRefusesWhatIsNotRtf) {
    const std::string rtf =
        "{\\rtf1\\ansi\\ansicpg1252{\\fonttbl{\\f0 Arial;}}{\\colortbl ;\\red0\\green0\\blue255;"
        "\\red128\\green128\\blue128;}\n{\\*\\generator Writer;}\\f0\\fs20 "
        "Plain {\\b bold}\\par\n\\cf1 blue\\cf0 \\b x\\b0\\tab y\\line caf\\'e9 \\u8364?\\{\\}\\\\}";
    const StyledText text = RtfReader::read(rtf);
    const StyledText expected = {
        {"Plain ", kBlack, false},
        {"bold", kBlack, true},
        {"\r\n", kBlack, false},
        {"blue", 0xFF0000, false},
        {"x", kBlack, true},
        {"\ty\r\ncaf\xC3\xA9 \xE2\x82\xAC{}\\", kBlack, false},
    };
    EXPECT_EQ(text, expected);

    EXPECT_THROW(RtfReader::read("plain text"), std::invalid_argument);
    EXPECT_THROW(RtfReader::read("{\\rtf1 open group"), std::invalid_argument);
}

TEST(RtfReader, TheShippedIntroductionReads) {
    const std::string bytes = test::fileText(VANTOREL_DATA_DIR "/intro.rtf");
    ASSERT_FALSE(bytes.empty());
    const StyledText text = RtfReader::read(bytes);
    std::string all;
    bool anyBold = false;
    for (const StyledRun& run : text) {
        all += run.text;
        anyBold = anyBold || run.bold;
    }
    EXPECT_NE(all.find("Vantorel"), std::string::npos);
    EXPECT_TRUE(anyBold);
    EXPECT_EQ(all.find('\\'), std::string::npos) << "a control word leaked into the text";
}

}  // namespace
}  // namespace vantorel
