#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

// How a GpuProgram reports and recovers; the demos and the engine each keep their own ways.
struct GpuProgramHabits {
    // Writes each compile and link failure to the log. The engine's callers log failures themselves.
    bool logFailures = true;
    // Links again at every use after a failed link; otherwise a failed link stays failed until a stage
    // changes, so that a broken program does not ask the driver to link it every frame.
    bool retryFailedLink = true;
    // Names the failure in errorText() when the driver wrote no log, and refuses empty text with a reason.
    bool nameSilentFailures = false;
};

// A GLSL program of up to five stages. Stages compile when loaded; the program links at link() or its first
// use(), and a program must be linked before its uniforms can be set. A stage that fails to compile leaves the
// one it would have replaced in place. Every call needs the program's context current on this thread.
class GpuProgram {
public:
    enum StageKind : int { kVertex = 0, kPixel = 1, kGeometry = 2, kTessControl = 3, kTessEvaluation = 4 };
    static constexpr int kStageCount = 5;

    GpuProgram() = default;
    explicit GpuProgram(const GpuProgramHabits& habits) : m_habits(habits) {}
    ~GpuProgram() = default;  // deleting GL objects needs the context: release() does it
    GpuProgram(const GpuProgram&) = delete;
    GpuProgram& operator=(const GpuProgram&) = delete;

    // Each returns false on null text, a length of 0 or a compile error; the compiler's log is then in
    // errorText() and, with logFailures, in the log. The text must end in a zero byte; `length` is its length
    // without it.
    bool loadVertexShader(const char* text, size_t length);
    bool loadPixelShader(const char* text, size_t length);
    bool loadShader(StageKind stage, const char* text, size_t length);

    // Links the stages loaded so far unless the program is linked already; false when the link fails.
    bool link();
    // Links at the first call, then makes the program current; false when the link fails.
    bool use();
    void unuse();
    // The last compile or link log; empty when there was none.
    const char* errorText() const { return m_errorText.c_str(); }
    int attribLocation(const char* name) const;
    // -1 until linked and for a name the compiler dropped; looked up once per link.
    int uniformLocation(const char* name);

    // Uniform setters by name for the program in use; each does nothing for a name the compiler dropped.
    void set1i(const char* name, int value);
    void set1f(const char* name, float value);
    void set2f(const char* name, float x, float y);
    void set3f(const char* name, float x, float y, float z);
    void set4f(const char* name, float x, float y, float z, float w);
    void set4fv(const char* name, const float value[4]);
    void set2fArray(const char* name, int count, const float* values);
    void set3fArray(const char* name, int count, const float* values);
    void set4fArray(const char* name, int count, const float* values);
    // A 4x4 matrix in OpenGL's column order.
    void setMatrix(const char* name, const float matrix[16]);

    // Detaches and deletes every shader, then the program.
    void release();

    uint32_t programId() const { return m_programId; }
    bool linked() const { return m_linked; }

    // The stage's name as messages give it ("Vertex", "Pixel", ...).
    static const char* stageName(StageKind stage);

private:
    bool _compile(StageKind stage, const char* text, const char* errorFormat);
    bool _refuseEmpty();
    void _nameSilentFailure(const char* reason);
    void _stagesChanged();

    struct NameHash {
        using is_transparent = void;
        size_t operator()(std::string_view s) const { return std::hash<std::string_view>{}(s); }
    };

    GpuProgramHabits m_habits;
    uint32_t m_programId = 0;
    bool m_linked = false;
    bool m_linkFailed = false;
    uint32_t m_stageShaderIds[kStageCount] = {};
    std::string m_vertexSource;  // kept copies of the two classic stages' texts
    std::string m_pixelSource;
    std::string m_errorText;
    std::unordered_map<std::string, int, NameHash, std::equal_to<>> m_uniformLocations;
};
