#pragma once

#include <cstdint>
#include <memory>
#include <string>

// A GLSL program of up to five stages. Stages compile when loaded; the program links at its first use(), so
// a program must be used once before its uniforms can be set, and that first use is where a link error shows.
// Every call needs the program's context current on this thread.
class GpuProgram {
public:
    enum StageKind : int { kVertex = 0, kPixel = 1, kGeometry = 2, kTessControl = 3, kTessEvaluation = 4 };
    static constexpr int kStageCount = 5;

    GpuProgram() = default;
    ~GpuProgram() = default;  // deleting GL objects needs the context: release() does it
    GpuProgram(const GpuProgram&) = delete;
    GpuProgram& operator=(const GpuProgram&) = delete;

    // Each returns false on null text, a length of 0 or a compile error; the compiler's log is then in
    // errorText() and in the log. The text must end in a zero byte; `length` is its length without it.
    bool loadVertexShader(const char* text, size_t length);
    bool loadPixelShader(const char* text, size_t length);
    bool loadShader(StageKind stage, const char* text, size_t length);

    // Links at the first call, then makes the program current; false when the link fails.
    bool use();
    void unuse();
    // The last compile or link log; empty when there was none.
    const char* errorText() const { return m_errorText.c_str(); }
    int attribLocation(const char* name) const;

    // Uniform setters by name; each looks the location up anew and does nothing for a name the compiler
    // dropped.
    void set1i(const char* name, int value);
    void set1f(const char* name, float value);
    void set2f(const char* name, float x, float y);
    void set3f(const char* name, float x, float y, float z);
    void set4f(const char* name, float x, float y, float z, float w);
    void set4fv(const char* name, const float value[4]);
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
    int _uniformLocation(const char* name) const;

    uint32_t m_programId = 0;
    bool m_linked = false;
    uint32_t m_stageShaderIds[kStageCount] = {};
    std::string m_vertexSource;  // kept copies of the two classic stages' texts
    std::string m_pixelSource;
    std::string m_errorText;
};
