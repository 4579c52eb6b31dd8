#include "app/platform/desktop_module_loader.h"

#include <dlfcn.h>

#include <cstdio>
#include <filesystem>

#include "app/desktop_module.h"
#include "app/platform/process.h"

#ifndef LUMENSCOPE_MODULE_DIR
#define LUMENSCOPE_MODULE_DIR "../lib/lumenscope"
#endif

std::vector<std::string> desktopModuleCandidates(const std::string& programDirectory,
                                                 const std::string& moduleDirectory) {
    std::vector<std::string> candidates{programDirectory + kDesktopModuleFile};
    if (moduleDirectory.empty()) return candidates;
    const std::string directory =
        moduleDirectory.front() == '/' ? moduleDirectory : programDirectory + moduleDirectory;
    candidates.push_back((std::filesystem::path(directory) / kDesktopModuleFile).lexically_normal().string());
    return candidates;
}

int runDesktopModule(int argc, char** argv) {
    std::string failures;
    for (const std::string& file :
         desktopModuleCandidates(lumenscope::platform::executableDirectory(), LUMENSCOPE_MODULE_DIR)) {
        // Never closed: the module's threads and static objects live until the process ends.
        void* module = dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL);
        if (!module) {
            const char* why = dlerror();
            failures += std::string(failures.empty() ? "" : "; ") + (why ? why : file.c_str());
            continue;
        }
        auto* desktopMain = reinterpret_cast<DesktopMainFunction*>(dlsym(module, kDesktopMainSymbol));
        if (!desktopMain) {
            failures += std::string(failures.empty() ? "" : "; ") + file + ": no " + kDesktopMainSymbol;
            continue;
        }
        return desktopMain(argc, argv);
    }
    std::fprintf(stderr, "lumenscope: cannot load the window and demo module: %s\n", failures.c_str());
    return 1;
}
