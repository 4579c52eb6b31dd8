/* Preloaded into the program for its leak checks at exit: libraries stay mapped when they are closed, so
 * the leak checker can name the library of every allocation (an unloaded one shows as "<unknown module>",
 * which no suppression can name). */
int dlclose(void* handle) {
    (void)handle;
    return 0;
}
