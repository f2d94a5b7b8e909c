#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <iterator>
#include <random>
#include <string>

// One random sequence of events: where its chances come from, and what has been done so far.
class Sequence {
public:
    explicit Sequence(unsigned seed) : random_(seed) {}

    // 0 to count - 1
    unsigned below(unsigned count) { return unsigned(random_() % count); }
    bool oneIn(unsigned count) { return below(count) == 0; }

    template<typename Choices>
    const auto& any(const Choices& choices) {
        return *std::next(std::begin(choices), below(unsigned(std::size(choices))));
    }

    // To be said before it is done, so that it is known what broke it.
    void does(const std::string& event) { events_ += "\n    " + event; }
    const std::string& events() const { return events_; }

private:
    std::mt19937 random_; // the same numbers with every library, as its distributions are not
    std::string events_;
};

// Plays that many sequences, each from a seed of its own, up to the first that goes wrong; tells
// what that one did and how it is had again. NORVAXEL_SEQUENCES is another number of them,
// NORVAXEL_SEED the first one's seed.
template<typename Play>
void playSequences(int count, Play play) {
    const auto number = [](const char* name, int otherwise) {
        const char* const value = std::getenv(name);
        return value == nullptr ? otherwise : std::atoi(value);
    };
    const auto first = unsigned(number("NORVAXEL_SEED", 1));
    const auto end = first + unsigned(number("NORVAXEL_SEQUENCES", count));
    for (unsigned seed = first; seed != end; ++seed) {
        Sequence sequence(seed);
        play(sequence);
        if (testing::Test::HasFailure()) {
            ADD_FAILURE() << "again with NORVAXEL_SEED=" << seed
                          << " NORVAXEL_SEQUENCES=1:" << sequence.events();
            return;
        }
    }
}
