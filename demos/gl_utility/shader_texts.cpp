#include "demos/gl_utility/shader_texts.h"

#include <algorithm>

namespace {

constexpr ShaderText kShaderTexts[] = {
#include "shader_table.inc"
};

}  // namespace

std::span<const ShaderText> shaderTexts() { return kShaderTexts; }

std::string_view shaderText(std::string_view name) {
    const auto found = std::find_if(std::begin(kShaderTexts), std::end(kShaderTexts),
                                    [&](const ShaderText& row) { return row.name == name; });
    return found != std::end(kShaderTexts) ? found->text : std::string_view("");
}

std::string shaderSource(std::string_view prelude, std::string_view name) {
    std::string source(prelude);
    source += '\n';
    source += shaderText(name);
    return source;
}
