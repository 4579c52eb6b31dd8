#include "app/platform/desktop_module_loader.h"

#include <dlfcn.h>

#include <cstdio>
#include <filesystem>

#include "app/desktop_module.h"
#include "app/metrics_module.h"
#include "app/platform/process.h"

#ifndef LUMENSCOPE_MODULE_DIR
#define LUMENSCOPE_MODULE_DIR "../lib/lumenscope"
#endif

const ProgramModule kDesktopModule{kDesktopModuleFile, kDesktopMainSymbol, "the window and demo module"};
const ProgramModule kMetricsModule{kMetricsModuleFile, kMetricsMainSymbol, "the metrics module"};

std::vector<std::string> moduleCandidates(const std::string& programDirectory, const std::string& moduleDirectory,
                                          const char* file) {
    std::vector<std::string> candidates{programDirectory + file};
    if (moduleDirectory.empty()) return candidates;
    const std::string directory =
        moduleDirectory.front() == '/' ? moduleDirectory : programDirectory + moduleDirectory;
    candidates.push_back((std::filesystem::path(directory) / file).lexically_normal().string());
    return candidates;
}

int runProgramModule(const ProgramModule& module, int argc, char** argv) {
    using ModuleMain = int(int argc, char** argv);
    std::string failures;
    for (const std::string& file :
         moduleCandidates(lumenscope::platform::executableDirectory(), LUMENSCOPE_MODULE_DIR, module.file)) {
        // Never closed: the module's threads and static objects live until the process ends.
        void* handle = dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL);
        if (!handle) {
            const char* why = dlerror();
            failures += std::string(failures.empty() ? "" : "; ") + (why ? why : file.c_str());
            continue;
        }
        auto* moduleMain = reinterpret_cast<ModuleMain*>(dlsym(handle, module.symbol));
        if (!moduleMain) {
            failures += std::string(failures.empty() ? "" : "; ") + file + ": no " + module.symbol;
            continue;
        }
        return moduleMain(argc, argv);
    }
    std::fprintf(stderr, "lumenscope: cannot load %s: %s\n", module.what, failures.c_str());
    return 1;
}
