#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "kalidor/opengl/gl_api.h"

// Answers recorded from a driver: strings, integer/float/64-bit/indexed values and GLEW flags. A parameter
// without an answer leaves the output untouched, as a refusing driver does.
class FakeGlApi : public Kalidornm::GlApi {
public:
    std::map<uint32_t, std::string> strings;
    std::vector<const char*> indexedExtensions;  // null entries stand for names the driver fails to give
    bool indexedBound = true, int64Bound = true, indexedIntBound = true;
    std::map<uint32_t, int32_t> ints;
    std::map<uint32_t, float> floats;
    std::map<uint32_t, int64_t> int64s;
    std::map<std::pair<uint32_t, uint32_t>, int32_t> indexedInts;
    std::set<std::string> glewFlags;
    const char* platform = nullptr;
    std::vector<std::pair<uint32_t, float>> pointParameters;
    int lightModelCalls = 0;

    const char* getString(uint32_t name) override {
        auto it = strings.find(name);
        return it == strings.end() ? nullptr : it->second.c_str();
    }
    bool hasGetStringi() override { return indexedBound; }
    const char* getStringi(uint32_t, uint32_t index) override {
        return index < indexedExtensions.size() ? indexedExtensions[index] : nullptr;
    }
    void getIntegerv(uint32_t pname, int32_t* values) override {
        if (pname == 0x821D && indexedBound) {
            values[0] = static_cast<int32_t>(indexedExtensions.size());
            return;
        }
        if (auto it = ints.find(pname); it != ints.end()) values[0] = it->second;
    }
    void getFloatv(uint32_t pname, float* values) override {
        if (auto it = floats.find(pname); it != floats.end()) values[0] = it->second;
    }
    bool hasGetInteger64v() override { return int64Bound; }
    void getInteger64v(uint32_t pname, int64_t* value) override {
        if (auto it = int64s.find(pname); it != int64s.end()) *value = it->second;
    }
    bool hasGetIntegeri_v() override { return indexedIntBound; }
    void getIntegeri_v(uint32_t pname, uint32_t index, int32_t* value) override {
        if (auto it = indexedInts.find({pname, index}); it != indexedInts.end()) *value = it->second;
    }
    void lightModeli(uint32_t, int32_t) override { ++lightModelCalls; }
    void pointParameterf(uint32_t pname, float value) override { pointParameters.push_back({pname, value}); }
    bool glewFlag(const char* extension) override { return glewFlags.count(extension) != 0; }
    const char* platformExtensions() override { return platform; }
};
