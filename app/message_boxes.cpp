#include "app/message_boxes.h"

#include <cstdarg>
#include <cstdio>

#include "app/platform/process.h"

namespace {

constexpr size_t kBoxBufferSize = 32000;
char gBoxText[kBoxBufferSize];

void presentOnStandardError(MessageBoxKind, const char* title, const char* text) {
    std::fprintf(stderr, "%s\n%s\n\n", title, text);
    std::fflush(stderr);
}

MessageBoxPresenter gPresenter = presentOnStandardError;
MessageBoxTrace gTrace = nullptr;
UrlOpener gUrlOpener = lumenscope::platform::openWithDesktop;

struct BoxStyle {
    const char* title;
    int traceLevel;
};

constexpr BoxStyle styleOf(MessageBoxKind kind) {
    switch (kind) {
        case MessageBoxKind::Error: return {"Lumenscope Error", 1};
        case MessageBoxKind::Warning: return {"Lumenscope Warning", 2};
        case MessageBoxKind::Info: break;
    }
    return {"Lumenscope Info", 4};
}

void showBox(MessageBoxKind kind, const char* format, va_list args) {
    std::vsnprintf(gBoxText, sizeof gBoxText, format, args);
    const BoxStyle style = styleOf(kind);
    gPresenter(kind, style.title, gBoxText);
    if (gTrace) gTrace(style.traceLevel, gBoxText);
}

}  // namespace

void setMessageBoxPresenter(MessageBoxPresenter presenter) {
    gPresenter = presenter ? presenter : presentOnStandardError;
}

void setMessageBoxTrace(MessageBoxTrace trace) { gTrace = trace; }

void showErrorBox(const char* format, ...) {
    va_list args;
    va_start(args, format);
    showBox(MessageBoxKind::Error, format, args);
    va_end(args);
}

void showWarningBox(const char* format, ...) {
    va_list args;
    va_start(args, format);
    showBox(MessageBoxKind::Warning, format, args);
    va_end(args);
}

void showInfoBox(const char* format, ...) {
    va_list args;
    va_start(args, format);
    showBox(MessageBoxKind::Info, format, args);
    va_end(args);
}

void setUrlOpener(UrlOpener opener) { gUrlOpener = opener ? opener : lumenscope::platform::openWithDesktop; }

void openUrl(const char* text) {
    if (!text || !*text) return;
    gUrlOpener(text);
}

double celsiusToFahrenheit(float celsius) { return double(celsius) * 1.8 + 32.0; }
