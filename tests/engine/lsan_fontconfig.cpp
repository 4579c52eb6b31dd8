// Read by LeakSanitizer when the tests are built with it. fontconfig loses a block while it parses its own
// configuration files (in FcInit, the first time the HUD font asks for a face); nothing of ours holds it.
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig.so\n"; }
