#pragma once

// One loaded shared library, closed when the object goes. A library that is not there leaves the object empty.
namespace base {

class DynamicLibrary {
public:
    DynamicLibrary() = default;
    // Loads by name, so the loader's search path (LD_LIBRARY_PATH included) decides which file is used.
    explicit DynamicLibrary(const char* name);
    ~DynamicLibrary();
    DynamicLibrary(DynamicLibrary&& other) noexcept;
    DynamicLibrary& operator=(DynamicLibrary&& other) noexcept;
    DynamicLibrary(const DynamicLibrary&) = delete;
    DynamicLibrary& operator=(const DynamicLibrary&) = delete;

    bool isLoaded() const { return m_handle != nullptr; }
    explicit operator bool() const { return isLoaded(); }
    void* handle() const { return m_handle; }

    // Null when the library is not loaded or has no such symbol.
    void* symbol(const char* name) const;
    template <typename Fn>
    Fn* function(const char* name) const {
        return reinterpret_cast<Fn*>(symbol(name));
    }

    void close();

private:
    void* m_handle = nullptr;
};

}  // namespace base
