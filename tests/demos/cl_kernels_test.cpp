// The OpenCL demos' kernels on this machine's CPU device, held against the CPU references of
// cl_references.h: the deformer's vertices, normals and check sums, the particles after one step, the glow
// filter over a known picture, and the Julia picture.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <vector>

#include "tests/demos/cl_references.h"
#include "compute/opencl_discovery.h"
#include "demos/harness/demo_media.h"
#include "demos/harness/demo_settings.h"
#include "demos/opencl/cl_demo_session.h"
#include "demos/opencl/cl_device_choice.h"
#include "demos/opencl/julia_cl.h"
#include "demos/opencl/particle_system_cl.h"
#include "demos/opencl/post_fx_cl.h"
#include "demos/opencl/surface_deformer_cl.h"
#include "unit/compute_test_log.h"

namespace {

using namespace cl_references;

class ClKernels : public ::testing::Test {
protected:
    void SetUp() override {
        compute::discoverOpenCl(log.log());
        settings.clDeviceType = kClDeviceTypeCpu;
        ASSERT_GE(firstPlatformWithDeviceType(compute::clPlatforms(), kClDeviceTypeCpu), 0)
            << "no OpenCL CPU device: the README's set-up installs pocl";
        ASSERT_TRUE(session.open(settings, ClDemoSession::PlatformRule::FirstWithDeviceType))
            << "CL error " << session.clError();
    }
    void TearDown() override {
        session.release();
        compute::releaseOpenCl();
        compute::freeOpenClPlatforms();
    }

    void build(const std::string& source) { ASSERT_TRUE(session.build(source, nullptr)) << session.buildLog(); }

