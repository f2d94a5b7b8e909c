#pragma once

#include <string>
#include <vector>

struct ProbeResult {
    int exitStatus; // -1 when the probe was killed by a signal
    std::string output;
};

// Runs the helper program language_probe with exactly this environment ("NAME=value") and waits for
// its end. Throws std::system_error when it cannot be started.
ProbeResult runProbe(std::vector<std::string> arguments, std::vector<std::string> environment);
