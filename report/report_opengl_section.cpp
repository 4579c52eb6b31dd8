#include <cinttypes>

#include "report/report_sections.h"

namespace report {

namespace {

constexpr const char* kCatalogueSeparator = "GL_CAP_SEPARATOR_01";

void addIntRow(ReportBuffers& b, const char* textFormat, const char* attribute, int32_t value) {
    addReportLine(b, textFormat, value);
    addXmlAttribute(b, 3, attribute, formatText("%d", value));
}

void addFlagRow(ReportBuffers& b, const char* textFormat, const char* attribute, bool flag) {
    const char* yes = flag ? "yes" : "no";
    addReportLine(b, textFormat, yes);
    addXmlAttribute(b, 3, attribute, yes);
}

void addExtensionList(ReportBuffers& b, const ReportOpenGl& gl, bool withNotes) {
    addReportLine(b, "- OpenGL Extensions: %d extensions (GL=%d and WGL=%d)", int(gl.extensions.size()),
                  int(gl.glExtensionCount), int(gl.wglExtensionCount));
    addReportXml(b, "\n\t\t<opengl_extensions num_extensions=\"%d\" num_gl_extensions=\"%d\" num_wgl_extensions=\"%d\" >",
                 int(gl.extensions.size()), int(gl.glExtensionCount), int(gl.wglExtensionCount));
    for (const ReportGlExtension& e : gl.extensions) {
        const std::string item =
            withNotes && !e.note.empty() ? formatText("%s (%s)", e.name.c_str(), e.note.c_str()) : e.name;
        addReportLine(b, "    <li>%s</li>", item.c_str());
        addReportXml(b, "\n\t\t\t<li>%s</li>", xmlEscaped(item).c_str());
    }
    addReportXml(b, "\n\t\t</opengl_extensions>");
}

// The XML piece of one catalogue entry: the entry becomes an attribute named after it.
std::string capXml(const ReportGlCap& c) {
    switch (c.valueType) {
        case 1: return formatText("%s=\"%d\"", c.name.c_str(), c.intValue);
        case 2: return formatText("%s=\"%f\"", c.name.c_str(), c.floatValue);
        case 4: return formatText("%s=\"%" PRId64 "\"", c.name.c_str(), c.int64Value);
        case 5:
            return formatText("%s=\"%d/%d/%d\"", c.name.c_str(), c.tripleValue[0], c.tripleValue[1],
                              c.tripleValue[2]);
        default: return {};
    }
}

std::string coreCapText(const ReportGlCap& c) {
    switch (c.valueType) {
        case 1: return formatText("%s: %d", c.name.c_str(), c.intValue);
        case 2: return formatText("%s: %f", c.name.c_str(), c.floatValue);
        case 4: return formatText("%s: %" PRId64, c.name.c_str(), c.int64Value);
        case 5:
            return formatText("%s: %d/%d/%d", c.name.c_str(), c.tripleValue[0], c.tripleValue[1], c.tripleValue[2]);
        default: return {};
    }
}

// Entries of extensions name their extension; an integer entry without one keeps a trailing blank.
std::string extensionCapText(const ReportGlCap& c) {
    if (c.group.empty()) return c.valueType == 1 ? formatText("%s: %d ", c.name.c_str(), c.intValue) : coreCapText(c);
    const char* n = c.name.c_str();
    const char* g = c.group.c_str();
    switch (c.valueType) {
        case 1: return formatText("%s: %d (%s)", n, c.intValue, g);
        case 2: return formatText("%s: %f (%s)", n, c.floatValue, g);
        case 4: return formatText("%s: %" PRId64 " (%s)", n, c.int64Value, g);
        case 5: return formatText("%s: %d/%d/%d (%s)", n, c.tripleValue[0], c.tripleValue[1], c.tripleValue[2], g);
        default: return {};
    }
}

void addCapItems(ReportBuffers& b, const ReportOpenGl& gl, size_t first, size_t end, bool byExtension) {
    for (size_t i = first; i < end; ++i) {
        const ReportGlCap& c = gl.catalogue[i];
        const std::string text = byExtension ? extensionCapText(c) : coreCapText(c);
        addReportLine(b, "    <li>%s</li>", text.c_str());
        addReportXml(b, "\n\t\t\t%s", capXml(c).c_str());
    }
}

}  // namespace

void addOpenGlCapsSection(ReportBuffers& b, const ReportSnapshot& s) {
    const ReportOpenGl& gl = s.gl;
    addHeading(b, "OpenGL GPU Capabilities");
    addReportXml(b, "\n\t\t<opengl_caps ");
    addReportLine(b, "- OpenGL vendor: %s", gl.vendor.c_str());
    addXmlAttribute(b, 3, "opengl_vendor", gl.vendor);
    addReportLine(b, "- OpenGL renderer: %s", gl.renderer.c_str());
    addXmlAttribute(b, 3, "opengl_renderer", gl.renderer);
    if (gl.version.empty()) {
        addReportLine(b, "- OpenGL Version: ***N.A.*** - The graphics driver has returned a malformed string version!");
        addXmlAttribute(b, 3, "opengl_version", "1.1");
    } else {
        addReportLine(b, "- OpenGL Version: %s", gl.version.c_str());
        addXmlAttribute(b, 3, "opengl_version", gl.version);
    }
    const std::string glsl = gl.glslVersion.empty() ? std::string("Not Supported") : gl.glslVersion;
    addReportLine(b, "- GLSL (OpenGL Shading Language) Version: %s", glsl.c_str());
    addXmlAttribute(b, 3, "glsl_version", glsl);
    addIntRow(b, "- ARB Texture Units: %d", "arb_texture_units", gl.arbTextureUnits);
    addIntRow(b, "- Vertex Shader Texture Units: %d", "vertex_texture_units", gl.vertexTextureUnits);
    addIntRow(b, "- Pixel Shader Texture Units: %d", "pixel_texture_units", gl.pixelTextureUnits);
    addIntRow(b, "- Geometry Shader Texture Units: %d", "geometry_texture_units", gl.geometryTextureUnits);
    addReportLine(b, "- Max Texture Size: %s", formatText("%dx%d", gl.maxTextureSize, gl.maxTextureSize).c_str());
    addXmlAttribute(b, 3, "max_texture_size", formatText("%d", gl.maxTextureSize));
    addReportLine(b, "- Max Anisotropic Filtering Value: %s", formatText("X%.1f", gl.maxAnisotropy).c_str());
    addXmlAttribute(b, 3, "anisotropy", formatText("%d", int(gl.maxAnisotropy)));
    addReportLine(b, "- Max Point Sprite Size: %s", formatText("%.1f", gl.maxPointSpriteSize).c_str());
    addXmlAttribute(b, 3, "point_sprite_size", formatText("%d", int(gl.maxPointSpriteSize)));
    addReportLine(b, "- Max Dynamic Lights: %s", formatText("%d", gl.maxDynamicLights).c_str());
    addXmlAttribute(b, 3, "num_dynamic_lights", formatText("%d", gl.maxDynamicLights));
    addReportLine(b, "- Max Viewport Size: %s", formatText("%dx%d", gl.maxViewportSize, gl.maxViewportSize).c_str());
    addXmlAttribute(b, 3, "max_viewport_size", formatText("%d", gl.maxViewportSize));
    addIntRow(b, "- Max Vertex Uniform Components: %d", "max_vertex_uniform_components", gl.maxVertexUniformComponents);
    addIntRow(b, "- Max Fragment Uniform Components: %d", "max_fragment_uniform_components",
              gl.maxFragmentUniformComponents);
    addIntRow(b, "- Max Geometry Uniform Components: %d", "max_geometry_uniform_components",
              gl.maxGeometryUniformComponents);
    addIntRow(b, "- Max Varying Float: %d", "max_varying_float", gl.maxVaryingFloats);
    addIntRow(b, "- Max Vertex Bindable Uniforms: %d", "max_vertex_bindable_uniforms", gl.maxVertexBindableUniforms);
    addIntRow(b, "- Max Fragment Bindable Uniforms: %d", "max_fragment_bindable_uniforms",
              gl.maxFragmentBindableUniforms);
    addIntRow(b, "- Max Geometry Bindable Uniforms: %d", "max_geometry_bindable_uniforms",
              gl.maxGeometryBindableUniforms);
    addFlagRow(b, "- Frame Buffer Objects (FBO) Support:[%s]", "fbo", gl.fbo);
    addIntRow(b, "- Multiple Render Targets / Max draw buffers: %d", "max_mrt_draw_buffers", gl.maxDrawBuffers);
    addFlagRow(b, "- Pixel Buffer Objects (PBO) Support:[%s]", "pbo", gl.pbo);
    addFlagRow(b, "- S3TC Texture Compression Support:[%s]", "s3tc", gl.s3tc);
    addFlagRow(b, "- ATI 3Dc Texture Compression Support:[%s]", "ati_3dc", gl.ati3dc);
    addFlagRow(b, "- Texture Rectangle Support:[%s]", "texture_rectangle", gl.textureRectangle);
    addFlagRow(b, "- Floating Point Textures Support:[%s]", "floating_texture", gl.floatTextures);
    addReportXml(b, "\t\t />");
    for (int32_t samples : gl.msaaSampleCounts) {
        addReportLine(b, "- MSAA: %dX", samples);
        addReportXml(b, "\n\t\t<msaa samples=\"%d\" />", samples);
    }
}

// The list stands twice: once with the notes of the extension table, once with the plain names.
void addOpenGlExtensionsSection(ReportBuffers& b, const ReportSnapshot& s) {
    addExtensionList(b, s.gl, true);
    addExtensionList(b, s.gl, false);
}

void addOpenGlCatalogueSection(ReportBuffers& b, const ReportSnapshot& s) {
    const ReportOpenGl& gl = s.gl;
    size_t separator = gl.catalogue.size();
    for (size_t i = 0; i < gl.catalogue.size(); ++i)
        if (gl.catalogue[i].name == kCatalogueSeparator) {
            separator = i;
            break;
        }
    const size_t extensionStart = separator < gl.catalogue.size() ? separator + 1 : separator;

    addReportLine(b, "- OpenGL core capabilities: %d caps listed", int(separator));
    addReportXml(b, "\n\t\t<gl_core_caps num_caps=\"%d\"", int(separator));
    addCapItems(b, gl, 0, separator, false);
    addReportXml(b, "\t\t />");

    const int extensionCount = int(gl.catalogue.size() - extensionStart);
    addReportLine(b, "- OpenGL extension capabilities: %d caps listed", extensionCount);
    addReportXml(b, "\n\t\t<gl_caps_by_ext num_caps=\"%d\"", extensionCount);
    addCapItems(b, gl, extensionStart, gl.catalogue.size(), true);
    addReportXml(b, "\t\t />");
}

}  // namespace report
