// The command line on any words: options are found anywhere in the joined line and numbers are read with
// scanf, so no line may crash the parser or leave a field at a value no option can give it. The two-dash
// options are sorted out of the same words first: every word lands on one side, and a value is never kept
// outside its range.
#include <cstdlib>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/command_line.h"
#include "app/long_options.h"
#include "fuzz/fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // Each NUL-ended part is one argument, as the program receives them.
    std::vector<std::string> words;
    for (std::string_view part : splitFuzzInput(data, size)) words.emplace_back(part);
    std::vector<const char*> argv{"lumenscope"};
    for (const std::string& word : words) argv.push_back(word.c_str());
    const std::string line = joinArguments(int(argv.size()), argv.data());

    const SplitCommandLine split = splitCommandLine(int(argv.size()), argv.data());
    size_t twoDashWords = 0;
    for (const std::string& word : words) twoDashWords += word.rfind("--", 0) == 0;
    if (split.otherArguments.size() + twoDashWords != words.size()) std::abort();
    for (const std::string& other : split.otherArguments)
        if (other.rfind("--", 0) == 0) std::abort();
    if (split.error.empty() && split.options.intervalMs < kMinMonitorIntervalMs) std::abort();
    if (split.error.empty() && split.options.count && *split.options.count < 1) std::abort();
    if (twoDashWords == 0 && !split.error.empty()) std::abort();

    AppState state;
    resetAppState(state);
    parseCommandLine(state, line.c_str());

    if (state.demo.clSurfaceSegsX == 0 || state.demo.clSurfaceSegsZ == 0) std::abort();
    if (state.demo.clDeviceType != 2 && state.demo.clDeviceType != 4) std::abort();
    const bool defaultVersion = state.glMajorVersion == 4 && state.glMinorVersion == 5;
    if (!defaultVersion && (state.glMajorVersion != 3 || state.glMinorVersion > 2)) std::abort();
    if (state.demo.clDeviceIndexForced && line.find("/cl_device_index=") == std::string::npos) std::abort();
    if (state.automaticDemo && line.find("/start_demo_") == std::string::npos) std::abort();
    return 0;
}
