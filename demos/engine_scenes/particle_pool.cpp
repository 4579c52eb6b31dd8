#include "demos/engine_scenes/particle_pool.h"

#include <cmath>
#include <cstdlib>

ParticlePool::ParticlePool(int slots, uint32_t randomState)
    : m_age(size_t(slots > 0 ? slots : 0), -1.0f),
      m_velocity(m_age.size() * 4, 0.0f),
      m_color(m_age.size() * 4, 0.0f),
      m_positions(m_age.size() * 4, 0.0f),
      m_colors(m_age.size() * 4, 0.0f),
      m_velocityAge(m_age.size() * 4, 0.0f),
      m_randomState(randomState) {}

float ParticlePool::_random(float a, float b) {
    return float(rand_r(&m_randomState) & 0x7FFF) / 32767.0f * (b - a) + a;
}

void ParticlePool::_bear(size_t slot) {
    const float speed = _random(300.0f, 330.0f);
    // A direction close to straight up: a small horizontal lean, kept between 0.1 and 0.2 long.
    float x = 0, z = 0, lean = 0;
    do {
        x = _random(-1.0f, 1.0f) * 2.0f * 0.2f - 0.2f;
        z = _random(-1.0f, 1.0f) * 2.0f * 0.2f - 0.2f;
        lean = std::sqrt(x * x + z * z);
    } while (lean < 0.1f || lean > 0.2f);
    const float y = _random(0.6f, 0.9f);
    float* velocity = &m_velocity[slot * 4];
    velocity[0] = x * speed, velocity[1] = y * speed, velocity[2] = z * speed, velocity[3] = 1.0f;
    float* color = &m_color[slot * 4];
    color[0] = _random(0.8f, 1.0f), color[1] = _random(0.8f, 1.0f), color[2] = _random(0.8f, 1.0f), color[3] = 1.0f;
    m_age[slot] = 0.0f;
}

int ParticlePool::update(float dt) {
    if (!(dt >= 0.0f)) dt = 0.0f;  // a clock that went back, or a NaN, emits nothing
    const float wanted = kEmitRate * dt;
    long births = long(wanted);
    m_emitRemainder += wanted - float(births);
    if (m_emitRemainder >= 1.0f) {
        const float whole = std::floor(m_emitRemainder);
        births += long(whole);
        m_emitRemainder -= whole;
    }
    m_drawCount = 0;
    for (size_t slot = 0; slot < m_age.size(); ++slot) {
        if (m_age[slot] >= kLifetime) m_age[slot] = -1.0f;
        if (births > 0 && m_age[slot] == -1.0f) {
            _bear(slot);
            --births;
        }
        if (m_age[slot] < 0.0f || m_age[slot] >= kLifetime) continue;
        const size_t out = size_t(m_drawCount) * 4;
        // Every particle leaves from the emitter at the origin; its flight is computed from its age.
        m_positions[out] = 0.0f, m_positions[out + 1] = 0.0f, m_positions[out + 2] = 0.0f, m_positions[out + 3] = 1.0f;
        for (int c = 0; c < 4; ++c) m_colors[out + size_t(c)] = m_color[slot * 4 + size_t(c)];
        for (int c = 0; c < 3; ++c) m_velocityAge[out + size_t(c)] = m_velocity[slot * 4 + size_t(c)];
        m_velocityAge[out + 3] = m_age[slot];
        m_age[slot] += dt;
        ++m_drawCount;
    }
    return m_drawCount;
}
