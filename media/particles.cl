// One step of the mouse-controlled particle swarm: every particle is pulled towards the middle of the
// window and pushed away from the pointer when it comes near. pOut holds the positions that are drawn; the
// records keep velocity and mass between steps.

typedef struct {
    float2 pos;
    float2 accel;
    float2 vel;
    float mass;
    float radius;
} Particle;

// The swarm without sine: strong pull, wide push, slow damping.
__kernel void updateParticleWithoutCollision(__global Particle* pIn, __global float2* pOut, uint particleCount,
                                             float2 mousePos, float2 dimensions, float time)
{
    const uint id = get_global_id(0);
    if (id >= particleCount)
        return;
    Particle p = pIn[id];
    const float CENTER_FORCE = 0.05f;
    const float radius = 200.0f;

    float2 diff = mousePos - pOut[id];
    const float distSQ = dot(diff, diff);
    float2 force = (dimensions * 0.5f - pOut[id]) * CENTER_FORCE;
    if (distSQ < radius * radius) {
        const float invDistSQ = 1.0f / (distSQ + 0.000001f);
        diff *= 300.0f * invDistSQ;
        force -= diff * p.mass * 0.7f;
    }
    p.vel += force * p.mass * 0.7f;
    pOut[id] += p.vel;
    p.vel *= 0.85f;
    pIn[id].vel = p.vel;
}

// The swarm whose particles move by the sine of their velocity, which keeps every step within one pixel.
__kernel void updateParticleWithoutCollisionSin(__global Particle* pIn, __global float2* pOut, uint particleCount,
                                                float2 mousePos, float2 dimensions, float time)
{
    const uint id = get_global_id(0);
    if (id >= particleCount)
        return;
    Particle p = pIn[id];
    const float CENTER_FORCE = 0.01f;
    const float radius = 100.0f;

    float2 diff = mousePos - pOut[id];
    const float distSQ = dot(diff, diff);
    float2 force = (dimensions * 0.5f - pOut[id]) * CENTER_FORCE;
    if (distSQ < radius * radius) {
        const float invDistSQ = 1.0f / (distSQ + 0.000001f);
        diff *= 300.0f * invDistSQ;
        force -= diff * p.mass;
    }
    p.vel += force * p.mass;
    pOut[id] += sin(p.vel * cos(time * 0.5f));
    p.vel *= 0.42f;
    pIn[id].vel = p.vel;
}

// The same on the device's fast sine and cosine.
__kernel void updateParticleWithoutCollisionNativeSin(__global Particle* pIn, __global float2* pOut,
                                                      uint particleCount, float2 mousePos, float2 dimensions,
                                                      float time)
{
    const uint id = get_global_id(0);
    if (id >= particleCount)
        return;
    Particle p = pIn[id];
    const float CENTER_FORCE = 0.01f;
    const float radius = 100.0f;

    float2 diff = mousePos - pOut[id];
    const float distSQ = dot(diff, diff);
    float2 force = (dimensions * 0.5f - pOut[id]) * CENTER_FORCE;
    if (distSQ < radius * radius) {
        const float invDistSQ = 1.0f / (distSQ + 0.000001f);
        diff *= 300.0f * invDistSQ;
        force -= diff * p.mass;
    }
    p.vel += force * p.mass;
    pOut[id] += native_sin(p.vel * native_cos(time * 0.5f));
    p.vel *= 0.42f;
    pIn[id].vel = p.vel;
}