    TestLog log;
    DemoSettings settings;
    ClDemoSession session;
};

TEST_F(ClKernels, DeformerVerticesNormalsAndCheckSumsFollowTheSurfaceInEveryForm) {
    build(surfaceDeformerSource());
    // An odd grid, so that explicit groups overhang it and the kernel has to stop at its edges.
    constexpr unsigned kWidth = 13, kHeight = 7;
    constexpr float kTime = 0.6f;
    constexpr unsigned kSinLoad = 3, kMadLoad = 2;
    struct Form {
        bool withCheck, nativeSin, explicitSize;
    };
    for (const Form form :
         {Form{false, false, true}, Form{true, false, true}, Form{true, true, false}, Form{false, true, false}}) {
        SCOPED_TRACE(SurfaceDeformerCl::kernelName(form.withCheck, form.nativeSin));
        SurfaceDeformerCl deformer;
        cl_int error = CL_SUCCESS;
        ASSERT_TRUE(
            deformer.create(session, kWidth, kHeight, form.withCheck, form.nativeSin, form.explicitSize, &error))
            << error;
        ASSERT_TRUE(deformer.enqueueStep(kTime, kSinLoad, kMadLoad));
        std::vector<float> positions(kWidth * kHeight * 4), normals(kWidth * kHeight * 4);
        ASSERT_TRUE(deformer.readPositions(positions.data()));
        ASSERT_TRUE(deformer.readNormals(normals.data()));

        // The fast sine of a device may be coarser than its full one.
        const double tolerance = form.nativeSin ? 2e-3 : 2e-5;
        double expectedSum = 0;
        for (unsigned y = 0; y < kHeight; ++y) {
            for (unsigned x = 0; x < kWidth; ++x) {
                const DeformedVertex v =
                    deformedVertex(x, y, kWidth, kHeight, SurfaceDeformerCl::kFrequency, kTime, kSinLoad, kMadLoad);
                expectedSum += v.check;
                const float* p = &positions[(y * kWidth + x) * 4];
                const float* n = &normals[(y * kWidth + x) * 4];
                EXPECT_NEAR(p[0], v.position.x, tolerance) << x << "," << y;
                EXPECT_NEAR(p[1], v.position.y, tolerance * 10) << x << "," << y;
                EXPECT_NEAR(p[2], v.position.z, tolerance) << x << "," << y;
                EXPECT_EQ(p[3], 1.0f);
                EXPECT_NEAR(n[0], v.normal.x, tolerance * 10) << x << "," << y;
                EXPECT_NEAR(n[1], v.normal.y, tolerance * 10) << x << "," << y;
                EXPECT_NEAR(n[2], v.normal.z, tolerance * 10) << x << "," << y;
                EXPECT_EQ(n[3], 0.0f);
            }
        }
        // The lifted surface's normals face down, away from the light that the shader negates them towards.
        EXPECT_LT(normals[1], 0.0f);

        double sum = 0;
        EXPECT_EQ(deformer.readCheckSum(&sum), form.withCheck);
        if (form.withCheck) {
            EXPECT_NEAR(sum, expectedSum, expectedSum * (form.nativeSin ? 1e-2 : 1e-4));
        }
    }
}

TEST_F(ClKernels, ParticlesAfterOneStepArePulledToTheMiddleAndPushedFromThePointer) {
    build(heldParticlesSource());
    constexpr int kCount = 100, kWidth = 600, kHeight = 400;
    constexpr float kMouseX = 250, kMouseY = 220, kTime = 0.7f;
    for (bool sineKernel : {false, true}) {
        for (bool nativeSin : {false, true}) {
            if (!sineKernel && nativeSin) continue;
            SCOPED_TRACE(ParticleSystemCl::kernelName(sineKernel, nativeSin));
            std::srand(7);
            ParticleSystemCl particles;
            cl_int error = CL_SUCCESS;
            ASSERT_TRUE(particles.create(session, kCount, kWidth, kHeight, sineKernel, nativeSin, true, &error))
                << error;
            ASSERT_GE(particles.globalCount(), uint32_t(kCount));
            const std::vector<ParticleRecord> before = particles.hostRecords();
            const std::vector<float> positionsBefore(particles.positions(),
                                                     particles.positions() + particles.globalCount() * 2);
            ASSERT_TRUE(particles.enqueueStep(kMouseX, kMouseY, kTime));
            ASSERT_TRUE(particles.readPositions());
            std::vector<ParticleRecord> after;
            ASSERT_TRUE(particles.readRecords(after));

            int nearPointer = 0;
            for (int i = 0; i < kCount; ++i) {
                const ParticleRecord& p = before[size_t(i)];
                EXPECT_TRUE(p.mass >= 5.0f && p.mass < 20.0f) << p.mass;
                EXPECT_TRUE(p.pos[0] >= 0 && p.pos[0] < kWidth && p.pos[1] >= 0 && p.pos[1] < kHeight);
                const MovedParticle m = movedParticle(p, &positionsBefore[size_t(i) * 2], kMouseX, kMouseY, kWidth,
                                                      kHeight, kTime, sineKernel);
                const double dx = kMouseX - p.pos[0], dy = kMouseY - p.pos[1];
                nearPointer += dx * dx + dy * dy < 100.0 * 100.0;
                const float* moved = particles.positions() + i * 2;
                const double tolerance = 1e-3 * (1 + std::abs(m.vx) + std::abs(m.vy));
                EXPECT_NEAR(moved[0], m.x, tolerance) << i;
                EXPECT_NEAR(moved[1], m.y, tolerance) << i;
                EXPECT_NEAR(after[size_t(i)].vel[0], m.vx, tolerance) << i;
                EXPECT_NEAR(after[size_t(i)].vel[1], m.vy, tolerance) << i;
                EXPECT_EQ(after[size_t(i)].mass, p.mass);
            }
            EXPECT_GT(nearPointer, 0) << "no particle tried the push";
            // Records beyond the count have no mass and stay where they are.
            for (uint32_t i = kCount; i < particles.globalCount(); ++i) {
                EXPECT_EQ(particles.positions()[i * 2], 0.0f);
                EXPECT_EQ(after[i].vel[0], 0.0f);
            }
        }
    }
}

TEST_F(ClKernels, GlowFilterMatchesTheDiscMeanInBothFormsAndEveryGroupChoice) {
    build(heldPostFxSource());
    // Not a multiple of 16 either way; a dim gradient, a white block, and two grey ones just above and just
    // below the brightness that glows.
    constexpr int kWidth = 37, kHeight = 29;
    std::vector<uint32_t> image(kWidth * kHeight);
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            uint32_t r = uint32_t(x * 4), g = uint32_t(y * 5), b = 40;
            if (x >= 20 && x < 26 && y >= 5 && y < 12) r = g = b = 250;
            if (x >= 3 && x < 9 && y >= 18 && y < 25) r = g = b = 205;
            if (x >= 28 && x < 34 && y >= 20 && y < 27) r = g = b = 203;
            image[size_t(y) * kWidth + x] = r | (g << 8) | (b << 16) | (0xFFu << 24);
        }
    }
    struct Form {
        bool localMem, explicitSize;
    };
    for (const Form form : {Form{false, true}, Form{false, false}, Form{true, true}, Form{true, false}}) {
        SCOPED_TRACE(std::string(PostFxCl::kernelName(form.localMem)) + (form.explicitSize ? "" : ", driver's groups"));
        PostFxCl filter;
        cl_int error = CL_SUCCESS;
        ASSERT_TRUE(filter.create(session, kWidth, kHeight, form.localMem, form.explicitSize, &error)) << error;
        if (form.localMem) {
            EXPECT_EQ(filter.range().local[0], PostFxCl::kLocalGroupSide);
        }
        ASSERT_TRUE(filter.writeInput(image.data()));
        ASSERT_TRUE(filter.enqueueFilter());
        std::vector<uint32_t> out(image.size(), 0xDEADBEEF);
        ASSERT_TRUE(filter.readOutput(out.data()));
        int mismatches = 0;
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                const uint32_t expected = glowPixel(image, kWidth, kHeight, x, y, PostFxCl::kRadius,
                                                    PostFxCl::kThreshold, PostFxCl::kHighlight);
                const uint32_t got = out[size_t(y) * kWidth + x];
                EXPECT_EQ(got >> 24, 0u);
                // Sums in another order may land a channel one below or above.
                for (int channel = 0; channel < 3; ++channel) {
                    const int e = int((expected >> (8 * channel)) & 0xFF), g = int((got >> (8 * channel)) & 0xFF);
                    if (std::abs(e - g) > 1 && ++mismatches < 5)
                        ADD_FAILURE() << "pixel " << x << "," << y << " channel " << channel << ": " << g << " for "
                                      << e;
                }
            }
        }
        EXPECT_EQ(mismatches, 0);
        // The white block glows: pixels beside it come out brighter than any input pixel there.
        EXPECT_GT(out[size_t(8) * kWidth + 18] & 0xFF, image[size_t(8) * kWidth + 18] & 0xFF);
    }
}

