// The OpenGL extension list from any driver strings: the legacy string, the same names one by one through
// the indexed query, and the EGL display's string that is added behind them.
#include <algorithm>
#include <cstdlib>

#include "fuzz/fuzz_input.h"
#include "kalidor/opengl/extension_list.h"
#include "unit/fake_gl_api.h"

using namespace Kalidornm;

namespace {

void checkNames(const std::vector<std::string>& names) {
    for (const std::string& name : names)
        if (name.size() > kExtensionNameMax || name.find(' ') != std::string::npos) std::abort();
}

void checkCounts(const OpenGlState& state) {
    if (state.glExtensionCount < 0 || state.wglExtensionCount < 0 ||
        size_t(state.glExtensionCount) + size_t(state.wglExtensionCount) != state.extensions.size())
        std::abort();
    checkNames(state.extensions);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::vector<std::string_view> parts = splitFuzzInput(data, size);
    const std::string contextText(parts.size() > 0 ? parts[0] : std::string_view());
    const std::string platformText(parts.size() > 1 ? parts[1] : std::string_view());

    // One name per blank: the tokeniser keeps empty names between two blanks and drops the text behind the
    // last blank.
    const std::vector<std::string> tokens = tokenizeExtensions(contextText.c_str());
    checkNames(tokens);
    if (tokens.size() != size_t(std::count(contextText.begin(), contextText.end(), ' '))) std::abort();
    for (size_t i = 0; i < tokens.size() && i < 64; ++i)
        if (!hasExtension(tokens, tokens[i].c_str())) std::abort();

    FakeGlApi legacy;
    legacy.indexedBound = false;
    legacy.strings[gl::kExtensions] = contextText;
    legacy.platform = parts.size() > 1 ? platformText.c_str() : nullptr;
    OpenGlState fromString;
    if (buildOpenGLExtensionsList(legacy, fromString)) checkCounts(fromString);

    FakeGlApi indexed;
    for (const std::string& token : tokens) indexed.indexedExtensions.push_back(token.c_str());
    indexed.platform = legacy.platform;
    OpenGlState fromIndex;
    if (buildOpenGLExtensionsList(indexed, fromIndex)) checkCounts(fromIndex);
    return 0;
}
