// The OpenCL demos' compute steps timed on one device, beside that device's memory bandwidth measured in the
// same run by a copy kernel: the particle step of the particles demo and the deformer's step, alone and with
// the read-back that every frame of the demo does. Prints one "name value" line a figure, for
// tools/bench_cl_demos.sh.
//
//   bench_cl_compute [cpu|gpu] [ROUNDS]
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <vector>

#include "compute/opencl_discovery.h"
#include "demos/harness/demo_settings.h"
#include "demos/opencl/cl_demo_session.h"
#include "demos/opencl/cl_device_choice.h"
#include "demos/opencl/particle_system_cl.h"
#include "demos/opencl/surface_deformer_cl.h"

namespace {

constexpr const char* kCopyKernel = R"(
__kernel void copy(__global const float4* source, __global float4* target)
{
    const size_t i = get_global_id(0);
    target[i] = source[i];
}
)";

constexpr size_t kCopyBytes = size_t(256) << 20;  // per buffer: far beyond any cache
constexpr int kParticles = 1000000;
constexpr size_t kParticleTraffic = 80;  // bytes a particle, see below
constexpr uint32_t kDeformerSide = 512;

using Clock = std::chrono::steady_clock;

// Waits for everything enqueued before: a blocking read of one word from a buffer of its own returns when
// the in-order queue reaches it. (clFinish, which the demos never need, waits in coarse sleeps with pocl.)
class QueueDrain {
public:
    explicit QueueDrain(const ClDemoSession& session) : m_queue(session.queue()) {
        cl_int error = CL_SUCCESS;
        m_word = session.createBuffer(CL_MEM_READ_WRITE, sizeof(float), nullptr, &error);
    }
    bool operator()() const {
        float word = 0;
        return m_word && compute::clEnqueueReadBuffer(m_queue, m_word.get(), CL_TRUE, 0, sizeof word, &word, 0, nullptr,
                                                      nullptr) == CL_SUCCESS;
    }

private:
    cl_command_queue m_queue;
    ClMemObject m_word;
};

// Seconds of the fastest run of each of two ways to do the same work, taken in turns (A B B A ...) after
// three warm-up runs of each, so that a drifting machine load and the driver's first-run work hit both alike;
// the fastest run is the least disturbed by other work on a shared machine. Negative when a run fails.
struct Fastest {
    double first = -1, second = -1;
};

double timed(const std::function<bool()>& run) {
    const auto start = Clock::now();
    if (!run()) return -1;
    return std::chrono::duration<double>(Clock::now() - start).count();
}

Fastest fastestInTurns(int rounds, const std::function<bool()>& first, const std::function<bool()>& second) {
    for (int i = 0; i < 3; ++i)
        if (!first() || !second()) return {};
    Fastest best{1e30, 1e30};
    for (int i = 0; i < rounds; ++i) {
        const bool firstFirst = i % 2 == 0;
        const double a = timed(firstFirst ? first : second), b = timed(firstFirst ? second : first);
        if (a < 0 || b < 0) return {};
        best.first = std::min(best.first, firstFirst ? a : b);
        best.second = std::min(best.second, firstFirst ? b : a);
    }
    return best;
}

double fastest(int rounds, const std::function<bool()>& run) { return fastestInTurns(rounds, run, run).first; }

