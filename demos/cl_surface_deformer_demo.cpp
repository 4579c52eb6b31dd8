// "CL GPU - Mesh Deformer" and its CPU twin: a grid whose vertices and normals an OpenCL kernel moves every
// frame, copied into the grid's vertex buffers and lit in a slowly changing colour.
#include <GL/glew.h>

#include <cmath>
#include <cstdio>

#include "base/log_sink.h"
#include "demos/demo_context.h"
#include "engine/vx_math.h"
#include "demos/gl_demo_support.h"
#include "demos/gl_utility/mesh_gl.h"
#include "demos/gl_utility/render_window_gl.h"
#include "demos/gl_utility/shader_texts.h"
#include "demos/harness/demo_host.h"
#include "demos/harness/demo_table.h"
#include "demos/opencl/cl_demo_scene.h"
#include "demos/opencl/surface_deformer_cl.h"

namespace {

using Vantalux_nsp::vxMat4;
using Vantalux_nsp::vxVec3;

constexpr ClDemoTraits kTraits = {.fpsWhat = "Surface Deformer",
                                  .needsPlatformList = true,
                                  .requiredKernelFile = nullptr,
                                  .platformRule = ClDemoSession::PlatformRule::FirstWithDeviceType,
                                  .platformBuildOptions = true};

constexpr const char* kCheckSumFile = "./opencl_sincossum.txt";

// A segment count below 1 is one segment, for the grid and the kernel's vertex rows alike.
int segments(int32_t setting) { return setting < 1 ? 1 : setting; }

uint32_t load(int32_t setting) { return setting > 0 ? uint32_t(setting) : 0; }

class ClSurfaceDeformerDemo : public ClDemoScene {
public:
    ClSurfaceDeformerDemo() : ClDemoScene(kTraits) {}

    const char* resultDetail() const override { return m_resultDetail; }

    void drawFrame(DemoContext& context, RenderWindowGL& window, float) override {
        const DemoSettings& s = context.settings;
        const float t = float(context.stats.elapsedMs) * 0.001f;
        glBindFramebuffer(GL_FRAMEBUFFER, window.framebuffer());
        glViewport(0, 0, context.clientWidth, context.clientHeight);
        glClearColor(0.3f, 0.3f, 0.3f, 1.0f);
        glEnable(GL_DEPTH_TEST);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);

