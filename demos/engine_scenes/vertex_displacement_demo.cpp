// "GL 2.1 - Vertex Displacement Mapping": a finely cut plane whose vertices climb to the brightness of a
// picture read in the vertex stage, with ripples running over its heights.
#include <cstdio>

#include "demos/demo_context.h"
#include "demos/engine_scenes/engine_demo.h"
#include "demos/gl_utility/shader_texts.h"
#include "demos/harness/demo_host.h"
#include "demos/harness/demo_table.h"

namespace {

#include "demos/engine_scenes/vtf_terrain_jpeg.inc"

using namespace Vantalux_nsp;

class VertexDisplacementDemo : public EngineDemo {
protected:
    bool checkCapabilities(const vxHardwareCaps& caps) override {
        if (!caps.getGPUCap(VX_CAP_OPENGL_2_0)) {
            demoShowError("VTF demo requires the support of OpenGL 2.0.");
            return false;
        }
        if (caps.getMaxVertexTextureImageUnits() <= 0) {
            demoShowError("This demo requires at least one vertex texture unit.\n\rOpenGL Texture Fetch requires a "
                          "GeForce 6 (and higher) or a S3 Graphics Chrome 400 Series.");
            return false;
        }
        return true;
    }
    vxColor backgroundColor() const override { return vxColor::grey(0.0f); }
    CameraSettings cameraSettings() const override { return {50, 1, 2000, 50, 1, 4000, {0, 250, 350}, {0, 0, 0}}; }
    vxColor textColor() const override { return {0.4f, 0.8f, 0.2f}; }

    bool buildScene(DemoContext&) override {
        // One picture, two textures: its brightness lifts the vertices, its colours paint them.
        vxTextureData displacementOptions;
        displacementOptions.filter = VX_FILTER_NEAREST;
        displacementOptions.addressing = VX_ADDRESS_CLAMP;
        displacementOptions.internalFormat = VX_INTERNAL_FORMAT_FLOAT;
        vxTextureData colorOptions;
        colorOptions.filter = VX_FILTER_LINEAR;
        colorOptions.addressing = VX_ADDRESS_REPEAT;
        vxTextureMgr* textures = vxTextureMgr::getInstance();
        vxTexture* displacement = textures->createTexture2D("vtf_displacement_map", kVtfTerrainJpeg, sizeof kVtfTerrainJpeg,
                                                           displacementOptions);
        vxTexture* color = textures->createTexture2D("vtf_color_map", kVtfTerrainJpeg, sizeof kVtfTerrainJpeg, colorOptions);
        if (!displacement || !color) {
            demoShowError("Could not load the displacement map.");
            return false;
        }
        m_shader = buildShader("VTFShader", shaderText("displaced_terrain.vert").data(),
                               shaderText("displaced_terrain.frag").data(), "Vertex Shader Error: %s",
                               "Pixel Shader Error: %s", "Pixel Shader Error: %s", false);
        if (!m_shader) return false;
        m_shader->setUniform1i("displacementMap", 0);
        m_shader->setUniform1i("colorMap", 1);

        vxMaterial* material = vxMaterialMgr::getInstance()->createMaterial("vtf_mesh_mat");
        material->setLighting(false);
        material->addTexture(displacement, 0);
        material->addTexture(color, 1);
        material->setGpuShader(m_shader);
        vxMesh* mesh = m_engine->createMesh(named("VTF_Mesh_%d").c_str());
        mesh->makePlane(400, 400, 500, 500);
        mesh->assignMaterialToFaces(material, 0, mesh->getNumFaces() - 1);
        mesh->setAutoSpinAngles(0, 10, 0);
        mesh->buildBuffers();
        m_scene->addObject(mesh);
        m_triangleCount = mesh->getNumFaces();
        return true;
    }

    void drawScene(DemoContext& context, float) override {
        m_shader->setUniform1f("time", elapsedSeconds(context));
        m_scene->draw(*m_renderer);
    }

    void drawExtraLines(DemoContext&) override {
        char line[64];
        std::snprintf(line, sizeof line, "Triangles=%u", m_triangleCount);
        drawLine(70, line);
    }

private:
    vxGpuShader* m_shader = nullptr;
};

}  // namespace

std::unique_ptr<DemoScene> makeVertexDisplacementDemo() { return std::make_unique<VertexDisplacementDemo>(); }
