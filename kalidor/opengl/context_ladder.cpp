#include "kalidor/opengl/context_ladder.h"

namespace Kalidornm {

std::vector<int32_t> ladderAttributes(LadderList list, int major, int minor) {
    std::vector<int32_t> a = {egl_attr::kMajorVersion, major, egl_attr::kMinorVersion, minor};
    if (list == LadderList::A) a.insert(a.end(), {egl_attr::kFlags, egl_attr::kDebugBit});
    if (list != LadderList::C) a.insert(a.end(), {egl_attr::kProfileMask, egl_attr::kCompatibilityProfileBit});
    a.push_back(egl_attr::kNone);
    return a;
}

namespace {
bool walkMinorsDown(ContextCreator& creator, LadderList list, int major, int minor) {
    if (creator.tryCreate(ladderAttributes(list, major, minor))) return true;
    while (minor > 0) {
        --minor;
        if (creator.tryCreate(ladderAttributes(list, major, minor))) return true;
    }
    return false;
}
}  // namespace

bool runContextLadder(ContextCreator& creator, int major, int minor, bool debugContext) {
    const LadderList first = debugContext ? LadderList::A : LadderList::B;
    if (walkMinorsDown(creator, first, major, minor)) return true;
    // The major goes down once only; with a major of 3 this is one more try at 3.0.
    if (major > 3) {
        if (walkMinorsDown(creator, first, major - 1, 3)) return true;
    } else if (creator.tryCreate(ladderAttributes(first, major, 0))) {
        return true;
    }
    return walkMinorsDown(creator, LadderList::C, major, minor);
}

}  // namespace Kalidornm
