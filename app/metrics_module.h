#pragma once

// The metrics endpoint lives in a module of its own, loaded only by a --serve-metrics run, so that no other
// run maps the HTTP server and TLS libraries.

// The module's one exported function: the serving run, with main's arguments (all of them, the two-dash
// options too) and meaning of the result.
extern "C" int lumenscope_metrics_main(int argc, char** argv);
inline constexpr const char* kMetricsMainSymbol = "lumenscope_metrics_main";

// Found as the window module is (app/desktop_module.h).
inline constexpr const char* kMetricsModuleFile = "lumenscope-metrics.so";
