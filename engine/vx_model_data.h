#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "engine/vx_math.h"
#include "engine/vx_mesh_data.h"

namespace Vantalux_nsp {

// A model file's content on the processor: its materials and a tree of named nodes, each with one mesh
// whose faces are grouped by material.
struct vxModelData {
    struct Material {
        std::string name;
        vxColor ambient{0.2f, 0.2f, 0.2f};
        vxColor diffuse{0.8f, 0.8f, 0.8f};
        vxColor specular{0, 0, 0};
        float shininess = 0.0f;
        std::string textureFile;  // as the file names it; empty without one
    };
    struct FaceGroup {
        uint32_t material;  // index into materials
        uint32_t firstFace;
        uint32_t faceCount;
    };
    struct Node {
        std::string name;
        vxMat4 transform;
        vxMeshData mesh;
        std::vector<FaceGroup> groups;
        std::vector<Node> children;
    };

    std::vector<Material> materials;
    Node root;

    uint32_t totalVertices() const;
    uint32_t totalFaces() const;
    const Node* findNode(const std::string& name) const;
};

// Reads a model; `formatHint` is the file extension ("3ds") for data in memory. A 3DS file is checked chunk
// by chunk before the importer sees it. False, and the data emptied, for a file that cannot be read whole.
bool vxLoadModelFromMemory(const uint8_t* data, size_t size, const char* formatHint, vxModelData& model);
bool vxLoadModelFile(const char* path, vxModelData& model);

// Whether the bytes are a well-formed 3DS chunk tree: every chunk inside its parent, the geometry chunks'
// counts within their chunk, face indices within the vertex list before them.
bool vxCheck3dsChunks(const uint8_t* data, size_t size);

}  // namespace Vantalux_nsp
