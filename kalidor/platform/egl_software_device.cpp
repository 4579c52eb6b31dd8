#include "kalidor/platform/egl_software_device.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <cstring>

#include "base/dynamic_library.h"

namespace Kalidornm {

namespace {

// An extension list holds the name as a whole blank-separated word.
bool hasExtension(const char* list, const char* name) {
    if (!list) return false;
    const size_t length = std::strlen(name);
    for (const char* at = std::strstr(list, name); at; at = std::strstr(at + 1, name)) {
        const bool startsWord = at == list || at[-1] == ' ';
        const bool endsWord = at[length] == '\0' || at[length] == ' ';
        if (startsWord && endsWord) return true;
    }
    return false;
}

constexpr int kMaxEglDevices = 32;

}  // namespace

bool eglOffersSoftwareDevice(const std::string& eglLibrary) {
    if (eglLibrary.empty()) return false;
    base::DynamicLibrary egl(eglLibrary.c_str());
    auto getProcAddress = egl.function<decltype(eglGetProcAddress)>("eglGetProcAddress");
    auto queryString = egl.function<decltype(eglQueryString)>("eglQueryString");
    if (!getProcAddress || !queryString) return false;

    const char* clientExtensions = queryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    if (!hasExtension(clientExtensions, "EGL_EXT_device_enumeration") &&
        !hasExtension(clientExtensions, "EGL_EXT_device_base"))
        return false;
    auto queryDevices = reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(getProcAddress("eglQueryDevicesEXT"));
    auto queryDeviceString =
        reinterpret_cast<PFNEGLQUERYDEVICESTRINGEXTPROC>(getProcAddress("eglQueryDeviceStringEXT"));
    if (!queryDevices || !queryDeviceString) return false;

    EGLDeviceEXT devices[kMaxEglDevices] = {};
    EGLint count = 0;
    if (!queryDevices(kMaxEglDevices, devices, &count)) return false;
    for (EGLint i = 0; i < count && i < kMaxEglDevices; ++i)
        if (hasExtension(queryDeviceString(devices[i], EGL_EXTENSIONS), "EGL_MESA_device_software")) return true;
    return false;
}

}  // namespace Kalidornm
