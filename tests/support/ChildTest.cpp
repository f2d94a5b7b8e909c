#include "ChildTest.h"

#include "WaitUntil.h"

#include <dirent.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace {

// Children inherit this variable and hand it on, so it names descendants that have lost their
// parent, too.
const char* const markerName = "NORVAXEL_TEST_RUN";

bool carriesMarker(const std::string& id) {
    std::ifstream file("/proc/" + id + "/environ", std::ios::binary);
    const std::string environment((std::istreambuf_iterator<char>(file)), {});
    // Each variable ends with a NUL, so that run 12 is not found in run 123.
    const std::string marker =
        std::string(markerName) + "=" + std::to_string(::getpid()) + std::string(1, '\0');
    return environment.find(marker) != std::string::npos;
}

int countEntries(const char* path) {
    int count = 0;
    DIR* folder = ::opendir(path);
    if (folder == nullptr)
        return -1;
    while (const dirent* entry = ::readdir(folder))
        count += entry->d_name[0] != '.';
    ::closedir(folder);
    return count - 1; // without the one that reads the list
}

} // namespace

bool hasChild() {
    siginfo_t ignored{};
    return ::waitid(P_ALL, 0, &ignored, WEXITED | WNOHANG | WNOWAIT) == 0 || errno != ECHILD;
}

std::vector<int> livingDescendants() {
    std::vector<int> found;
    DIR* folder = ::opendir("/proc");
    if (folder == nullptr)
        return found;
    while (const dirent* entry = ::readdir(folder)) {
        const int id = std::atoi(entry->d_name);
        if (id > 0 && id != ::getpid() && carriesMarker(entry->d_name))
            found.push_back(id);
    }
    ::closedir(folder);
    return found;
}

std::string readToEnd(int descriptor) {
    std::string text;
    char block[4096];
    for (;;) {
        const ssize_t got = ::read(descriptor, block, sizeof block);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return text;
        text.append(block, std::size_t(got));
    }
}

int openDescriptors() {
#ifdef __APPLE__
    return countEntries("/dev/fd");
#else
    return countEntries("/proc/self/fd");
#endif
}

void ChildTest::SetUp() {
    ASSERT_EQ(::setenv(markerName, std::to_string(::getpid()).c_str(), 1), 0);
}

void ChildTest::TearDown() {
    EXPECT_TRUE(waitUntil([] { return !hasChild(); })) << "a child is left, or was not reaped";
    EXPECT_TRUE(waitUntil([] { return livingDescendants().empty(); }))
        << "a process is left that a child has started";
}
