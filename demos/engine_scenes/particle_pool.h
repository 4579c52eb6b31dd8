#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// The point-sprite demo's particles on the processor: a fixed pool of slots that are born, age and die,
// and the three arrays the draw call reads (positions, colours, velocity with the age as its fourth value).
// Where a particle is at a given age is the vertex stage's business; the processor keeps only birth values.
// Nothing is allocated after construction.
class ParticlePool {
public:
    static constexpr int kDefaultSlots = 40100;
    static constexpr float kEmitRate = 10000.0f;  // particles a second
    static constexpr float kLifetime = 4.0f;      // seconds

    explicit ParticlePool(int slots = kDefaultSlots, uint32_t randomState = 1);

    // One frame of `dt` seconds: births at the emission rate (fractions carried to the next frame), deaths
    // at the end of life, and the arrays refilled with the living. Returns how many are to be drawn.
    int update(float dt);

    int slotCount() const { return int(m_age.size()); }
    int drawCount() const { return m_drawCount; }
    float emitRemainder() const { return m_emitRemainder; }
    const float* positions() const { return m_positions.data(); }
    const float* colors() const { return m_colors.data(); }
    const float* velocitiesAndAges() const { return m_velocityAge.data(); }

private:
    // The C library's generator's numbers scaled into [a, b].
    float _random(float a, float b);
    void _bear(size_t slot);

    std::vector<float> m_age;  // seconds; -1: a free slot
    std::vector<float> m_velocity;  // 4 a slot: the birth velocity
    std::vector<float> m_color;     // 4 a slot
    std::vector<float> m_positions;
    std::vector<float> m_colors;
    std::vector<float> m_velocityAge;
    float m_emitRemainder = 0.0f;
    int m_drawCount = 0;
    unsigned m_randomState;
};
