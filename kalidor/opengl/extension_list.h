#pragma once

#include <string>
#include <vector>

#include "kalidor/opengl/gl_api.h"
#include "kalidor/opengl/opengl_state.h"

namespace Kalidornm {

inline constexpr size_t kExtensionNameMax = 127;

// Cuts an extension string at single blanks. Text behind the last blank is no token, so a string that does
// not end in a blank loses its last name; two blanks in a row give an empty name. Tokens are cut to 127.
std::vector<std::string> tokenizeExtensions(const char* text);

// True if some name equals `name` over the first 127 characters.
bool hasExtension(const std::vector<std::string>& names, const char* name);

// Lists the context's extensions (indexed query when bound, else the legacy string), then appends the
// platform's display extensions not yet listed, and sets the two counts. False when the driver lists none.
bool buildOpenGLExtensionsList(GlApi& api, OpenGlState& state);

}  // namespace Kalidornm
