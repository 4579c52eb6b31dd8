#include "demos/gl_utility/context_attempts.h"

#include <array>

namespace {

struct KindVersion {
    int major, minor;
};

// Context kinds 0 to 5.
constexpr auto kKindVersions = std::to_array<KindVersion>({{2, 0}, {3, 0}, {3, 1}, {3, 2}, {4, 0}, {4, 1}});

}  // namespace

std::vector<ContextAttempt> contextAttempts(int major, int minor) {
    std::vector<ContextAttempt> attempts;
    if (major >= 3) {
        for (bool profile : {true, false}) {
            for (int m = minor; m >= 0; --m) attempts.push_back({major, m, profile, false});
        }
    }
    attempts.push_back({0, 0, false, true});
    return attempts;
}

int createByAttempts(int major, int minor, const std::function<bool(const ContextAttempt&)>& tryCreate) {
    const std::vector<ContextAttempt> attempts = contextAttempts(major, minor);
    for (size_t i = 0; i < attempts.size(); ++i) {
        if (tryCreate(attempts[i])) return int(i);
    }
    return -1;
}

bool contextKindVersion(unsigned kind, int* major, int* minor) {
    if (kind >= kKindVersions.size()) return false;
    *major = kKindVersions[kind].major;
    *minor = kKindVersions[kind].minor;
    return true;
}
