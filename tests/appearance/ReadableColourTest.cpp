#include "appearance/ReadableColour.h"

#include <gtest/gtest.h>

#include "core/StyledText.h"

namespace vantorel {
namespace {

constexpr std::uint32_t kWhite = 0xFFFFFF;

TEST(ReadableColour, ContrastFollowsTheGuidelines) {
    EXPECT_NEAR(contrastRatio(kBlack, kWhite), 21.0, 1e-9);
    EXPECT_NEAR(contrastRatio(kWhite, kBlack), 21.0, 1e-9);
    EXPECT_NEAR(contrastRatio(kRed, kWhite), 4.0, 0.01);
    EXPECT_NEAR(contrastRatio(kGrey, kGrey), 1.0, 1e-9);
}

TEST(ReadableColour, ThePreviewColoursDarkenJustEnoughOnWhiteAndBrightenOnDarkPages) {
    for (const std::uint32_t colour : {kBlue, kBlack}) EXPECT_EQ(readableColour(colour, kWhite), colour);
    for (const std::uint32_t page : {kWhite, 0x000000u, 0x1E1E1Eu, 0x2D2D2Du, 0x3C3F41u})
        for (const std::uint32_t colour : {kRed, kBlue, kGrey, kBlack}) {
            const std::uint32_t shown = readableColour(colour, page);
            EXPECT_GE(contrastRatio(shown, page), kLeastTextContrast) << std::hex << colour << " on " << page;
            if (shown != colour) EXPECT_LT(contrastRatio(shown, page), kLeastTextContrast + 0.2);  // just enough
            if (colour == kBlue) EXPECT_GT((shown >> 16) & 0xFF, shown & 0xFF);  // still blue
        }
    // Towards black on a pale page that is not white.
    EXPECT_EQ(readableColour(0xC0C0C0, 0xF0F0F0) & 0xFF, readableColour(0xC0C0C0, 0xF0F0F0) >> 16);
    EXPECT_LT(readableColour(0xC0C0C0, 0xF0F0F0) & 0xFF, 0xC0u);
}

}  // namespace
}  // namespace vantorel
