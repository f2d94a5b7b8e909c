#include "platform/Files.h"

#include <QRandomGenerator>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace platform {
namespace {

// Opens a file that did not exist beside the target and sets path to it. The kernel takes the umask
// off the mode: the program could read the umask only by changing it, for all its threads.
UniqueFd openBeside(const std::filesystem::path& target, mode_t mode, std::filesystem::path& path) {
    constexpr int attempts = 100;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        char name[32];
        std::snprintf(name, sizeof name, ".new-%016llx",
                      static_cast<unsigned long long>(QRandomGenerator::global()->generate64()));
        path = target.parent_path() / name;
        UniqueFd file(
            ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
        if (file || errno != EEXIST)
            return file;
    }
    return {};
}

std::error_code writeAll(int file, QByteArrayView bytes) {
    while (!bytes.isEmpty()) {
        const ssize_t written =
            uninterrupted([&] { return ::write(file, bytes.data(), std::size_t(bytes.size())); });
        if (written < 0)
            return systemError();
        bytes = bytes.sliced(written);
    }
    return {};
}

std::error_code syncFile(int file) {
#ifdef __APPLE__
    // fsync stops at the drive's own memory here; not every file system knows the longer way.
    if (::fcntl(file, F_FULLFSYNC) == 0)
        return {};
#endif
    return ::fsync(file) == 0 ? std::error_code() : systemError();
}

// Everything that source still holds.
std::error_code copyAll(int file, int source) {
    QByteArray chunk(65536, Qt::Uninitialized);
    for (;;) {
        const ssize_t got =
            uninterrupted([&] { return ::read(source, chunk.data(), std::size_t(chunk.size())); });
        if (got == 0)
            return {};
        if (got < 0)
            return systemError();
        if (const std::error_code failure = writeAll(file, QByteArrayView(chunk).first(got)))
            return failure;
    }
}

std::error_code finish(UniqueFd& file, Durability durability) {
    if (durability == Durability::Durable) {
        if (const std::error_code failure = syncFile(file.get()))
            return failure;
    }
    // A file system on the network may tell only now that it could not keep the bytes.
    return ::close(file.release()) == 0 ? std::error_code() : systemError();
}

// Puts a file there in one step; `fill` writes it.
template<typename Fill>
std::error_code replace(const std::filesystem::path& path, Durability durability, Readers readers,
                        Fill fill) {
    std::filesystem::path fresh;
    UniqueFd file = openBeside(path, readers == Readers::Everyone ? 0644 : 0600, fresh);
    if (!file)
        return systemError();

    std::error_code failure = fill(file.get());
    if (!failure)
        failure = finish(file, durability);
    if (!failure && ::rename(fresh.c_str(), path.c_str()) != 0)
        failure = systemError();
    if (failure) {
        ::unlink(fresh.c_str());
        return failure;
    }
    if (durability == Durability::Durable) {
        const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
        const UniqueFd opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (opened)
            ::fsync(opened.get());
    }
    return {};
}

std::error_code createParents(const std::filesystem::path& path) {
    std::filesystem::path parent;
    for (const std::filesystem::path& step : path.parent_path()) {
        parent /= step;
        if (::mkdir(parent.c_str(), 0700) == 0)
            continue;
        const std::error_code failure = systemError();
        // Parents may be links, and making one that exists may be refused for another reason than
        // that it exists (a folder that only others can write to).
        std::error_code ignored;
        if (!std::filesystem::is_directory(parent, ignored))
            return failure;
    }
    return {};
}

} // namespace

std::error_code replaceFile(const std::filesystem::path& path, const QByteArray& bytes,
                            Durability durability, Readers readers) {
    return replace(path, durability, readers, [&](int file) { return writeAll(file, bytes); });
}

std::error_code replaceByCopy(const std::filesystem::path& path,
                              const std::filesystem::path& source) {
    const UniqueFd opened(::open(source.c_str(), O_RDONLY | O_CLOEXEC));
    if (!opened)
        return systemError();
    return replace(path, Durability::Fast, Readers::Owner,
                   [&](int file) { return copyAll(file, opened.get()); });
}

std::error_code createPrivateFolder(const std::filesystem::path& path, Parents parents) {
    if (parents == Parents::Create) {
        if (const std::error_code failure = createParents(path))
            return failure;
    }
    return ::mkdir(path.c_str(), 0700) == 0 ? std::error_code() : systemError();
}

PrivateLog createPrivateLog(const std::filesystem::path& path) {
    UniqueFd file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file)
        return {UniqueFd(), systemError()};
    return {std::move(file), {}};
}

} // namespace platform
