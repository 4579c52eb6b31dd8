// Model files through the Open Asset Import Library.
#include <assimp/Importer.hpp>
#include <assimp/material.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <strings.h>

#include "engine/vx_model_data.h"

namespace Vantalux_nsp {

namespace {

constexpr uint32_t kMaxVertices = 4u << 20;
constexpr uint32_t kMaxFaces = 8u << 20;
constexpr int kMaxNodeDepth = 64;

constexpr unsigned kImportSteps = aiProcess_Triangulate | aiProcess_JoinIdenticalVertices | aiProcess_GenSmoothNormals |
                                  aiProcess_SortByPType | aiProcess_ValidateDataStructure;

vxColor colorOf(const aiMaterial* material, const char* key, unsigned type, unsigned index, vxColor fallback) {
    aiColor4D c;
    if (aiGetMaterialColor(material, key, type, index, &c) != AI_SUCCESS) return fallback;
    return {c.r, c.g, c.b, c.a};
}

vxModelData::Material convertMaterial(const aiMaterial* source) {
    vxModelData::Material m;
    aiString name;
    if (source->Get(AI_MATKEY_NAME, name) == AI_SUCCESS) m.name = name.C_Str();
    m.ambient = colorOf(source, AI_MATKEY_COLOR_AMBIENT, m.ambient);
    m.diffuse = colorOf(source, AI_MATKEY_COLOR_DIFFUSE, m.diffuse);
    m.specular = colorOf(source, AI_MATKEY_COLOR_SPECULAR, m.specular);
    float shininess = 0.0f;
    if (source->Get(AI_MATKEY_SHININESS, shininess) == AI_SUCCESS) m.shininess = shininess;
    aiString texture;
    if (source->GetTexture(aiTextureType_DIFFUSE, 0, &texture) == AI_SUCCESS) m.textureFile = texture.C_Str();
    return m;
}

class Converter {
public:
    explicit Converter(const aiScene& scene) : m_scene(scene) {}

    bool node(const aiNode& source, vxModelData::Node& out, int depth) {
        if (depth > kMaxNodeDepth) return false;
        out.name = source.mName.C_Str();
        const aiMatrix4x4& t = source.mTransformation;  // rows first; ours are columns first
        const float columns[16] = {t.a1, t.b1, t.c1, t.d1, t.a2, t.b2, t.c2, t.d2,
                                   t.a3, t.b3, t.c3, t.d3, t.a4, t.b4, t.c4, t.d4};
        std::memcpy(out.transform.m, columns, sizeof columns);
        for (unsigned i = 0; i < source.mNumMeshes; ++i) {
            if (source.mMeshes[i] >= m_scene.mNumMeshes || !append(*m_scene.mMeshes[source.mMeshes[i]], out)) return false;
        }
        out.children.resize(source.mNumChildren);
        for (unsigned i = 0; i < source.mNumChildren; ++i)
            if (!source.mChildren[i] || !node(*source.mChildren[i], out.children[i], depth + 1)) return false;
        return true;
    }

private:
    bool append(const aiMesh& mesh, vxModelData::Node& out) {
        if (!(mesh.mPrimitiveTypes & aiPrimitiveType_TRIANGLE)) return true;  // points and lines are not drawn
        if (mesh.mNumVertices > kMaxVertices - m_vertices || mesh.mNumFaces > kMaxFaces - m_faces) return false;
        m_vertices += mesh.mNumVertices;
        m_faces += mesh.mNumFaces;
        vxMeshData& data = out.mesh;
        const uint32_t first = data.vertexCount();
        const uint32_t firstFace = data.faceCount();
        for (unsigned v = 0; v < mesh.mNumVertices; ++v) {
            const aiVector3D& p = mesh.mVertices[v];
            data.positions.push_back({p.x, p.y, p.z});
            const aiVector3D n = mesh.mNormals ? mesh.mNormals[v] : aiVector3D(0, 0, 1);
            data.normals.push_back({n.x, n.y, n.z});
            const aiVector3D uv = mesh.mTextureCoords[0] ? mesh.mTextureCoords[0][v] : aiVector3D(0, 0, 0);
            data.texCoords.push_back({uv.x, uv.y});
        }
        for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
            const aiFace& face = mesh.mFaces[f];
            if (face.mNumIndices != 3) continue;
            for (unsigned k = 0; k < 3; ++k) {
                if (face.mIndices[k] >= mesh.mNumVertices) return false;
                data.indices.push_back(first + face.mIndices[k]);
            }
        }
        const uint32_t added = data.faceCount() - firstFace;
        if (added > 0) out.groups.push_back({mesh.mMaterialIndex, firstFace, added});
        return mesh.mMaterialIndex < m_scene.mNumMaterials;
    }

    const aiScene& m_scene;
    uint32_t m_vertices = 0;
    uint32_t m_faces = 0;
};

bool convert(const aiScene* scene, vxModelData& model) {
    if (!scene || !scene->mRootNode || (scene->mFlags & AI_SCENE_FLAGS_INCOMPLETE)) return false;
    for (unsigned i = 0; i < scene->mNumMaterials; ++i) model.materials.push_back(convertMaterial(scene->mMaterials[i]));
    Converter converter(*scene);
    return converter.node(*scene->mRootNode, model.root, 0);
}

bool isHint(const char* hint, const char* extension) { return hint && strcasecmp(hint, extension) == 0; }

}  // namespace

uint32_t vxModelData::totalVertices() const {
    uint32_t n = 0;
    auto count = [&](const Node& node, auto& self) -> void {
        n += node.mesh.vertexCount();
        for (const Node& child : node.children) self(child, self);
    };
    count(root, count);
    return n;
}

uint32_t vxModelData::totalFaces() const {
    uint32_t n = 0;
    auto count = [&](const Node& node, auto& self) -> void {
        n += node.mesh.faceCount();
        for (const Node& child : node.children) self(child, self);
    };
    count(root, count);
    return n;
}

const vxModelData::Node* vxModelData::findNode(const std::string& name) const {
    auto find = [&](const Node& node, auto& self) -> const Node* {
        if (node.name == name) return &node;
        for (const Node& child : node.children)
            if (const Node* found = self(child, self)) return found;
        return nullptr;
    };
    return find(root, find);
}

bool vxLoadModelFromMemory(const uint8_t* data, size_t size, const char* formatHint, vxModelData& model) {
    model = {};
    if (!data || size == 0) return false;
    if (isHint(formatHint, "3ds") && !vxCheck3dsChunks(data, size)) return false;
    try {
        Assimp::Importer importer;
        const bool ok = convert(importer.ReadFileFromMemory(data, size, kImportSteps, formatHint ? formatHint : ""), model);
        if (!ok) model = {};
        return ok;
    } catch (const std::exception&) {
        model = {};
        return false;
    }
}

bool vxLoadModelFile(const char* path, vxModelData& model) {
    model = {};
    if (!path) return false;
    std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path, "rb"), &std::fclose);
    if (!file) return false;
    std::vector<uint8_t> bytes;
    uint8_t block[65536];
    for (size_t n; (n = std::fread(block, 1, sizeof block, file.get())) > 0;) {
        bytes.insert(bytes.end(), block, block + n);
        if (bytes.size() > (size_t(256) << 20)) return false;
    }
    const char* dot = std::strrchr(path, '.');
    return vxLoadModelFromMemory(bytes.data(), bytes.size(), dot ? dot + 1 : "", model);
}

}  // namespace Vantalux_nsp