TEST_F(ClKernels, JuliaPictureShowsTheSetOnBlackAndChangesAsMuMoves) {
    std::string source;
    ASSERT_TRUE(readDemoMediaText("qjulia_kernel.cl", &source));
    build(source);
    constexpr int kSize = 48;
    JuliaAnimation animation;
    JuliaCl julia;
    cl_int error = CL_SUCCESS;
    ASSERT_TRUE(julia.create(session, kSize, true, animation.mu, animation.color, &error)) << error;
    std::vector<uint32_t> first(kSize * kSize), second(kSize * kSize);
    ASSERT_TRUE(julia.enqueueRender());
    ASSERT_TRUE(julia.readPixels(first.data()));

    int lit = 0, blueDominant = 0;
    for (uint32_t pixel : first) {
        if (pixel == 0) continue;
        ++lit;
        EXPECT_EQ(pixel >> 24, 0xFFu);  // alpha where the set is
        blueDominant += (pixel & 0xFF) > ((pixel >> 16) & 0xFF);
    }
    EXPECT_GT(lit, kSize * kSize / 20);
    EXPECT_LT(lit, kSize * kSize * 9 / 10);
    EXPECT_GT(blueDominant, lit / 2) << "lit in the starting colour, mostly blue";
    EXPECT_EQ(first[0], 0u);  // corners miss the set
    EXPECT_EQ(first[kSize * kSize - 1], 0u);

    std::srand(11);
    for (int frame = 0; frame < 150; ++frame) animation.advance();
    julia.setParameters(animation.mu, animation.color);
    ASSERT_TRUE(julia.enqueueRender());
    ASSERT_TRUE(julia.readPixels(second.data()));
    int changed = 0;
    for (size_t i = 0; i < first.size(); ++i) changed += first[i] != second[i];
    EXPECT_GT(changed, kSize * kSize / 20);
}

}  // namespace
