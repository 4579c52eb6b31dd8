#pragma once

#include <cstdint>
#include <vector>

namespace Kalidornm {

// EGL attribute names of a versioned context (EGL_KHR_create_context).
namespace egl_attr {
inline constexpr int32_t kMajorVersion = 0x3098, kMinorVersion = 0x30FB, kFlags = 0x30FC;
inline constexpr int32_t kProfileMask = 0x30FD, kNone = 0x3038;
inline constexpr int32_t kDebugBit = 1, kCompatibilityProfileBit = 2;
}  // namespace egl_attr

// Makes one context from an attribute list ending in EGL_NONE; false when the driver refuses it.
class ContextCreator {
public:
    virtual ~ContextCreator() = default;
    virtual bool tryCreate(const std::vector<int32_t>& attributes) = 0;
};

enum class LadderList { A, B, C };
std::vector<int32_t> ladderAttributes(LadderList list, int major, int minor);

// Asks for versioned contexts from the requested version down: list A (debug) or B, each minor down to 0,
// then once with the major lowered to at most 3.3 and down again, then list C from the requested version.
// True at the first context the creator makes.
bool runContextLadder(ContextCreator& creator, int major, int minor, bool debugContext);

}  // namespace Kalidornm
