#include "base/dynamic_library.h"

#include <dlfcn.h>

#include <utility>

namespace base {

DynamicLibrary::DynamicLibrary(const char* name) {
    if (name) m_handle = dlopen(name, RTLD_NOW | RTLD_LOCAL);
}

DynamicLibrary::~DynamicLibrary() { close(); }

DynamicLibrary::DynamicLibrary(DynamicLibrary&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}

DynamicLibrary& DynamicLibrary::operator=(DynamicLibrary&& other) noexcept {
    if (this != &other) {
        close();
        m_handle = std::exchange(other.m_handle, nullptr);
    }
    return *this;
}

void* DynamicLibrary::symbol(const char* name) const {
    if (!m_handle || !name) return nullptr;
    return dlsym(m_handle, name);
}

void DynamicLibrary::close() {
    if (m_handle) dlclose(m_handle);
    m_handle = nullptr;
}

}  // namespace base
