// What the engine demos decide on the processor: the particle pool's births and deaths, and how the
// asteroid belt is cut into instanced draws.
#include <gtest/gtest.h>

#include <cmath>

#include "demos/engine_scenes/instancing_batches.h"
#include "demos/engine_scenes/particle_pool.h"

TEST(ParticlePool, FramesShorterThanOneBirthStillEmitOnceTheirFractionsAddUp) {
    ParticlePool pool(100);
    // 10,000 a second for 40 microseconds is 0.4 of a particle: nothing, then nothing, then the third frame
    // carries 1.2 and bears one.
    EXPECT_EQ(pool.update(0.00004f), 0);
    EXPECT_EQ(pool.update(0.00004f), 0);
    EXPECT_EQ(pool.update(0.00004f), 1);
    EXPECT_NEAR(pool.emitRemainder(), 0.2f, 1e-3f);
    // A frame that went backwards, or a NaN, bears nothing and ages nothing.
    EXPECT_EQ(pool.update(-1.0f), 1);
    EXPECT_EQ(pool.update(std::nanf("")), 1);
}

TEST(ParticlePool, AFullPoolMakesBirthsWaitAndADeadSlotIsBornAgainInTheSamePass) {
    ParticlePool pool(50);
    EXPECT_EQ(pool.update(0.125f), 50);  // 1,250 wanted, fifty slots
    // Nothing dies before its fourth second: the pool stays full, and the births of these frames are lost
    // rather than queued.
    for (int frame = 0; frame < 31; ++frame) EXPECT_EQ(pool.update(0.125f), 50) << frame;
    EXPECT_EQ(pool.velocitiesAndAges()[3], 3.875f);
    // All fifty reached 4.0 seconds: each dies on this pass and is born again at once, with age 0.
    EXPECT_EQ(pool.update(0.125f), 50);
    const float* velocityAge = pool.velocitiesAndAges();
    for (int i = 0; i < 50; ++i) ASSERT_EQ(velocityAge[i * 4 + 3], 0.0f) << i;
}

TEST(ParticlePool, ParticlesLeaveUpwardsFromTheEmitterWithTheirAgesInTheFourthPlace) {
    ParticlePool pool(ParticlePool::kDefaultSlots);
    pool.update(0.5f);  // 5,000 births
    ASSERT_EQ(pool.drawCount(), 5000);
    pool.update(0.5f);
    ASSERT_EQ(pool.drawCount(), 10000);
    for (int i = 0; i < pool.drawCount(); ++i) {
        const float* v = pool.velocitiesAndAges() + i * 4;
        const float* p = pool.positions() + i * 4;
        const float* c = pool.colors() + i * 4;
        ASSERT_GT(v[1], 0.0f);
        ASSERT_LT(std::hypot(v[0], v[2]), v[1]);  // a lean, never more sideways than up
        ASSERT_TRUE(v[3] == 0.0f || v[3] == 0.5f) << v[3];
        ASSERT_EQ(p[0], 0.0f);
        ASSERT_EQ(p[3], 1.0f);
        ASSERT_GE(c[0], 0.8f);
        ASSERT_EQ(c[3], 1.0f);
    }
    // About 40,000 alive once births and deaths balance, never more than the pool.
    for (int frame = 0; frame < 200; ++frame) pool.update(0.05f);
    EXPECT_GE(pool.drawCount(), 39500);
    EXPECT_LE(pool.drawCount(), ParticlePool::kDefaultSlots);
}

TEST(InstancingBatches, FewVertexUniformsMeanMoreDraws) {
    // 1,024 components hold 128 asteroids a draw: 79 draws for 10,000.
    const InstancingBatches few = instancingBatches(10000, 1024, 0);
    EXPECT_EQ(few.batchSize, 128);
    EXPECT_EQ(few.calls, 79);
    // Plenty of components: the program's 400 entries are the limit; on vendor 2 its 64.
    EXPECT_EQ(instancingBatches(10000, 16384, 1).calls, 25);
    EXPECT_EQ(instancingBatches(10000, 16384, 2).calls, 157);
    // A driver answering nothing still draws every asteroid, one a draw.
    const InstancingBatches none = instancingBatches(10000, 0, 0);
    EXPECT_EQ(none.batchSize, 1);
    EXPECT_EQ(none.calls, 10000);
}
