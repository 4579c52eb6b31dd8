// The triangle demo's picture drawn by a bare EGL loop: no harness, no frame statistics, no window
// messages; the same GL work per frame (the triangle program, the triangle, the corner logo). Prints the
// frames per second over the run, for the harness-overhead comparison of tools/bench_demos.sh.
//
//   bench_bare_triangle_loop SECONDS [--window]
#define EGL_NO_X11
#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/glew.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "demos/gl_utility/corner_logo.h"
#include "demos/gl_utility/gpu_program.h"
#include "demos/gl_utility/mesh_gl.h"
#include "engine/vx_math.h"
// Xlib last: its macros clash with the headers above.
#include <X11/Xlib.h>

namespace {

using Vantalux_nsp::vxMat4;
using Vantalux_nsp::vxVec3;

constexpr int kSize = 600;

constexpr const char* kVertex = R"(#version 150 core
in vec4 In_Position;
in vec4 In_Color;
uniform mat4 WorldViewProjectionMatrix;
out vec4 Vertex_Color;
void main()
{
    gl_Position = WorldViewProjectionMatrix * In_Position;
    Vertex_Color = In_Color;
}
)";

constexpr const char* kPixel = R"(#version 150 core
in vec4 Vertex_Color;
out vec4 Out_Color;
void main()
{
    Out_Color = Vertex_Color;
}
)";

int fail(const char* what) {
    std::fprintf(stderr, "bare loop: %s\n", what);
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return fail("usage: bench_bare_triangle_loop SECONDS [--window]");
    const double seconds = std::atof(argv[1]);
    const bool windowed = argc > 2 && std::strcmp(argv[2], "--window") == 0;

    Display* x = nullptr;
    Window window = 0;
    EGLDisplay display = EGL_NO_DISPLAY;
    if (windowed) {
        x = XOpenDisplay(nullptr);
        if (!x) return fail("no X display");
        window = XCreateSimpleWindow(x, DefaultRootWindow(x), 0, 0, kSize, kSize, 0, 0, 0);
        XMapWindow(x, window);
        XFlush(x);
        display = eglGetPlatformDisplay(EGL_PLATFORM_X11_KHR, x, nullptr);
    } else {
        display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    }
    if (display == EGL_NO_DISPLAY || !eglInitialize(display, nullptr, nullptr)) return fail("no EGL display");
    eglBindAPI(EGL_OPENGL_API);
    const EGLint wanted[] = {EGL_SURFACE_TYPE, windowed ? EGL_WINDOW_BIT : 0, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT,
                             EGL_RED_SIZE, 8, EGL_DEPTH_SIZE, 24, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint found = 0;
    if (!eglChooseConfig(display, wanted, &config, 1, &found) || found < 1) return fail("no config");
    const EGLint attributes[] = {EGL_CONTEXT_MAJOR_VERSION, 3, EGL_CONTEXT_MINOR_VERSION, 2,
                                 EGL_CONTEXT_OPENGL_PROFILE_MASK, EGL_CONTEXT_OPENGL_COMPATIBILITY_PROFILE_BIT,
                                 EGL_NONE};
    EGLContext context = eglCreateContext(display, config, EGL_NO_CONTEXT, attributes);
    if (context == EGL_NO_CONTEXT) return fail("no context");
    EGLSurface surface = EGL_NO_SURFACE;
    if (windowed) {
        unsigned long nativeWindow = window;
        surface = eglCreatePlatformWindowSurface(display, config, &nativeWindow, nullptr);
        if (surface == EGL_NO_SURFACE) return fail("no window surface");
    }
    if (!eglMakeCurrent(display, surface, surface, context)) return fail("cannot make current");
    if (windowed) eglSwapInterval(display, 0);
    glewExperimental = GL_TRUE;
    (void)glewInit();

    GLuint framebuffer = 0, color = 0, depth = 0;
    if (!windowed) {
        glGenFramebuffers(1, &framebuffer);
        glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
        glGenRenderbuffers(1, &color);
        glBindRenderbuffer(GL_RENDERBUFFER, color);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, kSize, kSize);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, color);
        glGenRenderbuffers(1, &depth);
        glBindRenderbuffer(GL_RENDERBUFFER, depth);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH24_STENCIL8, kSize, kSize);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, GL_RENDERBUFFER, depth);
    }
    GLuint vertexArray = 0;
    glGenVertexArrays(1, &vertexArray);
    glBindVertexArray(vertexArray);

    GpuProgram program;
    if (!program.loadVertexShader(kVertex, std::strlen(kVertex)) || !program.loadPixelShader(kPixel, std::strlen(kPixel)) ||
        !program.use())
        return fail(program.errorText());
    const vxVec3 eye{0, 0, 2}, center{0, 0, 0}, up{0, 1, 0};
    const vxMat4 worldViewProjection =
        vxMat4::perspective(60.0f, 1.0f, 1.0f, 500.0f) * vxMat4::lookAt(eye, center, up) * vxMat4::identity();
    MeshGL triangle;
    triangle.makeTriangle();
    CornerLogo logo;
    logo.create("#version 150 core");
    glDisable(GL_CULL_FACE);

    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    long frames = 0;
    double elapsed = 0;
    while (elapsed < seconds) {
        glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
        glViewport(0, 0, kSize, kSize);
        glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
        glEnable(GL_DEPTH_TEST);
        glClearDepth(1.0);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        program.use();
        program.setMatrix("WorldViewProjectionMatrix", worldViewProjection.data());
        triangle.positionAttrib = uint32_t(program.attribLocation("In_Position"));
        triangle.colorAttrib = uint32_t(program.attribLocation("In_Color"));
        MeshDrawOptions options;
        options.useColors = true;
        triangle.draw(options);
        logo.draw(kSize);
        if (windowed) {
            eglSwapBuffers(display, surface);
        } else {
            GLsync fence = glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0);
            glClientWaitSync(fence, GL_SYNC_FLUSH_COMMANDS_BIT, 1000000000ull);
            glDeleteSync(fence);
        }
        ++frames;
        elapsed = std::chrono::duration<double>(Clock::now() - start).count();
    }
    std::printf("%.1f\n", double(frames) / elapsed);

    logo.release();
    program.release();
    triangle.release();
    eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    if (surface != EGL_NO_SURFACE) eglDestroySurface(display, surface);
    eglDestroyContext(display, context);
    eglTerminate(display);
    if (x) {
        XDestroyWindow(x, window);
        XCloseDisplay(x);
    }
    return 0;
}
