#include "Probe.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace {

std::vector<char*> terminatedPointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

void require(int error, const char* what) {
    if (error != 0)
        throw std::system_error(error, std::generic_category(), what);
}

} // namespace

ProbeResult runProbe(std::vector<std::string> arguments, std::vector<std::string> environment) {
    arguments.insert(arguments.begin(), LANGUAGE_PROBE);
    std::array<int, 2> ends;
    require(pipe(ends.data()) == 0 ? 0 : errno, "pipe");
    posix_spawn_file_actions_t actions;
    require(posix_spawn_file_actions_init(&actions), "file actions");
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, ends[0]);
    posix_spawn_file_actions_addclose(&actions, ends[1]);
    pid_t child = -1;
    const int error =
        posix_spawn(&child, LANGUAGE_PROBE, &actions, nullptr, terminatedPointers(arguments).data(),
                    terminatedPointers(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    ProbeResult result{-1, {}};
    std::array<char, 4096> piece;
    ssize_t count = 0;
    while ((count = read(ends[0], piece.data(), piece.size())) > 0)
        result.output.append(piece.data(), std::size_t(count));
    close(ends[0]);
    require(error, LANGUAGE_PROBE);
    int status = 0;
    require(waitpid(child, &status, 0) == child ? 0 : errno, "waitpid");
    if (WIFEXITED(status))
        result.exitStatus = WEXITSTATUS(status);
    return result;
}