        if (m_computeOk && s.glRenderInClDemos && m_grid.vertexCount != 0) {
            m_program.use();
            m_program.set4f("matDiffuse", (std::cos(0.9f * t) + 1.0f) / 2.0f, (std::sin(1.1f * t) + 1.0f) / 2.0f,
                            (std::cos(-1.2f * t) + 1.0f) / 2.0f, 1.0f);
            m_grid.positionAttrib = uint32_t(m_program.attribLocation("In_Position"));
            m_grid.normalAttrib = uint32_t(m_program.attribLocation("In_Normal"));
            MeshDrawOptions options;
            options.useNormals = true;
            m_grid.draw(options);
        }
        // The picture shows the previous step's surface.
        _computeStep(s, t, load(s.clKernelWorkload), load(s.clKernelWorkloadMad));
        if (m_withCheck && s.clKernelWorkload > 0) m_deformer.readCheckSum(&m_checkSum);
        m_logo.draw(context.clientWidth);
    }

protected:
    bool _buildGraphics(DemoContext& context, RenderWindowGL&, const std::string& language) override {
        const DemoSettings& s = context.settings;
        if (!buildDemoProgram(m_program, {shaderSource(_vertexLanguage(language), "deformer_phong.vert"), "", "",
                                          shaderSource(language, "deformer_phong.frag")}))
            return false;
        const vxVec3 eye{0, 3, 3}, center{0, 0, 0}, up{0, 1, 0};
        m_program.setMatrix("WorldMatrix", vxMat4::identity().data());
        m_program.setMatrix("ViewMatrix", vxMat4::lookAt(eye, center, up).data());
        m_program.setMatrix(
            "ProjectionMatrix",
            vxMat4::perspective(60.0f, float(context.clientWidth) / float(context.clientHeight), 1.0f, 500.0f).data());
        if (!m_grid.makeGrid(10.0f, 10.0f, segments(s.clSurfaceSegsX), segments(s.clSurfaceSegsZ))) {
            demoShowError("The surface of %d x %d segments is too large for this machine. Bye...",
                          segments(s.clSurfaceSegsX), segments(s.clSurfaceSegsZ));
            return false;
        }
        // The kernel's results land in these buffers every frame; the grid draws from them.
        for (auto [buffer, data] : {std::pair{&m_grid.positionBuffer, m_grid.positions.get()},
                                    std::pair{&m_grid.normalBuffer, m_grid.normals.get()}}) {
            glGenBuffers(1, buffer);
            glBindBuffer(GL_ARRAY_BUFFER, *buffer);
            glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(m_grid.vertexCount) * 16, data, GL_DYNAMIC_DRAW);
        }
        glBindBuffer(GL_ARRAY_BUFFER, 0);
        return true;
    }

    bool _kernelSource(std::string* source) override {
        *source = surfaceDeformerSource();
        return true;
    }

    bool _buildCompute(DemoContext& context, RenderWindowGL&) override {
        const DemoSettings& s = context.settings;
        m_withCheck = s.clKernelWorkloadDoCheck;
        const int segmentsX = segments(s.clSurfaceSegsX), segmentsZ = segments(s.clSurfaceSegsZ);
        cl_int error = CL_SUCCESS;
        if (!m_deformer.create(m_session, uint32_t(segmentsX) + 1, uint32_t(segmentsZ) + 1, m_withCheck, s.clNativeSin,
                               s.clExplicitWorkgroupSize, &error))
            return _failCompute(context, error);
        std::snprintf(m_resultDetail, sizeof m_resultDetail, "(X=%d_Z=%d_sin=%d)", segmentsX, segmentsZ,
                      int(s.clKernelWorkload));
        m_logCheckSum = s.benchLogResults && m_withCheck && s.clKernelWorkload > 0;
        _computeStep(s, 0.0f, 0, 0);
        m_started = true;
        return true;
    }

    void _releaseCompute() override {
        if (m_started && m_logCheckSum) _appendCheckSum();
        m_deformer.release();
        m_started = false;
    }

    void _releaseGraphics() override {
        m_program.release();
        m_grid.release();
    }

private:
    void _computeStep(const DemoSettings& s, float time, uint32_t sinLoad, uint32_t madLoad) {
        m_computeOk = m_deformer.enqueueStep(time, sinLoad, madLoad);
        if (!m_computeOk) return;
        if (!s.glRenderInClDemos) {
            m_deformer.waitForStep();
            return;
        }
        for (auto [buffer, read] : {std::pair{m_grid.positionBuffer, &SurfaceDeformerCl::readPositions},
                                    std::pair{m_grid.normalBuffer, &SurfaceDeformerCl::readNormals}}) {
            glBindBuffer(GL_ARRAY_BUFFER, buffer);
            if (void* target = glMapBuffer(GL_ARRAY_BUFFER, GL_WRITE_ONLY)) {
                (m_deformer.*read)(target);
                glUnmapBuffer(GL_ARRAY_BUFFER);
            }
        }
        glBindBuffer(GL_ARRAY_BUFFER, 0);
    }

    void _appendCheckSum() const {
        FILE* file = std::fopen(kCheckSumFile, "a");
        if (!file) {
            base::logLine("The check sum could not be written to %s", kCheckSumFile);
            return;
        }
        std::fprintf(file, "sum = %f\n", m_checkSum);
        std::fclose(file);
    }

    GpuProgram m_program;
    MeshGL m_grid;
    SurfaceDeformerCl m_deformer;
    bool m_computeOk = false;
    bool m_withCheck = false;
    bool m_logCheckSum = false;
    bool m_started = false;  // set-up completed, so the frame loop ran
    double m_checkSum = 0.0;
    char m_resultDetail[64] = "";
};

}  // namespace

std::unique_ptr<DemoScene> makeClSurfaceDeformerDemo() { return std::make_unique<ClSurfaceDeformerDemo>(); }
