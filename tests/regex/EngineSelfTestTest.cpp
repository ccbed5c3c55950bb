#include "regex/EngineSelfTest.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

TEST(EngineSelfTestTest, PassesWithAWorkingEngineAndExplainsAFailure) {
    EXPECT_EQ(EngineSelfTest(), std::nullopt);
    const auto failure = EngineSelfTest("(unbalanced");
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->text,
              "Error starting the Regular Expression Engine.\r\n\r\nVantorel requires Windows Script. Search "
              "for 'Windows script download' in your favourite search engine...");
    EXPECT_EQ(failure->icon, MessageIcon::Critical);
}

}  // namespace
}  // namespace vantorel
