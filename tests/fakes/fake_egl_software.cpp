// An EGL library that lists two devices, the second a software rasterizer, and can do nothing else. Built as
// libEGL.so.1 so the display-device reader loads it by path like the real one.
#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <cstring>

namespace {

int gHardwareDevice, gSoftwareDevice;

EGLBoolean queryDevices(EGLint maxDevices, EGLDeviceEXT* devices, EGLint* count) {
    EGLDeviceEXT all[] = {&gHardwareDevice, &gSoftwareDevice};
    EGLint n = 0;
    for (; n < 2 && n < maxDevices; ++n) devices[n] = all[n];
    *count = n;
    return EGL_TRUE;
}

const char* queryDeviceString(EGLDeviceEXT device, EGLint name) {
    if (name != EGL_EXTENSIONS) return nullptr;
    return device == &gSoftwareDevice ? "EGL_MESA_device_software" : "EGL_EXT_device_drm";
}

}  // namespace

extern "C" {

__attribute__((visibility("default"))) const char* eglQueryString(EGLDisplay display, EGLint name) {
    if (display != EGL_NO_DISPLAY || name != EGL_EXTENSIONS) return nullptr;
    return "EGL_EXT_client_extensions EGL_EXT_device_base EGL_EXT_device_enumeration";
}

__attribute__((visibility("default"))) __eglMustCastToProperFunctionPointerType eglGetProcAddress(
    const char* name) {
    if (std::strcmp(name, "eglQueryDevicesEXT") == 0)
        return reinterpret_cast<__eglMustCastToProperFunctionPointerType>(&queryDevices);
    if (std::strcmp(name, "eglQueryDeviceStringEXT") == 0)
        return reinterpret_cast<__eglMustCastToProperFunctionPointerType>(&queryDeviceString);
    return nullptr;
}
}
