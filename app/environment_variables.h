#pragma once

// The environment variables a run reads, as --help and the manual page list them.
struct EnvironmentDescription {
    const char* name;
    const char* description;
};

inline constexpr const char* kVulkanLoaderVariable = "LUMENSCOPE_VULKAN_LOADER";

inline constexpr EnvironmentDescription kDescribedEnvironment[] = {
    {kVulkanLoaderVariable, "the Vulkan loader to open instead of libvulkan.so.1"},
    {"VK_LOADER_DRIVERS_DISABLE", "Vulkan drivers to leave out; the run adds those of sleeping GPUs and absent vendors"},
};
