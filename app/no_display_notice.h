#pragma once

// Tells the user on standard error, in one paragraph, that the window has no display to open on (`why`) and
// how to get the reports without one, and writes the same to the log in one line.
void reportNoDisplay(const char* why);
