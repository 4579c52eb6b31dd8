#pragma once

// Message boxes of the shell. Each formats into one shared 32,000-byte buffer (one thread at a time), shows
// the box, then hands the same text to the trace installed with setMessageBoxTrace (the engine's, in a run
// that has the engine) with the box's level. None ends the program.
void showErrorBox(const char* format, ...) __attribute__((format(printf, 1, 2)));
void showWarningBox(const char* format, ...) __attribute__((format(printf, 1, 2)));
void showInfoBox(const char* format, ...) __attribute__((format(printf, 1, 2)));

enum class MessageBoxKind { Error, Warning, Info };

// Shows one box. Until a window toolkit installs its own, the title and text go to standard error.
using MessageBoxPresenter = void (*)(MessageBoxKind kind, const char* title, const char* text);
void setMessageBoxPresenter(MessageBoxPresenter presenter);

// Receives each box's text after it is shown, with level 1 error, 2 warning, 4 information; null: none.
using MessageBoxTrace = void (*)(int level, const char* text);
void setMessageBoxTrace(MessageBoxTrace trace);

// Hands a web page or file to the desktop; null or empty does nothing, the result is not looked at.
void openUrl(const char* text);

// Opens one non-empty target for openUrl. Until a window toolkit installs its own, the desktop's opener
// program gets it; null puts that back.
using UrlOpener = void (*)(const char* target);
void setUrlOpener(UrlOpener opener);

double celsiusToFahrenheit(float celsius);
