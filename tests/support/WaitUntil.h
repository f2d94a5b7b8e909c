#pragma once

#include <chrono>
#include <thread>

// Waits until holds() is true, looking again every millisecond. False after patience: generous,
// because a sanitizer on a busy machine is slow and only a failing test ever waits that long.
template<typename Predicate>
bool waitUntil(Predicate holds, std::chrono::seconds patience = std::chrono::seconds(30)) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!holds()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}
