// Laid over the C library in the program alone: lets exactly one of its calls fail, do half of what
// it is asked for, or be the last thing that the program does. run.py says which, in memory that
// both share.
//
// A call counts when all of this holds:
// - run.py has armed this library, once the window was where it wanted it;
// - it was called by the program itself, or by the C++ library or Qt's core, which do a file's work
//   for it: everybody else (the display, the desktop's bus, fonts, the loader) does something else;
// - it names a path below the case's folder, or the null device; or a descriptor that came from
//   such a call; or it makes a pipe, a thread (not one of Qt's own), a process, or becomes a tool.
// A new process counts until it has become its tool, which has none of this in its environment.

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <poll.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

// The layout is that of run.py.
enum Action : int { Fail = 1, Half, Kill };
struct Call {
    char kind[8];
    // c: a new file, o: something else, f: a file's descriptor, p: a pipe's, n: one that waits not
    char thing;
    char what[119];
};
struct Shared {
    std::atomic<std::int32_t> armed, fired, count;
    std::int32_t owner, action, error, number;
    char kind[8];
    char root[256];
    Call calls[1000];
};

// The code of the program, of the C++ library, and of Qt's core: from, to.
enum Module { Program, Library, Core, Modules };
std::uintptr_t code[Modules][2];
Shared* shared = nullptr;
std::array<std::atomic<char>, 4096> things; // by descriptor, as in Call; 0: nobody's

bool isIn(Module module, const void* caller) {
    return std::uintptr_t(caller) >= code[module][0] && std::uintptr_t(caller) < code[module][1];
}

bool counts(const void* caller) {
    return shared != nullptr &&
           (isIn(Program, caller) || isIn(Library, caller) || isIn(Core, caller));
}

bool isOurs(const char* path) {
    return std::strncmp(path, shared->root, std::strlen(shared->root)) == 0 ||
           std::strcmp(path, "/dev/null") == 0;
}

char thingOf(int file) {
    return std::size_t(file) < things.size() ? things[std::size_t(file)].load() : char(0);
}

int keep(int file, char thing) {
    if (std::size_t(file) < things.size())
        things[std::size_t(file)] = thing;
    return file;
}

// What becomes of a call that counts: 0, the error, or -1 for half of it.
int fate(const char* kind, char thing, const char* what) {
    if (!shared->armed)
        return 0;
    const auto place = std::size_t(shared->count++) % std::size(shared->calls);
    Call& call = shared->calls[place];
    call.thing = thing;
    const std::size_t root = std::strlen(shared->root);
    std::strncpy(call.what, std::strncmp(what, shared->root, root) == 0 ? what + root : what,
                 sizeof call.what - 1);
    std::strcpy(call.kind, kind);
    const auto number = std::count_if(shared->calls, &call + 1, [&](const Call& each) {
        return std::strcmp(each.kind, kind) == 0;
    });
    if (std::strcmp(kind, shared->kind) != 0 || number != shared->number ||
        shared->fired.exchange(int(place) + 1) != 0)
        return 0;
    if (shared->action == Kill) {
        ::kill(shared->owner, SIGKILL);
        while (::getpid() == shared->owner)
            ::pause();
        return 0; // a process that is not yet a tool goes on, as it would
    }
    return shared->action == Half ? -1 : shared->error;
}

bool isKnown(const char* path, const void* caller, int folder) {
    return counts(caller) && (thingOf(folder) != 0 || isOurs(path));
}

int fateOfPath(const char* kind, const char* path, const void* caller, int folder = -1,
               bool isNew = false) {
    return isKnown(path, caller, folder) ? fate(kind, isNew ? 'c' : 'o', path) : 0;
}

int fateOfFile(const char* kind, int file, const void* caller) {
    char thing = thingOf(file);
    if (thing == 0 || !counts(caller))
        return 0;
    char what[sizeof Shared::root] = "a pipe";
    if (thing == 'f') {
        char link[32];
        std::snprintf(link, sizeof link, "/proc/self/fd/%d", file);
        const ssize_t size = ::readlink(link, what, sizeof what - 1);
        what[size > 0 ? size : 0] = 0;
    } else if ((::fcntl(file, F_GETFL) & O_NONBLOCK) != 0) {
        thing = 'n';
    }
    return fate(kind, thing, what);
}

int fateOf(const char* kind, const char* what, const void* caller) {
    return counts(caller) ? fate(kind, 'o', what) : 0;
}

// A new descriptor: what is done with it counts if its own call did.
int opened(int file, const char* path, const void* caller, int folder = -1) {
    return keep(file, isKnown(path, caller, folder) ? 'f' : char(0));
}

int findCode(dl_phdr_info* info, std::size_t, void*) {
    const std::string_view name = info->dlpi_name;
    const Module module = name.empty()                                         ? Program
                          : name.find("libstdc++") != std::string_view::npos   ? Library
                          : name.find("libQt6Core.") != std::string_view::npos ? Core
                                                                               : Modules;
    for (int each = 0; module != Modules && each < info->dlpi_phnum; ++each)
        if (const auto& part = info->dlpi_phdr[each];
            part.p_type == PT_LOAD && (part.p_flags & PF_X) != 0) {
            code[module][0] = info->dlpi_addr + part.p_vaddr;
            code[module][1] = code[module][0] + part.p_memsz;
        }
    return 0;
}

