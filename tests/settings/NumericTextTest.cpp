#include "settings/NumericText.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

TEST(NumericText, TakesTheLeadingNumberRounded) {
    const std::pair<const char*, long> cases[] = {
        {"", 0}, {"abc", 0}, {"\0", 0}, {"42", 42}, {"  -17", -17}, {"+8", 8}, {"12abc", 12}, {"3.7", 4}, {"2.5", 2},
        {"3.5", 4}, {"-2.5", -2}, {".75", 1}, {"1e3", 1000}, {"1.5E1x", 15}, {"7e", 7}, {"-", 0}, {".", 0},
        {"1 2", 1}, {"99999999999", 2147483647}, {"-99999999999", -2147483648L}};
    for (const auto& [text, value] : cases) EXPECT_EQ(numericValue(text), value) << text;
}

}  // namespace
}  // namespace vantorel
