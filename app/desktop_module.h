#pragma once

// The window, the demos and the engine live in a module of their own, loaded only by a run that shows a
// window or starts a demo: a batch run does not map the window toolkit, the image and model loaders or the
// network stack.

// The module's one exported function: the interactive run, with main's arguments and meaning of the result.
extern "C" int lumenscope_desktop_main(int argc, char** argv);
inline constexpr const char* kDesktopMainSymbol = "lumenscope_desktop_main";

// The module's file name; it sits beside the program in the build tree and in LUMENSCOPE_MODULE_DIR (relative
// to the program's directory) when installed.
inline constexpr const char* kDesktopModuleFile = "lumenscope-desktop.so";
