#pragma once

// The window a context draws into: an X display connection and window, or none for a headless context.
struct NativeWindow {
    void* display = nullptr;      // Display*; null: headless
    unsigned long window = 0;     // Window
    unsigned long visualId = 0;   // the window's visual, which the context's config must match
};