[[gnu::constructor]] void begin() {
    const char* path = std::getenv("NORVAXEL_ONE_FAULT_MEMORY");
    if (path == nullptr)
        return;
    dl_iterate_phdr(findCode, nullptr);
    const auto file = int(::syscall(SYS_openat, AT_FDCWD, path, O_RDWR));
    void* memory = ::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (memory == MAP_FAILED)
        std::abort();
    ::syscall(SYS_close, file);
    ::unsetenv("LD_PRELOAD");
    shared = static_cast<Shared*>(memory);
    shared->owner = ::getpid();
}

template<typename Result>
Result refused(int error) {
    errno = error;
    if constexpr (std::is_same_v<Result, DIR*>)
        return nullptr;
    else
        return -1;
}

} // namespace

// Each under the C library's name, whatever its headers say of it: its fate, and else the real one.
// The real one is the last thing that is called, and jumped to: vfork returns twice, the second
// time when who called it has gone on.
#define CALLER __builtin_return_address(0)
#define OVER(result, name, parameters)                                                             \
    extern "C" [[gnu::visibility("default")]] result over_##name parameters __asm__(#name);        \
    result over_##name parameters
#define REAL(result, name, parameters)                                                             \
    static auto* const real = reinterpret_cast<result(*) parameters>(dlsym(RTLD_NEXT, #name))
#define LAID_OVER(result, name, parameters, itsFate, itsCall)                                      \
    OVER(result, name, parameters) {                                                               \
        REAL(result, name, parameters);                                                            \
        const int error = itsFate;                                                                 \
        return error > 0 ? refused<result>(error) : itsCall;                                       \
    }

LAID_OVER(int, open, (const char* path, int flags, mode_t mode),
          fateOfPath("open", path, CALLER, -1, (flags & O_CREAT) != 0),
          opened(real(path, flags, mode), path, CALLER))
LAID_OVER(int, open64, (const char* path, int flags, mode_t mode),
          fateOfPath("open", path, CALLER, -1, (flags & O_CREAT) != 0),
          opened(real(path, flags, mode), path, CALLER))
LAID_OVER(int, openat, (int folder, const char* name, int flags, mode_t mode),
          fateOfPath("open", name, CALLER, folder),
          opened(real(folder, name, flags, mode), name, CALLER, folder))
LAID_OVER(int, mkostemp, (char* path, int flags), fateOfPath("open", path, CALLER, -1, true),
          opened(real(path, flags), path, CALLER))
LAID_OVER(ssize_t, read, (int file, void* bytes, std::size_t size),
          fateOfFile("read", file, CALLER), real(file, bytes, error < 0 ? 1 : size))
LAID_OVER(ssize_t, write, (int file, const void* bytes, std::size_t size),
          fateOfFile("write", file, CALLER), real(file, bytes, error < 0 ? (size + 1) / 2 : size))
LAID_OVER(int, fsync, (int file), fateOfFile("fsync", file, CALLER), real(file))
LAID_OVER(int, rename, (const char* from, const char* to), fateOfPath("rename", to, CALLER),
          real(from, to))
LAID_OVER(int, mkdir, (const char* path, mode_t mode), fateOfPath("mkdir", path, CALLER),
          real(path, mode))
LAID_OVER(int, unlink, (const char* path), fateOfPath("unlink", path, CALLER), real(path))
LAID_OVER(int, remove, (const char* path), fateOfPath("unlink", path, CALLER), real(path))
LAID_OVER(int, unlinkat, (int folder, const char* name, int flags),
          fateOfPath("unlink", name, CALLER, folder), real(folder, name, flags))
LAID_OVER(DIR*, fdopendir, (int folder), fateOfFile("opendir", folder, CALLER), real(folder))
LAID_OVER(int, closedir, (DIR * folder), (keep(dirfd(folder), 0), 0), real(folder))
LAID_OVER(int, dup2, (int from, int to), fateOf("dup", to == 0 ? "input" : "output", CALLER),
          real(from, to))
LAID_OVER(int, chdir, (const char* path), fateOfPath("chdir", path, CALLER), real(path))
LAID_OVER(pid_t, fork, (), fateOf("process", "", CALLER), real())
LAID_OVER(pid_t, vfork, (), fateOf("process", "", CALLER), real())
LAID_OVER(int, execv, (const char* path, char* const* arguments), fateOf("exec", path, CALLER),
          real(path, arguments))
LAID_OVER(int, execve, (const char* path, char* const* arguments, char* const* environment),
          fateOf("exec", path, CALLER), real(path, arguments, environment))
LAID_OVER(int, poll, (pollfd * files, nfds_t count, int patience),
          count > 0 && thingOf(files[0].fd) != 0 ? fateOf("poll", "", CALLER) : 0,
          real(files, count, patience))

// The descriptor is gone even where closing it fails.
OVER(int, close, (int file)) {
    REAL(int, close, (int));
    const int error = fateOfFile("close", file, CALLER);
    keep(file, 0);
    const int result = real(file);
    return error > 0 ? refused<int>(error) : result;
}

OVER(int, pipe2, (int* ends, int flags)) {
    REAL(int, pipe2, (int*, int));
    if (const int error = fateOf("pipe", "", CALLER))
        return refused<int>(error);
    const int result = real(ends, flags);
    for (int each = 0; result == 0 && each < 2; ++each)
        keep(ends[each], counts(CALLER) ? 'p' : char(0));
    return result;
}

// Says its error itself.
OVER(int, pthread_create,
     (pthread_t * thread, const pthread_attr_t* attributes, void* (*run)(void*), void* data)) {
    REAL(int, pthread_create, (pthread_t*, const pthread_attr_t*, void* (*)(void*), void*));
    const int error = isIn(Core, CALLER) ? 0 : fateOf("thread", "", CALLER);
    return error > 0 ? error : real(thread, attributes, run, data);
}
