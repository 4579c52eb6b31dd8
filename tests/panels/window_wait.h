#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <functional>

// Lets the event loop run until `done` holds or `timeoutMs` has passed; true when it held.
inline bool waitUntil(const std::function<bool()>& done, int timeoutMs = 3000) {
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > timeoutMs) return false;
        QTest::qWait(20);
    }
    return true;
}
