#include "results/RtfWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/CommandOutput.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

using ::testing::HasSubstr;

// What an independent reader (unrtf, a Debian package) makes of a document.
std::string readWithUnrtf(const std::string& rtf, const char* format) {
    test::TempTree tree;
    return test::commandOutput(std::string("unrtf --") + format + " '" + tree.write("doc.rtf", rtf) + "'").value_or("");
}

const StyledText kPreview = {
    {"/data/menu.txt  (1 Found)\r\n", kGrey, true},
    {"00000012", kBlue, true},
    {" | the ", kBlack, false},
    {"caf\xc3\xa9", kRed, true},
    {" costs \xe2\x82\xac 5 {x} \\ \xc4\x80\tend", kBlack, false},
};

TEST(RtfWriterTest, AnIndependentReaderSeesTheColoursWeightsAndCharacters) {
    const std::string html = readWithUnrtf(toRtf(kPreview), "html");
    ASSERT_THAT(html, HasSubstr("<body>")) << "unrtf is needed: make installs it";
    EXPECT_THAT(html, HasSubstr("<font color=\"#808080\"><b>/data/menu.txt"));
    EXPECT_THAT(html, HasSubstr("<font color=\"#0000ff\">00000012</font>"));
    EXPECT_THAT(html, HasSubstr("<font color=\"#ff0000\"><b>caf&eacute;</b></font>"));
    EXPECT_THAT(html, HasSubstr(" costs &euro; 5 {x} \\ &#256;"));
    EXPECT_THAT(html, HasSubstr("<font face=\"Arial\"><font size=\"2\">"));
}

TEST(RtfWriterTest, LineBreaksBecomeParagraphsAndTheTextSurvives) {
    const StyledText lines = {{"first line\r\nsecond\nthird\r\n", kBlack, false}};
    const std::string text = readWithUnrtf(toRtf(lines, "Courier New", 12), "text");
    EXPECT_THAT(text, HasSubstr("first line\nsecond\nthird\n"));
    EXPECT_EQ(toPlainText(kPreview),
              "/data/menu.txt  (1 Found)\r\n00000012 | the caf\xc3\xa9 costs \xe2\x82\xac 5 {x} \\ \xc4\x80\tend");
}

TEST(RtfWriterTest, OnlyANameEndingInLowerCaseRtfGetsRichText) {
    EXPECT_TRUE(savesAsRichText("/tmp/out.rtf"));
    EXPECT_TRUE(savesAsRichText("notes.myrtf"));
    EXPECT_FALSE(savesAsRichText("/tmp/out.RTF"));
    EXPECT_FALSE(savesAsRichText("/tmp/out.txt"));
    EXPECT_FALSE(savesAsRichText("rt"));
}

}  // namespace
}  // namespace vantorel
