#pragma once

#include "platform/Descriptors.h"

#include <QByteArray>

#include <filesystem>
#include <system_error>

namespace platform {

// Whether the new file must survive a power cut that follows at once. Durable costs a sync.
enum class Durability { Fast, Durable };

// Who may read the file: others too (0644 without the bits of the umask), or its owner only (0600).
enum class Readers { Everyone, Owner };

// Puts a file with exactly these bytes at path, in one step: a reader sees the old file or the new
// one, whole. Its folder must exist. A link at path is replaced itself; what it points to is left
// alone. On failure the old file is whole and nothing else is left in the folder. A folder that
// cannot be synced is no failure: after a power cut it then shows the old file. Any thread.
std::error_code replaceFile(const std::filesystem::path& path, const QByteArray& bytes,
                            Durability durability, Readers readers = Readers::Everyone);

// Puts a copy of the file at source there in the same way, however long it is, for its owner only,
// without waiting for the disk. On failure the old file is whole. A folder is never replaced. Any
// thread.
std::error_code replaceByCopy(const std::filesystem::path& path,
                              const std::filesystem::path& source);

// What to do about folders that are missing above the one to be made.
enum class Parents { MustExist, Create };

// Makes a folder that only its owner can enter (0700), private from its creation. Fails if anything
// has that name already, even a link, and leaves it alone. Parents that are made are private as
// well, and stay if the folder itself then cannot be made. Any thread.
std::error_code createPrivateFolder(const std::filesystem::path& path, Parents parents);

// A log open for writing, or why there is none. One thread at a time.
struct PrivateLog {
    UniqueFd file; // close-on-exec
    std::error_code failure;
};

// Makes an empty file that only its owner can read (0600), private from its creation. Fails if
// anything has that name already, even a link, and leaves it alone. Any thread.
PrivateLog createPrivateLog(const std::filesystem::path& path);

} // namespace platform
