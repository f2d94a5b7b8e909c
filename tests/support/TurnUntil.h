#pragma once

#include "WaitUntil.h"

#include <QCoreApplication>

// The same on the main thread, whose event loop turns as long as there is something to do.
template<typename Predicate>
bool turnUntil(Predicate holds) {
    return waitUntil([&] {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        return holds();
    });
}
