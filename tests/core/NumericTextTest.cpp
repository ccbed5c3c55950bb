#include "core/NumericText.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

struct NumberCase {
    const char* text;
    long expected;
};

class SettingsNumericText : public ::testing::TestWithParam<NumberCase> {};

TEST_P(SettingsNumericText, TakesTheLeadingNumberRounded) { EXPECT_EQ(numericValue(GetParam().text), GetParam().expected); }

INSTANTIATE_TEST_SUITE_P(
    Texts, SettingsNumericText,
    ::testing::Values(NumberCase{"", 0}, NumberCase{"abc", 0}, NumberCase{"\0", 0}, NumberCase{"42", 42},
                      NumberCase{"  -17", -17}, NumberCase{"+8", 8}, NumberCase{"12abc", 12},
                      NumberCase{"3.7", 4}, NumberCase{"2.5", 2}, NumberCase{"3.5", 4}, NumberCase{"-2.5", -2},
                      NumberCase{".75", 1}, NumberCase{"1e3", 1000}, NumberCase{"1.5E1x", 15},
                      NumberCase{"7e", 7}, NumberCase{"-", 0}, NumberCase{".", 0}, NumberCase{"1 2", 1},
                      NumberCase{"99999999999", 2147483647}, NumberCase{"-99999999999", -2147483648L}));

}  // namespace
}  // namespace vantorel
