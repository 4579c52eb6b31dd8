#pragma once

#include <functional>
#include <vector>

// The versions a demo context is asked for, in order: the version with the compatibility profile from its
// minor number down to 0, then the same without a profile (which gives a core profile from 3.2 on), then a
// plain context of whatever version the driver likes. The major version is never lowered: a driver without
// 3.2 gets 3.1 or 3.0 or the plain context, and demos check the version they got. Below 3 only the plain
// context is asked for.
struct ContextAttempt {
    int major = 0;
    int minor = 0;
    bool compatibilityProfile = false;
    bool plain = false;  // no version and no profile
};

std::vector<ContextAttempt> contextAttempts(int major, int minor);

// Runs the attempts through `tryCreate` until one works; returns its index, or -1 when none did.
int createByAttempts(int major, int minor, const std::function<bool(const ContextAttempt&)>& tryCreate);

// The version a context kind asks for; false for a kind that asks for nothing.
bool contextKindVersion(unsigned kind, int* major, int* minor);
