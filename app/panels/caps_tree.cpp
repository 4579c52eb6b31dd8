#include "app/panels/caps_tree.h"

#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "kalidor/kalidor.h"

namespace panels {

namespace {

constexpr CapsTreeHeading kHeadings[] = {
    {"GL_VERSION_1_1", ""},
    {"GL_VERSION_1_2", ""},
    {"GL_VERSION_1_3", ""},
    {"GL_VERSION_1_4", ""},
    {"GL_VERSION_2_0", ""},
    {"GL_VERSION_3_0", ""},
    {"GL_VERSION_3_1", ""},
    {"GL_VERSION_3_2", ""},
    {"GL_VERSION_3_3", ""},
    {"GL_VERSION_4_0", ""},
    {"GL_VERSION_4_1", ""},
    {"GL_VERSION_4_2", ""},
    {"GL_VERSION_4_3", ""},
    {"GL_VERSION_4_4", ""},
    {"GL_VERSION_4_5", ""},
    {"GL_AMD_debug_output", ""},
    {"GL_APPLE_vertex_array_range", ""},
    {"GL_ARB_blend_func_extended", "OpenGL 3.3"},
    {"GL_ARB_compute_shader", "OpenGL 4.3"},
    {"GL_ARB_debug_output", "OpenGL 4.0"},
    {"GL_ARB_draw_buffers", "OpenGL 1.5"},
    {"GL_ARB_ES2_compatibility", "OpenGL 4.1"},
    {"GL_ARB_explicit_uniform_location", "OpenGL 4.3"},
    {"GL_ARB_fragment_program", "OpenGL 1.3"},
    {"GL_ARB_fragment_shader", "OpenGL 1.4"},
    {"GL_ARB_framebuffer_no_attachments", "OpenGL 4.3"},
    {"GL_ARB_framebuffer_object", "OpenGL 2.1"},
    {"GL_ARB_geometry_shader4", "OpenGL 3.2"},
    {"GL_ARB_gpu_shader5", "OpenGL 4.0"},
    {"GL_ARB_imaging", ""},
    {"GL_ARB_map_buffer_alignment", "OpenGL 4.2"},
    {"GL_ARB_matrix_palette", "OpenGL 1.2"},
    {"GL_ARB_multitexture", ""},
    {"GL_ARB_point_parameters", "OpenGL 1.3"},
    {"GL_ARB_sample_shading", "OpenGL 2.0"},
    {"GL_ARB_shader_atomic_counters", "OpenGL 4.2"},
    {"GL_ARB_shader_image_load_store", "OpenGL 4.2"},
    {"GL_ARB_shader_subroutine", "OpenGL 4.0"},
    {"GL_ARB_shading_language_100", ""},
    {"GL_ARB_sync", "OpenGL 3.2"},
    {"GL_ARB_tessellation_shader", "OpenGL 4.0"},
    {"GL_ARB_texture_buffer_object", "OpenGL 3.1"},
    {"GL_ARB_texture_cube_map", "OpenGL 1.3"},
    {"GL_ARB_texture_compression", "OpenGL 1.3"},
    {"GL_ARB_texture_gather", "OpenGL 4.0"},
    {"GL_ARB_texture_multisample", "OpenGL 3.2"},
    {"GL_ARB_texture_rectangle", "OpenGL 3.1"},
    {"GL_ARB_transform_feedback3", "OpenGL 4.0"},
    {"GL_ARB_uniform_buffer_object", "OpenGL 3.1"},
    {"GL_ARB_vertex_attrib_binding", "OpenGL 4.3"},
    {"GL_ARB_vertex_blend", "OpenGL 1.3"},
    {"GL_ARB_vertex_program", "OpenGL 1.3"},
    {"GL_ARB_vertex_shader", "OpenGL 1.4"},
    {"GL_ARB_viewport_array", "OpenGL 4.1"},
    {"GL_EXT_bindable_uniform", ""},
    {"GL_EXT_geometry_shader4", ""},
    {"GL_EXT_texture_array", ""},
    {"GL_EXT_texture_buffer_object", ""},
    {"GL_EXT_texture_filter_anisotropic", ""},
    {"GL_NV_explicit_multisample", ""},
    {"GL_NV_framebuffer_multisample_coverage", ""},
    {"GL_NV_fragment_program", ""},
    {"GL_NV_fragment_program2", ""},
    {"GL_NV_geometry_program4", ""},
    {"GL_NV_gpu_program4", ""},
    {"GL_NV_gpu_program5", ""},
    {"GL_NV_light_max_exponent", ""},
    {"GL_NV_parameter_buffer_object", ""},
    {"GL_NV_register_combiners", ""},
    {"GL_NV_shader_buffer_load", ""},
    {"GL_NV_tessellation_program5", ""},
    {"GL_NV_texture_rectangle", ""},
    {"GL_NV_transform_feedback", ""},
    {"GL_NV_vertex_array_range", ""},
    {"GL_NV_vertex_program", ""},
    {"GL_NV_vertex_program2_option", ""},
    {"GL_NVX_gpu_memory_info", ""},
    {"GL_PGI_vertex_hints", ""},
    {"GL_SGI_color_matrix", ""},
    {"GL_SGIS_color_range", ""},
    {"GL_SGIX_async_histogram", ""},
    {"GL_SGIX_async_pixel", ""},
    {"GL_SGIX_texture_range", ""},
};
static_assert(std::size(kHeadings) == 83);

}  // namespace

std::span<const CapsTreeHeading> capsTreeHeadings() { return kHeadings; }

std::string capLeafText(const char* name, int32_t valueType, int32_t intValue, const int32_t tripleValue[3],
                        int64_t int64Value, float floatValue) {
    char text[256];
    switch (valueType) {
        case 1: std::snprintf(text, sizeof text, "%s: %d", name, intValue); break;
        case 2: std::snprintf(text, sizeof text, "%s: %f", name, double(floatValue)); break;
        case 4: std::snprintf(text, sizeof text, "%s: %" PRId64, name, int64Value); break;
        case 5:
            std::snprintf(text, sizeof text, "%s: %d/%d/%d", name, tripleValue[0], tripleValue[1], tripleValue[2]);
            break;
        default: std::snprintf(text, sizeof text, "%s", name); break;
    }
    return text;
}

std::vector<CapsTreeBranch> capsTreeBranches(const Kalidornm::OpenGlFacts& gl) {
    std::vector<CapsTreeBranch> branches;
    for (const CapsTreeHeading& heading : kHeadings) {
        CapsTreeBranch branch;
        branch.text = *heading.note ? std::string(heading.group) + " (" + heading.note + ")" : heading.group;
        for (const Kalidornm::GlCapFacts& cap : gl.catalogue)
            if (cap.group == heading.group)
                branch.leaves.push_back(capLeafText(cap.name.c_str(), cap.valueType, cap.intValue, cap.tripleValue,
                                                    cap.int64Value, cap.floatValue));
        if (!branch.leaves.empty()) branches.push_back(std::move(branch));
    }
    return branches;
}

}  // namespace panels
