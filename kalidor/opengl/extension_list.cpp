#include "kalidor/opengl/extension_list.h"

#include <algorithm>
#include <cstring>

namespace Kalidornm {

std::vector<std::string> tokenizeExtensions(const char* text) {
    std::vector<std::string> tokens;
    if (!text) return tokens;
    const char* start = text;
    for (const char* p = text; *p; ++p) {
        if (*p != ' ') continue;
        tokens.emplace_back(start, std::min<size_t>(p - start, kExtensionNameMax));
        start = p + 1;
    }
    return tokens;
}

bool hasExtension(const std::vector<std::string>& names, const char* name) {
    if (!name) return false;
    for (const std::string& entry : names)
        if (std::strncmp(entry.c_str(), name, kExtensionNameMax) == 0) return true;
    return false;
}

namespace {
std::string cutName(const char* name) { return std::string(name, strnlen(name, kExtensionNameMax)); }
}  // namespace

bool buildOpenGLExtensionsList(GlApi& api, OpenGlState& state) {
    std::vector<std::string>& list = state.extensions;
    if (api.hasGetStringi()) {
        int32_t count = 0;
        api.getIntegerv(gl::kNumExtensions, &count);
        if (count == 0) return false;
        int32_t platformNamed = 0;
        for (int32_t i = 0; i < count; ++i) {
            const char* name = api.getStringi(gl::kExtensions, static_cast<uint32_t>(i));
            if (!name) continue;
            if (std::strncmp(name, "WGL", 3) == 0) ++platformNamed;
            list.push_back(cutName(name));
        }
        state.glExtensionCount = count - platformNamed;
    } else {
        const char* text = api.getString(gl::kExtensions);
        if (!text) return false;
        for (std::string& token : tokenizeExtensions(text)) list.push_back(std::move(token));
        state.glExtensionCount = static_cast<int32_t>(list.size());
    }
    // The EGL display's extensions are the window-system extensions: they follow the context's own and are
    // counted apart from them.
    if (const char* text = api.platformExtensions()) {
        for (std::string& token : tokenizeExtensions(text))
            if (!hasExtension(list, token.c_str())) list.push_back(std::move(token));
    }
    state.wglExtensionCount = static_cast<int32_t>(list.size()) - state.glExtensionCount;
    return true;
}

}  // namespace Kalidornm
