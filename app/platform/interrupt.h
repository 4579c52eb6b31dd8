#pragma once

#include <atomic>

namespace lumenscope::platform {

// From now on the first interrupt or termination signal sets the flag instead of ending the process, so a
// benchmark run stopped from the terminal still ends its demo and writes its row; a second one ends the
// process as usual.
void catchFirstInterrupt();
const std::atomic<bool>& interruptRequested();

}  // namespace lumenscope::platform
