#include <gtest/gtest.h>

#include <vector>

#include "demos/gl_utility/context_attempts.h"
#include "demos/gl_utility/sample_choice.h"

namespace {

FramebufferConfigTraits windowConfig(int id, int samples, unsigned long visual = 0x21) {
    FramebufferConfigTraits t;
    t.id = id;
    t.rendersOpenGl = true;
    t.window = true;
    t.colorBits = 32;
    t.depthBits = 24;
    t.stencilBits = 8;
    t.sampleBuffers = samples > 0 ? 1 : 0;
    t.samples = samples;
    t.visualId = visual;
    return t;
}

TEST(ContextAttempts, ADriverRefusingTheVersionGetsLowerMinorsWithProfileThenWithoutThenAPlainContext) {
    std::vector<ContextAttempt> tried;
    const int chosen = createByAttempts(3, 2, [&](const ContextAttempt& attempt) {
        tried.push_back(attempt);
        return attempt.plain;  // a driver that refuses every versioned request
    });
    ASSERT_EQ(tried.size(), 7u);
    EXPECT_EQ(chosen, 6);
    const int expectedMinors[] = {2, 1, 0, 2, 1, 0};
    for (size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(tried[i].major, 3) << i;  // the major version is never lowered
        EXPECT_EQ(tried[i].minor, expectedMinors[i]) << i;
        EXPECT_EQ(tried[i].compatibilityProfile, i < 3) << i;
        EXPECT_FALSE(tried[i].plain) << i;
    }
    EXPECT_TRUE(tried[6].plain);

    // A driver with 3.1 but not 3.2 stops at the second attempt.
    tried.clear();
    EXPECT_EQ(createByAttempts(3, 2, [&](const ContextAttempt& attempt) {
                  tried.push_back(attempt);
                  return !attempt.plain && attempt.minor <= 1;
              }),
              1);
    EXPECT_EQ(tried.back().minor, 1);
    EXPECT_TRUE(tried.back().compatibilityProfile);

    // Nothing at all: -1 after every attempt.
    EXPECT_EQ(createByAttempts(4, 0, [](const ContextAttempt&) { return false; }), -1);
}

TEST(ContextAttempts, BelowVersionThreeOnlyThePlainContextIsAskedFor) {
    const std::vector<ContextAttempt> attempts = contextAttempts(2, 0);
    ASSERT_EQ(attempts.size(), 1u);
    EXPECT_TRUE(attempts[0].plain);
}

TEST(MultisampleChoice, AnExactMatchWinsElseTheMostSamplesEvenAboveTheRequest) {
    const std::vector<FramebufferConfigTraits> offered = {windowConfig(1, 0), windowConfig(2, 2), windowConfig(3, 4),
                                                          windowConfig(4, 8), windowConfig(5, 4)};
    EXPECT_EQ(offered[size_t(chooseMultisampleConfig(offered, 4, 0))].id, 3);  // the first exact match
    EXPECT_EQ(offered[size_t(chooseMultisampleConfig(offered, 3, 0))].id, 4);  // 3 on 2, 4 and 8 gives 8
    EXPECT_EQ(offered[size_t(chooseMultisampleConfig(offered, 16, 0))].id, 4);
    EXPECT_EQ(chooseMultisampleConfig({windowConfig(1, 0)}, 4, 0), -1);
}

TEST(MultisampleChoice, OnlyFullWindowConfigsOfTheWindowsVisualCount) {
    std::vector<FramebufferConfigTraits> offered = {windowConfig(1, 8, 0x22), windowConfig(2, 2, 0x21)};
    EXPECT_EQ(offered[size_t(chooseMultisampleConfig(offered, 8, 0x21))].id, 2);
    FramebufferConfigTraits shallow = windowConfig(3, 8, 0x21);
    shallow.depthBits = 16;
    FramebufferConfigTraits noStencil = windowConfig(4, 8, 0x21);
    noStencil.stencilBits = 0;
    FramebufferConfigTraits offscreenOnly = windowConfig(5, 8, 0x21);
    offscreenOnly.window = false;
    FramebufferConfigTraits rgb24 = windowConfig(6, 8, 0x21);
    rgb24.colorBits = 24;
    offered = {shallow, noStencil, offscreenOnly, rgb24};
    EXPECT_EQ(chooseMultisampleConfig(offered, 8, 0x21), -1);
}

TEST(MultisampleChoice, FramebufferSampleCountsFollowTheSameRule) {
    EXPECT_EQ(chooseSampleCount({2, 4, 8}, 4), 4);
    EXPECT_EQ(chooseSampleCount({8, 4, 2}, 3), 8);
    EXPECT_EQ(chooseSampleCount({4}, 16), 4);
    EXPECT_EQ(chooseSampleCount({}, 4), 0);
}

}  // namespace
