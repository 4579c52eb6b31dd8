#pragma once

#include <string>

#include "report/online/submission_facts.h"

// The form body of a submission: items "name=value" joined by "&", values not percent-encoded beyond what
// the text filters do.
namespace online {

// What the body and its driver-text fall-backs name as the platform.
inline constexpr const char* kPlatformWord = sizeof(void*) == 8 ? "Linux(64-bit)" : "Linux(32-bit)";

// Room of the two extension lists, terminator included; names that do not fit whole are left out.
inline constexpr size_t kGlExtensionListSize = 16384;
inline constexpr size_t kClExtensionListSize = 32768;

// Builds the body for `facts` into `body` (replacing what it held). `screenName` and `password` are sent as
// given, so they must have passed their filters; an empty one, and a screen name that is "anonymous" in any
// case, send no field. False only for a null text.
bool buildSubmitBody(const SubmissionFacts& facts, const char* screenName, const char* password, std::string& body);

}  // namespace online
