#include "lifecycle.h"

int main(int argc, char** argv) { return runLumenscope(argc, argv); }
