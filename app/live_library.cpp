#include "app/live_library.h"

#include <cstdio>

#include "kalidor/kalidor.h"

LiveLibrary::LiveLibrary() {
    Kalidornm::Kalidor* library = Kalidornm::Kalidor::getInstance();
    if (!library || !library->startupLiveOnly()) {
        std::fprintf(stderr, "lumenscope: the hardware library could not start\n");
        return;
    }
    m_library = library;
}

LiveLibrary::~LiveLibrary() {
    // A start that found no display device never counts as started, so shutdown refuses: free it by hand.
    if (!Kalidornm::Kalidor::getInstance()->shutdown()) Kalidornm::Kalidor::destroyInstance();
}

const Kalidornm::MachineSnapshot& LiveLibrary::readLive() {
    m_library->refreshLiveSample();
    return m_library->snapshot();
}
