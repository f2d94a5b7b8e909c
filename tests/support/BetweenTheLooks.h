#pragma once

#include <poll.h>

#include <ctime>
#include <functional>
#include <utility>

// While this lives, the next poll of this program looks at its first descriptor, lets this happen,
// and looks at the others then: the kernel, too, looks at one after the other, and what happens
// meanwhile is rare. One source of a program may include this. Linux only.
class BetweenTheLooks {
public:
    explicit BetweenTheLooks(std::function<void()> happens) { happens_ = std::move(happens); }
    BetweenTheLooks(const BetweenTheLooks&) = delete;
    BetweenTheLooks& operator=(const BetweenTheLooks&) = delete;
    ~BetweenTheLooks() { happens_ = nullptr; }

    static std::function<void()> take() { return std::exchange(happens_, nullptr); }

private:
    static inline std::function<void()> happens_;
};

// Instead of the C library's. Its headers may say more of that than another definition can.
extern "C" int interruptedPoll(pollfd* files, nfds_t count, int patience) __asm__("poll");

int interruptedPoll(pollfd* files, nfds_t count, int patience) {
    const timespec now{};
    if (const auto happens = BetweenTheLooks::take()) {
        const int first = ::ppoll(files, 1, &now, nullptr);
        happens();
        return first + ::ppoll(files + 1, count - 1, &now, nullptr);
    }
    const timespec limit{patience / 1000, patience % 1000 * 1'000'000L};
    return ::ppoll(files, count, patience < 0 ? nullptr : &limit, nullptr);
}
