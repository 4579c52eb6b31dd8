#pragma once
// The exposition the test server serves: one GPU's temperature and power, as the real writer words them.

inline constexpr const char* kFixedExposition =
    "# HELP lumenscope_gpu_temperature_celsius Temperature of a GPU sensor in degrees Celsius.\n"
    "# TYPE lumenscope_gpu_temperature_celsius gauge\n"
    "lumenscope_gpu_temperature_celsius{gpu=\"0000:03:00.0\",sensor=\"edge\"} 47\n"
    "# HELP lumenscope_gpu_power_watts Power the GPU draws in watts.\n"
    "# TYPE lumenscope_gpu_power_watts gauge\n"
    "lumenscope_gpu_power_watts{gpu=\"0000:03:00.0\"} 35.5\n";
