#include "platform/ChildLaunch.h"
#include "platform/Descriptors.h"

#include <crt_externs.h>
#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include <csignal>
#include <string>
#include <vector>

namespace platform {
namespace {

// Frees what it holds on every way out; the init functions can only fail for lack of memory.
struct SpawnSettings {
    SpawnSettings() {
        posix_spawn_file_actions_init(&actions);
        posix_spawnattr_init(&attributes);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings() {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }

    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
};

int place(SpawnSettings& settings, int descriptor, int target) {
    if (descriptor < 0)
        return posix_spawn_file_actions_addopen(&settings.actions, target, "/dev/null", O_RDWR, 0);
    return posix_spawn_file_actions_adddup2(&settings.actions, descriptor, target);
}

int prepare(SpawnSettings& settings, const std::string& workingDirectory, int output, int error) {
    sigset_t all;
    sigset_t none;
    sigfillset(&all);
    sigemptyset(&none);
    // Close-on-exec is the default, so that nothing but the three descriptors is inherited.
    const short flags = POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK |
                        POSIX_SPAWN_CLOEXEC_DEFAULT;
    int failure = posix_spawnattr_setflags(&settings.attributes, flags);
    if (failure == 0)
        failure = posix_spawnattr_setpgroup(&settings.attributes, 0);
    if (failure == 0)
        failure = posix_spawnattr_setsigdefault(&settings.attributes, &all);
    if (failure == 0)
        failure = posix_spawnattr_setsigmask(&settings.attributes, &none);
    if (failure == 0)
        failure = place(settings, -1, STDIN_FILENO);
    if (failure == 0)
        failure = place(settings, output, STDOUT_FILENO);
    if (failure == 0)
        failure = place(settings, error, STDERR_FILENO);
    if (failure == 0 && !workingDirectory.empty())
        failure = posix_spawn_file_actions_addchdir_np(&settings.actions, workingDirectory.c_str());
    return failure;
}

} // namespace

// There is no request to the kernel here that ends the tool with the program: after a crash the
// tool runs on until it has finished.
std::error_code launchChild(const ChildCommand& command, pid_t& pid) {
    keepExitStatuses();
    // The actions run in the order 0, 1, 2 and would overwrite a source among those numbers.
    UniqueFd copies[2];
    const int output = awayFromStandard(command.output, copies[0]);
    const int error = awayFromStandard(command.error, copies[1]);
    if ((command.output >= 0 && output < 0) || (command.error >= 0 && error < 0))
        return systemError();

    const std::vector<char*> arguments = argumentVector(command);
    SpawnSettings settings;
    int failure = prepare(settings, command.workingDirectory, output, error);
    pid_t child = 0;
    if (failure == 0)
        failure = posix_spawn(&child, command.program.c_str(), &settings.actions,
                              &settings.attributes, arguments.data(), *_NSGetEnviron());
    if (failure != 0)
        return systemError(failure);
    pid = child;
    return {};
}

} // namespace platform
