#pragma once
// The message host of the engine's tests, which checks that every question
// carries the question icon.

#include <gtest/gtest.h>

#include "support/Answering.h"

namespace vantorel::test {

struct ScriptedMessages : Answering<> {
    bool askYesNo(const Message& question) override {
        EXPECT_EQ(question.icon, MessageIcon::Question);
        return Answering::askYesNo(question);
    }
};

}  // namespace vantorel::test