int fail(const char* what, cl_int error) {
    std::fprintf(stderr, "bench_cl_compute: %s failed (CL error %d)\n", what, int(error));
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    const bool gpu = argc > 1 && std::strcmp(argv[1], "gpu") == 0;
    const int rounds = argc > 2 ? std::max(1, std::atoi(argv[2])) : 10;
    compute::discoverOpenCl();  // no sink installed: its log lines are dropped
    DemoSettings settings;
    settings.clDeviceType = gpu ? kClDeviceTypeGpu : kClDeviceTypeCpu;
    ClDemoSession session;
    if (!session.open(settings, ClDemoSession::PlatformRule::FirstWithDeviceType))
        return fail("opening the OpenCL device", session.clError());
    char name[256] = {};
    compute::clGetDeviceInfo(session.device(), CL_DEVICE_NAME, sizeof name - 1, name, nullptr);
    std::printf("device %s\n", name);

    // Copy bandwidth, every byte read once and written once, and the particle step of the particles demo as
    // it enqueues it, timed in turns so that both see the same machine. The step reads each 32-byte record
    // and writes its velocity back, which on any cached device writes the record's whole line back, and reads
    // and writes the 8-byte position: 80 bytes a particle.
    {
        ClDemoSession copySession;
        copySession.open(settings, ClDemoSession::PlatformRule::FirstWithDeviceType);
        if (!copySession.build(kCopyKernel, nullptr)) return fail("building the copy kernel", copySession.clError());
        cl_int error = CL_SUCCESS;
        ClKernelObject kernel = copySession.createKernel("copy", &error);
        std::vector<float> fill(kCopyBytes / sizeof(float), 1.0f);
        ClMemObject source =
            copySession.createBuffer(CL_MEM_READ_ONLY | CL_MEM_COPY_HOST_PTR, kCopyBytes, fill.data(), &error);
        ClMemObject target = copySession.createBuffer(CL_MEM_WRITE_ONLY, kCopyBytes, nullptr, &error);
        if (!kernel || !source || !target) return fail("making the copy buffers", error);
        fill = {};
        setKernelArg(kernel.get(), 0, source.get());
        setKernelArg(kernel.get(), 1, target.get());
        const size_t items = kCopyBytes / 16;
        const QueueDrain copyDrain(copySession);

        if (!session.build(heldParticlesSource(), demoBuildOptions(session.platform()->version)))
            return fail("building the particle kernels", session.clError());
        ParticleSystemCl particles;
        if (!particles.create(session, kParticles, 600, 600, false, true, true, &error))
            return fail("making the particles", error);
        const QueueDrain drain(session);
        float time = 0;

        const Fastest copyAndStep = fastestInTurns(
            rounds,
            [&] {
                return compute::clEnqueueNDRangeKernel(copySession.queue(), kernel.get(), 1, nullptr, &items, nullptr,
                                                       0, nullptr, nullptr) == CL_SUCCESS &&
                       copyDrain();
            },
            [&] { return particles.enqueueStep(300, 300, time += 0.016f) && drain(); });
        const double withReadBack = fastest(
            rounds, [&] { return particles.enqueueStep(300, 300, time += 0.016f) && particles.readPositions(); });
        const double copy = copyAndStep.first, step = copyAndStep.second;
        if (copy <= 0 || step <= 0 || withReadBack <= 0)
            return fail("the copy kernel or the particle step", CL_INVALID_VALUE);
        std::printf("copy_bandwidth_gb_s %.2f\n", 2.0 * kCopyBytes / copy / 1e9);
        std::printf("particles %d\n", kParticles);
        std::printf("particle_global_items %u\n", particles.globalCount());
        std::printf("particle_step_ms %.3f\n", step * 1e3);
        std::printf("particles_per_second %.4g\n", kParticles / step);
        std::printf("particle_traffic_gb_s %.2f\n", double(kParticles) * kParticleTraffic / step / 1e9);
        std::printf("particle_step_with_read_back_ms %.3f\n", withReadBack * 1e3);
        particles.release();
        session.release();
    }

    // The deformer at 512 x 512 vertices without extra load: the step alone, and with the read-back of
    // positions and normals into host memory that the demo does into its vertex buffers every frame.
    {
        ClDemoSession deformerSession;
        if (!deformerSession.open(settings, ClDemoSession::PlatformRule::FirstWithDeviceType) ||
            !deformerSession.build(surfaceDeformerSource(), demoBuildOptions(deformerSession.platform()->version)))
            return fail("building the deformer kernels", deformerSession.clError());
        SurfaceDeformerCl deformer;
        cl_int error = CL_SUCCESS;
        if (!deformer.create(deformerSession, kDeformerSide, kDeformerSide, false, true, true, &error))
            return fail("making the deformer", error);
        std::vector<float> positions(deformer.vertexCount() * 4), normals(deformer.vertexCount() * 4);
        const QueueDrain drain(deformerSession);
        float time = 0;
        const Fastest best = fastestInTurns(
            rounds, [&] { return deformer.enqueueStep(time += 0.016f, 0, 0) && drain(); },
            [&] {
                return deformer.enqueueStep(time += 0.016f, 0, 0) && deformer.readPositions(positions.data()) &&
                       deformer.readNormals(normals.data());
            });
        const double step = best.first, withReadBack = best.second;
        if (step <= 0 || withReadBack <= 0) return fail("the deformer step", CL_INVALID_VALUE);
        std::printf("deformer_step_ms %.3f\n", step * 1e3);
        std::printf("deformer_step_with_read_back_ms %.3f\n", withReadBack * 1e3);
    }
    compute::releaseOpenCl();
    compute::freeOpenClPlatforms();
    return 0;
}
